#include "window/FromFile.h"

#include <QApplication>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <cmath>

#include "model/KvFnParty.h"

namespace tessary {

namespace {

constexpr int kDialogWidth = 266;
constexpr int kDialogHeight = 258;
constexpr int kCaptionHeight = 26;

int Scaled(double v, double zoom) { return static_cast<int>(std::lround(v * zoom)); }

} // namespace

TdlgFromFile::TdlgFromFile(TFolderOverrides folders, double zoom, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), session_(std::move(folders)), zoom_(zoom) {
    setObjectName(QStringLiteral("dlgFromFile"));
    setWindowTitle(tr("Select File"));
    setModal(true);
    setAttribute(Qt::WA_StyledBackground);

    QFont f = parent ? parent->font() : font();
    f.setPointSizeF(8 * zoom_);
    setFont(f);
    setStyleSheet(WindowStyleSheet(zoom_) + QStringLiteral("QDialog#dlgFromFile { background: white; }"
                                                           "QLabel { color: #1F3552; }"
                                                           "QLabel#Label1 { font-weight: normal; }"));

    ShowError = [this](const QString& message) { QMessageBox::warning(this, tr("Select File"), message); };

    pnCaption = new TCaptionBar(this);
    pnCaption->setObjectName(QStringLiteral("pnCaption"));
    lblCaptionBar = new QLabel(tr("Select File"), this);
    lblCaptionBar->setObjectName(QStringLiteral("lblCaptionBar"));

    auto radio = [this](const char* name, const QString& text, const QString& product) {
        auto* r = new QRadioButton(text, this);
        r->setObjectName(QString::fromLatin1(name));
        r->setToolTip(product);
        r->setAccessibleName(product);
        connect(r, &QRadioButton::clicked, this, &TdlgFromFile::cbMDClick);
        return r;
    };
    cbMD = radio("cbMD", QStringLiteral("MD"), tr("Meridel: personal planning"));
    cbBS = radio("cbBS", QStringLiteral("BS"), tr("Basalto: corporate planning"));
    cbQR = radio("cbQR", QStringLiteral("QR"), tr("Quorren: trust planning"));
    cbMD->setChecked(true);

    auto label = [this](const char* name, const QString& text) {
        auto* l = new QLabel(text, this);
        l->setObjectName(QString::fromLatin1(name));
        return l;
    };
    auto combo = [this](const char* name, QLabel* buddy) {
        auto* c = new QComboBox(this);
        c->setObjectName(QString::fromLatin1(name));
        c->setAccessibleName(buddy->text());
        buddy->setBuddy(c);
        return c;
    };
    lblBSFile = label("lblBSFile", tr("Select File"));
    cmbFile = combo("cmbFile", lblBSFile);
    lblBSSolution = label("lblBSSolution", tr("Select Solution"));
    cmbSolution = combo("cmbSolution", lblBSSolution);
    Label1 = label("Label1", tr("Select Party"));
    cmbParty = combo("cmbParty", Label1);
    Label2 = label("Label2", tr("Select Party"));
    cmbImpParty = combo("cmbImpParty", Label2);
    Label2->hide();
    cmbImpParty->hide();

    hbtYes = new QPushButton(tr("OK"), this);
    hbtYes->setObjectName(QStringLiteral("hbtYes"));
    hbtYes->setDefault(true);
    hbtNo = new QPushButton(tr("Cancel"), this);
    hbtNo->setObjectName(QStringLiteral("hbtNo"));

    connect(cmbFile, &QComboBox::activated, this, &TdlgFromFile::cmbFileChange);
    connect(cmbSolution, &QComboBox::activated, this, &TdlgFromFile::cmbSolutionChange);
    connect(hbtYes, &QPushButton::clicked, this, &TdlgFromFile::hbtYesClick);
    connect(hbtNo, &QPushButton::clicked, this, &QDialog::reject);

    const double z = zoom_;
    auto place = [z](QWidget* w, double x, double y, double wd, double ht) {
        w->setGeometry(Scaled(x, z), Scaled(y, z), Scaled(wd, z), Scaled(ht, z));
    };
    setFixedSize(Scaled(kDialogWidth, z), Scaled(kDialogHeight, z));
    place(pnCaption, 0, 0, kDialogWidth, kCaptionHeight);
    place(lblCaptionBar, 9, 3, 200, 20);
    place(cbMD, 16, 36, 50, 20);
    place(cbBS, 72, 36, 50, 20);
    place(cbQR, 128, 36, 50, 20);
    place(lblBSFile, 15, 60, 237, 16);
    place(cmbFile, 15, 76, 237, 21);
    place(lblBSSolution, 15, 100, 237, 16);
    place(cmbSolution, 15, 116, 237, 21);
    place(Label1, 15, 140, 237, 16);
    place(cmbParty, 15, 156, 237, 21);
    place(Label2, 15, 181, 237, 16);
    place(cmbImpParty, 15, 197, 237, 21);
    place(hbtYes, 112, 228, 66, 22);
    place(hbtNo, 186, 228, 66, 22);

    setTabOrder(cbMD, cbBS);
    setTabOrder(cbBS, cbQR);
    setTabOrder(cbQR, cmbFile);
    setTabOrder(cmbFile, cmbSolution);
    setTabOrder(cmbSolution, cmbParty);
    setTabOrder(cmbParty, cmbImpParty);
    setTabOrder(cmbImpParty, hbtYes);
    setTabOrder(hbtYes, hbtNo);

    session_.Mode = 0;
    cbMDClick();
    result_.clear();
}

TdlgFromFile::~TdlgFromFile() = default;

void TdlgFromFile::Init(int mode) {
    session_.Mode = mode;
    Label1->hide();
    cmbParty->hide();
    Label2->hide();
    cmbImpParty->hide();
}

void TdlgFromFile::Report(const std::exception& e) {
    const QString message = QString::fromUtf8(e.what());
    // Before the dialog is up the message waits for it, so it appears over the dialog.
    if (!isVisible()) {
        pendingError_ = message;
        return;
    }
    if (ShowError) ShowError(message);
}

void TdlgFromFile::ClearPartyLists() {
    cmbParty->clear();
    cmbImpParty->clear();
}

void TdlgFromFile::ApplyPartyLabels() {
    Label1->setText(session_.PartyLabel());
    cmbParty->setAccessibleName(Label1->text());
    const bool shown = session_.HolderListShown();
    Label2->setVisible(shown);
    cmbImpParty->setVisible(shown);
}

void TdlgFromFile::cbMDClick() {
    const std::uint8_t kind = cbMD->isChecked() ? 0 : cbBS->isChecked() ? 1 : 2;
    QSignalBlocker block(cmbFile);
    try {
        session_.ChooseProduct(kind);
    } catch (const std::exception& e) {
        cmbFile->clear();
        cmbSolution->clear();
        ClearPartyLists();
        Report(e);
        return;
    }
    if (session_.DataDir().isEmpty()) {
        cmbFile->clear();
        cmbSolution->clear();
        cmbParty->clear();
        return;
    }
    cmbFile->clear();
    cmbFile->addItems(session_.FileNames());
    if (cmbFile->count() > 0) cmbFile->setCurrentIndex(0);
    cmbFileChange();
}

void TdlgFromFile::cmbFileChange() {
    QSignalBlocker block(cmbSolution);
    cmbSolution->clear();
    if (cmbFile->currentIndex() < 0) return;
    // The participants shown belong to the model this replaces.
    ClearPartyLists();
    try {
        session_.ChooseFile(cmbFile->currentIndex());
    } catch (const std::exception& e) {
        Report(e);
        return;
    }
    cmbSolution->addItems(session_.SolutionNames());
    cmbSolution->setCurrentIndex(0);
    cmbSolutionChange();
}

void TdlgFromFile::cmbSolutionChange() {
    ClearPartyLists();
    ApplyPartyLabels();
    if (cmbSolution->currentIndex() < 0) return;
    try {
        session_.ChooseSolution(cmbSolution->currentIndex());
    } catch (const std::exception& e) {
        Report(e);
        return;
    }
    cmbImpParty->addItem(session_.HolderFirstText());
    for (const kv::TParticipant* p : session_.Parties()) cmbParty->addItem(PartyName(*p));
    for (const kv::TParticipant* p : session_.Holders()) cmbImpParty->addItem(PartyName(*p));
    cmbParty->setCurrentIndex(cmbParty->count() > 0 ? 0 : -1);
    cmbImpParty->setCurrentIndex(0);
}

void TdlgFromFile::hbtYesClick() {
    accept();
    result_.clear();
    resultTexts_.clear();
    if (session_.Mode != 0) {
        if (cmbFile->currentIndex() >= 0 && cmbSolution->currentIndex() >= 0 && session_.Model())
            resultTexts_ << session_.IdentifyingText();
        return;
    }
    const int partyIndex = cmbParty->currentIndex();
    if (cmbFile->currentIndex() < 0 || cmbSolution->currentIndex() < 0 || partyIndex < 0) return;
    const auto& parties = session_.Parties();
    if (partyIndex >= static_cast<int>(parties.size())) return;
    const kv::TParticipant* holder = nullptr;
    const int holderIndex = cmbImpParty->currentIndex();
    if (holderIndex > 0 && holderIndex <= static_cast<int>(session_.Holders().size()))
        holder = session_.Holders()[static_cast<std::size_t>(holderIndex - 1)];
    result_ = session_.Collect(parties[static_cast<std::size_t>(partyIndex)], holder);
}

void TdlgFromFile::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    PaintBorderFrame(this, 2);
}

void TdlgFromFile::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (QWidget* owner = parentWidget()) {
        const QRect outer = owner->window()->frameGeometry();
        move(outer.center() - rect().center());
    }
    if (!pendingError_.isEmpty()) {
        const QString message = pendingError_;
        pendingError_.clear();
        QMetaObject::invokeMethod(
            this, [this, message] { if (ShowError) ShowError(message); }, Qt::QueuedConnection);
    }
}

void TdlgFromFile::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && pnCaption->geometry().contains(event->position().toPoint())) {
        QWindow* handle = windowHandle();
        if (!handle || !handle->startSystemMove()) {
            dragging_ = true;
            dragOffset_ = event->globalPosition().toPoint() - frameGeometry().topLeft();
        }
        event->accept();
        return;
    }
    QDialog::mousePressEvent(event);
}

void TdlgFromFile::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_ && (event->buttons() & Qt::LeftButton)) {
        move(event->globalPosition().toPoint() - dragOffset_);
        return;
    }
    dragging_ = false;
    QDialog::mouseMoveEvent(event);
}

} // namespace tessary
