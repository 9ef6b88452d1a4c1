#include "format/TradesFormat.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>
#include <cmath>

#include "core/Vocabulary.h"
#include "format/GridFormat.h"

namespace tessary {

namespace {

QJsonValue Amount(double value) {
    if (std::isnan(value)) return QStringLiteral("nan");
    if (std::isinf(value)) return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    return value;
}

QString Label(std::string_view text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }

} // namespace

QJsonDocument TradesToJson(const std::vector<TAccountTrades>& accounts) {
    QJsonArray list;
    for (const TAccountTrades& a : accounts) {
        QJsonArray classes;
        for (const TClassTrade& t : a.Classes)
            classes.append(QJsonObject{{QStringLiteral("class"), Label(AssetClassLabel(t.AssetClass))},
                                       {QStringLiteral("current"), Amount(t.Current)},
                                       {QStringLiteral("target"), Amount(t.Target)},
                                       {QStringLiteral("trade"), Amount(t.Trade)}});
        list.append(QJsonObject{{QStringLiteral("account"), Label(AccountTypeLabel(a.AccountType))},
                                {QStringLiteral("current"), Amount(a.Current)},
                                {QStringLiteral("target"), Amount(a.Target)},
                                {QStringLiteral("cash"), Amount(a.Cash)},
                                {QStringLiteral("unplaced"), Amount(a.Unplaced)},
                                {QStringLiteral("classes"), classes}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("accounts"), list}});
}

QString FormatTradesText(const std::vector<TAccountTrades>& accounts, const QLocale& locale) {
    // Rows of five cells: name, current, target, buy, sell.
    std::vector<QStringList> rows;
    rows.push_back({QStringLiteral("Account type / class"), QStringLiteral("Current"), QStringLiteral("Target"),
                    QStringLiteral("Buy"), QStringLiteral("Sell")});
    auto money = [&](double v) { return FormatMoney(v, locale); };
    for (const TAccountTrades& a : accounts) {
        rows.push_back({Label(AccountTypeLabel(a.AccountType)), money(a.Current), money(a.Target), QString(), QString()});
        for (const TClassTrade& t : a.Classes)
            rows.push_back({QStringLiteral("  ") + Label(AssetClassLabel(t.AssetClass)), money(t.Current),
                            money(t.Target), t.Trade > 0 ? money(t.Trade) : QString(),
                            t.Trade < 0 ? money(-t.Trade) : QString()});
        rows.push_back({QStringLiteral("  Cash (negative: to raise)"), QString(), QString(),
                        money(a.Cash), QString()});
        if (a.Unplaced != 0 && std::round(a.Unplaced) != 0)
            rows.push_back({QStringLiteral("  Left unplaced"), QString(), QString(), money(a.Unplaced), QString()});
    }
    const TTradeTotals totals = TotalsOf(accounts);
    rows.push_back({QStringLiteral("Total"), money(totals.Current), money(totals.Target), money(totals.Bought),
                    money(-totals.Sold)});

    std::vector<qsizetype> widths(5, 0);
    for (const QStringList& r : rows)
        for (int c = 0; c < 5; ++c) widths[std::size_t(c)] = std::max(widths[std::size_t(c)], r[c].size());
    QString out;
    for (const QStringList& r : rows) {
        QString line = r[0].leftJustified(widths[0]);
        for (int c = 1; c < 5; ++c) line += QStringLiteral("  ") + r[c].rightJustified(widths[std::size_t(c)]);
        out += line.trimmed().isEmpty() ? QString() : line.replace(QRegularExpression(QStringLiteral("\\s+$")), QString());
        out += QLatin1Char('\n');
    }
    return out;
}

} // namespace tessary
