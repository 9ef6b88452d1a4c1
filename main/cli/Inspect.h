// tessary-cli inspect: what the library reads from one client file, and
// whether saving it gives the file back.
#pragma once

#include <QString>
#include <QStringList>

namespace tessary {

// Thrown by a command whose result is not a failure but still ends with
// another exit code ("differs at byte N" exits 1).
struct CliVerdict {
    QString out;
    int exitCode;
};

// args: the program name, then the command's options and its file.
QString RunInspect(const QStringList& args);

} // namespace tessary
