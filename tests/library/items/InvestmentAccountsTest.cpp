// Investment accounts decoded from files written to disk by another writer:
// plain base records carrying raw property strings under the accounts' entries.
// Withdrawal rates are checked at the rules' edges, not row by row.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <optional>

#include "KvSettings.h"
#include "ModelTestUtil.h"
#include "items/KvFnItemClasses.h"
#include "items/KvFnClassRegistry.h"

using namespace kvtest;
namespace D = kv::DemoEntry;

namespace {

class Accounts : public ::testing::Test {
protected:
    void SetUp() override {
        s.settings->CurrentYear = 2026;
        s.settings->PlanningDate = 46000;
    }

    // A raw record: no class of its own, so its properties are written as given.
    kv::TFinItem* Raw(kv::TFinItem* parent, std::int32_t entryID, std::int32_t id,
                      std::initializer_list<const char*> props = {}) {
        auto item = std::make_unique<kv::TFinItem>(s.Entry(entryID), writer.get(), id);
        item->Name = "Item " + std::to_string(id);
        for (const char* p : props) item->SpecProps.Add(p);
        return parent ? parent->AddChild(std::move(item)) : writer->Add(std::move(item));
    }
    kv::TParticipant* Person(std::int32_t id, std::uint8_t taxStatus, double birthDate, const char* salaryYear = nullptr) {
        auto p = kv::CreateParty(0, id, 1, 0);
        p->FirstName = "P" + std::to_string(id);
        p->TaxStatus = taxStatus;
        p->BirthDate = birthDate;
        if (salaryYear) p->Props = {{std::to_string(id), salaryYear}};
        return writer->AddParticipant(std::move(p));
    }
    // Writes the file and loads it back.
    kv::TModelData& Load() {
        writer->Save();
        loaded = s.NewModel(0, path);
        loaded->Load();
        return *loaded;
    }
    template <class T>
    T& Top(int i) {
        T* t = dynamic_cast<T*>(loaded->Get(i));
        EXPECT_NE(t, nullptr) << loaded->Get(i)->ClassType().Name;
        return *t;
    }

    TempDir dir;
    Surroundings s{0, dir};
    std::string path = dir.File("FinItems.dat");
    std::unique_ptr<kv::TModelData> writer = s.NewModel(0, path);
    std::unique_ptr<kv::TModelData> loaded;
};

// Day number (days since 30 December 1899) of 1 June of a year.
double MidYear(int year) {
    using namespace std::chrono;
    return static_cast<double>((sys_days(std::chrono::year(year) / June / 1) - sys_days(1899y / December / 30)).count());
}

struct DecodeCase {
    std::int32_t entry;
    const char* prop;   // nullptr: absent
    std::function<double(kv::TFinItem&)> field;
    double want;
};

TEST_F(Accounts, PropertiesDecodeWithTheirDefaults) {
    const DecodeCase cases[] = {
        {D::NonReg, "RATE=abc", [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolio&>(i).Rate; }, -1},
        {D::NonReg, "RATE=4.5", [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolio&>(i).Rate; }, 4.5},
        {D::NonReg, "IsBankingAccount=7", [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolio&>(i).IsBankingAccount(); }, 1},
        {D::NonReg, "DEDUCTFEEFROMACC=Yes", [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolio&>(i).DeductFeeFromAcc; }, 1},
        {D::NonReg, "DEDUCTFEEFROMACC=yes", [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolio&>(i).DeductFeeFromAcc; }, 0},
        {D::NonReg, nullptr, [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolioBase&>(i).StatementDate; }, 46000},
        {D::InvestAccount, "TransferFromMD=Yes", [](kv::TFinItem& i) { return dynamic_cast<kv::TPortfolioX&>(i).TransferFromMD; }, 0},
        {D::RRIF, "PBSA=Yes", [](kv::TFinItem& i) { return dynamic_cast<kv::TRetPlan&>(i).PBSA; }, 0},
        {D::LIRA, nullptr, [](kv::TFinItem& i) { return dynamic_cast<kv::TLRIF&>(i).Province; }, -1},
        {D::RRSP, "lstRRSPUnusedLimit=2024:1500,2025:250.5", [](kv::TFinItem& i) { return dynamic_cast<kv::TRRSP&>(i).UnusedLimit.GetVal(2025); }, 250.5},
        {D::CorpShares, "AsCommon=Yes", [](kv::TFinItem& i) { return dynamic_cast<kv::TCorpShare&>(i).AsCommon; }, 0},
        {D::CapitalBenef, "CapitalPercent=40", [](kv::TFinItem& i) { return dynamic_cast<kv::TCapitalTrBenef&>(i).CapitalPercent; }, 40},
        {D::CapitalBenef, "CapitalPercent=40.5", [](kv::TFinItem& i) { return dynamic_cast<kv::TCapitalTrBenef&>(i).CapitalPercent; }, 0},
    };
    int id = 1;
    for (const DecodeCase& c : cases) {
        if (c.prop)
            Raw(nullptr, c.entry, id++, {c.prop});
        else
            Raw(nullptr, c.entry, id++);
    }
    Load();
    for (int i = 0; i < static_cast<int>(std::size(cases)); ++i)
        EXPECT_EQ(cases[i].field(*loaded->Get(i)), cases[i].want) << (cases[i].prop ? cases[i].prop : "(absent)")
                                                                  << " under " << cases[i].entry;
}

TEST_F(Accounts, SettingsSurviveASaveOfTheirOwn) {
    Raw(nullptr, D::RRSP, 1, {"RRSPTYPE=2", "UnlockAge=55", "RATE=3", "OwnerID=1", "lstRRSPUnusedLimit=2024:10"});
    Raw(nullptr, D::CorpShares, 2, {"ShareClass=Class A", "ShareCount=100", "AsCommon=1"});
    Load();
    loaded->Save();
    kv::TModelData again(0, nullptr, s.models.get(), s.models.get(), nullptr, path, s.entries.get(), *s.settings);
    again.Load();
    auto& rrsp = dynamic_cast<kv::TRRSP&>(*again.Get(0));
    EXPECT_EQ(rrsp.RRSPType, 2);
    EXPECT_EQ(rrsp.UnlockAge, 55);
    EXPECT_EQ(rrsp.Rate, 3);
    EXPECT_EQ(rrsp.UnusedLimit.GetVal(2024), 10);
    EXPECT_EQ(rrsp.SpecProps.GetText("OwnerID"), "1");   // properties no class knows are kept
    auto& share = dynamic_cast<kv::TCorpShare&>(*again.Get(1));
    EXPECT_EQ(share.ShareClassName, "Class A");
    EXPECT_TRUE(share.IsAsCommon());
}

TEST_F(Accounts, EveryEntryHasItsAccountKind) {
    struct Case { std::int32_t entry; const char* prop; kv::TAccountKind kind; };
    const Case cases[] = {
        {D::SegFund, nullptr, kv::TAccountKind::NonReg},      {D::TFSA, nullptr, kv::TAccountKind::TFSA},
        {D::RRSP, "RRSPTYPE=1", kv::TAccountKind::LIRA},      {D::RRSP, "RRSPTYPE=2", kv::TAccountKind::RRSP},
        {D::RRSP, "RRSPTYPE=x", kv::TAccountKind::RRSP},      {D::RRIF, nullptr, kv::TAccountKind::RRSP},
        {D::LRIF, nullptr, kv::TAccountKind::DCP},            {D::BankAccount, nullptr, kv::TAccountKind::None},
        {D::SpousalRRSP, "RRSPTYPE=1", kv::TAccountKind::None},
    };
    int id = 1;
    for (const Case& c : cases) {
        if (c.prop)
            Raw(nullptr, c.entry, id++, {c.prop});
        else
            Raw(nullptr, c.entry, id++);
    }
    Load();
    for (int i = 0; i < static_cast<int>(std::size(cases)); ++i)
        EXPECT_EQ(kv::AccountKindOf(*loaded->Get(i)), cases[i].kind) << cases[i].entry << " " << (cases[i].prop ? cases[i].prop : "");
}

TEST_F(Accounts, MinimumWithdrawalRates) {
    Person(1, 0, MidYear(1950));
    Raw(nullptr, D::RRIF, 1);                                   // TRRIF, retirement-plan rule
    Raw(nullptr, D::RRIF, 2, {"AnnuityWithdraw=1", "AnnuityYear=2030"});
    Raw(nullptr, D::LIRA, 3);                                   // TLRIF, conversion kind 0
    Raw(nullptr, D::LIRA, 4, {"ConvertToType=2"});
    Raw(nullptr, D::LIRA, 5, {"OwnerID=1", "WDSTART=2030"});
    Raw(nullptr, D::RRSP, 6);                                   // TRRSP, conversion kind 0
    Raw(nullptr, D::RRSP, 7, {"ConvertToType=3"});
    Raw(nullptr, D::LIRA, 8, {"AnnuityWithdraw=1", "AnnuityYear=2030"});
    Raw(nullptr, D::RRSP, 9, {"AnnuityWithdraw=1", "AnnuityYear=2030"});
    Raw(nullptr, D::RRSP, 10, {"OwnerID=1", "WDSTART=2030"});
    Raw(nullptr, D::RRSP, 11, {"WDSTART=2030"});                // no owner: the start year does not hold it back
    Load();
    auto rate = [&](int i, int age, int year) { return dynamic_cast<kv::TRetPlan&>(*loaded->Get(i)).CalcWDMinRate(age, year); };
    struct Case { int item, age, year; double want; };
    const Case cases[] = {
        {0, 67, 2026, 1.0 / 23}, {0, 68, 2026, 0.0455}, {0, 95, 2026, 0.2}, {0, 96, 2026, 0.2},
        {0, 71, 2019, 0.0528}, {0, 71, 2020, 0.0528 * 0.75}, {0, 71, 2021, 0.0528},   // the 2020 year alone
        {1, 71, 2030, 0},        {1, 71, 2031, 0.0528},
        {2, 50, 2026, 1.0 / 40}, {2, 51, 2026, 0.0256}, {2, 120, 2026, 0.2}, {2, 71, 2020, 0.0528},   // no 2020 reduction
        {3, 67, 2026, 1.0 / 23}, {3, 71, 2020, 0.0528 * 0.75},
        {4, 70, 2029, 0},        {4, 70, 2030, 0.05},
        {5, 67, 2026, 0.0435},   {6, 67, 2026, 1.0 / 23},
        {7, 71, 2030, 0},        {8, 71, 2030, 0.0528},   // the annuity test is the LRIF's alone
        {9, 70, 2029, 0},        {9, 70, 2030, 0.05},     {10, 70, 2029, 0.05},
    };
    for (const Case& c : cases) EXPECT_DOUBLE_EQ(rate(c.item, c.age, c.year), c.want) << c.item << " at " << c.age << " in " << c.year;
}

TEST_F(Accounts, RRSPLinksItsChildrenAfterLoading) {
    auto* rrsp = Raw(nullptr, D::RRSP, 1, {"IMPFROMBS=1"});
    Raw(rrsp, D::RRSPContribRate, 2);
    Raw(rrsp, D::RRSPContrib, 3);
    Raw(rrsp, D::RRSPESPP, 4);
    Raw(rrsp, D::RRSPFromCorp, 5, {"VISIBLE=1"});
    auto* other = Raw(nullptr, D::RRSP, 6, {"IMPFROMBS=Yes"});
    Raw(other, D::RRSPFromCorp, 7);
    Load();
    auto& r = Top<kv::TRRSP>(0);
    ASSERT_NE(r.Links[0], nullptr);
    EXPECT_EQ(r.Links[0]->ID, 3);   // kind code -35
    EXPECT_EQ(r.Links[1]->ID, 2);   // -36
    EXPECT_EQ(r.Links[2]->ID, 5);   // -37
    EXPECT_EQ(r.Links[3]->ID, 4);   // -42
    EXPECT_EQ(r.Children[3]->SpecProps.GetText("VISIBLE"), "0");
    EXPECT_FALSE(Top<kv::TRRSP>(1).Children[0]->SpecProps.Has("VISIBLE"));
}

TEST_F(Accounts, ContributorAndContributionYears) {
    Person(1, 1, MidYear(1960), "2024");   // married, last salary 2024
    Person(2, 1, MidYear(1963));           // the partner
    Raw(nullptr, D::RRSP, 1, {"OwnerID=1"});
    Raw(nullptr, D::RRSP, 2, {"OwnerID=1", "RRSPTYPE=2"});
    Raw(nullptr, D::RRSP, 3, {"OwnerID=1", "RRSPTYPE=1"});
    Raw(nullptr, D::RRSP, 4, {"OwnerID=1", "RRSPTYPE=2", "MaxEndYear=2030"});
    Raw(nullptr, D::RRSP, 5, {"RRSPTYPE=2"});
    Load();
    EXPECT_EQ(Top<kv::TRRSP>(0).FindContributor()->ID, 1);
    EXPECT_EQ(Top<kv::TRRSP>(1).FindContributor()->ID, 2);
    EXPECT_EQ(Top<kv::TRRSP>(4).FindContributor(), nullptr);

    struct Case { int item, plan, last, capped; };
    const Case cases[] = {
        {0, 2031, 2032, 2031},   // ordinary: owner's last year (turns 71 in 2031) + 1, capped at the end year
        {1, 2031, 2035, 2031},   // spousal: the partner's last year + 1
        {2, 2031, 2024, 2024},   // locked-in: the owner's last salary year
        {3, 2031, 2035, 2030},
        {4, 2025, 2025, 2025},   // no owner, no partner: the planning year - 1
    };
    for (const Case& c : cases) {
        const auto y = Top<kv::TRRSP>(c.item).CalcLastConYears();
        EXPECT_EQ(y.LastPlanContribution, c.plan) << c.item;
        EXPECT_EQ(y.LastContribution, c.last) << c.item;
        EXPECT_EQ(y.LastContributionCapped, c.capped) << c.item;
    }
}

TEST_F(Accounts, SetValueReachesTwoValueChildrenAndPrimaryByKind) {
    kv::TEntry& valueEntry = s.entries->AddEntry(5555, 0, "Values", 1);
    valueEntry.Ints[0] = kv::kValueChildKind;
    auto* acc = Raw(nullptr, D::NonReg, 1);
    for (int id : {2, 3, 4}) Raw(acc, 5555, id);
    Raw(acc, D::TFSA, 5);
    Raw(nullptr, D::PrimaryPersonal, 6);
    Raw(nullptr, D::PrimaryTrust, 7);
    Load();
    auto& nonReg = Top<kv::TPortfolio>(0);
    nonReg.SetValue(250);
    const double want[] = {250, 250, 0, 0};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(nonReg.Children[std::size_t(i)]->Value, want[i]) << i;
    struct Case { int item; std::uint8_t kind; bool primary; };
    for (const Case& c : {Case{0, 1, true}, Case{1, 0, true}, Case{1, 4, true}, Case{1, 2, false}, Case{2, 2, true},
                          Case{2, 0, false}, Case{2, 1, false}})
        EXPECT_EQ(Top<kv::TPortfolio>(c.item).IsPrimaryAccount(c.kind), c.primary) << c.item << " kind " << int(c.kind);
}

TEST_F(Accounts, ValuesByYear) {
    kv::TEntry& valueEntry = s.entries->AddEntry(5555, 0, "Values", 1);
    valueEntry.Ints[0] = kv::kValueChildKind;
    auto addValues = [&](kv::TFinItem* parent, std::int32_t id, std::initializer_list<std::pair<int, double>> years) {
        auto* v = Raw(parent, 5555, id);
        for (auto [year, value] : years) {
            kv::TPay p(1);
            p.Int1 = year;
            p.Value = value;
            v->AddPay(p);
        }
        return v;
    };
    auto* nonReg = Raw(nullptr, D::NonReg, 1, {"NOWVAL=1234.5"});
    addValues(nonReg, 2, {{2026, 100}, {2027, 110}});
    auto* rrsp = Raw(nullptr, D::RRSP, 3);
    addValues(rrsp, 4, {{2026, 1000}});
    auto* espp = Raw(rrsp, D::RRSPESPP, 5);
    addValues(espp, 6, {{2026, 50}, {2027, 60}});
    Raw(nullptr, D::NonReg, 7)->Value = 500;
    Load();

    auto& r = Top<kv::TRRSP>(1);
    EXPECT_EQ(r.ValueInYear(2026), 1050);   // plus the share-purchase plan
    EXPECT_EQ(r.ValueInYear(2027), 60);
    EXPECT_EQ(Top<kv::TPortfolio>(0).ValueInYear(2027), 110);

    // The value now: as read, then recalculated from the planning year's value
    // (the typed value without one); the query leaves the properties alone.
    auto& p = Top<kv::TPortfolio>(0);
    EXPECT_EQ(p.GetNowValue(false), 1234.5);
    EXPECT_EQ(p.GetNowValue(true), 100);
    EXPECT_EQ(r.GetNowValue(true), 1000);
    EXPECT_EQ(Top<kv::TPortfolio>(2).GetNowValue(true), 500);
    EXPECT_EQ(p.SpecProps.GetText("NOWVAL"), "1234.5");
}

} // namespace
