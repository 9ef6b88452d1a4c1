// The window's worksheets, hand-on outputs, notices and chart, on the real
// window offscreen with real files.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QFile>
#include <QSettings>
#include <QStackedBarSeries>
#include <QTemporaryDir>
#include <QTest>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Totals.h"
#include "report/Worksheet.h"
#include "window/MainWindow.h"
#include "window/SettingsStore.h"
#include "WindowWidgets.h"

using namespace tessary;

namespace {

const QByteArray kAccountsCsv = "Account Type,MD,BS,QR\nNon-Reg.,250000,120000,45000\nTFSAs,95000,,\n"
                                "RRSPs/RRIFs,310000,,\nLIRAs/LIFs,80000,,\nDCPs/LRIFs,140000,,\n";
const QByteArray kClassesCsv = "Asset Class,%\nShort-Term Fixed,10\nMid/Long-Term Fixed,25\nEquities Canada,25\n"
                               "Equities U.S.,20\nEquities Emerging Markets,5\nEquities Global,15\n";

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class WorksheetWindow : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        Open();
    }
    // A fresh window whose questions and file choices the test answers.
    void Open() {
        form = std::make_unique<TForm1>();
        form->Document().ShowError = [this](const QString& m) { errors << m; };
        form->Document().AskSaveChanges = [this] {
            ++asked;
            return answer;
        };
        form->Document().ChooseFile = [this](bool save, const QString&, const QString&, const QString&) {
            chosenForSave << save;
            return chosen;
        };
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    }
    void TearDown() override {
        // Nothing may stop the window from closing at the end of a test.
        form->Document().AskSaveChanges = [] { return QMessageBox::Discard; };
    }
    void FillAndCalculate() {
        form->LoadInputs(kAccountsCsv, kClassesCsv);
        form->btnCalculateClick();
    }
    QString Path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir dir;
    std::unique_ptr<TForm1> form;
    QStringList errors;
    QMessageBox::StandardButton answer = QMessageBox::Cancel;
    int asked = 0;
    QString chosen;
    QList<bool> chosenForSave;
};

TEST_F(WorksheetWindow, SaveNewOpenRoundTripAndTheUnsavedMark) {
    EXPECT_FALSE(form->Document().IsModified());
    EXPECT_EQ(Named<QLabel>(form.get(), "lblCaptionBar")->text(), "Tessary");
    FillAndCalculate();
    EXPECT_TRUE(form->Document().IsModified());
    EXPECT_EQ(Named<QLabel>(form.get(), "lblCaptionBar")->text(), "Untitled* - Tessary");
    EXPECT_EQ(form->windowTitle(), "Untitled* - Portfolio Risk Tolerance");
    const QByteArray before = WorksheetToJson(form->Accounts(), form->Classes(), form->Result());

    // Save on an untitled worksheet asks where; the suffix is added.
    chosen = Path("client");
    ASSERT_TRUE(form->Document().actSaveClick());
    EXPECT_EQ(chosenForSave, QList<bool>{true});
    EXPECT_EQ(form->Document().CurrentFile(), Path("client.tessary"));
    EXPECT_FALSE(form->Document().IsModified());
    EXPECT_EQ(Named<QLabel>(form.get(), "lblCaptionBar")->text(), "client.tessary - Tessary");
    EXPECT_EQ(form->windowTitle(), "client.tessary - Portfolio Risk Tolerance");

    form->Document().actNewClick();
    EXPECT_EQ(asked, 0);   // nothing unsaved
    EXPECT_EQ(form->Accounts().RowCount(), 2);
    EXPECT_EQ(form->Result().ColCount(), 2);
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$0");
    EXPECT_TRUE(form->Document().CurrentFile().isEmpty());

    ASSERT_TRUE(form->Document().OpenWorksheet(Path("client.tessary")));
    EXPECT_EQ(WorksheetToJson(form->Accounts(), form->Classes(), form->Result()), before);
    EXPECT_FALSE(form->Document().IsModified());
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$1,040,000");
    EXPECT_EQ(Named<QLabel>(form.get(), "Label2")->text(), "100%");
    // Widths come back zoomed, as the window shows them at start-up.
    EXPECT_EQ(form->Result().ColWidth(0), TForm1().Result().ColWidth(0));

    // An edit marks it; saving again writes to the same file without asking.
    form->Classes().SetFloat(1, 1, 12);
    Named<TGridView>(form.get(), "grdClasses")->Refresh();
    EXPECT_EQ(Named<QLabel>(form.get(), "lblCaptionBar")->text(), "client.tessary* - Tessary");
    chosenForSave.clear();
    QTest::keyClick(form.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(chosenForSave.isEmpty());
    EXPECT_FALSE(form->Document().IsModified());
    EXPECT_EQ(ReadWorksheet(Path("client.tessary")).classes.Float(1, 1), 12);

    QSettings settings = ProgramSettingsStore();
    EXPECT_EQ(settings.value("RecentWorksheets").toStringList().value(0), Path("client.tessary"));
    emit Named<QMenu>(form.get(), "mnuRecent")->aboutToShow();
    ASSERT_FALSE(Named<QMenu>(form.get(), "mnuRecent")->actions().isEmpty());
}

// What each fault says is the reader's business; the window only reports it.
TEST_F(WorksheetWindow, AFileThatWillNotLoadLeavesTheGridsAsTheyWere) {
    FillAndCalculate();
    const QByteArray before = WorksheetToJson(form->Accounts(), form->Classes(), form->Result());
    QFile f(Path("foreign.tessary"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("{\"hello\": 1}");
    f.close();
    for (const char* name : {"foreign.tessary", "missing.tessary"}) {
        SCOPED_TRACE(name);
        errors.clear();
        EXPECT_FALSE(form->Document().OpenWorksheet(Path(name)));
        ASSERT_EQ(errors.size(), 1);
        EXPECT_TRUE(errors.first().contains(name)) << errors.first().toStdString();
        EXPECT_EQ(WorksheetToJson(form->Accounts(), form->Classes(), form->Result()), before);
        EXPECT_TRUE(form->Document().CurrentFile().isEmpty());
    }
}

TEST_F(WorksheetWindow, UnsavedChangesPromptDecidesWhatHappens) {
    const struct {
        const char* name;
        QMessageBox::StandardButton answer;
        bool closes;
        bool saved;
    } cases[] = {
        {"cancel", QMessageBox::Cancel, false, false},
        {"discard", QMessageBox::Discard, true, false},
        {"save", QMessageBox::Save, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Open();
        asked = 0;
        answer = c.answer;
        chosen = Path(c.name);

        EXPECT_TRUE(form->close());   // nothing to lose: no question
        EXPECT_EQ(asked, 0);
        form->show();
        FillAndCalculate();
        EXPECT_EQ(form->close(), c.closes);
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(form->isVisible(), !c.closes);
        EXPECT_EQ(QFile::exists(Path(c.name) + ".tessary"), c.saved);
        // New asks the same way; Cancel keeps the grids.
        if (!c.closes) {
            form->Document().actNewClick();
            EXPECT_EQ(asked, 2);
            EXPECT_EQ(form->Accounts().RowCount(), 6);
        }
    }
}

TEST_F(WorksheetWindow, CopyGivesTabSeparatedCellsAsShown) {
    FillAndCalculate();
    // Equities Canada, MD taxable: 38 % and $96,154 on screen.
    auto* view = Named<TGridView>(form.get(), "grdResult");
    view->setFocus();
    view->selectionModel()->clearSelection();
    for (int c = 0; c <= 2; ++c)
        view->selectionModel()->select(view->model()->index(4, c), QItemSelectionModel::Select);
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "Equities Canada\t38\t96154\n");

    // The menu copies the selection too, and the whole grid when nothing is selected.
    view->selectionModel()->clearSelection();
    form->Document().copyAction->trigger();
    const QStringList lines = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), form->Result().RowCount());
    EXPECT_EQ(lines.at(0).split('\t').size(), form->Result().ColCount());
    EXPECT_TRUE(lines.at(2).startsWith("Short-Term Fixed\t0\t0\t")) << lines.at(2).toStdString();
}

TEST_F(WorksheetWindow, CsvAndPdfExportsWriteTheirFiles) {
    FillAndCalculate();
    chosen = Path("result");
    form->Document().actExportCsvClick();
    const QByteArray csv = ReadAll(Path("result.csv"));
    EXPECT_TRUE(csv.contains("\r\nEquities Canada,38,96154,")) << csv.toStdString();

    chosen = Path("report.pdf");
    form->Document().actExportPdfClick();
    EXPECT_TRUE(ReadAll(Path("report.pdf")).startsWith("%PDF-"));
    EXPECT_TRUE(errors.isEmpty());

    // A folder that cannot be written to: a message, no crash, no file.
    chosen = Path("no-such-folder/report.pdf");
    form->Document().actExportPdfClick();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors.first().contains("report.pdf"));
}

TEST_F(WorksheetWindow, ChartFollowsTheResultGridOnEveryCalculation) {
    auto bars = [this] {
        const auto series = Named<QChartView>(form.get(), "chtAllocation")->chart()->series();
        return series.isEmpty() ? nullptr : qobject_cast<QStackedBarSeries*>(series.first());
    };
    FillAndCalculate();
    for (int pass = 0; pass < 2; ++pass) {
        SCOPED_TRACE(pass);
        const TGrid& r = form->Result();
        QStackedBarSeries* s = bars();
        ASSERT_NE(s, nullptr);
        ASSERT_EQ(s->count(), r.RowCount() - 2);
        for (int i = 0; i < s->count(); ++i) {
            const QBarSet* set = s->barSets().at(i);
            EXPECT_EQ(set->label().toStdString(), r.Text(0, i + 2));
            ASSERT_EQ(set->count(), (r.ColCount() - 1) / 2);
            for (int k = 0; k < set->count(); ++k) EXPECT_DOUBLE_EQ(set->at(k), r.Float(2 + 2 * k, i + 2));
        }
        // A second calculation with other targets and one account fewer.
        form->Accounts().DeleteRow(5);
        form->Inputs().ApplyTargetPreset(BuiltInPresets().back());
        form->btnCalculateClick();
    }
}

TEST_F(WorksheetWindow, NoticeLineSaysWhatIsOdd) {
    const struct {
        const char* name;
        QByteArray accounts, classes;
        const char* notice;   // nullptr: none
    } cases[] = {
        {"plain", kAccountsCsv, kClassesCsv, nullptr},
        {"targets", kAccountsCsv, "h\nShort-Term Fixed,10\nEquities Canada,80\n", "The class targets total 90%, not 100%."},
        // Total 400, equities 40 %: 160, of which the TFSA record takes 100.
        {"unplaced", "h\nTFSAs,100,300\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n",
         "$60 meant for equities could not be placed in any account"},
        {"dropped", "h\nSavings,100\nTFSAs,5\n", kClassesCsv,
         "Accounts row 1 (\"Savings\") has no account type; Calculate drops it."},
        {"huge", "h\nTFSAs,1e300\n", kClassesCsv,
         "Accounts row 1 (\"TFSAs\") holds $1E+300, more than a portfolio plausibly holds."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        form->Document().actNewClick();
        form->Document().AskSaveChanges = [] { return QMessageBox::Discard; };
        form->LoadInputs(c.accounts, c.classes);
        // Calculate keeps telling, even about the rows it has just dropped.
        for (bool calculated : {false, true}) {
            if (calculated) form->btnCalculateClick();
            const QLabel* line = Named<QLabel>(form.get(), "lblNotices");
            if (c.notice == nullptr) {
                EXPECT_TRUE(form->Notices().isEmpty()) << form->Notices().join("|").toStdString();
                EXPECT_TRUE(line->text().isEmpty());
                continue;
            }
            const QStringList said = form->Notices().filter(c.notice);
            ASSERT_EQ(said.size(), 1) << form->Notices().join("|").toStdString();
            EXPECT_TRUE(said.first().startsWith(c.notice)) << said.first().toStdString();
            EXPECT_TRUE(line->toolTip().contains(c.notice));
        }
    }
}

TEST_F(WorksheetWindow, OddCellsOfAWorksheetAreNamedAndMakeNoNamelessColumn) {
    TGrid accounts = MakeAccountsGrid(), classes = MakeClassesGrid();
    LoadAccountsCsv(kAccountsCsv.toStdString(), accounts);
    LoadClassesCsv(kClassesCsv.toStdString(), classes);
    accounts.SetText(2, 1, "abc");
    accounts.SetObject(0, 2, 9);
    classes.SetObject(0, 6, 259);   // its low byte is an equity's code, yet no class has it
    QFile file(Path("odd.tessary"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(WorksheetToJson(accounts, classes, MakeResultGrid())) > 0);
    file.close();
    ASSERT_TRUE(form->Document().OpenWorksheet(Path("odd.tessary")));
    for (const char* notice : {"Accounts row 1, column BS: \"abc\" is not a number; it counts as 0.",
                               "Accounts row 2 (\"TFSAs\") has an unknown account type (9); Calculate drops it.",
                               "Classes row 6 (\"Equities Global\") has an unknown asset class (259); Calculate drops it."})
        EXPECT_TRUE(form->Notices().contains(notice)) << form->Notices().join("|").toStdString();
    form->btnCalculateClick();
    EXPECT_EQ(form->Result().ColCount(), 1 + 2 * 5);   // MD and QR taxable (BS reads 0), RRSP, LIRA, DCP
    for (int c = 1; c < form->Result().ColCount(); c += 2) EXPECT_NE(form->Result().Text(c, 0), "") << c;
    EXPECT_EQ(form->Result().RowCount(), 2 + 5);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;   // recent files go here, never to the user's settings
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    QApplication app(argc, argv);
    app.setOrganizationName("Torvane Labs Inc.");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
