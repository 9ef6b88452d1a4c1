// The window's language: English or French, chosen by the system locale until
// the adviser picks one in the menu (kept in the settings).
#pragma once

#include <QLocale>
#include <QString>

namespace tessary {

enum class TLanguage { English, French };

// The adviser's choice from the settings, else the system locale's language.
TLanguage StartLanguage();

// Installs the translations and the number format (fr_CA: "1 234 $") of a
// language; widgets receive a LanguageChange event. Needs a QCoreApplication.
void ApplyLanguage(TLanguage language);

TLanguage CurrentLanguage();

// Stores the choice for the next start.
void RememberLanguage(TLanguage language);

} // namespace tessary
