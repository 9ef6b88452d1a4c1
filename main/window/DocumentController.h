// The worksheet behind the window and what is handed on from it: new, open,
// recent files, save, copy, CSV and PDF export, printing.
#pragma once

#include <QAction>
#include <QByteArray>
#include <QMenu>
#include <QMessageBox>
#include <QObject>
#include <functional>

#include "core/Grid.h"
#include "core/Rebalance.h"
#include "window/GridView.h"

namespace tessary {

class TDocumentController : public QObject {
    Q_OBJECT
public:
    // window: the owner of the dialogs and of the actions' shortcuts;
    // resultView: its selection is what Copy takes; menu: gets the actions.
    TDocumentController(TGrid& accounts, TGrid& classes, TGrid& result, const TGridView& resultView, QWidget* window,
                        QMenu* menu);

    void Retranslate();
    // The holdings and options the worksheet keeps beside the grids.
    void AttachTrades(TTradesInput* trades) { trades_ = trades; }

    // Replaceable for tests; by default they show dialogs.
    // Save, Discard or Cancel for the worksheet with unsaved changes.
    std::function<QMessageBox::StandardButton()> AskSaveChanges;
    // A file to open (save false) or to write (save true); empty: cancelled.
    std::function<QString(bool save, const QString& caption, const QString& filter, const QString& suggested)>
        ChooseFile;
    std::function<void(const QString& message)> ShowError;

    // The worksheet on disk, empty while untitled.
    QString CurrentFile() const { return currentFile_; }
    // The grids differ from the worksheet as last opened, saved or started.
    bool IsModified() const;
    // The grids as they are now count as the saved worksheet.
    void MarkSaved();
    // The document state ahead of a title: "client.tessary* - <title>", or the
    // title alone for an untouched new worksheet.
    QString Caption(const QString& title) const;
    // The caption bar's text for the document state; enables Save to match.
    QString UpdateState();
    // Loads a worksheet whole; on an error the grids stay as they were and the error is shown.
    bool OpenWorksheet(const QString& path);
    bool SaveWorksheetTo(const QString& path);
    // Offers to save unsaved changes; false when the adviser cancels.
    bool MaybeSave();

    QAction* newAction;       // actNew
    QAction* openAction;      // actOpen
    QMenu* recentMenu;        // mnuRecent
    QAction* saveAction;      // actSave
    QAction* saveAsAction;    // actSaveAs
    QAction* copyAction;      // actCopy
    QAction* exportCsvAction; // actExportCsv
    QAction* exportPdfAction; // actExportPdf
    QAction* printAction;     // actPrint

public slots:
    void actNewClick();
    void actOpenClick();
    bool actSaveClick();
    bool actSaveAsClick();
    // The selected result cells, or the whole result when none is selected, as tab-separated text.
    void actCopyClick();
    void actExportCsvClick();
    void actExportPdfClick();
    void actPrintClick();

signals:
    // The grids were replaced as a whole: everything shown from them is stale.
    void documentReplaced();
    // The file name or the modified mark may have changed.
    void stateChanged();

private:
    QByteArray Snapshot() const;
    void ShowDocument(const QString& file);
    void FillRecentMenu();
    void AddRecentFile(const QString& path);
    void Fail(const QString& message);
    QString PickFile(bool save, const QString& caption, const QString& filter, const QString& suggested);

    TGrid& accounts_;
    TGrid& classes_;
    TGrid& result_;
    const TGridView& resultView_;
    QWidget* window_;
    QString currentFile_;
    QByteArray savedSnapshot_;
    TTradesInput* trades_ = nullptr;
};

} // namespace tessary
