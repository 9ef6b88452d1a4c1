// Models built in memory, written to real files and read back, and a
// canonical dump to compare two models field by field.
#pragma once

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "TestFiles.h"
#include "catalogue/KvFnModels.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "model/KvFnModelData.h"

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
