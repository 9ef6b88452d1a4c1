// Hostile bytes as a solution's "FinItems.dat", read by TModelData::Load with
// the demo chart of accounts, then queried the way the import queries it.
// Input: byte 0 picks the setting (bits 0-1: product kind 0, 1, 2 or 4;
// bit 2: names enciphered with the demo's protected client key), the rest is
// the file. Either layout is chosen by the file's own magic.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "KvSettings.h"
#include "catalogue/KvFnModels.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"
#include "fuzz_finitems_setup.h"
#include "items/KvFnPortfolio.h"
#include "model/KvFnModelData.h"
#include "model/KvFnOwnership.h"

namespace {

constexpr const char* kPath = "/nonexistent-tessary-fuzz/Main/FinItems.dat";

struct TSetting {
    std::unique_ptr<kv::TEntries> Chart;
    std::unique_ptr<kv::TModels> Plain;
    std::unique_ptr<kv::TModels> Enciphered;
};

TSetting& SettingOf(std::uint8_t kind) {
    static TSetting settings[5];
    TSetting& s = settings[kind];
    if (!s.Chart) {
        s.Chart = kv::MakeDemoChart(kind, "/nonexistent-tessary-fuzz/Entries.dat");
        s.Plain = kvfuzz::MakeSolutionList(false);
        s.Enciphered = kvfuzz::MakeSolutionList(true);
    }
    return s;
}

void Walk(kv::TModelData& m) {
    volatile double sink = 0;
    for (const auto& p : m.Participants()) {
        sink = sink + double(p->FullName().size() + p->FullNameLastFirst().size());
        if (p->Role != 1) continue;
        kv::TItemRefs accounts;
        kv::FindByEntryIDOwned(m, &accounts, kv::kImportEntryIDs, 0, p->ID);
        for (const kv::TFinItem* a : accounts)
            sink = sink + a->Value + double(kv::AccountKindOf(*a)) + a->SpecProps.GetInt("IsBankingAccount", 0);
        for (const auto& h : m.Participants()) {
            if (m.Kind() == 1) sink = sink + kv::GetProcCommonSharesOwned(m, p->ID, h->ID);
            if (m.Kind() == 2) sink = sink + kv::GetPartyTrustBenefCapitalPercent(m, h->BenefKey, p->ID);
        }
    }
    for (double v : m.SettingFloats("PortGrowCoefs")) sink = sink + v;
    sink = sink + m.SettingFloat("CGRate", 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const std::uint8_t kKinds[4] = {0, 1, 2, 4};
    const std::uint8_t kind = kKinds[data[0] & 3];
    const bool enciphered = (data[0] & 4) != 0;

    TSetting& s = SettingOf(kind);
    kv::TModels* list = enciphered ? s.Enciphered.get() : s.Plain.get();
    kv::TModelData model(kind, nullptr, list, list, nullptr, kPath, s.Chart.get(), kvfuzz::kSettings);
    kv::TBufReadFile r = kv::TBufReadFile::FromBytes(std::vector<std::uint8_t>(data + 1, data + size), kPath);
    try {
        model.Load(r);
        Walk(model);
    } catch (const kv::EKvError&) {
    }
    return 0;
}
