// The command line's commands, callable from tests without a process.
#pragma once

#include <QString>
#include <QStringList>
#include <stdexcept>

namespace tessary {

// A failure to report on one line of standard error; the message names the
// file and the problem.
class CliError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct CliOutput {
    int exitCode = 0;
    QString out;   // standard output
    QString err;   // standard error: one line per failure
};

// args are the arguments after the program name: the command, then its options.
CliOutput RunCli(const QStringList& args);

// tessary-cli allocate: the calculation on two CSV files.
QString AllocateCommand(const QString& accountsCsv, const QString& classesCsv, bool json);

// Reads a whole file; throws CliError naming the file on failure.
QByteArray ReadWholeFile(const QString& path);

} // namespace tessary
