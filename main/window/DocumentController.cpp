#include "window/DocumentController.h"

#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <cmath>

#include "format/GridFormat.h"
#include "format/Export.h"
#include "report/Report.h"
#include "report/Worksheet.h"
#include "window/SettingsStore.h"
#include "window/WindowLog.h"

namespace tessary {

namespace {

constexpr int kMaxRecentFiles = 8;
const QString kRecentKey = QStringLiteral("RecentWorksheets");

QString WorksheetFilter() { return TDocumentController::tr("Tessary worksheets (*.tessary)"); }

// A name for a file handed on, beside the worksheet when there is one.
QString Suggested(const QString& worksheet, const QString& suffix) {
    if (worksheet.isEmpty()) return QDir::home().filePath(TDocumentController::tr("allocation") + suffix);
    const QFileInfo fi(worksheet);
    return fi.dir().filePath(fi.completeBaseName() + suffix);
}

QString WithSuffix(QString path, const QString& suffix) {
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty()) path += suffix;
    return path;
}

} // namespace

TDocumentController::TDocumentController(TGrid& accounts, TGrid& classes, TGrid& result, const TGridView& resultView,
                                         QWidget* window, QMenu* menu)
    : QObject(window), accounts_(accounts), classes_(classes), result_(result), resultView_(resultView),
      window_(window) {
    setObjectName(QStringLiteral("document"));
    auto add = [this, menu](const char* name, const QKeySequence& keys, auto slot) {
        QAction* a = menu->addAction(QString(), this, slot);
        a->setObjectName(QString::fromLatin1(name));
        if (!keys.isEmpty()) {
            a->setShortcut(keys);
            a->setShortcutContext(Qt::WindowShortcut);
            // The menu is not in a menu bar: the window has to know the shortcut itself.
            window_->addAction(a);
        }
        return a;
    };
    newAction = add("actNew", QKeySequence::New, &TDocumentController::actNewClick);
    openAction = add("actOpen", QKeySequence::Open, &TDocumentController::actOpenClick);
    recentMenu = menu->addMenu(QString());
    recentMenu->setObjectName(QStringLiteral("mnuRecent"));
    connect(recentMenu, &QMenu::aboutToShow, this, &TDocumentController::FillRecentMenu);
    saveAction = add("actSave", QKeySequence::Save, &TDocumentController::actSaveClick);
    saveAsAction =
        add("actSaveAs", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), &TDocumentController::actSaveAsClick);
    menu->addSeparator();
    copyAction = add("actCopy", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), &TDocumentController::actCopyClick);
    exportCsvAction = add("actExportCsv", {}, &TDocumentController::actExportCsvClick);
    exportPdfAction = add("actExportPdf", {}, &TDocumentController::actExportPdfClick);
    printAction = add("actPrint", QKeySequence::Print, &TDocumentController::actPrintClick);
    FillRecentMenu();
    Retranslate();
}

void TDocumentController::Retranslate() {
    newAction->setText(tr("&New"));
    openAction->setText(tr("&Open..."));
    recentMenu->setTitle(tr("Open &Recent"));
    saveAction->setText(tr("&Save"));
    saveAsAction->setText(tr("Save &As..."));
    copyAction->setText(tr("&Copy Result"));
    exportCsvAction->setText(tr("Export to CS&V..."));
    exportPdfAction->setText(tr("Export to P&DF..."));
    printAction->setText(tr("&Print..."));
}

QByteArray TDocumentController::Snapshot() const {
    return WorksheetToJson(accounts_, classes_, result_, trades_ ? *trades_ : TTradesInput{});
}

bool TDocumentController::IsModified() const { return Snapshot() != savedSnapshot_; }

void TDocumentController::MarkSaved() { savedSnapshot_ = Snapshot(); }

QString TDocumentController::Caption(const QString& title) const {
    const bool modified = IsModified();
    if (!modified && currentFile_.isEmpty()) return title;
    const QString name = currentFile_.isEmpty() ? tr("Untitled") : QFileInfo(currentFile_).fileName();
    return name + (modified ? QStringLiteral("*") : QString()) + QStringLiteral(" - ") + title;
}

QString TDocumentController::UpdateState() {
    saveAction->setEnabled(IsModified() || currentFile_.isEmpty());
    return Caption(QStringLiteral("Tessary"));
}

void TDocumentController::Fail(const QString& message) {
    qCInfo(lcWindow).noquote() << "worksheet:" << message;
    if (ShowError) {
        ShowError(message);
        return;
    }
    QMessageBox::warning(window_, QStringLiteral("Tessary"), message);
}
void TDocumentController::FillRecentMenu() {
    recentMenu->clear();
    const QStringList files = ProgramSettingsStore().value(kRecentKey).toStringList();
    for (const QString& f : files) {
        QAction* a = recentMenu->addAction(QDir::toNativeSeparators(f), this, [this, f] {
            if (MaybeSave()) OpenWorksheet(f);
        });
        a->setEnabled(QFileInfo::exists(f));
    }
    recentMenu->setEnabled(!files.isEmpty());
}

void TDocumentController::AddRecentFile(const QString& path) {
    QSettings settings = ProgramSettingsStore();
    QStringList files = settings.value(kRecentKey).toStringList();
    const QString abs = QFileInfo(path).absoluteFilePath();
    files.removeAll(abs);
    files.prepend(abs);
    while (files.size() > kMaxRecentFiles) files.removeLast();
    settings.setValue(kRecentKey, files);
    FillRecentMenu();
}

bool TDocumentController::MaybeSave() {
    if (!IsModified()) return true;
    QMessageBox::StandardButton answer;
    if (AskSaveChanges) {
        answer = AskSaveChanges();
    } else {
        const QString name = currentFile_.isEmpty() ? tr("Untitled") : QFileInfo(currentFile_).fileName();
        answer =
            QMessageBox::question(window_, tr("Unsaved changes"),
                                  tr("The worksheet \"%1\" has changes that are not saved. Save them?").arg(name),
                                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    }
    if (answer == QMessageBox::Save) return actSaveClick();
    return answer == QMessageBox::Discard;
}

void TDocumentController::actNewClick() {
    if (!MaybeSave()) return;
    const TWorksheet blank;
    accounts_ = blank.accounts;
    classes_ = blank.classes;
    result_ = blank.result;
    if (trades_) *trades_ = {};
    accounts_.SetRowCount(2);
    classes_.SetRowCount(2);
    ShowDocument(QString());
}

// After the grids were replaced as a whole: everything shown from them, and
// the document counted as saved under its file name.
void TDocumentController::ShowDocument(const QString& file) {
    currentFile_ = file;
    emit documentReplaced();
    MarkSaved();
    emit stateChanged();
}

bool TDocumentController::OpenWorksheet(const QString& path) {
    try {
        LoadWorksheet(path, accounts_, classes_, result_, trades_);
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
        return false;
    }
    ShowDocument(QFileInfo(path).absoluteFilePath());
    AddRecentFile(currentFile_);
    return true;
}

QString TDocumentController::PickFile(bool save, const QString& caption, const QString& filter,
                                      const QString& suggested) {
    if (ChooseFile) return ChooseFile(save, caption, filter, suggested);
    return save ? QFileDialog::getSaveFileName(window_, caption, suggested, filter)
                : QFileDialog::getOpenFileName(window_, caption, suggested, filter);
}

void TDocumentController::actOpenClick() {
    if (!MaybeSave()) return;
    const QString start = currentFile_.isEmpty() ? QDir::homePath() : QFileInfo(currentFile_).path();
    const QString path = PickFile(false, tr("Open Worksheet"), WorksheetFilter(), start);
    if (!path.isEmpty()) OpenWorksheet(path);
}

bool TDocumentController::SaveWorksheetTo(const QString& path) {
    try {
        SaveWorksheet(path, accounts_, classes_, result_, trades_ ? *trades_ : TTradesInput{});
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
        return false;
    }
    currentFile_ = QFileInfo(path).absoluteFilePath();
    MarkSaved();
    emit stateChanged();
    AddRecentFile(currentFile_);
    return true;
}

bool TDocumentController::actSaveClick() {
    if (currentFile_.isEmpty()) return actSaveAsClick();
    return SaveWorksheetTo(currentFile_);
}

bool TDocumentController::actSaveAsClick() {
    const QString suggested =
        currentFile_.isEmpty() ? QDir::home().filePath(tr("Untitled") + QStringLiteral(".tessary")) : currentFile_;
    const QString path = PickFile(true, tr("Save Worksheet"), WorksheetFilter(), suggested);
    if (path.isEmpty()) return false;
    return SaveWorksheetTo(WithSuffix(path, QStringLiteral(".tessary")));
}

void TDocumentController::actCopyClick() {
    QApplication::clipboard()->setText(GridAsTsv(result_, GridKind::Result, resultView_.SelectedRange()));
}

void TDocumentController::actExportCsvClick() {
    const QString path = PickFile(true, tr("Export to CSV"), tr("CSV files (*.csv)"), Suggested(currentFile_, ".csv"));
    if (path.isEmpty()) return;
    try {
        SaveCsv(WithSuffix(path, QStringLiteral(".csv")), GridAsCsv(result_, GridKind::Result));
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

void TDocumentController::actExportPdfClick() {
    const QString path = PickFile(true, tr("Export to PDF"), tr("PDF files (*.pdf)"), Suggested(currentFile_, ".pdf"));
    if (path.isEmpty()) return;
    try {
        WriteReportPdf(WithSuffix(path, QStringLiteral(".pdf")),
                       {accounts_, classes_, result_, QDate::currentDate(), AppLocale(), trades_});
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

void TDocumentController::actPrintClick() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(tr("Portfolio Allocation"));
    QPrintDialog dialog(&printer, window_);
    if (dialog.exec() != QDialog::Accepted) return;
    try {
        PrintReport(printer, {accounts_, classes_, result_, QDate::currentDate(), AppLocale(), trades_});
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

} // namespace tessary
