// Reads hostile bytes as a client folder's "Models.dat": the header records
// alone, then the whole file with both solution lists, as product kinds 0 and 1.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "KvErrors.h"
#include "KvSettings.h"
#include "catalogue/KvFnProjHdr.h"

namespace {

// The client folder lives for the whole run; every input replaces its file.
const std::string& DataDir() {
    static const std::string dir = [] {
        std::string tmpl = (std::filesystem::temp_directory_path() / "fuzz_models-XXXXXX").string();
        if (!::mkdtemp(tmpl.data())) std::abort();
        std::filesystem::create_directories(tmpl + "/md_db1");
        return tmpl + "/";
    }();
    return dir;
}

void Walk(const kv::TModels& list) {
    for (std::int32_t i = 0; i < list.Count(); ++i) {
        (void)list.Path(i);
        (void)list.DisplayName(i);
    }
    (void)list.FindModelIndex(1, 2, 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The seeds' protected files were written with this key.
    static const kv::TLibrarySettings settings{.ClientFileKey = "fuzz"};
    {
        std::ofstream out(DataDir() + "md_db1/Models.dat", std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), std::streamsize(size));
    }
    for (std::uint8_t kind : {0, 1}) {
        kv::TProjHdr hdr(kind, kv::ModelsFileName, "md_db1", DataDir(), settings);
        try {
            hdr.LoadHeader();
        } catch (const kv::EKvError&) {
        }
        try {
            kv::TModelLists lists = hdr.Load(true);
            Walk(*lists.Main);
            Walk(*lists.Needs);
        } catch (const kv::EKvError&) {
        }
    }
    return 0;
}
