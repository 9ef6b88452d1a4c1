// French: every text a person sees in the window, the import dialog, the
// notices and the chart, against the English run of the same window.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QFile>
#include <QMessageBox>
#include <QRadioButton>
#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QRegularExpression>
#include <QStackedBarSeries>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

#include "demo/DemoData.h"
#include "format/GridFormat.h"
#include "core/Vocabulary.h"
#include "window/ImportDialog.h"
#include "window/Language.h"
#include "window/NoticeText.h"
#include "parties/KvFnParty.h"
#include "window/MainWindow.h"
#include "WindowWidgets.h"

using namespace tessary;

QT_BEGIN_NAMESPACE
// Readable failures instead of UTF-16 code units.
void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
QT_END_NAMESPACE

namespace {

const QByteArray kAccountsCsv = "Account Type,MD,BS,QR\nNon-Reg.,250000,120000,45000\nTFSAs,95000,,\n"
                                "RRSPs/RRIFs,310000,,\nLIRAs/LIFs,80000,,\nDCPs/LRIFs,140000,,\nSavings,10,,\n";
const QByteArray kClassesCsv = "Asset Class,%\nShort-Term Fixed,10\nMid/Long-Term Fixed,25\nEquities Canada,25\n"
                               "Equities U.S.,20\nEquities Emerging Markets,5\nEquities Global,14\n";

// The same in both languages.
const QStringList kSameInBoth = {"Tessary", "MD", "BS", "QR", "Total", "OK", "English", "Fran\u00e7ais", "%"};

// Texts of a widget tree by a stable key: object path and property.
using TTexts = QMap<QString, QString>;

void Collect(QObject* o, const QString& path, TTexts& out) {
    const QString key = path + "/" + o->objectName() + ":" + o->metaObject()->className();
    auto put = [&](const char* what, const QString& text) {
        if (!text.isEmpty()) out.insert(key + "." + what, text);
    };
    if (auto* w = qobject_cast<QWidget*>(o)) {
        put("accessibleName", w->accessibleName());
        put("toolTip", w->toolTip());
        if (w->isWindow()) put("windowTitle", w->windowTitle());
    }
    if (auto* l = qobject_cast<QLabel*>(o)) put("text", l->text());
    if (auto* b = qobject_cast<QAbstractButton*>(o)) put("text", b->text());
    if (auto* c = qobject_cast<QComboBox*>(o))
        for (int i = 0; i < c->count(); ++i) put(qPrintable("item" + QString::number(i)), c->itemText(i));
    if (auto* m = qobject_cast<QMenu*>(o)) {
        put("title", m->title());
        emit m->aboutToShow();
        int i = 0;
        for (QAction* a : m->actions()) put(qPrintable("action" + QString::number(i++)), a->text());
    }
    if (auto* v = qobject_cast<QAbstractItemView*>(o)) {
        const QAbstractItemModel* model = v->model();
        for (int r = 0; model && r < model->rowCount(); ++r)
            for (int c = 0; c < model->columnCount(); ++c)
                put(qPrintable(QString("cell%1,%2").arg(r).arg(c)), model->index(r, c).data().toString());
    }
    if (auto* cv = qobject_cast<QChartView*>(o)) {
        for (QAbstractSeries* s : cv->chart()->series())
            if (auto* bars = qobject_cast<QStackedBarSeries*>(s))
                for (QBarSet* set : bars->barSets()) put(qPrintable("bar:" + set->label()), set->label());
    }
    int i = 0;
    for (QObject* child : o->children()) Collect(child, key + "#" + QString::number(i++), out);
}

bool HasWords(const QString& text) { return text.contains(QRegularExpression("[A-Za-z]{2,}")); }

// Every English text with words must read otherwise in French; data (client,
// solution and party names) reads the same.
void ExpectAllTranslated(const TTexts& english, const TTexts& french, int atLeast, const QStringList& data = {}) {
    int checked = 0;
    for (auto it = english.begin(); it != english.end(); ++it) {
        if (!HasWords(it.value()) || kSameInBoth.contains(it.value()) || data.contains(it.value())) continue;
        // Bar labels are keyed by their text; the cell beside it carries the check.
        if (it.key().contains(".bar:")) continue;
        ++checked;
        ASSERT_TRUE(french.contains(it.key())) << it.key().toStdString();
        EXPECT_NE(french.value(it.key()), it.value()) << "untranslated: " << it.key().toStdString();
    }
    EXPECT_GE(checked, atLeast);
}

class Translation : public ::testing::Test {
protected:
    void TearDown() override { ApplyLanguage(TLanguage::English); }
    static std::unique_ptr<TForm1> Filled() {
        auto form = std::make_unique<TForm1>();
        form->Document().AskSaveChanges = [] { return QMessageBox::Discard; };
        form->show();
        form->LoadInputs(kAccountsCsv, kClassesCsv);
        form->btnCalculateClick();
        // The trades page with money to raise, left unplaced, and its notices.
        form->tradesPage->noSellCheck->setChecked(true);
        form->tradesPage->PasteHoldings("900000\n");
        form->ShowTradesPage(true);
        return form;
    }
};

TEST_F(Translation, EveryTextOfTheWindowReadsInFrenchAlsoAfterASwitch) {
    ApplyLanguage(TLanguage::English);
    auto form = Filled();
    TTexts english;
    Collect(form.get(), "", english);
    ASSERT_FALSE(form->Notices().isEmpty());   // targets at 99 %, a row without type

    // Switched while open: the same window must retranslate all of it.
    form->frenchAction->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
    EXPECT_EQ(CurrentLanguage(), TLanguage::French);
    TTexts switched;
    Collect(form.get(), "", switched);
    ExpectAllTranslated(english, switched, 40);

    // A window started in French shows exactly what the switched one shows.
    auto fresh = Filled();
    TTexts started;
    Collect(fresh.get(), "", started);
    for (auto it = switched.begin(); it != switched.end(); ++it) {
        if (started.contains(it.key())) {
            EXPECT_EQ(started.value(it.key()), it.value()) << it.key().toStdString();
        }
    }

    // And back.
    form->englishAction->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
    TTexts back;
    Collect(form.get(), "", back);
    for (auto it = english.begin(); it != english.end(); ++it)
        EXPECT_EQ(back.value(it.key()), it.value()) << it.key().toStdString();
}

// The dialog in every state whose texts come from the import session: each
// product, a locked file chosen, a data folder that is not there.
TEST_F(Translation, ImportDialogReadsInFrenchInEveryState) {
    QTemporaryDir root;
    WriteDemoData(QFile::encodeName(root.filePath("demo")).toStdString());
    auto walk = [&](TTexts& texts, QStringList& data) {
        for (const QString& dataRoot : {root.filePath("demo"), root.filePath("none")}) {
            TFolderOverrides folders;
            folders.DataRoot = dataRoot;
            TdlgFromFile dlg(folders, 1.0);
            dlg.ShowError = [](const QString& m) { ADD_FAILURE() << m.toStdString(); };
            for (QRadioButton* product : {dlg.productMdRadio, dlg.productBsRadio, dlg.productQrRadio}) {
                product->click();
                for (int i = 0; i < dlg.fileCombo->count(); ++i) {
                    dlg.fileCombo->setCurrentIndex(i);
                    emit dlg.fileCombo->activated(i);
                    const QString state = dataRoot + product->objectName() + QString::number(i);
                    Collect(&dlg, state, texts);
                    data << dlg.Session().FileNames() << dlg.Session().SolutionNames();
                    for (const auto* list : {&dlg.Session().Parties(), &dlg.Session().Holders()})
                        for (const kv::TParticipant* p : *list) data << PartyName(*p);
                }
                Collect(&dlg, dataRoot + product->objectName(), texts);
            }
        }
    };
    ApplyLanguage(TLanguage::English);
    TTexts english, french;
    QStringList data;
    walk(english, data);
    ApplyLanguage(TLanguage::French);
    walk(french, data);
    for (const char* fromSession : {"Select Corporation", "All Shareholders", "Select Trust", "All Beneficiaries",
                                    "md_db3_Gagnon (locked)", "TESSARY_CLIENT_KEY", "does not exist"}) {
        EXPECT_TRUE(std::any_of(english.begin(), english.end(), [&](const QString& t) { return t.contains(fromSession); }))
            << "the walk did not reach " << fromSession;
    }
    ExpectAllTranslated(english, french, 40, data);
}

// Qt's own buttons, as in the Save/Discard question, come from Qt's French.
TEST_F(Translation, QtStandardDialogsReadInFrench) {
    TTexts english, french;
    for (auto [language, texts] : {std::pair{TLanguage::English, &english}, std::pair{TLanguage::French, &french}}) {
        ApplyLanguage(language);
        QMessageBox box(QMessageBox::Question, "Tessary", "?", QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        Collect(&box, "", *texts);
    }
    ExpectAllTranslated(english, french, 3);
}

TEST_F(Translation, MoneyNoticesAndVocabularyFollowTheLanguage) {
    ApplyLanguage(TLanguage::French);
    auto form = Filled();
    // fr_CA groups with a space and puts the sign after: "1 040 010 $".
    const QString total = Named<QLabel>(form.get(), "Label3")->text();
    EXPECT_EQ(QString(total).replace(QRegularExpression("\\s", QRegularExpression::UseUnicodePropertiesOption), " "), "1 040 010 $") << total.toStdString();
    EXPECT_TRUE(Named<TGridView>(form.get(), "grdAccounts")->model()->index(1, 4).data().toString().endsWith("$"));
    // Long French labels stay readable in full as tooltips; amounts need none.
    const QModelIndex longLabel = Named<TGridView>(form.get(), "grdClasses")->model()->index(2, 0);
    EXPECT_EQ(longLabel.data(Qt::ToolTipRole).toString(), longLabel.data().toString());
    EXPECT_FALSE(Named<TGridView>(form.get(), "grdAccounts")->model()->index(1, 4).data(Qt::ToolTipRole).isValid());

    for (auto labels : {std::vector<std::string_view>(kAccountKindLabels.begin(), kAccountKindLabels.end()),
                        std::vector<std::string_view>(kAccountTypeLabels.begin(), kAccountTypeLabels.end()),
                        std::vector<std::string_view>(kAssetClassLabels.begin(), kAssetClassLabels.end())})
        for (std::string_view label : labels)
            EXPECT_NE(VocabularyText(std::string(label)).toStdString(), label);

    const TNotice notices[] = {
        {NoticeId::TargetsNotHundred, "", 0, {}, 99},
        {NoticeId::EquityHundred, "", 0, {}, 100},
        {NoticeId::EquityNotPlaced, "", 0, {}, 1234},
        {NoticeId::AccountRowDropped, "", 3, "Savings", 0},
        {NoticeId::AccountRowDropped, "", 3, "", 0},
        {NoticeId::ClassRowDropped, "", 2, "Gold", 0},
        {NoticeId::ClassRowDropped, "", 2, "", 0},
        {NoticeId::DuplicateAccountType, "", 0, "TFSAs", 2},
        {NoticeId::ResultNamesShifted, "", 4, "", 0},
        {NoticeId::TradesNoPlan, "", 0, "", 0},
        {NoticeId::HoldingsWithoutPlan, "", 0, "TFSAs", 1234},
        {NoticeId::ClassNotTargeted, "", 0, "Equities Global", 1234},
        {NoticeId::TaxableShortfall, "", 0, "MD Taxable", 1234},
    };
    QStringList french;
    for (const TNotice& n : notices) french << NoticeText(n);
    ApplyLanguage(TLanguage::English);
    for (std::size_t i = 0; i < std::size(notices); ++i) {
        SCOPED_TRACE(i);
        const QString english = NoticeText(notices[i]);
        EXPECT_NE(french[static_cast<int>(i)], english);
        // The same facts in both: numbers and the adviser's own labels.
        auto facts = QRegularExpression("\\d+|Savings|Gold").globalMatch(english);
        while (facts.hasNext()) {
            const QString fact = facts.next().captured();
            EXPECT_TRUE(french[static_cast<int>(i)].contains(fact)) << fact.toStdString();
        }
    }
    // Amounts are money in the language's format.
    EXPECT_TRUE(NoticeText(notices[2]).startsWith("$1,234 ")) << NoticeText(notices[2]).toStdString();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;   // the language choice goes here, never to the user's settings
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
