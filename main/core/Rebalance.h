// From today's holdings to the plan: per account type, the money each asset
// class should gain or lose. Money never moves between account types, so each
// one is settled on its own with the cash it has.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/Grid.h"

namespace tessary {

// Input the trades cannot be computed from; the message names the file and
// line, or the account type and class.
class ERebalanceInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline constexpr int kAccountTypeCount = 7; // codes 1..7, "MD Taxable" .. "DCPs/LRIFs"
inline constexpr int kAssetClassCount = 6;  // codes 1..6, "Short-Term Fixed" .. "Equities Global"

// Money per account-type code and asset-class code, both 1-based.
class TClassAmounts {
public:
    double Get(int accountType, int assetClass) const { return amounts_[Index(accountType, assetClass)]; }
    void Add(int accountType, int assetClass, double amount);
    // Whether the pair was given at all (an amount of 0 included).
    bool Named(int accountType, int assetClass) const { return named_[Index(accountType, assetClass)]; }
    bool Named(int accountType) const;
    // Whether any pair was given.
    bool Any() const;

private:
    static std::size_t Index(int accountType, int assetClass) {
        return static_cast<std::size_t>((accountType - 1) * kAssetClassCount + assetClass - 1);
    }
    std::array<double, kAccountTypeCount * kAssetClassCount> amounts_{};
    std::array<bool, kAccountTypeCount * kAssetClassCount> named_{};
};

// The plan as the calculation left it in the result grid.
struct TTargets {
    std::vector<int> AccountTypes; // column order, each once
    std::vector<int> Classes;      // row order, each once
    TClassAmounts Amounts;
};

// Reads the "Value" cell of every column pair headed by an account-type label
// and every body row named by a class label; a label met twice adds. A target
// that is not finite is refused.
TTargets ReadTargets(const TGrid& result);

// Holdings CSV: a header line, then "account type,class,amount" rows with the
// result's labels. Repeated pairs add, an empty amount is 0, blank lines are
// skipped; an unknown label or an amount that is not a plain number refuses
// the whole file, naming it (fileName) and the line.
TClassAmounts ParseHoldingsCsv(std::string_view text, const std::string& fileName);

// "MD Taxable", "BS Taxable" and "QR Taxable": selling there realises gains.
bool IsTaxableAccountType(int accountType);

struct TRebalanceOptions {
    double BandPercent = 0;     // trades of at most this share of the account's target are skipped
    bool NoSellTaxable = false; // taxable accounts only invest their new money
};

struct TClassTrade {
    int AssetClass = 0;
    double Current = 0;
    double Target = 0;
    double Trade = 0; // > 0 buy, < 0 sell
};

struct TAccountTrades {
    int AccountType = 0;
    double Current = 0;
    double Target = 0;
    double Cash = 0;     // target total - current total: new money, or money to raise when negative
    double Unplaced = 0; // cash the trades leave over
    std::vector<TClassTrade> Classes;
};

// Accounts of the plan in its order, then account types only the holdings
// name; per account the plan's classes, then classes only its holdings name.
std::vector<TAccountTrades> Rebalance(const TTargets& targets, const TClassAmounts& holdings,
                                      const TRebalanceOptions& options);

// What the adviser gives besides the plan: today's holdings and the two options.
struct TTradesInput {
    TClassAmounts Holdings;
    TRebalanceOptions Options;
};

// Sums over all accounts, for a totals line.
struct TTradeTotals {
    double Current = 0, Target = 0, Cash = 0, Unplaced = 0, Bought = 0, Sold = 0;
};
TTradeTotals TotalsOf(const std::vector<TAccountTrades>& accounts);

} // namespace tessary
