#include <gtest/gtest.h>

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <QStackedBarSeries>
#include <QValueAxis>
#include <cmath>
#include <memory>

#include "ReportTestUtil.h"
#include "core/Vocabulary.h"
#include "report/Chart.h"
#include "report/ClassColours.h"

using namespace tessary;
using namespace tessary::test;

namespace {

const QLocale kLocale(QLocale::English, QLocale::Canada);

QStackedBarSeries* BarsOf(QChart& chart) {
    return chart.series().size() == 1 ? qobject_cast<QStackedBarSeries*>(chart.series().first()) : nullptr;
}

TEST(Chart, BarsHoldTheAccountsAndClassesTheirTargetsInTheirColours) {
    const TGrids g = Sample();
    const TGrids in = FromCsv(SampleFile("accounts.csv"), SampleFile("classes.csv"), false);
    std::unique_ptr<QChart> chart(MakeAllocationChart(g.result, kLocale));
    QStackedBarSeries* bars = BarsOf(*chart);
    ASSERT_TRUE(bars);
    const QStringList types = qobject_cast<QBarCategoryAxis*>(chart->axes(Qt::Horizontal).first())->categories();

    // Every account's money, split over its classes.
    std::map<QString, double> money;
    for (int r = 1; r < in.accounts.RowCount(); ++r) {
        const auto kind = in.accounts.Object(0, r);
        for (int c = 1; c <= 3; ++c)
            if (kind == 1 ? in.accounts.Float(c, r) > 0 : c == 1)
                money[QString::fromUtf8(AccountTypeLabel(kind == 1 ? c : kind + 2).data())] += in.accounts.Float(c, r);
    }
    ASSERT_EQ(static_cast<std::size_t>(types.size()), money.size());
    double total = 0;
    for (qsizetype i = 0; i < types.size(); ++i) {
        double stacked = 0;
        for (QBarSet* set : bars->barSets()) stacked += set->at(i);
        EXPECT_NEAR(stacked, money.at(types[i]), 1e-6) << types[i].toStdString();
        total += money.at(types[i]);
    }
    // Each class gets its target of the whole, in its own colour; six colours, all different.
    ASSERT_EQ(bars->count(), g.classes.RowCount() - 1);
    QSet<QRgb> colours;
    for (int r = 1; r < g.classes.RowCount(); ++r) {
        QBarSet* set = bars->barSets()[r - 1];
        EXPECT_EQ(set->label().toStdString(), g.classes.Text(0, r));
        EXPECT_NEAR(set->sum(), total * g.classes.Float(1, r) / 100, 1e-6) << g.classes.Text(0, r);
        EXPECT_EQ(set->color(), ClassColour(g.classes.Object(0, r)));
        colours.insert(set->color().rgb());
    }
    EXPECT_EQ(colours.size(), 6);
}

struct ChartCase {
    const char* name;
    const char* accounts;
    const char* classes;
};

class ChartOfResult : public ::testing::TestWithParam<ChartCase> {};

TEST_P(ChartOfResult, OneFiniteBarPerShownAccountTypeWithinTheAxis) {
    const TGrids g = FromCsv(GetParam().accounts, GetParam().classes);
    std::unique_ptr<QChart> chart(MakeAllocationChart(g.result, kLocale));
    QStackedBarSeries* bars = BarsOf(*chart);
    ASSERT_TRUE(bars);
    ASSERT_EQ(chart->axes().size(), 2);
    const QStringList types = qobject_cast<QBarCategoryAxis*>(chart->axes(Qt::Horizontal).first())->categories();
    auto* values = qobject_cast<QValueAxis*>(chart->axes(Qt::Vertical).first());
    ASSERT_TRUE(values);

    QStringList headers;   // spare column pairs have none
    for (int c = 1; c + 1 < g.result.ColCount(); c += 2)
        if (!g.result.Text(c, 0).empty()) headers << QString::fromStdString(g.result.Text(c, 0));
    EXPECT_EQ(types, headers);
    for (qsizetype i = 0; i < types.size(); ++i) {
        qreal up = 0, down = 0;
        for (QBarSet* set : bars->barSets()) {
            EXPECT_TRUE(std::isfinite(set->at(i)));
            (set->at(i) >= 0 ? up : down) += set->at(i);
        }
        EXPECT_LE(values->min(), down);
        EXPECT_GE(values->max(), up);
    }

    // A later calculation replaces what the chart shows.
    UpdateAllocationChart(*chart, Sample().result, kLocale);
    ASSERT_TRUE(BarsOf(*chart));
    EXPECT_EQ(BarsOf(*chart)->count(), 6);
    EXPECT_EQ(chart->axes().size(), 2);
}

INSTANTIATE_TEST_SUITE_P(
    Results, ChartOfResult,
    ::testing::Values(ChartCase{"Ordinary", "h\nNon-Reg.,600\nRRSPs/RRIFs,400\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n"},
                      ChartCase{"DivisionByZero", "h\nNon-Reg.,100\nTFSAs,-50\n", "h\nEquities Canada,100\nShort-Term Fixed,10\n"},
                      ChartCase{"NegativeAccount", "h\nTFSAs,-300\nLIRAs/LIFs,200\n", "h\nShort-Term Fixed,100\n"},
                      ChartCase{"SameTypeTwice", "h\nTFSAs,100\nTFSAs,300\nRRSPs/RRIFs,50\n", "h\nEquities Global,100\n"},
                      ChartCase{"NoAccounts", "h\n", "h\nEquities Global,100\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Chart, PaintsBarsOnlyInTheColoursOfTheClassesPresent) {
    QImage image(800, 500, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const TGrids g = FromCsv(SampleFile("accounts.csv"), "h\nShort-Term Fixed,40\nEquities Canada,60\n");
    PaintAllocationChart(painter, QRectF(0, 0, 800, 500), g.result, kLocale);
    painter.end();
    std::map<QRgb, int> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) ++pixels[image.pixel(x, y)];
    for (int code = 1; code <= 6; ++code)
        EXPECT_EQ(pixels[ClassColour(code).rgb()] > 50, code == 1 || code == 3) << "class " << code;
}

} // namespace
