// Balances on disk: hand-laid bytes, round trips, party resolution, a
// failed load leaving the balance alone, and the dates. Damaged
// files as such are the hostile-file suite's.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "KvErrors.h"
#include "BalanceFixture.h"
#include "TestFiles.h"
#include "files/KvFnBufFile.h"
#include "items/KvBalance.h"
#include "KvSettings.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

using namespace kvtest;

namespace {

using Lay = ByteWriter;

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

// A file laid out by hand, field by field as in docs/formats/balance.md.
Lay HandFile() {
    Lay f;
    f.F64(45123.25).I32(2025);
    f.I32(2).Short("Anne Roy").I32(1).Short("Ghost").I32(99);   // list 0
    f.Zeros(3);                                                 // lists 1-3
    f.I32(2).I32(501).I32(-7);                                  // list 4: items
    f.I32(0);                                                   // list 5
    f.I32(1).I32(600);                                          // list 6: items
    f.Zeros(11 + 15);                                           // lists 7-32
    f.I32(1).Short("Marc Roy").I32(2);                          // list 33
    f.I32(2);                                                   // accounts
    f.Short("Cash").Str("Bank accounts");
    f.I32(2);
    f.I32(2023).I32(2).I32(10).F64(100.5).I32(11).F64(-0.5).I32(1).I32(900).F64(40).I32(3);
    f.I32(2024).I32(0).I32(0);
    f.Short("RRSP").Str("");
    f.I32(0);
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

    b.Save(dir.File("again.bal"));
    EXPECT_EQ(ReadBytes(dir.File("again.bal")), laid);

    // Without a model nothing resolves, and every id is still written back.
    kv::TBalance bare;
    bare.Load(dir.File("hand.bal"));
    EXPECT_EQ(bare.Parties(0)[0].Party, nullptr);
    bare.Save(dir.File("bare.bal"));
    EXPECT_EQ(ReadBytes(dir.File("bare.bal")), laid);
}

TEST(BalanceFile, RoundTripKeepsEverything) {
    TempDir dir;
    auto m = ModelWithParties();
    kv::TBalance b(m.get());
    FillBalance(b);
    b.Save(dir.File("a.bal"));

    kv::TBalance back(m.get());
    back.Load(dir.File("a.bal"));
    back.Save(dir.File("b.bal"));
    EXPECT_EQ(ReadBytes(dir.File("a.bal")), ReadBytes(dir.File("b.bal")));
    EXPECT_EQ(back.Parties(17)[0].Party, m->GetParticipantByID(2));
    EXPECT_EQ(back.Parties(33)[0].PartyID, 42);
    EXPECT_EQ(back.Find(std::string(255, 'k'))->Text.size(), 1000u);
    EXPECT_EQ(back.FindVal("Cash", 2023, 12), -1e-300);
    // Dated entries are written by year only: two of 2023 both come back as its first day.
    const kv::TAccount& cash = *back.Find("Cash");
    ASSERT_EQ(cash.Count(), 3);
    EXPECT_EQ(cash.GetAccountDate(1).Date, kv::DateOfYear(2023));
    EXPECT_EQ(back.FindValSumm("Cash", 2023), 150.25);   // the later of the two

    // A short string keeps 255 bytes of a key; a string keeps every byte.
    kv::TBalance longKey;
    longKey.Add(std::string(300, 'k'), std::string(300, 't'));
    longKey.Save(dir.File("long.bal"));
    longKey.Load(dir.File("long.bal"));
    EXPECT_EQ(longKey.GetAccount(0).Key, std::string(255, 'k'));
    EXPECT_EQ(longKey.GetAccount(0).Text, std::string(300, 't'));
}

TEST(BalanceFile, NegativeCountIsStructureAndATailIsLeftForNewerWriters) {
    kv::TBalance b;
    b.Add("Keep").FindOrAdd(45000).Add(5, 5);
    const std::string before = Printed(b);
    auto neg = kv::TBufReadFile::FromBytes(Lay().F64(0).I32(0).Zeros(34).I32(-5).b, "neg.bal");
    EXPECT_THROW(b.Load(neg), kv::EFileStructure);
    EXPECT_EQ(Printed(b), before) << "a failed load changes nothing";
    auto tail = kv::TBufReadFile::FromBytes(Lay().F64(1).I32(2).Zeros(35).I32(77).b, "tail.bal");
    EXPECT_NO_THROW(b.Load(tail));
    EXPECT_EQ(b.FirstYear, 2);
}

// ---------------------------------------------------------------------------
// Dates, dated entries and accounts

TEST(BalanceDates, YearOfADayCount) {
    struct C {
        double date;
        std::int32_t year;
    };
    for (const C c : {C{1, 1899}, C{2, 1900}, C{36526, 2000}, C{36525.99, 1999}, C{-693593, 1},
                      C{2958465.5, 9999}, C{2958466, 0}, C{std::nan(""), 0}, C{-1e300, 0}})
        EXPECT_EQ(kv::YearOfDate(c.date), c.year) << c.date;
    EXPECT_EQ(kv::DateOfYear(2000), 36526);
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

} // namespace
