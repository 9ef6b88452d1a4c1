// The import dialog and the main window's import, offscreen, over demo client
// files written into a temporary folder.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "format/GridFormat.h"
#include "core/Vocabulary.h"
#include "demo/DemoData.h"
#include "window/ImportDialog.h"
#include "window/MainWindow.h"
#include "WindowWidgets.h"

using namespace tessary;

namespace {

QString gRoot;   // demo data, written once

TFolderOverrides Demo() {
    TFolderOverrides o;
    o.DataRoot = gRoot;
    return o;
}

QStringList Items(const QComboBox* c) {
    QStringList items;
    for (int i = 0; i < c->count(); ++i) items << c->itemText(i);
    return items;
}

// Picks an item as the user does, so the change handler runs.
void Pick(QComboBox* c, const QString& text) {
    const int i = c->findText(text);
    ASSERT_GE(i, 0) << text.toStdString() << " not in " << Items(c).join(", ").toStdString();
    c->setCurrentIndex(i);
    emit c->activated(i);
}

class ImportDialog : public ::testing::Test {
protected:
    void SetUp() override { kv_key(QString::fromLatin1(kDemoClientKey)); }
    void kv_key(const QString& key) { ApplyClientKey(settings, key); }
    std::unique_ptr<TdlgFromFile> Open(TFolderOverrides folders = Demo()) {
        auto dlg = std::make_unique<TdlgFromFile>(folders, 1.0, nullptr, settings);
        dlg->ShowError = [this](const QString& m) { errors << m; };
        return dlg;
    }
    QStringList errors;
    kv::TLibrarySettings settings = TodaysLibrarySettings();
};

TEST_F(ImportDialog, ProductChoiceFillsTheListsAndLabels) {
    struct Case {
        const char* radio;
        QStringList holders;
        const char* label1;
        bool holderShown;
    };
    const Case cases[] = {
        {"cbBS", {"All Shareholders", "Paul Côté", "Sophie Côté"}, "Select Corporation", true},
        {"cbQR", {"All Beneficiaries", "Isabelle Roy", "Mathieu Roy", "Camille Roy"}, "Select Trust", true},
        // Back to MD from a corporate product: the holder list goes away.
        {"cbMD", {""}, "Select Party", false},
    };
    auto dlg = Open();
    dlg->show();
    EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbFile")->count(), 3);
    EXPECT_EQ(Named<QLabel>(dlg.get(), "Label1")->text(), "Select Party");
    EXPECT_FALSE(Named<QComboBox>(dlg.get(), "cmbImpParty")->isVisible());
    for (const Case& c : cases) {
        QTest::mouseClick(Named<QRadioButton>(dlg.get(), c.radio), Qt::LeftButton);
        SCOPED_TRACE(c.label1);
        EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbImpParty")), c.holders);
        EXPECT_EQ(Named<QLabel>(dlg.get(), "Label1")->text(), c.label1);
        EXPECT_EQ(Named<QLabel>(dlg.get(), "Label2")->isVisible(), c.holderShown);
        EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbImpParty")->isVisible(), c.holderShown);
        EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbImpParty")->currentIndex(), 0);
    }
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(ImportDialog, ChoicesCascadeFromFileToSolutionToParties) {
    auto dlg = Open();
    Pick(Named<QComboBox>(dlg.get(), "cmbFile"), "Tremblay");
    EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbSolution")), QStringList({"Current plan", "Retirement at 60"}));
    EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbParty")), QStringList({"Marie Tremblay", "Luc Tremblay"}));
    Pick(Named<QComboBox>(dlg.get(), "cmbSolution"), "Retirement at 60");
    Pick(Named<QComboBox>(dlg.get(), "cmbParty"), "Luc Tremblay");
    dlg->hbtYesClick();
    EXPECT_EQ(dlg->result(), tessary::TdlgMsg::mrYes);   // the import proceeds only on yes
    // The figures are the session's; the dialog must pass on the choices.
    ASSERT_EQ(dlg->Result().size(), 6u);
    EXPECT_EQ(dlg->Result().back().Amount, 241116);   // Luc's DCP, in that solution only

    Pick(Named<QComboBox>(dlg.get(), "cmbFile"), "Nguyen");
    EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbSolution")), QStringList({"Plan 2019"}));
    EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbParty")), QStringList({"Lan Nguyen"}));
}

TEST(MessageDialog, ButtonsDecideTheResult) {
    using D = tessary::TdlgMsg;
    struct Case { int buttons; bool ok; int want; };
    const Case cases[] = {{D::mbYes | D::mbNo, true, D::mrYes},   {D::mbYes | D::mbNo, false, D::mrNo},
                          {D::mbOK | D::mbCancel, true, D::mrOk}, {D::mbOK | D::mbCancel, false, D::mrCancel},
                          {D::mbYes | D::mbCancel, false, D::mrCancel}};
    for (const Case& c : cases) {
        D dlg(c.buttons);
        c.ok ? dlg.OkClick() : dlg.CancelClick();
        EXPECT_EQ(dlg.result(), c.want) << c.buttons << " " << c.ok;
    }
}

TEST_F(ImportDialog, ProtectedFileWithoutKeyIsListedLockedAndTheOthersStayImportable) {
    kv_key(QString());
    auto dlg = Open();
    dlg->show();
    auto* files = Named<QComboBox>(dlg.get(), "cmbFile");
    auto* status = Named<QLabel>(dlg.get(), "lblStatus");
    const QStringList listed = Items(files);
    ASSERT_EQ(listed.size(), 3);
    EXPECT_EQ(listed.last(), "md_db3_Gagnon (locked)");
    EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbParty")).size(), listed[0] == "Tremblay" ? 2 : 1);
    EXPECT_FALSE(status->isVisible());

    Pick(files, "md_db3_Gagnon (locked)");
    EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbSolution")->count(), 0);
    EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbParty")->count(), 0);
    ASSERT_TRUE(status->isVisible());
    for (const char* where : {"md_db3_Gagnon", "key", "Settings", "--key-file", "TESSARY_CLIENT_KEY"})
        EXPECT_TRUE(status->text().contains(where)) << where << " not in " << status->text().toStdString();
    // The line pushes the buttons down instead of covering them.
    EXPECT_GE(Named<QPushButton>(dlg.get(), "hbtYes")->y(), status->geometry().bottom());
    EXPECT_LE(Named<QPushButton>(dlg.get(), "hbtYes")->geometry().bottom(), dlg->height());
    dlg->hbtYesClick();
    EXPECT_TRUE(dlg->Result().empty());

    Pick(files, "Nguyen");
    EXPECT_FALSE(status->isVisible());
    EXPECT_EQ(Items(Named<QComboBox>(dlg.get(), "cmbParty")), QStringList({"Lan Nguyen"}));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(ImportDialog, DamagedSolutionNamesItsFileAndLeavesNothingToImport) {
    QTemporaryDir copy;
    std::filesystem::copy((gRoot + "/Basalto").toStdString(), (copy.path() + "/Basalto").toStdString(),
                          std::filesystem::copy_options::recursive);
    QString finItems;
    for (const auto& e : std::filesystem::recursive_directory_iterator(copy.path().toStdString()))
        if (e.path().filename() == "FinItems.dat") finItems = QString::fromStdString(e.path().string());
    QFile f(finItems);
    ASSERT_TRUE(f.open(QIODevice::ReadWrite));
    ASSERT_TRUE(f.resize(f.size() - 7));
    f.close();

    TFolderOverrides folders;
    folders.DataRoot = copy.path();
    auto dlg = Open(folders);
    dlg->show();
    QTest::mouseClick(Named<QRadioButton>(dlg.get(), "cbBS"), Qt::LeftButton);
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].contains(finItems)) << errors[0].toStdString();
    EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbParty")->count(), 0);
    dlg->hbtYesClick();
    EXPECT_TRUE(dlg->Result().empty());
}

TEST_F(ImportDialog, AFolderWithoutClientFilesIsSaidInTheDialog) {
    QTemporaryDir root;
    QDir(root.path()).mkpath("Meridel/Data");
    QFile(root.filePath("Meridel/Data/md_db1_NotAFolder")).open(QIODevice::WriteOnly);
    QDir(root.path()).mkpath("Basalto");
    QFile(root.filePath("Basalto/Data")).open(QIODevice::WriteOnly);
    struct Case {
        QString dataRoot;
        const char* radio;
        QString said;
    };
    const Case cases[] = {
        {"", "cbMD", "No data folder is set for Meridel"},
        {root.filePath("none"), "cbQR", "The data folder " + QDir::toNativeSeparators(root.filePath("none/Quorren/Data")) + " does not exist."},
        {root.path(), "cbMD", "The data folder " + QDir::toNativeSeparators(root.filePath("Meridel/Data")) + " holds no client files."},
        {root.path(), "cbBS", "is not a folder"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.said.toStdString());
        TFolderOverrides folders;
        folders.DataRoot = c.dataRoot;
        auto dlg = Open(folders);
        dlg->show();
        QTest::mouseClick(Named<QRadioButton>(dlg.get(), c.radio), Qt::LeftButton);
        EXPECT_EQ(Named<QComboBox>(dlg.get(), "cmbFile")->count(), 0);
        EXPECT_TRUE(Named<QLabel>(dlg.get(), "lblStatus")->isVisible());
        EXPECT_TRUE(Named<QLabel>(dlg.get(), "lblStatus")->text().contains(c.said))
            << Named<QLabel>(dlg.get(), "lblStatus")->text().toStdString();
        QTest::qWait(0);
        EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();   // a line, not a message box
    }
}

TEST_F(ImportDialog, ModeOneHidesThePartiesAndGivesTheIdentifyingText) {
    auto dlg = Open();
    dlg->Init(1);
    dlg->show();
    QTest::mouseClick(Named<QRadioButton>(dlg.get(), "cbBS"), Qt::LeftButton);
    EXPECT_FALSE(Named<QComboBox>(dlg.get(), "cmbParty")->isVisible());
    EXPECT_FALSE(Named<QComboBox>(dlg.get(), "cmbImpParty")->isVisible());
    dlg->hbtYesClick();
    EXPECT_TRUE(dlg->Result().empty());
    ASSERT_EQ(dlg->ResultTexts().size(), 1);
    EXPECT_FALSE(dlg->ResultTexts()[0].isEmpty());
}

TEST_F(ImportDialog, LooksLikeTheMainWindow) {
    auto dlg = Open();
    EXPECT_TRUE(dlg->windowFlags() & Qt::FramelessWindowHint);
    EXPECT_TRUE(dlg->isModal());
    EXPECT_TRUE(Named<QPushButton>(dlg.get(), "hbtYes")->isDefault());
    // The frame is drawn: the dialog's corner pixels are the frame colour.
    dlg->show();
    const QImage img = dlg->grab().toImage();
    EXPECT_EQ(QColor(img.pixel(0, img.height() - 1)), kFrameColor);
    EXPECT_EQ(QColor(img.pixel(img.width() - 2, img.height() / 2)), kFrameColor);
}

// The main window's import: the modal dialog driven as a user would.
class WindowImport : public ::testing::Test {
protected:
    void SetUp() override {
        kv::TLibrarySettings settings = TodaysLibrarySettings();
        ApplyClientKey(settings, QString::fromLatin1(kDemoClientKey));
        form = std::make_unique<TForm1>();
        form->SetImportFolders(Demo());
        form->SetImportSettings(settings);
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    }
    // Runs btnImp; `drive` works the dialog once it is up.
    void Import(std::function<void(TdlgFromFile*)> drive) {
        bool driven = false;
        QTimer::singleShot(0, [&] {
            auto* dlg = qobject_cast<TdlgFromFile*>(QApplication::activeModalWidget());
            ASSERT_NE(dlg, nullptr);
            driven = true;
            drive(dlg);
            if (dlg->isVisible()) dlg->reject();
        });
        QTest::mouseClick(Named<QPushButton>(form.get(), "btnImp"), Qt::LeftButton);
        EXPECT_TRUE(driven);
    }
    void AddRow(const char* label, double md, std::intptr_t object) {
        TGrid& g = form->Accounts();
        const int r = g.AddRow();
        if (*label) g.SetText(0, r, label);
        g.SetObject(0, r, object);
        if (md != 0) g.SetFloat(1, r, md);
    }
    std::unique_ptr<TForm1> form;
};

TEST_F(WindowImport, AmountsGoIntoEveryMatchingRowAndNewRowsAreAppended) {
    TGrid& g = form->Accounts();
    g.SetRowCount(1);
    AddRow("TFSAs", 1000, 2);
    AddRow("", 0, 0);            // removed by the import
    AddRow("TFSAs", 0, 0);       // typed by hand: matched by label, keeps object 0
    Import([](TdlgFromFile* d) {
        Pick(Named<QComboBox>(d, "cmbFile"), "Tremblay");
        Pick(Named<QComboBox>(d, "cmbParty"), "Marie Tremblay");
        QTest::mouseClick(Named<QPushButton>(d, "hbtYes"), Qt::LeftButton);
    });
    struct Row { const char* label; double md; std::intptr_t object; };
    const Row want[] = {
        {"TFSAs", 1000 + 88612, 2}, {"TFSAs", 88612, 0}, {"Non-Reg.", 62000 + 185400 + 23481, 1},
        {"RRSPs/RRIFs", 312450, 3}, {"LIRAs/LIFs", 48915, 4},
    };
    ASSERT_EQ(g.RowCount(), 1 + static_cast<int>(std::size(want)));
    double total = 0;
    for (int i = 0; i < static_cast<int>(std::size(want)); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(g.Text(0, i + 1), want[i].label);
        EXPECT_EQ(g.Float(1, i + 1), want[i].md);
        EXPECT_EQ(g.Float(4, i + 1), want[i].md);
        EXPECT_EQ(g.Object(0, i + 1), want[i].object);
        total += want[i].md;
    }
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), AccountsTotalLabel(total, AppLocale()));
}

TEST_F(WindowImport, CorporateShareGoesIntoTheBSColumnAndASecondImportAddsOnTop) {
    TGrid& g = form->Accounts();
    auto importPaul = [](TdlgFromFile* d) {
        QTest::mouseClick(Named<QRadioButton>(d, "cbBS"), Qt::LeftButton);
        Pick(Named<QComboBox>(d, "cmbImpParty"), "Paul Côté");
        QTest::keyClick(d, Qt::Key_Return);   // the default button
    };
    Import(importPaul);
    ASSERT_EQ(g.RowCount(), 2);   // the empty start row went, one Non-Reg. row came
    EXPECT_EQ(g.Text(0, 1), "Non-Reg.");
    EXPECT_EQ(g.Float(2, 1), 595389);
    EXPECT_TRUE(g.Cell(1, 1).IsEmpty());
    Import(importPaul);
    EXPECT_EQ(g.Float(2, 1), 2 * 595389);
    EXPECT_EQ(g.Float(4, 1), 2 * 595389);
}

TEST_F(WindowImport, CancelLeavesTheGridAsItWas) {
    TGrid& g = form->Accounts();
    const int rows = g.RowCount();
    const QString label = Named<QLabel>(form.get(), "Label3")->text();
    Import([](TdlgFromFile* d) {
        Pick(Named<QComboBox>(d, "cmbFile"), "Nguyen");
        QTest::keyClick(d, Qt::Key_Escape);
    });
    EXPECT_EQ(g.RowCount(), rows);   // the empty row stays: nothing ran
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), label);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    qunsetenv("TESSARY_CLIENT_KEY");
    // Nor the user's keyring: no secret service answers here.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/tessary-bus");
    QApplication app(argc, argv);
    QTemporaryDir root;
    gRoot = root.path() + "/demo";
    WriteDemoData(QFile::encodeName(gRoot).toStdString());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
