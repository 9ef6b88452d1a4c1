// Builds client folders for tests, benchmarks and demo data: a "Models.dat"
// with its solution lists and an empty sub-folder per solution. Never used on
// an adviser's data directory.
#pragma once

#include <cstdint>
#include <string>

#include "KvSettings.h"

namespace kv {

struct TClientFileSpec {
    std::string Name = "Client";
    std::int32_t ID = 0;         // 0: the reader substitutes one from the path
    int Solutions = 1;           // entries of the "Main" list
    int NeedsSolutions = 0;      // entries of the "Needs" list
    bool Protected = false;      // encipher header texts 1-2 and the solution texts
    std::string KeySeed;         // with the configured key, the run-time key
    bool HideNames = false;
    double Date = 0;             // day count since 30 December 1899
    std::string SolutionPrefix = "Solution ";  // names are prefix + 1, 2, ...
    bool TrailingSections = true;
};

// Writes <baseDir>/<folder>/Models.dat for the given product kind and creates
// the folders of every solution (Main, Main1, ..., Needs, Needs1, ...). Creates
// baseDir/folder when missing. Returns the header file's path. A protected
// client file needs a client-file key in the settings (EKeyMissing otherwise).
std::string WriteClientFolder(const std::string& baseDir, const std::string& folder, std::uint8_t kind,
                              const TClientFileSpec& clientFile,
                              const TLibrarySettings& settings = kDefaultLibrarySettings);

} // namespace kv
