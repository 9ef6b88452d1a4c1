// Writes the seed inputs of fuzz_buffile with the real writer:
//   make_buffile_corpus <output folder>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "files/KvFnBufFile.h"
#include "fuzz_buffile_ops.h"

using kvfuzz::EOp;

namespace {

void Seed(const std::string& dir, const std::string& name, std::vector<EOp> ops,
          const std::function<void(kv::TBufWriteFile&)>& write) {
    const std::string tmp = dir + "/" + name + ".tmp";
    {
        kv::TBufWriteFile w(tmp);
        write(w);
        w.Close();
    }
    std::ifstream in(tmp, std::ios::binary);
    const std::vector<char> body((std::istreambuf_iterator<char>(in)), {});
    in.close();
    std::remove(tmp.c_str());
    std::ofstream out(dir + "/" + name, std::ios::binary);
    out.put(char(ops.size()));
    for (EOp op : ops) out.put(char(op));
    out.write(body.data(), std::streamsize(body.size()));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    Seed(dir, "numbers", {EOp::Byte, EOp::Boolean, EOp::Word, EOp::Int, EOp::LongWord, EOp::Double, EOp::DateTime,
                          EOp::Date, EOp::Char, EOp::NumX, EOp::NumX},
         [](kv::TBufWriteFile& w) {
             w.WriteByte(200); w.WriteBoolean(true); w.WriteWord(65535); w.WriteInt(-7); w.WriteLongWord(123456);
             w.WriteDouble(2.5); w.WriteDateTime(45123.5); w.WriteDate(45123.9); w.WriteChar(u'A'); w.WriteChar(u'B');
             w.WriteNumX(254); w.WriteNumX(70000);
         });
    Seed(dir, "texts", {EOp::Str, EOp::ShortStr, EOp::StrX, EOp::StringsX, EOp::PChar, EOp::RawUtf8},
         [](kv::TBufWriteFile& w) {
             w.WriteStr("Caf\xC3\xA9 \xE2\x82\xAC 10"); w.WriteShortStr("short"); w.WriteStrX(std::string(300, 'x'));
             w.WriteStringsX(std::vector<std::string>{"Name=Value", "", "OwnerID=3"}); w.WriteStr("pchar");
             w.WriteData("\xC3\xA9\xE2\x82", 4);
         });
    Seed(dir, "encrypted", {EOp::EncryptStr, EOp::EncryptStr, EOp::Int},
         [](kv::TBufWriteFile& w) {
             w.WriteEncryptStr("Jean-Luc", "key", true);
             w.WriteEncryptStr("a text of more than eleven | characters", "key", false);
             w.WriteInt(1);
         });
    Seed(dir, "record", {EOp::Int, EOp::ShortStr, EOp::EncryptStr, EOp::Double, EOp::Date, EOp::Date,
                         EOp::StringsX, EOp::Seek, EOp::Int},
         [](kv::TBufWriteFile& w) {
             w.WriteInt(42); w.WriteShortStr("RRSP"); w.WriteEncryptStr("Dupont", "key", true); w.WriteDouble(1e6);
             w.WriteDate(40000); w.WriteDate(45000); w.WriteStringsX(std::vector<std::string>{"Rate=0.05"});
             w.WriteInt(0);
         });
    Seed(dir, "counts", {EOp::Str, EOp::Str, EOp::PChar, EOp::StrX},
         [](kv::TBufWriteFile& w) {
             w.WriteInt(-5); w.WriteInt(3); w.WriteData("a\0b", 3); w.WriteInt(0); w.WriteNumX(255);
         });
    return 0;
}
