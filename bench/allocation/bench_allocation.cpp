// The Calculate button over 1,000 account rows, beside the raw baseline of
// reading every amount of the same grids once; and the growth of "allocate"
// (CSV to result grid) from 10,000 to 100,000 rows.
#include <benchmark/benchmark.h>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Grid.h"
#include "core/Totals.h"

namespace {

constexpr int kRows = 1000;

struct Grids {
    tessary::TGrid Accounts = tessary::MakeAccountsGrid();
    tessary::TGrid Classes = tessary::MakeClassesGrid();

    Grids() {
        static const char* const kKinds[] = {"Non-Reg.", "TFSAs", "RRSPs/RRIFs", "LIRAs/LIFs", "DCPs/LRIFs"};
        Accounts.SetRowCount(Accounts.FixedRows());
        for (int i = 0; i < kRows; ++i) {
            const int r = Accounts.AddRow();
            Accounts.SetText(0, r, kKinds[i % 5]);
            Accounts.SetObject(0, r, i % 5 + 1);
            for (int c = 1; c <= 3; ++c) Accounts.SetFloat(c, r, 1000.0 * (i % 17 + c));
        }
        tessary::RecomputeAccountTotals(Accounts);
        static const double kTargets[] = {10, 25, 25, 20, 5, 15};
        Classes.SetRowCount(Classes.FixedRows());
        for (int k = 0; k < 6; ++k) {
            const int r = Classes.AddRow();
            Classes.SetObject(0, r, k + 1);
            Classes.SetFloat(1, r, kTargets[k]);
        }
    }
};

void BM_ReadAmounts(benchmark::State& state) {
    const Grids g;
    for (auto _ : state) {
        double sum = 0;
        for (int r = g.Accounts.FixedRows(); r < g.Accounts.RowCount(); ++r)
            for (int c = 0; c <= 4; ++c) sum += g.Accounts.Float(c, r) + double(g.Accounts.Object(c, r));
        for (int r = g.Classes.FixedRows(); r < g.Classes.RowCount(); ++r) sum += g.Classes.Float(1, r);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_ReadAmounts)->Unit(benchmark::kMicrosecond);

void BM_Calculate1000Rows(benchmark::State& state) {
    Grids g;
    for (auto _ : state) {
        tessary::TGrid result = tessary::MakeResultGrid();
        tessary::CalculateAllocation(g.Accounts, g.Classes, result, tessary::kDesignAddAccWidth);
        benchmark::DoNotOptimize(result.RowCount());
    }
}
BENCHMARK(BM_Calculate1000Rows)->Unit(benchmark::kMicrosecond);

// What "tessary-cli allocate" does between reading the files and printing:
// n rows "Non-Reg.,1,1,1" (3n records) against the six classes.
void BM_AllocateCsvRows(benchmark::State& state) {
    std::string accounts = "Account Type,MD,BS,QR\n";
    for (std::int64_t i = 0; i < state.range(0); ++i) accounts += "Non-Reg.,1,1,1\n";
    const std::string classes = "Asset Class,%\nShort-Term Fixed,10\nMid/Long-Term Fixed,25\nEquities Canada,25\n"
                                "Equities U.S.,20\nEquities Emerging Markets,5\nEquities Global,15\n";
    for (auto _ : state) {
        tessary::TGrid a = tessary::MakeAccountsGrid(), c = tessary::MakeClassesGrid();
        tessary::TGrid result = tessary::MakeResultGrid();
        tessary::LoadAccountsCsv(accounts, a, tessary::TCsvRows::ForResult);
        tessary::LoadClassesCsv(classes, c, tessary::TCsvRows::ForResult);
        tessary::CalculateAllocation(a, c, result, tessary::kDesignAddAccWidth);
        benchmark::DoNotOptimize(result.ColCount());
    }
}
BENCHMARK(BM_AllocateCsvRows)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
