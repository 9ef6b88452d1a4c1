// The two shapes of small files that used to make large models: a chart of
// accounts of empty tax labels and a solution whose party has empty property
// rows, each at two sizes ten times apart. Both are now refused at their
// count, so the time follows the bytes read and the ratio of the two sizes
// stays near 10; the plain read of the same file is the baseline.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "../common/BenchSupport.h"
#include "KvErrors.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"
#include "model/KvFnModelData.h"

namespace {

namespace fs = std::filesystem;

const fs::path& Folder() {
    static const tessary_bench::TempFolder folder("hostile");
    return folder.Path();
}

// Elements for range 1 (the small size) and 10 (the large one); both stay
// below the largest count a row list can store (16,777,215).
constexpr std::size_t kUnit = std::size_t(1) << 20;

std::string TaxLabelsFile(std::size_t n) {
    const std::string path = (Folder() / ("labels-" + std::to_string(n)) / "Entries.dat").string();
    if (fs::exists(path)) return path;
    fs::create_directories(fs::path(path).parent_path());
    auto chart = kv::MakeDemoChart(0, path);
    for (std::size_t i = 0; i < n; ++i) chart->AddEnTaxLabel("");
    chart->Save(path);
    return path;
}

kv::TEntries& Chart() {
    static auto chart = kv::MakeDemoChart(0, "/nonexistent/Entries.dat");
    return *chart;
}

std::string PropertyRowsFile(std::size_t n) {
    const std::string path = (Folder() / ("rows-" + std::to_string(n) + ".dat")).string();
    if (fs::exists(path)) return path;
    kv::TModelData m(0, nullptr, nullptr, nullptr, nullptr, path, &Chart(), kv::kDefaultLibrarySettings);
    auto party = kv::CreateParty(0, 1, 1, 0);
    party->Props.resize(n);
    m.AddParticipant(std::move(party));
    m.Save();
    return path;
}

void Finish(benchmark::State& state, const std::string& path) {
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(fs::file_size(path)));
    state.counters["MB"] = double(fs::file_size(path)) / 1e6;
}

void BM_ReadFileBaseline(benchmark::State& state) {
    const std::string path = PropertyRowsFile(kUnit * std::size_t(state.range(0)));
    for (auto _ : state) {
        kv::TBufReadFile r(path);
        benchmark::DoNotOptimize(r.Size());
    }
    Finish(state, path);
}

void BM_EntriesEmptyTaxLabels(benchmark::State& state) {
    const std::string path = TaxLabelsFile(kUnit * std::size_t(state.range(0)));
    for (auto _ : state) {
        kv::TEntries chart(0, path);
        try {
            chart.Load(false);
        } catch (const kv::EMemoryBudget&) {}
    }
    Finish(state, path);
}

void BM_FinItemsEmptyPropertyRows(benchmark::State& state) {
    const std::string path = PropertyRowsFile(kUnit * std::size_t(state.range(0)));
    for (auto _ : state) {
        kv::TModelData m(0, nullptr, nullptr, nullptr, nullptr, path, &Chart(), kv::kDefaultLibrarySettings);
        try {
            m.Load();
        } catch (const kv::EMemoryBudget&) {}
    }
    Finish(state, path);
}

BENCHMARK(BM_ReadFileBaseline)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EntriesEmptyTaxLabels)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FinItemsEmptyPropertyRows)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);

} // namespace
