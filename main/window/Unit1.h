// The allocator's main window.
#pragma once

#include <QLabel>
#include <QPointer>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>

#include "core/Grid.h"
#include "core/Presets.h"
#include "import/ImportSession.h"
#include "window/Chrome.h"
#include "window/GridView.h"

namespace tessary {

// Window configuration made at start-up.
struct TCnf {
    double Zoom = 1.0;
    int StyleSelector = 0;
};

inline constexpr int kDesignWidth = 533;
inline constexpr int kDesignHeight = 460;
inline constexpr double kDefaultZoom = 1.5;

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

public slots:
    void btnAddAccClick();
    void btnDelAccClick();
    void AdvRepeatButton2Click();
    void AdvRepeatButton1Click();
    void btnClearClick();
    void btnImpClick();
    void btnCalculateClick();
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
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FormCreate();
    void FormResize();
    void LayoutControls();
    void RefreshGrids();
    void FillPresetMenu();
    QPushButton* MakeButton(const char* name, const QString& text, bool compact);
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

    QRect captionRegion_, buttonsRegion_, cornerRegion_;

    // Fallback for window managers that refuse a system move or resize.
    HitArea dragArea_ = HitArea::Client;
    QPoint dragStartGlobal_;
    QRect dragStartGeometry_;
};

} // namespace tessary
