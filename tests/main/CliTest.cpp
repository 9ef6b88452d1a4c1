#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>
#include <sys/stat.h>

#include "cli/Commands.h"
#include "format/GridFormat.h"
#include "core/Allocation.h"
#include "catalogue/KvCatalogueFixture.h"

using namespace tessary;

namespace {

class Cli : public ::testing::Test {
protected:
    QString Write(const QString& name, const QByteArray& text) {
        const QString path = dir.filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        return path;
    }
    QJsonObject AllocateJson(const QByteArray& accounts, const QByteArray& classes) {
        const CliOutput out = RunCli({QStringLiteral("allocate"), QStringLiteral("--accounts"), Write("a.csv", accounts),
                                      QStringLiteral("--classes"), Write("c.csv", classes), QStringLiteral("--json")});
        EXPECT_EQ(out.exitCode, 0) << out.err.toStdString();
        QJsonParseError error{};
        const QJsonDocument doc = QJsonDocument::fromJson(out.out.toUtf8(), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << out.out.toStdString();
        return doc.object();
    }
    QTemporaryDir dir;
};

TEST_F(Cli, JsonIsTheWholeResultGrid) {
    const QJsonObject o = AllocateJson("h\nNon-Reg.,600\nRRSPs/RRIFs,400\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n");
    EXPECT_EQ(o.value("columns").toInt(), 5);
    EXPECT_EQ(o.value("rows").toInt(), 4);
    const QJsonArray cells = o.value("cells").toArray();
    ASSERT_EQ(cells.size(), 4);
    for (const auto& row : cells) EXPECT_EQ(row.toArray().size(), 5);
    EXPECT_EQ(cells[0].toArray()[0].toString(), "Asset Class");
    EXPECT_TRUE(cells[0].toArray()[2].isNull());   // covered by the merge, never written
    EXPECT_EQ(cells[1].toArray()[1].toString(), "%");
    // Full precision, not the display's rounding.
    EXPECT_DOUBLE_EQ(cells[2].toArray()[1].toDouble(), 200.0 / 3);
    EXPECT_EQ(cells[3].toArray()[4].toDouble(), 400);
}

TEST_F(Cli, NonFiniteNumbersAreStrings) {
    const QJsonObject o = AllocateJson("h\nNon-Reg.,100\nTFSAs,-50\n", "h\nEquities Canada,100\nShort-Term Fixed,10\n");
    const QJsonArray cells = o.value("cells").toArray();
    EXPECT_EQ(cells[3].toArray()[2].toString(), "inf");
    EXPECT_EQ(cells[3].toArray()[4].toString(), "nan");
    EXPECT_TRUE(cells[3].toArray()[3].isNull());   // a "%" cell the calculation never wrote
}

TEST_F(Cli, TextOutputIsFormattedLikeTheWindow) {
    const CliOutput out = RunCli({"allocate", "--accounts", Write("a.csv", "h\nNon-Reg.,600\n"), "--classes",
                                  Write("c.csv", "h\nEquities Canada,40\nShort-Term Fixed,60\n")});
    ASSERT_EQ(out.exitCode, 0);
    EXPECT_TRUE(out.out.contains("MD Taxable"));
    EXPECT_TRUE(out.out.contains("Equities Canada"));
    EXPECT_TRUE(out.out.contains(" 40 ")) << out.out.toStdString();
}

TEST_F(Cli, FailuresAreOneLineOnStandardError) {
    struct Case { QStringList args; int code; const char* mention; };
    const QString c = Write("c.csv", "h\n");
    const QString fifo = dir.filePath("fifo.csv");
    EXPECT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);   // no writer ever opens it
    const QString large = Write("large.csv", "h\n" + QByteArray(4 << 20, '\n'));
    // 318,750 taxable records (637,501 columns) against six classes (8 rows).
    const QString wide = Write("wide.csv", "h\n" + QByteArray("Non-Reg.,1,1,1\n").repeated(106'250));
    const QString six = Write("six.csv", "h\nShort-Term Fixed,1\nMid/Long-Term Fixed,1\nEquities Canada,1\n"
                                         "Equities U.S.,1\nEquities Emerging Markets,1\nEquities Global,1\n");
    const Case cases[] = {
        {{"allocate", "--accounts", dir.filePath("missing.csv"), "--classes", c}, 1, "missing.csv"},
        {{"allocate", "--accounts", fifo, "--classes", c}, 1, "fifo.csv\": it is not a regular file"},
        {{"allocate", "--accounts", c, "--classes", "/dev/zero"}, 1, "/dev/zero\": it is not a regular file"},
        {{"allocate", "--accounts", dir.path(), "--classes", c}, 1, "not a regular file"},
        {{"allocate", "--accounts", large, "--classes", c}, 1, "large.csv\": it is larger than 4 MiB"},
        {{"allocate", "--accounts", wide, "--classes", six}, 1, "5100008 cells"},
        {{"allocate", "--classes", c}, 1, "--accounts"},
        {{"allocate", "--accounts", c, "--classes", c, "--bogus"}, 1, "bogus"},
        {{"frobnicate"}, 2, "frobnicate"},
        {{"rebalance", "--accounts", c, "--classes", c, "--holdings", Write("h.csv", "h\nTFSAs,Gold,1\n")}, 1,
         "h.csv\", line 2: unknown asset class \"Gold\""},
        {{"rebalance", "--accounts", c, "--classes", c}, 1, "--holdings"},
        {{"rebalance", "--accounts", c, "--classes", c, "--holdings", c, "--band", "-1"}, 1, "--band"},
        {{"rebalance", "--accounts", Write("n.csv", "h\nTFSAs,1\n"), "--classes",
          Write("e.csv", "h\nEquities Canada,100\nShort-Term Fixed,0\n"), "--holdings", c}, 1,
         "\"TFSAs\", \"Short-Term Fixed\""},
    };
    for (const Case& k : cases) {
        const CliOutput out = RunCli(k.args);
        EXPECT_EQ(out.exitCode, k.code) << k.args.join(' ').toStdString();
        EXPECT_TRUE(out.err.contains(k.mention)) << out.err.toStdString();
        EXPECT_EQ(out.err.count('\n'), 1) << out.err.toStdString();
        EXPECT_TRUE(out.out.isEmpty());
    }
}

TEST_F(Cli, RebalanceJsonCarriesEveryFigure) {
    const CliOutput out = RunCli({"rebalance", "--accounts", Write("a.csv", "h\nNon-Reg.,600\nRRSPs/RRIFs,400\n"),
                                  "--classes", Write("c.csv", "h\nEquities Canada,40\nShort-Term Fixed,60\n"),
                                  "--holdings", Write("h.csv", "h\nMD Taxable,Equities Canada,500\nTFSAs,Equities U.S.,70\n"),
                                  "--no-sell-taxable", "--json"});
    ASSERT_EQ(out.exitCode, 0) << out.err.toStdString();
    const QJsonArray accounts = QJsonDocument::fromJson(out.out.toUtf8()).object().value("accounts").toArray();
    ASSERT_EQ(accounts.size(), 3);
    const QJsonObject md = accounts[0].toObject();
    EXPECT_EQ(md.value("account").toString(), "MD Taxable");
    EXPECT_EQ(md.value("cash").toDouble(), 100);
    const QJsonArray mdClasses = md.value("classes").toArray();
    EXPECT_EQ(mdClasses[0].toObject().value("class").toString(), "Equities Canada");
    EXPECT_EQ(mdClasses[0].toObject().value("trade").toDouble(), 0);   // 100 over target, not sold
    EXPECT_EQ(mdClasses[1].toObject().value("trade").toDouble(), 100);
    EXPECT_EQ(accounts[1].toObject().value("account").toString(), "RRSPs/RRIFs");
    const QJsonObject tfsa = accounts[2].toObject();   // only the holdings name it: its targets are 0
    EXPECT_EQ(tfsa.value("target").toDouble(), 0);
    EXPECT_EQ(tfsa.value("classes").toArray()[2].toObject().value("trade").toDouble(), -70);
    EXPECT_EQ(tfsa.value("unplaced").toDouble(), 0);
}

TEST_F(Cli, BlankLinesCostNothing) {
    // Four million blank lines among the rows: the result is that of the rows alone.
    const QByteArray blank(4'000'000, '\n');
    const QJsonObject o = AllocateJson("h\n" + blank + "TFSAs,100\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n");
    EXPECT_EQ(o, AllocateJson("h\nTFSAs,100\n", "h\nEquities Canada,40\nShort-Term Fixed,60\n"));
    EXPECT_EQ(o.value("columns").toInt(), 3);
}

TEST_F(Cli, NameListsKeepEachNameOnItsLine) {
    kv::TClientFileSpec clientFile;
    clientFile.Name = "Two\nLines";
    clientFile.SolutionPrefix = "Plan\\";
    clientFile.Solutions = 2;
    kv::WriteClientFolder(QFile::encodeName(dir.filePath("data")).toStdString(), "md_db1", 0, clientFile);
    const QStringList common = {"--product", "MD", "--data-dir", dir.filePath("data")};
    const CliOutput files = RunCli(QStringList{"files"} + common);
    EXPECT_EQ(files.out, "Two\\nLines\n") << files.err.toStdString();
    // The name as printed and the name itself both choose the file.
    for (const QString& name : {QStringLiteral("Two\\nLines"), QStringLiteral("Two\nLines")}) {
        const CliOutput solutions = RunCli(QStringList{"solutions", "--file", name} + common);
        EXPECT_EQ(solutions.out, "Plan\\\\1\nPlan\\\\2\n") << solutions.err.toStdString();
    }
}

TEST(NameLines, EscapesWhatWouldBreakTheLineAndReadsItBack) {
    const struct { const char16_t* name; const char* line; } cases[] = {
        {u"Tremblay", "Tremblay"},
        {u"Côté Holdings", "Côté Holdings"},
        {u"Two\nlines", "Two\\nlines"},
        {u"a\\b", "a\\\\b"},
        {u"c:\\n", "c:\\\\n"},          // a backslash before an n stays a backslash
        {u"tab\there\r", "tab\\there\\r"},
        {u"\x01\x1f\x7f\u0085", "\\x01\\x1f\\x7f\\x85"},
        {u"para\u2029", "para\\u2029"},
    };
    for (const auto& c : cases) {
        const QString name = QString::fromUtf16(c.name);
        const QString line = EscapedNameLine(name);
        EXPECT_EQ(line, QString::fromUtf8(c.line));
        EXPECT_FALSE(line.contains(QLatin1Char('\n')));
        EXPECT_EQ(UnescapedNameLine(line), name) << c.line;
    }
    // A backslash that starts no escape is kept.
    EXPECT_EQ(UnescapedNameLine("a\\qb\\x4"), "a\\qb\\x4");
}

// Asking the version needs no display, and names the program, not the settings' name.
TEST(Version, BothProgramsPrintTheirNameAndTheProjectVersion) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove("DISPLAY");
    env.insert("QT_QPA_PLATFORM", "xcb");
    for (const QString program : {"tessary-cli", "tessary"}) {
        const QString path = QStringLiteral(TESSARY_BIN_DIR) + "/" + program;
        if (program == "tessary" && !QFile::exists(path)) continue;   // built without the window
        QProcess p;
        p.setProcessEnvironment(env);
        p.start(path, {"--version"});
        ASSERT_TRUE(p.waitForFinished(10000)) << path.toStdString();
        EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
        EXPECT_EQ(p.readAllStandardOutput(), (program + " " TESSARY_VERSION "\n").toUtf8());
    }
}

TEST(Format, MoneyPlainAndTotalLabels) {
    const QLocale en(QLocale::English, QLocale::Canada);
    const QLocale fr(QLocale::French, QLocale::Canada);
    EXPECT_EQ(FormatMoney(1234567.4, en), "$1,234,567");
    EXPECT_EQ(FormatMoney(1234.4, fr), QString("1\u00a0234\u00a0$"));
    EXPECT_EQ(FormatPlain(1234.6, en), "1235");   // no grouping in "%.0f"
    EXPECT_EQ(AccountsTotalLabel(1234567.4, en), "$1,234,567");
    EXPECT_EQ(AccountsTotalLabel(0, en), "$0");
    EXPECT_EQ(AccountsTotalLabel(1e300, en), "$1E+300");   // not 301 digits running over the buttons
    EXPECT_EQ(AccountsTotalLabel(-1e300, fr), "-1E+300 $");
    struct Case { double total; const char* label; };
    for (Case k : {Case{100, "100%"}, Case{0.5, "0%"}, Case{1.5, "2%"}, Case{2.5, "2%"}, Case{99.6, "100%"}})
        EXPECT_EQ(ClassTotalLabel(k.total, en), k.label) << k.total;
    EXPECT_FALSE(ClassTotalLabel(INFINITY, en).isEmpty());
    EXPECT_FALSE(FormatMoney(NAN, en).isEmpty());
}

TEST(Format, DisplayRulesOfTheResultGrid) {
    const QLocale en(QLocale::English, QLocale::Canada);
    TGrid g = MakeResultGrid();
    g.SetColCount(3);
    g.SetFloat(1, 2, 66.666);
    g.SetFloat(2, 2, 1500.5);
    EXPECT_EQ(DisplayText(g, GridKind::Result, 1, 2, en), "67");
    EXPECT_EQ(DisplayText(g, GridKind::Result, 2, 2, en), "$1,501");
    EXPECT_EQ(DisplayAlign(GridKind::Result, 1, 1), CellAlign::Centre);
    EXPECT_EQ(DisplayAlign(GridKind::Result, 1, 2), CellAlign::Right);
    EXPECT_EQ(DisplayAlign(GridKind::Result, 0, 5), CellAlign::Left);
    EXPECT_EQ(DisplayAlign(GridKind::Classes, 1, 0), CellAlign::Centre);
    EXPECT_EQ(DisplayAlign(GridKind::Accounts, 2, 1), CellAlign::Right);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
