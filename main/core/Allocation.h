// The allocation calculation behind the Calculate button.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/Grid.h"

namespace tessary {

struct TAccTypeRec {
    TAccTypeRec(std::int32_t accType, double amount) : AccType(accType), Amount(amount) {}
    std::int32_t AccType;
    double Amount;
};

// One record of the working list, keyed by the decimal text of its code.
struct TAccTypeEntry {
    std::string key;
    TAccTypeRec rec;
};

// 1-based rank of code t among the distinct codes present in the list
// (a code below 1 is returned as it is).
std::int32_t ColumnPosition(std::int32_t t, const std::vector<TAccTypeEntry>& list);

// The same ranks for many codes: the distinct codes are collected once, and
// each rank is then a binary search.
class TColumnRanks {
public:
    explicit TColumnRanks(const std::vector<TAccTypeEntry>& list);
    std::int32_t operator()(std::int32_t t) const;

private:
    std::vector<std::int32_t> codes_; // distinct codes >= 1, ascending
};

// Sorts the working list by key text the way the original list class does
// (an unstable quicksort): equal codes end up in a definite order, which
// decides which of them is shown.
void SortWorkingList(std::vector<TAccTypeEntry>& list);

// The whole of btnCalculateClick over the three grids. addAccWidth is the
// current pixel width of the add-account button, the screen-scale reference
// for the result columns (30 at design size).
void CalculateAllocation(TGrid& grdAccounts, TGrid& grdClasses, TGrid& grdResult, int addAccWidth);

// Cells of the result grid that CalculateAllocation would make of these grids:
// (2 x records + 1) columns by (class rows with an object + 2) rows.
std::int64_t ResultCellCount(const TGrid& grdAccounts, const TGrid& grdClasses);

// A result this large takes some hundreds of MB and seconds to print: 100,000
// non-registered rows against the six classes fit, far beyond any real client.
inline constexpr std::int64_t kMaxResultCells = 5'000'000;

// Design width of the add-account button, used where there is no window.
inline constexpr int kDesignAddAccWidth = 30;

// The result grid as the window makes it at start-up: 2 columns, 3 rows,
// two fixed rows, "Asset Class" over the merged first column.
TGrid MakeResultGrid();

} // namespace tessary
