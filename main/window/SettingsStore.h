// The program's own settings: saved presets, recent worksheets, language.
#pragma once

#include <QSettings>

namespace tessary {

QSettings ProgramSettingsStore();

} // namespace tessary
