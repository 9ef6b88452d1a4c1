#include "core/Allocation.h"

#include <algorithm>
#include <cmath>

#include "core/ProductQuicksort.h"
#include "core/Vocabulary.h"

namespace tessary {

namespace {

int CompareKeys(const std::string& a, const std::string& b) {
    // Keys are decimal texts; case never matters, order is plain text order.
    int c = a.compare(b);
    return (c > 0) - (c < 0);
}

bool GreaterOrNaN(double v) { return v > 0 || std::isnan(v); }

// The original's Min: with a NaN on either side the second value wins.
double Smaller(double a, double b) { return a < b ? a : b; }

} // namespace

TColumnRanks::TColumnRanks(const std::vector<TAccTypeEntry>& list) {
    for (const auto& e : list)
        if (e.rec.AccType >= 1) codes_.push_back(e.rec.AccType);
    std::sort(codes_.begin(), codes_.end());
    codes_.erase(std::unique(codes_.begin(), codes_.end()), codes_.end());
}

std::int32_t TColumnRanks::operator()(std::int32_t t) const {
    if (t < 1) return t;
    // t minus the missing codes below t equals 1 plus the distinct codes present
    // below t; counting these keeps a wild code from looping for long.
    return static_cast<std::int32_t>(1 + (std::lower_bound(codes_.begin(), codes_.end(), t) - codes_.begin()));
}

std::int32_t ColumnPosition(std::int32_t t, const std::vector<TAccTypeEntry>& list) { return TColumnRanks(list)(t); }

void SortWorkingList(std::vector<TAccTypeEntry>& list) {
    TextListSort(list, [](const TAccTypeEntry& a, const TAccTypeEntry& b) { return CompareKeys(a.key, b.key); });
}

void CalculateAllocation(TGrid& grdAccounts, TGrid& grdClasses, TGrid& grdResult, int addAccWidth) {
    std::vector<TAccTypeEntry> list;
    double total = 0;
    double preferredPct = 0;

    auto add = [&](std::int32_t code, double amount) {
        list.push_back({std::to_string(code), TAccTypeRec(code, amount)});
    };

    // Rows without an object go, all in one pass at the end: one at a time,
    // each deletion moved every row below it.
    std::vector<bool> emptyAccounts(static_cast<std::size_t>(std::max(grdAccounts.RowCount(), 0)));
    for (int r = grdAccounts.RowCount() - 1; r >= 1; --r) {
        std::intptr_t kind = grdAccounts.Object(0, r);
        if (kind == 0) {
            emptyAccounts[static_cast<std::size_t>(r)] = true;
            continue;
        }
        total += grdAccounts.Float(4, r);
        if (kind == 1) {
            for (int c = 1; c <= 3; ++c) {
                double v = grdAccounts.Float(c, r);
                if (GreaterOrNaN(v)) add(c, v);
            }
        } else {
            // Only column 1 is the account's amount, whatever columns 2 and 3 hold.
            auto code = static_cast<std::int32_t>(static_cast<std::uint32_t>(kind) + 2u);
            add(code, grdAccounts.Float(1, r));
        }
    }

    grdAccounts.DeleteRows(emptyAccounts);

    SortWorkingList(list);

    // The result grid is sized once, to its final height: the class rows that
    // keep their object, plus the two header rows. Sizing it first for every
    // class row and shrinking it after leaves the same cells, as the names
    // written below the final height are cut off either way.
    int keptClasses = 0;
    for (int r = 1; r < grdClasses.RowCount(); ++r)
        if (grdClasses.Object(0, r) != 0) ++keptClasses;
    grdResult.SetColCount(2 * static_cast<int>(list.size()) + 1);
    grdResult.SetRowCount(std::min(grdClasses.RowCount(), keptClasses + 1) + 1);

    std::vector<bool> emptyClasses(static_cast<std::size_t>(std::max(grdClasses.RowCount(), 0)));
    for (int r = grdClasses.RowCount() - 1; r >= 1; --r) {
        std::intptr_t code = grdClasses.Object(0, r);
        if (code == 0) {
            emptyClasses[static_cast<std::size_t>(r)] = true;
            continue;
        }
        if (IsPreferredClass(code)) preferredPct += grdClasses.Float(1, r);
        // Its old row: a name below an emptied row lands lower than its values.
        grdResult.SetText(0, r + 1, grdClasses.Text(0, r));
    }
    grdClasses.DeleteRows(emptyClasses);

    grdResult.SetRowCount(grdClasses.RowCount() + 1);

    double preferredLeft = total * preferredPct / 100;
    const int pctWidth = static_cast<int>(RoundHalfEven(addAccWidth * 25.0 / 30.0));
    const int valueWidth = static_cast<int>(RoundHalfEven(addAccWidth * 60.0 / 30.0));

    const TColumnRanks rank(list);
    for (const auto& entry : list) {
        const TAccTypeRec& rec = entry.rec;
        double accPreferred = Smaller(preferredLeft, rec.Amount);
        double accRest = rec.Amount - accPreferred;
        preferredLeft -= accPreferred;

        const int col = (rank(rec.AccType) - 1) * 2 + 1;
        grdResult.SetText(col, 0, std::string(AccountTypeLabel(rec.AccType)));
        grdResult.SetText(col, 1, "%");
        grdResult.SetText(col + 1, 1, "Value");
        grdResult.Merge(col, 0, 2, 1);
        grdResult.SetColWidth(col, pctWidth);
        grdResult.SetColWidth(col + 1, valueWidth);

        for (int r = 1; r <= grdClasses.RowCount() - 1; ++r) {
            double p = grdClasses.Float(1, r);
            double classValue;
            if (IsPreferredClass(grdClasses.Object(0, r)) && GreaterOrNaN(preferredPct))
                classValue = p * accPreferred / preferredPct;
            else
                classValue = p * accRest / (100 - preferredPct);
            if (GreaterOrNaN(rec.Amount)) grdResult.SetFloat(col, r + 1, 100 * classValue / rec.Amount);
            grdResult.SetFloat(col + 1, r + 1, classValue);
        }
    }
}

std::int64_t ResultCellCount(const TGrid& grdAccounts, const TGrid& grdClasses) {
    std::int64_t records = 0, classes = 0;
    for (int r = 1; r < grdAccounts.RowCount(); ++r) {
        const std::intptr_t kind = grdAccounts.Object(0, r);
        if (kind == 1) {
            for (int c = 1; c <= 3; ++c) records += GreaterOrNaN(grdAccounts.Float(c, r)) ? 1 : 0;
        } else if (kind != 0) {
            ++records;
        }
    }
    for (int r = 1; r < grdClasses.RowCount(); ++r) classes += grdClasses.Object(0, r) != 0 ? 1 : 0;
    return (2 * records + 1) * (classes + 2);
}

TGrid MakeResultGrid() {
    TGrid g(2, 3, 2, 1);
    g.SetText(0, 0, "Asset Class");
    g.SetText(1, 0, " ");
    g.SetColWidth(0, 154);
    g.SetColWidth(1, 43);
    g.Merge(0, 0, 1, 2);
    return g;
}

} // namespace tessary
