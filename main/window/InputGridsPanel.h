// The two input grids: the client's accounts and the target mix of asset
// classes, each with its buttons and its running total.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>

#include "core/Grid.h"
#include "core/Presets.h"
#include "window/GridView.h"
#include "window/PresetsMenu.h"

namespace tessary {

class TInputGridsPanel : public QWidget {
    Q_OBJECT
public:
    explicit TInputGridsPanel(QWidget* parent);

    TGrid& Accounts() { return accounts_; }
    TGrid& Classes() { return classes_; }

    // Fills the grids from CSV texts (an empty text leaves its grid as it is).
    void LoadInputs(const QByteArray& accountsCsv, const QByteArray& classesCsv);
    // Re-reads both views from their grids.
    void Refresh();
    // Places the controls at the window's zoom; extraWidth is the window's room
    // beyond its design width, in design pixels.
    void LayoutControls(double zoom, double extraWidth);
    // As last shown: a calculation does not recompute the label.
    void ShowAccountsTotal(double total);

    TGridView* accountsGrid;             // grdAccounts
    QPushButton* addAccountRowButton;    // btnAddAcc
    QPushButton* deleteAccountRowButton; // btnDelAcc
    QPushButton* clearAccountsButton;    // btnClear
    QPushButton* importButton;           // btnImp, handled by the window
    QLabel* accountsTotalLabel;          // Label3
    TGridView* classesGrid;              // grdClasses
    QPushButton* addClassRowButton;      // AdvRepeatButton2
    QPushButton* deleteClassRowButton;   // AdvRepeatButton1
    QToolButton* presetsButton;
    TPresetsMenu* presetsMenu;
    QLabel* classesTotalLabel; // Label2

public slots:
    void btnAddAccClick();
    void btnDelAccClick();
    void AdvRepeatButton2Click();
    void AdvRepeatButton1Click();
    void btnClearClick();
    void grdAccountsEditCellDone();
    void grdClassesEditCellDone();
    // The row object of column 0 of the edited row := chosen index + 1.
    void grdAccountsComboChange(TGridView* grid, int row, int itemIndex);
    // Fills the classes grid with a target mix.
    void ApplyTargetPreset(const TTargetPreset& preset);

signals:
    // Rows or cells changed in a way that may change the notices.
    void inputsChanged();

protected:
    void changeEvent(QEvent* event) override;

private:
    void RetranslateUi();
    QPushButton* MakeButton(const char* name, bool compact);

    // The grids' contents: declared first, the views refer to them.
    TGrid accounts_;
    TGrid classes_;
    double accountsTotal_ = 0;
};

} // namespace tessary
