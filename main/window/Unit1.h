// The allocator's main window.
#pragma once

#include <QByteArray>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <functional>

#include "core/Grid.h"
#include "core/Notices.h"
#include "core/Presets.h"
#include "import/ImportSession.h"
#include "window/Chrome.h"
#include "window/GridView.h"

class QChartView;
class QSettings;

namespace tessary {

// Window configuration made at start-up.
struct TCnf {
    double Zoom = 1.0;
    int StyleSelector = 0;
};

inline constexpr int kDesignWidth = 533;
// The chart under the result grid made the window taller than the original 460.
inline constexpr int kDesignHeight = 590;
inline constexpr double kDefaultZoom = 1.5;

// The program's settings (saved presets, recent worksheets, language).
QSettings ProgramSettingsStore();

// A notice in the window's language.
QString NoticeText(const TNotice& notice);

// The zoom that keeps the zoomed window inside the available height
// (never above the wanted zoom).
double FitZoom(double wanted, int availableHeight, double pixelsPerInch, int windowHeight);

class TForm1 : public QWidget {
    Q_OBJECT
public:
    explicit TForm1(QWidget* parent = nullptr);

    TGrid& Accounts() { return accounts_; }
    TGrid& Classes() { return classes_; }
    TGrid& Result() { return result_; }
    const TCnf& Cnf() const { return cnf_; }
    QString HelpFile() const { return helpFile_; }

    // Where the import dialog finds the products' folders instead of their configuration.
    void SetImportFolders(const TFolderOverrides& folders) { importFolders_ = folders; }

    // Fills the input grids from CSV texts (an empty text leaves its grid as it is).
    void LoadInputs(const QByteArray& accountsCsv, const QByteArray& classesCsv);

    // Where a point of the window acts as caption or sizing corner.
    HitArea HitTest(const QPoint& windowPoint, bool applicationActive) const;
    QRect CaptionRegion() const { return captionRegion_; }
    QRect ButtonsRegion() const { return buttonsRegion_; }
    QRect CornerRegion() const { return cornerRegion_; }

    // Published components, in declaration order.
    TGridView* grdAccounts;
    QPushButton* btnAddAcc;
    QPushButton* btnDelAcc;
    TGridView* grdClasses;
    TGridView* grdResult;
    QLabel* Label1;
    QPushButton* btnImp;
    QPushButton* AdvRepeatButton1;
    QPushButton* AdvRepeatButton2;
    QPushButton* btnCalculate;
    QLabel* Label2;
    QLabel* Label3;
    QLabel* lblCaptionBar;
    QLabel* imApplIcon;
    TCaptionBar* pnCaption;
    QWidget* pnWndButtons;
    TCornerGrip* rbCorner;
    QPushButton* AdvRepeatButton3;
    QPushButton* hbtMinimize;
    QPushButton* hbtQuit;
    QPushButton* btnClear;
    // Named target mixes for the classes grid.
    QToolButton* btnPresets;
    QMenu* mnuPresets;
    // The worksheet and what is handed on: in the caption bar.
    QToolButton* btnFile;
    QMenu* mnuFile;
    QMenu* mnuRecent;
    QAction* actNew;
    QAction* actOpen;
    QAction* actSave;
    QAction* actSaveAs;
    QAction* actCopy;
    QAction* actExportCsv;
    QAction* actExportPdf;
    QAction* actPrint;
    QAction* actQuit;
    QMenu* mnuLanguage;
    QAction* actEnglish;
    QAction* actFrench;
    // Odd situations of the grids, one line, never blocking.
    QLabel* lblNotices;
    QChartView* chtAllocation;

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
    // Loads a worksheet whole; on an error the grids stay as they were and the error is shown.
    bool OpenWorksheet(const QString& path);
    bool SaveWorksheetTo(const QString& path);
    // Offers to save unsaved changes; false when the adviser cancels.
    bool MaybeSave();
    // The notices now shown, one per line.
    QStringList Notices() const { return notices_; }

public slots:
    void btnAddAccClick();
    void btnDelAccClick();
    void AdvRepeatButton2Click();
    void AdvRepeatButton1Click();
    void btnClearClick();
    void btnImpClick();
    void btnCalculateClick();
    void actNewClick();
    void actOpenClick();
    bool actSaveClick();
    bool actSaveAsClick();
    // The selected result cells, or the whole result when none is selected, as tab-separated text.
    void actCopyClick();
    void actExportCsvClick();
    void actExportPdfClick();
    void actPrintClick();
    // Shows the marks of the document state: title, caption, Save.
    void UpdateDocumentState();
    void hbtQuitClick();
    void hbtMinimizeClick();
    void hbtBgndClick();
    void AdvRepeatButton3Click();
    // Fills the classes grid with a target mix.
    void ApplyTargetPreset(const TTargetPreset& preset);
    // Asks for a name and stores the current targets under it in the settings.
    void SaveTargetPreset();

    void grdAccountsEditCellDone();
    void grdClassesEditCellDone();
    // The row object of column 0 of the edited row := chosen index + 1.
    void grdAccountsComboChange(TGridView* grid, int row, int itemIndex);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FormCreate();
    void FormResize();
    void LayoutControls();
    void RefreshGrids();
    void FillPresetMenu();
    void FillRecentMenu();
    void BuildFileMenu();
    void AddRecentFile(const QString& path);
    // Input notices before a calculation (it drops the rows they name), result notices after.
    void ShowNotices(const std::vector<TNotice>& notices);
    void UpdateNotices();
    void UpdateChart();
    QByteArray Snapshot() const;
    void ScaleColumnWidths();
    int RoundZoomed(int designWidth) const;
    void ElideNotices();
    void Fail(const QString& message);
    QPushButton* MakeButton(const char* name, bool compact);
    // Every text of the window in the current language.
    void RetranslateUi();
    void RetranslateFileMenu();
    void StartFrameAction(HitArea area, const QPoint& globalPos);

    // The grids' contents: declared first, the views refer to them.
    TGrid accounts_;
    TGrid classes_;
    TGrid result_;

    TCnf cnf_;
    double pixelsPerInch_ = 96;
    double screenScale_ = 1;
    double baseFontSize_ = 8;
    QString helpFile_;
    TFolderOverrides importFolders_;
    QString currentFile_;
    QByteArray savedSnapshot_;
    QStringList notices_;
    std::vector<TNotice> noticeItems_;
    // As last shown: the label is not recomputed by a calculation.
    double accountsTotal_ = 0;
    void ShowDocument(const QString& file);
    QString PickFile(bool save, const QString& caption, const QString& filter, const QString& suggested);
    void ShowAccountsTotal(double total);

    QRect captionRegion_, buttonsRegion_, cornerRegion_;

    // Fallback for window managers that refuse a system move or resize.
    HitArea dragArea_ = HitArea::Client;
    QPoint dragStartGlobal_;
    QRect dragStartGeometry_;
};

} // namespace tessary
