// The trades page on the real window offscreen: holdings typed and pasted,
// trades that follow them, worksheets and the report that carry them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include "report/Worksheet.h"
#include "window/MainWindow.h"
#include "WindowWidgets.h"

using namespace tessary;

namespace {

const QByteArray kAccountsCsv = "h\nNon-Reg.,250000,120000,45000\nTFSAs,95000,,\nRRSPs/RRIFs,310000,,\n";
const QByteArray kClassesCsv = "h\nShort-Term Fixed,10\nMid/Long-Term Fixed,25\nEquities Canada,25\n"
                               "Equities U.S.,20\nEquities Emerging Markets,5\nEquities Global,15\n";
constexpr int kMdTaxable = 1, kTfsas = 4, kShortTerm = 1, kEqCanada = 3, kEqUs = 4;

class TradesWindow : public ::testing::Test {
protected:
    void SetUp() override {
        form = std::make_unique<TForm1>();
        form->Document().AskSaveChanges = [] { return QMessageBox::Discard; };
        form->Document().ShowError = [this](const QString& m) { errors << m; };
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
        form->LoadInputs(kAccountsCsv, kClassesCsv);
        form->btnCalculateClick();
        page = form->tradesPage;
        form->tradesButton->click();
    }
    const TAccountTrades& Account(int type) const {
        for (const TAccountTrades& a : page->Trades())
            if (a.AccountType == type) return a;
        throw std::runtime_error("no such account");
    }
    const TClassTrade& Class(int type, int cls) const {
        for (const TClassTrade& t : Account(type).Classes)
            if (t.AssetClass == cls) return t;
        throw std::runtime_error("no such class");
    }
    const TClassAmounts& Holdings() { return form->TradesInput().Holdings; }

    std::unique_ptr<TForm1> form;
    TTradesPage* page = nullptr;
    QStringList errors;
    QTemporaryDir dir;
};

TEST_F(TradesWindow, PastedCellsLandFromTheCurrentCellAndStopAtTheEdge) {
    ASSERT_TRUE(page->isVisible());
    EXPECT_FALSE(form->resultGrid->isVisible());
    page->holdingsGrid->setCurrentCell(kEqCanada - 1, kAccountTypeCount - 2);
    // Windows line ends, a currency-formatted amount, a word, a third column past the edge.
    QApplication::clipboard()->setText("1000\t$2,500\t77\r\nabc\t\t88\r\n");
    QTest::keySequence(page->holdingsGrid, QKeySequence::Paste);

    EXPECT_EQ(Holdings().Get(6, kEqCanada), 1000);
    EXPECT_EQ(Holdings().Get(7, kEqCanada), 2500);
    EXPECT_FALSE(Holdings().Named(6, kEqUs));   // "abc": kept in its cell, marked, left out
    EXPECT_EQ(page->holdingsGrid->item(kEqUs - 1, 5)->text(), "abc");
    EXPECT_FALSE(Holdings().Named(7, kEqUs));
    EXPECT_EQ(Account(6).Current, 1000);
}

TEST_F(TradesWindow, TradesFollowTypedHoldingsAndTheOptions) {
    EXPECT_DOUBLE_EQ(Account(kMdTaxable).Cash, 250000);   // nothing held: everything to buy
    page->holdingsGrid->setCurrentCell(kEqCanada - 1, kMdTaxable - 1);
    QTest::keyClick(page->holdingsGrid, '3');   // starts editing, as typing into a cell does
    auto* editor = page->holdingsGrid->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "00000");
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();   // the delegate commits queued
    EXPECT_EQ(Holdings().Get(kMdTaxable, kEqCanada), 300000);
    EXPECT_EQ(page->holdingsGrid->currentRow(), kEqUs - 1);   // Enter moves down
    EXPECT_DOUBLE_EQ(Account(kMdTaxable).Cash, -50000);
    const auto eqCanada = [&] { return Class(kMdTaxable, kEqCanada); };
    EXPECT_LT(eqCanada().Trade, 0);
    EXPECT_NE(page->tradesGrid->findItems("\u2212$", Qt::MatchContains).size(), 0);

    page->noSellCheck->click();
    EXPECT_EQ(eqCanada().Trade, 0);
    EXPECT_DOUBLE_EQ(Account(kMdTaxable).Unplaced, -50000);
    EXPECT_TRUE(page->Notices().join("\n").contains("MD Taxable")) << page->Notices().join("\n").toStdString();

    page->bandEdit->setValue(100);   // moot in taxable accounts without sales, skips the others
    EXPECT_EQ(Class(kTfsas, kShortTerm).Trade, 0);
    EXPECT_TRUE(form->windowTitle().contains('*'));

    QTest::keySequence(page->tradesGrid, QKeySequence::Copy);
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    EXPECT_EQ(lines.at(0), "Account type\tAsset class\tCurrent\tTarget\tBuy\tSell");
    EXPECT_TRUE(lines.contains("MD Taxable\tEquities Canada\t300000\t96154\t\t")) << lines.join("|").toStdString();

    // The CSV file says the same as the clipboard.
    page->ChooseFile = [this](bool, const QString&, const QString&) { return dir.filePath("trades"); };
    page->ExportTradesCsv();
    QFile csv(dir.filePath("trades.csv"));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(csv.readAll()).remove(QChar(0xFEFF)).replace("\r\n", "\n").replace(',', '\t'),
              QApplication::clipboard()->text());
}

TEST_F(TradesWindow, WorksheetKeepsHoldingsAndOptionsAndVersionOneStillOpens) {
    const QString csv = dir.filePath("holdings.csv");
    QFile f(csv);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("account type,class,amount\nTFSAs,Short-Term Fixed,0\nMD Taxable,Equities U.S.,125000.5\n");
    f.close();
    ASSERT_TRUE(page->LoadHoldingsCsv(csv));
    page->bandEdit->setValue(2.5);
    page->noSellCheck->setChecked(true);
    const QString path = dir.filePath("client.tessary");
    ASSERT_TRUE(form->Document().SaveWorksheetTo(path));

    form->Document().actNewClick();
    EXPECT_FALSE(Holdings().Any());
    EXPECT_FALSE(page->noSellCheck->isChecked());
    ASSERT_TRUE(form->Document().OpenWorksheet(path)) << errors.join("\n").toStdString();
    EXPECT_EQ(Holdings().Get(kMdTaxable, kEqUs), 125000.5);
    EXPECT_TRUE(Holdings().Named(kTfsas, kShortTerm));   // a 0 given stays given
    EXPECT_FALSE(Holdings().Named(kTfsas, kEqUs));
    EXPECT_EQ(page->bandEdit->value(), 2.5);
    EXPECT_TRUE(page->noSellCheck->isChecked());
    EXPECT_EQ(Account(kMdTaxable).Current, 125000.5);
    EXPECT_FALSE(form->Document().IsModified());

    // Version 1: the same document without holdings.
    QJsonObject v1 = QJsonDocument::fromJson(WorksheetToJson(form->Accounts(), form->Classes(), form->Result())).object();
    ASSERT_EQ(v1.take("holdings").isObject() ? v1.take("version").toInt() : 0, 2);
    v1.insert("version", 1);
    QFile old(dir.filePath("old.tessary"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write(QJsonDocument(v1).toJson());
    old.close();
    ASSERT_TRUE(form->Document().OpenWorksheet(old.fileName())) << errors.join("\n").toStdString();
    EXPECT_FALSE(Holdings().Any());
    EXPECT_FALSE(page->noSellCheck->isChecked());
    EXPECT_EQ(page->holdingsGrid->item(kEqUs - 1, kMdTaxable - 1)->text(), "");
}

TEST_F(TradesWindow, EquitiesAtAHundredIsANoticeNotACrash) {
    form->LoadInputs(QByteArray(), "h\nEquities Canada,100\nShort-Term Fixed,0\n");
    form->btnCalculateClick();
    EXPECT_TRUE(page->Trades().empty());
    ASSERT_EQ(page->Notices().size(), 1);
    EXPECT_TRUE(page->Notices().at(0).contains("no finite targets"));
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
