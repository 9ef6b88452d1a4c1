#include "window/AllocationChart.h"

#include <QAbstractAxis>
#include <QChart>
#include <QLegend>

#include "format/GridFormat.h"
#include "report/Chart.h"

namespace tessary {

TAllocationChart::TAllocationChart(const TGrid& result, QWidget* parent)
    : QChartView(MakeAllocationChart(result, AppLocale()), parent), result_(result) {
    setObjectName(QStringLiteral("chtAllocation"));
    setRenderHint(QPainter::Antialiasing);
    setFocusPolicy(Qt::NoFocus);
    chart()->legend()->setAlignment(Qt::AlignRight);
    chart()->setMargins(QMargins(2, 2, 2, 2));
}

void TAllocationChart::Update(double labelSize) {
    QChart* c = chart();
    UpdateAllocationChart(*c, result_, AppLocale());
    // Small labels leave the bars their room in the strip under the grid.
    QFont small = font();
    small.setPointSizeF(labelSize);
    c->legend()->setFont(small);
    for (QAbstractAxis* axis : c->axes()) axis->setLabelsFont(small);
}

} // namespace tessary
