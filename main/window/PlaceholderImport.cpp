#include "window/PlaceholderImport.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/Chrome.h"

namespace tessary {

TdlgImportPlaceholder::TdlgImportPlaceholder(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("dlgImportPlaceholder"));
    setWindowTitle(tr("Select File"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 2);
    auto* caption = new QLabel(tr("Select File"), this);
    caption->setObjectName(QStringLiteral("lblCaptionBar"));
    caption->setStyleSheet(QStringLiteral("QLabel { background: #2F4B6E; color: white; font-weight: bold;"
                                          " padding: 4px 8px; }"));
    layout->addWidget(caption);
    auto* text = new QLabel(
        tr("Importing accounts from Meridel, Basalto and Quorren client files is not available in this "
           "build yet.\n\nType the client's accounts into the accounts grid for now."),
        this);
    text->setWordWrap(true);
    text->setMargin(12);
    layout->addWidget(text);
    auto* ok = new QPushButton(tr("OK"), this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(ok, 0, Qt::AlignRight);
    setMinimumWidth(360);
    if (parent) setFont(parent->font());
}

void TdlgImportPlaceholder::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    PaintBorderFrame(this, 2);
}

} // namespace tessary
