#include "report/Chart.h"

#include "format/GridFormat.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QGraphicsLayout>
#include <QGraphicsScene>
#include <QLegend>
#include <QPainter>
#include <QStackedBarSeries>
#include <QValueAxis>
#include <algorithm>
#include <cmath>

#include "report/ClassColours.h"

namespace tessary {

namespace {

qreal Amount(const TGrid& result, int col, int row) {
    const TCell& cell = result.Cell(col, row);
    const auto* d = std::get_if<double>(&cell.value);
    return d && std::isfinite(*d) ? *d : 0.0;
}

} // namespace

TAllocationSeries AllocationSeries(const TGrid& result) {
    TAllocationSeries s;
    std::vector<int> valueCols;
    for (int col = 1; col + 1 < result.ColCount(); col += 2) {
        const QString header = VocabularyText(result.Text(col, 0)).trimmed();
        if (header.isEmpty()) continue;
        s.accountTypes << header;
        valueCols.push_back(col + 1);
    }
    for (int row = 2; row < result.RowCount(); ++row) {
        TClassSeries cls;
        const std::string label = result.Text(0, row);
        cls.name = VocabularyText(label);
        cls.colour = ClassColourOfLabel(label);
        for (int col : valueCols) cls.amounts << Amount(result, col, row);
        s.classes.push_back(std::move(cls));
    }
    return s;
}

QChart* MakeAllocationChart(const TGrid& result, const QLocale& locale) {
    auto* chart = new QChart;
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundRoundness(0);
    chart->legend()->setAlignment(Qt::AlignBottom);
    chart->setLocalizeNumbers(true);
    UpdateAllocationChart(*chart, result, locale);
    return chart;
}

void UpdateAllocationChart(QChart& chart, const TGrid& result, const QLocale& locale) {
    chart.removeAllSeries();
    for (QAbstractAxis* axis : chart.axes()) {
        chart.removeAxis(axis);
        delete axis;
    }
    chart.setLocale(locale);

    const TAllocationSeries data = AllocationSeries(result);
    auto* series = new QStackedBarSeries;
    for (const TClassSeries& cls : data.classes) {
        auto* set = new QBarSet(cls.name);
        set->append(cls.amounts);
        set->setColor(cls.colour);
        set->setBorderColor(cls.colour.darker(130));
        series->append(set);
    }
    chart.addSeries(series);

    auto* categories = new QBarCategoryAxis;
    categories->append(data.accountTypes);
    chart.addAxis(categories, Qt::AlignBottom);
    series->attachAxis(categories);

    // Stacks grow both ways from 0 when amounts are negative.
    qreal low = 0, high = 0;
    for (qsizetype i = 0; i < data.accountTypes.size(); ++i) {
        qreal up = 0, down = 0;
        for (const TClassSeries& cls : data.classes) (cls.amounts[i] >= 0 ? up : down) += cls.amounts[i];
        high = std::max(high, up);
        low = std::min(low, down);
    }
    if (high == low) high = 1;
    auto* values = new QValueAxis;
    values->setRange(low, high);
    values->applyNiceNumbers();
    // Whole units, until they would take more digits than the strip has room for.
    values->setLabelFormat(std::max(-low, high) < 1e12 ? QStringLiteral("%.0f") : QStringLiteral("%.3g"));
    chart.addAxis(values, Qt::AlignLeft);
    series->attachAxis(values);
}

void PaintAllocationChart(QPainter& painter, const QRectF& target, const TGrid& result, const QLocale& locale) {
    if (target.isEmpty()) return;
    // Laid out at a screen size, then scaled: labels stay whole and small beside
    // the bars, also in a low strip.
    const qreal height = std::max<qreal>(320, 900 * target.height() / target.width());
    const QRectF source(0, 0, height * target.width() / target.height(), height);
    QGraphicsScene scene;
    QChart* chart = MakeAllocationChart(result, locale);
    scene.addItem(chart); // the scene owns it
    chart->setMargins(QMargins(0, 4, 0, 0));
    chart->setGeometry(source);
    if (chart->layout()) chart->layout()->activate();
    scene.render(&painter, target, source, Qt::IgnoreAspectRatio);
}

} // namespace tessary
