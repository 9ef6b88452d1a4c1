#include "window/AllocationChart.h"

#include <QAbstractAxis>
#include <QAbstractSeries>
#include <QBarCategoryAxis>
#include <QChart>
#include <QEvent>
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
    placeholder = new QLabel(this);
    placeholder->setObjectName(QStringLiteral("lblChartEmpty"));
    placeholder->setAlignment(Qt::AlignCenter);
    placeholder->setWordWrap(true);
    placeholder->setStyleSheet(QStringLiteral("color: #6B7280;"));
    placeholder->setText(tr("Calculate to see the allocation"));
}

void TAllocationChart::resizeEvent(QResizeEvent* event) {
    QChartView::resizeEvent(event);
    placeholder->setGeometry(rect());
}

void TAllocationChart::changeEvent(QEvent* event) {
    QChartView::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) placeholder->setText(tr("Calculate to see the allocation"));
}

void TAllocationChart::Update(double labelSize) {
    QChart* c = chart();
    UpdateAllocationChart(*c, result_, AppLocale());
    // Small labels leave the bars their room in the strip under the grid.
    QFont small = font();
    small.setPointSizeF(labelSize);
    c->legend()->setFont(small);
    for (QAbstractAxis* axis : c->axes()) axis->setLabelsFont(small);
    // Account types break onto two lines rather than being cut under narrow bars.
    if (auto* categories = c->axes(Qt::Horizontal).isEmpty()
                               ? nullptr
                               : qobject_cast<QBarCategoryAxis*>(c->axes(Qt::Horizontal).first())) {
        QStringList lines = categories->categories();
        for (QString& t : lines) {
            t.replace(QLatin1Char(' '), QStringLiteral("<br>"));
            t.replace(QLatin1Char('/'), QStringLiteral("/<br>"));
        }
        categories->setCategories(lines);
    }
    // Axes from 0 to 1 and the grey square of a nameless class say nothing.
    const bool empty = AllocationSeries(result_).accountTypes.isEmpty();
    for (QAbstractAxis* axis : c->axes()) axis->setVisible(!empty);
    for (QAbstractSeries* series : c->series()) series->setVisible(!empty);
    c->legend()->setVisible(!empty);
    placeholder->setVisible(empty);
}

} // namespace tessary
