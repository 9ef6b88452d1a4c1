#include "demo/DemoChart.h"

#include <filesystem>
#include <initializer_list>
#include <utility>

// The chart is laid out one entry to a line, as a table to read.
// clang-format off

namespace kv {

namespace {

// Group identifiers of the demo chart; 0 is the group whose items count whole.
constexpr std::uint8_t GrpWhole = 0;
constexpr std::uint8_t GrpInvest = 1;
constexpr std::uint8_t GrpRegistered = 2;
constexpr std::uint8_t GrpBusiness = 3;
constexpr std::uint8_t GrpTrust = 4;
constexpr std::uint8_t GrpPersonal = 5;
constexpr std::uint8_t GrpLiability = 6;
constexpr std::uint8_t GrpExpense = 7;

struct TDemoSpec {
    std::int32_t id;
    std::int32_t classNo;
    const char* name;
    const char* french;
    const char* shortName;
    std::uint8_t group;
    std::size_t type;  // index into the entry types; 255 none
    std::int32_t kindCode;
    std::initializer_list<const char*> props;
};

std::array<std::string, 11> AccTexts(const char* code, const char* name, const char* color = "") {
    std::array<std::string, 11> t;
    t[0] = code;
    t[1] = name;
    t[2] = std::string(name) + " (summary)";
    t[10] = color;
    return t;
}

} // namespace

std::unique_ptr<TEntries> MakeDemoChart(std::uint8_t product, std::string fileName) {
    auto chart = std::make_unique<TEntries>(product, std::move(fileName));
    TEntries& c = *chart;

    c.AddAcc(AccTexts("1", "Assets", "2061908"));
    c.AddAcc(AccTexts("1.10", "Investments"));
    c.AddAcc(AccTexts("1.10.1", "Registered plans", "5025616"));
    c.AddAcc(AccTexts("1.20", "Real estate"));
    c.AddAcc(AccTexts("2", "Liabilities", "12597547"));
    c.AddAcc(AccTexts("3", "Income"));
    c.AddAcc(AccTexts("4", "Expenses"), "Living and discretionary expenses");
    c.LinkAccounts();

    c.AddEntryType(1, "Asset", 0, true);
    c.AddEntryType(2, "Liability", 0, true);
    c.AddEntryType(3, "Income", 1, false);
    c.AddEntryType(4, "Expense", 1, false);
    constexpr std::size_t Asset = 0, Liability = 1, Income = 2, Expense = 3, None = 255;
    (void)Income;

    using namespace DemoEntry;
    const TDemoSpec specs[] = {
        {Assets, 3, "Assets", "Actif", "Assets", GrpWhole, Asset, 0, {}},
        {Investments, 3, "Investments", "Placements", "Invest.", GrpWhole, Asset, 0, {}},
        {NonReg, 4, "Non-registered investments", "Placements non enregistr\xC3\xA9s", "Non-Reg.", GrpInvest, Asset, 0,
         {"IMPORT=1"}},
        {InvestAccount, 69, "Investment account", "Compte de placement", "Inv. acct", GrpInvest, Asset, 0, {}},
        {SegFund, 159, "Segregated funds", "Fonds distincts", "Seg. funds", GrpInvest, Asset, 0, {}},
        {PrimaryPersonal, 69, "Primary account", "Compte principal", "Primary", GrpInvest, Asset, 0, {}},
        {PrimaryTrust, 69, "Trust primary account", "Compte principal de la fiducie", "Primary", GrpTrust, Asset, 0, {}},
        {BankAccount, 20, "Bank account", "Compte bancaire", "Bank", GrpInvest, Asset, 0, {}},
        {Registered, 3, "Registered plans", "R\xC3\xA9gimes enregistr\xC3\xA9s", "Reg.", GrpWhole, Asset, 0, {}},
        {TFSA, 147, "TFSA", "CELI", "TFSA", GrpRegistered, Asset, 0, {"EGRP=TFSACON"}},
        {TFSAESPP, 60, "TFSA share purchase plan", "RAAE du CELI", "ESPP", GrpRegistered, Asset, -42, {}},
        {RRSP, 50, "RRSP", "REER", "RRSP", GrpRegistered, Asset, 0, {"EGRP=PPCON"}},
        {RRSPContrib, 124, "RRSP contributions", "Cotisations au REER", "Contrib.", GrpRegistered, None, -35, {}},
        {RRSPContribRate, 0, "RRSP contribution rate", "Taux de cotisation au REER", "Rate", GrpRegistered, None, -36, {}},
        {RRSPFromCorp, 124, "Employer RRSP contributions", "Cotisations de l'employeur", "Employer", GrpRegistered,
         None, -37, {"VISIBLE=1"}},
        {RRSPESPP, 202, "RRSP share purchase plan", "RAAE du REER", "ESPP", GrpRegistered, Asset, -42, {}},
        {SpousalRRSP, 50, "Spousal RRSP", "REER de conjoint", "Sp. RRSP", GrpRegistered, Asset, 0, {}},
        {RRIF, 37, "RRIF", "FERR", "RRIF", GrpRegistered, Asset, 0, {}},
        {DCP, 49, "Defined contribution plan", "R\xC3\xA9gime \xC3\xA0 cotisations d\xC3\xA9termin\xC3\xA9" "es",
         "DCP", GrpRegistered, Asset, 0, {}},
        {LIRA, 38, "LIRA", "CRI", "LIRA", GrpRegistered, Asset, 0, {}},
        {LRIF, 38, "LRIF", "FRRI", "LRIF", GrpRegistered, Asset, 0, {}},
        {RealEstate, 3, "Real estate", "Immobilier", "Real est.", GrpWhole, Asset, 0, {}},
        {Residence, 12, "Principal residence", "R\xC3\xA9sidence principale", "Home", GrpPersonal, Asset, 0,
         {"EGRP=HOME,REALEST"}},
        {Cottage, 1, "Cottage", "Chalet", "Cottage", GrpPersonal, Asset, 0, {"EGRP=VACATION, REALEST"}},
        {Vehicle, 72, "Vehicle", "V\xC3\xA9hicule", "Vehicle", GrpPersonal, Asset, 0, {"EGRP=VEHICLE,GCVEHICLE"}},
        {Business, 3, "Business interests", "Int\xC3\xA9r\xC3\xAAts d'affaires", "Business", GrpBusiness, Asset, 0, {}},
        {CorpShares, 140, "Corporate shares", "Actions de la soci\xC3\xA9t\xC3\xA9", "Shares", GrpBusiness, Asset, 0,
         {}},
        {SharesHeld, 84, "Shares held", "Actions d\xC3\xA9tenues", "Held", GrpBusiness, Asset, 0, {}},
        {Liabilities, 0, "Liabilities", "Passif", "Liab.", GrpLiability, Liability, 0, {}},
        {Mortgage, 5, "Mortgage", "Hypoth\xC3\xA8que", "Mortgage", GrpLiability, Liability, 0, {}},
        {Trust, 0, "Trust", "Fiducie", "Trust", GrpTrust, None, 0, {}},
        {CapitalBenef, 162, "Capital beneficiary", "B\xC3\xA9n\xC3\xA9" "ficiaire du capital", "Benef.", GrpTrust, None,
         0, {}},
        {Expenses, 0, "Expenses", "D\xC3\xA9penses", "Expenses", GrpExpense, Expense, 0, {}},
        {Donations, 0, "Donations", "Dons", "Donations", GrpExpense, Expense, 0, {"EGRP=DONAT"}},
        {Education, 11, "Education", "\xC3\x89" "ducation", "Educ.", GrpExpense, Expense, 0,
         {"EGRP=EDUCATION,EDUCWE", "MAXAGE=25"}},
        {LifeInsurance, 6, "Life insurance", "Assurance vie", "Life ins.", GrpExpense, Expense, 0,
         {"EGRP=LIFEINS,BASIC"}},
    };

    for (const TDemoSpec& s : specs) {
        auto e = std::make_unique<TEntry>();
        e->EntryID = s.id;
        e->ItemClassNo = s.classNo;
        e->Name = s.name;
        e->FrenchName = s.french;
        e->Name2 = s.shortName;
        e->GroupID = s.group;
        e->EntryType = s.type == None ? nullptr : c.EntryTypes()[s.type].get();
        e->Ints = {s.kindCode, 0, 1};
        e->Byte2 = 1;
        e->LongText = std::string(s.name) + ": amounts of this kind held by the client.";
        for (const char* p : s.props) e->SpecProps.emplace_back(p);
        if (EntriesHaveExtraInts(product)) e->ExtraInts = {0, 0, 0, s.id > 0 ? 1 : 0};
        c.AddEntry(std::move(e));
    }

    // Tree keys follow the places in the tree; roots carry -1 below their first key.
    auto place = [&c](std::int32_t id, std::array<std::int32_t, 4> keys) -> TEntry& {
        TEntry& e = *c.GetEntryByID(id);
        e.TreeKeys = keys;
        return e;
    };
    auto under = [&](std::int32_t parent, std::int32_t id, std::int32_t slot) {
        TEntry& p = *c.GetEntryByID(parent);
        std::array<std::int32_t, 4> keys = p.TreeKeys;
        keys[std::size_t(p.Level() + 1)] = slot;
        p.AddChild(&place(id, keys));
    };

    c.AddRootNode(place(Assets, {1, -1, -1, -1}));
    under(Assets, Investments, 1);
    int slot = 1;
    for (std::int32_t id : {NonReg, InvestAccount, SegFund, PrimaryPersonal, PrimaryTrust, BankAccount})
        under(Investments, id, slot++);
    under(Assets, Registered, 2);
    slot = 1;
    for (std::int32_t id : {TFSA, RRSP, SpousalRRSP, RRIF, DCP, LIRA, LRIF}) under(Registered, id, slot++);
    under(TFSA, TFSAESPP, 1);
    slot = 1;
    for (std::int32_t id : {RRSPContrib, RRSPContribRate, RRSPFromCorp, RRSPESPP}) under(RRSP, id, slot++);
    under(Assets, RealEstate, 3);
    slot = 1;
    for (std::int32_t id : {Residence, Cottage, Vehicle}) under(RealEstate, id, slot++);
    under(Assets, Business, 4);
    under(Business, CorpShares, 1);
    under(Business, SharesHeld, 2);
    c.AddRootNode(place(Liabilities, {2, -1, -1, -1}));
    under(Liabilities, Mortgage, 1);

    c.AddRootNode(place(Trust, {3, -1, -1, -1}), true);
    under(Trust, CapitalBenef, 1);
    c.AddRootNode(place(Expenses, {4, -1, -1, -1}), true);
    slot = 1;
    for (std::int32_t id : {Donations, Education, LifeInsurance}) under(Expenses, id, slot++);

    c.AddEntryVal({1, "CGRate", "Capital gains inclusion rate", 50});
    c.AddEntryVal({1, "TFSALimit", "TFSA annual limit", 7000});
    c.AddEntryVal({2, "RRSPLimit", "RRSP dollar limit", 31560});
    for (const char* l : {"Federal tax", "Provincial tax", "CPP contributions", "EI premiums"}) c.AddEnTaxLabel(l);
    for (const char* l : {"Imp\xC3\xB4t f\xC3\xA9\x64\xC3\xA9ral", "Imp\xC3\xB4t provincial", "Cotisations au RPC",
                          "Cotisations \xC3\xA0 l'AE"})
        c.AddFrTaxLabel(l);
    c.SetVersion(ExpectedEntriesVersion(product));
    return chart;
}

std::string WriteDemoChart(std::uint8_t product, const std::string& folder) {
    const std::string path = (std::filesystem::path(folder) / "Entries.dat").string();
    auto chart = MakeDemoChart(product, path);
    chart->Save(path);
    chart->SaveFrench(chart->FrenchFileName());
    return path;
}

} // namespace kv
// clang-format on
