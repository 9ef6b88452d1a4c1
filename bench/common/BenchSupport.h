// What the benchmarks share: a scratch folder, the raw-read baseline and the
// data directory of many small client files.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "catalogue/KvCatalogueFixture.h"

namespace tessary_bench {

namespace fs = std::filesystem;

// A fresh folder under the system's temporary folder, removed with its content.
class TempFolder {
public:
    explicit TempFolder(const std::string& what) {
        std::string tmpl = (fs::temp_directory_path() / ("tessary-bench-" + what + "-XXXXXX")).string();
        if (!::mkdtemp(tmpl.data())) std::abort();
        path_ = tmpl;
    }
    ~TempFolder() {
        std::error_code ec;
        fs::remove_all(path_, ec);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const fs::path& Path() const { return path_; }

private:
    fs::path path_;
};

// The baseline: a file's bytes read with plain system calls, nothing parsed.
inline std::int64_t ReadFileBytes(const std::string& path, std::vector<char>& buffer) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return 0;
    buffer.resize(256 * 1024);
    std::int64_t total = 0;
    for (ssize_t n; (n = ::read(fd, buffer.data(), buffer.size())) > 0;) total += n;
    ::close(fd);
    return total;
}

// count Meridel client folders "md_dbN_Client N", already named as a scan
// leaves them; dates a fraction of a day apart when dayStep says so.
inline void WriteClientFolders(const std::string& dataDir, int count, int solutions, double dayStep) {
    for (int i = 1; i <= count; ++i) {
        kv::TClientFileSpec clientFile;
        clientFile.Name = "Client " + std::to_string(i);
        clientFile.ID = 100000 + i;
        clientFile.Solutions = solutions;
        clientFile.Date = 45000 + i * dayStep;
        kv::WriteClientFolder(dataDir, "md_db" + std::to_string(i) + "_" + clientFile.Name, 0, clientFile);
    }
}

} // namespace tessary_bench
