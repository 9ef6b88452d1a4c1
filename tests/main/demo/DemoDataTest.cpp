// The demo data root, written once and read back through the import session
// the dialog and the command line share; the writer's refusals.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "KvSettings.h"
#include "demo/DemoData.h"
#include "import/ImportSession.h"
#include "files/KvAnsi.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

namespace {

namespace fs = std::filesystem;

std::string MakeTempDir() {
    char tmpl[] = "/tmp/tessary-demo-XXXXXX";
    const char* made = mkdtemp(tmpl);
    if (!made) throw std::runtime_error("mkdtemp failed");
    return made;
}

std::set<std::string> Listing(const fs::path& dir) {
    std::set<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.insert(e.path().filename().string());
    return names;
}

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::uint8_t KindOf(const std::string& product) {
    return product == "Meridel" ? 0 : product == "Basalto" ? 1 : 2;
}

// One result-list entry: account kind text and whole amount.
struct Entry {
    std::string Kind;
    std::int32_t Amount;
    bool operator==(const Entry&) const = default;
};

std::ostream& operator<<(std::ostream& o, const Entry& e) { return o << e.Kind << ":" << e.Amount; }

class DemoData : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        tmp_ = MakeTempDir();
        root_ = fs::path(tmp_) / "demo";
        tessary::WriteDemoData(root_.string());
    }
    static void TearDownTestSuite() {
        std::error_code ec;
        fs::remove_all(tmp_, ec);
    }
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
    static const kv::TParticipant* Find(const std::vector<kv::TParticipant*>& parties, const std::string& name) {
        for (const kv::TParticipant* p : parties)
            if (p->FullName() == name) return p;
        return nullptr;
    }

    static inline std::string tmp_;
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
        EXPECT_EQ(ReadAll(m.Path()).find(name) == std::string::npos, c.NamesEncrypted) << c.File << " " << name;
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

// ---------------------------------------------------------------- import

struct ImportCase {
    const char* Product;
    const char* File;
    const char* Solution;
    const char* Party;
    const char* Holder;   // "" for Meridel; "All ..." for the whole
    std::vector<Entry> Want;
};
// Amounts rounded half to even (62000.50 -> 62000, 241115.50 -> 241116,
// 206172.5 -> 206172, 123703.5 -> 123704); the order is the result list's
// after its sort, which does not keep entries of one kind in model order.
const ImportCase kImports[] = {
    {"Meridel", "Tremblay", "Current plan", "Marie Tremblay", "",
     {{"1", 62000}, {"1", 185400}, {"1", 23481}, {"2", 88612}, {"3", 312450}, {"4", 48915}}},
    {"Meridel", "Tremblay", "Current plan", "Luc Tremblay", "",
     {{"1", 185400}, {"1", 23481}, {"2", 71904}, {"3", 36501}, {"4", 143781}, {"5", 227341}}},
    {"Meridel", "Tremblay", "Retirement at 60", "Marie Tremblay", "",
     {{"1", 68500}, {"1", 178900}, {"1", 23481}, {"2", 95000}, {"3", 325000}, {"4", 48915}}},
    {"Meridel", "Tremblay", "Retirement at 60", "Luc Tremblay", "",
     {{"1", 178900}, {"1", 23481}, {"2", 78400}, {"3", 36501}, {"4", 143781}, {"5", 241116}}},
    {"Meridel", "Nguyen", "Plan 2019", "Lan Nguyen", "", {{"1", 17421}, {"1", 41250}, {"2", 52300}, {"3", 128775}}},
    {"Meridel", "Gagnon", "Current plan", "Julie Gagnon", "", {{"1", 54210}, {"2", 34870}, {"3", 156230}}},
    {"Meridel", "Gagnon", "Current plan", "Marc Gagnon", "", {{"1", 54210}, {"2", 29116}, {"3", 98640}}},
    {"Basalto", "Côté Holdings", "Current plan", "Côté Holdings Inc.", "All Shareholders", {{"1", 150000}, {"1", 842316}}},
    {"Basalto", "Côté Holdings", "Current plan", "Côté Holdings Inc.", "Paul Côté", {{"1", 90000}, {"1", 505389}}},
    {"Basalto", "Côté Holdings", "Current plan", "Côté Holdings Inc.", "Sophie Côté", {{"1", 60000}, {"1", 336926}}},
    {"Quorren", "Fiducie familiale Roy", "Current plan", "Fiducie familiale Roy", "All Beneficiaries",
     {{"1", 58201}, {"1", 412345}, {"1", 96750}}},
    {"Quorren", "Fiducie familiale Roy", "Current plan", "Fiducie familiale Roy", "Isabelle Roy",
     {{"1", 29100}, {"1", 206172}, {"1", 48375}}},
    {"Quorren", "Fiducie familiale Roy", "Current plan", "Fiducie familiale Roy", "Mathieu Roy",
     {{"1", 17460}, {"1", 123704}, {"1", 29025}}},
    {"Quorren", "Fiducie familiale Roy", "Current plan", "Fiducie familiale Roy", "Camille Roy",
     {{"1", 11640}, {"1", 82469}, {"1", 19350}}},
};

TEST_F(DemoData, ImportResultsMatchTheExpectedTables) {
    for (const ImportCase& c : kImports) {
        const auto session = Session(c.Product, c.File, c.Solution);
        const kv::TParticipant* party = Find(session->Parties(), c.Party);
        ASSERT_NE(party, nullptr) << c.Party;
        std::vector<Entry> got;
        for (const tessary::TImportEntry& e : session->Collect(party, Find(session->Holders(), c.Holder)))
            got.push_back({e.KindText, e.Amount});
        EXPECT_EQ(got, c.Want) << c.File << " / " << c.Solution << " / " << c.Party << " / " << c.Holder;
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
    std::map<std::string, std::string> files;
    if (fs::is_regular_file(root)) {
        files[""] = ReadAll(root);
    } else if (fs::is_directory(root)) {
        for (const auto& e : fs::recursive_directory_iterator(root))
            files[fs::relative(e.path(), root).string()] = e.is_regular_file() ? ReadAll(e.path()) : "<dir>";
    }
    return files;
}

TEST_F(DemoData, WritesOnlyIntoAMissingOrEmptyFolder) {
    const std::string tmp = MakeTempDir();
    int n = 0;
    for (const RootCase& c : kRoots) {
        const fs::path root = fs::path(tmp) / ("case" + std::to_string(n++)) / "demo";
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
    std::error_code ec;
    fs::remove_all(tmp, ec);
}

} // namespace
