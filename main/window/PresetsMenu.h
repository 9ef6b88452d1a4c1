// The menu of named target mixes: the built-in ones, then those the adviser
// saved in the program's settings, then the action that saves one.
#pragma once

#include <QMenu>

#include "core/Grid.h"
#include "core/Presets.h"

namespace tessary {

class TPresetsMenu : public QMenu {
    Q_OBJECT
public:
    // classes: the grid whose targets "Save" stores.
    TPresetsMenu(const TGrid& classes, QWidget* parent);

    // Rebuilt before every showing: the settings may have changed meanwhile.
    void Fill();
    // Asks for a name and stores the current targets under it in the settings.
    void SaveCurrentTargets();

signals:
    void presetChosen(const TTargetPreset& preset);

protected:
    void changeEvent(QEvent* event) override;

private:
    const TGrid& classes_;
};

} // namespace tessary
