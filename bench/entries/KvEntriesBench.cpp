// Loading a chart of 5,000 entries against reading the same file's bytes, to
// show what parsing, indexing and tree building add to the plain file read.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "../common/BenchSupport.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"

namespace {

constexpr int kEntries = 5000;
constexpr int kRoots = 50;

const std::filesystem::path& Folder() {
    static const tessary_bench::TempFolder folder("entries");
    return folder.Path();
}

// Sizes as in a product's chart: names of 15-40 characters, a help text of a
// few sentences, one to four special properties, three levels under 50 roots.
const std::string& ChartFile() {
    static const std::string path = [] {
        const std::string p = (Folder() / "Entries.dat").string();
        kv::TEntries c(0, p);
        for (int i = 0; i < 40; ++i)
            c.AddAcc({std::to_string(i / 10) + "." + std::to_string(i), "Account group " + std::to_string(i), "", "",
                      "", "", "", "", "", "", ""});
        for (int i = 0; i < 12; ++i) c.AddEntryType(std::uint8_t(i), "Entry type " + std::to_string(i));
        const std::string help =
            "Amounts of this kind are entered per year. They are projected with the rate of the plan and "
            "taxed as the class of the item says; see the help for details.";
        for (int i = 0; i < kEntries; ++i) {
            kv::TEntry& e = c.AddEntry(1000 + i, i % 252, "Planning entry number " + std::to_string(i) + " (personal)",
                                       std::uint8_t(i % 9));
            e.FrenchName = "Entr\xC3\xA9"
                           "e de planification " +
                           std::to_string(i);
            e.Name2 = "Entry " + std::to_string(i);
            e.LongText = help;
            e.EntryType = c.EntryTypes()[std::size_t(i % 12)].get();
            e.Ints = {-(i % 50), i, 1};
            e.ExtraInts = {i, 0, 1, 2};
            e.SpecProps.push_back("EGRP=HOME,REALEST");
            for (int k = 0; k < i % 4; ++k) e.SpecProps.push_back("PROP" + std::to_string(k) + "=" + std::to_string(i));
        }
        // Each root heads a block of 100 entries: ten children with nine leaves each.
        const auto& all = c.EntriesByID();
        for (int r = 0; r < kRoots; ++r) {
            kv::TEntry& root = *all[std::size_t(r * 100)];
            root.TreeKeys = {r, -1, -1, -1};
            for (int k = 0; k < 10; ++k) {
                const std::size_t mid = std::size_t(r * 100 + 1 + k * 10);
                if (mid >= all.size()) break;
                root.AddChild(all[mid].get());
                for (int l = 1; l < 10 && mid + std::size_t(l) < std::size_t((r + 1) * 100); ++l)
                    all[mid]->AddChild(all[mid + std::size_t(l)].get());
            }
            c.AddRootNode(root, r >= kRoots / 2);
        }
        for (int i = 0; i < 60; ++i) c.AddEnTaxLabel("Tax label " + std::to_string(i));
        c.SetVersion(kv::ExpectedEntriesVersion(0));
        c.Save(p);
        return p;
    }();
    return path;
}

void SetBytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * std::int64_t(std::filesystem::file_size(ChartFile())));
}

void BM_ReadRaw(benchmark::State& state) {
    const std::string& path = ChartFile();
    for (auto _ : state) {
        kv::TBufReadFile r(path, true);
        benchmark::DoNotOptimize(r.Size());
    }
    SetBytes(state);
}
BENCHMARK(BM_ReadRaw);

void BM_LoadEntries(benchmark::State& state) {
    const std::string& path = ChartFile();
    for (auto _ : state) {
        kv::TEntries t(0, path);
        t.Load(true);
        benchmark::DoNotOptimize(t.GetEntryByID(1000 + kEntries - 1));
    }
    SetBytes(state);
}
BENCHMARK(BM_LoadEntries);

// A lookup per item of a large solution.
void BM_LookupById(benchmark::State& state) {
    kv::TEntries t(0, ChartFile());
    t.Load(true);
    std::int32_t id = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(t.GetEntryByID(1000 + id));
        id = (id + 7919) % kEntries;
    }
}
BENCHMARK(BM_LookupById);

} // namespace
