// Running totals of the two input grids.
#pragma once

#include "core/Grid.h"

namespace tessary {

// Writes columns 1 + 2 + 3 into column 4 of every body row; returns the grand total.
double RecomputeAccountTotals(TGrid& grdAccounts);

// Sum of column 1 over the body rows of the classes grid.
double ClassTotal(const TGrid& grdClasses);

// Removes every body row whose column-0 text is empty (walking from the last).
void RemoveUnlabelledRows(TGrid& grid);

// A row object that names no account kind (accounts) or asset class (classes)
// becomes 0, so that the calculation drops the row rather than making a
// column or row without a name. Only worksheets can bring such objects.
void ForgetUnknownRowObjects(TGrid& grdAccounts, TGrid& grdClasses);

// Clear: empties the body rows, then leaves only the fixed rows.
void ClearBodyRows(TGrid& grid);

// The input grids as the window makes them: headers, widths, one empty body row.
TGrid MakeAccountsGrid();
TGrid MakeClassesGrid();

} // namespace tessary
