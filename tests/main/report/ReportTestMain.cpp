#include <gtest/gtest.h>

#include <QApplication>

#include "cli/Commands.h"
#include "report/Report.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // As tessary-cli does when it has the report.
    tessary::SetPdfReportWriter(&tessary::WriteAllocationReportPdf);
    tessary::SetTradesReportWriter(&tessary::WriteTradesReportPdf);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
