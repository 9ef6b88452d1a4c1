#include "window/NoticeLine.h"

#include <QEvent>

#include "window/NoticeText.h"

namespace tessary {

TNoticeLine::TNoticeLine(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("lblNotices"));
    setTextFormat(Qt::PlainText);
    setAccessibleName(tr("Notices"));
}

void TNoticeLine::ShowNotices(const std::vector<TNotice>& notices) {
    if (&notices != &notices_) notices_ = notices;
    texts_.clear();
    for (const TNotice& n : notices_) texts_ << NoticeText(n);
    setToolTip(texts_.join(QLatin1Char('\n')));
    Elide();
}

void TNoticeLine::Elide() {
    if (texts_.isEmpty()) {
        clear();
        return;
    }
    QString line = QStringLiteral("\u26A0 ") + texts_.first();
    if (texts_.size() > 1) line += QStringLiteral("  ") + tr("(%n more)", nullptr, static_cast<int>(texts_.size() - 1));
    const QFontMetrics fm(font());
    setText(fm.elidedText(line, Qt::ElideRight, width()));
}

void TNoticeLine::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    Elide();
}

void TNoticeLine::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        setAccessibleName(tr("Notices"));
        ShowNotices(notices_);
    } else if (event->type() == QEvent::FontChange) {
        Elide();
    }
}

} // namespace tessary
