#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "ReportTestUtil.h"
#include "cli/Commands.h"
#include "format/Export.h"
#include "report/Report.h"

using namespace tessary;
using namespace tessary::test;

namespace {

const char* const kAccounts = "h\nNon-Reg.,1000.4,0,500\nTFSAs,100,300\nRRSPs/RRIFs,-20\n";
const char* const kClasses = "h\nEquities Canada,40\n\"Short-Term Fixed\",35.5\nMid/Long-Term Fixed,24.5\n";

class CliReport : public ::testing::Test {
protected:
    void SetUp() override {
        accounts = Write("a.csv", kAccounts);
        classes = Write("c.csv", kClasses);
    }
    QString Write(const QString& name, const QByteArray& text) {
        QFile f(dir.filePath(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        return f.fileName();
    }
    CliOutput Allocate(const QStringList& extra) {
        return RunCli(QStringList{"allocate", "--accounts", accounts, "--classes", classes} + extra);
    }

    QTemporaryDir dir;
    QString accounts, classes;
};

TEST_F(CliReport, RebalancePdfAddsTheTradesPageAndLeavesTheTradesAlone) {
    const QString holdings = Write("h.csv", "h\nMD Taxable,Equities Canada,900\nTFSAs,Short-Term Fixed,50\n");
    const QStringList args{"rebalance", "--accounts", accounts, "--classes", classes, "--holdings", holdings, "--json"};
    const CliOutput plain = RunCli(args);
    const QString pdf = dir.filePath("trades.pdf");
    const CliOutput withPdf = RunCli(args + QStringList{"--pdf", pdf});
    ASSERT_EQ(withPdf.exitCode, 0) << withPdf.err.toStdString();
    EXPECT_EQ(withPdf.out, plain.out);
    QFile f(pdf);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(CountPages(f.readAll()).declared, 2);
}

// What the CSV holds is the export's business; the command must print it.
TEST_F(CliReport, CsvIsTheExportOfTheResultGrid) {
    const CliOutput csv = Allocate({"--csv"});
    ASSERT_EQ(csv.exitCode, 0) << csv.err.toStdString();
    EXPECT_TRUE(csv.err.isEmpty());
    EXPECT_EQ(csv.out, GridAsCsv(FromCsv(kAccounts, kClasses).result, GridKind::Result));
}

TEST_F(CliReport, PdfIsWrittenBesideTheUsualOutput) {
    const struct {
        QStringList options;
        QString file, stdoutAs;
    } cases[] = {
        {{"--pdf", dir.filePath("a.pdf")}, "a.pdf", ""},
        {{"--csv", "--pdf", dir.filePath("b.pdf")}, "b.pdf", "--csv"},
        {{"--pdf=" + dir.filePath("c.pdf"), "--json"}, "c.pdf", "--json"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.options.join(' ').toStdString());
        const CliOutput out = Allocate(c.options);
        EXPECT_EQ(out.exitCode, 0) << out.err.toStdString();
        EXPECT_TRUE(out.err.isEmpty()) << out.err.toStdString();
        EXPECT_EQ(out.out, Allocate(c.stdoutAs.isEmpty() ? QStringList{} : QStringList{c.stdoutAs}).out);
        const QByteArray pdf = ReadBytes(dir.filePath(c.file));
        EXPECT_TRUE(pdf.startsWith("%PDF-"));
        EXPECT_EQ(CountPages(pdf).objects, 1);
    }
}

TEST_F(CliReport, FailuresAreOneLineAndWriteNothing) {
    const QString missingDir = dir.filePath("no/such/report.pdf"), missingCsv = dir.filePath("missing.csv");
    const struct {
        QStringList args;
        QString mentions;
    } cases[] = {
        {{"--json", "--csv"}, "--json"},
        {{"--pdf", missingDir}, missingDir},
        {{"--pdf"}, "pdf"},
        {{"--pdf", dir.filePath("x.pdf"), "--accounts", missingCsv}, missingCsv},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args.join(' ').toStdString());
        const CliOutput out = Allocate(c.args);
        EXPECT_NE(out.exitCode, 0);
        EXPECT_TRUE(out.out.isEmpty());
        EXPECT_EQ(out.err.count(QLatin1Char('\n')), 1) << out.err.toStdString();
        EXPECT_TRUE(out.err.contains(c.mentions)) << out.err.toStdString();
    }
    SetPdfReportWriter(nullptr);   // a build without the report
    const CliOutput without = Allocate({"--pdf", dir.filePath("y.pdf")});
    SetPdfReportWriter(&WriteAllocationReportPdf);
    EXPECT_NE(without.exitCode, 0);
    EXPECT_TRUE(without.err.contains("PDF")) << without.err.toStdString();
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), (QStringList{"a.csv", "c.csv"}));
}

TEST(CliReportArgs, WantsPdfSeesEveryFormOfTheOption) {
    const struct {
        QStringList args;
        bool wants;
    } cases[] = {{{"allocate", "--pdf", "r.pdf"}, true}, {{"allocate", "--pdf=r.pdf"}, true}, {{"allocate", "-pdf", "r.pdf"}, true},
                 {{"allocate", "--csv"}, false},         {{"allocate", "--pdfx"}, false},    {{"allocate", "pdf"}, false}};
    for (const auto& c : cases) EXPECT_EQ(WantsPdf(c.args), c.wants) << c.args.join(' ').toStdString();
}

} // namespace
