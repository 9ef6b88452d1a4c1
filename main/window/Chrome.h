// The borderless windows' own chrome: drawn caption bar, window buttons,
// size grip, frame, and the hit test that gives the window a frame's behaviour.
#pragma once

#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QRect>
#include <QWidget>

namespace tessary {

// Shared look of the main window and its dialogs.
inline constexpr QColor kCaptionTop{0x2F, 0x4B, 0x6E};
inline constexpr QColor kCaptionBottom{0x1F, 0x35, 0x52};
inline constexpr QColor kFrameColor{0x1F, 0x35, 0x52};

QPixmap AppIcon(int size);

enum class Glyph { Minimize, Close };
QPixmap GlyphPixmap(Glyph glyph, int size, const QColor& colour);

// Caption bar image: a gradient with the title, redrawn on every resize.
class TCaptionBar : public QWidget {
    Q_OBJECT
public:
    explicit TCaptionBar(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent*) override;
};

// Size grip image at the bottom-right corner.
class TCornerGrip : public QWidget {
    Q_OBJECT
public:
    explicit TCornerGrip(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent*) override;
};

enum class HitArea { Client, Caption, BottomRight };

// Where a point (relative to the window's top-left corner) acts like a frame:
// while the application is active, the caption region drags and the corner
// region sizes; while it is not, any point outside the window buttons drags.
HitArea NonClientHitTest(const QPoint& point, bool applicationActive, const QRect& captionRegion,
                         const QRect& buttonsRegion, const QRect& cornerRegion);

// Style sheet of flat buttons, labels and grids, scaled by the zoom.
QString WindowStyleSheet(double zoom);

// Paints the flat 2-pixel frame on the bottom, left and right.
void PaintBorderFrame(QWidget* widget, int thickness);

// A flat caption-bar button with a glyph and no caption.
QPushButton* MakeWindowButton(QWidget* parent, Glyph glyph, const QString& accessibleName);

} // namespace tessary
