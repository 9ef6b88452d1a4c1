// The base of the program's dialogs: which result OK and cancel give depends
// on the buttons the dialog offers, so callers test for "yes" where the
// dialog asks a question and for "OK" where it only informs.
#pragma once

#include <QDialog>

namespace tessary {

class TdlgMsg : public QDialog {
    Q_OBJECT
public:
    enum TButton { mbYes = 1, mbNo = 2, mbOK = 4, mbCancel = 8 };
    // Rejected and Accepted keep their QDialog values.
    enum TResult { mrCancel = QDialog::Rejected, mrOk = QDialog::Accepted, mrYes = 6, mrNo = 7 };

    TdlgMsg(int buttons, QWidget* parent = nullptr, Qt::WindowFlags flags = {});
    int Buttons() const { return buttons_; }

    // Yes when the set holds Yes, else OK.
    void OkClick() { done(buttons_ & mbYes ? mrYes : mrOk); }
    // No when the set holds No, else cancel.
    void CancelClick() { done(buttons_ & mbNo ? mrNo : mrCancel); }

private:
    int buttons_;
};

} // namespace tessary
