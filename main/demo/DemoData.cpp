#include "demo/DemoData.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "KvErrors.h"
#include "KvSettings.h"
#include "decl/KvDayNumbers.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

namespace fs = std::filesystem;
namespace D = kv::DemoEntry;

namespace tessary {

namespace {

// Ownership codes: bit 2 is what the import's ownership test counts.
constexpr std::uint8_t kOwns = 2;

// Party role codes: 1 the persons (or the corporation, or the trust) an
// import can be asked for; 2 a dependant; 40 a shareholder of a corporate
// file and 60 a beneficiary of a trust file, both corporate participants.
constexpr std::uint8_t kRolePrincipal = 1, kRoleChild = 2, kRoleOther = 0, kRoleShareholder = 40, kRoleBeneficiary = 60;
constexpr std::uint8_t kTypePerson = 0, kTypeCorporation = 150, kTypeTrust = 170;
constexpr std::uint8_t kSingle = 0, kMarried = 1, kCommonLaw = 2;

// The older sequential layout, from a version that already has the party
// property arrays but not yet the enciphered names.
constexpr std::int32_t kSequentialVersion = 40000;
static_assert(kSequentialVersion > kv::kVersionPropArrays && kSequentialVersion < kv::kVersionEnciphered);

double DayNumber(int y, unsigned m, unsigned d, int hour = 0, int minute = 0) {
    return static_cast<double>(kv::DayNumberOfDate(y, m, d)) + (hour * 60 + minute) / 1440.0;
}

struct Owner {
    std::int32_t Party;
    std::uint8_t Code = kOwns;
};

struct ItemDef {
    std::int32_t Entry;
    std::int32_t ID;
    std::string Name;
    double Value;
    std::optional<std::vector<Owner>> Owners; // nullopt: the record carries no list
    std::vector<std::string> Props;
    std::vector<ItemDef> Children = {};
};

struct PartyDef {
    std::int32_t ID;
    std::uint8_t Role;
    std::uint8_t Type;
    std::uint8_t TaxStatus;
    std::string First, Last;
    double Birth;
    std::int32_t BenefKey = 0; // 0: the party's identifier
};

struct SolutionDef {
    std::string Name;
    std::string Description;
    std::vector<ItemDef> Items;
};

struct ClientDef {
    std::string Folder;
    std::string Name;
    std::int32_t ID;
    double Date;
    bool Protected = false;
    std::string KeySeed = {};
    kv::TFileLayout Layout = kv::TFileLayout::Sectioned;
    std::int32_t Version = kv::kCurrentFileVersion;
    std::vector<PartyDef> Parties = {};
    std::vector<SolutionDef> Solutions = {};
    std::vector<kv::TToDoData> ToDo = {};
};

std::vector<Owner> Of(std::int32_t party) { return {{party}}; }
std::vector<Owner> Joint(std::int32_t a, std::int32_t b) { return {{a}, {b}}; }
std::string OwnerProp(std::int32_t party) { return "OwnerID=" + std::to_string(party); }

// ---------------------------------------------------------------- Meridel

constexpr std::int32_t kMarie = 1, kLuc = 2, kEmilie = 3;

// The second solution moves money into the registered plans ahead of an
// early retirement; everything else is the current plan's.
std::vector<ItemDef> TremblayItems(bool retireAt60) {
    const auto v = [&](double now, double at60) { return retireAt60 ? at60 : now; };
    return {
        {D::NonReg,
         101,
         "Joint non-registered account",
         v(185400.40, 178900.40),
         Joint(kMarie, kLuc),
         {},
         {// judged by its parent's list
          {D::InvestAccount, 102, "US-dollar sub-account", 23480.60, std::vector<Owner>{}, {}}}},
        {D::InvestAccount, 103, "Marie - investment account", v(62000.50, 68500.50), Of(kMarie), {OwnerProp(kMarie)}},
        {D::InvestAccount,
         104,
         "Marie - high-interest savings",
         20000.00,
         Of(kMarie),
         {OwnerProp(kMarie), "IsBankingAccount=1"}},
        {D::BankAccount, 105, "Joint chequing account", v(14250.33, 9800.00), Joint(kMarie, kLuc), {}},
        {D::TFSA, 106, "Marie - TFSA", v(88612.47, 95000.00), Of(kMarie), {OwnerProp(kMarie)}},
        {D::TFSA, 107, "Luc - TFSA", v(71904.12, 78400.00), Of(kLuc), {OwnerProp(kLuc)}},
        {D::TFSA, 108, "Émilie - TFSA", 7150.00, Of(kEmilie), {OwnerProp(kEmilie)}},
        {D::RRSP, 109, "Marie - RRSP", v(312450.00, 325000.00), Of(kMarie), {OwnerProp(kMarie), "RRSPTYPE=0"}},
        {D::RRSP, 110, "Luc - locked-in RRSP", 143780.65, Of(kLuc), {OwnerProp(kLuc), "RRSPTYPE=1"}},
        {D::LIRA, 111, "Marie - LIRA", 48915.20, Of(kMarie), {OwnerProp(kMarie)}},
        {D::DCP, 112, "Luc - DC pension plan", v(227340.90, 241115.50), Of(kLuc), {OwnerProp(kLuc)}},
        {D::RRIF, 113, "Luc - RRIF", 36500.75, Of(kLuc), {OwnerProp(kLuc)}},
        {D::InvestAccount, 114, "Luc - closed brokerage account", 0, Of(kLuc), {OwnerProp(kLuc)}},
        {D::Residence, 115, "Principal residence", 865000.00, Joint(kMarie, kLuc), {}},
        {D::Mortgage, 116, "Mortgage", v(212400.00, 198250.00), Joint(kMarie, kLuc), {}},
    };
}

ClientDef Tremblay() {
    ClientDef c{"md_db1_Tremblay", "Tremblay", 240101, DayNumber(2024, 11, 18, 10, 30)};
    c.Parties = {
        {kMarie, kRolePrincipal, kTypePerson, kMarried, "Marie", "Tremblay", DayNumber(1968, 3, 14)},
        {kLuc, kRolePrincipal, kTypePerson, kMarried, "Luc", "Tremblay", DayNumber(1966, 11, 2)},
        {kEmilie, kRoleChild, kTypePerson, kSingle, "Émilie", "Tremblay", DayNumber(2008, 5, 21)},
    };
    c.Solutions = {
        {"Current plan", "Situation as of the November 2024 review", TremblayItems(false)},
        {"Retirement at 60", "Luc retires at 60; RRSP and TFSA top-ups first", TremblayItems(true)},
    };
    c.ToDo = {
        {1, 0, "TFSA room", "Follow-up", "Confirm the 2025 TFSA room of both spouses.", DayNumber(2025, 1, 15), false}};
    return c;
}

ClientDef Nguyen() {
    constexpr std::int32_t kLan = 1;
    ClientDef c{"md_db2_Nguyen", "Nguyen", 190603, DayNumber(2019, 6, 3, 14, 5)};
    c.Layout = kv::TFileLayout::Sequential;
    c.Version = kSequentialVersion;
    c.Parties = {{kLan, kRolePrincipal, kTypePerson, kSingle, "Lan", "Nguyen", DayNumber(1981, 9, 30)}};
    c.Solutions = {{"Plan 2019",
                    "First plan",
                    {
                        {D::BankAccount, 201, "Savings account", 8640.15, Of(kLan), {}},
                        {D::InvestAccount, 202, "Discount brokerage account", 41250.50, Of(kLan), {OwnerProp(kLan)}},
                        // older files often carry no ownership list: everybody's
                        {D::TFSA, 203, "TFSA", 52300.00, std::nullopt, {}},
                        {D::RRSP, 204, "RRSP", 128775.35, Of(kLan), {OwnerProp(kLan)}},
                        {D::SegFund, 205, "Segregated fund contract", 17420.85, Of(kLan), {}},
                    }}};
    return c;
}

ClientDef Gagnon() {
    constexpr std::int32_t kJulie = 1, kMarc = 2;
    ClientDef c{"md_db3_Gagnon", "Gagnon", 250207, DayNumber(2025, 2, 7, 9, 15)};
    c.Protected = true;
    c.KeySeed = "gagnon-7f3a";
    c.Parties = {
        {kJulie, kRolePrincipal, kTypePerson, kCommonLaw, "Julie", "Gagnon", DayNumber(1979, 7, 8)},
        {kMarc, kRolePrincipal, kTypePerson, kCommonLaw, "Marc", "Gagnon", DayNumber(1977, 1, 25)},
    };
    c.Solutions = {{"Current plan",
                    "Couple, registered savings",
                    {
                        {D::NonReg, 301, "Joint non-registered account", 54210.30, Joint(kJulie, kMarc), {}},
                        {D::TFSA, 302, "Julie - TFSA", 34870.25, Of(kJulie), {OwnerProp(kJulie)}},
                        {D::TFSA, 303, "Marc - TFSA", 29115.80, Of(kMarc), {OwnerProp(kMarc)}},
                        {D::RRSP, 304, "Julie - RRSP", 156230.40, Of(kJulie), {OwnerProp(kJulie)}},
                        {D::RRSP, 305, "Marc - RRSP", 98640.00, Of(kMarc), {OwnerProp(kMarc)}},
                        {D::BankAccount, 306, "Joint chequing account", 6420.00, Joint(kJulie, kMarc), {}},
                    }}};
    return c;
}

// ---------------------------------------------------------------- Basalto

ClientDef CoteHoldings() {
    // The corporation has role 1: it is the party the import is asked for,
    // and its shareholders are the holders whose share is wanted.
    constexpr std::int32_t kCorp = 1, kPaul = 2, kSophie = 3;
    constexpr std::int32_t kClassA = 404, kClassB = 405;
    const auto holding = [](std::int32_t id, const char* name, std::int32_t holder, std::int32_t cls, int held) {
        return ItemDef{D::SharesHeld,
                       id,
                       name,
                       0,
                       Of(holder),
                       {"CorpID=" + std::to_string(kCorp), "ShareClassID=" + std::to_string(cls),
                        "SharesHeld=" + std::to_string(held)}};
    };
    // No trailing period in the client name: Windows drops it from folder names.
    ClientDef c{"bs_db1_Côté Holdings", "Côté Holdings", 250120, DayNumber(2025, 1, 20, 16, 40)};
    c.Parties = {
        {kCorp, kRolePrincipal, kTypeCorporation, kSingle, "", "Côté Holdings Inc.", DayNumber(2009, 4, 1)},
        {kPaul, kRoleShareholder, kTypePerson, kMarried, "Paul", "Côté", DayNumber(1962, 2, 17)},
        {kSophie, kRoleShareholder, kTypePerson, kMarried, "Sophie", "Côté", DayNumber(1964, 10, 3)},
    };
    c.Solutions = {
        {"Current plan",
         "Holding company, fiscal year 2024",
         {
             {D::NonReg, 401, "Corporate investment portfolio", 842315.75, Of(kCorp), {}},
             {D::InvestAccount, 402, "Corporate GIC ladder", 150000.00, Of(kCorp), {OwnerProp(kCorp)}},
             {D::BankAccount, 403, "Operating account", 96420.18, Of(kCorp), {}},
             {D::CorpShares,
              kClassA,
              "Class A common shares",
              0,
              Of(kCorp),
              {"ShareClass=A", "ShareCount=1000", "AsCommon=1"}},
             {D::CorpShares, kClassB, "Class B preferred shares", 0, Of(kCorp), {"ShareClass=B", "ShareCount=500"}},
             holding(406, "Paul - class A shares", kPaul, kClassA, 600),
             holding(407, "Paul - class B shares", kPaul, kClassB, 500),
             holding(408, "Sophie - class A shares", kSophie, kClassA, 400),
         }}};
    return c;
}

// ---------------------------------------------------------------- Quorren

ClientDef RoyTrust() {
    constexpr std::int32_t kTrust = 1, kIsabelle = 2, kMathieu = 3, kCamille = 4, kDenis = 5;
    const auto capital = [](std::int32_t id, const char* name, std::int32_t key, int percent) {
        return ItemDef{D::CapitalBenef,
                       id,
                       name,
                       0,
                       Of(kTrust),
                       {"BenefKey=" + std::to_string(key), "CapitalPercent=" + std::to_string(percent)}};
    };
    ClientDef c{"qr_db1_Fiducie familiale Roy", "Fiducie familiale Roy", 240912, DayNumber(2024, 9, 12, 11, 0)};
    c.Parties = {
        {kTrust, kRolePrincipal, kTypeTrust, kSingle, "", "Fiducie familiale Roy", DayNumber(2011, 6, 15)},
        {kIsabelle, kRoleBeneficiary, kTypePerson, kSingle, "Isabelle", "Roy", DayNumber(1990, 4, 2), 501},
        {kMathieu, kRoleBeneficiary, kTypePerson, kSingle, "Mathieu", "Roy", DayNumber(1993, 8, 27), 502},
        {kCamille, kRoleBeneficiary, kTypePerson, kSingle, "Camille", "Roy", DayNumber(1997, 12, 9), 503},
        {kDenis, kRoleOther, kTypePerson, kMarried, "Denis", "Roy", DayNumber(1958, 3, 11)}, // trustee
    };
    c.Solutions = {{"Current plan",
                    "Family trust, 21-year deemed disposition in 2032",
                    {
                        {D::NonReg, 601, "Trust investment portfolio", 412345.00, Of(kTrust), {}},
                        {D::InvestAccount, 602, "Trust GIC account", 96750.25, Of(kTrust), {OwnerProp(kTrust)}},
                        {D::SegFund, 603, "Segregated fund contract", 58200.80, Of(kTrust), {}},
                        {D::PrimaryTrust, 604, "Trust operating account", 12300.00, Of(kTrust), {}},
                        capital(605, "Capital - Isabelle", 501, 50),
                        capital(606, "Capital - Mathieu", 502, 30),
                        capital(607, "Capital - Camille", 503, 20),
                    }}};
    return c;
}

struct ProductDef {
    const char* Dir;
    std::uint8_t Kind;
    std::vector<ClientDef> Clients;
};

// ---------------------------------------------------------------- writing

void MakeDir(const fs::path& path) {
    std::error_code ec;
    fs::create_directories(path, ec);
    if (ec) throw kv::EInOutError("Cannot create folder \"" + path.string() + "\": " + ec.message());
}

std::unique_ptr<kv::TFinItem> MakeItem(const ItemDef& def, kv::TModelData& model, const kv::TEntries& chart) {
    const kv::TEntry* entry = chart.GetEntryByID(def.Entry);
    if (!entry) throw kv::EKvError("The demo chart has no entry " + std::to_string(def.Entry));
    // A plain item writes its properties exactly as given.
    auto item = std::make_unique<kv::TFinItem>(entry, &model, def.ID);
    item->Name = def.Name;
    item->Value = def.Value;
    if (def.Owners) {
        item->Shares = std::make_unique<kv::TSharesList>();
        for (const Owner& o : *def.Owners) item->Shares->AddShare(nullptr, o.Party, o.Code);
    }
    for (const std::string& p : def.Props) item->SpecProps.Add(p);
    for (const ItemDef& child : def.Children) item->AddChild(MakeItem(child, model, chart));
    return item;
}

void FillList(kv::TModels& list, const kv::TProjHdr& hdr) {
    list.HideNames = hdr.HideNames();
    list.Enciphered = hdr.IsProtected();
    list.KeySeed = hdr.KeySeed;
    list.ClientName = hdr.Name;
    list.SelectedIndex = 0;
    list.StoredNumber = list.Count();
}

void WriteClient(const fs::path& dataDir, std::uint8_t kind, kv::TEntries& chart, const ClientDef& c,
                 const kv::TLibrarySettings& settings) {
    kv::TProjHdr hdr(kind, kv::ModelsFileName, c.Folder, dataDir.string(), settings);
    hdr.Name = c.Name;
    hdr.ID = c.ID;
    hdr.Date = c.Date;
    hdr.Text1 = "Catherine Lavoie, CFP";
    hdr.Text2 = "Lavoie Planification financière, Québec";
    hdr.ProtectionFlag = c.Protected ? 1 : 0;
    hdr.KeySeed = c.KeySeed;
    hdr.ReportSettings = {"Portrait", "Letter", "1", "1", "0", "Arial", "10", "", "", "", "1"};

    kv::TModels main(hdr.BaseDir, "Main", hdr.Folder, settings);
    kv::TModels needs(hdr.BaseDir, "Needs", hdr.Folder, settings);
    for (std::size_t i = 0; i < c.Solutions.size(); ++i) {
        const std::int32_t n = static_cast<std::int32_t>(i);
        kv::TModel m;
        m.Name = c.Solutions[i].Name;
        m.Name2 = c.Solutions[i].Description;
        m.FolderNo = n;
        m.Number3 = n;
        m.KeyValue1 = 1000 + n;
        m.KeyValue3 = 2024;
        main.Add(std::move(m));
    }
    FillList(main, hdr);
    FillList(needs, hdr);

    MakeDir(fs::path(hdr.BaseDir + hdr.Folder));
    for (std::int32_t i = 0; i < main.Count(); ++i) MakeDir(fs::path(main.Path(i)));
    hdr.Save(main, needs);

    for (std::int32_t i = 0; i < main.Count(); ++i) {
        const SolutionDef& s = c.Solutions[static_cast<std::size_t>(i)];
        kv::TModelData model(kind, &main.Get(i), &main, &main, nullptr, main.Path(i) + "FinItems.dat", &chart,
                             settings);
        model.Header.Title = s.Name;
        model.Header.Text = s.Description;
        model.Header.Date = c.Date;
        model.Texts = {"CGRate=50", "GovInflRate=2.1"};
        model.ToDo = c.ToDo;
        for (const PartyDef& p : c.Parties) {
            auto party = kv::CreateParty(kind, p.ID, p.Role, p.Type);
            party->FirstName = p.First;
            party->LastName = p.Last;
            party->TaxStatus = p.TaxStatus;
            party->BirthDate = p.Birth;
            if (p.BenefKey != 0) party->BenefKey = p.BenefKey;
            model.AddParticipant(std::move(party));
        }
        for (const ItemDef& item : s.Items) model.Add(MakeItem(item, model, chart));
        model.Save(c.Layout, c.Version);
    }
}

bool IsEmptyFolder(const fs::path& root) {
    std::error_code ec;
    return fs::is_directory(root, ec) && fs::is_empty(root, ec) && !ec;
}

} // namespace

void WriteDemoData(const std::string& root) {
    if (root.empty()) throw kv::EKvError("No folder given for the demo data");
    const fs::path base(root);
    std::error_code ec;
    if (fs::exists(fs::symlink_status(base, ec)) && !IsEmptyFolder(base))
        throw kv::EKvError("\"" + root +
                           "\" exists and is not an empty folder: demo data is written only into a new or empty one");

    const std::vector<ProductDef> products = {
        {"Meridel", 0, {Tremblay(), Nguyen(), Gagnon()}},
        {"Basalto", 1, {CoteHoldings()}},
        {"Quorren", 2, {RoyTrust()}},
    };
    // The writer's own settings: the demo key enciphers the protected client
    // file; the others are written in the clear and never ask for a key.
    kv::TLibrarySettings settings;
    settings.ClientFileKey = kDemoClientKey;
    for (const ProductDef& p : products) {
        const fs::path core = base / p.Dir / "Core";
        const fs::path data = base / p.Dir / "Data";
        MakeDir(core);
        MakeDir(data);
        // Items must be built on the chart that is on disk.
        kv::TEntries chart(p.Kind, kv::WriteDemoChart(p.Kind, core.string()));
        chart.Load(false);
        for (const ClientDef& c : p.Clients) WriteClient(data, p.Kind, chart, c, settings);
    }
}

} // namespace tessary
