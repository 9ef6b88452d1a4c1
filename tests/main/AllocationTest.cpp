#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <variant>

#include "core/Allocation.h"
#include "core/Totals.h"

using namespace tessary;

namespace {

struct Acc {
    std::intptr_t kind;
    double md, bs = 0, qr = 0;
};
struct Cls {
    std::intptr_t code;
    const char* name;
    double pct;
};

TGrid Accounts(const std::vector<Acc>& rows) {
    TGrid g = MakeAccountsGrid();
    g.SetRowCount(1);
    for (const auto& a : rows) {
        int r = g.AddRow();
        g.SetObject(0, r, a.kind);
        g.SetText(0, r, a.kind ? "x" : "");
        g.SetFloat(1, r, a.md);
        g.SetFloat(2, r, a.bs);
        g.SetFloat(3, r, a.qr);
    }
    RecomputeAccountTotals(g);
    return g;
}

TGrid Classes(const std::vector<Cls>& rows) {
    TGrid g = MakeClassesGrid();
    g.SetRowCount(1);
    for (const auto& c : rows) {
        int r = g.AddRow();
        g.SetObject(0, r, c.code);
        g.SetText(0, r, c.name);
        g.SetFloat(1, r, c.pct);
    }
    return g;
}

TGrid Calculated(std::vector<Acc> accounts, std::vector<Cls> classes, int buttonWidth = kDesignAddAccWidth) {
    TGrid acc = Accounts(accounts), cls = Classes(classes), res = MakeResultGrid();
    CalculateAllocation(acc, cls, res, buttonWidth);
    return res;
}

// Expected cell: a text, a float (compared to 1e-9 relative), NaN, or empty.
struct Want {
    int col, row;
    std::variant<std::monostate, std::string, double> v;
};

void ExpectCell(const TGrid& g, const Want& w, const std::string& where) {
    const TCell& cell = g.Cell(w.col, w.row);
    SCOPED_TRACE(where + " cell (" + std::to_string(w.col) + "," + std::to_string(w.row) + ")");
    if (std::holds_alternative<std::monostate>(w.v)) {
        EXPECT_TRUE(cell.IsEmpty()) << g.Text(w.col, w.row);
    } else if (const auto* s = std::get_if<std::string>(&w.v)) {
        EXPECT_EQ(g.Text(w.col, w.row), *s);
    } else {
        double want = std::get<double>(w.v);
        ASSERT_TRUE(cell.IsFloat()) << g.Text(w.col, w.row);
        double got = std::get<double>(cell.value);
        if (std::isnan(want))
            EXPECT_TRUE(std::isnan(got)) << got;
        else if (std::isinf(want))
            EXPECT_EQ(got, want);
        else
            EXPECT_NEAR(got, want, 1e-9 * std::max(1.0, std::abs(want)));
    }
}

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

struct CalcCase {
    const char* name;
    std::vector<Acc> accounts;
    std::vector<Cls> classes;
    int wantCols, wantRows;
    std::vector<Want> cells;
};

class CalculationTable : public ::testing::TestWithParam<CalcCase> {};

TEST_P(CalculationTable, ResultGrid) {
    const CalcCase& c = GetParam();
    const TGrid res = Calculated(c.accounts, c.classes);
    EXPECT_EQ(res.ColCount(), c.wantCols);
    EXPECT_EQ(res.RowCount(), c.wantRows);
    for (const auto& w : c.cells) ExpectCell(res, w, c.name);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CalculationTable,
    ::testing::Values(
        // Taxable 600 and RRSP 400; one equity class at 40 %: the equity money
        // (40 % of everything) comes out of the taxable account first.
        CalcCase{"EquitiesFirstIntoTaxable",
                 {{1, 600}, {3, 400}},
                 {{3, "Equities Canada", 40}, {1, "Short-Term Fixed", 60}},
                 5, 4,
                 {{1, 0, "MD Taxable"}, {1, 1, "%"}, {2, 1, "Value"}, {3, 0, "RRSPs/RRIFs"},
                  {0, 2, "Equities Canada"}, {0, 3, "Short-Term Fixed"},
                  {1, 2, 200.0 / 3}, {2, 2, 400.0}, {1, 3, 100.0 / 3}, {2, 3, 200.0},
                  {3, 2, 0.0}, {4, 2, 0.0}, {3, 3, 100.0}, {4, 3, 400.0}}},
        // No account rows: only the class names.
        CalcCase{"NoAccounts", {}, {{1, "Short-Term Fixed", 100}}, 1, 3, {{0, 2, "Short-Term Fixed"}}},
        // A zero product column adds no record; QR takes the second column pair.
        CalcCase{"ZeroProductColumnSkipped",
                 {{1, 1000, 0, 500}},
                 {{1, "Short-Term Fixed", 100}},
                 5, 3,
                 {{1, 0, "MD Taxable"}, {3, 0, "QR Taxable"}, {2, 2, 1000.0}, {4, 2, 500.0}, {1, 2, 100.0}}},
        // Negative product columns add nothing either.
        CalcCase{"NegativeProductColumnSkipped",
                 {{1, -5, 20, 0}},
                 {{1, "Short-Term Fixed", 100}},
                 3, 3,
                 {{1, 0, "BS Taxable"}, {2, 2, 20.0}}},
        // Two TFSA rows share one column pair; the lower grid row is shown,
        // and the two spare columns at the right stay empty.
        CalcCase{"SameCodeOverwrites",
                 {{2, 100}, {2, 300}},
                 {{1, "Short-Term Fixed", 100}},
                 5, 3,
                 {{1, 0, "TFSAs"}, {2, 2, 300.0}, {3, 0, {}}, {3, 2, {}}, {4, 2, {}}}},
        // No equity class: every class takes its share of every account.
        CalcCase{"NoPreferredClass",
                 {{1, 1000}, {4, 500}},
                 {{1, "Short-Term Fixed", 30}, {2, "Mid/Long-Term Fixed", 70}},
                 5, 4,
                 {{2, 2, 300.0}, {2, 3, 700.0}, {4, 2, 150.0}, {4, 3, 350.0}, {3, 0, "LIRAs/LIFs"}}},
        // Equities at 100 %: the other classes divide by zero: x/0 where money
        // is left over, 0/0 where none is; a negative TFSA keeps its "%" cells.
        CalcCase{"PreferredAtHundred",
                 {{1, 100}, {2, -50}},
                 {{3, "Equities Canada", 100}, {1, "Short-Term Fixed", 10}},
                 5, 4,
                 {{2, 2, 50.0}, {2, 3, kInf}, {1, 3, kInf}, {4, 2, -50.0}, {4, 3, kNaN}, {3, 2, {}}}},
        // Equity targets above 100 % ask for more than the accounts hold.
        CalcCase{"PreferredAbove",
                 {{1, 100}},
                 {{3, "Equities Canada", 150}, {1, "Short-Term Fixed", 60}},
                 3, 4,
                 {{2, 2, 100.0}, {2, 3, 0.0}}},
        // A TFSA of 0 is kept: its "%" cells stay untouched, its values are 0.
        CalcCase{"ZeroAmountLeavesPercentCells",
                 {{2, 0}},
                 {{3, "Equities Canada", 50}, {1, "Short-Term Fixed", 50}},
                 3, 4,
                 {{1, 0, "TFSAs"}, {1, 2, {}}, {1, 3, {}}, {2, 2, 0.0}, {2, 3, 0.0}}},
        // Only column 1 of a TFSA row is its amount, while Total counts all
        // three: the equity money the records cannot absorb is never placed.
        CalcCase{"RegisteredRowUsesColumnOneOnly",
                 {{2, 100, 300, 0}},
                 {{3, "Equities Canada", 50}, {1, "Short-Term Fixed", 50}},
                 3, 4,
                 {{2, 2, 100.0}, {2, 3, 0.0}, {1, 2, 100.0}}},
        // Equity money is consumed in code order: taxable, then TFSA, then RRSP.
        CalcCase{"PreferredConsumedInCodeOrder",
                 {{3, 100}, {2, 100}, {1, 100}},
                 {{3, "Equities Canada", 50}, {1, "Short-Term Fixed", 50}},
                 7, 4,
                 {{1, 0, "MD Taxable"}, {3, 0, "TFSAs"}, {5, 0, "RRSPs/RRIFs"},
                  {2, 2, 100.0}, {2, 3, 0.0}, {4, 2, 50.0}, {4, 3, 50.0}, {6, 2, 0.0}, {6, 3, 100.0}}},
        // Equity classes share the equity money by their targets.
        CalcCase{"PreferredSplitByTargets",
                 {{1, 1000}},
                 {{3, "Equities Canada", 30}, {4, "Equities U.S.", 10}, {2, "Mid/Long-Term Fixed", 60}},
                 3, 5,
                 {{2, 2, 300.0}, {2, 3, 100.0}, {2, 4, 600.0}, {1, 3, 10.0}}},
        // Only the low byte of a class code decides whether it is an equity.
        CalcCase{"LowByteOfClassCode",
                 {{1, 100}, {3, 100}},
                 {{0x103, "Wide code", 20}, {0x101, "Other", 80}},
                 5, 4,
                 {{2, 2, 40.0}, {2, 3, 60.0}, {4, 2, 0.0}, {4, 3, 100.0}}},
        // A class row without object between two classes: names below it sit
        // one row lower than their values and the lowest falls off.
        CalcCase{"ClassRowWithoutObjectShiftsNames",
                 {{1, 100}},
                 {{1, "Short-Term Fixed", 20}, {0, "(none)", 0}, {2, "Mid/Long-Term Fixed", 80}},
                 3, 4,
                 {{0, 2, "Short-Term Fixed"}, {0, 3, {}}, {2, 2, 20.0}, {2, 3, 80.0}}},
        // A NaN amount passes the "above zero" test and makes a record.
        CalcCase{"NaNAmountCountsAsPositive", {{1, kNaN}}, {{1, "Short-Term Fixed", 100}}, 3, 3, {{1, 2, kNaN}}},
        // Infinite money is written as it comes; inf - inf is left for the rest.
        CalcCase{"InfiniteAmountWritesAsItComes",
                 {{1, kInf}},
                 {{3, "Equities Canada", 50}, {1, "Short-Term Fixed", 50}},
                 3, 4,
                 {{2, 2, kInf}, {2, 3, kNaN}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Calculation, EmptyRowsAreDeletedFromBothInputGrids) {
    TGrid acc = Accounts({{0, 5}, {1, 100}, {0, 7}});
    TGrid cls = Classes({{0, "a", 1}, {1, "Short-Term Fixed", 100}});
    TGrid res = MakeResultGrid();
    CalculateAllocation(acc, cls, res, kDesignAddAccWidth);
    EXPECT_EQ(acc.RowCount(), 2);
    EXPECT_EQ(acc.Object(0, 1), 1);
    EXPECT_EQ(cls.RowCount(), 2);
    EXPECT_EQ(res.RowCount(), 3);
}

TEST(Calculation, ResultGridIsNeverClearedBetweenRuns) {
    TGrid acc = Accounts({{2, 100}});
    TGrid cls = Classes({{1, "Short-Term Fixed", 40}, {2, "Mid/Long-Term Fixed", 60}});
    TGrid res = MakeResultGrid();
    CalculateAllocation(acc, cls, res, kDesignAddAccWidth);
    ASSERT_NEAR(res.Float(1, 2), 40.0, 1e-12);

    // Same shape, amount now 0: the "%" cells keep the first run's figures.
    acc.SetFloat(1, 1, 0);
    CalculateAllocation(acc, cls, res, kDesignAddAccWidth);
    EXPECT_NEAR(res.Float(1, 2), 40.0, 1e-12);
    EXPECT_NEAR(res.Float(2, 2), 0.0, 1e-12);

    // A run with fewer classes shrinks the grid; its dropped cells are gone.
    TGrid one = Classes({{1, "Short-Term Fixed", 100}});
    CalculateAllocation(acc, one, res, kDesignAddAccWidth);
    EXPECT_EQ(res.RowCount(), 3);
    res.SetRowCount(4);
    EXPECT_TRUE(res.Cell(1, 3).IsEmpty());
}

TEST(Calculation, ColumnWidthsFollowTheButtonWidthHalvesToEven) {
    struct Case { int width, pct, value; };
    for (const Case& c : {Case{30, 25, 60}, Case{45, 38, 90}, Case{33, 28, 66}, Case{27, 22, 54}, Case{0, 0, 0}}) {
        const TGrid res = Calculated({{1, 10}}, {{1, "Short-Term Fixed", 100}}, c.width);
        EXPECT_EQ(res.ColWidth(1), c.pct) << "button width " << c.width;
        EXPECT_EQ(res.ColWidth(2), c.value) << "button width " << c.width;
    }
}

TEST(Calculation, HeaderMergedOverItsColumnPair) {
    const TGrid res = Calculated({{1, 10, 10}}, {{1, "Short-Term Fixed", 100}});
    const TMerge* m = res.MergeAt(4, 0);
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->col, 3);
    EXPECT_EQ(m->cols, 2);
    const TMerge* corner = res.MergeAt(0, 1);
    ASSERT_NE(corner, nullptr);
    EXPECT_EQ(corner->rows, 2);
}

std::vector<TAccTypeEntry> Entries(std::initializer_list<std::pair<int, double>> items) {
    std::vector<TAccTypeEntry> list;
    for (auto [code, amount] : items) list.push_back({std::to_string(code), TAccTypeRec(code, amount)});
    return list;
}

TEST(ColumnPosition, RankAmongDistinctCodes) {
    auto list = Entries({{1, 0}, {3, 0}, {3, 0}, {7, 0}});
    EXPECT_EQ(ColumnPosition(1, list), 1);
    EXPECT_EQ(ColumnPosition(3, list), 2);
    EXPECT_EQ(ColumnPosition(7, list), 3);
    EXPECT_EQ(ColumnPosition(5, list), 3);   // an absent code counts the ones below it, plus itself
    EXPECT_EQ(ColumnPosition(0, list), 0);
    EXPECT_EQ(ColumnPosition(-4, list), -4);
    EXPECT_EQ(ColumnPosition(2000000000, list), 4);
}

} // namespace
