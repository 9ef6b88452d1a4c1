// The import session over client files changed on disk the way other
// products' files differ from the demo's: other item classes behind the same
// entries, settings spelt differently, values that cannot be whole amounts
// and recovery copies.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <filesystem>
#include <functional>
#include <limits>
#include <map>

#include "KvErrors.h"
#include "KvSettings.h"
#include "demo/DemoData.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "import/ImportSession.h"
#include "items/KvFnPortfolio.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

using namespace tessary;
namespace fs = std::filesystem;
namespace D = kv::DemoEntry;

namespace {

class ImportSession : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        root_ = fs::path(dir_.path().toStdString()) / "root";
        WriteDemoData(root_.string());
        settings_.ClientFileKey = kDemoClientKey;
    }

    fs::path Core(const char* product) const { return root_ / product / "Core"; }

    std::unique_ptr<TImportSession> Open(std::uint8_t kind, const char* file, const char* solution) const {
        auto s = std::make_unique<TImportSession>(TFolderOverrides{QString::fromStdString(root_.string()), {}, {}},
                                                   settings_);
        s->ChooseProduct(kind);
        s->ChooseFile(s->FindFile(QString::fromUtf8(file)));
        s->ChooseSolution(s->FindSolution(QString::fromUtf8(solution)));
        return s;
    }

    // Rewrites the Meridel chart with other classes behind some entries.
    void ReclassEntries(const std::map<std::int32_t, std::int32_t>& classByEntry) const {
        const std::string path = (Core("Meridel") / "Entries.dat").string();
        auto chart = kv::MakeDemoChart(0, path);
        for (const auto& [entry, cls] : classByEntry) chart->GetEntryByID(entry)->ItemClassNo = cls;
        chart->Save(path);
    }

    // Loads a Tremblay solution, lets the case change its items, saves it back.
    void EditTremblay(const std::function<void(kv::TModelData&)>& edit) const {
        auto s = Open(0, "Tremblay", "Current plan");
        edit(*s->Model());
        s->Model()->Save();
    }

    // Sums by account kind of the import for a Tremblay party.
    std::map<std::string, std::int64_t> Sums(const char* party) const {
        auto s = Open(0, "Tremblay", "Current plan");
        std::map<std::string, std::int64_t> sums;
        for (const TImportEntry& e : s->Collect(Party(*s, party), nullptr)) sums[e.KindText] += e.Amount;
        return sums;
    }

    static const kv::TParticipant* Party(const TImportSession& s, const std::string& name) {
        for (const kv::TParticipant* p : s.Parties())
            if (p->FullName() == name) return p;
        return nullptr;
    }

    static kv::TFinItem& Item(kv::TModelData& m, std::int32_t id) {
        for (const auto& item : m.Items())
            if (item->ID == id) return *item;
        throw std::runtime_error("no item " + std::to_string(id));
    }

    QTemporaryDir dir_;
    fs::path root_;
    kv::TLibrarySettings settings_ = TodaysLibrarySettings();
};

// Demo Tremblay, current plan, as the documented table gives it.
const std::map<std::string, std::int64_t> kMarie = {
    {"1", 62000 + 185400 + 23481}, {"2", 88612}, {"3", 312450}, {"4", 48915}};
const std::map<std::string, std::int64_t> kLuc = {
    {"1", 185400 + 23481}, {"2", 71904}, {"3", 36501}, {"4", 143781}, {"5", 227341}};

std::map<std::string, std::int64_t> With(std::map<std::string, std::int64_t> sums, const std::string& kind,
                                         std::int64_t delta) {
    sums[kind] += delta;
    if (sums[kind] == 0) sums.erase(kind);
    return sums;
}

TEST_F(ImportSession, AccountSettingsCountOnlyForTheClassesThatHaveThem) {
    struct Case {
        const char* name;
        std::map<std::int32_t, std::int32_t> classes;   // entry -> item class number
        std::function<void(kv::TModelData&)> edit;       // null: the files as written
        const char* party;
        std::map<std::string, std::int64_t> want;
    };
    const Case cases[] = {
        {"demo as written", {}, nullptr, "Marie Tremblay", kMarie},
        // Item 104 (20,000.00) carries "IsBankingAccount=1"; behind a plain
        // item or a bank account that text is no setting.
        {"banking text on a plain item", {{D::InvestAccount, 0}}, nullptr, "Marie Tremblay", With(kMarie, "1", 20000)},
        {"banking text on a bank account", {{D::InvestAccount, 20}}, nullptr, "Marie Tremblay",
         With(kMarie, "1", 20000)},
        // Item 110 is a locked-in RRSP; its kind is TRRSP's setting.
        {"RRSP kind on a portfolio", {{D::RRSP, 4}}, nullptr, "Luc Tremblay",
         With(With(kLuc, "4", -143781), "3", 143781)},
        {"RRSP kind on a plain item", {{D::RRSP, 0}}, nullptr, "Luc Tremblay",
         With(With(kLuc, "4", -143781), "3", 143781)},
        // Names are case-sensitive: "isBankingAccount" is no setting of a portfolio.
        {"banking setting spelt in lower case", {},
         [](kv::TModelData& m) {
             auto& savings = dynamic_cast<kv::TPortfolio&>(Item(m, 104));
             savings.IsBankingAccountValue = 0;
             savings.SpecProps.Add("isBankingAccount=1");
         },
         "Marie Tremblay", With(kMarie, "1", 20000)},
        {"RRSP kind spelt in lower case", {},
         [](kv::TModelData& m) {
             auto& rrsp = dynamic_cast<kv::TRRSP&>(Item(m, 110));
             rrsp.RRSPType = 0;
             rrsp.SpecProps.Add("rrsptype=1");
         },
         "Luc Tremblay", With(With(kLuc, "4", -143781), "3", 143781)},
        // A TFSA is a portfolio: the setting counts there.
        {"banking setting on a TFSA", {},
         [](kv::TModelData& m) { dynamic_cast<kv::TPortfolio&>(Item(m, 106)).IsBankingAccountValue = 1; },
         "Marie Tremblay", With(kMarie, "2", -88612)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        WriteDemoData((root_.parent_path() / "fresh").string());
        fs::remove_all(root_);
        fs::rename(root_.parent_path() / "fresh", root_);
        if (!c.classes.empty()) ReclassEntries(c.classes);
        if (c.edit) EditTremblay(c.edit);
        EXPECT_EQ(Sums(c.party), c.want);
    }
}

TEST_F(ImportSession, AmountsThatCannotBeWholeNameTheAccountAndFile) {
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), 3.0e9, std::numeric_limits<double>::infinity()}) {
        EditTremblay([&](kv::TModelData& m) { Item(m, 103).Value = value; });
        auto s = Open(0, "Tremblay", "Current plan");
        try {
            s->Collect(Party(*s, "Marie Tremblay"), nullptr);
            ADD_FAILURE() << "no error for " << value;
        } catch (const kv::EKvError& e) {
            const std::string what = e.what();
            EXPECT_NE(what.find("\"Marie - investment account\""), std::string::npos) << what;
            EXPECT_NE(what.find(s->Model()->Path()), std::string::npos) << what;
        }
    }
    // A value of 0 or below is no account and no error.
    EditTremblay([](kv::TModelData& m) { Item(m, 103).Value = -std::numeric_limits<double>::infinity(); });
    EXPECT_EQ(Sums("Marie Tremblay"), With(kMarie, "1", -62000));
}

TEST_F(ImportSession, ARecoveryCopyIsReadWhereItLiesAndNamedInErrors) {
    auto s = Open(0, "Tremblay", "Current plan");
    const fs::path path = s->Model()->Path();
    const fs::path tilde = path.parent_path() / "~FinItems.dat";
    s.reset();
    fs::rename(path, tilde);
    EXPECT_EQ(Sums("Marie Tremblay"), kMarie);
    EXPECT_TRUE(fs::exists(tilde));
    EXPECT_FALSE(fs::exists(path));

    // Damage past the header: the message names the copy, not the missing file.
    fs::resize_file(tilde, fs::file_size(tilde) / 2);
    try {
        Open(0, "Tremblay", "Current plan");
        ADD_FAILURE() << "a truncated copy loaded";
    } catch (const kv::EKvError& e) {
        EXPECT_NE(std::string(e.what()).find("~FinItems.dat"), std::string::npos) << e.what();
    }
    EXPECT_TRUE(fs::exists(tilde));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(ImportSession, ManyAccountsKeepTheKindOrderAndEveryAmount) {
    // Past the size of any real plan the list is sorted once; the kinds keep
    // their order and each kind its accounts in model order.
    constexpr int kAccounts = 3000;
    const std::int32_t entries[] = {D::LIRA, D::NonReg, D::TFSA, D::RRSP};
    EditTremblay([&](kv::TModelData& m) {
        const kv::TFinItem& marie = Item(m, 103);
        for (int i = 0; i < kAccounts; ++i) {
            const kv::TEntry* entry = m.Entries()->GetEntryByID(entries[i % 4]);
            auto item = kv::ItemClassByNumber(entry->ItemClassNo).Create(entry, &m, 10000 + i);
            item->Name = "account " + std::to_string(i);
            item->Value = 1000 + i;
            item->SpecProps.Add(marie.SpecProps.Lines().front());   // OwnerID
            item->AfterRead();
            m.Add(std::move(item));
        }
    });
    auto s = Open(0, "Tremblay", "Current plan");
    const auto list = s->Collect(Party(*s, "Marie Tremblay"), nullptr);
    ASSERT_EQ(list.size(), 6u + kAccounts);
    std::map<std::string, std::vector<std::int32_t>> added;
    for (std::size_t i = 1; i < list.size(); ++i) EXPECT_LE(list[i - 1].KindText, list[i].KindText) << i;
    for (const TImportEntry& e : list)
        if (e.Amount >= 1000 && e.Amount < 1000 + kAccounts) added[e.KindText].push_back(e.Amount);
    for (const auto& [kind, amounts] : added) {
        EXPECT_TRUE(std::is_sorted(amounts.begin(), amounts.end())) << kind;
        EXPECT_EQ(amounts.size(), std::size_t(kAccounts / 4)) << kind;
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
