#include <gtest/gtest.h>

#include <cmath>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Grid.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"

using namespace tessary;

namespace {

TEST(ParseNumber, AcceptsWhatTheGridsFloatConversionAccepts) {
    struct Case { const char* text; bool ok; double value; };
    const Case cases[] = {
        {"12", true, 12},         {" 12.5 ", true, 12.5},   {"-3", true, -3},       {"+3", true, 3},
        {"1e3", true, 1000},      {"1E-2", true, 0.01},     {".5", true, 0.5},      {"5.", true, 5},
        {"1e999", true, INFINITY}, {"-1e999", true, -INFINITY}, {"1e-999", true, 0}, {"0.0000001e-400", true, 0},
        {"", false, 0},           {"  ", false, 0},         {"abc", false, 0},      {"12abc", false, 0},
        {"1,000", false, 0},      {"--1", false, 0},        {"+-1", false, 0},      {"$5", false, 0},
    };
    for (const Case& c : cases) {
        double v = -99;
        EXPECT_EQ(ParseNumber(c.text, v), c.ok) << '"' << c.text << '"';
        if (c.ok) {
            EXPECT_EQ(v, c.value) << '"' << c.text << '"';
        }
    }
    double v = 0;
    EXPECT_TRUE(ParseNumber("nan", v));
    EXPECT_TRUE(std::isnan(v));
    EXPECT_TRUE(ParseNumber("-inf", v));
    EXPECT_EQ(v, -INFINITY);
}

TEST(RoundHalfEven, HalvesGoToTheEvenNeighbour) {
    struct Case { double in, out; };
    for (Case c : {Case{0.5, 0}, Case{1.5, 2}, Case{2.5, 2}, Case{-0.5, -0}, Case{-1.5, -2}, Case{-2.5, -2},
                   Case{2.4999, 2}, Case{2.5001, 3}, Case{100.5, 100}, Case{-7.2, -7}})
        EXPECT_EQ(RoundHalfEven(c.in), c.out) << c.in;
    EXPECT_TRUE(std::isnan(RoundHalfEven(NAN)));
}

TEST(Grid, ShrinkingDropsCellsAndGrowingGivesEmptyOnes) {
    TGrid g(3, 3, 1);
    g.SetText(2, 2, "x");
    g.SetObject(0, 2, 5);
    g.Merge(1, 2, 2, 1);
    g.SetRowCount(2);
    g.SetRowCount(3);
    EXPECT_TRUE(g.Cell(2, 2).IsEmpty());
    EXPECT_EQ(g.Object(0, 2), 0);
    EXPECT_EQ(g.MergeAt(2, 2), nullptr);
    g.SetText(2, 1, "y");
    g.SetColCount(2);
    g.SetColCount(3);
    EXPECT_TRUE(g.Cell(2, 1).IsEmpty());
}

TEST(Grid, OutOfRangeAccessIsHarmless) {
    TGrid g(2, 2);
    g.SetText(5, 5, "x");
    g.SetFloat(-1, 0, 3);
    g.DeleteRow(7);
    EXPECT_EQ(g.Text(5, 5), "");
    EXPECT_EQ(g.Float(-1, 0), 0);
    EXPECT_EQ(g.RowCount(), 2);
}

TEST(Grid, FloatConversionOfCells) {
    TGrid g(2, 5);
    g.SetFloat(1, 1, 2.5);
    g.SetText(1, 2, "7.25");
    g.SetText(1, 3, "seven");
    EXPECT_EQ(g.Float(1, 1), 2.5);
    EXPECT_EQ(g.Float(1, 2), 7.25);
    EXPECT_EQ(g.Float(1, 3), 0);
    EXPECT_EQ(g.Float(1, 4), 0);
    EXPECT_EQ(g.Text(1, 1), "2.5");
}

TEST(Grid, DeleteRowShiftsRowsAndTheirObjects) {
    TGrid g(1, 4);
    for (int r = 1; r < 4; ++r) {
        g.SetText(0, r, std::to_string(r));
        g.SetObject(0, r, r);
    }
    g.DeleteRow(2);
    ASSERT_EQ(g.RowCount(), 3);
    EXPECT_EQ(g.Text(0, 2), "3");
    EXPECT_EQ(g.Object(0, 2), 3);
}

TEST(Totals, AccountTotalsAndClassTotal) {
    TGrid acc = MakeAccountsGrid();
    acc.SetRowCount(3);
    acc.SetFloat(1, 1, 100);
    acc.SetFloat(2, 1, 50.5);
    acc.SetText(3, 1, "junk");
    acc.SetFloat(3, 2, 10);
    EXPECT_DOUBLE_EQ(RecomputeAccountTotals(acc), 160.5);
    EXPECT_DOUBLE_EQ(acc.Float(4, 1), 150.5);
    EXPECT_DOUBLE_EQ(acc.Float(4, 2), 10);

    TGrid cls = MakeClassesGrid();
    cls.SetRowCount(3);
    cls.SetFloat(1, 1, 33.5);
    cls.SetFloat(1, 2, 66.5);
    EXPECT_DOUBLE_EQ(ClassTotal(cls), 100);
}

TEST(Totals, ClearAndUnlabelledRows) {
    TGrid acc = MakeAccountsGrid();
    acc.SetRowCount(4);
    acc.SetText(0, 1, "TFSAs");
    acc.SetText(0, 3, "Non-Reg.");
    RemoveUnlabelledRows(acc);
    ASSERT_EQ(acc.RowCount(), 3);
    EXPECT_EQ(acc.Text(0, 2), "Non-Reg.");
    ClearBodyRows(acc);
    EXPECT_EQ(acc.RowCount(), 1);
    EXPECT_EQ(acc.Text(4, 0), "Total");
}

TEST(Csv, QuotingLineEndsAndBlankTail) {
    auto rows = ParseCsv("a,\"b,c\",\"say \"\"hi\"\"\"\r\nx,\"two\nlines\"\n\n\n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], (std::vector<std::string>{"a", "b,c", "say \"hi\""}));
    EXPECT_EQ(rows[1], (std::vector<std::string>{"x", "two\nlines"}));
    EXPECT_TRUE(ParseCsv("").empty());
    EXPECT_EQ(ParseCsv("only").size(), 1u);
    EXPECT_EQ(ParseCsv("h\n\nlast").size(), 3u);   // a blank line inside the data is a row
}

TEST(Csv, AccountsRowsGetKindsAmountsAndTotals) {
    TGrid acc = MakeAccountsGrid();
    LoadAccountsCsv("\xEF\xBB\xBF" "Account Type,MD,BS,QR\n"
                    "Non-Reg.,100,20,abc\n"
                    "TFSAs,5\n"
                    "Savings,1,2,3\n"
                    ",7,,\n"
                    "tfsas,1,,\n",
                    acc);
    ASSERT_EQ(acc.RowCount(), 6);
    const std::intptr_t kinds[] = {1, 2, 0, 0, 0};
    const double totals[] = {120, 5, 6, 7, 1};
    for (int r = 1; r <= 5; ++r) {
        EXPECT_EQ(acc.Object(0, r), kinds[r - 1]) << "row " << r;
        EXPECT_DOUBLE_EQ(acc.Float(4, r), totals[r - 1]) << "row " << r;
    }
    EXPECT_EQ(acc.Text(0, 3), "Savings");
    EXPECT_TRUE(acc.Cell(3, 1).IsFloat());   // "abc" reads as 0
}

TEST(Csv, ClassRowsGetCodes) {
    TGrid cls = MakeClassesGrid();
    LoadClassesCsv("Asset Class,%\nEquities Global,15\nGold,5\nShort-Term Fixed,\n", cls);
    ASSERT_EQ(cls.RowCount(), 4);
    EXPECT_EQ(cls.Object(0, 1), 6);
    EXPECT_EQ(cls.Object(0, 2), 0);
    EXPECT_EQ(cls.Object(0, 3), 1);
    EXPECT_EQ(cls.Float(1, 3), 0);
}

// Every record a row, blank lines too: how the loaders built the grids before
// they learned to leave rows out. The calculation must not tell the difference.
void LoadEveryRecord(std::string_view text, TGrid& grid, bool accounts) {
    const auto records = ParseCsv(text);
    grid.SetRowCount(grid.FixedRows());
    for (std::size_t i = 1; i < records.size(); ++i) {
        const auto& f = records[i];
        const int r = grid.AddRow();
        grid.SetObject(0, r, accounts ? AccountKindOf(f[0]) : AssetClassOf(f[0]));
        grid.SetText(0, r, f[0]);
        for (int c = 1; c <= (accounts ? 3 : 1); ++c) {
            double v = 0;
            grid.SetFloat(c, r, std::size_t(c) < f.size() && ParseNumber(f[std::size_t(c)], v) ? v : 0);
        }
    }
    if (accounts) RecomputeAccountTotals(grid);
}

void ExpectSameGrid(const TGrid& a, const TGrid& b, const std::string& what) {
    ASSERT_EQ(a.RowCount(), b.RowCount()) << what;
    ASSERT_EQ(a.ColCount(), b.ColCount()) << what;
    for (int r = 0; r < a.RowCount(); ++r)
        for (int c = 0; c < a.ColCount(); ++c) {
            const TCell &x = a.Cell(c, r), &y = b.Cell(c, r);
            EXPECT_TRUE(x.value == y.value || (x.IsFloat() && y.IsFloat() && std::isnan(std::get<double>(x.value)) &&
                                               std::isnan(std::get<double>(y.value))))
                << what << " cell " << c << "," << r << ": " << a.Text(c, r) << " / " << b.Text(c, r);
            EXPECT_EQ(x.object, y.object) << what << " cell " << c << "," << r;
        }
    ASSERT_EQ(a.Merges().size(), b.Merges().size()) << what;
}

TEST(Csv, RowsLeftOutChangeNoResult) {
    // Blank lines and unknown labels before, between and after the rows; runs
    // shorter and longer than the number of classes.
    const char* accounts[] = {
        "h\nNon-Reg.,600,0,300\nTFSAs,100\n",
        "\n\nNon-Reg.,600,0,300\n\n\nfoo,5,5,5\n\nRRSPs/RRIFs,50\n\n\n",
        "h\n\n\n,7,7\nTFSAs,10\nTFSAs,30\n\n",
    };
    const char* classes[] = {
        "h\nEquities Canada,40\nShort-Term Fixed,60\n",
        "h\nEquities Canada,40\n\nShort-Term Fixed,60\n",
        "h\n\n\n\n\nEquities Canada,40\nShort-Term Fixed,60\n",
        "h\nGold,5\n\nEquities Canada,30\n\n\n\nShort-Term Fixed,40\nx\n\nEquities Global,25\n\n",
        "h\nEquities U.S.,50\n\"\"\nMid/Long-Term Fixed,50\n\n\n\nEquities Global,1\n",
        "\nEquities Canada,60\n\n",
        "h\n\n\nGold,3\n\n",
    };
    for (const char* a : accounts)
        for (const char* c : classes)
            for (TCsvRows mode : {TCsvRows::Shown, TCsvRows::ForResult}) {
                const std::string what = std::string(a) + " | " + c + (mode == TCsvRows::Shown ? " | shown" : " | result");
                TGrid refAcc = MakeAccountsGrid(), refCls = MakeClassesGrid(), refRes = MakeResultGrid();
                LoadEveryRecord(a, refAcc, true);
                LoadEveryRecord(c, refCls, false);
                TGrid acc = MakeAccountsGrid(), cls = MakeClassesGrid(), res = MakeResultGrid();
                LoadAccountsCsv(a, acc, mode);
                LoadClassesCsv(c, cls, mode);
                EXPECT_EQ(ResultCellCount(acc, cls), ResultCellCount(refAcc, refCls)) << what;
                CalculateAllocation(refAcc, refCls, refRes, kDesignAddAccWidth);
                CalculateAllocation(acc, cls, res, kDesignAddAccWidth);
                ExpectSameGrid(res, refRes, what + " result");
                ExpectSameGrid(cls, refCls, what + " classes");
                ExpectSameGrid(acc, refAcc, what + " accounts");
                EXPECT_EQ(ResultCellCount(acc, cls), std::int64_t(res.RowCount()) * res.ColCount()) << what;
            }
}

TEST(Csv, BlankLinesBuildNoRows) {
    const std::string blank(4'000'000, '\n');
    TGrid acc = MakeAccountsGrid();
    LoadAccountsCsv("h\n" + blank + "TFSAs,5\n" + blank, acc);
    EXPECT_EQ(acc.RowCount(), 2);
    TGrid cls = MakeClassesGrid();
    LoadClassesCsv("h\n" + blank + "Equities Canada,60\nShort-Term Fixed,40\n" + blank, cls);
    EXPECT_EQ(cls.RowCount(), 5);   // two blank rows still move the two names in the result
}

} // namespace
