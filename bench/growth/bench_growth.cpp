// How the import's costs grow with the size of a client file: the same work
// at n and 10 n; docs/performance.md reports each ratio, which stays near 10
// for work that is linear or n log n and near 100 for quadratic work.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "../common/BenchSupport.h"
#include "catalogue/KvFnModels.h"
#include "demo/DemoChart.h"
#include "import/ImportSession.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"
#include "model/KvFnOwnership.h"
#include "parties/KvFnParty.h"

namespace fs = std::filesystem;
namespace D = kv::DemoEntry;

namespace {

std::unique_ptr<kv::TFinItem> Item(kv::TModelData& m, std::int32_t entryID, std::int32_t id) {
    const kv::TEntry* e = m.Entries()->GetEntryByID(entryID);
    auto item = kv::ItemClassByNumber(e->ItemClassNo).Create(e, &m, id);
    item->Name = "Item " + std::to_string(id);
    return item;
}

// A personal client file whose one solution holds n accounts of the import's
// kinds, all owned by the first party; opened through the import session.
struct Accounts {
    explicit Accounts(int n) : folder("growth"), root(folder.Path()) {
        const fs::path core = root / "Meridel" / "Core", data = root / "Meridel" / "Data";
        fs::create_directories(core);
        kv::WriteDemoChart(0, core.string());
        kv::TClientFileSpec clientFile;
        clientFile.Name = "Big";
        kv::WriteClientFolder(data.string() + "/", "md_db1_Big", 0, clientFile);
        auto chart = kv::MakeDemoChart(0, (core / "Entries.dat").string());
        kv::TModels models(data.string() + "/", "Main", "md_db1_Big/", kv::kDefaultLibrarySettings);
        kv::TModelData m(0, nullptr, &models, &models, nullptr,
                         (data / "md_db1_Big" / "Main" / "FinItems.dat").string(), chart.get(),
                         kv::kDefaultLibrarySettings);
        m.AddParticipant(kv::CreateParty(0, 1, 1, 0))->FirstName = "Ann";
        const std::int32_t kinds[] = {D::LIRA, D::NonReg, D::TFSA, D::RRSP, D::DCP, D::InvestAccount};
        for (int i = 0; i < n; ++i) {
            auto item = Item(m, kinds[i % 6], i + 1);
            item->Value = 1000.0 + i;
            item->SpecProps.Add("OwnerID=1");
            item->AfterRead();
            m.Add(std::move(item));
        }
        m.Save();
        session = std::make_unique<tessary::TImportSession>(
            tessary::TFolderOverrides{QString::fromStdString(root.string()), {}, {}});
        session->ChooseProduct(0);
        session->ChooseFile(0);
        session->ChooseSolution(0);
    }
    tessary_bench::TempFolder folder;
    fs::path root;
    std::unique_ptr<tessary::TImportSession> session; // closed before its folder goes
};

void BM_ImportAccounts(benchmark::State& state) {
    Accounts fixture(static_cast<int>(state.range(0)));
    const kv::TParticipant* party = fixture.session->Parties().front();
    for (auto _ : state) benchmark::DoNotOptimize(fixture.session->Collect(party, nullptr));
}
BENCHMARK(BM_ImportAccounts)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

// A corporation with one common share class and n holdings of the one
// shareholder asked about, each under a top-level item of its own.
struct Holdings {
    explicit Holdings(int n)
        : chart(kv::MakeDemoChart(1, "")), models("", "Main", "", kv::kDefaultLibrarySettings),
          model(1, nullptr, &models, &models, nullptr, "", chart.get(), kv::kDefaultLibrarySettings) {
        model.AddParticipant(kv::CreateParty(1, 1, 1, 150)); // the corporation
        model.AddParticipant(kv::CreateParty(1, 2, 40, 0));  // the shareholder
        for (int i = 0; i < n; ++i) {
            auto holding = Item(model, D::SharesHeld, 1000 + i);
            for (const std::string& p : {std::string("CorpID=1"), "ShareClassID=" + std::to_string(1000 + n),
                                         std::string("SharesHeld=1"), std::string("OwnerID=2")})
                holding->SpecProps.Add(p);
            holding->AfterRead();
            model.Add(std::move(holding));
        }
        auto common = Item(model, D::CorpShares, 1000 + n); // last: each walk would pass every holding
        for (const char* p : {"ShareClass=A", "ShareCount=1000000", "AsCommon=1", "OwnerID=1"})
            common->SpecProps.Add(p);
        common->AfterRead();
        model.Add(std::move(common));
    }
    std::unique_ptr<kv::TEntries> chart;
    kv::TModels models;
    kv::TModelData model;
};

void BM_CorporateHoldings(benchmark::State& state) {
    Holdings fixture(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(kv::GetProcCommonSharesOwned(fixture.model, 1, 2));
    if (kv::GetProcCommonSharesOwned(fixture.model, 1, 2) * 1000000 != double(state.range(0)))
        state.SkipWithError("wrong share");
}
BENCHMARK(BM_CorporateHoldings)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
