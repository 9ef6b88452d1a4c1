#include "window/SettingsStore.h"

namespace tessary {

QSettings ProgramSettingsStore() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Torvane Labs Inc."),
                     QStringLiteral("Tessary"));
}

} // namespace tessary
