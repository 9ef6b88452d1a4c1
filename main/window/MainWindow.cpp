#include "window/MainWindow.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLayout>
#include <QMessageBox>
#include <QScreen>
#include <QShortcut>
#include <QUrl>
#include <cmath>

#include "core/Allocation.h"
#include "core/ImportMerge.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"
#include "window/ImportDialog.h"
#include "window/SettingsDialog.h"
#include "window/Language.h"
#include "window/WindowLog.h"

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

TForm1::TForm1(QWidget* parent) : TFramelessWindow(parent), result_(MakeResultGrid()) {
    setObjectName(QStringLiteral("form"));
    setWindowIcon(QIcon(AppIcon(64)));
    setAttribute(Qt::WA_StyledBackground);
    captionLabel->setText(QStringLiteral("Tessary"));

    inputs_ = new TInputGridsPanel(this);
    resultGrid = new TGridView(result_, GridKind::Result, this);
    resultGrid->setObjectName(QStringLiteral("grdResult"));
    resultHeadingLabel = new QLabel(this);
    resultHeadingLabel->setObjectName(QStringLiteral("Label1"));
    calculateButton = new QPushButton(this);
    calculateButton->setObjectName(QStringLiteral("btnCalculate"));
    helpButton = new QPushButton(this);
    helpButton->setObjectName(QStringLiteral("AdvRepeatButton3"));
    noticeLine = new TNoticeLine(this);
    chart = new TAllocationChart(result_, this);

    fileButton = new QToolButton(this);
    fileButton->setObjectName(QStringLiteral("btnFile"));
    fileButton->setPopupMode(QToolButton::InstantPopup);
    fileButton->setFocusPolicy(Qt::NoFocus);
    fileMenu = new QMenu(fileButton);
    fileMenu->setObjectName(QStringLiteral("mnuFile"));
    fileButton->setMenu(fileMenu);
    BuildFileMenu();
    tradesPage = new TTradesPage(trades_, result_, this);
    tradesPage->hide();
    document_->AttachTrades(&trades_);
    tradesButton = new QToolButton(this);
    tradesButton->setObjectName(QStringLiteral("btnTrades"));
    tradesButton->setCheckable(true);
    tradesButton->setFocusPolicy(Qt::NoFocus);
    // A window shortcut: the button takes no focus, and a grid with focus must not keep the key.
    auto* trades = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_T), this, tradesButton, &QToolButton::toggle);
    trades->setObjectName(QStringLiteral("scTrades"));
    connect(tradesButton, &QToolButton::toggled, this, &TForm1::ShowTradesPage);
    connect(tradesPage, &TTradesPage::inputChanged, this, &TForm1::UpdateDocumentState);

    auto* calc = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this, this, &TForm1::btnCalculateClick);
    calc->setObjectName(QStringLiteral("scCalculate"));
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Enter), this, this, &TForm1::btnCalculateClick);
    auto* imp = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_I), this, this, &TForm1::btnImpClick);
    imp->setObjectName(QStringLiteral("scImport"));

    resultGrid->GridModel()->readOnly = true;
    resultGrid->setFocusPolicy(Qt::StrongFocus);

    connect(inputs_, &TInputGridsPanel::inputsChanged, this, &TForm1::UpdateNotices);
    // A longer notice (or another language) may need another line.
    connect(noticeLine, &TNoticeLine::shown, this, [this] { LayoutControls(); });
    // Any change of a grid may change the document state.
    for (TGridView* g : {inputs_->accountsGrid, inputs_->classesGrid, resultGrid}) {
        auto* m = g->GridModel();
        connect(m, &QAbstractItemModel::dataChanged, this, &TForm1::UpdateDocumentState);
        connect(m, &QAbstractItemModel::modelReset, this, &TForm1::UpdateDocumentState);
    }
    connect(document_, &TDocumentController::documentReplaced, this, &TForm1::ShowDocument);
    connect(document_, &TDocumentController::stateChanged, this, &TForm1::UpdateDocumentState);

    connect(inputs_->importButton, &QPushButton::clicked, this, &TForm1::btnImpClick);
    connect(calculateButton, &QPushButton::clicked, this, &TForm1::btnCalculateClick);
    connect(quitButton, &QPushButton::clicked, this, &TForm1::hbtQuitClick);
    connect(minimizeButton, &QPushButton::clicked, this, &TForm1::hbtMinimizeClick);
    connect(helpButton, &QPushButton::clicked, this, &TForm1::AdvRepeatButton3Click);

    const TInputGridsPanel& in = *inputs_;
    QWidget* tabOrder[] = {in.accountsGrid,
                           in.addAccountRowButton,
                           in.deleteAccountRowButton,
                           in.clearAccountsButton,
                           in.importButton,
                           in.classesGrid,
                           in.addClassRowButton,
                           in.deleteClassRowButton,
                           in.presetsButton,
                           calculateButton,
                           resultGrid,
                           helpButton};
    for (std::size_t i = 1; i < std::size(tabOrder); ++i) setTabOrder(tabOrder[i - 1], tabOrder[i]);

    RetranslateUi();
    FormCreate();
}

void TForm1::BuildFileMenu() {
    document_ = new TDocumentController(inputs_->Accounts(), inputs_->Classes(), result_, *resultGrid, this, fileMenu);
    fileMenu->addSeparator();
    settingsAction = fileMenu->addAction(QString(), this, &TForm1::actSettingsClick);
    settingsAction->setObjectName(QStringLiteral("actSettings"));
    settingsAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    addAction(settingsAction); // the shortcut works with the menu closed
    languageMenu = fileMenu->addMenu(QString());
    languageMenu->setObjectName(QStringLiteral("mnuLanguage"));
    auto* group = new QActionGroup(languageMenu);
    // Each language is named in itself, as everywhere.
    englishAction = languageMenu->addAction(QStringLiteral("English"));
    frenchAction = languageMenu->addAction(QStringLiteral("Fran\u00e7ais"));
    for (QAction* a : {englishAction, frenchAction}) {
        a->setCheckable(true);
        group->addAction(a);
        connect(a, &QAction::triggered, this, [this, a] {
            const TLanguage language = a == frenchAction ? TLanguage::French : TLanguage::English;
            RememberLanguage(language);
            ApplyLanguage(language);
        });
    }
    fileMenu->addSeparator();
    quitAction = fileMenu->addAction(QString(), this, &TForm1::hbtQuitClick);
    quitAction->setObjectName(QStringLiteral("actQuit"));
    quitAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    quitAction->setShortcutContext(Qt::WindowShortcut);
    addAction(quitAction);
}

void TForm1::RetranslateUi() {
    resultGrid->setAccessibleName(tr("Portfolio allocation"));
    calculateButton->setText(tr("Calculate"));
    calculateButton->setAccessibleName(tr("Calculate"));
    calculateButton->setToolTip(tr("Calculate (Ctrl+Enter)"));
    helpButton->setText(tr("Help"));
    helpButton->setAccessibleName(tr("Help"));
    resultHeadingLabel->setText(tr("Portfolio Allocation"));
    fileButton->setText(tr("File"));
    fileButton->setAccessibleName(tr("File"));
    fileButton->setToolTip(tr("Worksheets, export, print, settings and language"));
    tradesButton->setText(tr("Trades"));
    tradesButton->setAccessibleName(tr("Trades"));
    tradesButton->setToolTip(tr("From today's holdings to the plan (Ctrl+T)"));
    chart->setAccessibleName(tr("Allocation chart"));
    document_->Retranslate();
    settingsAction->setText(tr("S&ettings…"));
    languageMenu->setTitle(tr("&Language"));
    quitAction->setText(tr("&Quit"));
    (CurrentLanguage() == TLanguage::French ? frenchAction : englishAction)->setChecked(true);
    LayoutControls();
}

void TForm1::changeEvent(QEvent* event) {
    TFramelessWindow::changeEvent(event);
    if (event->type() != QEvent::LanguageChange) return;
    RetranslateUi();
    // Numbers and vocabulary follow the language too; the input panel and the
    // notice line see the same event.
    resultGrid->Refresh();
    UpdateChart();
    UpdateDocumentState();
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
    inputs_->presetsButton->setFont(compact);
    fileButton->setFont(compact);
    tradesButton->setFont(compact);
    noticeLine->setFont(compact);
    // Grid texts are longer than the design's narrow font made them.
    QFont gridFont = f;
    gridFont.setPointSizeF(baseFontSize_ * cnf_.Zoom * 0.9);
    for (TGridView* g : {inputs_->accountsGrid, inputs_->classesGrid, resultGrid}) {
        g->setFont(gridFont);
        g->verticalHeader()->setDefaultSectionSize(RoundInt(18 * cnf_.Zoom));
    }
    tradesPage->SetGridFont(gridFont, RoundInt(18 * cnf_.Zoom));
    setStyleSheet(WindowStyleSheet(cnf_.Zoom));
    resultGrid->setShowGrid(true);

    const QSize size(RoundInt((kDesignWidth + kStartExtraWidth) * cnf_.Zoom), RoundInt(kDesignHeight * cnf_.Zoom));
    setMinimumSize(RoundInt(kDesignWidth * cnf_.Zoom * 0.8), RoundInt(kDesignHeight * cnf_.Zoom * 0.8));
    resize(size);
    if (scr) move(scr->availableGeometry().center() - rect().center());

    ScaleColumnWidths();

    FormResize();
    appIcon->setPixmap(AppIcon(RoundInt(24 * cnf_.Zoom * 2)));
    const int glyph = RoundInt(16 * cnf_.Zoom);
    minimizeButton->setIconSize(QSize(glyph, glyph));
    quitButton->setIconSize(QSize(glyph, glyph));

    inputs_->importButton->setFixedWidth(RoundInt(layout::kImport.width() * cnf_.Zoom * screenScale_));
    // The screen scale is deliberately not applied to this one.
    calculateButton->setFixedWidth(RoundInt(layout::kCalculate.width() * cnf_.Zoom));
    LayoutControls();

    for (TGrid* g : {&Accounts(), &Classes()}) {
        g->SetRowCount(3);
        g->SetRowCount(2);
    }
    inputs_->Refresh();
    resultGrid->Refresh();
    UpdateChart();
    document_->MarkSaved();
    UpdateDocumentState();
}

void TForm1::ScaleColumnWidths() {
    // Grids carry design widths; on screen they are zoomed.
    for (TGrid* g : {&Accounts(), &Classes(), &result_})
        for (int c = 0; c < g->ColCount(); ++c) g->SetColWidth(c, RoundInt(g->ColWidth(c) * cnf_.Zoom));
}

void TForm1::LayoutControls() {
    using namespace layout;
    const double z = cnf_.Zoom;
    // Extra room beyond the design size, in design units.
    const double dx = std::max(0.0, width() / z - kDesignWidth);
    const double dy = std::max(0.0, height() / z - kDesignHeight);
    auto place = [z](QWidget* w, const QRectF& r) {
        w->setGeometry(RoundInt(r.x() * z), RoundInt(r.y() * z), RoundInt(r.width() * z), RoundInt(r.height() * z));
    };
    LayoutFrame(z, dx);
    place(fileButton, kFileButton);
    fileButton->raise();
    place(tradesButton, kTradesButton);
    tradesButton->raise();

    inputs_->LayoutControls(z, dx);
    // Ends flush with the classes grid.
    const QRect classes = inputs_->classesGrid->geometry().translated(inputs_->pos());
    calculateButton->setGeometry(classes.right() + 1 - calculateButton->width(), RoundInt(kCalculate.y() * z),
                                 calculateButton->width(), RoundInt(kCalculate.height() * z));
    // The heading is as long as its language makes it; the notices take what is left.
    const int headingWidth = std::max(RoundInt(kResultHeading.width() * z),
                                      resultHeadingLabel->sizeHint().width() + RoundInt(kHeadingPadding * z));
    resultHeadingLabel->setGeometry(RoundInt(kResultHeading.x() * z), RoundInt(kResultHeading.y() * z), headingWidth,
                                    RoundInt(kResultHeading.height() * z));
    const int noticesLeft = resultHeadingLabel->geometry().right() + RoundInt(kNoticesGap * z);
    // The notices wrap: what does not fit beside the heading pushes the result grid down.
    const int noticesWidth = std::max(0, calculateButton->x() - RoundInt(kNoticesEndGap * z) - noticesLeft);
    const int lineHeight = RoundInt(kResultHeading.height() * z);
    const int noticesHeight =
        std::max(lineHeight, noticeLine->text().isEmpty() ? 0 : noticeLine->heightForWidth(noticesWidth));
    noticeLine->setGeometry(noticesLeft, RoundInt(kResultHeading.y() * z), noticesWidth, noticesHeight);

    const double dyGrid = dy * kResultHeightShare;
    place(resultGrid, kResultGrid.adjusted(0, 0, dx, dyGrid));
    resultGrid->setGeometry(resultGrid->geometry().adjusted(0, noticesHeight - lineHeight, 0, 0));
    place(chart, kChart.translated(0, dyGrid).adjusted(0, 0, dx, dy - dyGrid));
    place(helpButton, kHelp.translated(0, dy));
    place(tradesPage, kTradesPage.adjusted(0, 0, dx, dy));
    // Raising the caption buttons above put them over the page's place in the stacking order.
    if (tradesPage->isVisible()) tradesPage->raise();
    place(cornerGrip, kCornerGrip.translated(dx, dy));
}

void TForm1::FormResize() {
    LayoutControls();
    RebuildRegions();
}

void TForm1::resizeEvent(QResizeEvent* event) {
    TFramelessWindow::resizeEvent(event);
    FormResize();
}

void TForm1::LoadInputs(const QByteArray& accountsCsv, const QByteArray& classesCsv) {
    inputs_->LoadInputs(accountsCsv, classesCsv);
    resultGrid->Refresh();
    UpdateNotices();
}

void TForm1::actSettingsClick() {
    TdlgSettings dlg(importFolders_, cnf_.Zoom, this);
    if (dlg.exec() == TdlgMsg::mrOk) ReloadClientKey();
}

void TForm1::ReloadClientKey() { importSettings_.ClientFileKey = ConfiguredClientKey(keyOption_).toStdString(); }

void TForm1::btnImpClick() {
    // The keyring is asked when a client file may first need the key, not at
    // start-up, where a locked keyring would ask to be unlocked for nothing.
    if (importSettings_.ClientFileKey.empty()) ReloadClientKey();
    auto dlg = std::make_unique<TdlgFromFile>(importFolders_, cnf_.Zoom, this, importSettings_);
    dlg->ClientKeyOption = keyOption_;
    connect(dlg.get(), &TdlgFromFile::SettingsChanged, this, &TForm1::ReloadClientKey);
    if (dlg->exec() != TdlgMsg::mrYes) return;
    int column = 1;
    if (dlg->productBsRadio->isChecked()) column = 2;
    if (dlg->productQrRadio->isChecked()) column = 3;
    inputs_->ShowAccountsTotal(MergeImport(Accounts(), column, dlg->Result()));
    inputs_->accountsGrid->Refresh();
    UpdateNotices();
}

void TForm1::btnCalculateClick() {
    // Before: the calculation drops the rows some of them name.
    std::vector<TNotice> notices = InputNotices(Accounts(), Classes());
    // A worksheet's unknown row object would make a column without a name.
    ForgetUnknownRowObjects(Accounts(), Classes());
    CalculateAllocation(Accounts(), Classes(), result_, inputs_->addAccountRowButton->width());
    for (TNotice& n : ResultNotices(Classes(), result_)) notices.push_back(std::move(n));
    noticeLine->ShowNotices(notices);
    inputs_->Refresh();
    resultGrid->Refresh();
    UpdateChart();
    tradesPage->Recompute();
}

void TForm1::UpdateNotices() {
    std::vector<TNotice> notices = InputNotices(Accounts(), Classes());
    for (TNotice& n : ResultNotices(Classes(), result_)) notices.push_back(std::move(n));
    noticeLine->ShowNotices(notices);
}

void TForm1::UpdateChart() { chart->Update(baseFontSize_ * cnf_.Zoom * 0.62); }

void TForm1::ShowDocument() {
    ScaleColumnWidths();
    inputs_->grdAccountsEditCellDone();
    inputs_->grdClassesEditCellDone();
    inputs_->Refresh();
    resultGrid->Refresh();
    UpdateChart();
    UpdateNotices();
    tradesPage->ShowInput();
}

void TForm1::ShowTradesPage(bool shown) {
    if (tradesButton->isChecked() != shown) tradesButton->setChecked(shown);
    tradesPage->setVisible(shown);
    // Hidden under the page, so that Tab and the screen reader stay on what is seen.
    for (QWidget* w :
         std::initializer_list<QWidget*>{inputs_, resultGrid, resultHeadingLabel, calculateButton, noticeLine, chart})
        w->setVisible(!shown);
    if (shown) {
        tradesPage->layout()->activate();
        tradesPage->raise();
        tradesPage->holdingsGrid->setFocus();
    } else {
        inputs_->accountsGrid->setFocus();
    }
}

void TForm1::UpdateDocumentState() {
    captionLabel->setText(document_->UpdateState());
    // The taskbar shows the form's own caption; the drawn bar the product.
    setWindowTitle(document_->Caption(tr("Portfolio Risk Tolerance")));
}

void TForm1::closeEvent(QCloseEvent* event) {
    if (document_->MaybeSave())
        event->accept();
    else
        event->ignore();
}

void TForm1::hbtQuitClick() { close(); }

void TForm1::hbtMinimizeClick() { showMinimized(); }

void TForm1::hbtBgndClick() { ToggleMaximized(); }

void TForm1::AdvRepeatButton3Click() {
    if (!LaunchHelp(helpFile_ + QStringLiteral(">Second"))) {
        qCInfo(lcWindow).noquote() << "the help page could not be opened:" << helpFile_;
        QMessageBox::information(this, tr("Help"), tr("The help page could not be opened: %1").arg(helpFile_));
    }
}

} // namespace tessary
