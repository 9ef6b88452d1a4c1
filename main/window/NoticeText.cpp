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
                   : QCoreApplication::translate("tessary::Notices",
                                                 "Accounts row %1 (\"%2\") has no account type; Calculate drops it.")
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
        return QCoreApplication::translate("tessary::Notices", "The result has no finite targets (the equity classes "
                                                               "may total 100%): no trades.");
    case NoticeId::HoldingsWithoutPlan:
        return QCoreApplication::translate("tessary::Notices", "The plan has no money for \"%1\", which holds %2.")
            .arg(VocabularyText(n.label), FormatMoney(n.value, locale));
    case NoticeId::ClassNotTargeted:
        return QCoreApplication::translate("tessary::Notices", "\"%1\" is held (%2) but the plan does not target it.")
            .arg(VocabularyText(n.label), FormatMoney(n.value, locale));
    case NoticeId::TaxableShortfall:
        return QCoreApplication::translate("tessary::Notices",
                                           "\"%1\" needs %2 more cash to reach its targets without selling.")
            .arg(VocabularyText(n.label), FormatMoney(n.value, locale));
    }
    return QString::fromStdString(n.text);
}

} // namespace tessary
