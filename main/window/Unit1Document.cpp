// The main window's worksheet, what it hands on (clipboard, CSV, PDF, print),
// its notices and its chart.
#include <QActionGroup>
#include <QApplication>
#include <QAbstractAxis>
#include <QChart>
#include <QLegend>
#include <QChartView>
#include <QClipboard>
#include <QCloseEvent>
#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>

#include "cli/GridFormat.h"
#include "core/Totals.h"
#include "report/Chart.h"
#include "report/Export.h"
#include "report/Report.h"
#include "report/Worksheet.h"
#include "window/Language.h"
#include "window/Unit1.h"

namespace tessary {

namespace {

constexpr int kMaxRecentFiles = 8;
const QString kRecentKey = QStringLiteral("RecentWorksheets");

QString WorksheetFilter() { return TForm1::tr("Tessary worksheets (*.tessary)"); }

// A name for a file handed on, beside the worksheet when there is one.
QString Suggested(const QString& worksheet, const QString& suffix) {
    if (worksheet.isEmpty()) return QDir::home().filePath(TForm1::tr("allocation") + suffix);
    const QFileInfo fi(worksheet);
    return fi.dir().filePath(fi.completeBaseName() + suffix);
}

QString WithSuffix(QString path, const QString& suffix) {
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty()) path += suffix;
    return path;
}

} // namespace

QByteArray TForm1::Snapshot() const { return WorksheetToJson(accounts_, classes_, result_); }

bool TForm1::IsModified() const { return Snapshot() != savedSnapshot_; }

void TForm1::UpdateDocumentState() {
    const bool modified = IsModified();
    const QString name = currentFile_.isEmpty() ? tr("Untitled") : QFileInfo(currentFile_).fileName();
    QString caption = QStringLiteral("Tessary");
    if (modified || !currentFile_.isEmpty())
        caption = name + (modified ? QStringLiteral("*") : QString()) + QStringLiteral(" - Tessary");
    lblCaptionBar->setText(caption);
    setWindowTitle(caption);
    if (actSave) actSave->setEnabled(modified || currentFile_.isEmpty());
}

void TForm1::Fail(const QString& message) {
    if (ShowError) {
        ShowError(message);
        return;
    }
    QMessageBox::warning(this, QStringLiteral("Tessary"), message);
}

void TForm1::BuildFileMenu() {
    auto add = [this](const char* name, const QKeySequence& keys, auto slot) {
        QAction* a = mnuFile->addAction(QString(), this, slot);
        a->setObjectName(QString::fromLatin1(name));
        if (!keys.isEmpty()) {
            a->setShortcut(keys);
            a->setShortcutContext(Qt::WindowShortcut);
            // The menu is not in a menu bar: the window has to know the shortcut itself.
            addAction(a);
        }
        return a;
    };
    actNew = add("actNew", QKeySequence::New, &TForm1::actNewClick);
    actOpen = add("actOpen", QKeySequence::Open, &TForm1::actOpenClick);
    mnuRecent = mnuFile->addMenu(QString());
    mnuRecent->setObjectName(QStringLiteral("mnuRecent"));
    connect(mnuRecent, &QMenu::aboutToShow, this, &TForm1::FillRecentMenu);
    actSave = add("actSave", QKeySequence::Save, &TForm1::actSaveClick);
    actSaveAs = add("actSaveAs", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), &TForm1::actSaveAsClick);
    mnuFile->addSeparator();
    actCopy = add("actCopy", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), &TForm1::actCopyClick);
    actExportCsv = add("actExportCsv", {}, &TForm1::actExportCsvClick);
    actExportPdf = add("actExportPdf", {}, &TForm1::actExportPdfClick);
    actPrint = add("actPrint", QKeySequence::Print, &TForm1::actPrintClick);
    mnuFile->addSeparator();
    mnuLanguage = mnuFile->addMenu(QString());
    mnuLanguage->setObjectName(QStringLiteral("mnuLanguage"));
    auto* group = new QActionGroup(mnuLanguage);
    // Each language is named in itself, as everywhere.
    actEnglish = mnuLanguage->addAction(QStringLiteral("English"));
    actFrench = mnuLanguage->addAction(QStringLiteral("Fran\u00e7ais"));
    for (QAction* a : {actEnglish, actFrench}) {
        a->setCheckable(true);
        group->addAction(a);
        connect(a, &QAction::triggered, this, [this, a] {
            const TLanguage language = a == actFrench ? TLanguage::French : TLanguage::English;
            RememberLanguage(language);
            ApplyLanguage(language);
        });
    }
    mnuFile->addSeparator();
    actQuit = add("actQuit", QKeySequence(Qt::CTRL | Qt::Key_Q), &TForm1::hbtQuitClick);
    FillRecentMenu();
}

void TForm1::RetranslateFileMenu() {
    actNew->setText(tr("&New"));
    actOpen->setText(tr("&Open..."));
    mnuRecent->setTitle(tr("Open &Recent"));
    actSave->setText(tr("&Save"));
    actSaveAs->setText(tr("Save &As..."));
    actCopy->setText(tr("&Copy Result"));
    actExportCsv->setText(tr("Export to CS&V..."));
    actExportPdf->setText(tr("Export to P&DF..."));
    actPrint->setText(tr("&Print..."));
    mnuLanguage->setTitle(tr("&Language"));
    actQuit->setText(tr("&Quit"));
    (CurrentLanguage() == TLanguage::French ? actFrench : actEnglish)->setChecked(true);
}

void TForm1::FillRecentMenu() {
    mnuRecent->clear();
    const QStringList files = ProgramSettingsStore().value(kRecentKey).toStringList();
    for (const QString& f : files) {
        QAction* a = mnuRecent->addAction(QDir::toNativeSeparators(f), this, [this, f] {
            if (MaybeSave()) OpenWorksheet(f);
        });
        a->setEnabled(QFileInfo::exists(f));
    }
    mnuRecent->setEnabled(!files.isEmpty());
}

void TForm1::AddRecentFile(const QString& path) {
    QSettings settings = ProgramSettingsStore();
    QStringList files = settings.value(kRecentKey).toStringList();
    const QString abs = QFileInfo(path).absoluteFilePath();
    files.removeAll(abs);
    files.prepend(abs);
    while (files.size() > kMaxRecentFiles) files.removeLast();
    settings.setValue(kRecentKey, files);
    FillRecentMenu();
}

bool TForm1::MaybeSave() {
    if (!IsModified()) return true;
    QMessageBox::StandardButton answer;
    if (AskSaveChanges) {
        answer = AskSaveChanges();
    } else {
        const QString name = currentFile_.isEmpty() ? tr("Untitled") : QFileInfo(currentFile_).fileName();
        answer = QMessageBox::question(this, tr("Unsaved changes"),
                                       tr("The worksheet \"%1\" has changes that are not saved. Save them?").arg(name),
                                       QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                       QMessageBox::Save);
    }
    if (answer == QMessageBox::Save) return actSaveClick();
    return answer == QMessageBox::Discard;
}

void TForm1::closeEvent(QCloseEvent* event) {
    if (MaybeSave())
        event->accept();
    else
        event->ignore();
}

void TForm1::ScaleColumnWidths() {
    // Documents carry design widths; on screen they are zoomed, as at start-up.
    for (TGrid* g : {&accounts_, &classes_, &result_})
        for (int c = 0; c < g->ColCount(); ++c) g->SetColWidth(c, RoundZoomed(g->ColWidth(c)));
}

int TForm1::RoundZoomed(int designWidth) const { return static_cast<int>(std::lround(designWidth * cnf_.Zoom)); }

void TForm1::actNewClick() {
    if (!MaybeSave()) return;
    const TWorksheet blank;
    accounts_ = blank.accounts;
    classes_ = blank.classes;
    result_ = blank.result;
    accounts_.SetRowCount(2);
    classes_.SetRowCount(2);
    ShowDocument(QString());
}

// After the grids were replaced as a whole: everything shown from them, and
// the document counted as saved under its file name.
void TForm1::ShowDocument(const QString& file) {
    ScaleColumnWidths();
    currentFile_ = file;
    grdAccountsEditCellDone();
    grdClassesEditCellDone();
    RefreshGrids();
    UpdateChart();
    UpdateNotices();
    savedSnapshot_ = Snapshot();
    UpdateDocumentState();
}

bool TForm1::OpenWorksheet(const QString& path) {
    try {
        LoadWorksheet(path, accounts_, classes_, result_);
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
        return false;
    }
    ShowDocument(QFileInfo(path).absoluteFilePath());
    AddRecentFile(currentFile_);
    return true;
}

QString TForm1::PickFile(bool save, const QString& caption, const QString& filter, const QString& suggested) {
    if (ChooseFile) return ChooseFile(save, caption, filter, suggested);
    return save ? QFileDialog::getSaveFileName(this, caption, suggested, filter)
                : QFileDialog::getOpenFileName(this, caption, suggested, filter);
}

void TForm1::actOpenClick() {
    if (!MaybeSave()) return;
    const QString start = currentFile_.isEmpty() ? QDir::homePath() : QFileInfo(currentFile_).path();
    const QString path = PickFile(false, tr("Open Worksheet"), WorksheetFilter(), start);
    if (!path.isEmpty()) OpenWorksheet(path);
}

bool TForm1::SaveWorksheetTo(const QString& path) {
    try {
        SaveWorksheet(path, accounts_, classes_, result_);
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
        return false;
    }
    currentFile_ = QFileInfo(path).absoluteFilePath();
    savedSnapshot_ = Snapshot();
    UpdateDocumentState();
    AddRecentFile(currentFile_);
    return true;
}

bool TForm1::actSaveClick() {
    if (currentFile_.isEmpty()) return actSaveAsClick();
    return SaveWorksheetTo(currentFile_);
}

bool TForm1::actSaveAsClick() {
    const QString suggested = currentFile_.isEmpty() ? QDir::home().filePath(tr("Untitled") + QStringLiteral(".tessary"))
                                                     : currentFile_;
    const QString path = PickFile(true, tr("Save Worksheet"), WorksheetFilter(), suggested);
    if (path.isEmpty()) return false;
    return SaveWorksheetTo(WithSuffix(path, QStringLiteral(".tessary")));
}

void TForm1::actCopyClick() {
    QApplication::clipboard()->setText(GridAsTsv(result_, GridKind::Result, grdResult->SelectedRange()));
}

void TForm1::actExportCsvClick() {
    const QString path =
        PickFile(true, tr("Export to CSV"), tr("CSV files (*.csv)"), Suggested(currentFile_, ".csv"));
    if (path.isEmpty()) return;
    try {
        SaveCsv(WithSuffix(path, QStringLiteral(".csv")), GridAsCsv(result_, GridKind::Result));
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

void TForm1::actExportPdfClick() {
    const QString path =
        PickFile(true, tr("Export to PDF"), tr("PDF files (*.pdf)"), Suggested(currentFile_, ".pdf"));
    if (path.isEmpty()) return;
    try {
        WriteReportPdf(WithSuffix(path, QStringLiteral(".pdf")),
                       {accounts_, classes_, result_, QDate::currentDate(), AppLocale()});
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

void TForm1::actPrintClick() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(tr("Portfolio Allocation"));
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted) return;
    try {
        PrintReport(printer, {accounts_, classes_, result_, QDate::currentDate(), AppLocale()});
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

void TForm1::ShowNotices(const std::vector<TNotice>& notices) {
    if (&notices != &noticeItems_) noticeItems_ = notices;
    notices_.clear();
    for (const TNotice& n : noticeItems_) notices_ << NoticeText(n);
    lblNotices->setToolTip(notices_.join(QLatin1Char('\n')));
    ElideNotices();
}

void TForm1::ElideNotices() {
    if (notices_.isEmpty()) {
        lblNotices->clear();
        return;
    }
    QString line = QStringLiteral("\u26A0 ") + notices_.first();
    if (notices_.size() > 1)
        line += QStringLiteral("  ") + tr("(%n more)", nullptr, static_cast<int>(notices_.size() - 1));
    const QFontMetrics fm(lblNotices->font());
    lblNotices->setText(fm.elidedText(line, Qt::ElideRight, lblNotices->width()));
}

void TForm1::UpdateNotices() {
    std::vector<TNotice> notices = InputNotices(accounts_, classes_);
    for (TNotice& n : ResultNotices(classes_, result_)) notices.push_back(std::move(n));
    ShowNotices(notices);
}

void TForm1::UpdateChart() {
    QChart* chart = chtAllocation->chart();
    UpdateAllocationChart(*chart, result_, AppLocale());
    // Small labels leave the bars their room in the strip under the grid.
    QFont small = font();
    small.setPointSizeF(baseFontSize_ * cnf_.Zoom * 0.62);
    chart->legend()->setFont(small);
    for (QAbstractAxis* axis : chart->axes()) axis->setLabelsFont(small);
}

} // namespace tessary
