// Scanning a data directory of 5,000 client folders and reading every header,
// beside a raw baseline in the same run: list the folders and read the same
// files' bytes, nothing more.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "../common/BenchSupport.h"
#include "catalogue/KvFnProjHdr.h"

namespace {

namespace fs = std::filesystem;
using tessary_bench::TempFolder;

constexpr int ClientCount = 5000;

// Generated once for the whole run and removed at exit.
const std::string& Dir() {
    static const TempFolder folder("catalogue");
    static const std::string dir = [] {
        tessary_bench::WriteClientFolders(folder.Path().string() + "/", ClientCount, 5, 1);
        return folder.Path().string() + "/";
    }();
    return dir;
}

void BM_CatalogueScan(benchmark::State& state) {
    const std::string& dir = Dir();
    for (auto _ : state) {
        kv::TProjHdrLst list(dir, "", 0, kv::kDefaultLibrarySettings);
        list.Load(false);
        if (list.Count() != ClientCount) state.SkipWithError("wrong client count");
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * ClientCount);
}

void BM_RawListAndRead(benchmark::State& state) {
    const std::string& dir = Dir();
    std::vector<char> buffer;
    for (auto _ : state) {
        std::int64_t files = 0, bytes = 0;
        for (const auto& e : fs::directory_iterator(dir)) {
            if (!e.is_directory()) continue;
            bytes += tessary_bench::ReadFileBytes(e.path().string() + "/Models.dat", buffer);
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
