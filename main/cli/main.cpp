// tessary-cli: the allocator and the import without a window.
#include <QCoreApplication>
#include <cstdio>

#include "cli/Commands.h"

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Torvane Labs Inc."));
    QCoreApplication::setApplicationName(QStringLiteral("Tessary"));

    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    const tessary::CliOutput result = tessary::RunCli(args);
    std::fputs(result.out.toUtf8().constData(), stdout);
    std::fputs(result.err.toUtf8().constData(), stderr);
    return result.exitCode;
}
