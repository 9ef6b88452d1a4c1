#include "window/ImportDialog.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>

#include "import/ImportLog.h"
#include "window/SettingsDialog.h"
#include "parties/KvFnParty.h"

namespace tessary {

namespace {

constexpr int kDialogWidth = 266;
constexpr int kDialogHeight = 258;
constexpr int kCaptionHeight = 26;
constexpr int kStatusTop = 224;
constexpr int kButtonsTop = 228;
constexpr int kLockedRole = Qt::UserRole + 1;

QString Translated(const QString& sessionText) {
    return QCoreApplication::translate(kImportTextContext, sessionText.toUtf8().constData());
}

int Scaled(double v, double zoom) { return static_cast<int>(std::lround(v * zoom)); }

} // namespace

TdlgFromFile::TdlgFromFile(TFolderOverrides folders, double zoom, QWidget* parent, kv::TLibrarySettings settings)
    : TdlgMsg(mbYes | mbNo, parent, Qt::Dialog | Qt::FramelessWindowHint),
      session_(std::move(folders), std::move(settings)), zoom_(zoom) {
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

    captionBar = new TCaptionBar(this);
    captionBar->setObjectName(QStringLiteral("pnCaption"));
    captionLabel = new QLabel(tr("Select File"), this);
    captionLabel->setObjectName(QStringLiteral("lblCaptionBar"));

    auto radio = [this](const char* name, const QString& text, const QString& product) {
        auto* r = new QRadioButton(text, this);
        r->setObjectName(QString::fromLatin1(name));
        r->setToolTip(product);
        r->setAccessibleName(product);
        connect(r, &QRadioButton::clicked, this, &TdlgFromFile::cbMDClick);
        return r;
    };
    productMdRadio = radio("cbMD", QStringLiteral("MD"), tr("Meridel: personal planning"));
    productBsRadio = radio("cbBS", QStringLiteral("BS"), tr("Basalto: corporate planning"));
    productQrRadio = radio("cbQR", QStringLiteral("QR"), tr("Quorren: trust planning"));
    productMdRadio->setChecked(true);

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
    fileLabel = label("lblBSFile", tr("Select File"));
    fileCombo = combo("cmbFile", fileLabel);
    solutionLabel = label("lblBSSolution", tr("Select Solution"));
    solutionCombo = combo("cmbSolution", solutionLabel);
    partyLabel = label("Label1", tr("Select Party"));
    partyCombo = combo("cmbParty", partyLabel);
    holderLabel = label("Label2", tr("Select Party"));
    holderCombo = combo("cmbImpParty", holderLabel);
    holderLabel->hide();
    holderCombo->hide();

    statusLabel = label("lblStatus", QString());
    statusLabel->setWordWrap(true);
    statusLabel->setStyleSheet(QStringLiteral("color: #8A2B0F;"));
    statusLabel->hide();

    settingsButton = new QPushButton(tr("Settings…"), this);
    settingsButton->setObjectName(QStringLiteral("btnSettings"));
    settingsButton->setAutoDefault(false);
    settingsButton->hide();
    okButton = new QPushButton(tr("OK"), this);
    okButton->setObjectName(QStringLiteral("hbtYes"));
    okButton->setDefault(true);
    cancelButton = new QPushButton(tr("Cancel"), this);
    cancelButton->setObjectName(QStringLiteral("hbtNo"));

    connect(fileCombo, &QComboBox::activated, this, &TdlgFromFile::cmbFileChange);
    connect(solutionCombo, &QComboBox::activated, this, &TdlgFromFile::cmbSolutionChange);
    connect(okButton, &QPushButton::clicked, this, &TdlgFromFile::hbtYesClick);
    connect(settingsButton, &QPushButton::clicked, this, &TdlgFromFile::btnSettingsClick);
    connect(cancelButton, &QPushButton::clicked, this, &TdlgMsg::CancelClick);

    const double z = zoom_;
    auto place = [z](QWidget* w, double x, double y, double wd, double ht) {
        w->setGeometry(Scaled(x, z), Scaled(y, z), Scaled(wd, z), Scaled(ht, z));
    };
    setFixedSize(Scaled(kDialogWidth, z), Scaled(kDialogHeight, z));
    place(captionBar, 0, 0, kDialogWidth, kCaptionHeight);
    place(captionLabel, 9, 3, 200, 20);
    place(productMdRadio, 16, 36, 50, 20);
    place(productBsRadio, 72, 36, 50, 20);
    place(productQrRadio, 128, 36, 50, 20);
    place(fileLabel, 15, 60, 237, 16);
    place(fileCombo, 15, 76, 237, 21);
    place(solutionLabel, 15, 100, 237, 16);
    place(solutionCombo, 15, 116, 237, 21);
    place(partyLabel, 15, 140, 237, 16);
    place(partyCombo, 15, 156, 237, 21);
    place(holderLabel, 15, 181, 237, 16);
    place(holderCombo, 15, 197, 237, 21);
    PlaceButtons();

    setTabOrder(productMdRadio, productBsRadio);
    setTabOrder(productBsRadio, productQrRadio);
    setTabOrder(productQrRadio, fileCombo);
    setTabOrder(fileCombo, solutionCombo);
    setTabOrder(solutionCombo, partyCombo);
    setTabOrder(partyCombo, holderCombo);
    setTabOrder(holderCombo, settingsButton);
    setTabOrder(settingsButton, okButton);
    setTabOrder(okButton, cancelButton);

    session_.Mode = 0;
    cbMDClick();
    result_.clear();
}

TdlgFromFile::~TdlgFromFile() = default;

void TdlgFromFile::Init(int mode) {
    session_.Mode = mode;
    partyLabel->hide();
    partyCombo->hide();
    holderLabel->hide();
    holderCombo->hide();
}

void TdlgFromFile::Report(const std::exception& e) {
    const QString message = QString::fromUtf8(e.what());
    qCInfo(lcImport).noquote() << message;
    // Before the dialog is up the message waits for it, so it appears over the dialog.
    if (!isVisible()) {
        pendingError_ = message;
        return;
    }
    if (ShowError) ShowError(message);
}

void TdlgFromFile::PlaceButtons() {
    // The line goes under the lists and the dialog grows by its height, so
    // that neither a list nor a button is ever covered.
    const int width = Scaled(237, zoom_);
    const int lineHeight = statusLabel->isHidden() ? 0 : statusLabel->heightForWidth(width) + Scaled(8, zoom_);
    statusLabel->setGeometry(Scaled(15, zoom_), Scaled(kStatusTop, zoom_), width, std::max(lineHeight, 0));
    const int buttonsTop = Scaled(kButtonsTop, zoom_) + lineHeight;
    settingsButton->setGeometry(Scaled(15, zoom_), buttonsTop, Scaled(90, zoom_), Scaled(22, zoom_));
    okButton->setGeometry(Scaled(112, zoom_), buttonsTop, Scaled(66, zoom_), Scaled(22, zoom_));
    cancelButton->setGeometry(Scaled(186, zoom_), buttonsTop, Scaled(66, zoom_), Scaled(22, zoom_));
    setFixedSize(Scaled(kDialogWidth, zoom_), Scaled(kDialogHeight, zoom_) + lineHeight);
}

void TdlgFromFile::ShowStatus(const QString& text, bool offerSettings) {
    settingsButton->setVisible(offerSettings);
    statusLabel->setText(text);
    statusLabel->setVisible(!text.isEmpty());
    PlaceButtons();
}

void TdlgFromFile::ShowFolderState(const QString& dataDir) {
    const QString folder = QDir::toNativeSeparators(dataDir);
    switch (session_.FolderState()) {
        case TFolderState::Listed: ShowStatus({}); break;
        case TFolderState::NotConfigured:
            ShowStatus(tr("No data folder is set for %1: choose one in Settings…").arg(ProductKey(session_.Kind())),
                       true);
            break;
        case TFolderState::Missing: ShowStatus(tr("The data folder %1 does not exist.").arg(folder), true); break;
        case TFolderState::NotAFolder: ShowStatus(tr("The data folder %1 is not a folder.").arg(folder), true); break;
        case TFolderState::Unreadable: ShowStatus(tr("The data folder %1 cannot be read.").arg(folder), true); break;
        case TFolderState::Empty: ShowStatus(tr("The data folder %1 holds no client files.").arg(folder), true); break;
    }
}

QString TdlgFromFile::LockedText(const QString& folder) const {
    return tr("%1 is protected: a client-file key is needed. Store it in Settings…, start Tessary with --key-file, "
              "or set TESSARY_CLIENT_KEY.")
        .arg(folder);
}

void TdlgFromFile::btnSettingsClick() {
    TdlgSettings dlg(session_.Overrides(), zoom_, this);
    if (dlg.exec() != TdlgMsg::mrOk) return;
    session_.Settings().ClientFileKey = ConfiguredClientKey(ClientKeyOption).toStdString();
    emit SettingsChanged();
    cbMDClick();
}

void TdlgFromFile::ClearPartyLists() {
    partyCombo->clear();
    holderCombo->clear();
}

void TdlgFromFile::ApplyPartyLabels() {
    partyLabel->setText(Translated(session_.PartyLabel()));
    partyCombo->setAccessibleName(partyLabel->text());
    const bool shown = session_.HolderListShown();
    holderLabel->setVisible(shown);
    holderCombo->setVisible(shown);
}

void TdlgFromFile::cbMDClick() {
    const std::uint8_t kind = productMdRadio->isChecked() ? 0 : productBsRadio->isChecked() ? 1 : 2;
    QSignalBlocker block(fileCombo);
    fileCombo->clear();
    solutionCombo->clear();
    try {
        session_.ChooseProduct(kind);
    } catch (const std::exception& e) {
        ClearPartyLists();
        ShowFolderState(session_.DataDir());
        // A folder that is not there is said in the line; a damaged file needs the message.
        if (session_.FolderState() == TFolderState::Listed) Report(e);
        return;
    }
    ShowFolderState(session_.DataDir());
    if (session_.DataDir().isEmpty()) {
        partyCombo->clear();
        return;
    }
    fileCombo->addItems(session_.FileNames());
    for (const QString& folder : session_.LockedFiles()) {
        fileCombo->addItem(tr("%1 (locked)").arg(folder));
        const int i = fileCombo->count() - 1;
        fileCombo->setItemData(i, folder, kLockedRole);
        fileCombo->setItemData(i, LockedText(folder), Qt::ToolTipRole);
    }
    if (fileCombo->count() > 0) fileCombo->setCurrentIndex(0);
    cmbFileChange();
}

void TdlgFromFile::cmbFileChange() {
    QSignalBlocker block(solutionCombo);
    solutionCombo->clear();
    if (fileCombo->currentIndex() < 0) return;
    // The participants shown belong to the model this replaces.
    ClearPartyLists();
    const QString locked = fileCombo->currentData(kLockedRole).toString();
    if (!locked.isEmpty()) {
        session_.ChooseFile(-1);
        ApplyPartyLabels();
        ShowStatus(LockedText(locked), true);
        return;
    }
    ShowFolderState(session_.DataDir());
    try {
        session_.ChooseFile(fileCombo->currentIndex());
    } catch (const std::exception& e) {
        Report(e);
        return;
    }
    solutionCombo->addItems(session_.SolutionNames());
    solutionCombo->setCurrentIndex(0);
    cmbSolutionChange();
}

void TdlgFromFile::cmbSolutionChange() {
    ClearPartyLists();
    ApplyPartyLabels();
    if (solutionCombo->currentIndex() < 0) return;
    try {
        session_.ChooseSolution(solutionCombo->currentIndex());
    } catch (const std::exception& e) {
        Report(e);
        return;
    }
    holderCombo->addItem(Translated(session_.HolderFirstText()));
    for (const kv::TParticipant* p : session_.Parties()) partyCombo->addItem(PartyName(*p));
    for (const kv::TParticipant* p : session_.Holders()) holderCombo->addItem(PartyName(*p));
    partyCombo->setCurrentIndex(partyCombo->count() > 0 ? 0 : -1);
    holderCombo->setCurrentIndex(0);
}

void TdlgFromFile::hbtYesClick() {
    OkClick();
    result_.clear();
    resultTexts_.clear();
    if (session_.Mode != 0) {
        if (fileCombo->currentIndex() >= 0 && solutionCombo->currentIndex() >= 0 && session_.Model())
            resultTexts_ << session_.IdentifyingText();
        return;
    }
    const int partyIndex = partyCombo->currentIndex();
    if (fileCombo->currentIndex() < 0 || solutionCombo->currentIndex() < 0 || partyIndex < 0) return;
    const auto& parties = session_.Parties();
    if (partyIndex >= static_cast<int>(parties.size())) return;
    const kv::TParticipant* holder = nullptr;
    const int holderIndex = holderCombo->currentIndex();
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
            this,
            [this, message] {
                if (ShowError) ShowError(message);
            },
            Qt::QueuedConnection);
    }
}

void TdlgFromFile::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && captionBar->geometry().contains(event->position().toPoint())) {
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
