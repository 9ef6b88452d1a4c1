#include "core/Totals.h"

#include "core/Vocabulary.h"

namespace tessary {

double RecomputeAccountTotals(TGrid& grdAccounts) {
    double grand = 0;
    for (int r = 1; r < grdAccounts.RowCount(); ++r) {
        double sum = grdAccounts.Float(1, r) + grdAccounts.Float(2, r) + grdAccounts.Float(3, r);
        grdAccounts.SetFloat(4, r, sum);
        grand += sum;
    }
    return grand;
}

double ClassTotal(const TGrid& grdClasses) {
    double sum = 0;
    for (int r = 1; r < grdClasses.RowCount(); ++r) sum += grdClasses.Float(1, r);
    return sum;
}

void RemoveUnlabelledRows(TGrid& grid) {
    for (int r = grid.RowCount() - 1; r >= grid.FixedRows(); --r)
        if (grid.Text(0, r).empty()) grid.DeleteRow(r);
}

void ForgetUnknownRowObjects(TGrid& grdAccounts, TGrid& grdClasses) {
    for (int r = grdAccounts.FixedRows(); r < grdAccounts.RowCount(); ++r)
        if (AccountKindLabel(grdAccounts.Object(0, r)).empty()) grdAccounts.SetObject(0, r, 0);
    for (int r = grdClasses.FixedRows(); r < grdClasses.RowCount(); ++r)
        if (AssetClassLabel(grdClasses.Object(0, r)).empty()) grdClasses.SetObject(0, r, 0);
}

void ClearBodyRows(TGrid& grid) {
    for (int r = grid.FixedRows(); r < grid.RowCount(); ++r) grid.ClearRow(r);
    grid.SetRowCount(grid.FixedRows());
}

TGrid MakeAccountsGrid() {
    TGrid g(5, 2, 1, 0);
    const char* headers[] = {"Account Type", "MD", "BS", "QR", "Total"};
    const int widths[] = {77, 60, 60, 60, 60};
    for (int c = 0; c < 5; ++c) {
        g.SetText(c, 0, headers[c]);
        g.SetColWidth(c, widths[c]);
    }
    return g;
}

TGrid MakeClassesGrid() {
    TGrid g(2, 2, 1, 0);
    g.SetText(0, 0, "Asset Class");
    g.SetText(1, 0, "%");
    g.SetColWidth(0, 126);
    g.SetColWidth(1, 60);
    return g;
}

} // namespace tessary
