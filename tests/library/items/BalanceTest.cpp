// Balances on disk: hand-laid bytes, round trips, party resolution, a
// failed load leaving the balance alone, and the year queries.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "KvErrors.h"
#include "TestFiles.h"
#include "files/KvFnBufFile.h"
#include "items/KvBalance.h"
#include "KvSettings.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

using namespace kvtest;

namespace {

// Little-endian bytes laid by hand, independent of the writer.
struct Lay {
    Bytes b;
    Lay& Int(std::int32_t v) {
        const auto u = static_cast<std::uint32_t>(v);
        for (int i = 0; i < 4; ++i) b.push_back(std::uint8_t(u >> (8 * i)));
        return *this;
    }
    Lay& Dbl(double v) {
        std::uint64_t u;
        std::memcpy(&u, &v, 8);
        for (int i = 0; i < 8; ++i) b.push_back(std::uint8_t(u >> (8 * i)));
        return *this;
    }
    Lay& Short(const std::string& s) {
        b.push_back(std::uint8_t(s.size()));
        b.insert(b.end(), s.begin(), s.end());
        return *this;
    }
    Lay& Str(const std::string& s) {
        Int(std::int32_t(s.size()));
        b.insert(b.end(), s.begin(), s.end());
        return *this;
    }
    Lay& Zeros(int ints) {
        for (int i = 0; i < ints; ++i) Int(0);
        return *this;
    }
};

std::unique_ptr<kv::TModelData> ModelWithParties() {
    auto m = std::make_unique<kv::TModelData>(0, nullptr, nullptr, nullptr, nullptr, "/nonexistent/FinItems.dat",
                                              nullptr, kv::kDefaultLibrarySettings);
    for (auto [id, first, last] : {std::tuple{1, "Anne", "Roy"}, std::tuple{2, "Marc", "Roy"}}) {
        auto p = kv::CreateParty(0, id, 1, 0);
        p->FirstName = first;
        p->LastName = last;
        m->AddParticipant(std::move(p));
    }
    return m;
}

std::string Printed(const kv::TBalance& b) {
    std::ostringstream o;
    b.Print(o);
    return o.str();
}

// ---------------------------------------------------------------------------

TEST(BalanceFile, EmptyBalanceWritesThirtyFourZeroCounts) {
    TempDir dir;
    kv::TBalance b;
    b.Date = 45000.5;
    b.FirstYear = 2024;
    b.Save(dir.File("empty.bal"));
    const Bytes got = ReadBytes(dir.File("empty.bal"));
    ASSERT_EQ(got.size(), 8u + 4 + 34 * 4 + 4);
    EXPECT_EQ(got, Lay().Dbl(45000.5).Int(2024).Zeros(34).Int(0).b);
}

// A file laid out by hand, field by field as in docs/formats/balance.md.
Lay HandFile() {
    Lay f;
    f.Dbl(45123.25).Int(2025);
    f.Int(2).Short("Anne Roy").Int(1).Short("Ghost").Int(99);   // list 0
    f.Zeros(3);                                                 // lists 1-3
    f.Int(2).Int(501).Int(-7);                                  // list 4: items
    f.Int(0);                                                   // list 5
    f.Int(1).Int(600);                                          // list 6: items
    f.Zeros(11 + 15);                                           // lists 7-32
    f.Int(1).Short("Marc Roy").Int(2);                          // list 33
    f.Int(2);                                                   // accounts
    f.Short("Cash").Str("Bank accounts");
    f.Int(2);
    f.Int(2023).Int(2).Int(10).Dbl(100.5).Int(11).Dbl(-0.5).Int(1).Int(900).Dbl(40).Int(3);
    f.Int(2024).Int(0).Int(0);
    f.Short("RRSP").Str("");
    f.Int(0);
    return f;
}

TEST(BalanceFile, HandLaidFileLoadsAndSavesBackIdentically) {
    TempDir dir;
    const Bytes laid = HandFile().b;
    WriteBytes(dir.File("hand.bal"), laid);
    auto model = ModelWithParties();
    kv::TBalance b(model.get());
    b.Load(dir.File("hand.bal"));

    EXPECT_EQ(b.Date, 45123.25);
    EXPECT_EQ(b.FirstYear, 2025);
    ASSERT_EQ(b.Parties(0).size(), 2u);
    EXPECT_EQ(b.Parties(0)[0].Name, "Anne Roy");
    EXPECT_EQ(b.Parties(0)[0].Party, model->GetParticipantByID(1));
    EXPECT_EQ(b.Parties(0)[1].PartyID, 99);
    EXPECT_EQ(b.Parties(0)[1].Party, nullptr);
    ASSERT_EQ(b.Items(4).size(), 2u);
    EXPECT_EQ(b.Items(4)[1].ID, -7);
    EXPECT_EQ(b.Items(6)[0].ID, 600);
    ASSERT_EQ(b.Parties(33).size(), 1u);
    EXPECT_EQ(b.Parties(33)[0].Party, model->GetParticipantByID(2));

    ASSERT_EQ(b.Count(), 2);
    const kv::TAccount& cash = b.GetAccount(0);
    EXPECT_EQ(cash.Key, "Cash");
    EXPECT_EQ(cash.Text, "Bank accounts");
    ASSERT_EQ(cash.Count(), 2);
    const kv::TAccountDate& d = cash.GetAccountDate(0);
    EXPECT_EQ(d.Year, 2023);
    EXPECT_EQ(d.Date, kv::DateOfYear(2023));
    ASSERT_EQ(d.Count(), 2);
    EXPECT_EQ(d.GetAccountVal(1).EntryID, 11);
    EXPECT_EQ(d.GetAccountVal(1).Value, -0.5);
    EXPECT_EQ(d.GetAccountVal(1).Value2, -1);   // not in the file: not set
    ASSERT_EQ(d.FinItemCount(), 1);
    EXPECT_EQ(d.GetFinItemVal(0).ItemID, 900);
    EXPECT_EQ(d.GetFinItemVal(0).Int2, 3);
    EXPECT_EQ(b.Find("RRSP")->Count(), 0);

    EXPECT_THROW(b.Parties(4), kv::EListError);   // an item list
    EXPECT_THROW(b.Items(0), kv::EListError);
    EXPECT_THROW(b.Parties(34), kv::EListError);

    b.Save(dir.File("again.bal"));
    EXPECT_EQ(ReadBytes(dir.File("again.bal")), laid);

    // Without a model nothing resolves, and every id is still written back.
    kv::TBalance bare;
    bare.Load(dir.File("hand.bal"));
    EXPECT_EQ(bare.Parties(0)[0].Party, nullptr);
    bare.Save(dir.File("bare.bal"));
    EXPECT_EQ(ReadBytes(dir.File("bare.bal")), laid);
}

kv::TBalance& Fill(kv::TBalance& b, kv::TModelData& m) {
    b.Date = 45290.75;
    b.FirstYear = 2024;
    b.AddParty(0, *m.GetParticipantByID(1));
    b.AddParty(17, *m.GetParticipantByID(2), "Marc (pension)");
    b.AddPartyID(33, 42, "Nobody");
    b.Items(4).push_back({7001});
    b.Items(6).push_back({7002});
    auto& cash = b.Add("Cash", "Bank; and cash");
    auto& d1 = cash.FindOrAdd(45000);   // 15 March 2023
    d1.Add(10, 100);
    d1.AddFinItem(7001, 60, 1);
    auto& d2 = cash.FindOrAdd(45200);   // 1 October 2023
    d2.Add(10, 150.25);
    d2.Add(12, -1e-300);
    cash.FindOrAdd(45400).Add(10, -50);
    b.Add(std::string(255, 'k'), std::string(1000, 't'));
    return b;
}

TEST(BalanceFile, RoundTripKeepsEverything) {
    TempDir dir;
    auto m = ModelWithParties();
    kv::TBalance b(m.get());
    Fill(b, *m);
    b.Save(dir.File("a.bal"));

    kv::TBalance back(m.get());
    back.Load(dir.File("a.bal"));
    back.Save(dir.File("b.bal"));
    EXPECT_EQ(ReadBytes(dir.File("a.bal")), ReadBytes(dir.File("b.bal")));
    EXPECT_EQ(Printed(back), Printed(b));

    EXPECT_EQ(back.Parties(0)[0].Name, "Anne Roy");
    EXPECT_EQ(back.Parties(17)[0].Party, m->GetParticipantByID(2));
    EXPECT_EQ(back.Parties(33)[0].Party, nullptr);
    EXPECT_EQ(back.Parties(33)[0].PartyID, 42);
    EXPECT_EQ(back.Find("Cash")->Text, "Bank; and cash");
    EXPECT_EQ(back.GetAccount(1).Key, std::string(255, 'k'));
    EXPECT_EQ(back.GetAccount(1).Text.size(), 1000u);
    EXPECT_EQ(back.FindVal("Cash", 2023, 12), -1e-300);

    // A short string keeps 255 bytes of a key; a string keeps every byte.
    kv::TBalance longKey;
    longKey.Add(std::string(300, 'k'), std::string(300, 't'));
    longKey.Save(dir.File("long.bal"));
    longKey.Load(dir.File("long.bal"));
    EXPECT_EQ(longKey.GetAccount(0).Key, std::string(255, 'k'));
    EXPECT_EQ(longKey.GetAccount(0).Text, std::string(300, 't'));
}

// Dated entries are written by year only.
TEST(BalanceFile, TwoDatesOfOneYearComeBackWithTheSameYear) {
    TempDir dir;
    kv::TBalance b;
    auto& a = b.Add("Cash");
    a.FindOrAdd(45000).Add(1, 1);
    a.FindOrAdd(45200).Add(1, 2);
    ASSERT_EQ(a.Count(), 2);
    EXPECT_NE(a.GetAccountDate(0).Date, a.GetAccountDate(1).Date);
    b.Save(dir.File("y.bal"));
    kv::TBalance back;
    back.Load(dir.File("y.bal"));
    const kv::TAccount& r = back.GetAccount(0);
    ASSERT_EQ(r.Count(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(r.GetAccountDate(i).Year, 2023);
        EXPECT_EQ(r.GetAccountDate(i).Date, kv::DateOfYear(2023));
    }
    EXPECT_EQ(back.FindValSumm("Cash", 2023), 2);   // the later of the two
}

// Damage as such is the hostile-file suite's; here: a failed load changes nothing.
TEST(BalanceFile, EveryTruncationThrowsAndLeavesTheBalanceAlone) {
    TempDir dir;
    auto m = ModelWithParties();
    kv::TBalance b(m.get());
    Fill(b, *m);
    b.Save(dir.File("full.bal"));
    const Bytes full = ReadBytes(dir.File("full.bal"));
    ASSERT_GT(full.size(), 1000u);

    kv::TBalance target(m.get());
    target.Add("Keep").FindOrAdd(45000).Add(5, 5);
    target.FirstYear = 1999;
    const std::string before = Printed(target);
    for (std::size_t n = 0; n < full.size(); ++n) {
        auto r = kv::TBufReadFile::FromBytes(Bytes(full.begin(), full.begin() + std::ptrdiff_t(n)), "cut.bal");
        EXPECT_THROW(target.Load(r), kv::EReadError) << "at " << n;
    }
    EXPECT_EQ(Printed(target), before);

    auto r = kv::TBufReadFile::FromBytes(full, "whole.bal");
    target.Load(r);
    EXPECT_EQ(Printed(target), Printed(b));
}

TEST(BalanceFile, NegativeCountIsStructureAndATailIsLeftForNewerWriters) {
    kv::TBalance b;
    auto neg = kv::TBufReadFile::FromBytes(Lay().Dbl(0).Int(0).Zeros(34).Int(-5).b, "neg.bal");
    EXPECT_THROW(b.Load(neg), kv::EFileStructure);
    auto tail = kv::TBufReadFile::FromBytes(Lay().Dbl(1).Int(2).Zeros(35).Int(77).b, "tail.bal");
    EXPECT_NO_THROW(b.Load(tail));
    EXPECT_EQ(b.FirstYear, 2);
}

TEST(BalanceFile, MissingFileIsAnInputOutputError) {
    kv::TBalance b;
    EXPECT_THROW(b.Load("/nonexistent-tessary/none.bal"), kv::EInOutError);
    EXPECT_THROW(b.Save("/nonexistent-tessary/none.bal"), kv::EInOutError);
}

// ---------------------------------------------------------------------------
// Dates, dated entries and accounts

TEST(BalanceDates, YearOfADayCount) {
    struct C {
        double date;
        std::int32_t year;
    };
    for (const C c : {C{0, 1899}, C{1, 1899}, C{2, 1900}, C{45000, 2023}, C{36526, 2000}, C{36525.99, 1999},
                      C{-1, 1899}, C{-693593, 1}, C{2958465.5, 9999}, C{2958466, 0}, C{std::nan(""), 0},
                      C{1e300, 0}, C{-1e300, 0}})
        EXPECT_EQ(kv::YearOfDate(c.date), c.year) << c.date;
    EXPECT_EQ(kv::DateOfYear(2000), 36526);
    EXPECT_EQ(kv::DateOfYear(1900), 2);
    EXPECT_EQ(kv::YearOfDate(kv::DateOfYear(2024)), 2024);
    EXPECT_EQ(kv::YearOfDate(kv::DateOfYear(2024) - 1), 2023);
    EXPECT_EQ(kv::DateOfYear(-5), kv::DateOfYear(1));
}

TEST(BalanceDates, AccountDateSumsAndCopies) {
    kv::TAccountDate d(45000.5);
    EXPECT_EQ(d.Year, 2023);
    d.Add(10, 5);
    d.Add(11, 7);
    d.Add(10, 2);
    EXPECT_EQ(d.FindVal(10), 7);
    EXPECT_EQ(d.SumVal(), 14);
    d.SetVal(10, 1);   // the first value of the entry
    EXPECT_EQ(d.FindVal(10), 3);
    d.AddFinItem(500, 10, 1);
    d.AddFinItem(501, -4);
    EXPECT_EQ(d.SumFinVals(), 6);
    EXPECT_THROW(d.GetFinItemVal(2), kv::EListError);

    int link = 0;
    d.Link = &link;
    kv::TAccountDate copy;
    copy.Assign(d);
    EXPECT_EQ(copy.Count(), 3);
    EXPECT_EQ(copy.SumFinVals(), 6);
    EXPECT_EQ(copy.Link, nullptr);
}

TEST(BalanceDates, FindOrAddKeepsDateOrder) {
    kv::TAccount a("k", "");
    a.FindOrAdd(45300);
    a.FindOrAdd(45000);
    a.FindOrAdd(45200);
    kv::TAccountDate& again = a.FindOrAdd(45000);
    ASSERT_EQ(a.Count(), 3);
    EXPECT_EQ(&again, &a.GetAccountDate(0));
    EXPECT_EQ(a.GetAccountDate(1).Date, 45200);
    EXPECT_EQ(a.GetAccountDate(2).Date, 45300);
    EXPECT_EQ(a.FindYear(2023), &a.GetAccountDate(0));
    EXPECT_EQ(a.FindLastOfYear(2023), &a.GetAccountDate(1));
    EXPECT_EQ(a.FindYear(2030), nullptr);
    EXPECT_EQ(a.Years(), (std::vector<std::int32_t>{2023, 2024}));
}

TEST(BalanceAccounts, DictionaryKeepsTheFirstOfAKey) {
    kv::TBalance b;
    b.Add("A", "first");
    b.Add("A", "second");
    EXPECT_EQ(b.Count(), 2);
    EXPECT_EQ(b.Find("A")->Text, "first");
    EXPECT_EQ(&b.FindOrAdd("A"), &b.GetAccount(0));

    TempDir dir;
    b.Save(dir.File("d.bal"));
    kv::TBalance back;
    back.Load(dir.File("d.bal"));
    EXPECT_EQ(back.Find("A")->Text, "first");
    EXPECT_EQ(back.Count(), 2);
}

TEST(BalanceCapitalGains, LossesCarryForward) {
    kv::TBalance b;
    kv::TCGManager& g = b.GetCGManager(1);
    g.Add(2020, 100);
    g.Add(2021, -300);
    g.Add(2022, 100);
    g.Add(2023, 500);
    g.Add(2023, -20);
    struct C {
        std::int32_t year;
        double net, carried, taxable;
    };
    for (const C c : {C{2019, 0, 0, 0}, C{2020, 100, 0, 100}, C{2021, -300, 0, 0}, C{2022, 100, 300, 0},
                      C{2023, 480, 200, 280}, C{2024, 0, 0, 0}}) {
        EXPECT_EQ(g.NetGain(c.year), c.net) << c.year;
        EXPECT_EQ(g.LossCarriedInto(c.year), c.carried) << c.year;
        EXPECT_EQ(g.TaxableGain(c.year), c.taxable) << c.year;
    }
    // Not part of the file: a load forgets them.
    TempDir dir;
    b.Save(dir.File("g.bal"));
    b.Load(dir.File("g.bal"));
    EXPECT_EQ(b.CGManagerCount(), 0);
}

// ---------------------------------------------------------------------------
// Year queries and listings

// Cash: 2023 two dated entries (100, then 150), 2024 -50, 2026 30.
// Debt: 2024 -20, 2025 -10. Zero: only zero values. Items: only an item value.
kv::TBalance& QueryBalance(kv::TBalance& b) {
    auto& cash = b.Add("Cash");
    auto& c1 = cash.FindOrAdd(45000);
    c1.Add(10, 60);
    c1.Add(11, 40);
    c1.AddFinItem(900, 60);
    auto& c2 = cash.FindOrAdd(45200);
    c2.Add(10, 150);
    c2.AddFinItem(901, 1);
    c2.AddFinItem(900, 2);
    cash.FindOrAdd(45400).Add(10, -50);   // 2024
    cash.FindOrAdd(46100).Add(12, 30);    // 2026
    auto& debt = b.Add("Debt");
    debt.FindOrAdd(45400).Add(20, -20);
    debt.FindOrAdd(45700).Add(20, -10);   // 2025
    b.Add("Zero").FindOrAdd(45000).Add(10, 0);
    b.Add("Items").FindOrAdd(45000).AddFinItem(905, -3);
    b.Add("Empty");
    return b;
}

TEST(BalanceQueries, ValuesOfAYear) {
    kv::TBalance b;
    QueryBalance(b);
    struct C {
        const char* key;
        std::int32_t year, entry;
        double val, summ, x;
    };
    const C cases[] = {
        {"Cash", 2023, 10, 150, 150, 150},   // the later dated entry of 2023
        {"Cash", 2023, 11, 0, 150, 0},       // only in the earlier one
        {"Cash", 2024, 10, -50, -50, -50},
        {"Cash", 2025, 10, 0, 0, -50},       // no 2025: X carries 2024 forward
        {"Cash", 2030, 12, 0, 0, 30},
        {"Cash", 2022, 10, 0, 0, 0},         // nothing earlier
        {"Debt", 2025, 20, -10, -10, -10},
        {"None", 2023, 10, 0, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(b.FindVal(c.key, c.year, c.entry), c.val) << c.key << c.year;
        EXPECT_EQ(b.FindValSumm(c.key, c.year), c.summ) << c.key << c.year;
        EXPECT_EQ(b.FindValX(c.key, c.year, c.entry), c.x) << c.key << c.year;
    }
}

TEST(BalanceQueries, TotalsExtremesAndNegativeYears) {
    kv::TBalance b;
    QueryBalance(b);
    struct C {
        const char* key;
        double total, from2024, max;
        std::int32_t maxYear;
        double min;
        std::int32_t minYear, negative, negativeFrom2025;
    };
    const C cases[] = {
        {"Cash", 130, -20, 150, 2023, -50, 2024, 2024, -1},
        {"Debt", -30, -30, -10, 2025, -20, 2024, 2024, 2025},
        {"Zero", 0, 0, 0, 2023, 0, 2023, -1, -1},
        {"Empty", 0, 0, 0, -1, 0, -1, -1, -1},
        {"None", 0, 0, 0, -1, 0, -1, -1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        EXPECT_EQ(b.AccountTotal(c.key), c.total);
        EXPECT_EQ(b.AccountTotalFromYear(c.key, 2024), c.from2024);
        std::int32_t y = 0;
        EXPECT_EQ(b.AccountMax(c.key, &y), c.max);
        EXPECT_EQ(y, c.maxYear);
        EXPECT_EQ(b.AccountMin(c.key, &y), c.min);
        EXPECT_EQ(y, c.minYear);
        EXPECT_EQ(b.FirstAccountNegativeYear(c.key), c.negative);
        EXPECT_EQ(b.FirstAccountNegativeYear(c.key, 2025), c.negativeFrom2025);
    }
    using K = std::vector<std::string>;
    EXPECT_EQ(b.FirstAccountSumNegativeYear(K{"Cash", "Debt"}), 2024);
    // 2025: Cash has no entry and counts 0, Debt -10.
    EXPECT_EQ(b.FirstAccountSumNegativeYear(K{"Cash", "Debt"}, 2025), 2025);
    EXPECT_EQ(b.FirstAccountSumNegativeYear(K{"Cash", "Debt"}, 2026), -1);

    // A tie keeps the earliest year.
    kv::TBalance t;
    auto& a = t.Add("T");
    a.FindOrAdd(45400).Add(1, 5);   // 2024
    a.FindOrAdd(45000).Add(1, 5);   // 2023
    std::int32_t y = 0;
    t.AccountMax("T", &y);
    EXPECT_EQ(y, 2023);
    t.AccountMin("T", &y);
    EXPECT_EQ(y, 2023);
}

TEST(BalanceQueries, Listings) {
    kv::TBalance b;
    QueryBalance(b);
    EXPECT_EQ(b.ListAllE(), (std::vector<std::int32_t>{10, 11, 12, 20}));
    EXPECT_EQ(b.ListPopulatedAccounts(), (std::vector<std::string>{"Cash", "Debt", "Items"}));
    EXPECT_EQ(b.ListAccountItems("Cash"), (std::vector<std::int32_t>{900, 901}));
    EXPECT_TRUE(b.ListAccountItems("Debt").empty());
}

} // namespace
