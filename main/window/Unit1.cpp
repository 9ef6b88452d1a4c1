#include "window/Unit1.h"

#include <QApplication>
#include <QChartView>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QInputDialog>
#include <QSettings>
#include <QShortcut>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QUrl>
#include <QWindow>
#include <cmath>

#include "cli/GridFormat.h"
#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"
#include "core/ImportMerge.h"
#include "report/Chart.h"
#include "window/ImportDialog.h"

namespace tessary {

namespace {

int RoundInt(double v) { return static_cast<int>(std::lround(v)); }

// Opens the help file of a "file>window" text, as the shared help launcher does.
bool LaunchHelp(const QString& helpText) {
    const QString file = helpText.section(QLatin1Char('>'), 0, 0);
    if (!QFileInfo::exists(file)) return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

} // namespace

double FitZoom(double wanted, int availableHeight, double pixelsPerInch, int windowHeight) {
    const double available = availableHeight - 50.0 * pixelsPerInch / 96.0;
    if (windowHeight > 0 && available < windowHeight * wanted) return available / windowHeight;
    return wanted;
}

TForm1::TForm1(QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint),
      accounts_(MakeAccountsGrid()),
      classes_(MakeClassesGrid()),
      result_(MakeResultGrid()) {
    setObjectName(QStringLiteral("form"));
    setWindowTitle(QStringLiteral("Tessary"));
    setWindowIcon(QIcon(AppIcon(64)));
    setAttribute(Qt::WA_StyledBackground);

    grdAccounts = new TGridView(accounts_, GridKind::Accounts, this);
    grdAccounts->setObjectName(QStringLiteral("grdAccounts"));
    btnAddAcc = MakeButton("btnAddAcc", true);
    btnDelAcc = MakeButton("btnDelAcc", true);
    grdClasses = new TGridView(classes_, GridKind::Classes, this);
    grdClasses->setObjectName(QStringLiteral("grdClasses"));
    grdResult = new TGridView(result_, GridKind::Result, this);
    grdResult->setObjectName(QStringLiteral("grdResult"));
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    btnImp = MakeButton("btnImp", false);
    AdvRepeatButton1 = MakeButton("AdvRepeatButton1", true);
    AdvRepeatButton2 = MakeButton("AdvRepeatButton2", true);
    btnCalculate = MakeButton("btnCalculate", false);
    Label2 = new QLabel(QStringLiteral("0%"), this);
    Label2->setObjectName(QStringLiteral("Label2"));
    Label2->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    Label3 = new QLabel(QStringLiteral("$0"), this);
    Label3->setObjectName(QStringLiteral("Label3"));
    Label3->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    pnCaption = new TCaptionBar(this);
    pnCaption->setObjectName(QStringLiteral("pnCaption"));
    lblCaptionBar = new QLabel(QStringLiteral("Tessary"), this);
    lblCaptionBar->setObjectName(QStringLiteral("lblCaptionBar"));
    imApplIcon = new QLabel(this);
    imApplIcon->setObjectName(QStringLiteral("imApplIcon"));
    imApplIcon->setScaledContents(true);
    pnWndButtons = new QWidget(this);
    pnWndButtons->setObjectName(QStringLiteral("pnWndButtons"));
    hbtMinimize = MakeWindowButton(pnWndButtons, Glyph::Minimize, QString());
    hbtMinimize->setObjectName(QStringLiteral("hbtMinimize"));
    hbtQuit = MakeWindowButton(pnWndButtons, Glyph::Close, QString());
    hbtQuit->setObjectName(QStringLiteral("hbtQuit"));
    rbCorner = new TCornerGrip(this);
    rbCorner->setObjectName(QStringLiteral("rbCorner"));
    AdvRepeatButton3 = MakeButton("AdvRepeatButton3", false);
    btnClear = MakeButton("btnClear", true);
    btnPresets = new QToolButton(this);
    btnPresets->setObjectName(QStringLiteral("btnPresets"));
    btnPresets->setPopupMode(QToolButton::InstantPopup);
    mnuPresets = new QMenu(btnPresets);
    mnuPresets->setObjectName(QStringLiteral("mnuPresets"));
    btnPresets->setMenu(mnuPresets);
    connect(mnuPresets, &QMenu::aboutToShow, this, &TForm1::FillPresetMenu);
    FillPresetMenu();

    btnFile = new QToolButton(this);
    btnFile->setObjectName(QStringLiteral("btnFile"));
    btnFile->setPopupMode(QToolButton::InstantPopup);
    btnFile->setFocusPolicy(Qt::NoFocus);
    mnuFile = new QMenu(btnFile);
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    btnFile->setMenu(mnuFile);
    BuildFileMenu();

    lblNotices = new QLabel(this);
    lblNotices->setObjectName(QStringLiteral("lblNotices"));
    lblNotices->setTextFormat(Qt::PlainText);
    chtAllocation = new QChartView(MakeAllocationChart(result_, AppLocale()), this);
    chtAllocation->setObjectName(QStringLiteral("chtAllocation"));
    chtAllocation->setRenderHint(QPainter::Antialiasing);
    chtAllocation->chart()->legend()->setAlignment(Qt::AlignRight);
    chtAllocation->chart()->setMargins(QMargins(2, 2, 2, 2));

    auto* calc = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this, this, &TForm1::btnCalculateClick);
    calc->setObjectName(QStringLiteral("scCalculate"));
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Enter), this, this, &TForm1::btnCalculateClick);
    auto* imp = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_I), this, this, &TForm1::btnImpClick);
    imp->setObjectName(QStringLiteral("scImport"));

    grdAccounts->stretchFirstColumn = true;
    grdClasses->stretchFirstColumn = true;
    grdResult->GridModel()->readOnly = true;
    grdResult->setFocusPolicy(Qt::StrongFocus);

    auto* accModel = grdAccounts->GridModel();
    accModel->comboItems.assign(kAccountKindLabels.begin(), kAccountKindLabels.end());
    accModel->onComboChange = [this](int row, int index) { grdAccountsComboChange(grdAccounts, row, index); };
    accModel->onEditDone = [this](int, int) {
        grdAccountsEditCellDone();
        UpdateNotices();
    };
    auto* clsModel = grdClasses->GridModel();
    clsModel->comboItems.assign(kAssetClassLabels.begin(), kAssetClassLabels.end());
    clsModel->onComboChange = [this](int row, int index) { grdAccountsComboChange(grdClasses, row, index); };
    clsModel->onEditDone = [this](int, int) {
        grdClassesEditCellDone();
        UpdateNotices();
    };
    // Any change of a grid may change the document state.
    for (TGridView* g : {grdAccounts, grdClasses, grdResult}) {
        auto* m = g->GridModel();
        connect(m, &QAbstractItemModel::dataChanged, this, &TForm1::UpdateDocumentState);
        connect(m, &QAbstractItemModel::modelReset, this, &TForm1::UpdateDocumentState);
    }

    connect(btnAddAcc, &QPushButton::clicked, this, &TForm1::btnAddAccClick);
    connect(btnDelAcc, &QPushButton::clicked, this, &TForm1::btnDelAccClick);
    connect(AdvRepeatButton2, &QPushButton::clicked, this, &TForm1::AdvRepeatButton2Click);
    connect(AdvRepeatButton1, &QPushButton::clicked, this, &TForm1::AdvRepeatButton1Click);
    connect(btnClear, &QPushButton::clicked, this, &TForm1::btnClearClick);
    connect(btnImp, &QPushButton::clicked, this, &TForm1::btnImpClick);
    connect(btnCalculate, &QPushButton::clicked, this, &TForm1::btnCalculateClick);
    connect(hbtQuit, &QPushButton::clicked, this, &TForm1::hbtQuitClick);
    connect(hbtMinimize, &QPushButton::clicked, this, &TForm1::hbtMinimizeClick);
    connect(AdvRepeatButton3, &QPushButton::clicked, this, &TForm1::AdvRepeatButton3Click);

    setTabOrder(grdAccounts, btnAddAcc);
    setTabOrder(btnAddAcc, btnDelAcc);
    setTabOrder(btnDelAcc, btnClear);
    setTabOrder(btnClear, btnImp);
    setTabOrder(btnImp, grdClasses);
    setTabOrder(grdClasses, AdvRepeatButton2);
    setTabOrder(AdvRepeatButton2, AdvRepeatButton1);
    setTabOrder(AdvRepeatButton1, btnPresets);
    setTabOrder(btnPresets, btnCalculate);
    setTabOrder(btnCalculate, grdResult);
    setTabOrder(grdResult, AdvRepeatButton3);
    chtAllocation->setFocusPolicy(Qt::NoFocus);

    qApp->installEventFilter(this);
    RetranslateUi();
    FormCreate();
}

void TForm1::RetranslateUi() {
    auto button = [](QAbstractButton* b, const QString& text) {
        b->setText(text);
        b->setAccessibleName(text);
    };
    grdAccounts->setAccessibleName(tr("Accounts"));
    grdClasses->setAccessibleName(tr("Asset class targets"));
    grdResult->setAccessibleName(tr("Portfolio allocation"));
    button(btnAddAcc, tr("Add"));
    button(btnDelAcc, tr("Delete"));
    button(btnClear, tr("Clear"));
    button(btnImp, tr("Add from File"));
    button(AdvRepeatButton2, tr("Add"));
    button(AdvRepeatButton1, tr("Delete"));
    button(btnCalculate, tr("Calculate"));
    button(AdvRepeatButton3, tr("Help"));
    btnAddAcc->setToolTip(tr("Add an account row"));
    btnDelAcc->setToolTip(tr("Delete the current account row"));
    btnClear->setToolTip(tr("Empty the accounts grid"));
    AdvRepeatButton2->setToolTip(tr("Add a class row"));
    AdvRepeatButton1->setToolTip(tr("Delete the current class row"));
    btnCalculate->setToolTip(tr("Calculate (Ctrl+Enter)"));
    btnImp->setToolTip(tr("Add accounts from a client file (Ctrl+I)"));
    Label1->setText(tr("Portfolio Allocation"));
    for (QPushButton* b : {hbtMinimize, hbtQuit}) {
        const QString text = b == hbtMinimize ? tr("Minimize") : tr("Quit");
        b->setAccessibleName(text);
        b->setToolTip(text);
    }
    rbCorner->setAccessibleName(tr("Resize"));
    btnPresets->setText(tr("Targets"));
    btnPresets->setAccessibleName(tr("Target presets"));
    btnPresets->setToolTip(tr("Fill the targets with a named mix"));
    btnFile->setText(tr("File"));
    btnFile->setAccessibleName(tr("File"));
    btnFile->setToolTip(tr("Worksheets, export, print and language"));
    lblNotices->setAccessibleName(tr("Notices"));
    chtAllocation->setAccessibleName(tr("Allocation chart"));
    RetranslateFileMenu();
    FillPresetMenu();
    LayoutControls();
}

void TForm1::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange) return;
    RetranslateUi();
    // Numbers and vocabulary follow the language too.
    ShowAccountsTotal(accountsTotal_);
    grdClassesEditCellDone();
    RefreshGrids();
    UpdateChart();
    ShowNotices(noticeItems_);
    UpdateDocumentState();
}

QPushButton* TForm1::MakeButton(const char* name, bool compact) {
    auto* b = new QPushButton(this);
    b->setObjectName(QString::fromLatin1(name));
    b->setProperty("compact", compact);
    return b;
}

void TForm1::FormCreate() {
    QScreen* scr = screen() ? screen() : QGuiApplication::primaryScreen();
    pixelsPerInch_ = scr ? scr->logicalDotsPerInch() : 96.0;
    screenScale_ = pixelsPerInch_ / 96.0;
    baseFontSize_ = 8;

    // The Linux build ships its help as a page beside the program.
    helpFile_ = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("Help/index.html"));

    cnf_.Zoom = kDefaultZoom;
    const int available = scr ? scr->availableGeometry().height() : 0;
    if (available > 0) cnf_.Zoom = FitZoom(cnf_.Zoom, available, pixelsPerInch_, kDesignHeight);

    cnf_.StyleSelector = 0;
    QFont f = font();
    f.setPointSizeF(baseFontSize_ * cnf_.Zoom);
    setFont(f);
    QFont compact = f;
    compact.setPointSizeF(baseFontSize_ * cnf_.Zoom * 0.8);
    for (QPushButton* b : findChildren<QPushButton*>())
        if (b->property("compact").toBool()) b->setFont(compact);
    btnPresets->setFont(compact);
    btnFile->setFont(compact);
    lblNotices->setFont(compact);
    // Grid texts are longer than the design's narrow font made them.
    QFont gridFont = f;
    gridFont.setPointSizeF(baseFontSize_ * cnf_.Zoom * 0.9);
    for (TGridView* g : {grdAccounts, grdClasses, grdResult}) {
        g->setFont(gridFont);
        g->verticalHeader()->setDefaultSectionSize(RoundInt(18 * cnf_.Zoom));
    }
    setStyleSheet(WindowStyleSheet(cnf_.Zoom));
    grdResult->setShowGrid(true);

    const QSize size(RoundInt(kDesignWidth * cnf_.Zoom), RoundInt(kDesignHeight * cnf_.Zoom));
    setMinimumSize(RoundInt(kDesignWidth * cnf_.Zoom * 0.8), RoundInt(kDesignHeight * cnf_.Zoom * 0.8));
    resize(size);
    if (scr) move(scr->availableGeometry().center() - rect().center());

    // Column widths are kept in the grids at screen size.
    for (TGrid* g : {&accounts_, &classes_, &result_})
        for (int c = 0; c < g->ColCount(); ++c) g->SetColWidth(c, RoundInt(g->ColWidth(c) * cnf_.Zoom));

    FormResize();
    imApplIcon->setPixmap(AppIcon(RoundInt(24 * cnf_.Zoom * 2)));
    const int glyph = RoundInt(16 * cnf_.Zoom);
    hbtMinimize->setIconSize(QSize(glyph, glyph));
    hbtQuit->setIconSize(QSize(glyph, glyph));

    btnImp->setFixedWidth(RoundInt(75 * cnf_.Zoom * screenScale_));
    btnCalculate->setFixedWidth(RoundInt(85 * cnf_.Zoom));
    LayoutControls();

    accounts_.SetRowCount(3);
    accounts_.SetRowCount(2);
    classes_.SetRowCount(3);
    classes_.SetRowCount(2);
    RefreshGrids();
    UpdateChart();
    savedSnapshot_ = Snapshot();
    UpdateDocumentState();
}

void TForm1::LayoutControls() {
    const double z = cnf_.Zoom;
    // Extra room beyond the design size, in design units: the accounts side
    // takes 60 % of the width, the result grid all of the height.
    const double dx = std::max(0.0, width() / z - kDesignWidth);
    const double dy = std::max(0.0, height() / z - kDesignHeight);
    const double dxL = dx * 0.6;
    auto place = [z](QWidget* w, double x, double y, double wd, double ht) {
        w->setGeometry(RoundInt(x * z), RoundInt(y * z), RoundInt(wd * z), RoundInt(ht * z));
    };
    place(pnCaption, 0, 0, width() / z, 26);
    place(imApplIcon, 7, 3, 20, 20);
    place(btnFile, 33, 4, 36, 18);
    place(lblCaptionBar, 76, 3, 370 + dx, 20);
    place(pnWndButtons, 452 + dx, 1, 81, 24);
    place(hbtMinimize, 17, 2, 30, 20);
    place(hbtQuit, 48, 2, 30, 20);

    place(grdAccounts, 8, 36, 321 + dxL, 169);
    place(btnAddAcc, 9, 208, 30, 20);
    place(btnDelAcc, 44, 208, 30, 20);
    place(btnClear, 79, 208, 30, 20);
    btnImp->setGeometry(RoundInt(115 * z), RoundInt(208 * z), btnImp->width(), RoundInt(22 * z));
    place(Label3, 200, 206, 129 + dxL, 22);

    place(grdClasses, 335 + dxL, 36, 190 + (dx - dxL), 169);
    place(AdvRepeatButton2, 335 + dxL, 208, 30, 20);
    place(AdvRepeatButton1, 369 + dxL, 208, 30, 20);
    place(btnPresets, 404 + dxL, 208, 58, 20);
    place(Label2, 465 + dxL, 206, 60 + (dx - dxL), 22);
    // Ends flush with the classes grid.
    btnCalculate->setGeometry(grdClasses->x() + grdClasses->width() - btnCalculate->width(), RoundInt(230 * z),
                              btnCalculate->width(), RoundInt(22 * z));
    // The heading is as long as its language makes it; the notices take what is left.
    const int headingWidth = std::max(RoundInt(135 * z), Label1->sizeHint().width() + RoundInt(4 * z));
    Label1->setGeometry(RoundInt(8 * z), RoundInt(232 * z), headingWidth, RoundInt(18 * z));
    const int noticesLeft = Label1->geometry().right() + RoundInt(4 * z);
    lblNotices->setGeometry(noticesLeft, RoundInt(232 * z), std::max(0, btnCalculate->x() - RoundInt(6 * z) - noticesLeft),
                            RoundInt(18 * z));
    ElideNotices();

    // Extra height: 40 % to the result grid, the rest to the chart.
    const double dyGrid = dy * 0.4;
    place(grdResult, 8, 252, 517 + dx, 165 + dyGrid);
    place(chtAllocation, 8, 421 + dyGrid, 517 + dx, 139 + (dy - dyGrid));
    place(AdvRepeatButton3, 9, 565 + dy, 55, 20);
    place(rbCorner, 512 + dx, 567 + dy, 21, 23);

    pnCaption->lower();
    for (QWidget* w : {static_cast<QWidget*>(imApplIcon), static_cast<QWidget*>(lblCaptionBar), pnWndButtons,
                       static_cast<QWidget*>(btnFile)})
        w->raise();
}

void TForm1::FormResize() {
    LayoutControls();
    pnCaption->update();
    captionRegion_ = pnCaption->geometry();
    buttonsRegion_ = pnWndButtons->geometry();
    cornerRegion_ = rbCorner->geometry();
}

void TForm1::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FormResize();
}

void TForm1::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    PaintBorderFrame(this, 2);
}

HitArea TForm1::HitTest(const QPoint& windowPoint, bool applicationActive) const {
    return NonClientHitTest(windowPoint, applicationActive, captionRegion_, buttonsRegion_, cornerRegion_);
}

void TForm1::StartFrameAction(HitArea area, const QPoint& globalPos) {
    QWindow* handle = windowHandle();
    bool system = false;
    if (handle) {
        system = area == HitArea::Caption ? handle->startSystemMove()
                                          : handle->startSystemResize(Qt::BottomEdge | Qt::RightEdge);
    }
    if (!system) {
        dragArea_ = area;
        dragStartGlobal_ = globalPos;
        dragStartGeometry_ = geometry();
    }
}

void TForm1::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        const HitArea area = HitTest(event->position().toPoint(), true);
        if (area != HitArea::Client) {
            StartFrameAction(area, event->globalPosition().toPoint());
            event->accept();
            return;
        }
    }
    QWidget::mousePressEvent(event);
}

void TForm1::mouseMoveEvent(QMouseEvent* event) {
    if (dragArea_ != HitArea::Client && (event->buttons() & Qt::LeftButton)) {
        const QPoint delta = event->globalPosition().toPoint() - dragStartGlobal_;
        if (dragArea_ == HitArea::Caption)
            move(dragStartGeometry_.topLeft() + delta);
        else
            resize(std::max(minimumWidth(), dragStartGeometry_.width() + delta.x()),
                   std::max(minimumHeight(), dragStartGeometry_.height() + delta.y()));
        return;
    }
    QWidget::mouseMoveEvent(event);
}

void TForm1::mouseReleaseEvent(QMouseEvent* event) {
    dragArea_ = HitArea::Client;
    QWidget::mouseReleaseEvent(event);
}

void TForm1::mouseDoubleClickEvent(QMouseEvent* event) {
    // A double click on a caption toggles maximised, as on a framed window.
    if (HitTest(event->position().toPoint(), true) == HitArea::Caption) {
        hbtBgndClick();
        return;
    }
    QWidget::mouseDoubleClickEvent(event);
}

bool TForm1::eventFilter(QObject* watched, QEvent* event) {
    // While the application is inactive, a click anywhere outside the window
    // buttons grabs the window, as a click on a frame would.
    if (event->type() == QEvent::MouseButtonPress &&
        QGuiApplication::applicationState() != Qt::ApplicationActive) {
        auto* w = qobject_cast<QWidget*>(watched);
        auto* me = static_cast<QMouseEvent*>(event);
        if (w && w->window() == this && me->button() == Qt::LeftButton) {
            const QPoint local = mapFromGlobal(me->globalPosition().toPoint());
            if (HitTest(local, false) == HitArea::Caption) {
                activateWindow();
                StartFrameAction(HitArea::Caption, me->globalPosition().toPoint());
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void TForm1::LoadInputs(const QByteArray& accountsCsv, const QByteArray& classesCsv) {
    if (!accountsCsv.isEmpty())
        LoadAccountsCsv(std::string_view(accountsCsv.constData(), static_cast<std::size_t>(accountsCsv.size())),
                        accounts_);
    if (!classesCsv.isEmpty())
        LoadClassesCsv(std::string_view(classesCsv.constData(), static_cast<std::size_t>(classesCsv.size())),
                       classes_);
    grdAccountsEditCellDone();
    grdClassesEditCellDone();
    RefreshGrids();
    UpdateNotices();
}

void TForm1::RefreshGrids() {
    grdAccounts->Refresh();
    grdClasses->Refresh();
    grdResult->Refresh();
}

void TForm1::btnAddAccClick() {
    accounts_.AddRow();
    grdAccounts->Refresh();
}

void TForm1::AdvRepeatButton2Click() {
    classes_.AddRow();
    grdClasses->Refresh();
}

void TForm1::btnDelAccClick() {
    const int row = grdAccounts->currentIndex().row();
    if (row >= 1) {
        accounts_.DeleteRow(row);
        grdAccounts->Refresh();
        UpdateNotices();
    }
}

void TForm1::AdvRepeatButton1Click() {
    const int row = grdClasses->currentIndex().row();
    if (row >= 1) {
        classes_.DeleteRow(row);
        grdClasses->Refresh();
        UpdateNotices();
    }
}

void TForm1::btnClearClick() {
    ClearBodyRows(accounts_);
    grdAccounts->Refresh();
    UpdateNotices();
}

void TForm1::btnImpClick() {
    auto dlg = std::make_unique<TdlgFromFile>(importFolders_, cnf_.Zoom, this);
    if (dlg->exec() != QDialog::Accepted) return;
    int column = 1;
    if (dlg->productBsRadio->isChecked()) column = 2;
    if (dlg->productQrRadio->isChecked()) column = 3;
    ShowAccountsTotal(MergeImport(accounts_, column, dlg->Result()));
    grdAccounts->Refresh();
    UpdateNotices();
}

void TForm1::btnCalculateClick() {
    // Before: the calculation drops the rows some of them name.
    std::vector<TNotice> notices = InputNotices(accounts_, classes_);
    CalculateAllocation(accounts_, classes_, result_, btnAddAcc->width());
    for (TNotice& n : ResultNotices(classes_, result_)) notices.push_back(std::move(n));
    ShowNotices(notices);
    RefreshGrids();
    UpdateChart();
}

void TForm1::hbtQuitClick() { close(); }

void TForm1::hbtMinimizeClick() { showMinimized(); }

void TForm1::hbtBgndClick() {
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

void TForm1::AdvRepeatButton3Click() {
    if (!LaunchHelp(helpFile_ + QStringLiteral(">Second")))
        QMessageBox::information(this, tr("Help"), tr("The help page could not be opened: %1").arg(helpFile_));
}

QSettings ProgramSettingsStore() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Torvane Labs Inc."),
                     QStringLiteral("Tessary"));
}

void TForm1::FillPresetMenu() {
    mnuPresets->clear();
    for (const TTargetPreset& p : BuiltInPresets())
        mnuPresets->addAction(tr(p.Name.c_str()), this, [this, p] { ApplyTargetPreset(p); });
    QSettings settings = ProgramSettingsStore();
    settings.beginGroup(QStringLiteral("Presets"));
    const QStringList names = settings.childKeys();
    bool first = true;
    for (const QString& name : names) {
        const auto preset = DecodePreset(name.toStdString(), settings.value(name).toString().toStdString());
        if (!preset) continue;
        if (first) mnuPresets->addSeparator();
        first = false;
        mnuPresets->addAction(name, this, [this, p = *preset] { ApplyTargetPreset(p); });
    }
    settings.endGroup();
    mnuPresets->addSeparator();
    QAction* save = mnuPresets->addAction(tr("Save current targets as preset..."), this, &TForm1::SaveTargetPreset);
    save->setObjectName(QStringLiteral("actSavePreset"));
}

void TForm1::ApplyTargetPreset(const TTargetPreset& preset) {
    ApplyPreset(preset, classes_);
    grdClassesEditCellDone();
    grdClasses->Refresh();
    UpdateNotices();
}

void TForm1::SaveTargetPreset() {
    bool ok = false;
    const QString name = QInputDialog::getText(this, tr("Save targets"), tr("Name of the target mix:"),
                                               QLineEdit::Normal, QString(), &ok)
                             .trimmed();
    if (!ok || name.isEmpty()) return;
    const TTargetPreset preset = PresetFromGrid(name.toStdString(), classes_);
    QSettings settings = ProgramSettingsStore();
    // "/" and "\" would make sub-groups of the settings key.
    QString key = name;
    key.replace(QLatin1Char('/'), QLatin1Char('-')).replace(QLatin1Char('\\'), QLatin1Char('-'));
    settings.setValue(QStringLiteral("Presets/") + key, QString::fromStdString(EncodePreset(preset)));
    FillPresetMenu();
}

void TForm1::grdAccountsEditCellDone() {
    ShowAccountsTotal(RecomputeAccountTotals(accounts_));
}

void TForm1::ShowAccountsTotal(double total) {
    accountsTotal_ = total;
    Label3->setText(AccountsTotalLabel(total, AppLocale()));
}

void TForm1::grdClassesEditCellDone() {
    Label2->setText(ClassTotalLabel(ClassTotal(classes_), AppLocale()));
}

void TForm1::grdAccountsComboChange(TGridView* grid, int row, int itemIndex) {
    grid->Grid().SetObject(0, row, itemIndex + 1);
}

} // namespace tessary
