// The command line's commands, callable from tests without a process.
#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <stdexcept>

#include "core/Grid.h"
#include "core/Rebalance.h"

namespace tessary {

// A failure to report on one line of standard error; the message names the
// file and the problem.
class CliError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct CliOutput {
    int exitCode = 0;
    QString out; // standard output
    QString err; // standard error: one line per failure
};

// args are the arguments after the program name: the command, then its options.
CliOutput RunCli(const QStringList& args);

// tessary-cli allocate: the calculation on two CSV files.
QString AllocateCommand(const QString& accountsCsv, const QString& classesCsv, bool json);

enum class AllocateOutput { Text, Json, Csv };

// The same, printing the result in one of its forms and, given pdfPath, also
// writing the report there.
QString AllocateCommand(const QString& accountsCsv, const QString& classesCsv, AllocateOutput output,
                        const QString& pdfPath);

// Loads the two CSV files into fresh grids and runs the calculation on them.
void CalculateFromCsv(const QString& accountsCsv, const QString& classesCsv, TGrid& accounts, TGrid& classes,
                      TGrid& result);

enum class RebalanceOutput { Text, Json };

// tessary-cli rebalance: the trades from the holdings in holdingsCsv to the
// plan that accountsCsv and classesCsv make.
// pdfPath: also the report, its second page the trades.
QString RebalanceCommand(const QString& accountsCsv, const QString& classesCsv, const QString& holdingsCsv,
                         const TRebalanceOptions& options, RebalanceOutput output, const QString& pdfPath = {});

// Writes the PDF report of one calculation. Programs that link the report
// (and make a QApplication) set it; without it --pdf fails with a message.
using PdfReportWriter = void (*)(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result);
void SetPdfReportWriter(PdfReportWriter writer);
// The same with the trades page of the given holdings.
using TradesReportWriter = void (*)(const QString& path, const TGrid& accounts, const TGrid& classes,
                                    const TGrid& result, const TTradesInput& trades);
void SetTradesReportWriter(TradesReportWriter writer);

// Whether these arguments ask for a PDF, so that main knows to make a QApplication.
bool WantsPdf(const QStringList& args);

// --key and --key-file, and the key they give (see KeyFromOptions).
void AddKeyOptions(QCommandLineParser& parser);
QString KeyOption(const QCommandLineParser& parser);

// Reads a whole file; throws CliError naming the file on failure.
QByteArray ReadWholeFile(const QString& path);

} // namespace tessary
