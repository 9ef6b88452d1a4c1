#include "window/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QSettings>
#include <QTranslator>

#include "format/GridFormat.h"
#include "window/SettingsStore.h"

namespace tessary {

namespace {

const QString kLanguageKey = QStringLiteral("Language");

TLanguage& Current() {
    static TLanguage current = TLanguage::English;
    return current;
}

// Ours, then Qt's own (standard buttons and dialogs) when the system has them.
QTranslator& Ours() {
    static QTranslator* t = new QTranslator(QCoreApplication::instance());
    return *t;
}
QTranslator& Qts() {
    static QTranslator* t = new QTranslator(QCoreApplication::instance());
    return *t;
}

} // namespace

TLanguage StartLanguage() {
    const QString chosen = ProgramSettingsStore().value(kLanguageKey).toString();
    if (chosen == QLatin1String("fr")) return TLanguage::French;
    if (chosen == QLatin1String("en")) return TLanguage::English;
    return QLocale::system().language() == QLocale::French ? TLanguage::French : TLanguage::English;
}

void ApplyLanguage(TLanguage language) {
    // The number format first: adding or removing a translator tells every
    // widget to retranslate, and they format with it then.
    QLocale locale(QLocale::English, QLocale::Canada);
    if (language == TLanguage::French)
        locale = QLocale(QLocale::French, QLocale::Canada);
    else if (QLocale::system().language() == QLocale::English)
        locale = QLocale::system(); // an English system keeps its own format
    SetAppLocale(locale);
    QLocale::setDefault(locale);
    Current() = language;

    QCoreApplication::removeTranslator(&Qts());
    QCoreApplication::removeTranslator(&Ours());
    if (language != TLanguage::French) return;
    if (Qts().load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&Qts());
    if (Ours().load(QStringLiteral(":/i18n/tessary_fr.qm"))) QCoreApplication::installTranslator(&Ours());
}

TLanguage CurrentLanguage() { return Current(); }

void RememberLanguage(TLanguage language) {
    ProgramSettingsStore().setValue(kLanguageKey,
                                    language == TLanguage::French ? QStringLiteral("fr") : QStringLiteral("en"));
}

} // namespace tessary
