#include "core/Notices.h"

#include <cmath>
#include <cstdio>
#include <algorithm>
#include <map>

#include "core/Allocation.h"
#include "core/Vocabulary.h"

namespace tessary {

namespace {

// Targets within half a hundredth of 100 show as 100.00 and are not odd.
constexpr double kPercentTolerance = 0.005;

// The records and total of one calculation, built as the calculation builds them.
struct TWorking {
    std::vector<TAccTypeEntry> list;
    double total = 0;
};

TWorking WorkingList(const TGrid& accounts) {
    TWorking w;
    auto add = [&](std::int32_t code, double amount) {
        w.list.push_back({std::to_string(code), TAccTypeRec(code, amount)});
    };
    for (int r = accounts.RowCount() - 1; r >= 1; --r) {
        const std::intptr_t kind = accounts.Object(0, r);
        if (AccountKindLabel(kind).empty()) continue; // dropped before the calculation
        w.total += accounts.Float(4, r);
        if (kind == 1) {
            for (int c = 1; c <= 3; ++c) {
                const double v = accounts.Float(c, r);
                if (v > 0 || std::isnan(v)) add(c, v);
            }
        } else {
            add(static_cast<std::int32_t>(static_cast<std::uint32_t>(kind) + 2u), accounts.Float(1, r));
        }
    }
    // The same sort decides the same order, which matters once amounts are negative.
    SortWorkingList(w.list);
    return w;
}

// Summed from the last row up, as the calculation sums: 100 must come out
// exactly where the calculation gets exactly 100.
double PreferredPercent(const TGrid& classes) {
    double pct = 0;
    for (int r = classes.RowCount() - 1; r >= 1; --r) {
        const std::intptr_t code = classes.Object(0, r);
        if (!AssetClassLabel(code).empty() && IsPreferredClass(code)) pct += classes.Float(1, r);
    }
    return pct;
}

std::string Grouped(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    const double rounded = RoundHalfEven(value);
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.0f", std::abs(rounded));
    std::string plain = digits, out;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        if (i > 0 && (plain.size() - i) % 3 == 0) out += ',';
        out += plain[i];
    }
    return (rounded < 0 ? "-" : "") + out;
}

std::string PercentText(double value) {
    if (!std::isfinite(value)) return Grouped(value);
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.2f", value);
    std::string s = buf;
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
    return s;
}

std::string RowSubject(const char* grid, int row, const std::string& label) {
    std::string s = std::string(grid) + " row " + std::to_string(row);
    if (!label.empty()) s += " (\"" + label + "\")";
    return s;
}

} // namespace

std::string_view NoticeKey(NoticeId id) {
    switch (id) {
        case NoticeId::TargetsNotHundred: return "targets-total";
        case NoticeId::EquityHundred: return "equity-hundred";
        case NoticeId::EquityNotPlaced: return "equity-not-placed";
        case NoticeId::AccountRowDropped: return "account-row-dropped";
        case NoticeId::ClassRowDropped: return "class-row-dropped";
        case NoticeId::DuplicateAccountType: return "duplicate-account-type";
        case NoticeId::ResultNamesShifted: return "result-names-shifted";
        case NoticeId::TradesNoPlan: return "trades-no-plan";
        case NoticeId::HoldingsWithoutPlan: return "holdings-without-plan";
        case NoticeId::ClassNotTargeted: return "class-not-targeted";
        case NoticeId::TaxableShortfall: return "taxable-shortfall";
        case NoticeId::NegativeAmount: return "negative-amount";
        case NoticeId::NegativeTarget: return "negative-target";
        case NoticeId::ImplausibleAmount: return "implausible-amount";
        case NoticeId::NotANumber: return "not-a-number";
        case NoticeId::UnknownAccountType: return "unknown-account-type";
        case NoticeId::UnknownAssetClass: return "unknown-asset-class";
    }
    return {};
}

double UnplacedEquityMoney(const TGrid& accounts, const TGrid& classes) {
    const TWorking w = WorkingList(accounts);
    double left = w.total * PreferredPercent(classes) / 100;
    for (const auto& e : w.list) {
        // The calculation's Min: with a NaN on either side the amount wins.
        const double placed = left < e.rec.Amount ? left : e.rec.Amount;
        left -= placed;
    }
    return left;
}

std::vector<TNotice> InputNotices(const TGrid& accounts, const TGrid& classes) {
    std::vector<TNotice> notices;

    bool anyClass = false, anyOther = false;
    double targets = 0;
    for (int r = 1; r < classes.RowCount(); ++r) {
        const std::intptr_t code = classes.Object(0, r);
        if (AssetClassLabel(code).empty()) continue;
        anyClass = true;
        anyOther = anyOther || !IsPreferredClass(code);
        targets += classes.Float(1, r);
    }
    if (anyClass && !(std::abs(targets - 100) < kPercentTolerance))
        notices.push_back({NoticeId::TargetsNotHundred,
                           "The class targets total " + PercentText(targets) + "%, not 100%.",
                           0,
                           {},
                           targets});

    if (anyOther && PreferredPercent(classes) == 100)
        notices.push_back(
            {NoticeId::EquityHundred, "The equity classes total 100%: the other classes divide by zero.", 0, {}, 100});

    // Whole units only: the result grid shows no cents.
    const double unplaced = UnplacedEquityMoney(accounts, classes);
    if (RoundHalfEven(unplaced) >= 1)
        notices.push_back({NoticeId::EquityNotPlaced,
                           "$" + Grouped(unplaced) +
                               " meant for equities could not be placed in any account: the result holds less "
                               "equity than the targets ask.",
                           0,
                           {},
                           unplaced});

    std::map<std::int32_t, int> perCode;
    for (const auto& e : WorkingList(accounts).list) ++perCode[e.rec.AccType];
    for (const auto& [code, count] : perCode) {
        if (count < 2) continue;
        std::string label(AccountTypeLabel(code));
        if (label.empty()) label = "code " + std::to_string(code);
        notices.push_back(
            {NoticeId::DuplicateAccountType,
             std::to_string(count) + " accounts are of type \"" + label + "\": the result shows only one of them.", 0,
             label, static_cast<double>(count)});
    }

    // Cells the calculation reads as 0 although they hold something (worksheets).
    auto textCells = [&](const TGrid& grid, NoticeGrid which, const char* name, int lastCol) {
        for (int r = 1; r < grid.RowCount(); ++r)
            for (int c = 1; c <= lastCol; ++c) {
                const auto* text = std::get_if<std::string>(&grid.Cell(c, r).value);
                double ignored = 0;
                if (!text || text->empty() || ParseNumber(*text, ignored)) continue;
                TNotice n{NoticeId::NotANumber,
                          RowSubject(name, r, "") + ", column \"" + grid.Text(c, 0) + "\": \"" + *text +
                              "\" is not a number; it counts as 0.",
                          r, *text, 0};
                n.col = c;
                n.grid = which;
                notices.push_back(std::move(n));
            }
    };
    textCells(accounts, NoticeGrid::Accounts, "Accounts", 3);
    textCells(classes, NoticeGrid::Classes, "Classes", 1);

    for (int r = 1; r < accounts.RowCount(); ++r) {
        const std::intptr_t kind = accounts.Object(0, r);
        const std::string label = accounts.Text(0, r);
        if (kind != 0 && AccountKindLabel(kind).empty()) {
            notices.push_back({NoticeId::UnknownAccountType,
                               RowSubject("Accounts", r, label) + " has an unknown account type (" +
                                   std::to_string(kind) + "); Calculate drops it.",
                               r, label, static_cast<double>(kind)});
            continue;
        }
        // One notice a row: the first odd amount says enough.
        for (int c = 1; c <= 3; ++c) {
            const double v = accounts.Float(c, r);
            const bool huge = !(std::abs(v) <= kPlausibleAmount);
            if (!huge && !(v < 0)) continue;
            TNotice n{huge ? NoticeId::ImplausibleAmount : NoticeId::NegativeAmount,
                      RowSubject("Accounts", r, label) + (huge ? " holds " + Grouped(v) +
                                                                     ", more than a portfolio "
                                                                     "plausibly holds."
                                                               : " holds a negative amount, $" + Grouped(v) + "."),
                      r, label, v};
            n.col = c;
            n.grid = NoticeGrid::Accounts;
            notices.push_back(std::move(n));
            break;
        }
    }
    for (int r = 1; r < classes.RowCount(); ++r) {
        const std::intptr_t code = classes.Object(0, r);
        const std::string label = classes.Text(0, r);
        if (code != 0 && AssetClassLabel(code).empty())
            notices.push_back({NoticeId::UnknownAssetClass,
                               RowSubject("Classes", r, label) + " has an unknown asset class (" +
                                   std::to_string(code) + "); Calculate drops it.",
                               r, label, static_cast<double>(code)});
        else if (const double p = classes.Float(1, r); p < 0)
            notices.push_back({NoticeId::NegativeTarget,
                               RowSubject("Classes", r, label) + " has a negative target, " + PercentText(p) + "%.", r,
                               label, p});
    }

    for (int r = 1; r < accounts.RowCount(); ++r) {
        if (accounts.Object(0, r) != 0) continue;
        const std::string label = accounts.Text(0, r);
        const bool money = accounts.Float(1, r) != 0 || accounts.Float(2, r) != 0 || accounts.Float(3, r) != 0;
        if (label.empty() && !money) continue;
        notices.push_back({NoticeId::AccountRowDropped,
                           RowSubject("Accounts", r, label) + " has no account type; Calculate drops it.", r, label,
                           0});
    }
    for (int r = 1; r < classes.RowCount(); ++r) {
        if (classes.Object(0, r) != 0) continue;
        const std::string label = classes.Text(0, r);
        if (label.empty() && classes.Float(1, r) == 0) continue;
        notices.push_back({NoticeId::ClassRowDropped,
                           RowSubject("Classes", r, label) + " has no asset class; Calculate drops it.", r, label, 0});
    }
    return notices;
}

std::vector<TNotice> ResultNotices(const TGrid& classes, const TGrid& result) {
    std::vector<TNotice> notices;
    // A result of other classes (edited since), or none yet (a calculation
    // leaves an odd column count), says nothing about these.
    if (result.RowCount() != classes.RowCount() + 1 || result.ColCount() % 2 == 0) return notices;
    for (int r = 1; r < classes.RowCount(); ++r) {
        if (result.Text(0, r + 1) == classes.Text(0, r)) continue;
        notices.push_back({NoticeId::ResultNamesShifted,
                           "From result row " + std::to_string(r + 1) +
                               " on, the class names do not belong to their values: a class row without a class "
                               "was removed.",
                           r + 1, classes.Text(0, r), 0});
        break;
    }
    return notices;
}

std::vector<TNotice> TradesNotices(const TTargets* targets, const std::vector<TAccountTrades>& trades,
                                   const TRebalanceOptions& options) {
    std::vector<TNotice> notices;
    if (!targets) {
        notices.push_back({NoticeId::TradesNoPlan,
                           "The result has no finite targets (the equity classes may total 100%): no trades.",
                           0,
                           {},
                           0});
        return notices;
    }
    // Whole units, as the trades are shown.
    auto shows = [](double v) { return std::abs(RoundHalfEven(v)) >= 1; };
    std::map<int, double> untargeted; // class code -> money held in it
    for (const TAccountTrades& a : trades) {
        const std::string type(AccountTypeLabel(a.AccountType));
        if (a.Target == 0 && shows(a.Current))
            notices.push_back({NoticeId::HoldingsWithoutPlan,
                               "The plan has no money for \"" + type + "\", which holds $" + Grouped(a.Current) + ".",
                               0, type, a.Current});
        double shortfall = 0;
        for (const TClassTrade& t : a.Classes) {
            if (std::find(targets->Classes.begin(), targets->Classes.end(), t.AssetClass) == targets->Classes.end() &&
                t.Current != 0)
                untargeted[t.AssetClass] += t.Current;
            shortfall += std::max(0.0, t.Target - t.Current) - std::max(0.0, t.Trade);
        }
        if (options.NoSellTaxable && IsTaxableAccountType(a.AccountType) && a.Target != 0 && shows(shortfall))
            notices.push_back(
                {NoticeId::TaxableShortfall,
                 "\"" + type + "\" needs $" + Grouped(shortfall) + " more cash to reach its targets without selling.",
                 0, type, shortfall});
    }
    for (const auto& [cls, held] : untargeted) {
        const std::string label(AssetClassLabel(cls));
        notices.push_back({NoticeId::ClassNotTargeted,
                           "\"" + label + "\" is held ($" + Grouped(held) + ") but the plan does not target it.", 0,
                           label, held});
    }
    return notices;
}

} // namespace tessary
