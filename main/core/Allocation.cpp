#include "core/Allocation.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/OriginalSort.h"
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

std::int32_t ColumnPosition(std::int32_t t, const std::vector<TAccTypeEntry>& list) {
    if (t < 1) return t;
    // t minus the missing codes below t equals 1 plus the distinct codes present
    // below t; counting these keeps a wild code from looping for long.
    std::set<std::int32_t> below;
    for (const auto& e : list)
        if (e.rec.AccType >= 1 && e.rec.AccType < t) below.insert(e.rec.AccType);
    return static_cast<std::int32_t>(1 + below.size());
}

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

    for (int r = grdAccounts.RowCount() - 1; r >= 1; --r) {
        std::intptr_t kind = grdAccounts.Object(0, r);
        if (kind == 0) {
            grdAccounts.DeleteRow(r);
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

    SortWorkingList(list);

    grdResult.SetColCount(2 * static_cast<int>(list.size()) + 1);
    grdResult.SetRowCount(grdClasses.RowCount() + 1);

    for (int r = grdClasses.RowCount() - 1; r >= 1; --r) {
        std::intptr_t code = grdClasses.Object(0, r);
        if (code == 0) {
            grdClasses.DeleteRow(r);
            continue;
        }
        if (IsPreferredClass(code)) preferredPct += grdClasses.Float(1, r);
        grdResult.SetText(0, r + 1, grdClasses.Text(0, r));
    }

    grdResult.SetRowCount(grdClasses.RowCount() + 1);

    double preferredLeft = total * preferredPct / 100;
    const int pctWidth = static_cast<int>(RoundHalfEven(addAccWidth * 25.0 / 30.0));
    const int valueWidth = static_cast<int>(RoundHalfEven(addAccWidth * 60.0 / 30.0));

    for (const auto& entry : list) {
        const TAccTypeRec& rec = entry.rec;
        double accPreferred = Smaller(preferredLeft, rec.Amount);
        double accRest = rec.Amount - accPreferred;
        preferredLeft -= accPreferred;

        const int col = (ColumnPosition(rec.AccType, list) - 1) * 2 + 1;
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
