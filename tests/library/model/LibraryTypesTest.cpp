#include <gtest/gtest.h>

#include <cfloat>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "KvErrors.h"
#include "TestFiles.h"
#include "catalogue/KvFnModels.h"
#include "decl/KvYearsArray.h"
#include "entries/KvFnEntries.h"
#include "model/KvFnModelData.h"
#include "parties/KvPartyLists.h"

namespace {

using namespace std::chrono;
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

double Day(year_month_day d) { return double((sys_days(d) - sys_days(1899y / December / 30)).count()); }

kv::TSharesList Shares(std::vector<double> codes) {
    kv::TSharesList l;
    for (std::size_t i = 0; i < codes.size(); ++i) l.AddShare(nullptr, std::int32_t(i + 1), codes[i]);
    return l;
}

std::vector<double> Codes(const kv::TSharesList& l) {
    std::vector<double> v;
    for (const kv::TPayer& p : l.Items) v.push_back(p.Code);
    return v;
}

void ExpectCodes(const kv::TSharesList& l, const std::vector<double>& want) {
    const auto got = Codes(l);
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(got[i], want[i], 1e-12) << i;
}

TEST(SharesList, FixSharesEachRepair) {
    struct Case { const char* name; std::vector<double> in; bool ok; std::vector<double> out; };
    const Case cases[] = {
        {"valid", {0.25, 0.75}, true, {0.25, 0.75}},
        {"empty", {}, true, {}},
        {"within 0.0001 left alone", {0.5, 0.50009}, true, {0.5, 0.50009}},
        {"negative and NaN become 0", {-1, NaN, 1}, false, {0, 0, 1}},
        {"zero total: equal shares", {0, 0}, false, {0.5, 0.5}},
        {"other total scaled", {1, 3}, false, {0.25, 0.75}},
        {"overflowing total scaled", {DBL_MAX, DBL_MAX}, false, {0.5, 0.5}},
        {"infinite dropped, the rest scaled", {INFINITY, 2}, false, {0, 1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto l = Shares(c.in);
        EXPECT_EQ(l.FixShares(), c.ok);
        ExpectCodes(l, c.out);
        EXPECT_TRUE(l.Validate());
    }
    EXPECT_FALSE(Shares({0.9}).Validate());
    EXPECT_FALSE(Shares({1.5, -0.5}).Validate());
}

TEST(SharesList, FixSharesExceptKeepsOneParty) {
    struct Case { const char* name; std::vector<double> in; bool ok; std::vector<double> out; };
    const Case cases[] = {
        {"fine", {0.4, 0.3, 0.3}, true, {0.4, 0.3, 0.3}},
        {"others scaled into the rest", {0.4, 0.2, 0.2}, false, {0.4, 0.3, 0.3}},
        {"others all 0 share the rest", {0.4, 0, 0}, false, {0.4, 0.3, 0.3}},
        {"kept share capped at 1", {2, 0.5}, false, {1, 0}},
        {"alone takes everything", {0.4}, false, {1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto l = Shares(c.in);
        EXPECT_EQ(l.FixSharesExcept(1), c.ok);
        ExpectCodes(l, c.out);
    }
}

TEST(SharesList, Queries) {
    kv::TParticipant a(1), b(2), c(3);
    a.BirthDate = Day(1950y / 1 / 1), b.BirthDate = Day(1960y / 1 / 1), c.BirthDate = Day(1940y / 1 / 1);
    kv::TSharesList l;
    l.AddShare(&b, 2, 0.4);
    l.AddShare(&a, 1, 0.4);
    l.AddShare(&c, 3, 0.2);
    EXPECT_EQ(l.ShareVal(1, 1000), 400);
    EXPECT_DOUBLE_EQ(l.JointShareVal(1, 3, 1000), 600);
    EXPECT_EQ(l.JointShareVal(1, 1, 1000), 400);   // one party is not counted twice
    EXPECT_EQ(l.GetPrincParty(), &b);              // first of the largest
    EXPECT_EQ(l.PrincPartyCountByShare(), 2);
    EXPECT_EQ(l.LastLifeExp(), 2050);
    EXPECT_EQ(l.Find(&c), 2);
    l.Items[2].Code = 0;
    EXPECT_EQ(l.ShareCount(), 2);
    EXPECT_TRUE(l.OwnedByJoint());
    l.AddShare(&a, 1, 0);
    EXPECT_FALSE(l.Validate());   // a party listed twice

    auto sum = Shares({});
    sum.SumLists(Shares({0.5, 0.5}), Shares({0.25, 0, 1}));
    ExpectCodes(sum, {0.75, 0.5, 1});
    auto copy = Shares({1, 1, 1, 1});
    copy.CopySharesFrom(Shares({0.5, 0.5}));
    ExpectCodes(copy, {0.5, 0.5, 0, 0});
}

TEST(SharesList, TextForm) {
    auto l = Shares({0.25, 0.75});
    EXPECT_EQ(l.AsString(), "1:0.25,2:0.75");
    kv::TSharesList back;
    ASSERT_TRUE(back.SetAsString(l.AsString()));
    ExpectCodes(back, {0.25, 0.75});
    EXPECT_FALSE(back.SetAsString("1:0.5,x:1"));
    ExpectCodes(back, {0.25, 0.75});   // unchanged on failure
    EXPECT_TRUE(back.SetAsString(""));
    EXPECT_TRUE(back.Empty());
}

TEST(Party, Ages) {
    kv::TParty leap(1);
    leap.BirthDate = Day(1960y / February / 29);
    EXPECT_EQ(leap.AgeInYear(2020), 60);
    EXPECT_EQ(leap.BirthdayInYear(2021), Day(2021y / February / 28));
    EXPECT_EQ(leap.BirthdayInYear(2024), Day(2024y / February / 29));
    EXPECT_EQ(leap.AgeInDate(Day(2021y / February / 27)), 60);
    EXPECT_EQ(leap.AgeInDate(Day(2021y / February / 28)), 61);
    EXPECT_EQ(leap.YearAtAge(65), 2025);
    EXPECT_EQ(leap.LifeExpYear(), 2050);
    kv::TParty damaged(2);
    damaged.BirthDate = NaN;
    EXPECT_EQ(damaged.BirthYear(), 1899);
}

TEST(Party, UIDLinks) {
    kv::TUIDLink l;
    ASSERT_TRUE(l.Decode("-5:7"));
    EXPECT_EQ(l.Encode(), "-5:7");
    EXPECT_FALSE(l.Decode("5:x"));
    EXPECT_TRUE(l.Equals({-5, 7}));
    kv::TParticipant p(1);
    p.UIDLinks = {{3, 4}, l};
    EXPECT_EQ(kv::IndexOfLink(p.UIDLinks, {-5, 7}), 1);
    EXPECT_EQ(kv::LinkedPartyUID(p.UIDLinks, 3), 4);
    EXPECT_EQ(kv::LinkedPartyUID(p.UIDLinks, 9), -1);
    EXPECT_TRUE(p.LinkedToUID({3, 4}));
}

TEST(Party, RecordsInText) {
    kv::TCrpShAgr agr;
    agr.Buyout = kv::TCrpShAgr::Redemption;
    agr.ShareClassID = 12;
    agr.Shareholders = {1, -2};
    kv::TCrpShAgr back;
    ASSERT_TRUE(back.Decode(agr.Encode()));
    EXPECT_EQ(back.Shareholders, agr.Shareholders);
    EXPECT_TRUE(back.Binds(-2));
    EXPECT_FALSE(back.Decode("3;0;0;"));   // no such buyout
    EXPECT_FALSE(back.Decode("1;0;0"));

    kv::TRelList rels;
    rels.Decode("2:1,x:1,3:2,2:3,4:9");
    EXPECT_EQ(rels.Encode(), "2:3,3:2");

    kv::TBenefList benefs;
    benefs.push_back({1, 60, false});
    benefs.push_back({2, 40, false});
    EXPECT_TRUE(benefs.Validate());
    benefs.push_back({3, 50, true});
    EXPECT_FALSE(benefs.Validate());
}

TEST(YearValues, StepsArraysAndDictionary) {
    kv::TValueOverTime v(7);
    v.SetFrom(2030, 3);
    v.SetFrom(2026, 1);
    EXPECT_EQ(v.ValueIn(2025), 7);
    EXPECT_EQ(v.ValueIn(2029), 1);
    EXPECT_EQ(v.ValueIn(2040), 3);
    v.SetFrom(-1, 5);
    EXPECT_EQ(v.ValueIn(-1), 5);
    EXPECT_EQ(v.ValueIn(-2), 7);

    kv::TYearsArray a(2025, 2027);
    a.Add(2026, 4);
    EXPECT_EQ(a.Get(2024), 0);
    EXPECT_THROW(a.Put(2028, 1), kv::EListError);
    kv::TYearsArray b(2026, 2030);
    b.Put(2027, 10);
    b.Put(2030, 99);
    a.AddVals(b, -1);
    EXPECT_EQ(a.Total(), -6);
    EXPECT_THROW(a.Init(0, 20000), kv::EListError);
    a.Init(5, 4);
    EXPECT_EQ(a.Count(), 0);
}

TEST(ChartAccounts, OrderAndSubAccounts) {
    kv::TEntries chart(0, "Entries.dat");
    for (const char* code : {"4", "4.10", "5", "4.10.2", "4.20"}) chart.AddAcc({code, code});
    chart.LoadAccGroups();
    const kv::TAccList& accs = chart.AccList();
    std::vector<std::string> subs;
    for (const kv::TAcc* a : accs.ListSubAccounts("4")) subs.push_back(a->Code());
    EXPECT_EQ(subs, (std::vector<std::string>{"4.10", "4.10.2", "4.20"}));
    std::vector<std::string> codes{"9", "4.20", "4", "5"};
    accs.SortByAccountsOrder(codes);
    EXPECT_EQ(codes, (std::vector<std::string>{"4", "5", "4.20", "9"}));
}

TEST(SolutionList, CopyAndDeleteSolutionFolders) {
    kvtest::TempDir tmp;
    const std::string base = tmp.Path().string() + "/";
    kv::TModels list(base, "Main", "Client/", kv::kDefaultLibrarySettings);
    list.Add({.Name = "Solution 1"});
    list.Add({.Name = "Retire early", .FolderNo = 2});
    std::filesystem::create_directories(tmp.Path() / "Client/Main/sub");
    std::ofstream(tmp.Path() / "Client/Main/FinItems.dat") << "items";
    std::ofstream(tmp.Path() / "Client/Main/sub/x") << "x";
    std::filesystem::create_directories(tmp.Path() / "Client/Main1");   // a folder no entry names
    EXPECT_EQ(list.DefName(), "Solution 2");

    const int copy = list.CopyModel(0, "Copy");
    EXPECT_EQ(list.Get(copy).FolderNo, 3);
    EXPECT_EQ(list.Path(copy), base + "Client/Main3/");
    EXPECT_EQ(kvtest::ReadBytes(list.Path(copy) + "sub/x"), kvtest::Bytes{'x'});
    EXPECT_TRUE(list.ModelDirty());

    list.SelectedIndex = 2;
    list.DeleteModel(0, true);
    EXPECT_FALSE(std::filesystem::exists(tmp.Path() / "Client/Main"));
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.SelectedIndex, 1);
    EXPECT_THROW(list.DeleteModel(5, true), kv::EListError);
}

TEST(Model, PartyLookups) {
    kv::TModelData m(0, nullptr, nullptr, nullptr, nullptr, "FinItems.dat", nullptr, kv::kDefaultLibrarySettings);
    EXPECT_EQ(m.PrincPartyID(), -1);
    for (int id : {7, 8, 9}) {
        auto p = std::make_unique<kv::TParticipant>(id);
        p->Role = id == 9 ? 2 : 1;
        p->BirthDate = Day(year(1950 + id) / 1 / 1);
        if (id == 8) p->UIDLinks = {{1, 2}};
        m.AddParticipant(std::move(p));
    }
    EXPECT_EQ(m.PrincPartyID(), 7);
    EXPECT_TRUE(m.SecondParentExists());
    EXPECT_EQ(m.GetParticipantByUID({1, 2}), m.GetParticipantByID(8));
    EXPECT_EQ(m.MaxLifeExpX(), 2049);
    EXPECT_NE(m.GetParticipantByID(7)->Color, m.GetParticipantByID(8)->Color);

    auto* first = m.Add(std::make_unique<kv::TFinItem>(nullptr, &m, 1));
    auto* child = first->AddChild(std::make_unique<kv::TFinItem>(nullptr, &m, 2));
    auto* second = m.Add(std::make_unique<kv::TFinItem>(nullptr, &m, 3));
    m.ResultList = {child, second};
    m.Delete(0);
    EXPECT_EQ(m.ResultList, std::vector<kv::TFinItem*>{second});
    EXPECT_EQ(m.Count(), 1);
    EXPECT_THROW(m.Delete(1), kv::EListError);
}

} // namespace
