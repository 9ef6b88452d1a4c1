// Writes the seed inputs of the text targets with the project's own writers
// and samples:
//   make_text_corpus <corpus folder> <samples folder>
// into <corpus>/decl (value-list texts and numbers), <corpus>/csv (the
// command line's inputs) and <corpus>/cipher (enciphered strings).
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "decl/KvValueLists.h"
#include "decl/KvModelFormat.h"
#include "files/KvFnCipher.h"

namespace fs = std::filesystem;

namespace {

void Put(const fs::path& dir, const std::string& name, const std::string& bytes) {
    fs::create_directories(dir);
    std::ofstream(dir / name, std::ios::binary | std::ios::trunc) << bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s <corpus folder> <samples folder>\n", argv[0]);
        return 2;
    }
    const fs::path corpus = argv[1];
    const fs::path samples = argv[2];

    const fs::path decl = corpus / "decl";
    kv::TIndDblList years;
    for (std::int32_t y : {2024, 2025, 2030}) years.PutVal(y, y * 0.5 - 1012.25);
    years.PutVal(-1, -0.0);
    years.PutVal(std::numeric_limits<std::int32_t>::max(), 1e-05);
    Put(decl, "double-list", years.GetAsString());
    kv::TIndStrList texts;
    texts.PutVal(2024, "first^with caret");
    texts.PutVal(2026, "");
    texts.PutVal(2025, "Caf\xC3\xA9");
    Put(decl, "text-list", texts.GetAsString());
    Put(decl, "skipped-pieces", "2024:10,x:5,2025:abc,:,2026:");
    Put(decl, "numbers", kv::FloatToModelText(-1.5e300) + "," + kv::FloatToModelText(5e-324) + ",nan,-inf,.5,5.,1E20");

    const fs::path csv = corpus / "csv";
    fs::create_directories(csv);
    for (const char* name : {"accounts.csv", "classes.csv"}) fs::copy_file(samples / name, csv / name,
                                                                           fs::copy_options::overwrite_existing);
    Put(csv, "quoted.csv",
        "\xEF\xBB\xBF\"Account Type\",MD,BS,QR\r\n\"Non-Reg.\",\"1,5\",\"2\"\"\",\r\n\"TFSAs\",1e3,-0,nan\r\n\r\n");

    const fs::path cipher = corpus / "cipher";
    const std::uint8_t salt[kv::SaltSize] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    for (const auto& [name, plain] : {std::pair<const char*, std::string>{"empty", ""},
                                      {"short", "Jean|\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0a"},
                                      {"block", std::string(16, 'b')},
                                      {"partial", std::string(37, 'p')}})
        Put(cipher, name, kv::EncipherBytes(plain, "fuzz", salt));
    return 0;
}
