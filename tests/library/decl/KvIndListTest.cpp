#include "decl/KvValueLists.h"

#include "KvErrors.h"
#include "decl/KvModelFormat.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

using namespace kv;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

using DblPairs = std::vector<std::pair<int32_t, double>>;
using StrPairs = std::vector<std::pair<int32_t, std::string>>;

DblPairs Entries(const TIndDblList& L)
{
    DblPairs R;
    for (int I = 0; I < L.Count(); ++I)
        R.emplace_back(L.Items(I).Ind, L.Items(I).Val);
    return R;
}

StrPairs Entries(const TIndStrList& L)
{
    StrPairs R;
    for (int I = 0; I < L.Count(); ++I)
        R.emplace_back(L.Items(I).Ind, L.Items(I).Val);
    return R;
}

TIndDblList Make(const DblPairs& Pairs)
{
    TIndDblList L;
    for (const auto& [Ind, Val] : Pairs)
        L.PutVal(Ind, Val);
    return L;
}

TEST(decl_IndDblList, PutValKeepsIndexesSortedAndUnique)
{
    struct Case {
        DblPairs Puts;
        DblPairs Expected;
    };
    const Case Cases[] = {
        {{{2030, 1}, {2025, 2}, {2027, 3}}, {{2025, 2}, {2027, 3}, {2030, 1}}},
        {{{5, 1}, {1, 2}, {5, 3}, {3, 4}, {1, 5}}, {{1, 5}, {3, 4}, {5, 3}}},
        {{{INT32_MAX, 1}, {INT32_MIN, 2}, {0, 3}}, {{INT32_MIN, 2}, {0, 3}, {INT32_MAX, 1}}},
    };
    for (size_t I = 0; I < std::size(Cases); ++I) {
        SCOPED_TRACE(I);
        TIndDblList L = Make(Cases[I].Puts);
        EXPECT_EQ(Entries(L), Cases[I].Expected);
        EXPECT_EQ(L.FirstInd(), Cases[I].Expected.front().first);
        EXPECT_EQ(L.LastInd(), Cases[I].Expected.back().first);
    }
}

TEST(decl_IndDblList, WritesText)
{
    struct Case {
        DblPairs Values;
        const char* Text;
    };
    const Case Cases[] = {
        {{}, ""},
        {{{2024, 1500}, {2025, 250.5}}, "2024:1500,2025:250.5"},
        {{{-1, -0.0}}, "-1:-0"},
        {{{2024, 1e-05}, {2025, kNaN}, {2026, -kInf}}, "2024:1e-05,2025:nan,2026:-inf"},
    };
    for (const auto& C : Cases)
        EXPECT_EQ(Make(C.Values).GetAsString(), C.Text);
}

TEST(decl_IndDblList, ReadsTextWithJunk)
{
    struct Case {
        const char* Text;
        DblPairs Expected;
    };
    const Case Cases[] = {
        {"2024:10,x:5,2025:abc", {{2024, 10}, {2025, 0}}},
        {"", {}},
        {",,2024:1,", {{2024, 1}}},
        {"2024:1,2024:2", {{2024, 2}}},
        {"2024:1,2020:5,2024:3,2020:6", {{2020, 6}, {2024, 3}}},
        {"2024", {}},
        {"2024:1:2", {{2024, 0}}},
        {" 2024:1", {}},
        {"2024: 1", {{2024, 0}}},
        {"99999999999:1", {}},
        {"-1:3", {{-1, 3}}},
        {"2024:1e-05", {{2024, 1e-05}}},
        {"2024:1,5", {{2024, 1}}}, // a comma as decimal separator splits the piece
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Text);
        TIndDblList L = Make({{1999, 42}});
        L.SetAsString(C.Text);
        EXPECT_EQ(Entries(L), C.Expected);
    }
}

TEST(decl_IndDblList, TextRoundTripKeepsEveryBit)
{
    // The digits are the float text's (tested there); this checks the list uses it.
    TIndDblList L = Make({{2000, 0.1 + 0.2}, {2001, std::numeric_limits<double>::denorm_min()}, {2002, -0.0}});
    TIndDblList Back;
    Back.SetAsString(L.GetAsString());
    ASSERT_EQ(Back.Count(), 3);
    for (int I = 0; I < 3; ++I)
        EXPECT_EQ(std::bit_cast<uint64_t>(Back.Items(I).Val), std::bit_cast<uint64_t>(L.Items(I).Val)) << I;
}

TEST(decl_IndDblList, ReadingMatchesPutValInTurn)
{
    // Reading builds the list in one go; it must give what PutVal of each
    // pair in turn gives, duplicates and order included.
    uint32_t Seed = 12345;
    auto Next = [&Seed] {
        Seed = Seed * 1664525u + 1013904223u;
        return Seed >> 8;
    };
    for (int Round = 0; Round < 50; ++Round) {
        SCOPED_TRACE(Round);
        TIndDblList Expected;
        std::string Text;
        int N = static_cast<int>(Next() % 40);
        for (int I = 0; I < N; ++I) {
            int32_t Ind = 2000 + static_cast<int32_t>(Next() % 15);
            double Val = static_cast<double>(Next() % 1000) / 8;
            Expected.PutVal(Ind, Val);
            if (!Text.empty())
                Text += ',';
            Text += std::to_string(Ind) + ':' + FloatToModelText(Val);
        }
        TIndDblList L;
        L.SetAsString(Text);
        EXPECT_EQ(Entries(L), Entries(Expected));
    }
}

TEST(decl_IndDblList, LongDescendingTextReads)
{
    constexpr int N = 200000;
    std::string Text;
    for (int I = N; I > 0; --I)
        Text += std::to_string(I) + ":1,";
    TIndDblList L;
    L.SetAsString(Text);
    ASSERT_EQ(L.Count(), N);
    EXPECT_EQ(L.FirstInd(), 1);
    EXPECT_EQ(L.LastInd(), N);
    EXPECT_EQ(L.Total(), N);
}

TEST(decl_IndStrList, TextForm)
{
    TIndStrList L;
    L.PutVal(2025, "second one");
    L.PutVal(2024, "first=1;x");
    L.PutVal(2026, "");
    EXPECT_EQ(L.GetAsString(), "2024^first=1;x|2025^second one|2026^");

    TIndStrList Back;
    Back.SetAsString(L.GetAsString());
    EXPECT_EQ(Entries(Back), Entries(L));

    struct Case {
        const char* Text;
        StrPairs Expected;
    };
    const Case Cases[] = {
        {"", {}},
        {"2024^a^b|x^c|2023^|junk", {{2023, ""}, {2024, "a^b"}}},
        {"2024^a|2024^b", {{2024, "b"}}},
        {"||^a|2024", {}},
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Text);
        TIndStrList R;
        R.PutVal(1, "old");
        R.SetAsString(C.Text);
        EXPECT_EQ(Entries(R), C.Expected);
    }

    // Not escaped: a "|" inside a text cuts it on reading.
    TIndStrList Bar;
    Bar.PutVal(1, "a|b");
    Back.SetAsString(Bar.GetAsString());
    EXPECT_EQ(Entries(Back), (StrPairs{{1, "a"}}));
}

} // namespace
