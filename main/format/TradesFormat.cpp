#include "format/TradesFormat.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>
#include <cmath>

#include "core/Grid.h"
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
        rows.push_back(
            {Label(AccountTypeLabel(a.AccountType)), money(a.Current), money(a.Target), QString(), QString()});
        for (const TClassTrade& t : a.Classes)
            rows.push_back({QStringLiteral("  ") + Label(AssetClassLabel(t.AssetClass)), money(t.Current),
                            money(t.Target), t.Trade > 0 ? money(t.Trade) : QString(),
                            t.Trade < 0 ? money(-t.Trade) : QString()});
        rows.push_back({QStringLiteral("  Cash (negative: to raise)"), QString(), QString(), money(a.Cash), QString()});
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
        out +=
            line.trimmed().isEmpty() ? QString() : line.replace(QRegularExpression(QStringLiteral("\\s+$")), QString());
        out += QLatin1Char('\n');
    }
    return out;
}

namespace {

QString Vocabulary(std::string_view text) { return VocabularyText(std::string(text)); }

// Under Buy when positive, under Sell (as a positive amount) when negative.
void Signed(TTradesRow& row, double amount) {
    if (amount < 0)
        row.sell = -amount;
    else
        row.buy = amount;
}

QString Plain(const std::optional<double>& v) {
    if (!v) return {};
    if (std::isnan(*v)) return QStringLiteral("nan");
    if (std::isinf(*v)) return *v > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    const double rounded = RoundHalfEven(*v);
    return QString::number(rounded == 0 ? 0.0 : rounded, 'f', 0);
}

QList<QStringList> PlainRows(const std::vector<TAccountTrades>& accounts) {
    QList<QStringList> out{TradesHeaders()};
    for (const TTradesRow& r : TradesRows(accounts))
        out.append({r.account, r.item, Plain(r.current), Plain(r.target), Plain(r.buy), Plain(r.sell)});
    return out;
}

} // namespace

std::vector<TTradesRow> TradesRows(const std::vector<TAccountTrades>& accounts) {
    using Kind = TTradesRow::Kind;
    std::vector<TTradesRow> rows;
    for (const TAccountTrades& a : accounts) {
        const QString account = Vocabulary(AccountTypeLabel(a.AccountType));
        rows.push_back({Kind::Account, a.AccountType, account, {}, a.Current, a.Target, {}, {}});
        for (const TClassTrade& t : a.Classes) {
            // A class the account neither holds, targets nor trades says nothing.
            if (RoundHalfEven(t.Current) == 0 && RoundHalfEven(t.Target) == 0 && RoundHalfEven(t.Trade) == 0) continue;
            TTradesRow row{Kind::Class, t.AssetClass, account, Vocabulary(AssetClassLabel(t.AssetClass)),
                           t.Current,   t.Target,     {},      {}};
            if (t.Trade > 0) row.buy = t.Trade;
            if (t.Trade < 0) row.sell = -t.Trade;
            rows.push_back(std::move(row));
        }
        const QString cashLabel = a.Cash < 0 ? QCoreApplication::translate("tessary::Trades", "Cash to raise")
                                             : QCoreApplication::translate("tessary::Trades", "New cash");
        TTradesRow cash{Kind::Cash, a.AccountType, account, cashLabel, {}, {}, {}, {}};
        Signed(cash, a.Cash);
        rows.push_back(std::move(cash));
        if (RoundHalfEven(a.Unplaced) != 0) {
            TTradesRow left{Kind::Unplaced,
                            a.AccountType,
                            account,
                            QCoreApplication::translate("tessary::Trades", "Left unplaced"),
                            {},
                            {},
                            {},
                            {}};
            Signed(left, a.Unplaced);
            rows.push_back(std::move(left));
        }
    }
    const TTradeTotals totals = TotalsOf(accounts);
    rows.push_back({Kind::Total,
                    0,
                    QCoreApplication::translate("tessary::Trades", "Total"),
                    {},
                    totals.Current,
                    totals.Target,
                    totals.Bought,
                    -totals.Sold});
    return rows;
}

QStringList TradesHeaders() {
    return {QCoreApplication::translate("tessary::Trades", "Account type"),
            QCoreApplication::translate("tessary::Trades", "Asset class"),
            QCoreApplication::translate("tessary::Trades", "Current"),
            QCoreApplication::translate("tessary::Trades", "Target"),
            QCoreApplication::translate("tessary::Trades", "Buy"),
            QCoreApplication::translate("tessary::Trades", "Sell")};
}

QString TradesAsTsv(const std::vector<TAccountTrades>& accounts) {
    QString out;
    for (QStringList row : PlainRows(accounts)) {
        for (QString& f : row) f.replace(QRegularExpression(QStringLiteral("[\\t\\r\\n]")), QStringLiteral(" "));
        out += row.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return out;
}

QString TradesAsCsv(const std::vector<TAccountTrades>& accounts) {
    QString out;
    for (QStringList row : PlainRows(accounts)) {
        for (QString& f : row)
            if (f.contains(QRegularExpression(QStringLiteral("[,\"\\r\\n]"))))
                f = QLatin1Char('"') + QString(f).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
        out += row.join(QLatin1Char(',')) + QStringLiteral("\r\n");
    }
    return out;
}

} // namespace tessary
