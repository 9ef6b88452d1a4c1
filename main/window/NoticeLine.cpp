#include "window/NoticeLine.h"

#include <QEvent>

#include "window/NoticeText.h"

namespace tessary {

TNoticeLine::TNoticeLine(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("lblNotices"));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setAccessibleName(tr("Notices"));
}

void TNoticeLine::ShowNotices(const std::vector<TNotice>& notices) {
    if (&notices != &notices_) notices_ = notices;
    texts_.clear();
    for (const TNotice& n : notices_) texts_ << NoticeText(n);
    setToolTip(texts_.join(QLatin1Char('\n')));
    ShowFirst();
    emit shown();
}

void TNoticeLine::ShowFirst() {
    if (texts_.isEmpty()) {
        clear();
        return;
    }
    QString line = QStringLiteral("\u26A0 ") + texts_.first();
    if (texts_.size() > 1) line += QStringLiteral("  ") + tr("(%n more)", nullptr, static_cast<int>(texts_.size() - 1));
    setText(line);
}

void TNoticeLine::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        setAccessibleName(tr("Notices"));
        ShowNotices(notices_);
    }
}

} // namespace tessary
