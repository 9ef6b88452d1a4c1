// The allocation chart under the result grid.
#pragma once

#include <QChartView>
#include <QLabel>

#include "core/Grid.h"

namespace tessary {

class TAllocationChart : public QChartView {
    Q_OBJECT
public:
    TAllocationChart(const TGrid& result, QWidget* parent);

    // Shows the result as it now stands; labelSize: the point size of legend and axes.
    void Update(double labelSize);

    // Shown instead of empty axes until a calculation gives bars.
    QLabel* placeholder;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    const TGrid& result_;
};

} // namespace tessary
