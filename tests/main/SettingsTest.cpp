// The settings dialog over demo client files on disk, the order of the
// folders and of the client-file key's sources, and the key in a real system
// keyring. CTest runs this binary twice: with the session bus pointing
// nowhere (no keyring), and under scripts/with-keyring for the Keyring tests.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "demo/DemoData.h"
#include "import/ImportSession.h"
#include "import/KeyStore.h"
#include "window/ImportDialog.h"
#include "window/MainWindow.h"
#include "window/SettingsDialog.h"
#include "WindowWidgets.h"

using namespace tessary;

namespace {

QString gDemo;   // demo data root, written once
QString gConfig; // XDG_CONFIG_HOME of the run
const QString kKey = QString::fromLatin1(kDemoClientKey);

QString ProductConf(const QString& product) { return gConfig + "/Torvane Labs Inc./" + product + ".conf"; }

QByteArray Bytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

// The product's own file, as the product writes it.
void WriteProductConf(const QString& product, const QString& dataDir) {
    QDir().mkpath(gConfig + "/Torvane Labs Inc.");
    QFile f(ProductConf(product));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("[1.0]\nDataDir=" + dataDir.toUtf8() + "\nCoreDir=" + dataDir.toUtf8() + "\n");
}

// Every settings file that holds the text.
QStringList FilesHolding(const QString& text) {
    QStringList found;
    QDirIterator it(gConfig, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        if (const QString path = it.next(); Bytes(path).contains(text.toUtf8())) found << path;
    return found;
}

bool KeyringAvailable() { return TKeyStore().Available(); }

class Settings : public ::testing::Test {
protected:
    void TearDown() override {
        ProgramSettings().clear();
        for (const char* product : {"Meridel", "Basalto", "Quorren"}) QFile::remove(ProductConf(product));
        qunsetenv("TESSARY_CLIENT_KEY");
        if (KeyringAvailable()) EXPECT_EQ(TKeyStore().Remove(), "");
    }
    // Types into a field as the adviser does.
    static void Type(QLineEdit* edit, const QString& text) {
        edit->clear();
        QTest::keyClicks(edit, text);
    }
};

TEST_F(Settings, LinesSayWhatEachFolderHolds) {
    QTemporaryDir tmp;
    QDir(tmp.path()).mkpath("empty");
    QDir(tmp.path()).mkpath("legacy/db1");
    QFile(tmp.filePath("file")).open(QIODevice::WriteOnly);
    qputenv("TESSARY_TEST_DEMO", gDemo.toUtf8());
    struct Case {
        int kind;
        QString data, core;
        const char *dataSays, *coreSays;
    };
    const Case cases[] = {
        {0, gDemo + "/Meridel/Data", gDemo + "/Meridel/Core", "3 client files, 1 protected", "Entries.dat found."},
        {1, "%TESSARY_TEST_DEMO%/Basalto/Data", gDemo + "/Basalto", "1 client file", "No Entries.dat in this folder."},
        // A product's files are told by their folder names: Meridel's are none of Basalto's.
        {1, gDemo + "/Meridel/Data", "", "No client files in this folder.", "No core folder is set."},
        {2, tmp.filePath("none"), tmp.filePath("none"), "Folder not found.", "Folder not found."},
        {2, tmp.filePath("file"), tmp.filePath("file"), "Not a folder.", "Not a folder."},
        // An old-style folder would be renamed by an import, not by a look.
        {2, tmp.filePath("legacy"), "", "No client files in this folder.", "No core folder is set."},
        {2, tmp.filePath("empty"), "", "No client files in this folder.", "No core folder is set."},
        {2, "", "", "No data folder is set.", "No core folder is set."},
    };
    TdlgSettings dlg;
    dlg.show();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.data.toStdString());
        auto& row = dlg.products[c.kind];
        Type(row.data.edit, c.data);
        Type(row.core.edit, c.core);
        // The lines follow the typing after a pause.
        QTest::qWaitFor([&] { return row.data.state->text() == QLatin1String(c.dataSays); }, 3000);
        EXPECT_EQ(row.data.state->text().toStdString(), c.dataSays);
        EXPECT_EQ(row.core.state->text().toStdString(), c.coreSays);
    }
    EXPECT_EQ(QDir(tmp.filePath("legacy")).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{"db1"});
    qunsetenv("TESSARY_TEST_DEMO");
}

// Tessary's value beats the product's, which is only read; the options beat both.
TEST_F(Settings, OkWritesTessarysFoldersWhichTheImportReadsFirst) {
    QTemporaryDir tmp;
    const QString productDir = tmp.filePath("product-data");
    QDir().mkpath(productDir);
    WriteProductConf("Meridel", productDir);
    const QByteArray productConf = Bytes(ProductConf("Meridel"));
    ProgramSettings().setValue("Products/Quorren/DataDir", "%TESSARY_NO_SUCH_VARIABLE%/x");

    {
        TdlgSettings dlg;
        dlg.show();
        // An empty field leaves the product's folder in force, and says what is there.
        EXPECT_TRUE(dlg.products[0].data.edit->placeholderText().contains(productDir));
        EXPECT_EQ(dlg.products[0].data.state->text(), "No client files in this folder.");
        Type(dlg.products[0].data.edit, gDemo + "/Meridel/Data");
        QTest::keyClick(dlg.products[0].data.edit, Qt::Key_Escape);
        EXPECT_EQ(dlg.result(), TdlgMsg::mrCancel);
    }
    EXPECT_FALSE(ProgramSettings().contains("Products/Meridel/DataDir"));
    {
        TdlgSettings dlg;
        dlg.show();
        Type(dlg.products[0].data.edit, gDemo + "/Meridel/Data");
        Type(dlg.products[0].core.edit, gDemo + "/Meridel/Core");
        QTest::keyClick(dlg.products[0].data.edit, Qt::Key_Return);
        EXPECT_EQ(dlg.result(), TdlgMsg::mrOk);
    }
    EXPECT_EQ(ProgramSettings().value("Products/Meridel/DataDir").toString(), gDemo + "/Meridel/Data");
    // Untouched, a reference keeps its form rather than its (here empty) expansion.
    EXPECT_EQ(ProgramSettings().value("Products/Quorren/DataDir").toString(), "%TESSARY_NO_SUCH_VARIABLE%/x");
    EXPECT_EQ(Bytes(ProductConf("Meridel")), productConf);
    EXPECT_FALSE(QFile::exists(ProductConf("Basalto")));

    struct Case {
        TFolderOverrides overrides;
        QString data;
    };
    const Case cases[] = {
        {{}, gDemo + "/Meridel/Data"},
        {{tmp.path(), {}, {}}, tmp.path() + "/Meridel/Data"},
        {{tmp.path(), "/direct", {}}, "/direct"},
    };
    for (const Case& c : cases) {
        TImportSession session(c.overrides);
        EXPECT_EQ(session.DataDir(), c.data);
    }
    TImportSession session;
    session.ChooseProduct(0);
    EXPECT_EQ(session.CoreDir(), gDemo + "/Meridel/Core");
    EXPECT_EQ(session.FileNames().size() + session.LockedFiles().size(), 3);

    {
        TdlgSettings dlg;
        dlg.products[0].data.edit->clear();
        dlg.okButton->click();
    }
    EXPECT_FALSE(ProgramSettings().contains("Products/Meridel/DataDir"));
    EXPECT_EQ(TImportSession().DataDir(), productDir);
}

TEST_F(Settings, TheImportDialogOffersTheSettingsAndListsAfterThem) {
    kv::TLibrarySettings settings = TodaysLibrarySettings();
    ApplyClientKey(settings, kKey);
    TdlgFromFile dlg({}, 1.0, nullptr, settings);
    QStringList errors;
    dlg.ShowError = [&](const QString& m) { errors << m; };
    dlg.show();
    EXPECT_EQ(dlg.fileCombo->count(), 0);
    ASSERT_TRUE(dlg.settingsButton->isVisible());
    // The run's key option beats whatever the settings hold.
    dlg.ClientKeyOption = kKey;
    bool driven = false;
    // Reading the keyring runs events before the dialog is up: wait for it.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* s = qobject_cast<TdlgSettings*>(QApplication::activeModalWidget());
        if (!s || driven) return;
        driven = true;
        s->products[0].data.edit->setText(gDemo + "/Meridel/Data");
        s->products[0].core.edit->setText(gDemo + "/Meridel/Core");
        s->okButton->click();
    });
    poll.start(20);
    dlg.settingsButton->click();
    EXPECT_TRUE(driven);
    EXPECT_EQ(dlg.Session().FileNames().size(), 3);
    EXPECT_TRUE(dlg.Session().LockedFiles().isEmpty());
    EXPECT_FALSE(dlg.settingsButton->isVisible());
    EXPECT_EQ(errors, QStringList());
}

// File > Settings... and, after OK, an import that reads with the key the
// settings now give.
TEST_F(Settings, TheWindowTakesTheKeyAnewAfterTheSettings) {
    ProgramSettings().setValue("Products/Meridel/DataDir", gDemo + "/Meridel/Data");
    ProgramSettings().setValue("Products/Meridel/CoreDir", gDemo + "/Meridel/Core");
    ProgramSettings().setValue("Keys/ClientFileKey", kKey);
    TForm1 form;
    bool confirmed = false;
    qsizetype locked = -1;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* s = qobject_cast<TdlgSettings*>(modal); s && !confirmed) {
            confirmed = true;
            s->okButton->click();
        } else if (auto* d = qobject_cast<TdlgFromFile*>(modal)) {
            locked = d->Session().LockedFiles().size();
            d->cancelButton->click();
        }
    });
    poll.start(20);
    form.settingsAction->trigger();
    form.btnImpClick();
    EXPECT_TRUE(confirmed);
    EXPECT_EQ(locked, 0);
}

// The key's sources in order; the keyring's rows where one answers.
TEST_F(Settings, KeyOrderOptionEnvironmentKeyringOldSetting) {
    const bool keyring = KeyringAvailable();
    struct Case {
        const char *option, *env, *stored, *old, *expected;
    };
    const Case cases[] = {
        {"opt", "env", "ring", "old", "opt"}, {"", "env", "ring", "old", "env"}, {"", "", "ring", "old", "ring"},
        {"", "", "", "old", "old"},           {"", "", "ring", "", "ring"},     {"", "", "", "", ""},
    };
    for (const Case& c : cases) {
        if (*c.stored && !keyring) continue;
        SCOPED_TRACE(c.expected);
        qputenv("TESSARY_CLIENT_KEY", c.env);
        if (*c.old) ProgramSettings().setValue("Keys/ClientFileKey", c.old);
        else ProgramSettings().remove("Keys/ClientFileKey");
        if (keyring) EXPECT_EQ(*c.stored ? TKeyStore().Write(c.stored) : TKeyStore().Remove(), "");
        EXPECT_EQ(ConfiguredClientKey(c.option), c.expected);
    }
}

TEST_F(Settings, WithoutAKeyringTheDialogSaysSoAndStoresNothing) {
    if (KeyringAvailable()) GTEST_SKIP() << "a keyring answers in this run";
    ProgramSettings().setValue("Keys/ClientFileKey", kKey);
    TdlgSettings dlg;
    dlg.show();
    EXPECT_TRUE(dlg.keyringLabel->text().startsWith("No system keyring is available"));
    EXPECT_FALSE(dlg.keyEdit->isEnabled());
    EXPECT_TRUE(dlg.moveKeyButton->isVisible());
    EXPECT_FALSE(dlg.moveKeyButton->isEnabled());
    // The old setting still serves, and Test finds the protected file with it.
    dlg.products[0].data.edit->setText(gDemo + "/Meridel/Data");
    dlg.btnTestKeyClick();
    EXPECT_EQ(dlg.testLabel->text(), "The key opens «Gagnon» (Meridel).");
}

class Keyring : public Settings {
protected:
    void SetUp() override {
        if (KeyringAvailable()) return;
        // Under scripts/with-keyring the service has started: not reaching it is a fault.
        if (!qEnvironmentVariableIsEmpty("TESSARY_EXPECT_KEYRING")) FAIL() << TKeyStore().Read().Error.toStdString();
        GTEST_SKIP() << "no Secret Service answers: " << TKeyStore().Read().Error.toStdString();
    }
};

TEST_F(Keyring, TheKeyGoesIntoTheKeyringNotTheSettingsAndOpensTheProtectedClient) {
    {
        TdlgSettings dlg;
        dlg.show();
        EXPECT_EQ(dlg.keyringLabel->text(), "No key is stored in the system keyring.");
        ASSERT_TRUE(dlg.keyEdit->isEnabled());
        EXPECT_EQ(dlg.keyEdit->echoMode(), QLineEdit::Password);
        dlg.products[0].data.edit->setText(gDemo + "/Meridel/Data");
        dlg.products[0].core.edit->setText(gDemo + "/Meridel/Core");
        QTest::keyClicks(dlg.keyEdit, "wrong");
        dlg.btnTestKeyClick();
        EXPECT_EQ(dlg.testLabel->text(), "The key does not open «Gagnon» (Meridel).");
        dlg.keyEdit->clear();
        QTest::keyClicks(dlg.keyEdit, kKey);
        dlg.btnTestKeyClick();
        EXPECT_EQ(dlg.testLabel->text(), "The key opens «Gagnon» (Meridel).");
        QTest::keyClick(dlg.keyEdit, Qt::Key_Return);
        EXPECT_EQ(dlg.result(), TdlgMsg::mrOk);
    }
    EXPECT_EQ(TKeyStore().Read().Key, kKey);
    EXPECT_EQ(FilesHolding(kKey), QStringList());

    // The import takes the key from the keyring alone.
    kv::TLibrarySettings settings = TodaysLibrarySettings();
    ApplyClientKey(settings, QString());
    TImportSession session({}, settings);
    session.ChooseProduct(0);
    EXPECT_TRUE(session.LockedFiles().isEmpty());
    session.ChooseFile(session.FindFile("Gagnon"));
    session.ChooseSolution(0);
    ASSERT_FALSE(session.Parties().empty());
    EXPECT_FALSE(session.Collect(session.Parties().front(), nullptr).empty());

    TdlgSettings again;
    EXPECT_EQ(again.keyringLabel->text(), "A key is stored in the system keyring.");
    again.forgetKeyButton->click();
    EXPECT_EQ(TKeyStore().Read().Key, "");
    EXPECT_EQ(again.keyringLabel->text(), "No key is stored in the system keyring.");
}

TEST_F(Keyring, TheOldPlainTextKeyMovesIntoTheKeyring) {
    ProgramSettings().setValue("Keys/ClientFileKey", kKey);
    ProgramSettings().sync();
    ASSERT_FALSE(FilesHolding(kKey).isEmpty());
    TdlgSettings dlg;
    dlg.show();
    ASSERT_TRUE(dlg.moveKeyButton->isVisible());
    dlg.moveKeyButton->click();
    EXPECT_EQ(TKeyStore().Read().Key, kKey);
    EXPECT_EQ(FilesHolding(kKey), QStringList());
    EXPECT_FALSE(dlg.moveKeyButton->isVisible());
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    gConfig = config.path();
    qunsetenv("TESSARY_CLIENT_KEY");
    QApplication app(argc, argv);
    QTemporaryDir root;
    gDemo = root.path() + "/demo";
    WriteDemoData(QFile::encodeName(gDemo).toStdString());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
