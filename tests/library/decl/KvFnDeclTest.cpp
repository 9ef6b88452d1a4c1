#include "decl/KvFnDecl.h"

#include "KvErrors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace kv;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(decl_IntrList, SearchesAndMinimum)
{
    struct Case {
        std::vector<int32_t> Values;
        int32_t Wanted;
        int IndexOf;
        int IndexOfMin;
    };
    const Case Cases[] = {
        {{}, 5, -1, -1},
        {{5}, 5, 0, 0},
        {{5, 2, 7, 2}, 2, 1, 1},  // first of the equal minima
        {{3, 9, 3}, 3, 0, 0},
        {{4, -8, 0}, 1, -1, 1},
        {{INT32_MAX, INT32_MIN}, INT32_MIN, 1, 1},
    };
    for (const auto& C : Cases) {
        TIntrList L;
        for (size_t I = 0; I < C.Values.size(); ++I)
            EXPECT_EQ(L.Add(C.Values[I]), static_cast<int>(I));
        EXPECT_EQ(L.IndexOf(C.Wanted), C.IndexOf);
        EXPECT_EQ(L.IndexOfMin(), C.IndexOfMin);
    }
}

TEST(decl_IntrList, AddIfUniqueKeepsInsertionOrder)
{
    TIntrList L;
    EXPECT_EQ(L.AddIfUnique(30), 0);
    EXPECT_EQ(L.AddIfUnique(10), 1);
    EXPECT_EQ(L.AddIfUnique(30), 0);
    EXPECT_EQ(L.AddIfUnique(20), 2);
    ASSERT_EQ(L.Count(), 3);
    EXPECT_EQ(L.Get(0), 30);
    EXPECT_EQ(L.Get(1), 10);
    EXPECT_EQ(L.Get(2), 20);
    L.Put(1, 30);
    EXPECT_EQ(L.AddIfUnique(30), 0);
    L.Delete(0);
    EXPECT_EQ(L.IndexOf(30), 0);
    EXPECT_EQ(L.Get(1), 20);
}

TEST(decl_IntrList, BadPositionsRaiseListError)
{
    TIntrList L;
    L.Add(1);
    EXPECT_THROW(L.Get(1), EListError);
    EXPECT_THROW(L.Get(-1), EListError);
    EXPECT_THROW(L.Put(1, 0), EListError);
    EXPECT_THROW(L.Delete(2), EListError);
    try {
        L.Get(7);
        FAIL();
    } catch (const EListError& E) {
        EXPECT_STREQ(E.what(), "List index out of bounds (7)");
    }
}

TEST(decl_DoubleList, IndexOfIsExact)
{
    TDoubleList L;
    L.Add(0.1 + 0.2);
    L.Add(kNaN);
    L.Add(-0.0);
    L.Add(0.3);
    L.Add(0.3);
    struct Case {
        double Wanted;
        int Pos;
    };
    const Case Cases[] = {{0.3, 3}, {0.1 + 0.2, 0}, {kNaN, -1}, {0.0, 2}, {0.30000000000000004441, 0}, {1, -1}};
    for (const auto& C : Cases)
        EXPECT_EQ(L.IndexOf(C.Wanted), C.Pos) << C.Wanted;
}

TEST(decl_DoubleList, ObjectsTravelWithValues)
{
    int A = 0, B = 0, C = 0;
    TDoubleList L;
    EXPECT_EQ(L.AddObject(5, &A), 0);
    EXPECT_EQ(L.Add(2), 1);
    EXPECT_EQ(L.AddObject(2, &C), 2);
    EXPECT_EQ(L.GetObject(1), nullptr);
    L.PutObject(1, &B);
    EXPECT_EQ(L.IndexOfObject(&B), 1);
    EXPECT_EQ(L.IndexOfObject(&C), 2);
    EXPECT_EQ(L.IndexOfObject(nullptr), -1);
    EXPECT_EQ(L.IndexOfMin(), 1) << "first of the equal minima";

    L.Delete(0);
    EXPECT_EQ(L.Count(), 2);
    EXPECT_EQ(L.GetObject(0), &B);
    EXPECT_THROW(L.GetObject(2), EListError);
    EXPECT_THROW(L.PutObject(-1, &A), EListError);
    EXPECT_THROW(L.Put(2, 1), EListError);
    EXPECT_THROW(L.Delete(2), EListError);

    TDoubleList Copy;
    Copy.Add(99);
    Copy.Assign(&L);
    ASSERT_EQ(Copy.Count(), 2);
    EXPECT_EQ(Copy.Get(1), 2);
    EXPECT_EQ(Copy.GetObject(1), &C);
    Copy.Put(1, 7);
    EXPECT_EQ(L.Get(1), 2);
    Copy.Assign(&Copy);
    EXPECT_EQ(Copy.Count(), 2);
    Copy.Assign(nullptr);
    EXPECT_EQ(Copy.Count(), 0);
    EXPECT_EQ(Copy.IndexOfMin(), -1);
}

TEST(decl_DoubleList, SortByValue)
{
    struct Case {
        std::vector<double> Values;
        std::vector<double> Sorted; // NaN stands for any NaN
    };
    const Case Cases[] = {
        {{}, {}},
        {{1}, {1}},
        {{1, 3, 2}, {3, 2, 1}},
        {{kNaN, 1, kNaN, 3}, {3, 1, kNaN, kNaN}},
        {{kInf, 5, -kInf, kInf, kNaN, -2}, {kInf, kInf, 5, -2, -kInf, kNaN}},
        {{kNaN, kNaN}, {kNaN, kNaN}},
    };
    for (const auto& C : Cases) {
        TDoubleList L;
        for (double V : C.Values)
            L.Add(V);
        L.SortByValue();
        ASSERT_EQ(L.Count(), static_cast<int>(C.Sorted.size()));
        for (int I = 0; I < L.Count(); ++I) {
            if (std::isnan(C.Sorted[I]))
                EXPECT_TRUE(std::isnan(L.Get(I))) << I;
            else
                EXPECT_EQ(L.Get(I), C.Sorted[I]) << I;
        }
    }
}

TEST(decl_DoubleList, SortKeepsOrderOfEqualValues)
{
    // Long enough that an unstable sort would not keep the order by luck.
    constexpr int N = 64;
    int Objs[N];
    TDoubleList L;
    for (int I = 0; I < N; ++I)
        L.AddObject((I * 5) % 3, &Objs[I]);
    L.SortByValue();
    int Pos = 0;
    for (int Value = 2; Value >= 0; --Value)
        for (int I = 0; I < N; ++I)
            if ((I * 5) % 3 == Value) {
                EXPECT_EQ(L.Get(Pos), Value);
                EXPECT_EQ(L.GetObject(Pos), &Objs[I]) << Pos;
                ++Pos;
            }
    EXPECT_EQ(Pos, N);
}

} // namespace
