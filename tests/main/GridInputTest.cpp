#include <gtest/gtest.h>

#include <cmath>

#include "core/CsvInput.h"
#include "core/Grid.h"
#include "core/Totals.h"

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

} // namespace
