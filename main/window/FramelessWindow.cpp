#include "window/FramelessWindow.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>
#include <cmath>

#include "window/MainWindowLayout.h"

namespace tessary {

namespace {

int RoundInt(double v) { return static_cast<int>(std::lround(v)); }

void Place(QWidget* w, const QRectF& design, double zoom) {
    w->setGeometry(RoundInt(design.x() * zoom), RoundInt(design.y() * zoom), RoundInt(design.width() * zoom),
                   RoundInt(design.height() * zoom));
}

} // namespace

TFramelessWindow::TFramelessWindow(QWidget* parent) : QWidget(parent, Qt::Window | Qt::FramelessWindowHint) {
    captionBar = new TCaptionBar(this);
    captionBar->setObjectName(QStringLiteral("pnCaption"));
    captionLabel = new QLabel(this);
    captionLabel->setObjectName(QStringLiteral("lblCaptionBar"));
    appIcon = new QLabel(this);
    appIcon->setObjectName(QStringLiteral("imApplIcon"));
    appIcon->setScaledContents(true);
    windowButtons = new QWidget(this);
    windowButtons->setObjectName(QStringLiteral("pnWndButtons"));
    minimizeButton = MakeWindowButton(windowButtons, Glyph::Minimize, QString());
    minimizeButton->setObjectName(QStringLiteral("hbtMinimize"));
    quitButton = MakeWindowButton(windowButtons, Glyph::Close, QString());
    quitButton->setObjectName(QStringLiteral("hbtQuit"));
    cornerGrip = new TCornerGrip(this);
    cornerGrip->setObjectName(QStringLiteral("rbCorner"));
    RetranslateFrame();
    qApp->installEventFilter(this);
}

void TFramelessWindow::RetranslateFrame() {
    for (QPushButton* b : {minimizeButton, quitButton}) {
        const QString text = b == minimizeButton ? tr("Minimize") : tr("Quit");
        b->setAccessibleName(text);
        b->setToolTip(text);
    }
    cornerGrip->setAccessibleName(tr("Resize"));
}

void TFramelessWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) RetranslateFrame();
}

void TFramelessWindow::LayoutFrame(double zoom, double extraWidth) {
    Place(captionBar, QRectF(0, 0, width() / zoom, layout::kCaptionHeight), zoom);
    Place(appIcon, layout::kAppIcon, zoom);
    Place(captionLabel, layout::kCaptionTitle.adjusted(0, 0, extraWidth, 0), zoom);
    Place(windowButtons, layout::kWindowButtons.translated(extraWidth, 0), zoom);
    Place(minimizeButton, layout::kMinimizeButton, zoom);
    Place(quitButton, layout::kQuitButton, zoom);
    captionBar->lower();
    for (QWidget* w : {static_cast<QWidget*>(appIcon), static_cast<QWidget*>(captionLabel), windowButtons}) w->raise();
}

void TFramelessWindow::RebuildRegions() {
    captionBar->update();
    captionRegion_ = captionBar->geometry();
    buttonsRegion_ = windowButtons->geometry();
    cornerRegion_ = cornerGrip->geometry();
}

void TFramelessWindow::ToggleMaximized() {
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

void TFramelessWindow::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    PaintBorderFrame(this, 2);
}

HitArea TFramelessWindow::HitTest(const QPoint& windowPoint, bool applicationActive) const {
    return NonClientHitTest(windowPoint, applicationActive, captionRegion_, buttonsRegion_, cornerRegion_);
}

void TFramelessWindow::StartFrameAction(HitArea area, const QPoint& globalPos) {
    QWindow* handle = windowHandle();
    bool system = false;
    if (handle) {
        system = area == HitArea::Caption ? handle->startSystemMove()
                                          : handle->startSystemResize(Qt::BottomEdge | Qt::RightEdge);
    }
    if (!system) {
        dragArea_ = area;
        dragStartGlobal_ = globalPos;
        dragStartGeometry_ = geometry();
    }
}

void TFramelessWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        const HitArea area = HitTest(event->position().toPoint(), true);
        if (area != HitArea::Client) {
            StartFrameAction(area, event->globalPosition().toPoint());
            event->accept();
            return;
        }
    }
    QWidget::mousePressEvent(event);
}

void TFramelessWindow::mouseMoveEvent(QMouseEvent* event) {
    if (dragArea_ != HitArea::Client && (event->buttons() & Qt::LeftButton)) {
        const QPoint delta = event->globalPosition().toPoint() - dragStartGlobal_;
        if (dragArea_ == HitArea::Caption)
            move(dragStartGeometry_.topLeft() + delta);
        else
            resize(std::max(minimumWidth(), dragStartGeometry_.width() + delta.x()),
                   std::max(minimumHeight(), dragStartGeometry_.height() + delta.y()));
        return;
    }
    QWidget::mouseMoveEvent(event);
}

void TFramelessWindow::mouseReleaseEvent(QMouseEvent* event) {
    dragArea_ = HitArea::Client;
    QWidget::mouseReleaseEvent(event);
}

void TFramelessWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    // A double click on a caption toggles maximised, as on a framed window.
    if (HitTest(event->position().toPoint(), true) == HitArea::Caption) {
        ToggleMaximized();
        return;
    }
    QWidget::mouseDoubleClickEvent(event);
}

bool TFramelessWindow::eventFilter(QObject* watched, QEvent* event) {
    // While the application is inactive, a click anywhere outside the window
    // buttons grabs the window, as a click on a frame would.
    if (event->type() == QEvent::MouseButtonPress && QGuiApplication::applicationState() != Qt::ApplicationActive) {
        auto* w = qobject_cast<QWidget*>(watched);
        auto* me = static_cast<QMouseEvent*>(event);
        if (w && w->window() == this && me->button() == Qt::LeftButton) {
            const QPoint local = mapFromGlobal(me->globalPosition().toPoint());
            if (HitTest(local, false) == HitArea::Caption) {
                activateWindow();
                StartFrameAction(HitArea::Caption, me->globalPosition().toPoint());
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tessary
