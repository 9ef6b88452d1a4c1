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

TEST(decl_IndDblList, EmptyListGivesNeutralValues)
{
    const TIndDblList L;
    EXPECT_EQ(L.GetVal(2024), 0);
    EXPECT_EQ(L.FirstInd(), -1);
    EXPECT_EQ(L.LastInd(), -1);
    EXPECT_EQ(L.IndOfNearest(2024), -1);
    EXPECT_EQ(L.IndexOfMin(), -1);
    EXPECT_EQ(L.IndOfMax(), -1);
    EXPECT_EQ(L.GetAsString(), "");
}

TEST(decl_IndDblList, PutValKeepsIndexesSortedAndUnique)
{
    struct Case {
        DblPairs Puts;
        DblPairs Expected;
    };
    const Case Cases[] = {
        {{{2030, 1}, {2025, 2}, {2027, 3}}, {{2025, 2}, {2027, 3}, {2030, 1}}},
        {{{3, 3}, {2, 2}, {1, 1}}, {{1, 1}, {2, 2}, {3, 3}}},
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

TEST(decl_IndDblList, FindOrAddReturnsStableEntries)
{
    TIndDblList L;
    TIndDbl& A = L.FindOrAdd(2025);
    EXPECT_EQ(A.Ind, 2025);
    EXPECT_EQ(A.Val, 0);
    EXPECT_EQ(A.Obj, nullptr);
    A.Val = 1;
    TIndDbl& B = L.FindOrAdd(2030); // append
    B.Val = 3;
    TIndDbl& C = L.FindOrAdd(2027); // before the last
    C.Val = 2;
    TIndDbl& D = L.FindOrAdd(2020); // at the front
    D.Val = 0.5;
    EXPECT_EQ(&L.FindOrAdd(2030), &B) << "the last entry itself";
    EXPECT_EQ(&L.FindOrAdd(2025), &A) << "found below the last";
    EXPECT_EQ(&L.FindOrAdd(2020), &D);
    EXPECT_EQ(A.Val, 1) << "references survive insertions";
    EXPECT_EQ(Entries(L), (DblPairs{{2020, 0.5}, {2025, 1}, {2027, 2}, {2030, 3}}));
    EXPECT_EQ(L.Find(2027), &C);
}

TEST(decl_IndDblList, SearchGivesInsertionPosition)
{
    const TIndDblList L = Make({{2025, 1}, {2027, 2}, {2030, 3}});
    struct Case {
        int32_t Ind;
        bool Found;
        int Pos;
        int FindPos;
        int32_t Nearest;
    };
    const Case Cases[] = {
        {2024, false, 0, -1, -1},
        {2025, true, 0, 0, 2025},
        {2029, false, 2, -1, 2027},
        {2030, true, 2, 2, 2030},
        {INT32_MAX, false, 3, -1, 2030},
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Ind);
        int Pos = -9;
        EXPECT_EQ(L.Search(C.Ind, Pos), C.Found);
        EXPECT_EQ(Pos, C.Pos);
        int FindPos = -9;
        const TIndDbl* E = L.Find(C.Ind, FindPos);
        EXPECT_EQ(FindPos, C.FindPos);
        EXPECT_EQ(E != nullptr, C.Found);
        if (E) {
            EXPECT_EQ(E->Ind, C.Ind);
        }
        EXPECT_EQ(L.ValueExists(C.Ind), C.Found);
        EXPECT_EQ(L.IndOfNearest(C.Ind), C.Nearest);
    }
}

TEST(decl_IndDblList, ObjectsOfMissingIndexesRaiseListError)
{
    int X = 0;
    TIndDblList L = Make({{2025, 1}, {2027, 2}, {2030, 3}});
    EXPECT_THROW(L.GetObject(2026), EListError);
    EXPECT_THROW(L.PutObject(2031, &X), EListError);
    EXPECT_THROW(L.PutObject(2024, &X), EListError);
    EXPECT_EQ(L.Count(), 3) << "nothing added by the failed calls";

    EXPECT_EQ(L.GetObject(2027), nullptr);
    L.PutObject(2027, &X);
    L.PutVal(2027, 5);
    EXPECT_EQ(L.GetObject(2027), &X) << "PutVal keeps the object";
}

TEST(decl_IndDblList, DeleteAndDelInd)
{
    TIndDblList L = Make({{1, 1}, {2, 2}, {3, 3}});
    EXPECT_THROW(L.Delete(3), EListError);
    EXPECT_THROW(L.Items(-1), EListError);
    L.DelInd(5);
    L.DelInd(2);
    L.Delete(0);
    EXPECT_EQ(Entries(L), (DblPairs{{3, 3}}));
}

TEST(decl_IndDblList, HasNonZiroValuesToleratesOneUnit)
{
    struct Case {
        DblPairs Values;
        bool Any;
        int32_t From;
        bool AnyFrom;
    };
    const Case Cases[] = {
        {{{2020, 0.5}, {2021, -1}}, false, 0, false},
        {{{2020, -1.01}}, true, 2020, true},
        {{{2020, kNaN}}, false, 0, false},
        {{{2020, 5}, {2025, 0.5}}, true, 2021, false},
        {{{2020, 0.5}, {2025, 5}}, true, 2025, true},
    };
    for (size_t I = 0; I < std::size(Cases); ++I) {
        SCOPED_TRACE(I);
        const TIndDblList L = Make(Cases[I].Values);
        EXPECT_EQ(L.HasNonZiroValues(), Cases[I].Any);
        EXPECT_EQ(L.HasNonZiroValuesFromIndex(Cases[I].From), Cases[I].AnyFrom);
    }
}

TEST(decl_IndDblList, ExtremesAndTotal)
{
    struct Case {
        DblPairs Values;
        int IndexOfMin, IndexOfMax;
        int32_t IndOfMin, IndOfMax;
        double Total;
    };
    const Case Cases[] = {
        {{{2020, 5}, {2021, 1}, {2022, 9}, {2023, 1}, {2024, 9}}, 1, 2, 2021, 2022, 25},
        {{{2020, 2}, {2021, -kInf}, {2022, 0}}, 1, 0, 2021, 2020, -kInf},
    };
    for (size_t I = 0; I < std::size(Cases); ++I) {
        SCOPED_TRACE(I);
        const TIndDblList L = Make(Cases[I].Values);
        EXPECT_EQ(L.IndexOfMin(), Cases[I].IndexOfMin);
        EXPECT_EQ(L.IndexOfMax(), Cases[I].IndexOfMax);
        EXPECT_EQ(L.IndOfMin(), Cases[I].IndOfMin);
        EXPECT_EQ(L.IndOfMax(), Cases[I].IndOfMax);
        EXPECT_EQ(L.Total(), Cases[I].Total);
    }
}

TEST(decl_IndDblList, AssignCopiesEverything)
{
    int X = 0;
    TIndDblList Src = Make({{2024, 1}, {2026, 2}});
    Src.PutObject(2026, &X);

    TIndDblList Dst = Make({{1990, 7}});
    Dst.Assign(&Src);
    EXPECT_EQ(Entries(Dst), Entries(Src));
    EXPECT_EQ(Dst.GetObject(2026), &X);
    Dst.PutVal(2024, 50);
    EXPECT_EQ(Src.GetVal(2024), 1) << "entries are copies, not shared";

    Dst.Assign(&Dst);
    EXPECT_EQ(Dst.Count(), 2);
}

TEST(decl_IndDblList, AddVals)
{
    struct Case {
        DblPairs Mine;
        DblPairs Other;
        int Sign;
        DblPairs Expected;
    };
    const Case Cases[] = {
        {{}, {{2024, 10}, {2025, -2.5}}, -1, {{2024, -10}, {2025, 2.5}}},
        {{{2020, 1}, {2030, 3}}, {{2025, 5}, {2030, 1}, {2010, 4}}, 1, {{2010, 4}, {2020, 1}, {2025, 5}, {2030, 4}}},
        {{{2020, 1}}, {{2020, 1}}, -1, {{2020, 0}}},
    };
    for (size_t I = 0; I < std::size(Cases); ++I) {
        SCOPED_TRACE(I);
        TIndDblList L = Make(Cases[I].Mine);
        const TIndDblList Other = Make(Cases[I].Other);
        L.AddVals(&Other, Cases[I].Sign);
        EXPECT_EQ(Entries(L), Cases[I].Expected);
        EXPECT_EQ(Entries(Other), Entries(Make(Cases[I].Other))) << "Other untouched";
    }
    TIndDblList L = Make({{1, 2}, {2, 3}});
    L.AddVals(&L, 1);
    EXPECT_EQ(Entries(L), (DblPairs{{1, 4}, {2, 6}}));
    L.AddVals(&L, -1);
    EXPECT_EQ(Entries(L), (DblPairs{{1, 0}, {2, 0}}));
}

TEST(decl_IndDblList, ValsIfPlus)
{
    TIndDblList L = Make({{1, -3}, {3, 4}, {4, kNaN}, {7, -1e-300}});
    L.ValsIfPlus();
    EXPECT_EQ(Entries(L), (DblPairs{{1, 0}, {3, 4}, {4, 0}, {7, 0}}));
}

TEST(decl_IndDblList, SortByValueIsDescendingStableWithNaNsLast)
{
    TIndDblList L = Make({{2020, 1}, {2021, kNaN}, {2022, 3}, {2023, 3}, {2024, -kInf}, {2025, kNaN}, {2026, kInf},
                          {2027, -2}});
    L.SortByValue();
    std::vector<int32_t> Order;
    for (int I = 0; I < L.Count(); ++I)
        Order.push_back(L.Items(I).Ind);
    EXPECT_EQ(Order, (std::vector<int32_t>{2026, 2022, 2023, 2020, 2027, 2024, 2021, 2025}));
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
        {"2025:1,2024:2", {{2024, 2}, {2025, 1}}},
        {"2024", {}},
        {":5", {}},
        {"2024:", {{2024, 0}}},
        {"2024:1:2", {{2024, 0}}},
        {" 2024:1", {}},
        {"2024: 1", {{2024, 0}}},
        {"+2024:1", {}},
        {"2024.0:1", {}},
        {"99999999999:1", {}},
        {"-1:3", {{-1, 3}}},
        {"2024:1e-05", {{2024, 1e-05}}},
        {"2024:+5", {{2024, 0}}},
        {"2024:1,5", {{2024, 1}}}, // a comma as decimal separator splits the piece
        {"2024;1", {}},
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Text);
        TIndDblList L = Make({{1999, 42}});
        L.SetAsString(C.Text);
        EXPECT_EQ(Entries(L), C.Expected);
    }
}

TEST(decl_IndDblList, ReadingClearsObjects)
{
    int X = 0;
    TIndDblList L = Make({{2024, 1}});
    L.PutObject(2024, &X);
    L.SetAsString("2024:5");
    EXPECT_EQ(L.GetObject(2024), nullptr);
    EXPECT_EQ(L.GetVal(2024), 5);
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

TEST(decl_IndStrList, AbsentTextIsEmpty)
{
    // The index rules are shared with TIndDblList; only the text defaults differ.
    int X = 0;
    TIndStrList L;
    EXPECT_EQ(L.GetVal(2024), "");
    L.PutVal(2030, "c");
    L.PutVal(2025, "a");
    L.PutVal(2025, "A");
    EXPECT_EQ(L.FindOrAdd(2027).Val, "");
    EXPECT_EQ(Entries(L), (StrPairs{{2025, "A"}, {2027, ""}, {2030, "c"}}));
    EXPECT_THROW(L.GetObject(2028), EListError);
    L.PutObject(2030, &X);
    TIndStrList Copy(L);
    L.PutVal(2030, "changed");
    EXPECT_EQ(Copy.GetVal(2030), "c");
    EXPECT_EQ(Copy.GetObject(2030), &X);
}

TEST(decl_IndStrList, AddValsAppendsTexts)
{
    TIndStrList L, Other;
    L.PutVal(2024, "a");
    L.PutVal(2026, "c");
    Other.PutVal(2025, "x");
    Other.PutVal(2026, "y");
    L.AddVals(&Other);
    EXPECT_EQ(Entries(L), (StrPairs{{2024, "a"}, {2025, "x"}, {2026, "cy"}}));
    L.AddVals(&L);
    EXPECT_EQ(Entries(L), (StrPairs{{2024, "aa"}, {2025, "xx"}, {2026, "cycy"}}));
    L.AddVals(nullptr);
    EXPECT_EQ(L.Count(), 3);
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
        {"2024^a,b:c", {{2024, "a,b:c"}}},
        {" 2024^a", {}},
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
