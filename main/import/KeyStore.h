// The client-file key in the desktop's secret store (the Secret Service on
// Linux) through QtKeychain: service "Tessary", account "ClientFileKey".
// QtKeychain's jobs are asynchronous; each call here runs its job to the end
// in a local event loop, so a QCoreApplication must exist. Nothing ever falls
// back to a plain-text file.
#pragma once

#include <QString>

namespace tessary {

inline constexpr const char* kKeyringService = "Tessary";
inline constexpr const char* kKeyringAccount = "ClientFileKey";

struct TKeyringRead {
    bool Reached = false; // the secret store answered (with or without a key)
    QString Key;          // empty when none is stored
    QString Error;        // why the store was not reached
};

class TKeyStore {
public:
    TKeyringRead Read() const;
    // Whether a secret store answers; Error() of Read() says why not.
    bool Available() const { return Read().Reached; }
    // "" on success, else the reason.
    QString Write(const QString& key) const;
    // Removing a key that is not stored succeeds.
    QString Remove() const;
};

} // namespace tessary
