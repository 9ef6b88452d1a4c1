#include "window/SettingsDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "window/Chrome.h"
#include "window/WindowLog.h"

namespace tessary {

namespace {

const char* const kShortNames[] = {"MD", "BS", "QR"};
const char* const kOldKey = "Keys/ClientFileKey";
constexpr int kRefreshDelayMs = 300;

QString ObjectName(const char* prefix, int kind) {
    return QString::fromLatin1(prefix) + QLatin1String(kShortNames[kind]);
}

void SetLine(QLabel* label, const QString& text, bool problem) {
    label->setText(text);
    label->setProperty("problem", problem);
    label->setStyleSheet(problem ? QStringLiteral("color: #8A2B0F;") : QStringLiteral("color: #2E6B30;"));
}

} // namespace

TdlgSettings::TdlgSettings(TFolderOverrides overrides, double zoom, QWidget* parent)
    : TdlgMsg(mbOK | mbCancel, parent), overrides_(std::move(overrides)) {
    setObjectName(QStringLiteral("dlgSettings"));
    setWindowTitle(tr("Settings"));
    setModal(true);
    QFont f = parent ? parent->font() : font();
    f.setPointSizeF(8 * zoom);
    setFont(f);
    setStyleSheet(WindowStyleSheet(zoom) + QStringLiteral("QDialog#dlgSettings { background: white; }"
                                                          "QGroupBox { color: #1F3552; font-weight: bold; }"));

    auto* layout = new QVBoxLayout(this);
    overridesLabel = new QLabel(this);
    overridesLabel->setObjectName(QStringLiteral("lblOverrides"));
    overridesLabel->setWordWrap(true);
    const bool overridden =
        !overrides_.DataRoot.isEmpty() || !overrides_.DataDir.isEmpty() || !overrides_.CoreDir.isEmpty();
    overridesLabel->setText(
        tr("This run was started with folder options; they are used instead of the folders below until Tessary "
           "is started without them."));
    overridesLabel->setVisible(overridden);
    layout->addWidget(overridesLabel);

    auto* productsBox = new QGroupBox(tr("Client-file folders"), this);
    productsBox->setObjectName(QStringLiteral("grpFolders"));
    auto* grid = new QGridLayout(productsBox);
    for (int kind = 0; kind < 3; ++kind) BuildProduct(kind, grid, kind * 5);
    grid->setColumnStretch(1, 1);
    layout->addWidget(productsBox);

    auto* keyBox = new QGroupBox(tr("Client-file key"), this);
    keyBox->setObjectName(QStringLiteral("grpKey"));
    auto* keyGrid = new QGridLayout(keyBox);
    auto* keyLabel = new QLabel(tr("&Key:"), keyBox);
    keyEdit = new QLineEdit(keyBox);
    keyEdit->setObjectName(QStringLiteral("edKey"));
    keyEdit->setEchoMode(QLineEdit::Password);
    keyEdit->setAccessibleName(tr("Client-file key"));
    keyLabel->setBuddy(keyEdit);
    testKeyButton = new QPushButton(tr("&Test"), keyBox);
    testKeyButton->setObjectName(QStringLiteral("btnTestKey"));
    testKeyButton->setToolTip(tr("Tries the entered key, else the configured one, on the first protected client file"));
    testLabel = new QLabel(keyBox);
    testLabel->setObjectName(QStringLiteral("lblTest"));
    testLabel->setWordWrap(true);
    keyringLabel = new QLabel(keyBox);
    keyringLabel->setObjectName(QStringLiteral("lblKeyring"));
    keyringLabel->setWordWrap(true);
    forgetKeyButton = new QPushButton(tr("&Forget"), keyBox);
    forgetKeyButton->setObjectName(QStringLiteral("btnForgetKey"));
    forgetKeyButton->setToolTip(tr("Removes the key from the system keyring"));
    oldKeyLabel =
        new QLabel(tr("A key is still kept in plain text in Tessary's settings file (Keys/ClientFileKey)."), keyBox);
    oldKeyLabel->setObjectName(QStringLiteral("lblOldKey"));
    oldKeyLabel->setWordWrap(true);
    SetLine(oldKeyLabel, oldKeyLabel->text(), true);
    moveKeyButton = new QPushButton(tr("&Move to keyring"), keyBox);
    moveKeyButton->setObjectName(QStringLiteral("btnMoveKey"));
    moveKeyButton->setToolTip(tr("Stores that key in the system keyring and removes it from the settings file"));
    keyGrid->addWidget(keyLabel, 0, 0);
    keyGrid->addWidget(keyEdit, 0, 1);
    keyGrid->addWidget(testKeyButton, 0, 2);
    keyGrid->addWidget(testLabel, 1, 1, 1, 2);
    keyGrid->addWidget(keyringLabel, 2, 1);
    keyGrid->addWidget(forgetKeyButton, 2, 2);
    keyGrid->addWidget(oldKeyLabel, 3, 1);
    keyGrid->addWidget(moveKeyButton, 3, 2);
    keyGrid->setColumnStretch(1, 1);
    layout->addWidget(keyBox);

    okButton = new QPushButton(tr("OK"), this);
    okButton->setObjectName(QStringLiteral("hbtOK"));
    cancelButton = new QPushButton(tr("Cancel"), this);
    cancelButton->setObjectName(QStringLiteral("hbtCancel"));
    // Enter anywhere is OK, not the button that last had focus.
    for (QPushButton* b : findChildren<QPushButton*>()) b->setAutoDefault(false);
    okButton->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(okButton);
    buttons->addWidget(cancelButton);
    layout->addLayout(buttons);

    connect(okButton, &QPushButton::clicked, this, &TdlgSettings::hbtOKClick);
    connect(cancelButton, &QPushButton::clicked, this, &TdlgMsg::CancelClick);
    connect(testKeyButton, &QPushButton::clicked, this, &TdlgSettings::btnTestKeyClick);
    connect(moveKeyButton, &QPushButton::clicked, this, &TdlgSettings::btnMoveKeyClick);
    connect(forgetKeyButton, &QPushButton::clicked, this, &TdlgSettings::btnForgetKeyClick);
    connect(keyEdit, &QLineEdit::textChanged, testLabel, &QLabel::clear);

    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(kRefreshDelayMs);
    connect(&refreshTimer_, &QTimer::timeout, this, &TdlgSettings::RefreshStates);

    RefreshStates();
    RefreshKeyring();
    setMinimumWidth(static_cast<int>(640 * zoom));
}

QString TdlgSettings::SettingsKey(int kind, bool core) const {
    return QStringLiteral("Products/%1/%2")
        .arg(ProductKey(static_cast<std::uint8_t>(kind)), core ? QStringLiteral("CoreDir") : QStringLiteral("DataDir"));
}

void TdlgSettings::BuildProduct(int kind, QGridLayout* grid, int row) {
    QWidget* box = grid->parentWidget();
    const QString product = ProductKey(static_cast<std::uint8_t>(kind));
    auto* heading = new QLabel(QStringLiteral("%1 (%2)").arg(product, QLatin1String(kShortNames[kind])), box);
    heading->setStyleSheet(QStringLiteral("font-weight: bold;"));
    grid->addWidget(heading, row, 0, 1, 3);

    auto make = [&](TFolderRow& r, bool core, int at) {
        auto* label = new QLabel(core ? tr("Core folder:") : tr("Data folder:"), box);
        r.edit = new QLineEdit(box);
        r.edit->setObjectName(ObjectName(core ? "edCoreDir" : "edDataDir", kind));
        r.edit->setAccessibleName(core ? tr("Core folder of %1").arg(product) : tr("Data folder of %1").arg(product));
        label->setBuddy(r.edit);
        r.initial = ProgramProductValue(product, core ? QStringLiteral("CoreDir") : QStringLiteral("DataDir"));
        r.edit->setText(QDir::toNativeSeparators(r.initial));
        r.initial = r.edit->text();
        // What an empty field leaves in force.
        const QString configured =
            ReadProductValue(product, core ? QStringLiteral("CoreDir") : QStringLiteral("DataDir"));
        r.edit->setPlaceholderText(
            configured.isEmpty() ? tr("not set")
                                 : tr("%1's configuration: %2").arg(product, QDir::toNativeSeparators(configured)));
        r.browse = new QPushButton(tr("Browse…"), box);
        r.browse->setObjectName(ObjectName(core ? "btnCoreDir" : "btnDataDir", kind));
        r.browse->setAccessibleName(tr("Browse for the %1").arg(r.edit->accessibleName().toLower()));
        r.state = new QLabel(box);
        r.state->setObjectName(ObjectName(core ? "lblCoreDir" : "lblDataDir", kind));
        r.state->setWordWrap(true);
        grid->addWidget(label, at, 0);
        grid->addWidget(r.edit, at, 1);
        grid->addWidget(r.browse, at, 2);
        grid->addWidget(r.state, at + 1, 1, 1, 2);
        connect(r.edit, &QLineEdit::textChanged, &refreshTimer_, qOverload<>(&QTimer::start));
        connect(r.browse, &QPushButton::clicked, this,
                [this, &r, label] { Browse(r, label->text().remove(QLatin1Char('&')).remove(QLatin1Char(':'))); });
    };
    make(products[kind].data, false, row + 1);
    make(products[kind].core, true, row + 3);
}

void TdlgSettings::Browse(TFolderRow& row, const QString& title) {
    const QString start = row.edit->text().isEmpty() ? QDir::homePath() : row.edit->text();
    const QString dir = QFileDialog::getExistingDirectory(this, title, start);
    if (dir.isEmpty()) return;
    row.edit->setText(QDir::toNativeSeparators(dir));
    RefreshStates();
}

QString TdlgSettings::EffectiveFolder(int kind, bool core) const {
    const TFolderRow& r = core ? products[kind].core : products[kind].data;
    const QString text = ExpandEnvironment(r.edit->text().trimmed());
    if (!text.isEmpty()) return QDir::fromNativeSeparators(text);
    return ReadProductValue(ProductKey(static_cast<std::uint8_t>(kind)),
                            core ? QStringLiteral("CoreDir") : QStringLiteral("DataDir"));
}

QString TdlgSettings::ClientFilesText(int files, int locked) {
    const QString count = files == 1 ? tr("1 client file") : tr("%1 client files").arg(files);
    if (locked == 0) return count;
    return locked == 1 ? tr("%1, 1 protected").arg(count) : tr("%1, %2 protected").arg(count).arg(locked);
}

void TdlgSettings::RefreshStates() {
    refreshTimer_.stop();
    for (int kind = 0; kind < 3; ++kind) {
        TProductRows& p = products[kind];
        const QString dataDir = EffectiveFolder(kind, false);
        const TFolderSurvey s = SurveyDataFolder(static_cast<std::uint8_t>(kind), dataDir);
        switch (s.State) {
            case TFolderState::NotConfigured: SetLine(p.data.state, tr("No data folder is set."), true); break;
            case TFolderState::Missing: SetLine(p.data.state, tr("Folder not found."), true); break;
            case TFolderState::NotAFolder: SetLine(p.data.state, tr("Not a folder."), true); break;
            case TFolderState::Unreadable: SetLine(p.data.state, tr("The folder cannot be read."), true); break;
            case TFolderState::Empty: SetLine(p.data.state, tr("No client files in this folder."), true); break;
            case TFolderState::Listed:
                if (!s.Error.isEmpty())
                    SetLine(p.data.state, tr("A client file cannot be read: %1").arg(s.Error), true);
                else
                    SetLine(p.data.state, ClientFilesText(s.Files, s.Locked), false);
                break;
        }
        const QString coreDir = EffectiveFolder(kind, true);
        p.data.edit->setAccessibleDescription(p.data.state->text());
        const QFileInfo core(coreDir);
        if (coreDir.isEmpty())
            SetLine(p.core.state, tr("No core folder is set."), true);
        else if (!core.exists())
            SetLine(p.core.state, tr("Folder not found."), true);
        else if (!core.isDir())
            SetLine(p.core.state, tr("Not a folder."), true);
        else if (!QFileInfo(QDir(coreDir).filePath(QStringLiteral("Entries.dat"))).isFile())
            SetLine(p.core.state, tr("No Entries.dat in this folder."), true);
        else
            SetLine(p.core.state, tr("Entries.dat found."), false);
        p.core.edit->setAccessibleDescription(p.core.state->text());
    }
}

void TdlgSettings::ShowKeyringLine(const QString& text, bool problem) { SetLine(keyringLabel, text, problem); }

void TdlgSettings::RefreshKeyring() {
    const TKeyringRead read = store_.Read();
    keyringReached_ = read.Reached;
    if (!read.Reached) {
        ShowKeyringLine(tr("No system keyring is available (no desktop session or Secret Service), so the key "
                           "cannot be stored; --key-file, --key - and TESSARY_CLIENT_KEY still work."),
                        true);
        qCInfo(lcWindow).noquote() << "no keyring:" << read.Error;
    } else if (read.Key.isEmpty()) {
        ShowKeyringLine(tr("No key is stored in the system keyring."), false);
    } else {
        ShowKeyringLine(tr("A key is stored in the system keyring."), false);
    }
    keyEdit->setEnabled(keyringReached_);
    keyEdit->setPlaceholderText(keyringReached_ ? tr("type a new key to store it") : QString());
    forgetKeyButton->setVisible(keyringReached_ && !read.Key.isEmpty());
    const bool old = ProgramSettings().contains(QString::fromLatin1(kOldKey));
    oldKeyLabel->setVisible(old);
    moveKeyButton->setVisible(old);
    moveKeyButton->setEnabled(keyringReached_);
}

void TdlgSettings::btnTestKeyClick() {
    const QString key = keyEdit->text().isEmpty() ? ConfiguredClientKey(QString()) : keyEdit->text();
    if (key.isEmpty()) {
        SetLine(testLabel, tr("No key is entered or configured."), true);
        return;
    }
    QStringList dirs;
    for (int kind = 0; kind < 3; ++kind) dirs << EffectiveFolder(kind, false);
    const TKeyCheck check = CheckClientKey(key, dirs);
    switch (check.Result) {
        case TKeyCheck::Opens:
            SetLine(testLabel, tr("The key opens «%1» (%2).").arg(check.File, check.Product), false);
            break;
        case TKeyCheck::DoesNotOpen:
            SetLine(testLabel, tr("The key does not open «%1» (%2).").arg(check.File, check.Product), true);
            break;
        case TKeyCheck::NoProtectedFile: SetLine(testLabel, tr("No protected client file found."), true); break;
    }
}

void TdlgSettings::btnMoveKeyClick() {
    QSettings settings = ProgramSettings();
    const QString old = settings.value(QString::fromLatin1(kOldKey)).toString();
    const QString error = old.isEmpty() ? QString() : store_.Write(old);
    if (!error.isEmpty()) {
        ShowKeyringLine(tr("The keyring refused the key: %1").arg(error), true);
        return;
    }
    settings.remove(QString::fromLatin1(kOldKey));
    settings.sync();
    RefreshKeyring();
}

void TdlgSettings::btnForgetKeyClick() {
    const QString error = store_.Remove();
    RefreshKeyring();
    if (!error.isEmpty()) ShowKeyringLine(tr("The keyring refused to remove the key: %1").arg(error), true);
}

void TdlgSettings::hbtOKClick() {
    if (!keyEdit->text().isEmpty() && keyringReached_) {
        const QString error = store_.Write(keyEdit->text());
        if (!error.isEmpty()) {
            ShowKeyringLine(tr("The keyring refused the key: %1").arg(error), true);
            return;
        }
        keyEdit->clear();
    }
    QSettings settings = ProgramSettings();
    for (int kind = 0; kind < 3; ++kind)
        for (bool core : {false, true}) {
            const TFolderRow& r = core ? products[kind].core : products[kind].data;
            const QString text = r.edit->text().trimmed();
            // An untouched field keeps its stored form, %NAME% references included.
            if (text == r.initial.trimmed()) continue;
            if (text.isEmpty())
                settings.remove(SettingsKey(kind, core));
            else
                settings.setValue(SettingsKey(kind, core), QDir::fromNativeSeparators(text));
        }
    settings.sync();
    OkClick();
}

} // namespace tessary
