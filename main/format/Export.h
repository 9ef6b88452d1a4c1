// The result handed on as text: tab-separated for the clipboard (pastes into
// a spreadsheet) and CSV for a file.
//
// Both carry what the grid shows, as plain numbers: rounded as displayed, no
// currency sign, no digit grouping, "." as decimal separator, "inf", "-inf"
// and "nan" for values that are not finite. Texts are as they are.
#pragma once

#include <QString>
#include <stdexcept>

#include "format/GridFormat.h"
#include "core/Grid.h"

namespace tessary {

// A failed write; the message names the file.
class EExport : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Inclusive cell rectangle; it is clipped to the grid.
struct TCellRange {
    int left = 0, top = 0, right = 0, bottom = 0;
};

TCellRange WholeGrid(const TGrid& grid);

// One cell as exported.
QString ExportText(const TGrid& grid, GridKind kind, int col, int row);

// Rows end with "\n"; tabs and line breaks inside a text become spaces.
QString GridAsTsv(const TGrid& grid, GridKind kind, const TCellRange& range);
inline QString GridAsTsv(const TGrid& grid, GridKind kind) { return GridAsTsv(grid, kind, WholeGrid(grid)); }

// RFC 4180: CRLF line ends; a field with a comma, quote or line break is quoted.
QString GridAsCsv(const TGrid& grid, GridKind kind, const TCellRange& range);
inline QString GridAsCsv(const TGrid& grid, GridKind kind) { return GridAsCsv(grid, kind, WholeGrid(grid)); }

// UTF-8 with a byte-order mark (spreadsheets then read accented labels right),
// written atomically. Throws EExport.
void SaveCsv(const QString& path, const QString& csv);

} // namespace tessary
