#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>
#include <functional>

#include "ReportTestUtil.h"
#include "format/Export.h"
#include "report/Report.h"

using namespace tessary;
using namespace tessary::test;

namespace {

TGrids Long() {
    std::string accounts = "h\n";
    const char* kinds[] = {"Non-Reg.", "TFSAs", "RRSPs/RRIFs", "LIRAs/LIFs", "DCPs/LRIFs"};
    for (int i = 0; i < 80; ++i) accounts += std::string(kinds[i % 5]) + "," + std::to_string(1000 * (i + 1)) + ",7,9\n";
    TGrids g = FromCsv(accounts, SampleFile("classes.csv"));
    g.accounts.SetText(0, 3, "Épargne à très long libellé — 日本語のラベル 🙂 qui ne tient pas dans sa colonne");
    return g;
}

struct ReportCase {
    const char* name;
    std::function<TGrids()> make;
    QLocale locale;
};

const ReportCase kCases[] = {
    {"Sample", Sample, QLocale(QLocale::English, QLocale::Canada)},
    {"SampleFrench", Sample, QLocale(QLocale::French, QLocale::Canada)},
    {"NotCalculated", [] { return TGrids{}; }, QLocale(QLocale::English, QLocale::Canada)},
    {"NonFinite", [] { return FromCsv("h\nNon-Reg.,100\nTFSAs,-50\n", "h\nEquities Canada,100\nShort-Term Fixed,10\n"); },
     QLocale(QLocale::English, QLocale::Canada)},
    {"LongGrids", Long, QLocale(QLocale::French, QLocale::Canada)},
};

class Report : public ::testing::TestWithParam<ReportCase> {
protected:
    TReportInput Input(const TGrids& g) const { return {g.accounts, g.classes, g.result, QDate(2024, 5, 17), GetParam().locale}; }
};

TEST_P(Report, PdfIsOnePage) {
    const TGrids g = GetParam().make();
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("report.pdf"));
    WriteReportPdf(path, Input(g));
    const QByteArray pdf = ReadBytes(path);
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_TRUE(pdf.trimmed().endsWith("%%EOF"));
    EXPECT_EQ(CountPages(pdf).objects, 1);
    EXPECT_EQ(CountPages(pdf).declared, 1);
}

TEST_P(Report, PaintingStaysInsideThePage) {
    const TGrids g = GetParam().make();
    QImage image(850, 1100, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QRect page(60, 60, 730, 980);
    QPainter painter(&image);
    PaintReport(painter, page, Input(g));
    painter.end();
    int outside = 0, inside = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            (page.contains(x, y) ? inside : outside) += image.pixel(x, y) != qRgb(255, 255, 255);
    EXPECT_EQ(outside, 0);
    EXPECT_GT(inside, 1000);
}

INSTANTIATE_TEST_SUITE_P(Grids, Report, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ReportDevices, PrinterGetsTheSameOnePage) {
    const TGrids g = Sample();
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("printed.pdf"));
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        PrintReport(printer, {g.accounts, g.classes, g.result, QDate(2024, 5, 17), QLocale()});
    }
    const QByteArray pdf = ReadBytes(path);
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_EQ(CountPages(pdf).objects, 1);
}

TEST(ReportDevices, UnwritablePathsNameTheFileAndLeaveNothing) {
    const TGrids g = Sample();
    QTemporaryDir dir;
    ASSERT_TRUE(QDir().mkdir(dir.filePath(QStringLiteral("folder.pdf"))));
    for (const QString& path : {dir.filePath(QStringLiteral("folder.pdf")), dir.filePath(QStringLiteral("no/report.pdf"))}) {
        try {
            WriteReportPdf(path, {g.accounts, g.classes, g.result, QDate(2024, 5, 17), QLocale()});
            ADD_FAILURE() << "wrote " << path.toStdString();
        } catch (const EExport& e) {
            EXPECT_NE(std::string(e.what()).find(path.toStdString()), std::string::npos) << e.what();
        }
    }
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{QStringLiteral("folder.pdf")});
}

} // namespace
