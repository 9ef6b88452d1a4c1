// A temporary folder removed with the test, whole-file bytes, and a writer
// that lays out little-endian records by hand, independently of the
// library's writers, so that a mistake shared by a reader and its writer
// still shows.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kvtest {

using Bytes = std::vector<std::uint8_t>;

class TempDir {
public:
    TempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "tessary-test-XXXXXX").string();
        if (!::mkdtemp(tmpl.data())) throw std::runtime_error("mkdtemp failed");
        path_ = tmpl;
    }
    ~TempDir() {
        std::error_code ec;
        // A test may have taken the write permission away.
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
        std::filesystem::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string File(const std::string& name) const { return (path_ / name).string(); }
    // With a trailing "/", as the catalogue takes its folders.
    std::string Dir() const { return path_.string() + "/"; }
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline Bytes ReadBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

inline void WriteBytes(const std::filesystem::path& p, const Bytes& b) {
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size()));
}

// Every entry below root: relative path -> "dir" or the file's bytes.
inline std::map<std::string, std::string> TreeDigest(const std::filesystem::path& root) {
    std::map<std::string, std::string> m;
    for (const auto& e : std::filesystem::recursive_directory_iterator(root)) {
        const std::string rel = std::filesystem::relative(e.path(), root).string();
        if (e.is_directory()) {
            m[rel] = "dir";
        } else {
            const Bytes b = ReadBytes(e.path());
            m[rel].assign(b.begin(), b.end());
        }
    }
    return m;
}

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

// Little-endian primitives of the record files; Mark remembers where a named
// field starts.
struct ByteWriter {
    Bytes b;
    std::map<std::string, std::size_t> marks;

    ByteWriter& Mark(const std::string& name) {
        marks[name] = b.size();
        return *this;
    }
    ByteWriter& Raw(const void* p, std::size_t n) {
        const auto* c = static_cast<const std::uint8_t*>(p);
        b.insert(b.end(), c, c + n);
        return *this;
    }
    ByteWriter& Raw(std::string_view s) { return Raw(s.data(), s.size()); }
    ByteWriter& U8(std::uint8_t v) { return Raw(&v, 1); }
    ByteWriter& U16(std::uint16_t v) { return Le(v, 2); }
    ByteWriter& I32(std::int32_t v) { return Le(std::uint32_t(v), 4); }
    ByteWriter& I64(std::int64_t v) { return Le(std::uint64_t(v), 8); }
    ByteWriter& F64(double v) {
        std::uint64_t u;
        std::memcpy(&u, &v, 8);
        return Le(u, 8);
    }
    ByteWriter& Zeros(int ints) {
        for (int i = 0; i < ints; ++i) I32(0);
        return *this;
    }
    ByteWriter& Short(std::string_view s) { return U8(std::uint8_t(s.size())).Raw(s); }
    ByteWriter& Str(std::string_view s) { return I32(std::int32_t(s.size())).Raw(s); }
    ByteWriter& NumX(std::uint32_t v) {
        if (v < 255) return U8(std::uint8_t(v));
        return U8(255).U8(std::uint8_t(v)).U8(std::uint8_t(v >> 8)).U8(std::uint8_t(v >> 16));
    }
    ByteWriter& StrX(std::string_view s) { return NumX(std::uint32_t(s.size())).Raw(s); }
    void Patch(std::size_t at, std::int32_t v) {
        for (int i = 0; i < 4; ++i) b[at + std::size_t(i)] = std::uint8_t(std::uint32_t(v) >> (8 * i));
    }

private:
    ByteWriter& Le(std::uint64_t v, int n) {
        for (int i = 0; i < n; ++i) b.push_back(std::uint8_t(v >> (8 * i)));
        return *this;
    }
};

} // namespace kvtest
