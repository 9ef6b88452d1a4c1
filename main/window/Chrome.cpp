#include "window/Chrome.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace tessary {

QPixmap AppIcon(int size) {
    // A tessellated square: the six class colours, equities in the warm half.
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor colours[] = {QColor(0x4E, 0x79, 0xA7), QColor(0x76, 0xB7, 0xB2), QColor(0xF2, 0x8E, 0x2B),
                              QColor(0xE1, 0x57, 0x59), QColor(0xED, 0xC9, 0x48), QColor(0x59, 0xA1, 0x4F)};
    const double cell = size / 3.0;
    QPainterPath clip;
    clip.addRoundedRect(QRectF(0, 0, size, size), size * 0.18, size * 0.18);
    p.setClipPath(clip);
    for (int i = 0; i < 9; ++i) {
        const int row = i / 3, col = i % 3;
        p.fillRect(QRectF(col * cell, row * cell, cell + 0.5, cell + 0.5), colours[(row * 2 + col) % 6]);
    }
    p.setPen(QPen(Qt::white, std::max(1.0, size / 16.0)));
    for (int k = 1; k < 3; ++k) {
        p.drawLine(QPointF(k * cell, 0), QPointF(k * cell, size));
        p.drawLine(QPointF(0, k * cell), QPointF(size, k * cell));
    }
    return pm;
}

QPixmap GlyphPixmap(Glyph glyph, int size, const QColor& colour) {
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(colour, std::max(1.5, size / 9.0), Qt::SolidLine, Qt::RoundCap));
    const double m = size * 0.28;
    if (glyph == Glyph::Minimize) {
        p.drawLine(QPointF(m, size - m), QPointF(size - m, size - m));
    } else {
        p.drawLine(QPointF(m, m), QPointF(size - m, size - m));
        p.drawLine(QPointF(size - m, m), QPointF(m, size - m));
    }
    return pm;
}

TCaptionBar::TCaptionBar(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }

void TCaptionBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, kCaptionTop);
    g.setColorAt(1, kCaptionBottom);
    p.fillRect(rect(), g);
}

TCornerGrip::TCornerGrip(QWidget* parent) : QWidget(parent) { setCursor(Qt::SizeFDiagCursor); }

void TCornerGrip::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x9A, 0xA5, 0xB1));
    const double d = std::max(2.0, width() / 8.0);
    for (int row = 0; row < 3; ++row)
        for (int col = 2 - row; col < 3; ++col)
            p.drawEllipse(QPointF(width() - d * (1.5 + 2.2 * (2 - col)), height() - d * (1.5 + 2.2 * (2 - row))), d / 2,
                          d / 2);
}

HitArea NonClientHitTest(const QPoint& point, bool applicationActive, const QRect& captionRegion,
                         const QRect& buttonsRegion, const QRect& cornerRegion) {
    if (applicationActive) {
        if (captionRegion.contains(point)) return HitArea::Caption;
        if (cornerRegion.contains(point)) return HitArea::BottomRight;
        return HitArea::Client;
    }
    return buttonsRegion.contains(point) ? HitArea::Client : HitArea::Caption;
}

QString WindowStyleSheet(double zoom) {
    const int radius = std::max(2, static_cast<int>(3 * zoom));
    return QStringLiteral(
               "QWidget#form { background: white; }"
               "QPushButton { background: #F4F6F9; border: 1px solid #B8C2CE; border-radius: %1px;"
               "  padding: 0px 4px; color: #1F3552; }"
               "QPushButton[compact=\"true\"] { padding: 0px; }"
               "QPushButton:hover { background: #E3EAF3; border-color: #6D87A8; }"
               "QPushButton:pressed { background: #CCD8E6; }"
               "QPushButton:focus { border-color: #2F4B6E; }"
               "QPushButton#btnCalculate { background: #2F4B6E; color: white; border-color: #1F3552;"
               "  font-weight: bold; }"
               "QPushButton#btnCalculate:hover { background: #3B5D88; }"
               "QPushButton.window { background: transparent; border: none; }"
               "QPushButton.window:hover { background: rgba(255,255,255,40); }"
               "QTableView { gridline-color: #D5DCE4; border: 1px solid #B8C2CE;"
               "  selection-background-color: #CCD8E6; selection-color: black; }"
               "QTableView[frozen=\"true\"] { border: none; }"
               "QLabel#lblCaptionBar { color: white; font-weight: bold; background: transparent; }"
               "QLabel#Label1 { color: #1F3552; font-weight: bold; }"
               "QLabel#lblNotices { color: #8A4B00; }"
               "QToolButton#btnFile { color: white; background: transparent; border: 1px solid rgba(255,255,255,90);"
               "  border-radius: %1px; padding: 0px 4px; }"
               "QToolButton#btnFile:hover, QToolButton#btnFile:pressed { background: rgba(255,255,255,40); }"
               "QToolButton#btnFile::menu-indicator { image: none; width: 0px; }")
        .arg(radius);
}

void PaintBorderFrame(QWidget* widget, int thickness) {
    QPainter p(widget);
    const QRect r = widget->rect();
    p.fillRect(QRect(0, 0, thickness, r.height()), kFrameColor);
    p.fillRect(QRect(r.width() - thickness, 0, thickness, r.height()), kFrameColor);
    p.fillRect(QRect(0, r.height() - thickness, r.width(), thickness), kFrameColor);
}

QPushButton* MakeWindowButton(QWidget* parent, Glyph glyph, const QString& accessibleName) {
    auto* b = new QPushButton(parent);
    b->setProperty("class", QStringLiteral("window"));
    b->setAccessibleName(accessibleName);
    b->setToolTip(accessibleName);
    b->setFocusPolicy(Qt::NoFocus);
    b->setIcon(QIcon(GlyphPixmap(glyph, 64, Qt::white)));
    return b;
}

} // namespace tessary
