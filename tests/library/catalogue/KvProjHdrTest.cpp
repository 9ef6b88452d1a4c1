#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CatalogueTestUtil.h"
#include "KvErrors.h"
#include "catalogue/KvCatalogueFixture.h"
#include "catalogue/KvFnProjHdr.h"
#include "catalogue/KvIdentText.h"

namespace {

using cattest::Bytes;
namespace fs = std::filesystem;

// A client folder "md_db1" whose Models.dat holds the two records given and
// two empty solution lists.
std::string WriteHeader(const cattest::TempDir& dir, const std::string& record1, const std::string& record2) {
    fs::create_directories(dir.Path() / "md_db1");
    Bytes b;
    b.Short(record1).Str(record2).I32(0).I32(0).I32(0).I32(0);
    cattest::WriteBytes(dir.Path() / "md_db1" / "Models.dat", b.b);
    return dir.Dir();
}

struct HeaderFields {
    std::string text1, text2;
    double date;
    int flagA;
    double number;
    std::string text3;
    int b, c, d, e, f, g, h;
    std::string keySeed;
    int i;
    std::string text4;
    std::int32_t integer;
};

TEST(CatalogueProjHdr, TokensOfTheSecondRecordAndTheirDefaults) {
    struct Case {
        std::string record2;
        HeaderFields x;
    };
    const std::vector<Case> cases = {
        {"", {"", "", 0, 0, 0, "", 0, 0, 0, 0, 1, 0, 0, "", 0, "", -1}},
        {"a\x01" "b\x01" "45123.5\x01" "3\x01" "2.5\x01t3\x01\x01" "1\x01" "2\x01" "3\x01" "4\x01" "5\x01" "6\x01seed\x01" "0\x01t4\x01" "17",
         {"a", "b", 45123.5, 3, 2.5, "t3", 1, 1, 2, 3, 4, 5, 6, "seed", 0, "t4", 17}},
        // Token 7 empty follows flag A; given, it stands.
        {"\x01\x01\x01" "0\x01\x01\x01", {"", "", 0, 0, 0, "", 0, 0, 0, 0, 1, 0, 0, "", 0, "", -1}},
        {"\x01\x01\x01" "9\x01\x01\x01" "7", {"", "", 0, 9, 0, "", 7, 0, 0, 0, 1, 0, 0, "", 0, "", -1}},
        {"\x01\x01\x01" "300\x01\x01\x01" "-1", {"", "", 0, 44, 0, "", 255, 0, 0, 0, 1, 0, 0, "", 0, "", -1}},
        // Unreadable numbers take the defaults; so does an empty token 11.
        {"\x01\x01" "1,5\x01x\x01" "2,5\x01\x01\x01\x01\x01\x01" "\x01\x01\x01\x01\x01\x01" "abc",
         {"", "", 0, 0, 0, "", 0, 0, 0, 0, 1, 0, 0, "", 0, "", -1}},
        {"\x01\x01nan\x01\x01" "1e-05\x01\x01\x01\x01\x01\x01" "0\x01\x01" "1", {"", "", 0, 0, 1e-05, "", 0, 0, 0, 0, 0, 0, 1, "", 0, "", -1}},
    };
    for (const auto& c : cases) {
        cattest::TempDir dir;
        kv::TProjHdr h(0, "Models.dat", "md_db1", WriteHeader(dir, "Name\x01!", c.record2), kv::kDefaultLibrarySettings);
        h.LoadHeader();
        const HeaderFields& x = c.x;
        SCOPED_TRACE(c.record2);
        EXPECT_EQ(h.Name, "Name");
        EXPECT_EQ(h.ID, 1);
        EXPECT_EQ(h.Text1, x.text1);
        EXPECT_EQ(h.Text2, x.text2);
        EXPECT_EQ(h.Date, x.date);
        EXPECT_EQ(h.FlagA, x.flagA);
        EXPECT_EQ(h.Number, x.number);
        EXPECT_EQ(h.Text3, x.text3);
        EXPECT_EQ(std::vector<int>({h.FlagB, h.FlagC, h.FlagD, h.FlagE, h.FlagF, h.FlagG, h.HideNamesFlag}),
                  std::vector<int>({x.b, x.c, x.d, x.e, x.f, x.g, x.h}));
        EXPECT_EQ(h.KeySeed, x.keySeed);
        EXPECT_EQ(h.ProtectionFlag, x.i);
        EXPECT_EQ(h.Text4, x.text4);
        EXPECT_EQ(h.Integer, x.integer);
        EXPECT_EQ(h.HideNames(), x.h != 0);
    }
}

TEST(CatalogueProjHdr, IdentifierZeroIsSubstitutedFromThePath) {
    struct Case {
        std::string record1;
        std::string name;
        bool substitute;
        std::int32_t id;
    };
    const std::vector<Case> cases = {
        {"Ann\x01!", "Ann", false, 1},
        {"Ann\x01\xFF\xFF", "Ann", false, 223 + 223 * 224},
        {"Ann\x01 ", "Ann", true, 0},
        {"Caf\xE9\x01!\x01" "extra", "Caf\u00E9", false, 1},
    };
    for (const auto& c : cases) {
        cattest::TempDir dir;
        kv::TProjHdr h(1, "Models.dat", "md_db1/", WriteHeader(dir, c.record1, ""), kv::kDefaultLibrarySettings);
        h.LoadHeader();
        EXPECT_EQ(h.HeaderPath, dir.Dir() + "md_db1/Models.dat");
        EXPECT_EQ(h.Name, c.name);
        EXPECT_EQ(h.ID, c.substitute ? kv::SubstituteID(h.HeaderPath) : c.id) << c.record1;
    }
}

kv::TProjHdr SampleHeader(const std::string& base, bool protect,
                          const kv::TLibrarySettings& settings = kv::kDefaultLibrarySettings) {
    kv::TProjHdr h(0, "Models.dat", "md_db4_Ann", base, settings);
    h.Name = "Ann \u00C9lise";
    h.ID = 123456;
    h.Text1 = "Adviser M\u00FCller";
    h.Text2 = "";
    h.Date = 45123.75;
    h.FlagA = 2;
    h.Number = 0.1;
    h.Text3 = "three";
    h.FlagB = 0;
    h.FlagC = 3;
    h.FlagD = 4;
    h.FlagE = 5;
    h.FlagF = 0;
    h.FlagG = 7;
    h.HideNamesFlag = 1;
    h.KeySeed = "s33d";
    h.ProtectionFlag = protect ? 1 : 0;
    h.Text4 = "four";
    h.Integer = -99;
    h.Pairs = {{"k1", "v1"}, {"", "v2"}};
    h.Texts = {"one", "", "three"};
    for (int i = 0; i < kv::TProjHdr::ReportSettingCount; ++i) h.ReportSettings[std::size_t(i)] = "r" + std::to_string(i);
    h.LastText = "last";
    return h;
}

void FillLists(kv::TModels& main, kv::TModels& needs, const kv::TProjHdr& h) {
    for (kv::TModels* m : {&main, &needs}) {
        m->Enciphered = h.IsProtected();
        m->KeySeed = h.KeySeed;
        m->ClientName = h.Name;
        m->HideNames = h.HideNames();
    }
    for (int i = 0; i < 4; ++i) {
        kv::TModel e;
        e.Name = "Plan " + std::to_string(i);
        e.ID = 10 + i;
        e.ID2 = 20 + i;
        e.FolderNo = i;
        main.Add(e);
    }
    kv::TModel e;
    e.Name = "Needs analysis";
    e.ID = 5;
    e.ID2 = 6;
    needs.Add(e);
    main.SelectedIndex = 2;
    main.StoredNumber = 4;
    needs.HasStoredNumber = false;
}

void ExpectSameHeader(const kv::TProjHdr& a, const kv::TProjHdr& b) {
    EXPECT_EQ(a.Name, b.Name);
    EXPECT_EQ(a.ID, b.ID);
    EXPECT_EQ(a.Text1, b.Text1);
    EXPECT_EQ(a.Text2, b.Text2);
    EXPECT_EQ(a.Date, b.Date);
    EXPECT_EQ(a.FlagA, b.FlagA);
    EXPECT_EQ(a.Number, b.Number);
    EXPECT_EQ(a.Text3, b.Text3);
    EXPECT_EQ(std::vector<int>({a.FlagB, a.FlagC, a.FlagD, a.FlagE, a.FlagF, a.FlagG, a.HideNamesFlag, a.ProtectionFlag}),
              std::vector<int>({b.FlagB, b.FlagC, b.FlagD, b.FlagE, b.FlagF, b.FlagG, b.HideNamesFlag, b.ProtectionFlag}));
    EXPECT_EQ(a.KeySeed, b.KeySeed);
    EXPECT_EQ(a.Text4, b.Text4);
    EXPECT_EQ(a.Integer, b.Integer);
    EXPECT_EQ(a.Pairs, b.Pairs);
    EXPECT_EQ(a.Texts, b.Texts);
    EXPECT_EQ(a.ReportSettings, b.ReportSettings);
    EXPECT_EQ(a.LastText, b.LastText);
    EXPECT_EQ(a.TrailingSections, b.TrailingSections);
}

TEST(CatalogueProjHdr, SaveAndLoadRoundTripPlainAndProtected) {
    cattest::SettingsGuard key("configured key");
    for (bool protect : {false, true}) {
        cattest::TempDir dir;
        const kv::TProjHdr saved = SampleHeader(dir.Dir(), protect, key);
        kv::TModels main(saved.BaseDir, "Main", saved.Folder, key), needs(saved.BaseDir, "Needs", saved.Folder, key);
        FillLists(main, needs, saved);
        fs::create_directories(dir.Path() / "md_db4_Ann");
        saved.Save(main, needs);

        kv::TProjHdr read(0, "Models.dat", "md_db4_Ann", dir.Dir(), key);
        kv::TModelLists lists = read.Load(true);
        ExpectSameHeader(saved, read);
        ASSERT_TRUE(lists.Main && lists.Needs);
        EXPECT_EQ(lists.Main->SelectedIndex, 2);
        EXPECT_FALSE(lists.Needs->HasStoredNumber);
        ASSERT_EQ(lists.Main->Count(), 4);
        EXPECT_EQ(lists.Main->Get(3).ID2, 23);
        EXPECT_EQ(lists.Needs->Get(0).Name, "Needs analysis");

        const auto bytes = cattest::ReadBytes(dir.Path() / "md_db4_Ann" / "Models.dat");
        const std::string raw(bytes.begin(), bytes.end());
        EXPECT_EQ(raw.find("Adviser") == std::string::npos, protect);
        EXPECT_EQ(raw.find("Plan 3") == std::string::npos, protect);
        EXPECT_NE(raw.find("s33d"), std::string::npos);  // the seed itself is stored plainly

        // Saving what was read gives back a file that reads the same.
        read.Save(*lists.Main, *lists.Needs);
        kv::TProjHdr again(0, "Models.dat", "md_db4_Ann", dir.Dir(), key);
        kv::TModelLists lists2 = again.Load(true);
        ExpectSameHeader(saved, again);
        EXPECT_EQ(lists2.Main->Count(), 4);
        if (!protect) {
            EXPECT_EQ(cattest::ReadBytes(dir.Path() / "md_db4_Ann" / "Models.dat"), bytes);
        }
    }
}

TEST(CatalogueProjHdr, ProtectedHeaderNeedsTheRightKey) {
    cattest::TempDir dir;
    {
        cattest::SettingsGuard key("right");
        kv::TClientFileSpec clientFile;
        clientFile.Name = "Protected Client";
        clientFile.Protected = true;
        clientFile.KeySeed = "seed";
        clientFile.Solutions = 2;
        kv::WriteClientFolder(dir.Dir(), "md_db1_P", 0, clientFile, key);
    }
    auto load = [&](const std::string& key, bool loadModels) {
        cattest::SettingsGuard guard(key);
        kv::TProjHdr h(0, "Models.dat", "md_db1_P", dir.Dir(), guard);
        kv::TModelLists lists = h.Load(loadModels);
        EXPECT_EQ(h.Text1, "Adviser");
        EXPECT_EQ(lists.Main->Get(1).Name, "Solution 2");
    };
    load("right", true);
    EXPECT_THROW(load("wrong", false), kv::EInvalidData);
    EXPECT_THROW(load("righ", true), kv::EInvalidData);   // the seed follows the configured key
    EXPECT_THROW(load("", false), kv::EKeyMissing);
}

TEST(CatalogueProjHdr, SolutionRecordsThatDoNotDecipherNameTheFile) {
    // The header of a file written with one key, its solution records from
    // the same file written with another: only the records fail.
    cattest::TempDir dir;
    kv::TClientFileSpec clientFile;
    clientFile.Name = "Protected Client";
    clientFile.Protected = true;
    clientFile.KeySeed = "seed";
    clientFile.Solutions = 2;
    clientFile.TrailingSections = false;
    std::vector<std::uint8_t> withRight, withOther;
    for (auto [key, bytes] : {std::pair{"right", &withRight}, std::pair{"other", &withOther}}) {
        cattest::SettingsGuard guard(key);
        *bytes =
            cattest::ReadBytes(kv::WriteClientFolder(dir.Dir(), std::string("md_db1_") + key, 0, clientFile, guard));
    }
    const std::size_t lists = 8 + 2 * kv::TModel::RecordSize + 8;   // "Main" with two records, empty "Needs"
    std::vector<std::uint8_t> spliced(withRight.begin(), withRight.end() - std::ptrdiff_t(lists));
    spliced.insert(spliced.end(), withOther.end() - std::ptrdiff_t(lists), withOther.end());
    cattest::WriteBytes(dir.Path() / "md_db1_right" / "Models.dat", spliced);

    cattest::SettingsGuard guard("right");
    kv::TProjHdr h(0, "Models.dat", "md_db1_right", dir.Dir(), guard);
    EXPECT_NO_THROW(h.LoadHeader());
    try {
        (void)h.Load(true);
        ADD_FAILURE() << "solution records deciphered with the wrong key";
    } catch (const kv::EInvalidData& e) {
        EXPECT_NE(std::string(e.what()).find(h.HeaderPath), std::string::npos) << e.what();
    }
}

TEST(CatalogueProjHdr, OptionalSectionsAreReadOnlyWhileTheFileLasts) {
    // Sections written: 0 to 4; each file must read back with exactly those.
    for (int sections = 0; sections <= kv::TProjHdr::TrailingSectionCount; ++sections) {
        cattest::TempDir dir;
        kv::TProjHdr h = SampleHeader(dir.Dir(), false);
        h.TrailingSections = sections;
        kv::TModels main(h.BaseDir, "Main", h.Folder, kv::kDefaultLibrarySettings),
            needs(h.BaseDir, "Needs", h.Folder, kv::kDefaultLibrarySettings);
        FillLists(main, needs, h);
        fs::create_directories(dir.Path() / "md_db4_Ann");
        h.Save(main, needs);
        kv::TProjHdr r(0, "Models.dat", "md_db4_Ann", dir.Dir(), kv::kDefaultLibrarySettings);
        (void)r.Load(true);
        EXPECT_EQ(r.TrailingSections, sections);
        EXPECT_EQ(r.Pairs.size(), sections >= 1 ? 2u : 0u);
        EXPECT_EQ(r.Texts.size(), sections >= 2 ? 3u : 0u);
        EXPECT_EQ(r.ReportSettings[10], sections >= 3 ? "r10" : "");
        EXPECT_EQ(r.LastText, sections >= 4 ? "last" : "");
    }
}

TEST(CatalogueProjHdr, LoadHeaderReadsOnlyTheTwoRecords) {
    // Garbage after the header records does not matter to LoadHeader.
    cattest::TempDir dir;
    fs::create_directories(dir.Path() / "md_db1");
    Bytes b;
    b.Short("Only header\x01!").Str("").I32(0).I32(0x7FFFFFFF);
    cattest::WriteBytes(dir.Path() / "md_db1" / "Models.dat", b.b);
    kv::TProjHdr h(0, "Models.dat", "md_db1", dir.Dir(), kv::kDefaultLibrarySettings);
    EXPECT_NO_THROW(h.LoadHeader());
    EXPECT_EQ(h.Name, "Only header");
    kv::TModelLists none = h.Load(false);
    EXPECT_FALSE(none.Main);
    EXPECT_FALSE(none.Needs);
    EXPECT_THROW((void)h.Load(true), kv::EReadError);
}

TEST(CatalogueProjHdr, SaveRefusesBeforeTouchingTheFile) {
    cattest::SettingsGuard key("k");
    cattest::TempDir dir;
    const std::string path = kv::WriteClientFolder(dir.Dir(), "md_db1", 0, kv::TClientFileSpec{}, key);
    const auto before = cattest::ReadBytes(path);
    struct Case {
        std::string name, text1;
        bool protect;
    };
    const std::vector<Case> cases = {
        {std::string(254, 'n'), "", false},      // record 1 is a short string: name, U+0001, "!"
        {"a\x01" "b", "", false},
        {"ok", "bar|in text", true},
        {"ok", "", true},                        // fine on its own, but the list below is not
    };
    for (const auto& c : cases) {
        kv::TProjHdr h(0, "Models.dat", "md_db1", dir.Dir(), key);
        h.Name = c.name;
        h.ID = 1;
        h.Text1 = c.text1;
        h.ProtectionFlag = c.protect ? 1 : 0;
        kv::TModels main(h.BaseDir, "Main", h.Folder, key), needs(h.BaseDir, "Needs", h.Folder, key);
        needs.Enciphered = c.protect;
        kv::TModel e;
        e.Name2 = std::string(200, 'z');
        needs.Add(e);
        EXPECT_THROW(h.Save(main, needs), kv::EKvError) << c.name;
        EXPECT_EQ(cattest::ReadBytes(path), before);
        EXPECT_FALSE(fs::exists(path + ".new"));
    }
}

TEST(CatalogueProjHdr, MissingFileIsAnInputOutputErrorNamingIt) {
    cattest::TempDir dir;
    kv::TProjHdr h(2, "Models.dat", "qr_db1", dir.Dir(), kv::kDefaultLibrarySettings);
    try {
        h.LoadHeader();
        FAIL();
    } catch (const kv::EInOutError& e) {
        EXPECT_NE(std::string(e.what()).find(dir.Dir() + "qr_db1/Models.dat"), std::string::npos) << e.what();
    }
}

} // namespace
