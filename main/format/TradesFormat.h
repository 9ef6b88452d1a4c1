// The trades in the forms they leave the program: JSON for scripts and checks,
// an aligned table for people.
#pragma once

#include <QJsonDocument>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <optional>
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

// One line of the trades as the window and the report show them, labels in
// the installed language; a class at 0 throughout is left out. Cash and unplaced money sit under Buy when there is
// money to invest, under Sell when money has to be raised.
struct TTradesRow {
    enum class Kind { Account, Class, Cash, Unplaced, Total };
    Kind kind = Kind::Class;
    int code = 0;                                     // account type (Account, Cash, Unplaced) or class (Class)
    QString account;                                  // the account type, on every row of it
    QString item;                                     // class, "Cash" or "Left unplaced"; empty on Account and Total
    std::optional<double> current, target, buy, sell; // sell as a positive amount
};
std::vector<TTradesRow> TradesRows(const std::vector<TAccountTrades>& accounts);
// "Account type", "Asset class", "Current", "Target", "Buy", "Sell".
QStringList TradesHeaders();

// For a spreadsheet: the headers, then every row, amounts as shown (whole
// units) but plain: no grouping, no currency, "." as decimal point.
QString TradesAsTsv(const std::vector<TAccountTrades>& accounts);
QString TradesAsCsv(const std::vector<TAccountTrades>& accounts);

} // namespace tessary
