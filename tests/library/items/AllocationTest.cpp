// Shares of one year: the rounding rule, positions in the class table, the
// check, every repair branch, amounts and fees.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <vector>

#include "KvErrors.h"
#include "decl/KvAlcClasses.h"
#include "items/KvAllocationYears.h"
#include "items/KvPortAllocation.h"

using kv::TLibAllocYear;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// ---------------------------------------------------------------------------
// Rounding

struct RoundCase {
    double x;
    int places;
    double expected;
};

TEST(AllocationRound, HalfGoesTowardZero) {
    const RoundCase cases[] = {
        {0.5, 0, 0}, {1.5, 0, 1}, {2.5, 0, 2}, {-2.5, 0, -2}, {0.6, 0, 1}, {-0.6, 0, -1}, {0.4, 0, 0},
        // Half to even on the whole value would give 0.38 and 0.62 -> 0.62, away from
        // zero 0.38 and 0.63: only the kept integer part gives 0.37 and 0.62.
        {0.375, 2, 0.37}, {0.625, 2, 0.62}, {-0.375, 2, -0.37}, {0.25, 1, 0.2}, {0.75, 1, 0.7}, {0.875, 2, 0.87},
        {0.99995, 4, 0.9999},   // 9999.5 after scaling: the half is dropped
        {0.99996, 4, 1.0}, {0.99994999, 4, 0.9999}, {0.00005, 4, 0.0}, {0.49995, 4, 0.4999}, {1.0, 4, 1.0},
    };
    for (const RoundCase& c : cases) EXPECT_EQ(kv::RoundShare(c.x, c.places), c.expected) << c.x << " at " << c.places;
    EXPECT_TRUE(std::isnan(kv::RoundShare(NaN)));
    EXPECT_EQ(kv::RoundShare(Inf), Inf);
}

// ---------------------------------------------------------------------------
// Positions in the class table (see docs/formats/allocation.md)

// Class 0 sub 1: 2 entries; class 1 sub 3: 3; class 3 subs 0 and 5: 3 and 4;
// class 4 subs 0 and 1: 5 and 3; class 5 sub 1: 3.
TEST(AllocationClasses, TableShape) {
    for (int c = 0; c < 6; ++c) EXPECT_EQ(kv::AlcCls(c).SubClasses.size(), 7u);
    EXPECT_EQ(kv::AlcClsIndexOf("Equities U.S."), 3);
    EXPECT_EQ(kv::AlcClsIndexOf("Equities"), -1);
    EXPECT_EQ(kv::AlcSubClsIndexOf(2, "Dividend"), 3);
    EXPECT_EQ(kv::AlcSubCls2Total(), 23);
    EXPECT_THROW(kv::AlcSubCls2(4, 0, 5), kv::EListError);
    EXPECT_THROW(kv::AlcSubCls(6, 0), kv::EListError);
    EXPECT_THROW(kv::AlcSubCls(0, 7), kv::EListError);
}

struct PosCase {
    int cls, sub, entry;
    kv::TSubCls2List list;
    int pos;
};

TEST(AllocationClasses, EntryPositions) {
    const PosCase cases[] = {
        {0, 1, 0, kv::kListCommon, 0}, {0, 1, 1, kv::kListCommon, 1}, {1, 3, 0, kv::kListCommon, 2},
        {1, 3, 2, kv::kListCommon, 4}, {5, 1, 0, kv::kListCommon, 5}, {5, 1, 2, kv::kListCommon, 7},
        {3, 0, 0, kv::kListCls3, 0},   {3, 5, 0, kv::kListCls3, 3},   {3, 5, 3, kv::kListCls3, 6},
        {4, 0, 4, kv::kListCls4, 4},   {4, 1, 0, kv::kListCls4, 5},   {4, 1, 2, kv::kListCls4, 7},
    };
    TLibAllocYear y;
    for (const auto& c : cases) {
        EXPECT_EQ(TLibAllocYear::ListOfCls(c.cls), c.list);
        EXPECT_EQ(y.SubCls2Pos(c.cls, c.sub, c.entry), c.pos) << c.cls << "/" << c.sub << "/" << c.entry;
        y.SetSubCls2Share(c.cls, c.sub, c.entry, 0.01 * (c.pos + 1));
        EXPECT_EQ(y.SubCls2List(c.list)[std::size_t(c.pos)], 0.01 * (c.pos + 1));
    }
    // Every list is as long as the grand total, not as its own classes need.
    for (auto l : {kv::kListCls3, kv::kListCls4, kv::kListCommon}) EXPECT_EQ(y.SubCls2List(l).size(), 23u);
}

TEST(AllocationClasses, IndexesOutsideTheirRangeThrow) {
    TLibAllocYear y;
    EXPECT_THROW(y.GetClsShare(-1), kv::EListError);
    EXPECT_THROW(y.SetClsShare(6, 1), kv::EListError);
    EXPECT_THROW(y.GetSubClsShare(0, 7), kv::EListError);
    EXPECT_THROW(y.GetSubCls2Share(2, 0, 0), kv::EListError);   // class 2 has no third level
    EXPECT_THROW(y.SetSubCls2Share(4, 1, 3, 1), kv::EListError);
    EXPECT_THROW(y.GetSubCls2Val(3, 5, 4), kv::EListError);
    EXPECT_THROW(y.SetSubCls2Count(0, 0, TLibAllocYear::MaxSubCls2Count + 1), kv::EListError);
    EXPECT_THROW(y.SetSubCls2Count(0, 0, -1), kv::EListError);
}

// An entry inside its count but past a short list reads 0 and lengthens it when set.
TEST(AllocationClasses, ShortListsReadZeroAndGrow) {
    TLibAllocYear y;
    y.SetSubCls2List(kv::kListCls4, {0.5});
    EXPECT_EQ(y.GetSubCls2Share(4, 0, 0), 0.5);
    EXPECT_EQ(y.GetSubCls2Share(4, 1, 2), 0);
    y.SetSubCls2Share(4, 1, 2, 0.25);
    EXPECT_EQ(y.SubCls2List(kv::kListCls4).size(), 8u);
    EXPECT_EQ(y.GetSubCls2Share(4, 1, 2), 0.25);
}

// ---------------------------------------------------------------------------
// Check and repair

using Setup = std::function<void(TLibAllocYear&)>;
using Check = std::function<void(const TLibAllocYear&)>;

struct FixCase {
    const char* name;
    Setup setup;
    bool sharesOK;      // before the repair
    bool fixResult;
    Check after;
    bool okAfter;       // SharesOK after the repair
};

// Class 2 has no third level; class 5 sub 0 neither.
void PlainClasses(TLibAllocYear& y, double c2, double c5) {
    y.SetClsShare(2, c2);
    y.SetSubClsShare(2, 0, 1);
    y.SetClsShare(5, c5);
    if (c5 != 0) y.SetSubClsShare(5, 0, 1);
}

const FixCase kFixCases[] = {
    {"all zero: valid, repaired to class 0", [](TLibAllocYear&) {}, true, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetClsShare(0), 1);
         EXPECT_EQ(y.GetSubClsShare(0, 0), 1);
         for (int c = 1; c < 6; ++c) EXPECT_EQ(y.GetClsShare(c), 0);
     },
     true},
    {"valid year untouched", [](TLibAllocYear& y) { PlainClasses(y, 1, 0); }, true, true,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetClsShare(2), 1);
         EXPECT_EQ(y.GetClsShare(0), 0);
     },
     true},
    {"0.99995 fails and is not rescaled", [](TLibAllocYear& y) { PlainClasses(y, 0.5, 0.49995); }, false, false,
     [](const TLibAllocYear& y) {
         EXPECT_NEAR(y.GetClsShare(2), 0.5, 1e-15);
         EXPECT_NEAR(y.GetClsShare(5), 0.49995, 1e-15);
     },
     false},
    {"0.99996 passes", [](TLibAllocYear& y) { PlainClasses(y, 0.5, 0.49996); }, true, true, nullptr, true},
    {"classes at 0.8 keep 0.8", [](TLibAllocYear& y) { PlainClasses(y, 0.8, 0); }, false, false,
     [](const TLibAllocYear& y) { EXPECT_NEAR(y.GetClsShare(2), 0.8, 1e-15); }, false},
    {"negative, NaN and infinite class shares count 0, set to 0",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetClsShare(4, -0.3);
         y.SetClsShare(0, NaN);
         y.SetClsShare(1, Inf);
     },
     true, false,
     [](const TLibAllocYear& y) {
         for (int c : {0, 1, 4}) EXPECT_EQ(y.GetClsShare(c), 0) << c;
     },
     true},
    {"negative class share is not netted",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1.3, 0);
         y.SetClsShare(4, -0.3);
     },
     false, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetClsShare(4), 0);
         EXPECT_NEAR(y.GetClsShare(2), 1.3, 1e-15);
     },
     false},
    {"class total rounding to 0 still puts 1 in class 0",
     [](TLibAllocYear& y) { y.SetClsShare(2, 0.00004); }, true, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetClsShare(0), 1);
         EXPECT_EQ(y.GetClsShare(2), 0.00004);
     },
     true},
    {"empty class with sub-class shares loses them",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetSubClsShare(5, 2, 0.4);
         y.SetSubClsShare(5, 3, 0.6);
     },
     true, false,
     [](const TLibAllocYear& y) {
         for (int s = 0; s < 7; ++s) EXPECT_EQ(y.GetSubClsShare(5, s), 0);
         EXPECT_EQ(y.GetSubClsShare(2, 0), 1);
     },
     true},
    {"empty class keeps sub-class shares that round to 0",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetSubClsShare(5, 2, 0.00004);
     },
     true, true, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubClsShare(5, 2), 0.00004); }, true},
    {"class without sub-class shares gets its first",
     [](TLibAllocYear& y) { y.SetClsShare(2, 1); }, true, false,
     [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubClsShare(2, 0), 1); }, true},
    {"sub-classes at 0.6 keep 0.6",
     [](TLibAllocYear& y) {
         y.SetClsShare(2, 1);
         y.SetSubClsShare(2, 1, 0.6);
     },
     false, false,
     [](const TLibAllocYear& y) {
         EXPECT_NEAR(y.GetSubClsShare(2, 1), 0.6, 1e-15);
         EXPECT_EQ(y.GetSubClsShare(2, 0), 0);
     },
     false},
    {"negative sub-class share counts 0 and is set to 0",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetSubClsShare(2, 1, -0.2);
     },
     true, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetSubClsShare(2, 1), 0);
         EXPECT_EQ(y.GetSubClsShare(2, 0), 1);
     },
     true},
    {"negative sub-class share is not netted",
     [](TLibAllocYear& y) {
         y.SetClsShare(2, 1);
         y.SetSubClsShare(2, 0, 1.2);
         y.SetSubClsShare(2, 1, -0.2);
     },
     false, false, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubClsShare(2, 1), 0); }, false},
    {"third level totalling 0 under 20 per cent: first entry gets 20",
     [](TLibAllocYear& y) {
         y.SetClsShare(3, 1);
         y.SetSubClsShare(3, 0, 0.2);
         y.SetSubClsShare(3, 1, 0.8);
     },
     true, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetSubCls2Share(3, 0, 0), 0.2);
         EXPECT_EQ(y.GetSubCls2Share(3, 0, 1), 0);
         EXPECT_EQ(y.GetSubCls2Share(3, 0, 2), 0);
     },
     true},
    {"third level matching its sub-class",
     [](TLibAllocYear& y) {
         y.SetClsShare(3, 1);
         y.SetSubClsShare(3, 0, 0.2);
         y.SetSubClsShare(3, 1, 0.8);
         y.SetSubCls2Share(3, 0, 0, 0.1);
         y.SetSubCls2Share(3, 0, 2, 0.1);
     },
     true, true, nullptr, true},
    {"third level off its sub-class is not rescaled",
     [](TLibAllocYear& y) {
         y.SetClsShare(4, 1);
         y.SetSubClsShare(4, 1, 1);
         y.SetSubCls2Share(4, 1, 0, 0.5);
         y.SetSubCls2Share(4, 1, 1, 0.25);
     },
     false, false,
     [](const TLibAllocYear& y) {
         EXPECT_NEAR(y.GetSubCls2Share(4, 1, 0), 0.5, 1e-15);
         EXPECT_NEAR(y.GetSubCls2Share(4, 1, 1), 0.25, 1e-15);
     },
     false},
    {"third level 0.1 + 0.09995 under 0.2 passes as computed",
     [](TLibAllocYear& y) {
         y.SetClsShare(5, 1);
         y.SetSubClsShare(5, 1, 0.2);
         y.SetSubClsShare(5, 0, 0.8);
         y.SetSubCls2Share(5, 1, 0, 0.1);
         y.SetSubCls2Share(5, 1, 1, 0.09995);
     },
     // 0.1 + 0.09995 is a hair above 0.19995, so it scales to just over the half.
     true, true, nullptr, true},
    {"third level 0.19995 under 0.2 fails",
     [](TLibAllocYear& y) {
         y.SetClsShare(5, 1);
         y.SetSubClsShare(5, 1, 0.2);
         y.SetSubClsShare(5, 0, 0.8);
         y.SetSubCls2Share(5, 1, 0, 0.19995);
     },
     false, false, [](const TLibAllocYear& y) { EXPECT_NEAR(y.GetSubCls2Share(5, 1, 0), 0.19995, 1e-15); },
     false},
    {"third level under an empty sub-class is cleared",
     [](TLibAllocYear& y) {
         y.SetClsShare(3, 1);
         y.SetSubClsShare(3, 1, 1);
         y.SetSubCls2Share(3, 0, 1, 0.3);
     },
     false, false, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubCls2Share(3, 0, 1), 0); }, true},
    {"NaN under an empty sub-class counts as a repair",
     [](TLibAllocYear& y) {
         y.SetClsShare(3, 1);
         y.SetSubClsShare(3, 1, 1);
         y.SetSubCls2Share(3, 5, 3, NaN);
     },
     true, false, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubCls2Share(3, 5, 3), 0); }, true},
    {"negative third-level share counts 0 and is set to 0",
     [](TLibAllocYear& y) {
         y.SetClsShare(1, 1);
         y.SetSubClsShare(1, 3, 1);
         y.SetSubCls2Share(1, 3, 0, 1);
         y.SetSubCls2Share(1, 3, 2, -0.5);
     },
     true, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetSubCls2Share(1, 3, 2), 0);
         EXPECT_EQ(y.GetSubCls2Share(1, 3, 0), 1);
     },
     true},
    {"lists of different lengths all brought to the grand total",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetSubCls2List(kv::kListCls3, {0, 0});
         y.SetSubCls2List(kv::kListCls4, std::vector<double>(40, 0.0));
         y.SetSubCls2List(kv::kListCommon, {});
     },
     true, false,
     [](const TLibAllocYear& y) {
         for (auto l : {kv::kListCls3, kv::kListCls4, kv::kListCommon}) EXPECT_EQ(y.SubCls2List(l).size(), 23u);
     },
     true},
    {"a list trimmed from its end keeps its head",
     [](TLibAllocYear& y) {
         y.SetClsShare(4, 1);
         y.SetSubClsShare(4, 0, 1);
         std::vector<double> l(30, 0.0);
         l[0] = 0.75;
         l[4] = 0.25;
         l[29] = 7;
         y.SetSubCls2List(kv::kListCls4, l);
     },
     true, false,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetSubCls2Share(4, 0, 0), 0.75);
         EXPECT_EQ(y.GetSubCls2Share(4, 0, 4), 0.25);
         EXPECT_EQ(y.SubCls2List(kv::kListCls4).size(), 23u);
     },
     true},
    {"a changed count changes the length of every list",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetSubCls2Count(2, 0, 4);
         y.SetSubCls2Count(0, 1, 0);
         y.SetSubCls2Share(2, 0, 0, 1);
     },
     true, false,
     [](const TLibAllocYear& y) {
         for (auto l : {kv::kListCls3, kv::kListCls4, kv::kListCommon}) EXPECT_EQ(y.SubCls2List(l).size(), 25u);
         EXPECT_EQ(y.GetSubCls2Share(2, 0, 0), 1);
     },
     true},
};

TEST(AllocationFix, CheckRepairAndResult) {
    for (const FixCase& c : kFixCases) {
        SCOPED_TRACE(c.name);
        TLibAllocYear y;
        c.setup(y);
        EXPECT_EQ(y.SharesOK(), c.sharesOK) << "before";
        EXPECT_EQ(y.FixShares(), c.fixResult);
        if (c.after) c.after(y);
        EXPECT_EQ(y.SharesOK(), c.okAfter) << "after";
        // A repaired year that needs nothing more reports so on the second pass.
        if (c.okAfter) {
            EXPECT_TRUE(y.FixShares());
        }
    }
}

// Step 7: amounts are laid out afresh only when something was repaired.
TEST(AllocationFixAmounts, RebuiltOnlyAfterARepair) {
    for (bool repair : {false, true}) {
        TLibAllocYear y;
        PlainClasses(y, 1, 0);
        if (repair) y.SetClsShare(4, -1);
        y.SetSubClsVal(2, 0, 500);
        y.SetSubCls2Val(3, 5, 1, 40);
        // A stale amount: set while class 2 sub 1 had no entries, hidden once it has.
        y.SetSubClsVal(2, 1, 77);
        y.SetSubCls2Count(2, 1, 2);
        y.SetSubCls2Count(0, 1, 0);   // keeps the grand total at 23
        EXPECT_EQ(y.GetSubClsVal(2, 1), 0);
        EXPECT_EQ(y.FixShares(), !repair);
        y.SetSubCls2Count(2, 1, 0);
        y.SetSubCls2Count(0, 1, 2);
        EXPECT_EQ(y.GetSubClsVal(2, 0), 500) << repair;
        EXPECT_EQ(y.GetSubCls2Val(3, 5, 1), 40) << repair;
        EXPECT_EQ(y.GetSubClsVal(2, 1), repair ? 0 : 77) << repair;
    }
}

// ---------------------------------------------------------------------------
// Amounts

TEST(AllocationAmounts, CalcAllocFromShares) {
    TLibAllocYear y;
    y.SetClsShare(2, 0.6);
    y.SetSubClsShare(2, 0, 0.5);
    y.SetSubClsShare(2, 3, 0.5);
    y.SetClsShare(3, 0.4);
    y.SetSubClsShare(3, 0, 0.25);
    y.SetSubCls2Share(3, 0, 0, 0.25);
    y.SetSubClsShare(3, 1, 0.75);
    y.CalcAlloc(1000);
    EXPECT_DOUBLE_EQ(y.GetClsVal(2), 600);
    EXPECT_DOUBLE_EQ(y.GetSubClsVal(2, 0), 300);
    EXPECT_DOUBLE_EQ(y.GetSubClsVal(2, 3), 300);
    EXPECT_DOUBLE_EQ(y.GetSubCls2Val(3, 0, 0), 100);
    EXPECT_DOUBLE_EQ(y.GetSubClsVal(3, 0), 100);
    EXPECT_DOUBLE_EQ(y.GetSubClsVal(3, 1), 300);
    EXPECT_DOUBLE_EQ(y.GetClsVal(3), 400);
    EXPECT_DOUBLE_EQ(y.GetTotalVal(), 1000);
    EXPECT_EQ(y.GetClsVal(0), 0);
}

struct SpreadCase {
    double e0, e1, e2;
    double v0, v1, v2;
};

TEST(AllocationAmounts, SetOnASubClassWithEntriesSpreadsByShare) {
    const SpreadCase cases[] = {
        {0.1, 0.3, 0, 20, 60, 0},
        {0, 0, 0, 80, 0, 0},        // no shares: all to the first entry
        {-1, 0.2, 0, 0, 80, 0},     // a negative share counts as 0
    };
    for (const auto& c : cases) {
        TLibAllocYear y;
        y.SetSubCls2Share(3, 0, 0, c.e0);
        y.SetSubCls2Share(3, 0, 1, c.e1);
        y.SetSubCls2Share(3, 0, 2, c.e2);
        y.SetSubClsVal(3, 0, 80);
        EXPECT_DOUBLE_EQ(y.GetSubCls2Val(3, 0, 0), c.v0);
        EXPECT_DOUBLE_EQ(y.GetSubCls2Val(3, 0, 1), c.v1);
        EXPECT_DOUBLE_EQ(y.GetSubCls2Val(3, 0, 2), c.v2);
        EXPECT_DOUBLE_EQ(y.GetSubClsVal(3, 0), 80);
    }
}

// ---------------------------------------------------------------------------
// Evenly allocation

TEST(AllocationEvenly, AllClasses) {
    const TLibAllocYear y = TLibAllocYear::GetEvenlyAllocation();
    for (int c = 0; c < 6; ++c) {
        EXPECT_DOUBLE_EQ(y.GetClsShare(c), 1.0 / 6);
        for (int s = 0; s < 7; ++s) {
            EXPECT_DOUBLE_EQ(y.GetSubClsShare(c, s), 1.0 / 7);
            for (int e = 0; e < y.GetSubCls2Count(c, s); ++e)
                EXPECT_DOUBLE_EQ(y.GetSubCls2Share(c, s, e), 1.0 / 7 / y.GetSubCls2Count(c, s));
        }
    }
    EXPECT_DOUBLE_EQ(y.GetSubCls2Share(4, 0, 3), 1.0 / 35);
    EXPECT_TRUE(y.SharesOK());
    TLibAllocYear copy = y;
    EXPECT_TRUE(copy.FixShares());
}

TEST(AllocationEvenly, ChosenClasses) {
    const int chosen[] = {3, 2, 3};
    TLibAllocYear y = TLibAllocYear::GetEvenlyAllocation(chosen);
    EXPECT_EQ(y.GetClsShare(2), 0.5);
    EXPECT_EQ(y.GetClsShare(3), 0.5);
    EXPECT_EQ(y.GetClsShare(0), 0);
    EXPECT_EQ(y.GetSubClsShare(0, 0), 0);
    EXPECT_EQ(y.GetSubCls2Share(0, 1, 0), 0);
    EXPECT_DOUBLE_EQ(y.GetSubCls2Share(3, 5, 0), 1.0 / 28);
    EXPECT_TRUE(y.SharesOK());
    const int bad[] = {6};
    EXPECT_THROW(TLibAllocYear::GetEvenlyAllocation(bad), kv::EListError);
}

// ---------------------------------------------------------------------------
// Library models and fees

TEST(AllocationLibModels, EveryModelIsAValidClassMix) {
    std::set<std::int32_t> ids;
    for (const auto& m : kv::LibModels()) {
        TLibAllocYear y;
        for (int c = 0; c < 6; ++c) y.SetClsShare(c, m.ClsShares[std::size_t(c)]);
        EXPECT_TRUE(y.SharesOK()) << m.Name;
        EXPECT_EQ(kv::FindLibModel(m.ID), &m);
        ids.insert(m.ID);
    }
    EXPECT_EQ(ids.size(), kv::LibModels().size());
    EXPECT_EQ(kv::FindLibModel(0), nullptr);
}

TEST(AllocationFees, AnnualFeeByClass) {
    kv::TFeesAssetClassesPr f(1);
    f.FeeRates = {0, 0.5, 0, 1.0, 2, 0};
    TLibAllocYear y;
    y.SetClsShare(1, 0.5);
    y.SetClsShare(3, 0.5);
    y.SetClsShare(4, -0.2);   // counts as nothing
    EXPECT_DOUBLE_EQ(f.AnnualFee(y, 100000), 250 + 500);
}

} // namespace
