// Program-wide settings of the planning library. The library reads no
// configuration of its own: the window and the command line fill these in.
#pragma once

#include <cstddef>
#include <string>

#include "KvErrors.h"

namespace kv {

struct TProgramSettings {
    // Configured client-file key (settings "Keys/ClientFileKey", --key or
    // TESSARY_CLIENT_KEY); empty when none is configured.
    std::string ClientFileKey;
    bool ShowHiddenNames = false;   // show solution names a client file hides
    bool ForbidAltDir = false;      // never read client folders from the alternate directory
    bool AnyParty = false;          // party -1 owns everything in ownership tests
    int CurrentYear = 0;            // the planning library's current year
    double PlanningDate = 0;        // current planning date (day number); 0: today
    int DefaultFeesTaxDeductible = 0;   // whether portfolio fees are deductible unless said
    bool French = false;            // interface language of item texts
};

inline TProgramSettings& ProgramSettings() {
    static TProgramSettings settings;
    return settings;
}

// Every enciphered text hashes the whole key 32 times, so a seed of megabytes
// would make each name cost seconds. Seeds the products write are a few dozen
// bytes; 4 KiB leaves ample room and keeps a key derivation below a millisecond.
inline constexpr std::size_t MaxKeySeedBytes = 4096;

// The refusal of a seed beyond MaxKeySeedBytes; where names the client file.
inline EKvError KeySeedTooLong(const std::string& where, std::size_t size) {
    return EKvError("Client file \"" + where + "\" has a key seed of " + std::to_string(size) +
                    " bytes; at most " + std::to_string(MaxKeySeedBytes) + " are accepted.");
}

// Key of a client file's enciphered texts: the configured key followed by the
// client header's key seed. Without a configured key a protected file cannot
// be read, and the message says which one.
inline std::string RunTimeKey(const std::string& clientName, const std::string& keySeed) {
    const std::string& configured = ProgramSettings().ClientFileKey;
    if (configured.empty())
        throw EKeyMissing("Client file \"" + clientName + "\" is protected and no client-file key is configured.");
    if (keySeed.size() > MaxKeySeedBytes) throw KeySeedTooLong(clientName, keySeed.size());
    return configured + keySeed;
}

} // namespace kv
