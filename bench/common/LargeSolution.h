// A large solution for the benchmarks: 50 parties and 20,000 items (5,000
// accounts with three children each) of the demo chart's account kinds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "catalogue/KvFnModels.h"
#include "demo/DemoChart.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"

namespace tessary_bench {

namespace D = kv::DemoEntry;

// Writes the solution to path; entries is a demo chart of the product kind.
inline void WriteLargeSolution(const std::string& path, kv::TEntries* entries, kv::TModels* models,
                               std::uint8_t kind = 0) {
    auto m =
        std::make_unique<kv::TModelData>(kind, nullptr, models, models, nullptr, path, entries, models->Settings());
    for (int p = 1; p <= 50; ++p) {
        auto party = kv::CreateParty(kind, p, p <= 2 ? 1 : 0, p % 10 == 0 ? 150 : 0);
        party->FirstName = "First" + std::to_string(p);
        party->LastName = "Last" + std::to_string(p);
        m->AddParticipant(std::move(party));
    }
    const std::int32_t kinds[] = {D::NonReg, D::TFSA, D::RRSP, D::LIRA, D::DCP, D::BankAccount};
    std::int32_t id = 1;
    for (int top = 0; top < 5000; ++top) {
        kv::TFinItem* parent = nullptr;
        for (int level = 0; level < 4; ++level) { // one item and three children: 20,000 items
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
}

} // namespace tessary_bench
