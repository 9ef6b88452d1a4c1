#include "window/NoticeText.h"

#include <QCoreApplication>
#include <cmath>

#include "format/GridFormat.h"

namespace tessary {

namespace {

QString Percent(double value, const QLocale& locale) {
    if (!std::isfinite(value)) return FormatPlain(value, locale);
    QString s = locale.toString(value, 'f', 2);
    const QString zero = locale.zeroDigit();
    while (s.endsWith(zero)) s.chop(1);
    if (s.endsWith(locale.decimalPoint())) s.chop(locale.decimalPoint().size());
    return s;
}

QString Label(const TNotice& n) { return QString::fromStdString(n.label); }

// Thirty digits say less than "1e+30".
QString Money(double value, const QLocale& locale) {
    if (std::isfinite(value) && std::abs(value) < 1e15) return FormatMoney(value, locale);
    const QString number = locale.toString(value, 'g', 3);
    return locale.language() == QLocale::French ? number + QStringLiteral(" $") : QStringLiteral("$") + number;
}

// "Accounts row 2 ("TFSAs")" in the window's language.
QString Row(const TNotice& n, bool accounts) {
    if (n.label.empty())
        return accounts ? QCoreApplication::translate("tessary::Notices", "Accounts row %1").arg(n.row)
                        : QCoreApplication::translate("tessary::Notices", "Classes row %1").arg(n.row);
    const QString label = VocabularyText(n.label);
    return accounts ? QCoreApplication::translate("tessary::Notices", "Accounts row %1 (\"%2\")").arg(n.row).arg(label)
                    : QCoreApplication::translate("tessary::Notices", "Classes row %1 (\"%2\")").arg(n.row).arg(label);
}

} // namespace

QString NoticeText(const TNotice& n) {
    const QLocale locale = AppLocale();
    switch (n.id) {
        case NoticeId::TargetsNotHundred:
            return QCoreApplication::translate("tessary::Notices", "The class targets total %1%, not 100%.")
                .arg(Percent(n.value, locale));
        case NoticeId::EquityHundred:
            return QCoreApplication::translate("tessary::Notices",
                                               "The equity classes total 100%: the other classes divide by zero.");
        case NoticeId::EquityNotPlaced:
            return QCoreApplication::translate("tessary::Notices",
                                               "%1 meant for equities could not be placed in any account: the result "
                                               "holds less equity than the targets ask.")
                .arg(FormatMoney(n.value, locale));
        case NoticeId::AccountRowDropped:
            return n.label.empty()
                       ? QCoreApplication::translate("tessary::Notices",
                                                     "Accounts row %1 has no account type; Calculate drops it.")
                             .arg(n.row)
                       : QCoreApplication::translate(
                             "tessary::Notices", "Accounts row %1 (\"%2\") has no account type; Calculate drops it.")
                             .arg(n.row)
                             .arg(Label(n));
        case NoticeId::ClassRowDropped:
            return n.label.empty()
                       ? QCoreApplication::translate("tessary::Notices",
                                                     "Classes row %1 has no asset class; Calculate drops it.")
                             .arg(n.row)
                       : QCoreApplication::translate("tessary::Notices",
                                                     "Classes row %1 (\"%2\") has no asset class; Calculate drops it.")
                             .arg(n.row)
                             .arg(Label(n));
        case NoticeId::DuplicateAccountType:
            return QCoreApplication::translate("tessary::Notices",
                                               "%1 accounts are of type \"%2\": the result shows only one of them.")
                .arg(static_cast<int>(n.value))
                .arg(Label(n));
        case NoticeId::ResultNamesShifted:
            return QCoreApplication::translate("tessary::Notices",
                                               "From result row %1 on, the class names do not belong to their values: "
                                               "a class row without a class was removed.")
                .arg(n.row);
        case NoticeId::TradesNoPlan:
            return QCoreApplication::translate("tessary::Notices",
                                               "The result has no finite targets (the equity classes "
                                               "may total 100%): no trades.");
        case NoticeId::HoldingsWithoutPlan:
            return QCoreApplication::translate("tessary::Notices", "The plan has no money for \"%1\", which holds %2.")
                .arg(VocabularyText(n.label), FormatMoney(n.value, locale));
        case NoticeId::ClassNotTargeted:
            return QCoreApplication::translate("tessary::Notices",
                                               "\"%1\" is held (%2) but the plan does not target it.")
                .arg(VocabularyText(n.label), FormatMoney(n.value, locale));
        case NoticeId::TaxableShortfall:
            return QCoreApplication::translate("tessary::Notices",
                                               "\"%1\" needs %2 more cash to reach its targets without selling.")
                .arg(VocabularyText(n.label), FormatMoney(n.value, locale));
        case NoticeId::NegativeAmount:
            return QCoreApplication::translate("tessary::Notices", "%1 holds a negative amount, %2.")
                .arg(Row(n, true), Money(n.value, locale));
        case NoticeId::ImplausibleAmount:
            return QCoreApplication::translate("tessary::Notices",
                                               "%1 holds %2, more than a portfolio plausibly holds.")
                .arg(Row(n, true), Money(n.value, locale));
        case NoticeId::NegativeTarget:
            return QCoreApplication::translate("tessary::Notices", "%1 has a negative target, %2%.")
                .arg(Row(n, false), Percent(n.value, locale));
        case NoticeId::NotANumber: {
            // The label is the cell's text here; the column names read the same in both languages.
            TNotice row = n;
            row.label.clear();
            const bool accounts = n.grid == NoticeGrid::Accounts;
            const char* const columns[] = {"", "MD", "BS", "QR"};
            const QString column = QString::fromLatin1(accounts && n.col >= 1 && n.col <= 3 ? columns[n.col] : "%");
            return QCoreApplication::translate("tessary::Notices",
                                               "%1, column %2: \"%3\" is not a number; it counts as 0.")
                .arg(Row(row, accounts), column, Label(n));
        }
        case NoticeId::UnknownAccountType:
            return QCoreApplication::translate("tessary::Notices",
                                               "%1 has an unknown account type (%2); Calculate drops it.")
                .arg(Row(n, true))
                .arg(static_cast<long long>(n.value));
        case NoticeId::UnknownAssetClass:
            return QCoreApplication::translate("tessary::Notices",
                                               "%1 has an unknown asset class (%2); Calculate drops it.")
                .arg(Row(n, false))
                .arg(static_cast<long long>(n.value));
    }
    return QString::fromStdString(n.text);
}

} // namespace tessary
