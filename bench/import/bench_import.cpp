// The import dialog's two slow steps beside raw reads of the same bytes, in
// the same run: opening it on a data directory of 5,000 client files until the
// file list is filled, and choosing a solution of 20,000 items until the party
// list is filled.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "../common/BenchSupport.h"
#include "../common/LargeSolution.h"
#include "catalogue/KvFnModels.h"
#include "parties/KvFnParty.h"
#include "window/ImportDialog.h"

namespace fs = std::filesystem;

namespace {

constexpr int kClientFiles = 5000;

using tessary_bench::ReadFileBytes;

// A data root whose Meridel holds 5,000 client files and Basalto one client
// file with the large solution.
struct Fixture {
    Fixture() : folder("import"), root(folder.Path()) {
        const fs::path mdData = root / "Meridel" / "Data", bsData = root / "Basalto" / "Data";
        fs::create_directories(root / "Meridel" / "Core");
        fs::create_directories(root / "Basalto" / "Core");
        mdChart = kv::MakeDemoChart(0, (root / "Meridel" / "Core" / "Entries.dat").string());
        mdChart->Save((root / "Meridel" / "Core" / "Entries.dat").string());
        bsChart = kv::MakeDemoChart(1, (root / "Basalto" / "Core" / "Entries.dat").string());
        bsChart->Save((root / "Basalto" / "Core" / "Entries.dat").string());
        tessary_bench::WriteClientFolders(mdData.string() + "/", kClientFiles, 3, 0.37);
        // The file the dialog shows first gets a small solution, so opening runs the whole cascade.
        tessary::TFolderOverrides folders;
        folders.DataRoot = QString::fromStdString(root.string());
        {
            tessary::TImportSession s(folders);
            s.ChooseProduct(0);
            s.ChooseFile(0);
            const std::string path = s.Solutions()->Path(0) + "FinItems.dat";
            kv::TModelData small(0, nullptr, s.Solutions(), s.Solutions(), nullptr, path, mdChart.get(),
                                 kv::kDefaultLibrarySettings);
            auto party = kv::CreateParty(0, 1, 1, 0);
            party->FirstName = "Only";
            small.AddParticipant(std::move(party));
            small.Save();
        }
        kv::TClientFileSpec big;
        big.Name = "Large Holdings";
        big.ID = 7;
        kv::WriteClientFolder(bsData.string() + "/", "bs_db1_Large Holdings", 1, big);
        {
            tessary::TImportSession s(folders);
            s.ChooseProduct(1);
            s.ChooseFile(0);
            solution = s.Solutions()->Path(0) + "FinItems.dat";
            tessary_bench::WriteLargeSolution(solution, bsChart.get(), s.Solutions(), 1);
        }
        overrides = folders;
    }
    tessary_bench::TempFolder folder;
    fs::path root;
    std::unique_ptr<kv::TEntries> mdChart, bsChart;
    std::string solution;
    tessary::TFolderOverrides overrides;
};

Fixture& Data() {
    static Fixture f;
    return f;
}

// The same bytes the dialog reads: every header, the chart, the first solution.
void BM_RawReadClientFiles(benchmark::State& state) {
    const Fixture& f = Data();
    std::vector<char> buffer;
    for (auto _ : state) {
        std::int64_t bytes = 0;
        for (const auto& e : fs::directory_iterator(f.root / "Meridel" / "Data"))
            bytes += ReadFileBytes((e.path() / "Models.dat").string(), buffer);
        bytes += ReadFileBytes((f.root / "Meridel" / "Core" / "Entries.dat").string(), buffer);
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(BM_RawReadClientFiles)->Unit(benchmark::kMillisecond);

void BM_OpenDialogFileList(benchmark::State& state) {
    const Fixture& f = Data();
    for (auto _ : state) {
        auto dlg = std::make_unique<tessary::TdlgFromFile>(f.overrides);
        if (dlg->fileCombo->count() != kClientFiles || dlg->partyCombo->count() != 1) {
            const std::string why = "file list not filled (" + std::to_string(dlg->fileCombo->count()) + " files, " +
                                    std::to_string(dlg->partyCombo->count()) + " parties) " +
                                    dlg->PendingError().toStdString();
            state.SkipWithError(why.c_str());
            break;
        }
        state.PauseTiming(); // closing the dialog is not part of opening it
        dlg.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenDialogFileList)->Unit(benchmark::kMillisecond);

void BM_RawReadSolution(benchmark::State& state) {
    const Fixture& f = Data();
    std::vector<char> buffer;
    for (auto _ : state) {
        std::int64_t bytes = ReadFileBytes(f.solution, buffer);
        bytes += ReadFileBytes((f.root / "Basalto" / "Core" / "Entries.dat").string(), buffer);
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(BM_RawReadSolution)->Unit(benchmark::kMillisecond);

void BM_ChooseLargeSolution(benchmark::State& state) {
    const Fixture& f = Data();
    tessary::TdlgFromFile dlg(f.overrides);
    dlg.productBsRadio->setChecked(true);
    dlg.cbMDClick();
    for (auto _ : state) {
        dlg.cmbSolutionChange();
        if (dlg.partyCombo->count() == 0) {
            state.SkipWithError(("party list not filled " + dlg.PendingError()).toStdString().c_str());
            break;
        }
    }
    state.counters["items"] = 20000;
}
BENCHMARK(BM_ChooseLargeSolution)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    Data();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
