// Writes the seed inputs of the fuzz targets with the project's own writers:
//   make_corpus <target> <output folder> [<samples folder>]
// target: buffile, entries, models, alloc, balance, finitems, or text (which
// takes the corpus folder and the samples folder, and writes decl/, csv/ and
// cipher/ below the first).
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "KvSettings.h"
#include "catalogue/KvCatalogueFixture.h"
#include "catalogue/KvFnProjHdr.h"
#include "decl/KvValueLists.h"
#include "decl/KvModelFormat.h"
#include "demo/DemoChart.h"
#include "demo/DemoData.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"
#include "files/KvFnCipher.h"
#include "fuzz_buffile_ops.h"
#include "fuzz_finitems_setup.h"
#include "items/KvFnClassRegistry.h"
#include "items/KvAllocationYears.h"
#include "items/KvAssetSubClasses.h"
#include "items/KvPortAllocation.h"
#include "items/KvReturnStatistics.h"
#include "items/KvBalance.h"
#include "BalanceFixture.h"
#include "ModelTestUtil.h"
#include "model/KvFnModelData.h"

namespace fs = std::filesystem;

namespace buffile {

using kvfuzz::EOp;


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


void Write(const char* const* argv) {
    const std::string dir = argv[0];
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
}

} // namespace buffile

namespace entries {

void Write(const char* const* argv) {
    const std::string dir = argv[0];
    for (const std::uint8_t kind : {0, 1, 2})
        kv::MakeDemoChart(kind, "")->Save(dir + "/demo-kind" + std::to_string(kind));

    // An older file without the version, and one with an entry outside the tree.
    auto old = kv::MakeDemoChart(1, "");
    old->ClearVersion();
    old->Save(dir + "/no-version-kind1");

    kv::TEntries small(0, "");
    small.AddEntryType(1, "Asset");
    kv::TEntry& root = small.AddEntry(10, 3, "Assets", 0);
    kv::TEntry& child = small.AddEntry(948, 4, "Non-registered", 1);
    small.AddEntry(2333, 147, "TFSA", 2).SpecProps = {"EGRP=HOME,TFSACON"};
    root.TreeKeys = {1, -1, -1, -1};
    root.AddChild(&child);
    small.AddRootNode(root);
    small.AddEnTaxLabel("Federal tax");
    small.SetVersion(kv::ExpectedEntriesVersion(0));
    small.Save(dir + "/small-kind0");
}

} // namespace entries

namespace models {

void Write(const char* const* argv) {
    const fs::path out = argv[0];
    const fs::path scratch = out / "scratch.tmp";
    const kv::TLibrarySettings settings{.ClientFileKey = "fuzz"};  // the key fuzz_models configures

    struct Seed {
        const char* name;
        std::uint8_t kind;
        kv::TClientFileSpec clientFile;
    };
    auto makeClientFile = [](auto&& set) {
        kv::TClientFileSpec s;
        s.Name = "Seed Client";
        s.ID = 4242;
        set(s);
        return s;
    };
    const Seed seeds[] = {
        {"plain", 0, makeClientFile([](auto& s) { s.Solutions = 2; s.NeedsSolutions = 1; })},
        {"protected", 0, makeClientFile([](auto& s) { s.Protected = true; s.KeySeed = "seed"; s.Solutions = 1; })},
        {"hidden-bs", 1, makeClientFile([](auto& s) { s.HideNames = true; s.Solutions = 2; s.Date = 45123.5; })},
        {"no-trailing", 0, makeClientFile([](auto& s) { s.TrailingSections = false; s.ID = 0; })},
        {"empty-lists", 0, makeClientFile([](auto& s) { s.Solutions = 0; })},
    };
    for (const Seed& seed : seeds) {
        fs::remove_all(scratch);
        const std::string path = kv::WriteClientFolder(scratch.string(), "md_db1", seed.kind, seed.clientFile, settings);
        fs::copy_file(path, out / seed.name, fs::copy_options::overwrite_existing);
    }
    fs::remove_all(scratch);
}

} // namespace models

namespace alloc {

void Put(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}


void Write(const char* const* argv) {
    const std::string dir = std::string(argv[0]) + "/";
    kv::TLibAllocYear even = kv::TLibAllocYear::GetEvenlyAllocation();
    even.SetSubCls2Share(3, 0, 0, 0.5);
    for (std::int32_t v : {0, 200507, 200803, 201202, 201304, 201404})
        Put(dir + "year-" + std::to_string(v), even.EncodeAs(v));
    Put(dir + "csv", "Class,Sub,Entry,Percent\r\n2,,,40\r\n\"3\",,,60\r\n2,3,,100\n3,0,0,50\n3,0,2,25\n3,1,,25\n");

    kv::TCHPortAllocation h(0x1E240);
    h.Name = "Holdings; detailed";
    h.Text = "C:\\note";
    h.Holdings = {{"XIU", 2, 0, -1, 1500.5}, {"VFV", 3, 0, 1, 250}};
    Put(dir + "holdings", h.GetAsString());
    kv::TPASMAClass sma(3);
    sma.Kind = 2;
    sma.Reference = 1003;
    sma.ClsShares = {0, 0, 0.5, 0.5, 0, 0};
    sma.Manager = "Acme";
    sma.FeeRate = 1.25;
    Put(dir + "sma", sma.GetAsString());
    kv::TLibAssetSubClass lib(3, 5, "Sector Funds");
    lib.Share = 0.1;
    lib.NAV = 12.5;
    lib.Returns.PutVal(2023, 0.05);
    Put(dir + "lib-subclass", lib.GetAsString());
}

} // namespace alloc

namespace balance {

void Write(const char* const* argv) {
    const std::string dir = argv[0];
    kv::TBalance empty;
    empty.Date = 45000.5;
    empty.FirstYear = 2024;
    empty.Save(dir + "/empty");

    kv::TBalance b;
    kvtest::FillBalance(b);
    b.Save(dir + "/accounts");
}

} // namespace balance

namespace finitems {

namespace D = kv::DemoEntry;


std::uint8_t SettingByte(std::uint8_t kind, bool enciphered) {
    const std::uint8_t k = kind == 4 ? 3 : kind;
    return static_cast<std::uint8_t>(k | (enciphered ? 4 : 0));
}

void WriteSeed(const fs::path& out, const std::string& name, std::uint8_t setting, const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    std::ofstream o(out / name, std::ios::binary | std::ios::trunc);
    o.put(static_cast<char>(setting));
    o.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Every record the model tests write, and the share records the import's
// lookups follow.
void Fill(kv::TModelData& m, const kv::TEntries& chart) {
    kvtest::FillEveryRecord(m, chart);
    auto set = [&](std::int32_t entryID, std::int32_t id, const char* name, const char* value) {
        if (const kv::TEntry* e = chart.GetEntryByID(entryID)) kvtest::AddItem(m, nullptr, e, id, "", 0)->SpecProps.Set(name, value);
    };
    set(D::CorpShares, 107, "ShareCount", "100");
    set(D::SharesHeld, 108, "ShareClassID", "107");
    set(D::CapitalBenef, 109, "BenefKey", "77");
    for (const auto& item : m.Items()) item->DecodeSpecProps();
    m.SmallLists = {{{1, {2, 3}}, {200, {0, 0}}}, {}};
}

void Write(const char* const* argv) {
    const fs::path out = argv[0];
    const fs::path scratch = out / "scratch.tmp";
    fs::remove_all(scratch);

    // The demo's unprotected solutions, byte for byte.
    tessary::WriteDemoData((scratch / "demo").string());
    struct Demo { const char* seed; std::uint8_t kind; const char* file; };
    for (const Demo& d : {Demo{"demo-md-sectioned", 0, "Meridel/Data/md_db1_Tremblay/Main/FinItems.dat"},
                          Demo{"demo-md-sequential", 0, "Meridel/Data/md_db2_Nguyen/Main/FinItems.dat"},
                          Demo{"demo-bs", 1, "Basalto/Data/bs_db1_Côté Holdings/Main/FinItems.dat"},
                          Demo{"demo-qr", 2, "Quorren/Data/qr_db1_Fiducie familiale Roy/Main/FinItems.dat"}})
        WriteSeed(out, d.seed, SettingByte(d.kind, false), scratch / "demo" / d.file);

    struct Rich {
        const char* seed;
        std::uint8_t kind;
        bool enciphered;
        kv::TFileLayout layout;
        std::int32_t version;
    };
    const Rich rich[] = {
        {"rich-sectioned", 0, false, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion},
        {"rich-sectioned-enciphered", 0, true, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion},
        {"rich-sequential-bs-enciphered", 1, true, kv::TFileLayout::Sequential, kv::kCurrentFileVersion},
        {"rich-sequential-qr-old", 2, false, kv::TFileLayout::Sequential, kv::kVersionPropArrays - 1},
        {"rich-sectioned-kind4", 4, false, kv::TFileLayout::Sectioned, 40000},
    };
    for (const Rich& r : rich) {
        const fs::path dir = scratch / r.seed;
        fs::create_directories(dir);
        auto chart = kv::MakeDemoChart(r.kind, (dir / "Entries.dat").string());
        auto list = kvfuzz::MakeSolutionList(r.enciphered);
        kv::TModelData m(r.kind, nullptr, list.get(), list.get(), nullptr, (dir / "FinItems.dat").string(),
                         chart.get(), kvfuzz::kSettings);
        Fill(m, *chart);
        m.Save(r.layout, r.version);
        WriteSeed(out, r.seed, SettingByte(r.kind, r.enciphered), dir / "FinItems.dat");
    }
    fs::remove_all(scratch);
}

} // namespace finitems

namespace text {

void Put(const fs::path& dir, const std::string& name, const std::string& bytes) {
    fs::create_directories(dir);
    std::ofstream(dir / name, std::ios::binary | std::ios::trunc) << bytes;
}


void Write(const char* const* argv) {
    const fs::path corpus = argv[0];
    const fs::path samples = argv[1];

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
}

} // namespace text

int main(int argc, char** argv) {
    const std::pair<const char*, void (*)(const char* const*)> writers[] = {
        {"buffile", buffile::Write}, {"entries", entries::Write}, {"models", models::Write}, {"alloc", alloc::Write},
        {"balance", balance::Write}, {"finitems", finitems::Write}, {"text", text::Write},
    };
    for (const auto& [name, write] : writers)
        if (argc >= 3 && argc <= 4 && std::string(argv[1]) == name && (argc == 4) == (std::string(name) == "text")) {
            write(argv + 2);
            return 0;
        }
    std::fprintf(stderr, "usage: %s <target> <output folder> [<samples folder>]\n", argv[0]);
    return 2;
}
