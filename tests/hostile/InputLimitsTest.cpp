// Inputs that must be refused before they cost anything: special files in
// place of the library's files, key seeds and enciphered texts of absurd
// length; and client names that no folder name may carry.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "KvErrors.h"
#include "KvSettings.h"
#include "TestFiles.h"
#include "catalogue/KvCatalogueFixture.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "demo/DemoData.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"
#include "files/KvFnCipher.h"
#include "model/KvFnModelData.h"

namespace fs = std::filesystem;

namespace {

using kvtest::TempDir;

// The message of the library error f throws, or "" when it throws none.
std::string ErrorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const kv::EKvError& e) {
        return e.what();
    }
    return "";
}

// ------------------------------------------------------------ special files

enum class Special { Fifo, DevZero, Folder };

struct SpecialCase {
    const char* Target;   // relative to the demo root
    Special Kind;
};

void PrintTo(const SpecialCase& c, std::ostream* os) { *os << c.Target << " " << int(c.Kind); }

class SpecialFiles : public ::testing::TestWithParam<SpecialCase> {};

// Each file the import reads, replaced by a FIFO that no one writes (opening
// it for reading would wait for ever), a link to /dev/zero (endless) or a
// folder: a refusal that names the file.
TEST_P(SpecialFiles, AreRefusedByName) {
    const SpecialCase& c = GetParam();
    TempDir root;
    tessary::WriteDemoData(root.Path().string());
    kv::TLibrarySettings settings;
    settings.ClientFileKey = tessary::kDemoClientKey;   // the listing reads the protected one too
    const fs::path data = root.Path() / "Meridel" / "Data";
    const fs::path core = root.Path() / "Meridel" / "Core";
    const fs::path target = root.Path() / c.Target;
    fs::remove(target);
    if (target.filename() == "~FinItems.dat") fs::remove(target.parent_path() / "FinItems.dat");
    switch (c.Kind) {
    case Special::Fifo: ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0); break;
    case Special::DevZero: fs::create_symlink("/dev/zero", target); break;
    case Special::Folder: fs::create_directory(target); break;
    }

    std::function<void()> load;
    const std::string name = target.filename().string();
    if (name == "Models.dat") {
        load = [&] { kv::TProjHdrLst(data.string(), "", 0, settings).Load(false); };
    } else if (name == "Entries.dat" || name == "French.dat") {
        load = [&] {
            kv::TEntries chart(0, (core / "Entries.dat").string());
            chart.Load(true);
        };
    } else {
        load = [&] {
            auto chart = kv::MakeDemoChart(0, "/nonexistent/Entries.dat");
            kv::TModelData m(0, nullptr, nullptr, nullptr, nullptr, (target.parent_path() / "FinItems.dat").string(),
                             chart.get(), settings);
            m.Load();
        };
    }
    const std::string error = ErrorOf(load);
    EXPECT_NE(error.find(target.string()), std::string::npos) << error;
    EXPECT_NE(error.find(c.Kind == Special::Folder ? "Is a directory" : "not a regular file"), std::string::npos) << error;
}

INSTANTIATE_TEST_SUITE_P(Readers, SpecialFiles, ::testing::ValuesIn([] {
    std::vector<SpecialCase> cases;
    for (const char* t : {"Meridel/Data/md_db1_Tremblay/Models.dat", "Meridel/Data/md_db1_Tremblay/Main/FinItems.dat",
                          "Meridel/Data/md_db1_Tremblay/Main/~FinItems.dat", "Meridel/Core/Entries.dat",
                          "Meridel/Core/French.dat"})
        for (Special k : {Special::Fifo, Special::DevZero, Special::Folder}) cases.push_back({t, k});
    return cases;
}()));

// ------------------------------------------------------------ key seeds

// A protected client file with a seed of n bytes. The writer refuses seeds
// beyond the limit, so a longer one is made by lengthening a written one.
fs::path ClientWithSeed(const fs::path& base, std::size_t n, const kv::TLibrarySettings& settings) {
    kv::TClientFileSpec clientFile;
    clientFile.Name = "Seeded";
    clientFile.Protected = true;
    clientFile.Solutions = 2;
    clientFile.KeySeed = std::string(std::min(n, kv::MaxKeySeedBytes), 'k');
    const fs::path header = kv::WriteClientFolder(base.string(), "md_db1", 0, clientFile, settings);
    if (n > kv::MaxKeySeedBytes) {
        kvtest::Bytes b = kvtest::ReadBytes(header);
        const std::size_t record2 = 1 + std::size_t(static_cast<unsigned char>(b[0]));   // after record 1 (ShortStr)
        const auto at = std::search(b.begin(), b.end(), clientFile.KeySeed.begin(), clientFile.KeySeed.end());
        b.insert(at, n - kv::MaxKeySeedBytes, 'k');
        std::int32_t length;
        std::memcpy(&length, b.data() + record2, 4);
        length += std::int32_t(n - kv::MaxKeySeedBytes);
        std::memcpy(b.data() + record2, &length, 4);
        kvtest::WriteBytes(header, b);
    }
    return header;
}

TEST(KeySeeds, UpToTheLimitLoadBeyondItAreRefused) {
    kv::TLibrarySettings settings;
    settings.ClientFileKey = "configured";
    for (std::size_t n : {std::size_t(0), std::size_t(40), kv::MaxKeySeedBytes, kv::MaxKeySeedBytes + 1,
                          std::size_t(100) << 10}) {
        TempDir dir;
        const fs::path header = ClientWithSeed(dir.Path(), n, settings);
        kv::TProjHdr hdr(0, kv::ModelsFileName, "md_db1", dir.Path().string(), settings);
        std::string error;
        kv::TModelLists lists;
        error = ErrorOf([&] { lists = hdr.Load(true); });
        if (n <= kv::MaxKeySeedBytes) {
            EXPECT_EQ(error, "") << n;
            ASSERT_TRUE(lists.Main);
            EXPECT_EQ(lists.Main->DisplayName(1), "Solution 2") << n;   // deciphered with the seed
        } else {
            EXPECT_NE(error.find(header.string()), std::string::npos) << error;
            EXPECT_NE(error.find("key seed of " + std::to_string(n) + " bytes"), std::string::npos) << error;
        }
    }
    // Lists and solutions that carry a seed of their own check it too.
    EXPECT_NE(ErrorOf([&] { (void)kv::RunTimeKey(settings, "Seeded", std::string(kv::MaxKeySeedBytes + 1, 'k')); })
                  .find("Client file \"Seeded\""),
              std::string::npos);
}

// ------------------------------------------------------------ enciphered texts

TEST(EncipheredTexts, BeyondTheLimitAreRefusedBeforeDeciphering) {
    const std::size_t n = kv::MaxEncipheredText + 1;
    std::vector<std::uint8_t> bytes(4 + n, 'A');
    const auto count = static_cast<std::int32_t>(n);
    std::memcpy(bytes.data(), &count, 4);
    auto r = kv::TBufReadFile::FromBytes(std::move(bytes), "huge.dat");
    const std::string error = ErrorOf([&] { (void)r.ReadEncryptStr("key", true); });
    EXPECT_NE(error.find("huge.dat"), std::string::npos) << error;
    EXPECT_NE(error.find("at most 8 MiB"), std::string::npos) << error;
    EXPECT_NE(ErrorOf([&] { (void)kv::DecipherBytes(std::string(n, 'A'), "key"); }).find("8 MiB"), std::string::npos);
    // At the limit a text is deciphered (and here, being no real text, fails its check).
    EXPECT_EQ(ErrorOf([&] { (void)kv::DecipherBytes(std::string(kv::MaxEncipheredText, 'A'), "key"); }),
              "Invalid data");
}

// ------------------------------------------------------------ folder names

TEST(ClientFolderNames, HoldNothingThatSomePlatformRefuses) {
    const struct { const char* name; const char* folder; } cases[] = {
        {"Tremblay", "md_db1_Tremblay"},
        {"Côté & fils", "md_db1_Côté & fils"},
        {"Two\nLines", "md_db1_Two_Lines"},
        {"a\\b/c:d*e?f\"g<h>i|j", "md_db1_a_b_c_d_e_f_g_h_i_j"},
        {"tab\tcr\rdel\x7f" "c1\xC2\x81" "end", "md_db1_tab_cr_del_c1_end"},   // U+0081 survives the code page
    };
    for (const auto& c : cases) {
        TempDir dir;
        kv::TClientFileSpec clientFile;
        clientFile.Name = c.name;
        kv::WriteClientFolder(dir.Path().string(), "md_db1", 0, clientFile);
        kv::TProjHdrLst list(dir.Path().string(), "", 0, kv::kDefaultLibrarySettings);
        list.Load(false);
        ASSERT_EQ(list.Count(), 1);
        EXPECT_EQ(list.Get(0).Name, c.name);
        EXPECT_EQ(list.Get(0).Folder, std::string(c.folder) + "/");
        EXPECT_TRUE(fs::is_directory(dir.Path() / c.folder)) << c.folder;
    }
}

} // namespace
