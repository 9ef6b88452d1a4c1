// The strip of notices beside the result heading: the first notice, whole
// (wrapped), with a count of the others; all of them in its tooltip.
#pragma once

#include <QLabel>
#include <QStringList>
#include <vector>

#include "core/Notices.h"

namespace tessary {

class TNoticeLine : public QLabel {
    Q_OBJECT
public:
    explicit TNoticeLine(QWidget* parent);

    void ShowNotices(const std::vector<TNotice>& notices);
    // The notices now shown, one per line.
    QStringList Notices() const { return texts_; }

signals:
    // The text changed, and with it the height it needs.
    void shown();

protected:
    void changeEvent(QEvent* event) override;

private:
    void ShowFirst();

    std::vector<TNotice> notices_;
    QStringList texts_;
};

} // namespace tessary
