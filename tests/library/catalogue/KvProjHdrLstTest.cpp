#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CatalogueTestUtil.h"
#include "KvErrors.h"
#include "catalogue/KvCatalogueFixture.h"
#include "catalogue/KvFnProjHdr.h"

namespace {

namespace fs = std::filesystem;
using cattest::TempDir;

void Client(const TempDir& dir, const std::string& folder, const std::string& name, std::uint8_t kind = 0,
            int solutions = 1) {
    kv::TClientFileSpec clientFile;
    clientFile.Name = name;
    clientFile.Solutions = solutions;
    kv::WriteClientFolder(dir.Dir(), folder, kind, clientFile);
}

std::vector<std::string> Names(const kv::TProjHdrLst& l) {
    std::vector<std::string> names;
    for (const auto& h : l.Items()) names.push_back(h->Name);
    return names;
}

std::vector<std::string> Folders(const kv::TProjHdrLst& l) {
    std::vector<std::string> names;
    for (const auto& h : l.Items()) names.push_back(h->Folder);
    return names;
}

TEST(CatalogueScan, EmptyOrMissingDataDirectoryGivesNoClientFiles) {
    TempDir dir;
    for (const std::string& d : {dir.Dir(), dir.Dir() + "missing", std::string()}) {
        kv::TProjHdrLst l(d, "", 0, kv::kDefaultLibrarySettings);
        l.Load(true);
        EXPECT_EQ(l.Count(), 0) << d;
    }
    EXPECT_TRUE(cattest::TopLevel(dir.Path()).empty());
}

TEST(CatalogueScan, LegacyFolderTakesFirstFreeNumberThenTheClientName) {
    TempDir dir;
    Client(dir, "md_db1", "First");
    Client(dir, "db7", "Seventh");
    const auto before = cattest::TreeDigest(dir.Path());
    kv::TProjHdrLst l(dir.Dir(), "", 0, kv::kDefaultLibrarySettings);
    l.Load(false);
    EXPECT_EQ(cattest::TopLevel(dir.Path()), (std::vector<std::string>{"md_db1_First", "md_db2_Seventh"}));
    EXPECT_EQ(Names(l), (std::vector<std::string>{"First", "Seventh"}));
    EXPECT_EQ(l.Get(1).HeaderPath, dir.Dir() + "md_db2_Seventh/Models.dat");
    // Nothing but the two renames changed: every file and folder is there, byte for byte.
    EXPECT_EQ(cattest::TreeDigest(dir.Path()),
              cattest::Renamed(before, {{"md_db1", "md_db1_First"}, {"db7", "md_db2_Seventh"}}));
}

TEST(CatalogueScan, LegacyFoldersAreWalkedFromTheLastInListingOrder) {
    TempDir dir;
    // Case-insensitive order: db1, db10, DB2; walked backwards they take 1, 2, 3.
    Client(dir, "db1", "one");
    Client(dir, "db10", "ten");
    Client(dir, "DB2", "two");
    Client(dir, "md_db2", "taken");  // number 2 is in use
    const auto before = cattest::TreeDigest(dir.Path());
    kv::TProjHdrLst l(dir.Dir(), "", 0, kv::kDefaultLibrarySettings);
    l.Load(true);
    EXPECT_EQ(cattest::TopLevel(dir.Path()),
              (std::vector<std::string>{"md_db1_two", "md_db2_taken", "md_db3_ten", "md_db4_one"}));
    EXPECT_EQ(Names(l), (std::vector<std::string>{"two", "taken", "ten", "one"}));
    EXPECT_EQ(cattest::TreeDigest(dir.Path()),
              cattest::Renamed(before, {{"DB2", "md_db1_two"}, {"md_db2", "md_db2_taken"}, {"db10", "md_db3_ten"},
                                        {"db1", "md_db4_one"}}));
}

TEST(CatalogueScan, OtherProductsAndFilesAreLeftAlone) {
    TempDir dir;
    Client(dir, "bs_db1", "Corp", 1);
    Client(dir, "md_db1_Person", "Person", 0);
    cattest::WriteBytes(dir.Path() / "db5", {1, 2, 3});       // a file, not a folder
    cattest::WriteBytes(dir.Path() / "md_db9", {4, 5});       // likewise
    fs::create_directories(dir.Path() / "xdb1");             // does not match db*
    fs::create_directories(dir.Path() / "md_xdb1");          // does not match md_db*
    const auto before = cattest::TreeDigest(dir.Path());
    for (int kind : {0, 1, 2}) {
        kv::TProjHdrLst l(dir.Dir(), "", std::uint8_t(kind), kv::kDefaultLibrarySettings);
        l.Load(true);
        const std::vector<std::vector<std::string>> expected = {{"Person"}, {"Corp"}, {}};
        EXPECT_EQ(Names(l), expected[std::size_t(kind)]) << kind;
    }
    EXPECT_EQ(cattest::TreeDigest(dir.Path()), cattest::Renamed(before, {{"bs_db1", "bs_db1_Corp"}}));
}

TEST(CatalogueScan, AnExistingTargetIsNeverReplaced) {
    TempDir dir;
    Client(dir, "md_db3_Old", "Alice");
    Client(dir, "md_db3_Alice", "Alice");    // the target exists as a client folder
    Client(dir, "md_db4_x", "Bob");
    cattest::WriteBytes(dir.Path() / "md_db4_Bob", {9});  // the target exists as a file
    Client(dir, "md_db5_x", "carol");
    Client(dir, "md_db5_CAROL", "CAROL");        // the target differs from it only in case
    Client(dir, "md_db6_dave", "DAVE");
    Client(dir, "md_db6_DAVE", "DAVE");          // a case-only rename onto an existing folder
    Client(dir, "db1", "Eve");
    Client(dir, "MD_DB1", "Mia");                // number 1 is taken, whatever the case
    const auto before = cattest::TreeDigest(dir.Path());
    kv::TProjHdrLst l(dir.Dir(), "", 0, kv::kDefaultLibrarySettings);
    l.Load(true);
    EXPECT_EQ(cattest::TreeDigest(dir.Path()),
              cattest::Renamed(before, {{"db1", "md_db2_Eve"}, {"MD_DB1", "MD_DB1_Mia"}}));
    EXPECT_EQ(Names(l), (std::vector<std::string>{"Mia", "Eve", "Alice", "Alice", "Bob", "CAROL", "carol", "DAVE", "DAVE"}));
}

TEST(CatalogueScan, AnEmptyFolderIsNotReplacedEither) {
    // A plain rename(2) would replace an empty directory; the rename must not.
    TempDir dir;
    Client(dir, "md_db6_dave", "DAVE");
    fs::create_directories(dir.Path() / "md_db6_DAVE");
    const auto before = cattest::TreeDigest(dir.Path());
    kv::TProjHdrLst l(dir.Dir(), "", 0, kv::kDefaultLibrarySettings);
    // The empty folder has no header, which fails the load once the renames are done.
    EXPECT_THROW(l.Load(true), kv::EInOutError);
    EXPECT_EQ(cattest::TreeDigest(dir.Path()), before);
}

TEST(CatalogueScan, AFailedRenameIsIgnored) {
    TempDir dir;
    // A name too long for a folder name makes the rename fail.
    Client(dir, "md_db1", std::string(250, 'L'));
    Client(dir, "md_db2", "Short");
    const auto before = cattest::TreeDigest(dir.Path());
    kv::TProjHdrLst l(dir.Dir(), "", 0, kv::kDefaultLibrarySettings);
    EXPECT_NO_THROW(l.Load(true));
    EXPECT_EQ(Names(l), (std::vector<std::string>{std::string(250, 'L'), "Short"}));
    EXPECT_EQ(l.Get(0).Folder, "md_db1/");
    EXPECT_EQ(cattest::TreeDigest(dir.Path()), cattest::Renamed(before, {{"md_db2", "md_db2_Short"}}));
}

TEST(CatalogueScan, ListingOrderIgnoresAsciiCase) {
    TempDir dir;
    const std::vector<std::pair<std::string, std::string>> folders = {
        {"md_dbZ_zed", "zed"}, {"MD_DBa_alpha", "alpha"}, {"md_dbB_beta", "beta"}, {"Md_db__", "_"}, {"md_db1_one", "one"}};
    for (const auto& [folder, name] : folders) Client(dir, folder, name);
    kv::TProjHdrLst l(dir.Dir(), "", 0, kv::kDefaultLibrarySettings);
    l.Load(true);
    // Byte order would put the capitals first, and "_" after them; compared
    // with letters lowered (as strcasecmp does), "_" comes before every letter.
    EXPECT_EQ(Folders(l),
              (std::vector<std::string>{"md_db1_one/", "Md_db__/", "MD_DBa_alpha/", "md_dbB_beta/", "md_dbZ_zed/"}));
}

TEST(CatalogueScan, AHeaderThatCannotBeReadFailsTheLoadNamingTheFile) {
    struct Case {
        std::string what;
        std::vector<std::uint8_t> bytes;  // empty: no Models.dat at all
        std::string key;
    };
    const std::vector<Case> cases = {
        {"missing", {}, ""},
        {"truncated", {5, 'A', 'b'}, ""},
        {"wrong key", {1}, "wrong"},
    };
    for (const auto& c : cases) {
        TempDir dir;
        Client(dir, "md_db1_Good", "Good");
        fs::create_directories(dir.Path() / "md_db2_Bad");
        const std::string path = dir.Dir() + "md_db2_Bad/Models.dat";
        if (c.what == "wrong key") {
            cattest::SettingsGuard key("right");
            kv::TClientFileSpec clientFile;
            clientFile.Name = "Bad";
            clientFile.Protected = true;
            kv::WriteClientFolder(dir.Dir(), "md_db2_Bad", 0, clientFile, key);
        } else if (!c.bytes.empty()) {
            cattest::WriteBytes(path, c.bytes);
        }
        cattest::SettingsGuard key(c.key);
        kv::TProjHdrLst l(dir.Dir(), "", 0, key);
        try {
            l.Load(true);
            ADD_FAILURE() << c.what;
        } catch (const kv::EKvError& e) {
            EXPECT_NE(std::string(e.what()).find(path), std::string::npos) << c.what << ": " << e.what();
            if (c.what == "wrong key") {
                EXPECT_NE(dynamic_cast<const kv::EInvalidData*>(&e), nullptr);
            }
        }
    }
}

TEST(CatalogueScan, ProtectedFoldersWithoutAKeyAreSetAsideAndNotRenamed) {
    TempDir dir;
    Client(dir, "md_db1_Zed", "Zed");
    Client(dir, "md_db3_Amy", "Amy");
    {
        cattest::SettingsGuard key("right");
        kv::TClientFileSpec clientFile;
        clientFile.Name = "Locked";
        clientFile.Protected = true;
        kv::WriteClientFolder(dir.Dir(), "md_db2", 0, clientFile, key);   // would be renamed with a key
        kv::WriteClientFolder(dir.Dir(), "md_db0_Old", 0, clientFile, key);
    }
    cattest::SettingsGuard noKey;
    kv::TProjHdrLst l(dir.Dir(), "", 0, noKey);
    l.Load(false);
    EXPECT_EQ(Names(l), (std::vector<std::string>{"Zed", "Amy"}));
    EXPECT_EQ(l.Locked(), (std::vector<std::string>{"md_db0_Old", "md_db2"}));
    EXPECT_TRUE(fs::is_directory(dir.Path() / "md_db2"));
}

TEST(CatalogueScan, AlternateDirectoryCopyIsReadUnlessForbidden) {
    TempDir data, alt;
    Client(data, "md_db1_Carl", "Carl");
    Client(alt, "md_db1_Carl", "Carl");
    kv::TProjHdr newer(0, "Models.dat", "md_db1_Carl", alt.Dir(), kv::kDefaultLibrarySettings);
    newer.LoadHeader();
    for (bool forbid : {false, true}) {
        cattest::SettingsGuard guard;
        guard.settings.ForbidAltDir = forbid;
        kv::TProjHdrLst l(data.Dir(), alt.Dir(), 0, guard);
        l.Load(false);
        ASSERT_EQ(l.Count(), 1);
        EXPECT_EQ(l.Get(0).BaseDir, forbid ? data.Dir() : alt.Dir());
    }
    // Step 3 lists a folder named "_db" of the alternate directory first.
    Client(alt, "_db", "Underscore");
    kv::TProjHdrLst l(data.Dir(), alt.Dir(), 0, kv::kDefaultLibrarySettings);
    l.Load(true);
    EXPECT_EQ(Names(l), (std::vector<std::string>{"Underscore", "Carl"}));
    l.Load(false);
    EXPECT_EQ(Names(l), (std::vector<std::string>{"Carl"}));
}

} // namespace
