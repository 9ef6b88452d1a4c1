// A small string-grid model: the one state behind the window's grids and the
// command line. Cells are empty, text or float; every cell can carry an
// integer object (the row object lives in column 0).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessary {

struct TCell {
    std::variant<std::monostate, std::string, double> value;
    std::intptr_t object = 0;

    bool IsEmpty() const { return std::holds_alternative<std::monostate>(value); }
    bool IsText() const { return std::holds_alternative<std::string>(value); }
    bool IsFloat() const { return std::holds_alternative<double>(value); }
};

struct TMerge {
    int col = 0, row = 0;
    int cols = 1, rows = 1;
};

class TGrid {
public:
    TGrid(int colCount, int rowCount, int fixedRows = 1, int fixedCols = 0);

    int ColCount() const { return colCount_; }
    int RowCount() const { return static_cast<int>(rows_.size()); }
    int FixedRows() const { return fixedRows_; }
    int FixedCols() const { return fixedCols_; }

    // Growing adds empty cells; shrinking drops the cells (and merges) outside.
    void SetColCount(int count);
    void SetRowCount(int count);

    const TCell& Cell(int col, int row) const;
    std::string Text(int col, int row) const;
    // The grid's float conversion: floats as stored, numeric text parsed,
    // anything else (empty, words) 0.
    double Float(int col, int row) const;
    std::intptr_t Object(int col, int row) const;

    // Writes outside the grid are ignored, as a grid control ignores them.
    void SetText(int col, int row, std::string text);
    void SetFloat(int col, int row, double value);
    void SetObject(int col, int row, std::intptr_t object);
    void ClearCell(int col, int row); // value and object
    void ClearRow(int row);

    void DeleteRow(int row);
    // Deletes every row r with remove[r] set, in one pass.
    void DeleteRows(const std::vector<bool>& remove);
    int AddRow(); // appends an empty row, returns its index
    void InsertRow(int row);

    void Merge(int col, int row, int cols, int rows);
    const std::vector<TMerge>& Merges() const { return merges_; }
    // The merge whose area covers the cell, or nullptr.
    const TMerge* MergeAt(int col, int row) const;

    int ColWidth(int col) const;
    void SetColWidth(int col, int width);

    // Bumped on every change; views use it to know when to refresh.
    std::uint64_t Revision() const { return revision_; }

private:
    TCell* Mutable(int col, int row);
    void Touch() { ++revision_; }
    void DropMergesOutside();

    int colCount_;
    int fixedRows_;
    int fixedCols_;
    std::vector<std::vector<TCell>> rows_;
    std::vector<int> colWidths_;
    std::vector<TMerge> merges_;
    std::uint64_t revision_ = 0;
};

// Parses a whole text as a number: optional spaces around, optional sign,
// decimal or exponent form, and "inf"/"nan" as the grid's conversion accepts them.
bool ParseNumber(std::string_view text, double& out);

// Shortest text that reads back to the same double ("." decimal separator).
std::string NumberText(double value);

// Nearest integer, an exact half going to the even neighbour.
double RoundHalfEven(double value);

} // namespace tessary
