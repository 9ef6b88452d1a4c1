// Writes the seed inputs of fuzz_finitems: the demo client files' solutions
// as the program writes them, and one solution with every record the reader
// knows, saved in both layouts, several versions and with enciphered names.
//   make_finitems_corpus <output folder>
// Each seed is the setting byte of fuzz_finitems followed by the file.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "KvSettings.h"
#include "demo/DemoData.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "fuzz_finitems_setup.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"

namespace fs = std::filesystem;
namespace D = kv::DemoEntry;

namespace {

std::uint8_t SettingByte(std::uint8_t kind, bool enciphered) {
    const std::uint8_t k = kind == 4 ? 3 : kind;
    return static_cast<std::uint8_t>(k | (enciphered ? 4 : 0));
}

void WriteSeed(const fs::path& out, const std::string& name, std::uint8_t setting, const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    std::ofstream o(out / name, std::ios::binary | std::ios::trunc);
    o.put(static_cast<char>(setting));
    o.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

kv::TFinItem* AddItem(kv::TModelData& m, kv::TFinItem* parent, const kv::TEntries& chart, std::int32_t entryID,
                      std::int32_t id, const char* name, double value) {
    const kv::TEntry* entry = chart.GetEntryByID(entryID);
    if (!entry) return nullptr;   // the product's chart lacks it
    auto item = kv::ItemClassByNumber(entry->ItemClassNo).Create(entry, &m, id);
    item->Name = name;
    item->Value = value;
    return parent ? parent->AddChild(std::move(item)) : m.Add(std::move(item));
}

void Fill(kv::TModelData& m, const kv::TEntries& chart) {
    m.Header.Values[0] = 1.5;
    m.Header.Title = "Plan";
    m.Header.Text = "first\x01second";
    m.Header.Date = 45123;
    struct P { std::int32_t id; std::uint8_t role, type; const char* first; const char* last; };
    for (P p : {P{1, 1, 0, "Anne", "Roy"}, P{2, 1, 0, "Marc", "Roy"}, P{10, 0, 150, "", "Roy Inc."},
                P{11, 0, 170, "", "Roy Trust"}, P{13, 40, 0, "Paul", "Côté"}}) {
        auto party = kv::CreateParty(m.Kind(), p.id, p.role, p.type);
        party->FirstName = p.first;
        party->LastName = p.last;
        party->BirthDate = 20000 + p.id;
        party->Texts15[1] = "note";
        m.AddParticipant(std::move(party));
    }
    m.GetParticipantByID(2)->BenefKey = 77;

    auto set = [](kv::TFinItem* item, const char* name, const char* value) {
        if (item) item->SpecProps.Set(name, value);
    };
    auto* nonReg = AddItem(m, nullptr, chart, D::NonReg, 101, "Joint", 1000.4);
    nonReg->Shares = std::make_unique<kv::TSharesList>();
    nonReg->Shares->AddShare(m.GetParticipantByID(1), 1, 2);
    nonReg->Shares->AddShare(m.GetParticipantByID(2), 2, 6);
    nonReg->SpecProps.Set("OwnerID", "1");
    kv::TPay pay(3);
    pay.Value = 250;
    pay.Text = "monthly";
    pay.Payers.push_back({m.GetParticipantByID(1), 1, 0.6});
    nonReg->AddPay(pay);
    auto* rrsp = AddItem(m, nullptr, chart, D::RRSP, 102, "RRSP", 50000);
    set(rrsp, "RRSPTYPE", "1");
    set(rrsp, "lstRRSPUnusedLimit", "2024:1500,2025:250.5");
    set(AddItem(m, rrsp, chart, D::RRSPContrib, 103, "Contributions", 0), "isExclude", "1");
    set(AddItem(m, nullptr, chart, D::TFSA, -105, "TFSA", 20000), "OwnerID", "2");
    set(AddItem(m, nullptr, chart, D::CorpShares, 106, "Class A", 0), "ShareCount", "100");
    set(AddItem(m, nullptr, chart, D::SharesHeld, 107, "Held", 0), "ShareClassID", "106");
    set(AddItem(m, nullptr, chart, D::CapitalBenef, 108, "Capital", 0), "BenefKey", "77");
    for (const auto& item : m.Items()) item->DecodeSpecProps();

    m.ToDo.push_back({1, 2, "Call", "Clients", "Ask | again", 45123.25, true});
    m.Texts = {"CGRate=0.5", "PortGrowCoefs=1;2.5;x"};
    m.Strategy().Values = {"WDORDER=1,2"};
    m.TypedRecords.push_back({7, "kept"});
    m.SmallLists = {{{1, {2, 3}}, {200, {0, 0}}}, {}};
    m.Residences.push_back({1, "Home", 650000});
    m.SettingsBlock[0] = 7;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    const fs::path out = argv[1];
    const fs::path scratch = out / "scratch.tmp";
    fs::remove_all(scratch);

    // The demo's unprotected solutions, byte for byte.
    tessary::WriteDemoData((scratch / "demo").string());
    struct Demo { const char* seed; std::uint8_t kind; const char* file; };
    for (const Demo& d : {Demo{"demo-md-sectioned", 0, "Meridel/Data/md_db1_Tremblay/Main/FinItems.dat"},
                          Demo{"demo-md-sequential", 0, "Meridel/Data/md_db2_Nguyen/Main/FinItems.dat"},
                          Demo{"demo-bs", 1, "Basalto/Data/bs_db1_Côté Holdings/Main/FinItems.dat"},
                          Demo{"demo-qr", 2, "Quorren/Data/qr_db1_Fiducie familiale Roy/Main/FinItems.dat"}})
        WriteSeed(out, d.seed, SettingByte(d.kind, false), scratch / "demo" / d.file);

    struct Rich {
        const char* seed;
        std::uint8_t kind;
        bool enciphered;
        kv::TFileLayout layout;
        std::int32_t version;
    };
    const Rich rich[] = {
        {"rich-sectioned", 0, false, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion},
        {"rich-sectioned-enciphered", 0, true, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion},
        {"rich-sequential-bs-enciphered", 1, true, kv::TFileLayout::Sequential, kv::kCurrentFileVersion},
        {"rich-sequential-qr-old", 2, false, kv::TFileLayout::Sequential, kv::kVersionPropArrays - 1},
        {"rich-sectioned-kind4", 4, false, kv::TFileLayout::Sectioned, 40000},
    };
    for (const Rich& r : rich) {
        const fs::path dir = scratch / r.seed;
        fs::create_directories(dir);
        auto chart = kv::MakeDemoChart(r.kind, (dir / "Entries.dat").string());
        auto list = kvfuzz::MakeSolutionList(r.enciphered);
        kv::TModelData m(r.kind, nullptr, list.get(), list.get(), nullptr, (dir / "FinItems.dat").string(),
                         chart.get(), kvfuzz::kSettings);
        Fill(m, *chart);
        m.Save(r.layout, r.version);
        WriteSeed(out, r.seed, SettingByte(r.kind, r.enciphered), dir / "FinItems.dat");
    }
    fs::remove_all(scratch);
    return 0;
}
