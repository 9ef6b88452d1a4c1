// The plain lists: no caller of the product uses them yet, so only what a
// future caller would trip over: positions, minima and the sort's order.
#include "decl/KvValueLists.h"

#include "KvErrors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace kv;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(decl_IntrList, SearchesMinimumAndPositions)
{
    struct Case {
        std::vector<int32_t> Values;
        int32_t Wanted;
        int IndexOf;
        int IndexOfMin;
    };
    const Case Cases[] = {
        {{}, 5, -1, -1},
        {{5, 2, 7, 2}, 2, 1, 1},  // first of the equal minima
        {{4, -8, 0}, 1, -1, 1},
        {{INT32_MAX, INT32_MIN}, INT32_MIN, 1, 1},
    };
    for (const auto& C : Cases) {
        TIntrList L;
        for (int32_t V : C.Values)
            L.Add(V);
        EXPECT_EQ(L.IndexOf(C.Wanted), C.IndexOf);
        EXPECT_EQ(L.IndexOfMin(), C.IndexOfMin);
    }
    TIntrList L;
    EXPECT_EQ(L.AddIfUnique(30), 0);
    EXPECT_EQ(L.AddIfUnique(10), 1);
    EXPECT_EQ(L.AddIfUnique(30), 0);
    L.Delete(0);
    EXPECT_EQ(L.Get(0), 10);
    EXPECT_THROW(L.Get(1), EListError);
    EXPECT_THROW(L.Get(-1), EListError);
    EXPECT_THROW(L.Put(1, 0), EListError);
}

TEST(decl_DoubleList, ExactSearchAndObjects)
{
    int A = 0, B = 0;
    TDoubleList L;
    L.AddObject(0.1 + 0.2, &A);
    L.Add(kNaN);
    L.AddObject(0.3, &B);
    EXPECT_EQ(L.IndexOf(0.3), 2);   // not the sum that prints alike
    EXPECT_EQ(L.IndexOf(kNaN), -1);
    EXPECT_EQ(L.IndexOfObject(&B), 2);
    L.Delete(0);
    EXPECT_EQ(L.GetObject(1), &B);
    EXPECT_THROW(L.GetObject(2), EListError);

    TDoubleList Copy;
    Copy.Assign(&L);
    Copy.Put(1, 7);
    EXPECT_EQ(L.Get(1), 0.3);
    EXPECT_EQ(Copy.GetObject(1), &B);
}

TEST(decl_DoubleList, SortIsDescendingStableWithNaNsLast)
{
    constexpr int N = 64;   // long enough that an unstable sort would not keep the order by luck
    int Objs[N];
    TDoubleList L;
    for (int I = 0; I < N; ++I)
        L.AddObject(I % 8 == 0 ? kNaN : I % 8 == 1 ? kInf : (I * 5) % 3, &Objs[I]);
    L.SortByValue();
    int Pos = 0;
    auto Expect = [&](auto Matches) {
        for (int I = 0; I < N; ++I)
            if (Matches(I)) {
                EXPECT_EQ(L.GetObject(Pos), &Objs[I]) << Pos;
                ++Pos;
            }
    };
    Expect([](int I) { return I % 8 == 1; });
    for (int Value = 2; Value >= 0; --Value)
        Expect([Value](int I) { return I % 8 > 1 && (I * 5) % 3 == Value; });
    Expect([](int I) { return I % 8 == 0; });
    EXPECT_EQ(Pos, N);
}

} // namespace
