#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Notices.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"

using namespace tessary;

namespace {

struct NoticeCase {
    const char* name;
    const char* accounts;   // CSV as the command line reads it
    const char* classes;
    std::multiset<NoticeId> want;
    std::vector<int> droppedAccountRows = {}, droppedClassRows = {};
    std::vector<std::string> duplicateTypes = {};
};

using N = NoticeId;

const char* const kBalanced = "h\nShort-Term Fixed,10\nMid/Long-Term Fixed,25\nEquities Canada,25\nEquities U.S.,20\n"
                              "Equities Emerging Markets,5\nEquities Global,15\n";
const char* const kAccounts = "h\nNon-Reg.,250000,120000,45000\nTFSAs,95000\nRRSPs/RRIFs,310000\n";

const NoticeCase kCases[] = {
    {"Ordinary", kAccounts, kBalanced, {}},
    {"StartUpGrids", "", "", {}},
    {"NoClassesYet", kAccounts, "h\n", {}},
    {"TargetsShort", kAccounts, "h\nShort-Term Fixed,40\nEquities Canada,55\n", {N::TargetsNotHundred}},
    {"TargetsInThirds", kAccounts, "h\nShort-Term Fixed,33.3\nEquities Canada,33.3\nEquities Global,33.4\n", {}},
    {"EquitiesAreAll", kAccounts, "h\nEquities Canada,60\nEquities U.S.,40\nShort-Term Fixed,0\n", {N::EquityHundred}},
    {"EquitiesAreAllAlone", kAccounts, "h\nEquities Canada,60\nEquities U.S.,40\n", {}},
    // Column 2 of a TFSA row counts in the total, yet no record carries it.
    {"MoneyOutsideTheRecords", "h\nTFSAs,100,300\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n", {N::EquityNotPlaced}},
    {"SmallMoneyOutsideTheRecords", "h\nNon-Reg.,1000\nTFSAs,100,0.4\n", "h\nEquities Canada,100\n", {}},
    {"EquityAboveAll", kAccounts, "h\nEquities Canada,120\nShort-Term Fixed,0\n",
     {N::TargetsNotHundred, N::EquityNotPlaced}},
    // A negative taxable part is no record but lowers the total: nothing is left over.
    {"NegativeTaxablePart", "h\nNon-Reg.,1000,-200\n", "h\nEquities Canada,50\nShort-Term Fixed,50\n", {N::NegativeAmount}},
    // Sorted first, a negative TFSA record hands equity money back to the later RRSP.
    {"NegativeRecordFirst", "h\nTFSAs,-50\nRRSPs/RRIFs,100\n", "h\nEquities Canada,100\n", {N::NegativeAmount}},
    {"NegativeTarget", kAccounts, "h\nShort-Term Fixed,-10\nEquities Canada,110\n", {N::NegativeTarget, N::EquityNotPlaced}},
    // One notice a row; beyond 10^12 or not finite is implausible.
    {"Implausible", "h\nNon-Reg.,1e300,-5\nTFSAs,1000000000001\nRRSPs/RRIFs,1e12\n", kBalanced,
     {N::ImplausibleAmount, N::ImplausibleAmount}},
    // The calculation sums the targets from the last row up; only that order decides "exactly 100".
    {"EquitiesJustBelowAll", kAccounts, "h\nEquities Canada,0.1\nEquities U.S.,33.3\nEquities Global,66.6\nShort-Term Fixed,0\n",
     {}},
    {"EquitiesExactlyAll", kAccounts, "h\nEquities Global,66.6\nEquities U.S.,33.3\nEquities Canada,0.1\nShort-Term Fixed,0\n",
     {N::EquityHundred}},
    {"LabelsWithoutKind", "h\nSavings,100\nTFSAs,5\n,0,0,0\n,0,3\n", kBalanced, {N::AccountRowDropped, N::AccountRowDropped},
     {1, 4}},
    {"ClassWithoutCode", kAccounts,
     "h\nShort-Term Fixed,10\nGold,5\nMid/Long-Term Fixed,25\nEquities Canada,60\n,0\n",
     {N::ClassRowDropped, N::TargetsNotHundred}, {}, {2}},
    {"SameTypeTwice", "h\nTFSAs,100\nTFSAs,300\nNon-Reg.,10\nNon-Reg.,20,5\n", kBalanced,
     {N::DuplicateAccountType, N::DuplicateAccountType}, {}, {}, {"MD Taxable", "TFSAs"}},
};

// Money the equity classes hold in the result: the oracle for what was placed.
double EquityInResult(const TGrid& classes, const TGrid& result) {
    double placed = 0;
    for (int r = 1; r < classes.RowCount(); ++r) {
        if (!IsPreferredClass(classes.Object(0, r))) continue;
        for (int c = 2; c < result.ColCount(); c += 2) placed += result.Float(c, r + 1);
    }
    return placed;
}

bool NonFiniteOutsideEquities(const TGrid& classes, const TGrid& result) {
    for (int r = 1; r < classes.RowCount(); ++r) {
        if (IsPreferredClass(classes.Object(0, r))) continue;
        for (int c = 1; c < result.ColCount(); ++c)
            if (result.Cell(c, r + 1).IsFloat() && !std::isfinite(result.Float(c, r + 1))) return true;
    }
    return false;
}

class Notices : public ::testing::TestWithParam<NoticeCase> {};

TEST_P(Notices, NameWhatTheCalculationWillDo) {
    const NoticeCase& k = GetParam();
    TGrid accounts = MakeAccountsGrid(), classes = MakeClassesGrid(), result = MakeResultGrid();
    if (*k.accounts) LoadAccountsCsv(k.accounts, accounts);
    if (*k.classes) LoadClassesCsv(k.classes, classes);

    const std::vector<TNotice> notices = InputNotices(accounts, classes);
    std::multiset<NoticeId> got;
    std::vector<int> droppedAccounts, droppedClasses;
    std::vector<std::string> duplicates;
    for (const TNotice& n : notices) {
        got.insert(n.id);
        EXPECT_FALSE(n.text.empty());
        if (n.id == N::AccountRowDropped) droppedAccounts.push_back(n.row);
        if (n.id == N::ClassRowDropped) droppedClasses.push_back(n.row);
        if (n.id == N::DuplicateAccountType) duplicates.push_back(n.label);
    }
    EXPECT_EQ(got, k.want);
    EXPECT_EQ(droppedAccounts, k.droppedAccountRows);
    EXPECT_EQ(droppedClasses, k.droppedClassRows);
    std::sort(duplicates.begin(), duplicates.end());
    EXPECT_EQ(duplicates, k.duplicateTypes);

    const double unplaced = UnplacedEquityMoney(accounts, classes);
    CalculateAllocation(accounts, classes, result, kDesignAddAccWidth);

    // Once the calculation has deleted the rows, nothing is left to say about them.
    for (const TNotice& n : InputNotices(accounts, classes))
        EXPECT_TRUE(n.id != N::AccountRowDropped && n.id != N::ClassRowDropped) << n.text;

    // Against what the calculation wrote.
    const bool anyRecord = result.ColCount() > 1;
    if (anyRecord) {
        EXPECT_EQ(got.count(N::EquityHundred) > 0, NonFiniteOutsideEquities(classes, result));
    }
    const bool anyClass = classes.RowCount() > 1;
    if (anyClass) {
        EXPECT_EQ(got.count(N::TargetsNotHundred) > 0, std::abs(ClassTotal(classes) - 100) >= 0.005);
    }
    if (duplicates.empty() && !NonFiniteOutsideEquities(classes, result)) {
        double total = 0, equityPct = 0;
        for (int r = 1; r < accounts.RowCount(); ++r) total += accounts.Float(4, r);
        for (int r = 1; r < classes.RowCount(); ++r)
            if (IsPreferredClass(classes.Object(0, r))) equityPct += classes.Float(1, r);
        const double oracle = equityPct > 0 ? total * equityPct / 100 - EquityInResult(classes, result) : 0;
        EXPECT_NEAR(unplaced, oracle, 1e-6 * std::max(1.0, total));
        EXPECT_EQ(got.count(N::EquityNotPlaced) > 0, RoundHalfEven(oracle) >= 1) << oracle;
    }
}

INSTANTIATE_TEST_SUITE_P(Grids, Notices, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(NoticesResult, NamesShiftedBelowARemovedClassRow) {
    const struct {
        const char* classes;
        bool calculate;
        int shiftedFrom;   // 0: no notice
    } cases[] = {
        {"h\nShort-Term Fixed,50\nEquities Canada,50\n", true, 0},
        {"h\nShort-Term Fixed,40\nGold,10\nEquities Canada,50\n", true, 3},
        {"h\nShort-Term Fixed,50\nEquities Canada,50\nGold,0\n", true, 0},   // nothing below the removed row
        {"h\nShort-Term Fixed,100\n", false, 0},   // the start-up result has the same shape but no names yet
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.classes);
        TGrid accounts = MakeAccountsGrid(), classes = MakeClassesGrid(), result = MakeResultGrid();
        LoadAccountsCsv("h\nRRSPs/RRIFs,1000\n", accounts);
        LoadClassesCsv(c.classes, classes);
        if (c.calculate) CalculateAllocation(accounts, classes, result, kDesignAddAccWidth);
        const auto notices = ResultNotices(classes, result);
        ASSERT_EQ(notices.size(), c.shiftedFrom ? 1u : 0u);
        if (!c.shiftedFrom) continue;
        EXPECT_EQ(notices[0].id, N::ResultNamesShifted);
        EXPECT_EQ(notices[0].row, c.shiftedFrom);
        EXPECT_NE(result.Text(0, c.shiftedFrom), classes.Text(0, c.shiftedFrom - 1));
    }
}

} // namespace

namespace {

// The plan: MD Taxable 60 Equities Canada + 40 Equities U.S.; TFSAs 50 Short-Term Fixed.
TTargets SmallPlan() {
    TTargets t;
    t.AccountTypes = {1, 4};
    t.Classes = {3, 4, 1};
    t.Amounts.Add(1, 3, 60);
    t.Amounts.Add(1, 4, 40);
    t.Amounts.Add(4, 1, 50);
    return t;
}

struct TradesNoticeCase {
    const char* name;
    const char* holdings;
    bool noSellTaxable;
    std::multiset<std::pair<NoticeId, std::string>> want;   // id, label
};

const TradesNoticeCase kTradesCases[] = {
    {"OnPlan", "h\nMD Taxable,Equities Canada,60\nMD Taxable,Equities U.S.,40\nTFSAs,Short-Term Fixed,50\n", true, {}},
    {"HeldWhereThePlanHasNoMoney", "h\nRRSPs/RRIFs,Equities Canada,70\n", false,
     {{N::HoldingsWithoutPlan, "RRSPs/RRIFs"}}},
    {"NamedAtZeroIsNotHeld", "h\nRRSPs/RRIFs,Equities Canada,0\n", false, {}},
    {"ClassThePlanLeavesOut", "h\nTFSAs,Equities Global,20\nMD Taxable,Equities Global,5\n", false,
     {{N::ClassNotTargeted, "Equities Global"}}},
    {"TaxableShortWithoutSales", "h\nMD Taxable,Equities Canada,100\n", true, {{N::TaxableShortfall, "MD Taxable"}}},
    {"TaxableShortButSalesAllowed", "h\nMD Taxable,Equities Canada,100\n", false, {}},
    {"NewMoneyCoversTheShortfall", "h\nMD Taxable,Equities Canada,50\n", true, {}},
    {"RegisteredNeverShort", "h\nTFSAs,Equities Canada,50\n", true, {}},
};

class TradesNoticesTable : public ::testing::TestWithParam<TradesNoticeCase> {};

TEST_P(TradesNoticesTable, SayWhatTheTradesCannotDo) {
    const TradesNoticeCase& c = GetParam();
    const TTargets plan = SmallPlan();
    const TRebalanceOptions options{0, c.noSellTaxable};
    const auto trades = Rebalance(plan, ParseHoldingsCsv(c.holdings, "h.csv"), options);
    std::multiset<std::pair<NoticeId, std::string>> got;
    for (const TNotice& n : TradesNotices(&plan, trades, options)) got.insert({n.id, n.label});
    EXPECT_EQ(got, c.want);
}

INSTANTIATE_TEST_SUITE_P(Cases, TradesNoticesTable, ::testing::ValuesIn(kTradesCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(TradesNotices, ShortfallIsWhatTheCashCannotFill) {
    const TTargets plan = SmallPlan();
    const TRebalanceOptions options{0, true};
    // 30 of new money fills 30 of the 40 Equities U.S. needs: 10 short.
    const auto trades = Rebalance(plan, ParseHoldingsCsv("h\nMD Taxable,Equities Canada,70\n", "h.csv"), options);
    const auto notices = TradesNotices(&plan, trades, options);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].value, 10);
    EXPECT_EQ(TradesNotices(nullptr, {}, options).at(0).id, N::TradesNoPlan);
}

} // namespace
