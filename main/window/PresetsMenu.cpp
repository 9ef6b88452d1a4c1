#include "window/PresetsMenu.h"

#include <QEvent>
#include <QInputDialog>
#include <QSettings>

#include "window/SettingsStore.h"

namespace tessary {

TPresetsMenu::TPresetsMenu(const TGrid& classes, QWidget* parent) : QMenu(parent), classes_(classes) {
    connect(this, &QMenu::aboutToShow, this, &TPresetsMenu::Fill);
    Fill();
}

void TPresetsMenu::changeEvent(QEvent* event) {
    QMenu::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) Fill();
}

void TPresetsMenu::Fill() {
    clear();
    for (const TTargetPreset& p : BuiltInPresets())
        addAction(tr(p.Name.c_str()), this, [this, p] { emit presetChosen(p); });
    QSettings settings = ProgramSettingsStore();
    settings.beginGroup(QStringLiteral("Presets"));
    const QStringList names = settings.childKeys();
    bool first = true;
    for (const QString& name : names) {
        const auto preset = DecodePreset(name.toStdString(), settings.value(name).toString().toStdString());
        if (!preset) continue;
        if (first) addSeparator();
        first = false;
        addAction(name, this, [this, p = *preset] { emit presetChosen(p); });
    }
    settings.endGroup();
    addSeparator();
    QAction* save = addAction(tr("Save current targets as preset..."), this, &TPresetsMenu::SaveCurrentTargets);
    save->setObjectName(QStringLiteral("actSavePreset"));
}

void TPresetsMenu::SaveCurrentTargets() {
    bool ok = false;
    const QString name = QInputDialog::getText(parentWidget(), tr("Save targets"), tr("Name of the target mix:"),
                                               QLineEdit::Normal, QString(), &ok)
                             .trimmed();
    if (!ok || name.isEmpty()) return;
    const TTargetPreset preset = PresetFromGrid(name.toStdString(), classes_);
    QSettings settings = ProgramSettingsStore();
    // "/" and "\" would make sub-groups of the settings key.
    QString key = name;
    key.replace(QLatin1Char('/'), QLatin1Char('-')).replace(QLatin1Char('\\'), QLatin1Char('-'));
    settings.setValue(QStringLiteral("Presets/") + key, QString::fromStdString(EncodePreset(preset)));
    Fill();
}

} // namespace tessary
