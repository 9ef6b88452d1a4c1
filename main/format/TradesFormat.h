// The trades in the forms they leave the program: JSON for scripts and checks,
// an aligned table for people.
#pragma once

#include <QJsonDocument>
#include <QLocale>
#include <QString>
#include <vector>

#include "core/Rebalance.h"

namespace tessary {

// {"accounts": [{"account", "current", "target", "cash", "unplaced",
// "classes": [{"class", "current", "target", "trade"}, ...]}, ...]}; amounts
// unrounded, a non-finite one as "inf", "-inf" or "nan".
QJsonDocument TradesToJson(const std::vector<TAccountTrades>& accounts);

// Per account type a line with its totals and cash, then its classes with the
// amount to buy or sell, whole currency units in the locale's format.
QString FormatTradesText(const std::vector<TAccountTrades>& accounts, const QLocale& locale);

} // namespace tessary
