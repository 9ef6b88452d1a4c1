// Models built in memory, written to real files and read back, and a
// canonical dump to compare two models field by field.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "TestFiles.h"
#include "catalogue/KvFnModels.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

namespace kvtest {

namespace fs = std::filesystem;

// A solution's surroundings: library settings, chart of accounts and
// solution list. The settings stay where they are when the surroundings move.
struct Surroundings {
    explicit Surroundings(std::uint8_t kind, const TempDir& dir)
        : settings(std::make_unique<kv::TLibrarySettings>()),
          entries(kv::MakeDemoChart(kind, dir.File("Entries.dat"))),
          models(std::make_unique<kv::TModels>(dir.Path().string() + "/", "Main", "md_db1/", *settings)) {
        models->ClientName = "Test Client";
    }
    std::unique_ptr<kv::TLibrarySettings> settings;
    std::unique_ptr<kv::TEntries> entries;
    std::unique_ptr<kv::TModels> models;

    std::unique_ptr<kv::TModelData> NewModel(std::uint8_t kind, const std::string& path) {
        return std::make_unique<kv::TModelData>(kind, nullptr, models.get(), models.get(), nullptr, path,
                                                entries.get(), *settings);
    }
    kv::TEntry* Entry(std::int32_t id) { return entries->GetEntryByID(id); }
};

inline kv::TFinItem* AddItem(kv::TModelData& m, kv::TFinItem* parent, const kv::TEntry* entry, std::int32_t id,
                      const std::string& name, double value) {
    auto item = kv::ItemClassByNumber(entry->ItemClassNo).Create(entry, &m, id);
    item->Name = name;
    item->Value = value;
    if (parent) return parent->AddChild(std::move(item));
    return m.Add(std::move(item));
}

// A solution with every kind of party and item record the reader knows.
inline void FillEveryRecord(kv::TModelData& m, const kv::TEntries& chart) {
    namespace D = kv::DemoEntry;
    auto entry = [&](std::int32_t id) { return chart.GetEntryByID(id); };
    m.Header.Values[0] = 1.5;
    m.Header.Values[2] = -3;
    m.Header.Title = "Retirement plan";
    m.Header.Text = "first\x01second";
    struct P { std::int32_t id; std::uint8_t role, type; const char* first; const char* last; };
    for (P p : {P{1, 1, 0, "Anne", "Roy"}, P{2, 1, 0, "Marc", "Roy"}, P{3, 2, 0, "Léa", ""},
                P{10, 0, 150, "", "Roy Holdings Inc."}, P{11, 0, 170, "", "Roy Family Trust"},
                P{12, 0, 161, "", "Venture"}, P{13, 40, 0, "Paul", "Côté"}}) {
        auto party = kv::CreateParty(m.Kind(), p.id, p.role, p.type);
        party->FirstName = p.first;
        party->LastName = p.last;
        party->BirthDate = 20000 + p.id;
        party->TaxStatus = 3;
        party->Texts15[1] = "note";
        party->Flags13[2] = true;
        m.AddParticipant(std::move(party));
    }
    m.GetParticipantByID(2)->BenefKey = 77;

    auto* nonReg = AddItem(m, nullptr, entry(D::NonReg), 101, "Joint account", 1000.4);
    nonReg->Shares = std::make_unique<kv::TSharesList>();
    nonReg->Shares->AddShare(m.GetParticipantByID(1), 1, 2);
    nonReg->Shares->AddShare(m.GetParticipantByID(2), 2, 6);
    nonReg->Shares->AddShare(nullptr, 999, 1);   // a party the file does not have
    nonReg->SpecProps.Set("OwnerID", "1");
    nonReg->SpecProps.Set("RATE", "5.5");
    nonReg->Date1 = 45000;
    nonReg->Text = "statement";
    kv::TPay pay(3);
    pay.Value = 250;
    pay.Int1 = 2026;
    pay.Value2 = 0.5;
    pay.Code = 0x0102;
    pay.Text = "monthly";
    pay.Payers.push_back({m.GetParticipantByID(1), 1, 0.6});
    pay.Payers.push_back({m.GetParticipantByID(2), 2, 0.4});
    nonReg->PaysHeader = 7;
    nonReg->AddPay(pay);
    nonReg->AddPay(kv::TPay(4));

    auto* rrsp = AddItem(m, nullptr, entry(D::RRSP), 102, "RRSP", 50000);
    rrsp->SpecProps.Set("RRSPTYPE", "1");
    auto* contrib = AddItem(m, rrsp, entry(D::RRSPContrib), 103, "Contributions", 0);
    contrib->SpecProps.Set("Freq", "12");
    AddItem(m, contrib, entry(D::RRSPContribRate), 104, "Nested", 1);
    AddItem(m, nullptr, entry(D::TFSA), -105, "TFSA", 20000);
    auto* bank = AddItem(m, nullptr, entry(D::BankAccount), 106, "Chequing", 300);
    bank->Shares = std::make_unique<kv::TSharesList>();   // present but empty

    // The items' settings come from the properties just set.
    std::function<void(kv::TFinItem&)> decode = [&](kv::TFinItem& item) {
        item.DecodeSpecProps();
        for (auto& c : item.Children) decode(*c);
    };
    for (const auto& item : m.Items()) decode(*item);

    m.ToDo.push_back({1, 2, "Call", "Clients", "Ask about | the cottage", 45123.25, true});
    m.Texts = {"CGRate=0.5", "PortGrowCoefs=1;2.5;x", "Other=1"};
    m.Strategy().Values = {"WDORDER=1,2", "MELTDOWN=0"};
    m.TypedRecords.push_back({7, "kept as read"});
    m.Residences.push_back({1, "Home", 650000});
    m.SettingsBlock[0] = 7;
    m.SettingsBlock[kv::kSettingsBlockSize - 1] = 9;
}

inline std::string Dump(const kv::TFinItem& item, int depth = 0) {
    std::ostringstream o;
    o << std::string(depth * 2, ' ') << item.ClassType().Name << " entry=" << item.EntryID() << " id=" << item.ID
      << " name=" << item.Name << " d=" << item.Date1 << "/" << item.Date2 << " v=" << item.Value
      << " code=" << int(item.Code) << " text=" << item.Text << " parent=" << (item.Parent ? item.Parent->ID : 0);
    if (item.Shares) {
        o << " shares[";
        for (const auto& p : item.Shares->Items) o << p.PartyID << (p.Party ? "" : "?") << ":" << p.Code << ",";
        o << "]";
    } else {
        o << " shares=none";
    }
    o << " props[";
    for (const auto& l : item.SpecProps.Lines()) o << l << ";";
    o << "] pays(" << item.PaysHeader << ")[";
    for (const auto& p : item.Pays) {
        o << p.Kind << "," << p.Value << "," << p.Int1 << "," << p.Value2 << "," << p.Code << "," << p.Text << "{";
        for (const auto& payer : p.Payers) o << payer.PartyID << "=" << payer.Code << ",";
        o << "}";
    }
    o << "]\n";
    for (const auto& c : item.Children) o << Dump(*c, depth + 1);
    return o.str();
}

inline std::string Dump(const kv::TModelData& m) {
    std::ostringstream o;
    o << "header " << m.Header.Values[0] << "," << m.Header.Values[1] << "," << m.Header.Values[2] << ","
      << m.Header.Title << "," << m.Header.Text << "\n";
    for (const auto& p : m.Participants()) {
        o << p->ClassName() << " " << p->ID << " role=" << int(p->Role) << " type=" << int(p->PartyType)
          << " tax=" << int(p->TaxStatus) << " " << p->FirstName << "|" << p->LastName << "|" << p->ThirdName
          << " born=" << p->BirthDate << " benef=" << p->BenefKey << " " << int(p->Code9) << p->Text10
          << p->Flag11 << p->Date12 << p->Flags13[0] << p->Flags13[1] << p->Flags13[2] << int(p->Code14)
          << p->Texts15[0] << p->Texts15[1] << "\n";
    }
    for (const auto& item : m.Items()) o << Dump(*item);
    for (const auto& t : m.ToDo)
        o << "todo " << t.ID << "," << t.Kind << "," << t.Title << "," << t.Category << "," << t.Text << "," << t.Due
          << "," << t.Done << "\n";
    for (const auto& t : m.Texts) o << "text " << t << "\n";
    for (const auto& s : m.Strategy().Values) o << "strategy " << s << "\n";
    for (const auto& t : m.TypedRecords) o << "typed " << int(t.ClassCode) << "," << t.Data << "\n";
    for (const auto& r : m.Residences) o << "residence " << r.ID << "," << r.Name << "," << r.Value << "\n";
    o << "block " << int(m.SettingsBlock[0]) << "," << int(m.SettingsBlock[1047]) << "\n";
    return o.str();
}

} // namespace kvtest
