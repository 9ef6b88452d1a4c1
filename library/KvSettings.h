// Settings of the planning library. The library reads no configuration, no
// environment and no clock of its own: the caller (the window, the command
// line, the demo writer, a test) owns a TLibrarySettings, fills it in and
// hands it to the catalogue (TProjHdrLst, TProjHdr, TModels) and to the model
// (TModelData) at construction; items reach it through their TItemOwner. The
// objects keep a reference: the caller keeps the settings alive as long as
// they live, and a change it makes is seen by the next query.
#pragma once

#include <cstddef>
#include <string>

#include "KvErrors.h"

namespace kv {

struct TLibrarySettings {
    // Configured client-file key (settings "Keys/ClientFileKey", --key or
    // TESSARY_CLIENT_KEY); empty when none is configured.
    std::string ClientFileKey;
    bool ShowHiddenNames = false; // show solution names a client file hides
    bool ForbidAltDir = false;    // never read client folders from the alternate directory
    bool AnyParty = false;        // party -1 owns everything in ownership tests
    // The planning date: a day number (days since 30 December 1899, see
    // decl/KvDayNumbers.h), normally the caller's today. The library never
    // reads the clock.
    double PlanningDate = 0;
    int CurrentYear = 0;              // the planning year; 0: the year of PlanningDate
    int DefaultFeesTaxDeductible = 0; // whether portfolio fees are deductible unless said
    bool French = false;              // interface language of item texts
};

// The settings of an object made without any: all fields at their defaults.
// Constant; nothing writes to it.
inline const TLibrarySettings kDefaultLibrarySettings{};

// Every enciphered text hashes the whole key 32 times, so a seed of megabytes
// would make each name cost seconds. Seeds the products write are a few dozen
// bytes; 4 KiB leaves ample room and keeps a key derivation below a millisecond.
inline constexpr std::size_t MaxKeySeedBytes = 4096;

// The refusal of a seed beyond MaxKeySeedBytes; where names the client file.
inline EKvError KeySeedTooLong(const std::string& where, std::size_t size) {
    return EKvError("Client file \"" + where + "\" has a key seed of " + std::to_string(size) + " bytes; at most " +
                    std::to_string(MaxKeySeedBytes) + " are accepted.");
}

// Key of a client file's enciphered texts: the configured key followed by the
// client header's key seed. Without a configured key a protected file cannot
// be read, and the message says which one.
inline std::string RunTimeKey(const TLibrarySettings& settings, const std::string& clientName,
                              const std::string& keySeed) {
    const std::string& configured = settings.ClientFileKey;
    if (configured.empty())
        throw EKeyMissing("Client file \"" + clientName + "\" is protected and no client-file key is configured.");
    if (keySeed.size() > MaxKeySeedBytes) throw KeySeedTooLong(clientName, keySeed.size());
    return configured + keySeed;
}

} // namespace kv
