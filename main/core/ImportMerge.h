// Adding imported amounts into the accounts grid.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/Grid.h"

namespace tessary {

// One entry of the import's result list: account kind "1".."5" and a whole amount.
struct TImportEntry {
    std::string KindText;
    std::int32_t Amount = 0;
};

// Column of the accounts grid that receives a product's amounts: MD 1, BS 2, QR 3.
int TargetColumn(std::uint8_t productKind);

// Removes rows with empty labels, adds each amount to every row labelled
// with its kind (appending a row when none is), then recomputes the totals.
// Returns the grand total.
double MergeImport(TGrid& grdAccounts, int targetColumn, const std::vector<TImportEntry>& entries);

} // namespace tessary
