#include "window/InputGridsPanel.h"

#include <QEvent>
#include <cmath>
#include <string_view>

#include "format/GridFormat.h"
#include "core/CsvInput.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"
#include "window/MainWindowLayout.h"

namespace tessary {

namespace {

int RoundInt(double v) { return static_cast<int>(std::lround(v)); }

std::string_view View(const QByteArray& bytes) {
    return std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

} // namespace

TInputGridsPanel::TInputGridsPanel(QWidget* parent)
    : QWidget(parent), accounts_(MakeAccountsGrid()), classes_(MakeClassesGrid()) {
    setObjectName(QStringLiteral("pnInputs"));

    accountsGrid = new TGridView(accounts_, GridKind::Accounts, this);
    accountsGrid->setObjectName(QStringLiteral("grdAccounts"));
    addAccountRowButton = MakeButton("btnAddAcc", true);
    deleteAccountRowButton = MakeButton("btnDelAcc", true);
    classesGrid = new TGridView(classes_, GridKind::Classes, this);
    classesGrid->setObjectName(QStringLiteral("grdClasses"));
    importButton = MakeButton("btnImp", false);
    deleteClassRowButton = MakeButton("AdvRepeatButton1", true);
    addClassRowButton = MakeButton("AdvRepeatButton2", true);
    classesTotalLabel = new QLabel(QStringLiteral("0%"), this);
    classesTotalLabel->setObjectName(QStringLiteral("Label2"));
    classesTotalLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    accountsTotalLabel = new QLabel(QStringLiteral("$0"), this);
    accountsTotalLabel->setObjectName(QStringLiteral("Label3"));
    accountsTotalLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    clearAccountsButton = MakeButton("btnClear", true);
    presetsButton = new QToolButton(this);
    presetsButton->setObjectName(QStringLiteral("btnPresets"));
    presetsButton->setPopupMode(QToolButton::InstantPopup);
    presetsMenu = new TPresetsMenu(classes_, presetsButton);
    presetsMenu->setObjectName(QStringLiteral("mnuPresets"));
    presetsButton->setMenu(presetsMenu);
    connect(presetsMenu, &TPresetsMenu::presetChosen, this, &TInputGridsPanel::ApplyTargetPreset);

    accountsGrid->stretchFirstColumn = true;
    accountsGrid->onAppendRow = [this] { btnAddAccClick(); };
    classesGrid->onAppendRow = [this] { AdvRepeatButton2Click(); };
    classesGrid->stretchFirstColumn = true;
    auto* accModel = accountsGrid->GridModel();
    accModel->comboItems.assign(kAccountKindLabels.begin(), kAccountKindLabels.end());
    accModel->onComboChange = [this](int row, int index) { grdAccountsComboChange(accountsGrid, row, index); };
    accModel->onEditDone = [this](int, int) {
        grdAccountsEditCellDone();
        emit inputsChanged();
    };
    auto* clsModel = classesGrid->GridModel();
    clsModel->comboItems.assign(kAssetClassLabels.begin(), kAssetClassLabels.end());
    clsModel->onComboChange = [this](int row, int index) { grdAccountsComboChange(classesGrid, row, index); };
    clsModel->onEditDone = [this](int, int) {
        grdClassesEditCellDone();
        emit inputsChanged();
    };

    connect(addAccountRowButton, &QPushButton::clicked, this, &TInputGridsPanel::btnAddAccClick);
    connect(deleteAccountRowButton, &QPushButton::clicked, this, &TInputGridsPanel::btnDelAccClick);
    connect(addClassRowButton, &QPushButton::clicked, this, &TInputGridsPanel::AdvRepeatButton2Click);
    connect(deleteClassRowButton, &QPushButton::clicked, this, &TInputGridsPanel::AdvRepeatButton1Click);
    connect(clearAccountsButton, &QPushButton::clicked, this, &TInputGridsPanel::btnClearClick);
    RetranslateUi();
}

QPushButton* TInputGridsPanel::MakeButton(const char* name, bool compact) {
    auto* b = new QPushButton(this);
    b->setObjectName(QString::fromLatin1(name));
    b->setProperty("compact", compact);
    return b;
}

void TInputGridsPanel::RetranslateUi() {
    auto button = [](QAbstractButton* b, const QString& text) {
        b->setText(text);
        b->setAccessibleName(text);
    };
    accountsGrid->setAccessibleName(tr("Accounts"));
    classesGrid->setAccessibleName(tr("Asset class targets"));
    button(addAccountRowButton, tr("Add"));
    button(deleteAccountRowButton, tr("Delete"));
    button(clearAccountsButton, tr("Clear"));
    button(importButton, tr("Add from File"));
    button(addClassRowButton, tr("Add"));
    button(deleteClassRowButton, tr("Delete"));
    addAccountRowButton->setToolTip(tr("Add an account row"));
    deleteAccountRowButton->setToolTip(tr("Delete the current account row"));
    clearAccountsButton->setToolTip(tr("Empty the accounts grid"));
    addClassRowButton->setToolTip(tr("Add a class row"));
    deleteClassRowButton->setToolTip(tr("Delete the current class row"));
    importButton->setToolTip(tr("Add accounts from a client file (Ctrl+I)"));
    presetsButton->setText(tr("Targets"));
    presetsButton->setAccessibleName(tr("Target presets"));
    presetsButton->setToolTip(tr("Fill the targets with a named mix"));
}

void TInputGridsPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange) return;
    RetranslateUi();
    // Numbers and vocabulary follow the language too.
    ShowAccountsTotal(accountsTotal_);
    grdClassesEditCellDone();
    Refresh();
}

void TInputGridsPanel::LayoutControls(double z, double dx) {
    using namespace layout;
    const double dxL = dx * kAccountsWidthShare;
    const double dxR = dx - dxL;
    auto at = [z](const QRectF& r) {
        return QRect(RoundInt(r.x() * z), RoundInt(r.y() * z), RoundInt(r.width() * z), RoundInt(r.height() * z));
    };
    // Window coordinates first, so that every control lands where the window
    // would round it, whatever the panel's own rounding.
    QRect importAt = at(kImport);
    importAt.setWidth(importButton->width());
    const std::pair<QWidget*, QRect> places[] = {
        {accountsGrid, at(kAccountsGrid.adjusted(0, 0, dxL, 0))},
        {addAccountRowButton, at(kAddAccountRow)},
        {deleteAccountRowButton, at(kDeleteAccountRow)},
        {clearAccountsButton, at(kClearAccounts)},
        {importButton, importAt},
        {accountsTotalLabel, at(kAccountsTotal.adjusted(0, 0, dxL, 0))},
        {classesGrid, at(kClassesGrid.translated(dxL, 0).adjusted(0, 0, dxR, 0))},
        {addClassRowButton, at(kAddClassRow.translated(dxL, 0))},
        {deleteClassRowButton, at(kDeleteClassRow.translated(dxL, 0))},
        {presetsButton, at(kPresets.translated(dxL, 0))},
        {classesTotalLabel, at(kClassesTotal.translated(dxL, 0).adjusted(0, 0, dxR, 0))},
    };
    QRect bounds = at(kInputPanel.adjusted(0, 0, dx, 0));
    for (const auto& [w, r] : places) bounds |= r;
    bounds.setTopLeft(at(kInputPanel).topLeft());
    setGeometry(bounds);
    for (const auto& [w, r] : places) w->setGeometry(r.translated(-bounds.topLeft()));
}

void TInputGridsPanel::LoadInputs(const QByteArray& accountsCsv, const QByteArray& classesCsv) {
    if (!accountsCsv.isEmpty()) LoadAccountsCsv(View(accountsCsv), accounts_);
    if (!classesCsv.isEmpty()) LoadClassesCsv(View(classesCsv), classes_);
    grdAccountsEditCellDone();
    grdClassesEditCellDone();
    Refresh();
}

void TInputGridsPanel::Refresh() {
    accountsGrid->Refresh();
    classesGrid->Refresh();
}

void TInputGridsPanel::btnAddAccClick() {
    accounts_.AddRow();
    accountsGrid->Refresh();
}

void TInputGridsPanel::AdvRepeatButton2Click() {
    classes_.AddRow();
    classesGrid->Refresh();
}

void TInputGridsPanel::btnDelAccClick() {
    const int row = accountsGrid->currentIndex().row();
    if (row >= 1) {
        accounts_.DeleteRow(row);
        accountsGrid->Refresh();
        emit inputsChanged();
    }
}

void TInputGridsPanel::AdvRepeatButton1Click() {
    const int row = classesGrid->currentIndex().row();
    if (row >= 1) {
        classes_.DeleteRow(row);
        classesGrid->Refresh();
        emit inputsChanged();
    }
}

void TInputGridsPanel::btnClearClick() {
    ClearBodyRows(accounts_);
    accountsGrid->Refresh();
    emit inputsChanged();
}

void TInputGridsPanel::ApplyTargetPreset(const TTargetPreset& preset) {
    ApplyPreset(preset, classes_);
    grdClassesEditCellDone();
    classesGrid->Refresh();
    emit inputsChanged();
}

void TInputGridsPanel::grdAccountsEditCellDone() { ShowAccountsTotal(RecomputeAccountTotals(accounts_)); }

void TInputGridsPanel::ShowAccountsTotal(double total) {
    accountsTotal_ = total;
    accountsTotalLabel->setText(AccountsTotalLabel(total, AppLocale()));
}

void TInputGridsPanel::grdClassesEditCellDone() {
    classesTotalLabel->setText(ClassTotalLabel(ClassTotal(classes_), AppLocale()));
}

void TInputGridsPanel::grdAccountsComboChange(TGridView* grid, int row, int itemIndex) {
    grid->Grid().SetObject(0, row, itemIndex + 1);
}

} // namespace tessary
