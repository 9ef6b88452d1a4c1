// A top-level window without a system frame that behaves as if it had one:
// its drawn caption bar drags it, the corner grip sizes it, a double click on
// the caption maximises it, and the thin border is painted.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QRect>
#include <QWidget>

#include "window/Chrome.h"

namespace tessary {

class TFramelessWindow : public QWidget {
    Q_OBJECT
public:
    explicit TFramelessWindow(QWidget* parent = nullptr);

    // Where a point of the window acts as caption or sizing corner.
    HitArea HitTest(const QPoint& windowPoint, bool applicationActive) const;
    QRect CaptionRegion() const { return captionRegion_; }
    QRect ButtonsRegion() const { return buttonsRegion_; }
    QRect CornerRegion() const { return cornerRegion_; }

    // Maximised becomes normal, anything else maximised.
    void ToggleMaximized();

    TCaptionBar* captionBar;     // pnCaption
    QLabel* appIcon;             // imApplIcon
    QLabel* captionLabel;        // lblCaptionBar
    QWidget* windowButtons;      // pnWndButtons
    QPushButton* minimizeButton; // hbtMinimize
    QPushButton* quitButton;     // hbtQuit
    TCornerGrip* cornerGrip;     // rbCorner

protected:
    // Places the caption bar across the window's width; extraWidth is the room
    // beyond the design width, in design pixels.
    void LayoutFrame(double zoom, double extraWidth);
    // The hit-test regions follow the controls' current bounds.
    void RebuildRegions();

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void RetranslateFrame();
    void StartFrameAction(HitArea area, const QPoint& globalPos);

    QRect captionRegion_, buttonsRegion_, cornerRegion_;
    // Fallback for window managers that refuse a system move or resize.
    HitArea dragArea_ = HitArea::Client;
    QPoint dragStartGlobal_;
    QRect dragStartGeometry_;
};

} // namespace tessary
