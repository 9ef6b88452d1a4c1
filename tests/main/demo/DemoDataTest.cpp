// The demo data root, written once and read back through the import session
// the dialog and the command line share; the writer's refusals.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "TestFiles.h"
#include "KvSettings.h"
#include "demo/DemoData.h"
#include "import/ImportSession.h"
#include "files/KvAnsi.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

namespace {

namespace fs = std::filesystem;

std::set<std::string> Listing(const fs::path& dir) {
    std::set<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.insert(e.path().filename().string());
    return names;
}

std::uint8_t KindOf(const std::string& product) {
    return product == "Meridel" ? 0 : product == "Basalto" ? 1 : 2;
}

class DemoData : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        tmp_ = std::make_unique<kvtest::TempDir>();
        root_ = tmp_->Path() / "demo";
        tessary::WriteDemoData(root_.string());
    }
    static void TearDownTestSuite() { tmp_.reset(); }
    // The import as the dialog and the command line run it.
    static std::unique_ptr<tessary::TImportSession> Session(const std::string& product, const std::string& file,
                                                            const std::string& solution) {
        kv::TLibrarySettings settings = tessary::TodaysLibrarySettings();
        settings.ClientFileKey = tessary::kDemoClientKey;
        auto session = std::make_unique<tessary::TImportSession>(
            tessary::TFolderOverrides{QString::fromStdString(root_.string()), {}, {}}, settings);
        session->ChooseProduct(KindOf(product));
        session->ChooseFile(session->FindFile(QString::fromStdString(file)));
        session->ChooseSolution(session->FindSolution(QString::fromStdString(solution)));
        if (!session->Model()) throw std::runtime_error("cannot open " + file + " / " + solution);
        return session;
    }
    static std::vector<std::string> Names(const std::vector<kv::TParticipant*>& parties) {
        std::vector<std::string> names;
        for (const kv::TParticipant* p : parties) names.push_back(p->FullName());
        return names;
    }

    static inline std::unique_ptr<kvtest::TempDir> tmp_;
    static inline fs::path root_;
};

// ---------------------------------------------------------------- layouts

struct LayoutCase {
    const char* Product;
    const char* File;
    const char* Solution;
    kv::TFileLayout Layout;
    std::int32_t Version;
    bool NamesEncrypted;
};
const LayoutCase kLayouts[] = {
    {"Meridel", "Tremblay", "Current plan", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, false},
    {"Meridel", "Nguyen", "Plan 2019", kv::TFileLayout::Sequential, 40000, false},
    {"Meridel", "Gagnon", "Current plan", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, true},
    {"Basalto", "Côté Holdings", "Current plan", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, false},
};

TEST_F(DemoData, LayoutsAndVersions) {
    for (const LayoutCase& c : kLayouts) {
        const auto session = Session(c.Product, c.File, c.Solution);
        const kv::TModelData& m = *session->Model();
        EXPECT_EQ(m.Layout(), c.Layout) << c.File;
        EXPECT_EQ(m.Version(), c.Version) << c.File;
        EXPECT_EQ(m.NamesEncrypted(), c.NamesEncrypted) << c.File;
        // Party names are stored enciphered exactly when the model enciphers.
        const std::string name = kv::Utf8ToAnsi(m.Participants().front()->LastName);
        const kvtest::Bytes file = kvtest::ReadBytes(m.Path());
        EXPECT_EQ(std::string(file.begin(), file.end()).find(name) == std::string::npos, c.NamesEncrypted) << c.File << " " << name;
    }
}

// ---------------------------------------------------------------- parties

struct PartyCase {
    const char* Product;
    const char* File;
    const char* Solution;
    std::vector<std::string> Parties;
    std::vector<std::string> Holders;
};
const PartyCase kPartyLists[] = {
    {"Meridel", "Tremblay", "Current plan", {"Marie Tremblay", "Luc Tremblay"}, {}},
    {"Meridel", "Tremblay", "Retirement at 60", {"Marie Tremblay", "Luc Tremblay"}, {}},
    {"Meridel", "Nguyen", "Plan 2019", {"Lan Nguyen"}, {}},
    {"Meridel", "Gagnon", "Current plan", {"Julie Gagnon", "Marc Gagnon"}, {}},
    {"Basalto", "Côté Holdings", "Current plan", {"Côté Holdings Inc."},
     {"All Shareholders", "Paul Côté", "Sophie Côté"}},
    {"Quorren", "Fiducie familiale Roy", "Current plan", {"Fiducie familiale Roy"},
     {"All Beneficiaries", "Isabelle Roy", "Mathieu Roy", "Camille Roy"}},
};

TEST_F(DemoData, TheDialogListsThePartiesAndHolders) {
    for (const PartyCase& c : kPartyLists) {
        const auto session = Session(c.Product, c.File, c.Solution);
        EXPECT_EQ(Names(session->Parties()), c.Parties) << c.File << " / " << c.Solution;
        std::vector<std::string> holders = Names(session->Holders());
        if (session->HolderListShown()) holders.insert(holders.begin(), session->HolderFirstText().toStdString());
        EXPECT_EQ(holders, c.Holders) << c.File << " / " << c.Solution;
    }
}

// ---------------------------------------------------------------- refusal

struct RootCase {
    const char* Name;
    void (*Prepare)(const fs::path& root);   // nullptr: root does not exist
    bool Writes;
};

const RootCase kRoots[] = {
    {"missing", nullptr, true},
    {"empty folder", [](const fs::path& root) { fs::create_directories(root); }, true},
    {"folder holding a file", [](const fs::path& root) {
         fs::create_directories(root);
         std::ofstream(root / "notes.txt") << "keep me";
     },
     false},
    {"folder holding a folder", [](const fs::path& root) { fs::create_directories(root / "Meridel"); }, false},
    {"regular file", [](const fs::path& root) { std::ofstream(root) << "keep me"; }, false},
};

std::map<std::string, std::string> Snapshot(const fs::path& root) {
    if (fs::is_directory(root)) return kvtest::TreeDigest(root);
    const kvtest::Bytes file = kvtest::ReadBytes(root);   // a missing root reads as no bytes
    return {{"", std::string(file.begin(), file.end())}};
}

TEST_F(DemoData, WritesOnlyIntoAMissingOrEmptyFolder) {
    const kvtest::TempDir tmp;
    int n = 0;
    for (const RootCase& c : kRoots) {
        const fs::path root = tmp.Path() / ("case" + std::to_string(n++)) / "demo";
        fs::create_directories(root.parent_path());
        if (c.Prepare) c.Prepare(root);
        const auto before = Snapshot(root);
        if (c.Writes) {
            EXPECT_NO_THROW(tessary::WriteDemoData(root.string())) << c.Name;
            EXPECT_EQ(Listing(root), Listing(root_)) << c.Name;
        } else {
            EXPECT_THROW(tessary::WriteDemoData(root.string()), kv::EKvError) << c.Name;
            EXPECT_EQ(Snapshot(root), before) << c.Name;
        }
    }
    EXPECT_THROW(tessary::WriteDemoData(""), kv::EKvError);
}

} // namespace
