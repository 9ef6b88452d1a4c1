// Loading a large solution beside reading its bytes raw, in the same run.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/KvFnModels.h"
#include "entries/KvEntriesDemo.h"
#include "model/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"

namespace fs = std::filesystem;
namespace D = kv::DemoEntry;

namespace {

struct Fixture {
    Fixture() {
        char tmpl[] = "/tmp/tessary-bench-model-XXXXXX";
        dir = mkdtemp(tmpl);
        path = (dir / "FinItems.dat").string();
        entries = kv::MakeDemoChart(0, (dir / "Entries.dat").string());
        models = std::make_unique<kv::TModels>(dir.string() + "/", "Main", "md_db1/");
        auto m = New();
        for (int p = 1; p <= 50; ++p) {
            auto party = kv::CreateParty(0, p, p <= 2 ? 1 : 0, p % 10 == 0 ? 150 : 0);
            party->FirstName = "First" + std::to_string(p);
            party->LastName = "Last" + std::to_string(p);
            m->AddParticipant(std::move(party));
        }
        const std::int32_t kinds[] = {D::NonReg, D::TFSA, D::RRSP, D::LIRA, D::DCP, D::BankAccount};
        std::int32_t id = 1;
        for (int top = 0; top < 5000; ++top) {
            kv::TFinItem* parent = nullptr;
            for (int level = 0; level < 4; ++level) {   // one item and three children: 20,000 items
                kv::TEntry* e = entries->GetEntryByID(kinds[(top + level) % 6]);
                auto item = kv::ItemClassByNumber(e->ItemClassNo).Create(e, m.get(), id++);
                item->Name = "Account " + std::to_string(id);
                item->Value = 1000.0 * id;
                item->Shares = std::make_unique<kv::TSharesList>();
                item->Shares->AddShare(m->GetParticipantByID(1), 1, 2);
                item->Shares->AddShare(m->GetParticipantByID(2), 2, 2);
                for (const char* prop : {"OwnerID=1", "RATE=4.5", "NOWVAL=12500.25", "RRSPTYPE=0", "WDSTART=2031"})
                    item->SpecProps.Add(prop);
                for (int k = 0; k < 2; ++k) {
                    kv::TPay pay(k);
                    pay.Value = 100 * k;
                    pay.Int1 = 2026 + k;
                    pay.Payers.push_back({m->GetParticipantByID(1), 1, 1.0});
                    item->AddPay(std::move(pay));
                }
                parent = parent ? parent->AddChild(std::move(item)) : m->Add(std::move(item));
            }
        }
        m->Save();
        bytes = static_cast<std::int64_t>(fs::file_size(path));
    }
    ~Fixture() {
        std::error_code ec;
        fs::remove_all(dir, ec);
    }
    std::unique_ptr<kv::TModelData> New() {
        return std::make_unique<kv::TModelData>(0, nullptr, models.get(), models.get(), nullptr, path, entries.get());
    }
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
    std::vector<char> buf(static_cast<std::size_t>(f.bytes));
    for (auto _ : state) {
        const int fd = open(f.path.c_str(), O_RDONLY);
        const ssize_t n = read(fd, buf.data(), buf.size());
        close(fd);
        benchmark::DoNotOptimize(n);
        benchmark::DoNotOptimize(buf.data());
    }
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
        state.PauseTiming();   // freeing the model is not part of loading it
        m.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * f.bytes);
    state.counters["file_MB"] = static_cast<double>(f.bytes) / 1e6;
    state.counters["model_MB"] = static_cast<double>(inUse) / 1e6;
}
BENCHMARK(BM_LoadSolution)->Unit(benchmark::kMillisecond);

} // namespace
