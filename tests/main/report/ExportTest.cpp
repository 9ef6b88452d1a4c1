#include <gtest/gtest.h>

#include <QDir>
#include <QLocale>
#include <QStringList>
#include <QTemporaryDir>

#include "ReportTestUtil.h"
#include "format/GridFormat.h"
#include "core/CsvInput.h"
#include "format/Export.h"

using namespace tessary;
using namespace tessary::test;

namespace {

// The number a cell shows in English (Canada), without its currency sign,
// grouping and the parentheses of a negative amount.
QString ShownNumber(const TGrid& grid, int col, int row) {
    QString shown = DisplayText(grid, GridKind::Result, col, row, QLocale(QLocale::English, QLocale::Canada));
    shown.remove(QLatin1Char('$')).remove(QLatin1Char(','));
    if (shown.startsWith(QLatin1Char('('))) shown = QLatin1Char('-') + shown.mid(1, shown.size() - 2);
    return shown == QLatin1String("-nan") ? QStringLiteral("nan") : shown == QLatin1String("-0") ? QStringLiteral("0") : shown;
}

struct Scenario {
    const char* name;
    const char* accounts;
    const char* classes;
};

class ResultExport : public ::testing::TestWithParam<Scenario> {
protected:
    TGrid Result() const { return *GetParam().accounts ? FromCsv(GetParam().accounts, GetParam().classes).result : Sample().result; }
};

TEST_P(ResultExport, CsvCarriesTheShownNumbersWithoutCurrency) {
    const TGrid result = Result();
    const QString csv = GridAsCsv(result, GridKind::Result);
    EXPECT_EQ(csv.count(QLatin1String("\r\n")), result.RowCount());
    EXPECT_EQ(csv.count(QLatin1Char('\n')), result.RowCount());   // CRLF only
    const auto records = ParseCsv(csv.toStdString());
    ASSERT_EQ(static_cast<int>(records.size()), result.RowCount());
    for (int r = 0; r < result.RowCount(); ++r) {
        ASSERT_EQ(static_cast<int>(records[r].size()), result.ColCount()) << "row " << r;
        for (int c = 0; c < result.ColCount(); ++c) {
            const bool number = result.Cell(c, r).IsFloat() && c > 0 && r > 1;
            EXPECT_EQ(QString::fromStdString(records[r][c]),
                      number ? ShownNumber(result, c, r) : QString::fromStdString(result.Text(c, r)))
                << "cell " << c << "," << r;
        }
    }
}

TEST_P(ResultExport, TsvOfARangeIsThatPartOfTheWhole) {
    const TGrid result = Result();
    QStringList lines = GridAsTsv(result, GridKind::Result).split(QLatin1Char('\n'));
    ASSERT_EQ(lines.takeLast(), QString());   // every row ends with a line feed
    ASSERT_EQ(lines.size(), result.RowCount());
    const int cols = result.ColCount(), rows = result.RowCount();
    const TCellRange ranges[] = {{1, 2, 2, 3}, {cols - 1, rows - 1, cols - 1, rows - 1}, {-5, -5, 0, 0},
                                 {cols - 2, 1, cols + 10, rows + 10}, {3, 0, 2, rows - 1}};
    for (const TCellRange& range : ranges) {
        const int l = std::max(range.left, 0), t = std::max(range.top, 0);
        const int rr = std::min(range.right, cols - 1), b = std::min(range.bottom, rows - 1);
        QString want;
        for (int r = t; r <= b && l <= rr; ++r)
            want += lines[r].split(QLatin1Char('\t')).mid(l, rr - l + 1).join(QLatin1Char('\t')) + QLatin1Char('\n');
        EXPECT_EQ(GridAsTsv(result, GridKind::Result, range), want) << range.left << "," << range.top << " to "
                                                                     << range.right << "," << range.bottom;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Results, ResultExport,
    ::testing::Values(Scenario{"Sample", "", ""},
                      Scenario{"NonFinite", "h\nNon-Reg.,100\nTFSAs,-50\n", "h\nEquities Canada,100\nShort-Term Fixed,10\n"},
                      Scenario{"Fractions", "h\nNon-Reg.,1000.5,0,333.25\nRRSPs/RRIFs,0.4\n",
                               "h\nEquities U.S.,33.3\nMid/Long-Term Fixed,66.7\n"},
                      Scenario{"NoAccounts", "h\n", "h\nEquities Global,100\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Export, TextsSurviveBothFormats) {
    const struct {
        const char* text;
        bool quoted;
    } cases[] = {{"Equities Canada", false}, {"Cash, savings", true}, {"The \"core\" part", true}, {"two\nlines", true},
                 {"cr\rhere", true},          {" padded ", false},     {"Épargne 日本 🙂", false},   {"tab\there", false}};
    TGrid g = MakeResultGrid();
    g.SetRowCount(2 + static_cast<int>(std::size(cases)));
    for (int i = 0; i < static_cast<int>(std::size(cases)); ++i) g.SetText(0, 2 + i, cases[i].text);
    const QString csv = GridAsCsv(g, GridKind::Result);
    const auto records = ParseCsv(csv.toStdString());
    const QStringList tsv = GridAsTsv(g, GridKind::Result).split(QLatin1Char('\n'));
    for (int i = 0; i < static_cast<int>(std::size(cases)); ++i) {
        SCOPED_TRACE(cases[i].text);
        const QString text = QString::fromUtf8(cases[i].text);
        EXPECT_EQ(records[2 + i][0], cases[i].text);
        EXPECT_EQ(csv.contains(QLatin1Char('"') + QString(text).replace("\"", "\"\"") + QLatin1Char('"')), cases[i].quoted);
        // A spreadsheet splits a paste at tabs and line breaks only.
        EXPECT_EQ(tsv[2 + i], QString(text).replace(QRegularExpression("[\t\r\n]"), " ") + QLatin1String("\t"));
    }
}

TEST(Export, SaveCsvWritesUtf8WithAMarkAndNamesTheFileOnFailure) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("result.csv"));
    const QString csv = GridAsCsv(FromCsv("h\nTFSAs,10\n", "h\nÉquités,100\n").result, GridKind::Result);
    SaveCsv(path, csv);
    const QByteArray bytes = ReadBytes(path);
    EXPECT_EQ(bytes, QByteArray("\xEF\xBB\xBF") + csv.toUtf8());
    ASSERT_TRUE(QDir().mkdir(dir.filePath(QStringLiteral("folder.csv"))));
    for (const QString& bad : {dir.filePath(QStringLiteral("folder.csv")), dir.filePath(QStringLiteral("no/such.csv"))}) {
        try {
            SaveCsv(bad, csv);
            ADD_FAILURE() << "wrote " << bad.toStdString();
        } catch (const EExport& e) {
            EXPECT_NE(std::string(e.what()).find(bad.toStdString()), std::string::npos) << e.what();
        }
    }
}


TEST(TypedNumber, ReadsWhatTheGridShowsInEitherLanguageAndRefusesTheRest) {
    const QLocale en(QLocale::English, QLocale::Canada), fr(QLocale::French, QLocale::Canada);
    // The grid's own forms must read back to what they show.
    for (const QLocale& l : {en, fr})
        for (double v : {250000.0, 12345678.0, -50000.0, 0.0}) {
            double got = 1;
            EXPECT_TRUE(ParseTypedNumber(FormatMoney(v, l), l, u'$', got) && got == v) << FormatMoney(v, l).toStdString();
        }
    struct Case { const QLocale* locale; const char16_t* text; QChar unit; bool ok; double value; };
    const Case cases[] = {
        {&en, u"250000", u'$', true, 250000}, {&en, u"$250,000", u'$', true, 250000},
        {&en, u"250,000.50", u'$', true, 250000.5}, {&en, u" $ 1,040,000.50 ", u'$', true, 1040000.5},
        {&en, u"250 000 $", u'$', true, 250000}, {&en, u"-$50", u'$', true, -50}, {&en, u"($1,200)", u'$', true, -1200},
        {&en, u"1e6", u'$', true, 1e6}, {&en, u"12.5%", u'%', true, 12.5}, {&fr, u"250 000 $", u'$', true, 250000},
        {&fr, u"1\u00A0040\u00A0000,50\u00A0$", u'$', true, 1040000.5},
        {&fr, u"1\u202F040\u202F000,50 $", u'$', true, 1040000.5}, {&fr, u"2,5", u'%', true, 2.5},
        {&fr, u"2.5", u'%', true, 2.5}, {&fr, u"12,5 %", u'%', true, 12.5}, {&fr, u"\u2212300 $", u'$', true, -300},
        {&en, u"", u'$', false, 0}, {&en, u"abc", u'$', false, 0}, {&en, u"2.5k", u'$', false, 0},
        {&en, u"1,5", u'$', false, 0}, {&en, u"12,34,567", u'$', false, 0}, {&en, u"$5$", u'$', false, 0},
        {&en, u"5%", u'$', false, 0}, {&en, u"1e999", u'$', false, 0}, {&en, u"nan", u'$', false, 0},
        {&en, u"\u0661\u0662", u'$', false, 0}, {&fr, u"1,234,567", u'$', false, 0}, {&fr, u"1 5 $", u'$', false, 0},
        {&fr, u"2,5.1", u'%', false, 0},
    };
    for (const Case& c : cases) {
        const QString text = QString::fromUtf16(c.text);
        double got = -7;
        EXPECT_EQ(ParseTypedNumber(text, *c.locale, c.unit, got), c.ok) << text.toStdString();
        EXPECT_EQ(got, c.ok ? c.value : -7) << text.toStdString();
    }
}

} // namespace
