// The allocator's main window. It assembles the parts, each with one job:
// the frame (TFramelessWindow: caption bar, dragging, resizing), the input
// grids with their buttons and totals (TInputGridsPanel), the worksheet and
// what is handed on from it (TDocumentController), the result grid with its
// notices and chart, and the import (TdlgFromFile). Widgets carry the
// design's component names as their objectName (grdAccounts, btnImp, Label3...).
#pragma once

#include <QByteArray>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

#include "core/Grid.h"
#include "core/Notices.h"
#include "import/ImportSession.h"
#include "window/AllocationChart.h"
#include "window/DocumentController.h"
#include "window/FramelessWindow.h"
#include "window/GridView.h"
#include "window/InputGridsPanel.h"
#include "window/MainWindowLayout.h"
#include "window/NoticeLine.h"
#include "window/TradesPage.h"

namespace tessary {

// Window configuration made at start-up.
struct TCnf {
    double Zoom = 1.0;
    int StyleSelector = 0;
};

// The zoom that keeps the zoomed window inside the available height
// (never above the wanted zoom).
double FitZoom(double wanted, int availableHeight, double pixelsPerInch, int windowHeight);

class TForm1 : public TFramelessWindow {
    Q_OBJECT
public:
    explicit TForm1(QWidget* parent = nullptr);

    TGrid& Accounts() { return inputs_->Accounts(); }
    TGrid& Classes() { return inputs_->Classes(); }
    TGrid& Result() { return result_; }
    TInputGridsPanel& Inputs() { return *inputs_; }
    TDocumentController& Document() { return *document_; }
    TTradesInput& TradesInput() { return trades_; }
    const TCnf& Cnf() const { return cnf_; }
    QString HelpFile() const { return helpFile_; }

    // Where the import dialog finds the products' folders instead of their configuration.
    void SetImportFolders(const TFolderOverrides& folders) { importFolders_ = folders; }
    // The library settings each import dialog's session starts from.
    void SetImportSettings(const kv::TLibrarySettings& settings) { importSettings_ = settings; }
    // The --key option (or what --key-file gave), which beats the stored key
    // when the settings change it.
    void SetClientKeyOption(const QString& key) { keyOption_ = key; }

    // Fills the input grids from CSV texts (an empty text leaves its grid as it is).
    void LoadInputs(const QByteArray& accountsCsv, const QByteArray& classesCsv);

    // The notices now shown, one per line.
    QStringList Notices() const { return noticeLine->Notices(); }

    TGridView* resultGrid;        // grdResult
    QLabel* resultHeadingLabel;   // Label1
    QPushButton* calculateButton; // btnCalculate
    QPushButton* helpButton;      // AdvRepeatButton3
    // Odd situations of the grids, one line, never blocking.
    TNoticeLine* noticeLine;
    TAllocationChart* chart;
    // The worksheet and what is handed on, the language and Quit: in the caption bar.
    QToolButton* fileButton;
    QMenu* fileMenu;
    QAction* settingsAction; // actSettings: folders and client-file key
    QMenu* languageMenu;
    QAction* englishAction;
    QAction* frenchAction;
    QAction* quitAction;
    // The second page, holdings to trades, and the caption-bar button that shows it.
    TTradesPage* tradesPage;
    QToolButton* tradesButton;

public slots:
    void btnImpClick();
    void actSettingsClick();
    // The client-file key again, after the settings may have changed it.
    void ReloadClientKey();
    void btnCalculateClick();
    void hbtQuitClick();
    void hbtMinimizeClick();
    void hbtBgndClick();
    void AdvRepeatButton3Click();
    // Shows the marks of the document state: title, caption, Save.
    void UpdateDocumentState();
    void ShowTradesPage(bool shown);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void FormCreate();
    void FormResize();
    void LayoutControls();
    void BuildFileMenu();
    // Every text of the window in the current language.
    void RetranslateUi();
    // Input notices before a calculation (it drops the rows they name), result notices after.
    void UpdateNotices();
    void UpdateChart();
    // After the document replaced the grids: column widths zoomed, everything shown anew.
    void ShowDocument();
    void ScaleColumnWidths();

    // The result's contents: declared before the view that refers to it.
    TGrid result_;
    TTradesInput trades_;
    TInputGridsPanel* inputs_;
    TDocumentController* document_;

    TCnf cnf_;
    double pixelsPerInch_ = 96;
    double screenScale_ = 1;
    double baseFontSize_ = 8;
    QString helpFile_;
    TFolderOverrides importFolders_;
    kv::TLibrarySettings importSettings_ = TodaysLibrarySettings();
    QString keyOption_;
};

} // namespace tessary
