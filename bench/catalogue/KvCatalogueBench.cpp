// Scanning a data directory of 5,000 client folders and reading every header,
// beside a raw baseline in the same run: list the folders and read the same
// files' bytes, nothing more.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "catalogue/KvCatalogueFixture.h"
#include "catalogue/KvFnProjHdr.h"

namespace {

namespace fs = std::filesystem;

constexpr int ClientCount = 5000;

// Generated once for the whole run and removed at exit.
class DataDir {
public:
    DataDir() {
        std::string tmpl = (fs::temp_directory_path() / "kvcat-bench-XXXXXX").string();
        if (!::mkdtemp(tmpl.data())) std::abort();
        dir_ = tmpl + "/";
        for (int i = 1; i <= ClientCount; ++i) {
            kv::TClientFileSpec clientFile;
            clientFile.Name = "Client " + std::to_string(i);
            clientFile.ID = 100000 + i;
            clientFile.Solutions = 5;
            clientFile.Date = 45000 + i;
            // Already named after the client, as a data directory is after its first scan.
            kv::WriteClientFolder(dir_, "md_db" + std::to_string(i) + "_Client " + std::to_string(i), 0, clientFile);
        }
    }
    ~DataDir() {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    const std::string& Dir() const { return dir_; }

private:
    std::string dir_;
};

const DataDir& Data() {
    static const DataDir data;
    return data;
}

void BM_CatalogueScan(benchmark::State& state) {
    const std::string& dir = Data().Dir();
    for (auto _ : state) {
        kv::TProjHdrLst list(dir, "", 0);
        list.Load(false);
        if (list.Count() != ClientCount) state.SkipWithError("wrong client count");
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * ClientCount);
}

void BM_RawListAndRead(benchmark::State& state) {
    const std::string& dir = Data().Dir();
    std::vector<char> buffer;
    for (auto _ : state) {
        std::size_t files = 0, bytes = 0;
        for (const auto& e : fs::directory_iterator(dir)) {
            if (!e.is_directory()) continue;
            const std::string path = e.path().string() + "/Models.dat";
            const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
            if (fd < 0) continue;
            buffer.resize(64 * 1024);
            ssize_t n;
            while ((n = ::read(fd, buffer.data(), buffer.size())) > 0) bytes += std::size_t(n);
            ::close(fd);
            ++files;
        }
        if (files != ClientCount) state.SkipWithError("wrong file count");
        benchmark::DoNotOptimize(bytes);
    }
    state.SetItemsProcessed(state.iterations() * ClientCount);
}

} // namespace

BENCHMARK(BM_CatalogueScan)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_RawListAndRead)->Unit(benchmark::kMillisecond)->UseRealTime();
