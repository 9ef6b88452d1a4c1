// tessary-cli: the allocator and the import without a window.
#include <QCoreApplication>
#include <cstdio>
#include <memory>

#include "cli/Commands.h"

#ifdef TESSARY_WITH_REPORT
#include <QApplication>

#include "report/Report.h"
#endif

int main(int argc, char** argv) {
    QStringList raw;
    for (int i = 1; i < argc; ++i) raw << QString::fromLocal8Bit(argv[i]);

    std::unique_ptr<QCoreApplication> app;
#ifdef TESSARY_WITH_REPORT
    // The report's chart needs widgets; everything else runs without a display.
    if (tessary::WantsPdf(raw)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
            qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        // Standard error carries the command's own failure line, not the toolkit's remarks.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(text));
        });
        app = std::make_unique<QApplication>(argc, argv);
        tessary::SetPdfReportWriter(&tessary::WriteAllocationReportPdf);
        tessary::SetTradesReportWriter(&tessary::WriteTradesReportPdf);
    }
#endif
    if (!app) app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Torvane Labs Inc."));
    QCoreApplication::setApplicationName(QStringLiteral("Tessary"));

    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    const tessary::CliOutput result = tessary::RunCli(args);
    std::fputs(result.out.toUtf8().constData(), stdout);
    std::fputs(result.err.toUtf8().constData(), stderr);
    return result.exitCode;
}
