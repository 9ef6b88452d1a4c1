// Helpers of the catalogue tests: the configured key and a digest of a whole
// folder tree.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <openssl/evp.h>
#include <unistd.h>

#include "KvSettings.h"
#include "TestFiles.h"

namespace cattest {

namespace fs = std::filesystem;

using kvtest::ReadBytes;
using kvtest::TempDir;
using kvtest::WriteBytes;
using Bytes = kvtest::ByteWriter;

// Sets the configured client-file key (and the other settings the catalogue
// reads) for one test and restores them afterwards.
class SettingsGuard {
public:
    explicit SettingsGuard(std::string key = {}) : saved_(kv::ProgramSettings()) {
        kv::ProgramSettings().ClientFileKey = std::move(key);
    }
    ~SettingsGuard() { kv::ProgramSettings() = saved_; }

private:
    kv::TProgramSettings saved_;
};

inline std::string Sha256(const std::vector<std::uint8_t>& data) {
    unsigned char md[EVP_MAX_MD_SIZE];
    unsigned int len = 0;
    EVP_Digest(data.data(), data.size(), md, &len, EVP_sha256(), nullptr);
    static const char* hex = "0123456789abcdef";
    std::string s;
    for (unsigned i = 0; i < len; ++i) {
        s += hex[md[i] >> 4];
        s += hex[md[i] & 15];
    }
    return s;
}

// Every entry below root: relative path -> "dir" or the file's SHA-256.
inline std::map<std::string, std::string> TreeDigest(const fs::path& root) {
    std::map<std::string, std::string> m;
    for (const auto& e : fs::recursive_directory_iterator(root)) {
        const std::string rel = fs::relative(e.path(), root).string();
        m[rel] = e.is_directory() ? "dir" : Sha256(ReadBytes(e.path()));
    }
    return m;
}

// The same digest with top-level names replaced as renames would.
inline std::map<std::string, std::string> Renamed(const std::map<std::string, std::string>& digest,
                                                 const std::map<std::string, std::string>& renames) {
    std::map<std::string, std::string> m;
    for (const auto& [rel, value] : digest) {
        const std::size_t slash = rel.find('/');
        const std::string top = rel.substr(0, slash);
        const auto it = renames.find(top);
        const std::string rest = slash == std::string::npos ? "" : rel.substr(slash);
        m[(it == renames.end() ? top : it->second) + rest] = value;
    }
    return m;
}

inline std::vector<std::string> TopLevel(const fs::path& root) {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(root)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace cattest
