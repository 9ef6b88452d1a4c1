// Helpers of the catalogue tests: the configured key and folder listings.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "KvSettings.h"
#include "TestFiles.h"

namespace cattest {

namespace fs = std::filesystem;

using kvtest::ReadBytes;
using kvtest::Renamed;
using kvtest::TreeDigest;
using kvtest::TempDir;
using kvtest::WriteBytes;
using Bytes = kvtest::ByteWriter;

// The library settings of one test, with its configured client-file key (and
// the other settings the catalogue reads); the test hands them to the objects
// it makes.
struct SettingsGuard {
    explicit SettingsGuard(std::string key = {}) { settings.ClientFileKey = std::move(key); }
    operator const kv::TLibrarySettings&() const { return settings; }
    kv::TLibrarySettings settings;
};

// The same snapshot with top-level names replaced as renames would.
inline std::vector<std::string> TopLevel(const fs::path& root) {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(root)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace cattest
