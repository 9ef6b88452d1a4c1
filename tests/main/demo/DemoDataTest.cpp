// The demo data root, written once and read back the way the import reads a
// product: scan of the data directory, header and solution list, chart of
// accounts from the core folder, model, party lists and ownership lookups.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "KvSettings.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "demo/DemoData.h"
#include "import/ImportSession.h"
#include "entries/KvFnEntries.h"
#include "files/KvAnsi.h"
#include "items/KvFnItemClasses.h"
#include "items/KvFnPortfolio.h"
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

struct Product {
    const char* Dir;
    std::uint8_t Kind;
};
const Product kProducts[] = {{"Meridel", 0}, {"Basalto", 1}, {"Quorren", 2}};

std::uint8_t KindOf(const std::string& dir) {
    for (const Product& p : kProducts)
        if (dir == p.Dir) return p.Kind;
    throw std::runtime_error("unknown product " + dir);
}

// One result-list entry: account kind text and whole amount.
struct Entry {
    std::string Kind;
    std::int32_t Amount;
    bool operator==(const Entry&) const = default;
};

std::ostream& operator<<(std::ostream& o, const Entry& e) { return o << e.Kind << ":" << e.Amount; }

// A loaded solution and everything it rests on, as the dialog keeps them.
struct Opened {
    std::unique_ptr<kv::TProjHdrLst> Files;
    kv::TModelLists Lists;
    std::unique_ptr<kv::TEntries> Chart;
    std::unique_ptr<kv::TModelData> Model;
};

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
    void SetUp() override {
        saved_ = kv::ProgramSettings();
        kv::ProgramSettings().ClientFileKey = tessary::kDemoClientKey;
    }
    void TearDown() override { kv::ProgramSettings() = saved_; }

    static fs::path Data(const std::string& product) { return root_ / product / "Data"; }
    static fs::path Core(const std::string& product) { return root_ / product / "Core"; }

    static Opened Open(const std::string& product, const std::string& file, const std::string& solution) {
        const std::uint8_t kind = KindOf(product);
        Opened o;
        o.Files = std::make_unique<kv::TProjHdrLst>(Data(product).string(), "", kind);
        o.Files->Load(false);
        kv::TProjHdr* hdr = o.Files->FindByName(file);
        if (!hdr) throw std::runtime_error("no client file " + file);
        o.Lists = hdr->Load(true);
        const std::int32_t index = o.Lists.Main->FindByDisplayName(solution);
        if (index < 0) throw std::runtime_error("no solution " + solution);
        o.Chart = std::make_unique<kv::TEntries>(kind, (Core(product) / "Entries.dat").string());
        o.Chart->Load(false);
        o.Model = std::make_unique<kv::TModelData>(kind, &o.Lists.Main->Get(index), o.Lists.Main.get(),
                                                   o.Lists.Main.get(), nullptr,
                                                   o.Lists.Main->Path(index) + "FinItems.dat", o.Chart.get());
        o.Model->Load();
        return o;
    }

    // The import as the dialog and the command line run it.
    static std::unique_ptr<tessary::TImportSession> Session(const std::string& product, const std::string& file,
                                                            const std::string& solution) {
        auto session = std::make_unique<tessary::TImportSession>(
            tessary::TFolderOverrides{QString::fromStdString(root_.string()), {}, {}});
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

    kv::TProgramSettings saved_;
    static inline std::string tmp_;
    static inline fs::path root_;
};

// ---------------------------------------------------------------- layout

struct FolderCase {
    const char* Product;
    std::set<std::string> Folders;
};
const FolderCase kFolders[] = {
    {"Meridel", {"md_db1_Tremblay", "md_db2_Nguyen", "md_db3_Gagnon"}},
    {"Basalto", {"bs_db1_Côté Holdings"}},
    {"Quorren", {"qr_db1_Fiducie familiale Roy"}},
};

TEST_F(DemoData, TheRootHoldsTheThreeProductsAndNothingElse) {
    EXPECT_EQ(Listing(root_), (std::set<std::string>{"Basalto", "Meridel", "Quorren"}));
    for (const Product& p : kProducts) {
        EXPECT_EQ(Listing(root_ / p.Dir), (std::set<std::string>{"Core", "Data"})) << p.Dir;
        EXPECT_EQ(Listing(Core(p.Dir)), (std::set<std::string>{"Entries.dat", "French.dat"})) << p.Dir;
        // The chart is the one the product expects, version included.
        kv::TEntries chart(p.Kind, (Core(p.Dir) / "Entries.dat").string());
        EXPECT_NO_THROW(chart.Load(true)) << p.Dir;
        for (std::int32_t id : kv::kImportEntryIDs) EXPECT_NE(chart.GetEntryByID(id), nullptr) << p.Dir << " " << id;
    }
}

TEST_F(DemoData, ScanningListsEveryClientFolderAndRenamesNothing) {
    for (const FolderCase& c : kFolders) {
        const std::set<std::string> before = Listing(Data(c.Product));
        EXPECT_EQ(before, c.Folders) << c.Product;
        kv::TProjHdrLst files(Data(c.Product).string(), "", KindOf(c.Product));
        files.Load(false);
        EXPECT_EQ(Listing(Data(c.Product)), before) << c.Product;
        ASSERT_EQ(files.Count(), static_cast<std::int32_t>(c.Folders.size())) << c.Product;
        for (const auto& hdr : files.Items()) {
            // The folder already carries the name the scan would give it.
            const std::string folder = hdr->Folder.substr(0, hdr->Folder.size() - 1);
            const std::string prefix = kv::KindPrefix(KindOf(c.Product)) + "db";
            ASSERT_EQ(folder.rfind(prefix, 0), 0u) << folder;
            EXPECT_EQ(folder.substr(folder.find('_', prefix.size()) + 1), hdr->Name) << folder;
        }
    }
}

struct HeaderCase {
    const char* Product;
    const char* File;
    bool Protected;
    std::vector<std::string> Solutions;
};
const HeaderCase kHeaders[] = {
    {"Meridel", "Tremblay", false, {"Current plan", "Retirement at 60"}},
    {"Meridel", "Nguyen", false, {"Plan 2019"}},
    {"Meridel", "Gagnon", true, {"Current plan"}},
    {"Basalto", "Côté Holdings", false, {"Current plan"}},
    {"Quorren", "Fiducie familiale Roy", false, {"Current plan"}},
};

TEST_F(DemoData, HeadersAndSolutionLists) {
    for (const HeaderCase& c : kHeaders) {
        kv::TProjHdrLst files(Data(c.Product).string(), "", KindOf(c.Product));
        files.Load(false);
        kv::TProjHdr* hdr = files.FindByName(c.File);
        ASSERT_NE(hdr, nullptr) << c.File;
        EXPECT_EQ(hdr->IsProtected(), c.Protected) << c.File;
        EXPECT_FALSE(hdr->HideNames()) << c.File;
        EXPECT_GT(hdr->Date, 0) << c.File;
        const kv::TModelLists lists = hdr->Load(true);
        ASSERT_TRUE(lists.Main && lists.Needs) << c.File;
        EXPECT_EQ(lists.Needs->Count(), 0) << c.File;
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < lists.Main->Count(); ++i) {
            names.push_back(lists.Main->DisplayName(i));
            EXPECT_TRUE(fs::is_regular_file(lists.Main->Path(i) + "FinItems.dat")) << lists.Main->Path(i);
            EXPECT_FALSE(fs::exists(lists.Main->Path(i) + "~FinItems.dat")) << lists.Main->Path(i);
        }
        EXPECT_EQ(names, c.Solutions) << c.File;
    }
}

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
    {"Meridel", "Tremblay", "Retirement at 60", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, false},
    {"Meridel", "Nguyen", "Plan 2019", kv::TFileLayout::Sequential, 40000, false},
    {"Meridel", "Gagnon", "Current plan", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, true},
    {"Basalto", "Côté Holdings", "Current plan", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, false},
    {"Quorren", "Fiducie familiale Roy", "Current plan", kv::TFileLayout::Sectioned, kv::kCurrentFileVersion, false},
};

TEST_F(DemoData, LayoutsAndVersions) {
    for (const LayoutCase& c : kLayouts) {
        const Opened o = Open(c.Product, c.File, c.Solution);
        EXPECT_EQ(o.Model->Layout(), c.Layout) << c.File << " / " << c.Solution;
        EXPECT_EQ(o.Model->Version(), c.Version) << c.File << " / " << c.Solution;
        EXPECT_EQ(o.Model->NamesEncrypted(), c.NamesEncrypted) << c.File << " / " << c.Solution;
        EXPECT_EQ(o.Model->Header.Title, c.Solution) << c.File;
        // Party names are stored enciphered exactly when the model enciphers.
        const std::string bytes = ReadAll(o.Model->Path());
        const std::string name = kv::Utf8ToAnsi(o.Model->Participants().front()->LastName);
        EXPECT_EQ(bytes.find(name) == std::string::npos, c.NamesEncrypted) << c.File << " " << name;
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

struct ClassCase {
    const char* Product;
    const char* File;
    const char* Party;
    const char* Class;
};
const ClassCase kPartyClasses[] = {
    {"Basalto", "Côté Holdings", "Côté Holdings Inc.", "TCorporation"},
    {"Basalto", "Côté Holdings", "Paul Côté", "TCorpParticipant"},
    {"Quorren", "Fiducie familiale Roy", "Fiducie familiale Roy", "TTrust"},
    {"Quorren", "Fiducie familiale Roy", "Camille Roy", "TCorpParticipant"},
    {"Quorren", "Fiducie familiale Roy", "Denis Roy", "TParticipant"},
    {"Meridel", "Tremblay", "Émilie Tremblay", "TParticipant"},
};

TEST_F(DemoData, PartiesReadBackAsTheirClasses) {
    for (const ClassCase& c : kPartyClasses) {
        const Opened o = Open(c.Product, c.File, "Current plan");
        const kv::TParticipant* p = o.Model->GetParticipantByName(c.Party);
        ASSERT_NE(p, nullptr) << c.Party;
        EXPECT_STREQ(p->ClassName(), c.Class) << c.Party;
    }
}

struct FactorCase {
    const char* Product;
    const char* File;
    const char* Party;
    const char* Holder;
    double Factor;
};
const FactorCase kFactors[] = {
    {"Basalto", "Côté Holdings", "Côté Holdings Inc.", "Paul Côté", 0.6},
    {"Basalto", "Côté Holdings", "Côté Holdings Inc.", "Sophie Côté", 0.4},
    {"Basalto", "Côté Holdings", "Côté Holdings Inc.", "All Shareholders", 1.0},
    {"Quorren", "Fiducie familiale Roy", "Fiducie familiale Roy", "Isabelle Roy", 0.5},
    {"Quorren", "Fiducie familiale Roy", "Fiducie familiale Roy", "Mathieu Roy", 0.3},
    {"Quorren", "Fiducie familiale Roy", "Fiducie familiale Roy", "Camille Roy", 0.2},
    {"Quorren", "Fiducie familiale Roy", "Fiducie familiale Roy", "All Beneficiaries", 1.0},
};

TEST_F(DemoData, ShareAndCapitalFactors) {
    for (const FactorCase& c : kFactors) {
        const auto session = Session(c.Product, c.File, "Current plan");
        const kv::TParticipant* party = Find(session->Parties(), c.Party);
        ASSERT_NE(party, nullptr) << c.Party;
        EXPECT_DOUBLE_EQ(session->Factor(party, Find(session->Holders(), c.Holder)), c.Factor) << c.Holder;
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

// ---------------------------------------------------------------- protection

TEST_F(DemoData, TheProtectedFileNeedsTheDemoKey) {
    const std::string data = Data("Meridel").string();
    const std::string header = (Data("Meridel") / "md_db3_Gagnon" / "Models.dat").string();

    kv::ProgramSettings().ClientFileKey.clear();
    kv::TProjHdrLst files(data, "", 0);
    try {
        files.Load(false);
        ADD_FAILURE() << "scanned without a key";
    } catch (const kv::EKeyMissing& e) {
        EXPECT_STREQ(e.what(), "Client file \"Gagnon\" is protected and no client-file key is configured.");
    }
    kv::TProjHdr hdr(0, kv::ModelsFileName, "md_db3_Gagnon", data);
    EXPECT_THROW(hdr.LoadHeader(), kv::EKeyMissing);

    kv::ProgramSettings().ClientFileKey = "not-the-demo-key";
    EXPECT_THROW(hdr.LoadHeader(), kv::EInvalidData);

    kv::ProgramSettings().ClientFileKey = tessary::kDemoClientKey;
    hdr.LoadHeader();
    EXPECT_EQ(hdr.KeySeed, "gagnon-7f3a");
    EXPECT_EQ(hdr.Text1, "Catherine Lavoie, CFP");
    const Opened o = Open("Meridel", "Gagnon", "Current plan");
    EXPECT_EQ(o.Model->PrincParty()->FullName(), "Julie Gagnon");
    // Nothing of the scans above renamed anything.
    EXPECT_EQ(Listing(Data("Meridel")), kFolders[0].Folders);
}

// ---------------------------------------------------------------- refusal

struct RootCase {
    const char* Name;
    void (*Prepare)(const fs::path& root);   // nullptr: root does not exist
    bool Writes;
};

void WithFile(const fs::path& root) {
    fs::create_directories(root);
    std::ofstream(root / "notes.txt") << "keep me";
}
void WithEmptyFolder(const fs::path& root) { fs::create_directories(root / "Meridel"); }
void AsFile(const fs::path& root) { std::ofstream(root) << "keep me"; }
void AsEmptyFolder(const fs::path& root) { fs::create_directories(root); }

const RootCase kRoots[] = {
    {"missing", nullptr, true},
    {"empty folder", AsEmptyFolder, true},
    {"folder holding a file", WithFile, false},
    {"folder holding a folder", WithEmptyFolder, false},
    {"regular file", AsFile, false},
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
        kv::ProgramSettings().ClientFileKey = "adviser-key";
        if (c.Writes) {
            EXPECT_NO_THROW(tessary::WriteDemoData(root.string())) << c.Name;
            EXPECT_EQ(Listing(root), Listing(root_)) << c.Name;
        } else {
            EXPECT_THROW(tessary::WriteDemoData(root.string()), kv::EKvError) << c.Name;
            EXPECT_EQ(Snapshot(root), before) << c.Name;
        }
        EXPECT_EQ(kv::ProgramSettings().ClientFileKey, "adviser-key") << c.Name;
    }
    EXPECT_THROW(tessary::WriteDemoData(""), kv::EKvError);
    std::error_code ec;
    fs::remove_all(tmp, ec);
}

TEST_F(DemoData, TwoWritesGiveTheSameFilesApartFromEncipheredTexts) {
    // Plain client files are byte for byte reproducible; the protected one
    // carries random salts and padding.
    const std::string tmp = MakeTempDir();
    const fs::path again = fs::path(tmp) / "demo";
    tessary::WriteDemoData(again.string());
    const auto a = Snapshot(root_);
    const auto b = Snapshot(again);
    ASSERT_EQ(a.size(), b.size());
    int differing = 0;
    for (const auto& [name, bytes] : a) {
        ASSERT_TRUE(b.count(name)) << name;
        const bool same = b.at(name) == bytes;
        const bool isProtected = name.find("md_db3_Gagnon") != std::string::npos;
        if (!isProtected || name.find(".dat") == std::string::npos) {
            EXPECT_TRUE(same) << name;
        }
        differing += same ? 0 : 1;
    }
    EXPECT_GT(differing, 0);   // the protected file is enciphered afresh
    std::error_code ec;
    fs::remove_all(tmp, ec);
}

} // namespace
