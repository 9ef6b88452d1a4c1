#include "core/Rebalance.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/CsvInput.h"
#include "core/Vocabulary.h"

namespace tessary {

void TClassAmounts::Add(int accountType, int assetClass, double amount) {
    const std::size_t i = Index(accountType, assetClass);
    amounts_[i] += amount;
    named_[i] = true;
}

bool TClassAmounts::Named(int accountType) const {
    for (int c = 1; c <= kAssetClassCount; ++c)
        if (Named(accountType, c)) return true;
    return false;
}

bool TClassAmounts::Any() const { return std::find(named_.begin(), named_.end(), true) != named_.end(); }

namespace {

int AccountTypeOf(std::string_view label) {
    for (int t = 1; t <= kAccountTypeCount; ++t)
        if (AccountTypeLabel(t) == label) return t;
    return 0;
}

void AppendOnce(std::vector<int>& list, int value) {
    if (std::find(list.begin(), list.end(), value) == list.end()) list.push_back(value);
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// Digits with at most one decimal point, an optional sign and exponent, and
// spaces around: what a spreadsheet writes. No grouping, currency or words.
bool IsPlainNumber(std::string_view text) {
    auto isSpace = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    std::size_t i = 0;
    auto digits = [&] {
        const std::size_t from = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
        return i - from;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    std::size_t mantissa = digits();
    if (i < text.size() && text[i] == '.') {
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0) return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
        if (digits() == 0) return false;
    }
    return i == text.size();
}

bool IsBlank(const std::vector<std::string>& fields) {
    return std::all_of(fields.begin(), fields.end(),
                       [](const std::string& f) { return f.find_first_not_of(" \t") == std::string::npos; });
}

// The level L >= 0 at which the shortfalls above it add up to cash: filling
// the largest shortfalls first. When all of them take less, L is 0.
double FillLevel(std::vector<double> deficits, double cash) {
    std::erase_if(deficits, [](double d) { return !(d > 0); });
    std::sort(deficits.begin(), deficits.end(), std::greater<>());
    double sum = 0;
    for (std::size_t k = 0; k < deficits.size(); ++k) {
        sum += deficits[k];
        const double level = (sum - cash) / double(k + 1);
        const double next = k + 1 < deficits.size() ? deficits[k + 1] : 0.0;
        if (level >= next) return std::max(level, 0.0);
    }
    return 0;
}

} // namespace

bool IsTaxableAccountType(int accountType) { return accountType >= 1 && accountType <= 3; }

TTargets ReadTargets(const TGrid& result) {
    TTargets targets;
    std::vector<std::pair<int, int>> rows; // body row, class
    for (int r = 2; r < result.RowCount(); ++r)
        if (const int cls = AssetClassOf(result.Text(0, r)); cls != 0) {
            rows.emplace_back(r, cls);
            AppendOnce(targets.Classes, cls);
        }
    for (int c = 1; c + 1 < result.ColCount(); c += 2) {
        const int type = AccountTypeOf(result.Text(c, 0));
        if (type == 0) continue;
        AppendOnce(targets.AccountTypes, type);
        for (const auto& [r, cls] : rows) {
            const double value = result.Float(c + 1, r);
            if (!std::isfinite(value))
                throw ERebalanceInput("The plan has no finite target for " + Quoted(AccountTypeLabel(type)) + ", " +
                                      Quoted(AssetClassLabel(cls)) + " (the class targets may give equities 100 %)");
            targets.Amounts.Add(type, cls, value);
        }
    }
    return targets;
}

TClassAmounts ParseHoldingsCsv(std::string_view text, const std::string& fileName) {
    TClassAmounts holdings;
    const std::vector<TCsvRecord> records = ParseCsvRecords(text);
    for (std::size_t i = 1; i < records.size(); ++i) { // the first is the header
        const TCsvRecord& record = records[i];
        const std::vector<std::string>& f = record.Fields;
        if (IsBlank(f)) continue;
        auto refuse = [&](const std::string& why) {
            return ERebalanceInput("\"" + fileName + "\", line " + std::to_string(record.Line) + ": " + why);
        };
        const int type = AccountTypeOf(f[0]);
        if (type == 0) throw refuse("unknown account type " + Quoted(f[0]));
        const std::string cls = f.size() > 1 ? f[1] : std::string();
        const int assetClass = AssetClassOf(cls);
        if (assetClass == 0) throw refuse("unknown asset class " + Quoted(cls));
        const std::string amount = f.size() > 2 ? f[2] : std::string();
        for (std::size_t extra = 3; extra < f.size(); ++extra)
            if (!IsBlank({f[extra]})) throw refuse("more than three fields (account type, class, amount)");
        double value = 0;
        if (!IsBlank({amount})) {
            if (!IsPlainNumber(amount) || !ParseNumber(amount, value))
                throw refuse("the amount " + Quoted(amount) + " is not a plain number");
            if (!std::isfinite(value)) throw refuse("the amount " + Quoted(amount) + " is too large");
        }
        holdings.Add(type, assetClass, value);
    }
    return holdings;
}

std::vector<TAccountTrades> Rebalance(const TTargets& targets, const TClassAmounts& holdings,
                                      const TRebalanceOptions& options) {
    std::vector<int> types = targets.AccountTypes;
    for (int t = 1; t <= kAccountTypeCount; ++t)
        if (holdings.Named(t)) AppendOnce(types, t);

    std::vector<TAccountTrades> accounts;
    accounts.reserve(types.size());
    for (const int type : types) {
        TAccountTrades a;
        a.AccountType = type;
        std::vector<int> classes = targets.Classes;
        for (int c = 1; c <= kAssetClassCount; ++c)
            if (holdings.Named(type, c)) AppendOnce(classes, c);
        for (const int c : classes) {
            TClassTrade t;
            t.AssetClass = c;
            t.Target = targets.Amounts.Get(type, c);
            t.Current = holdings.Get(type, c);
            a.Target += t.Target;
            a.Current += t.Current;
            a.Classes.push_back(t);
        }
        a.Cash = a.Target - a.Current;

        if (options.NoSellTaxable && IsTaxableAccountType(type)) {
            if (a.Cash > 0) {
                std::vector<double> deficits;
                for (const TClassTrade& t : a.Classes) deficits.push_back(t.Target - t.Current);
                const double level = FillLevel(std::move(deficits), a.Cash);
                for (TClassTrade& t : a.Classes) t.Trade = std::max(0.0, t.Target - t.Current - level);
            }
        } else {
            const double band = options.BandPercent / 100 * a.Target;
            for (TClassTrade& t : a.Classes) {
                t.Trade = t.Target - t.Current;
                if (std::abs(t.Trade) <= band) t.Trade = 0;
            }
        }
        double traded = 0;
        for (TClassTrade& t : a.Classes) {
            if (t.Trade == 0) t.Trade = 0; // no "-0" in the outputs
            traded += t.Trade;
        }
        a.Unplaced = a.Cash - traded;
        accounts.push_back(std::move(a));
    }
    return accounts;
}

TTradeTotals TotalsOf(const std::vector<TAccountTrades>& accounts) {
    TTradeTotals totals;
    for (const TAccountTrades& a : accounts) {
        totals.Current += a.Current;
        totals.Target += a.Target;
        totals.Cash += a.Cash;
        totals.Unplaced += a.Unplaced;
        for (const TClassTrade& t : a.Classes) (t.Trade > 0 ? totals.Bought : totals.Sold) += t.Trade;
    }
    return totals;
}

} // namespace tessary
