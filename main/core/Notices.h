// Odd situations in the allocator's grids, for a notice line that informs
// without blocking. Nothing here changes the grids or the calculation.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Grid.h"
#include "core/Rebalance.h"

namespace tessary {

enum class NoticeId {
    TargetsNotHundred,    // value: the targets' total
    EquityHundred,        // the other classes divide by zero
    EquityNotPlaced,      // value: the money left over
    AccountRowDropped,    // row, label: a row Calculate will drop
    ClassRowDropped,      // row, label
    DuplicateAccountType, // label: the account type; value: how many records
    ResultNamesShifted,   // row: first result row whose name is not its class
    TradesNoPlan,         // the result gives no finite targets: no trades
    HoldingsWithoutPlan,  // label: account type; value: money held there
    ClassNotTargeted,     // label: asset class; value: money held in it
    TaxableShortfall,     // label: account type; value: money the targets need beyond its cash
    NegativeAmount,       // row, col, label; value: the amount
    NegativeTarget,       // row, label; value: the target
    ImplausibleAmount,    // row, col, label; value: beyond kPlausibleAmount or not finite
    NotANumber,           // grid, row, col; label: the cell's text, which counts as 0
    UnknownAccountType,   // row, label; value: the row object no account kind has
    UnknownAssetClass,    // row, label; value: the row object no asset class has
};

// More money than any client plausibly holds: a typing slip or a unit mix-up.
inline constexpr double kPlausibleAmount = 1e12;

enum class NoticeGrid { None, Accounts, Classes };

struct TNotice {
    NoticeId id;
    std::string text; // a short English sentence
    int row = 0;      // grid row, where the notice is about one
    std::string label;
    double value = 0;
    int col = 0; // grid column, where the notice is about one cell
    NoticeGrid grid = NoticeGrid::None;
};

// Stable key of an id, for translations and logs ("targets-total", ...).
std::string_view NoticeKey(NoticeId id);

// Notices of the input grids as they stand. Call it before a calculation:
// Calculate deletes the rows the drop notices are about.
std::vector<TNotice> InputNotices(const TGrid& accounts, const TGrid& classes);

// Notices of a result grid against the classes grid it was calculated from,
// right after the calculation.
std::vector<TNotice> ResultNotices(const TGrid& classes, const TGrid& result);

// Money of the equity targets that no account can take: what the calculation
// leaves in PreferredLeft after the last record (0 when all of it was placed).
double UnplacedEquityMoney(const TGrid& accounts, const TGrid& classes);

// Notices of the trades from today's holdings to the plan. Pass no targets
// (nullptr) when the result could not give them.
std::vector<TNotice> TradesNotices(const TTargets* targets, const std::vector<TAccountTrades>& trades,
                                   const TRebalanceOptions& options);

} // namespace tessary
