// The real main window, offscreen.
#include <gtest/gtest.h>

#include <array>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QInputDialog>
#include <QLegend>
#include <QLineEdit>
#include <QScrollBar>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "window/Language.h"
#include "window/MainWindow.h"
#include "WindowWidgets.h"

using namespace tessary;

namespace {

class Window : public ::testing::Test {
protected:
    void SetUp() override {
        form = std::make_unique<TForm1>();
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    }
    // Edits a cell through the view, as typing and Enter would.
    void Type(TGridView* view, int col, int row, const QString& text) {
        const QModelIndex idx = view->model()->index(row, col);
        view->setCurrentIndex(idx);
        view->edit(idx);
        QWidget* editor = QApplication::focusWidget();
        ASSERT_NE(editor, nullptr);
        ASSERT_NE(editor, view);
        if (auto* line = qobject_cast<QLineEdit*>(editor); line && text.toLatin1() != text.toUtf8())   // QTest types ASCII only
            line->insert(text);
        else
            QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        QApplication::processEvents();
    }
    void Choose(TGridView* view, int row, int item) {
        const QModelIndex idx = view->model()->index(row, 0);
        view->setCurrentIndex(idx);
        view->edit(idx);
        auto* combo = qobject_cast<QComboBox*>(QApplication::focusWidget());
        ASSERT_NE(combo, nullptr);
        EXPECT_FALSE(combo->isEditable());
        EXPECT_EQ(combo->count(), view == Named<TGridView>(form.get(), "grdAccounts") ? 5 : 6);
        combo->setCurrentIndex(item);
        emit combo->activated(item);
        QTest::keyClick(combo, Qt::Key_Return);
        QApplication::processEvents();
    }
    std::unique_ptr<TForm1> form;
};

TEST_F(Window, StartsWithOneEmptyBodyRowAndZeroTotals) {
    EXPECT_EQ(form->Accounts().RowCount(), 2);
    EXPECT_EQ(form->Classes().RowCount(), 2);
    EXPECT_EQ(form->Result().RowCount(), 3);
    EXPECT_EQ(form->Result().ColCount(), 2);
    EXPECT_EQ(Named<QLabel>(form.get(), "Label2")->text(), "0%");
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$0");
    EXPECT_TRUE(Named<QLabel>(form.get(), "lblChartEmpty")->isVisible() && !form->chart->chart()->legend()->isVisible());
    EXPECT_EQ(Named<TGridView>(form.get(), "grdAccounts")->horizontalScrollBar()->maximum(), 0);   // $99,999,999 fits
    EXPECT_EQ(form->windowTitle(), "Portfolio Risk Tolerance");
    EXPECT_EQ(Named<QLabel>(form.get(), "lblCaptionBar")->text(), "Tessary");
    // Calculate ends flush with the classes grid.
    auto right = [this](QWidget* w) { return w->mapTo(form.get(), QPoint(w->width() - 1, 0)).x(); };
    EXPECT_EQ(right(Named<QPushButton>(form.get(), "btnCalculate")), right(Named<TGridView>(form.get(), "grdClasses")));
}

TEST_F(Window, ComboChoiceSetsTheRowObject) {
    Choose(Named<TGridView>(form.get(), "grdAccounts"), 1, 0);
    EXPECT_EQ(form->Accounts().Object(0, 1), 1);
    EXPECT_EQ(form->Accounts().Text(0, 1), "Non-Reg.");
    Choose(Named<TGridView>(form.get(), "grdAccounts"), 1, 3);
    EXPECT_EQ(form->Accounts().Object(0, 1), 4);
    Choose(Named<TGridView>(form.get(), "grdClasses"), 1, 2);
    EXPECT_EQ(form->Classes().Object(0, 1), 3);
    EXPECT_EQ(form->Classes().Text(0, 1), "Equities Canada");
}

TEST_F(Window, TypedAmountsCountAsShownAndOtherTextIsRefused) {
    auto* accounts = Named<TGridView>(form.get(), "grdAccounts");
    auto* total = Named<QLabel>(form.get(), "Label3");
    struct Case { TLanguage language; const char16_t* text; double value; const char16_t* shown; };
    const Case cases[] = {
        {TLanguage::English, u"1500", 1500, u"$1,500"}, {TLanguage::English, u"$250,000", 250000, u"$250,000"},
        {TLanguage::English, u"250,000.40", 250000.4, u"$250,000"},
        {TLanguage::French, u"250 000 $", 250000, u"250\u00A0000\u00A0$"},
        {TLanguage::French, u"1\u202F040\u202F000,50 $", 1040000.5, u"1\u00A0040\u00A0001\u00A0$"},
    };
    for (const Case& c : cases) {
        ApplyLanguage(c.language);
        QApplication::processEvents();   // the language change arrives as a posted event
        Type(accounts, 1, 1, QString::fromUtf16(c.text));
        EXPECT_EQ(form->Accounts().Float(1, 1), c.value) << QString::fromUtf16(c.text).toStdString();
        EXPECT_EQ(form->Accounts().Float(4, 1), c.value);
        EXPECT_EQ(total->text(), QString::fromUtf16(c.shown));
    }
    ApplyLanguage(TLanguage::English);
    // Not a number: Enter does not take it, the editor says why, the cell keeps its value.
    for (const char* refused : {"2.5k", "abc", "$250,00"}) {
        Type(accounts, 1, 1, refused);
        auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        ASSERT_NE(editor, nullptr) << refused;
        EXPECT_TRUE(editor->property("refused").toBool() && !editor->toolTip().isEmpty()) << refused;
        accounts->setFocus();   // leaving the editor drops the text
        QApplication::processEvents();
        EXPECT_EQ(form->Accounts().Float(1, 1), 1040000.5) << refused;
    }
    Type(Named<TGridView>(form.get(), "grdClasses"), 1, 1, "33.5%");   // Enter adds row 2
    Type(Named<TGridView>(form.get(), "grdClasses"), 1, 2, "66.5");
    EXPECT_EQ(Named<QLabel>(form.get(), "Label2")->text(), "100%");
}

TEST_F(Window, DeleteAndClearLeaveTheTotalsLabels) {
    Type(Named<TGridView>(form.get(), "grdAccounts"), 1, 1, "700");
    ASSERT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$700");
    ASSERT_EQ(form->Accounts().RowCount(), 3);   // Enter in the last row added one
    Named<TGridView>(form.get(), "grdAccounts")->setCurrentIndex(Named<TGridView>(form.get(), "grdAccounts")->model()->index(1, 1));
    form->Inputs().btnDelAccClick();
    EXPECT_EQ(form->Accounts().RowCount(), 2);
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$700");
    form->Inputs().btnClearClick();
    EXPECT_EQ(form->Accounts().RowCount(), 1);
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$700");
    // Deleting with no body row does nothing.
    form->Inputs().btnDelAccClick();
    EXPECT_EQ(form->Accounts().RowCount(), 1);
}

TEST_F(Window, CalculateFillsTheResultGrid) {
    form->LoadInputs("h\nNon-Reg.,600\nRRSPs/RRIFs,400\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n");
    QTest::mouseClick(Named<QPushButton>(form.get(), "btnCalculate"), Qt::LeftButton);
    EXPECT_EQ(form->Result().ColCount(), 5);
    EXPECT_EQ(form->Result().Text(3, 0), "RRSPs/RRIFs");
    EXPECT_DOUBLE_EQ(form->Result().Float(2, 2), 400);
    EXPECT_EQ(Named<TGridView>(form.get(), "grdResult")->model()->data(Named<TGridView>(form.get(), "grdResult")->model()->index(2, 1)).toString(), "67");
    EXPECT_EQ(Named<TGridView>(form.get(), "grdResult")->columnSpan(0, 3), 2);
    EXPECT_FALSE(Named<QLabel>(form.get(), "lblChartEmpty")->isVisible());
    EXPECT_TRUE(form->chart->chart()->legend()->isVisible());
}

TEST_F(Window, HeadersStayColumnsFitAndCanBeWidened) {
    QByteArray accounts = "h\nNon-Reg.,99999999,12345678,45000\n";
    for (int i = 0; i < 14; ++i) accounts += "TFSAs,1549910\n";
    form->LoadInputs(accounts, "h\nEquities Emerging Markets,50\nMid/Long-Term Fixed,50\n");
    form->btnCalculateClick();
    auto* result = Named<TGridView>(form.get(), "grdResult");
    for (TLanguage language : {TLanguage::English, TLanguage::French}) {
        ApplyLanguage(language);
        QApplication::processEvents();
        for (const char* name : {"grdAccounts", "grdClasses", "grdResult"}) {
            SCOPED_TRACE(name);
            auto* view = Named<TGridView>(form.get(), name);
            const QFontMetrics fm(view->font());
            const int step = view == result ? 2 : 1;   // the result's money is in its even columns
            for (int c = step; std::string(name) != "grdClasses" && c < view->model()->columnCount(); c += step)
                EXPECT_GT(view->columnWidth(c), fm.horizontalAdvance(FormatMoney(99999999, AppLocale()))) << c;
            for (int r = 1; r < view->model()->rowCount(); ++r)
                EXPECT_GT(view->columnWidth(0), fm.horizontalAdvance(view->model()->index(r, 0).data().toString())) << r;

            // Scrolled to the far corner, the header rows and column 0 still show.
            view->setCurrentIndex(view->model()->index(view->model()->rowCount() - 1, view->model()->columnCount() - 1));
            view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
            view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->maximum());
            QApplication::processEvents();
            QTableView *rows = view->FrozenRows(), *col = view->FrozenColumn();
            ASSERT_TRUE(rows->isVisible() && col->isVisible());
            EXPECT_TRUE(rows->rowAt(1) == 0 && col->columnAt(1) == 0);
            EXPECT_TRUE(rows->columnAt(rows->width() - 2) == view->columnAt(view->viewport()->width() - 2) &&
                        col->rowAt(col->height() - 2) == view->rowAt(view->viewport()->height() - 2));
        }
    }
    EXPECT_GT(Named<TGridView>(form.get(), "grdAccounts")->rowAt(result->FrozenRows()->height()), 1);   // it did scroll
    EXPECT_GT(result->columnAt(result->FrozenColumn()->width() + 2), 1);
    ApplyLanguage(TLanguage::English);

    // The header row's column borders can be dragged; the width outlives a refresh.
    QTableView* header = result->FrozenRows();
    result->horizontalScrollBar()->setValue(0);
    const int before = result->columnWidth(1);
    const QPoint border(header->columnViewportPosition(1) + before, 5);
    QTest::mousePress(header->viewport(), Qt::LeftButton, {}, border);
    QTest::mouseMove(header->viewport(), border + QPoint(30, 0));
    QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, border + QPoint(30, 0));
    EXPECT_EQ(result->columnWidth(1), before + 30);
    result->Refresh();
    EXPECT_EQ(result->columnWidth(1), before + 30);
}

TEST_F(Window, HitTestGivesTheFrameBehaviour) {
    const QRect cap = form->CaptionRegion(), btn = form->ButtonsRegion(), corner = form->CornerRegion();
    const QPoint inCaption(cap.left() + 200, cap.center().y());
    const QPoint inButtons = btn.center();
    const QPoint inCorner = corner.center();
    const QPoint inGrid = Named<TGridView>(form.get(), "grdResult")->geometry().center();
    EXPECT_EQ(form->HitTest(inCaption, true), HitArea::Caption);
    EXPECT_EQ(form->HitTest(inCorner, true), HitArea::BottomRight);
    EXPECT_EQ(form->HitTest(inGrid, true), HitArea::Client);
    EXPECT_EQ(form->HitTest(inGrid, false), HitArea::Caption);
    EXPECT_EQ(form->HitTest(inButtons, false), HitArea::Client);
    // Regions follow a resize.
    form->resize(form->width() + 100, form->height() + 60);
    EXPECT_EQ(form->CornerRegion().bottomRight(), Named<QWidget>(form.get(), "rbCorner")->geometry().bottomRight());
    EXPECT_EQ(form->HitTest(form->CornerRegion().center(), true), HitArea::BottomRight);
}

TEST(FitZoom, LimitedByTheAvailableHeight) {
    EXPECT_DOUBLE_EQ(FitZoom(1.5, 2000, 96, 460), 1.5);
    EXPECT_DOUBLE_EQ(FitZoom(1.5, 740, 96, 460), 1.5);            // 690 fits in 740 - 50
    EXPECT_DOUBLE_EQ(FitZoom(1.5, 600, 96, 460), 550.0 / 460);
    EXPECT_DOUBLE_EQ(FitZoom(1.5, 600, 192, 460), 500.0 / 460);   // 50 pixels at 96 dpi scale
}

} // namespace

TEST_F(Window, PresetsFillTheTargetsAndSavedOnesComeBack) {
    // Built-in mixes first, then the save action.
    QMenu* menu = Named<QMenu>(form.get(), "mnuPresets");
    emit menu->aboutToShow();
    QStringList texts;
    for (QAction* a : menu->actions())
        if (!a->isSeparator()) texts << a->text();
    ASSERT_GE(texts.size(), 5);
    EXPECT_EQ(texts.first(), "Conservative");
    EXPECT_EQ(texts.last(), "Save current targets as preset...");

    menu->actions().at(1)->trigger();   // Balanced
    EXPECT_EQ(Named<QLabel>(form.get(), "Label2")->text(), "100%");
    EXPECT_EQ(form->Classes().RowCount(), 7);
    EXPECT_EQ(form->Classes().Object(0, 3), 3);

    form->Classes().SetFloat(1, 1, 11);
    QTimer::singleShot(0, [] {
        auto* dlg = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        dlg->setTextValue("Client A/B");
        dlg->accept();
    });
    form->Inputs().presetsMenu->SaveCurrentTargets();
    emit menu->aboutToShow();
    QAction* saved = nullptr;
    for (QAction* a : menu->actions())
        if (a->text() == "Client A-B") saved = a;
    ASSERT_NE(saved, nullptr);
    form->Inputs().btnClearClick();
    form->Inputs().ApplyTargetPreset(BuiltInPresets().back());
    saved->trigger();
    EXPECT_EQ(form->Classes().Float(1, 1), 11);
    EXPECT_EQ(Named<QLabel>(form.get(), "Label2")->text(), "101%");
}

TEST_F(Window, ShortcutsCalculateAndDeleteClearsACell) {
    TGrid& a = form->Accounts();
    a.SetText(0, 1, "Non-Reg.");
    a.SetObject(0, 1, 1);
    a.SetFloat(1, 1, 1000);
    form->Inputs().ApplyTargetPreset(BuiltInPresets().front());
    form->activateWindow();
    Named<TGridView>(form.get(), "grdAccounts")->setFocus();
    QTest::keyClick(Named<TGridView>(form.get(), "grdAccounts"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_GT(form->Result().ColCount(), 2);

    Named<TGridView>(form.get(), "grdAccounts")->setCurrentIndex(Named<TGridView>(form.get(), "grdAccounts")->model()->index(1, 1));
    QTest::keyClick(Named<TGridView>(form.get(), "grdAccounts"), Qt::Key_Delete);
    EXPECT_TRUE(a.Cell(1, 1).IsEmpty());
    EXPECT_EQ(Named<QLabel>(form.get(), "Label3")->text(), "$0");
    // The total column is not typed into, so Delete leaves it.
    Named<TGridView>(form.get(), "grdAccounts")->setCurrentIndex(Named<TGridView>(form.get(), "grdAccounts")->model()->index(1, 4));
    QTest::keyClick(Named<TGridView>(form.get(), "grdAccounts"), Qt::Key_Delete);
    EXPECT_FALSE(a.Cell(4, 1).IsEmpty());
}

TEST_F(Window, KeyboardReachesEverythingAndIconButtonsHaveNames) {
    // Tab walks the grids and buttons in reading order.
    QStringList chain;
    QWidget* w = Named<TGridView>(form.get(), "grdAccounts");
    for (int i = 0; i < 2000 && (chain.isEmpty() || w != Named<TGridView>(form.get(), "grdAccounts")); ++i) {
        if (w->isVisible() && (w->focusPolicy() & Qt::TabFocus) && w->isEnabled()) chain << w->objectName();
        w = w->nextInFocusChain();
    }
    const QStringList order = {"grdAccounts", "btnAddAcc", "btnDelAcc", "btnClear", "btnImp", "grdClasses",
                               "AdvRepeatButton2", "AdvRepeatButton1", "btnPresets", "btnCalculate", "grdResult",
                               "AdvRepeatButton3"};
    int at = 0;
    for (const QString& name : chain)
        if (at < order.size() && name == order[at]) ++at;
    EXPECT_EQ(at, order.size()) << chain.join(' ').toStdString();

    // Typing a column: Enter takes each value and moves down, past the last row into a new one.
    auto* accounts = Named<TGridView>(form.get(), "grdAccounts");
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    accounts->setFocus();
    accounts->setCurrentIndex(accounts->model()->index(1, 2));
    for (const char* keys : {"20", "30", "50"}) {
        for (const char* k = keys; *k; ++k) QTest::keyClick(QApplication::focusWidget(), *k);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QApplication::processEvents();   // the delegate commits in a queued call
    }
    for (int r = 1; r <= 3; ++r) EXPECT_EQ(form->Accounts().Float(2, r), (std::array{20, 30, 50}[r - 1])) << r;
    EXPECT_TRUE(accounts->currentIndex() == accounts->model()->index(4, 2) && form->Accounts().RowCount() == 5);

    // Tab and Shift+Tab leave a grid after its last and before its first cell, also from an editor.
    accounts->setCurrentIndex(accounts->model()->index(4, 4));
    QTest::keyClick(accounts, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), Named<QWidget>(form.get(), "btnAddAcc"));
    auto* classes = Named<TGridView>(form.get(), "grdClasses");
    classes->setFocus();
    classes->setCurrentIndex(classes->model()->index(1, 0));
    QTest::keyClick(classes, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), Named<QWidget>(form.get(), "btnImp"));
    classes->setFocus();
    classes->setCurrentIndex(classes->model()->index(1, 1));
    for (int key : {int('4'), int('0'), int(Qt::Key_Tab)}) QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
    QApplication::processEvents();
    EXPECT_TRUE(form->Classes().Float(1, 1) == 40 && QApplication::focusWidget() == Named<QWidget>(form.get(), "AdvRepeatButton2"));

    // Ctrl+I opens the import dialog from anywhere in the window.
    // The key is looked up before the dialog shows, so wait for it.
    bool opened = false;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (QWidget* dlg = QApplication::activeModalWidget()) {
            opened = true;
            closer.stop();
            QTest::keyClick(dlg, Qt::Key_Escape);
        }
    });
    closer.start(10);
    QTest::keyClick(Named<TGridView>(form.get(), "grdClasses"), Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(opened);
    // Ctrl+, opens the settings the same way.
    form->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
    opened = false;
    closer.start(10);
    QTest::keyClick(Named<TGridView>(form.get(), "grdClasses"), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(opened);

    // Buttons that show no words must still be named for a screen reader.
    for (QAbstractButton* b : form->findChildren<QAbstractButton*>()) {
        if (!b->isVisible()) continue;
        if (b->text().trimmed().isEmpty()) {
            EXPECT_FALSE(b->accessibleName().isEmpty()) << b->objectName().toStdString();
        }
    }
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;   // saved presets go here, never to the user's settings
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/tessary-bus"); // never the user's keyring
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
