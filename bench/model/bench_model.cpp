// Loading a large solution beside reading its bytes raw, in the same run.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/KvFnModels.h"
#include "demo/DemoChart.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"
#include "../common/BenchSupport.h"
#include "../common/LargeSolution.h"

namespace fs = std::filesystem;

namespace {

struct Fixture {
    Fixture() : folder("model"), dir(folder.Path()) {
        path = (dir / "FinItems.dat").string();
        entries = kv::MakeDemoChart(0, (dir / "Entries.dat").string());
        models = std::make_unique<kv::TModels>(dir.string() + "/", "Main", "md_db1/", kv::kDefaultLibrarySettings);
        tessary_bench::WriteLargeSolution(path, entries.get(), models.get());
        bytes = static_cast<std::int64_t>(fs::file_size(path));
    }
    std::unique_ptr<kv::TModelData> New() {
        return std::make_unique<kv::TModelData>(0, nullptr, models.get(), models.get(), nullptr, path, entries.get(),
                                                models->Settings());
    }
    tessary_bench::TempFolder folder;
    fs::path dir;
    std::string path;
    std::int64_t bytes = 0;
    std::unique_ptr<kv::TEntries> entries;
    std::unique_ptr<kv::TModels> models;
};

Fixture& Data() {
    static Fixture f;
    return f;
}

void BM_RawRead(benchmark::State& state) {
    Fixture& f = Data();
    std::vector<char> buf;
    for (auto _ : state) benchmark::DoNotOptimize(tessary_bench::ReadFileBytes(f.path, buf));
    state.SetBytesProcessed(state.iterations() * f.bytes);
}
BENCHMARK(BM_RawRead)->Unit(benchmark::kMillisecond);

void BM_LoadSolution(benchmark::State& state) {
    Fixture& f = Data();
    std::size_t inUse = 0;
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        auto m = f.New();
        m->Load();
        inUse = mallinfo2().uordblks - before;
        benchmark::DoNotOptimize(m.get());
        state.PauseTiming(); // freeing the model is not part of loading it
        m.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * f.bytes);
    state.counters["file_MB"] = static_cast<double>(f.bytes) / 1e6;
    state.counters["model_MB"] = static_cast<double>(inUse) / 1e6;
}
BENCHMARK(BM_LoadSolution)->Unit(benchmark::kMillisecond);

} // namespace
