// Helpers of the catalogue tests: temporary folders, raw file bytes, the
// configured key, and a digest of a whole folder tree.
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

namespace cattest {

namespace fs = std::filesystem;

class TempDir {
public:
    TempDir() {
        std::string tmpl = (fs::temp_directory_path() / "kvcat-XXXXXX").string();
        if (!::mkdtemp(tmpl.data())) throw std::runtime_error("mkdtemp failed");
        path_ = tmpl;
    }
    ~TempDir() {
        std::error_code ec;
        fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, ec);
        fs::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    // With a trailing "/".
    std::string Dir() const { return path_.string() + "/"; }
    fs::path Path() const { return path_; }

private:
    fs::path path_;
};

// The library settings of one test, with its configured client-file key (and
// the other settings the catalogue reads); the test hands them to the objects
// it makes.
struct SettingsGuard {
    explicit SettingsGuard(std::string key = {}) { settings.ClientFileKey = std::move(key); }
    operator const kv::TLibrarySettings&() const { return settings; }
    kv::TLibrarySettings settings;
};

inline std::vector<std::uint8_t> ReadBytes(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const fs::path& p, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

// Little-endian bytes built by hand, independent of the library's writer.
class Bytes {
public:
    Bytes& Int(std::int32_t v) {
        for (int i = 0; i < 4; ++i) b.push_back(std::uint8_t(std::uint32_t(v) >> (8 * i)));
        return *this;
    }
    Bytes& Byte(std::uint8_t v) {
        b.push_back(v);
        return *this;
    }
    Bytes& Raw(std::string_view s) {
        b.insert(b.end(), s.begin(), s.end());
        return *this;
    }
    Bytes& Short(std::string_view s) { return Byte(std::uint8_t(s.size())).Raw(s); }
    Bytes& Str(std::string_view s) { return Int(std::int32_t(s.size())).Raw(s); }
    std::vector<std::uint8_t> b;
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
