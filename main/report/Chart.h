// The allocation as a chart: per account type of the result grid, a stacked
// bar of its asset classes in amounts, in the class colours.
#pragma once

#include <QColor>
#include <QList>
#include <QLocale>
#include <QRectF>
#include <QStringList>
#include <vector>

#include "core/Grid.h"

class QChart;
class QPainter;

namespace tessary {

struct TClassSeries {
    QString name; // the result grid's row label
    QColor colour;
    QList<qreal> amounts; // one per account type; a value that is not finite counts 0
};

struct TAllocationSeries {
    QStringList accountTypes;          // the result's column-pair headers, left to right
    std::vector<TClassSeries> classes; // the result's rows, top to bottom
};

// What the chart shows. Column pairs without a header (spare columns the
// calculation did not write) are left out.
TAllocationSeries AllocationSeries(const TGrid& result);

// A new chart (the caller owns it, e.g. through a QChartView). Needs a QApplication.
QChart* MakeAllocationChart(const TGrid& result, const QLocale& locale);

// Replaces the chart's series and axes with the ones of this result.
void UpdateAllocationChart(QChart& chart, const TGrid& result, const QLocale& locale);

// Draws the chart of this result into target without a view (report, images).
void PaintAllocationChart(QPainter& painter, const QRectF& target, const TGrid& result, const QLocale& locale);

} // namespace tessary
