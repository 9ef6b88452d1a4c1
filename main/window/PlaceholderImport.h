// Stands in for the import dialog until importing from client files is built.
#pragma once

#include <QDialog>

namespace tessary {

class TdlgImportPlaceholder : public QDialog {
    Q_OBJECT
public:
    explicit TdlgImportPlaceholder(QWidget* parent = nullptr);
protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tessary
