#include "core/ImportMerge.h"

#include "core/Totals.h"
#include "core/Vocabulary.h"

namespace tessary {

int TargetColumn(std::uint8_t productKind) {
    switch (productKind) {
        case 1: return 2;
        case 2: return 3;
        default: return 1;
    }
}

double MergeImport(TGrid& grid, int column, const std::vector<TImportEntry>& entries) {
    RemoveUnlabelledRows(grid);
    for (const TImportEntry& e : entries) {
        double k = 1;
        if (!ParseNumber(e.KindText, k) || k != static_cast<double>(static_cast<std::int64_t>(k))) k = 1;
        const std::string label(AccountKindLabel(static_cast<std::int64_t>(k)));
        bool matched = false;
        for (int r = grid.FixedRows(); r < grid.RowCount(); ++r) {
            if (grid.Text(0, r) != label) continue;
            // Every matching row receives the amount.
            grid.SetFloat(column, r, grid.Float(column, r) + e.Amount);
            matched = true;
        }
        if (!matched) {
            const int r = grid.AddRow();
            grid.SetText(0, r, label);
            grid.SetObject(0, r, static_cast<std::intptr_t>(k));
            grid.SetFloat(column, r, e.Amount);
        }
    }
    return RecomputeAccountTotals(grid);
}

} // namespace tessary
