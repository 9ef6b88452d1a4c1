// The shares of one year: the rounding rule, positions in the class table,
// the check and its repairs, and the text forms of every version.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "items/KvAllocationYears.h"
#include "items/KvAssetSubClasses.h"
#include "items/KvPortAllocation.h"
#include "items/KvReturnStatistics.h"

using kv::TLibAllocYear;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

TEST(AllocYear, RoundShareDropsTheHalfTowardZero) {
    struct C {
        double x;
        int places;
        double expected;
    };
    // Half to even would give 0.38 and 0.62, away from zero 0.38 and 0.63.
    for (const C c : {C{0.5, 0, 0}, C{1.5, 0, 1}, C{-2.5, 0, -2}, C{0.6, 0, 1}, C{-0.6, 0, -1}, C{0.375, 2, 0.37},
                      C{0.625, 2, 0.62}, C{-0.375, 2, -0.37}, C{0.99995, 4, 0.9999}, C{0.99996, 4, 1.0},
                      C{0.00005, 4, 0.0}})
        EXPECT_EQ(kv::RoundShare(c.x, c.places), c.expected) << c.x << " at " << c.places;
    EXPECT_TRUE(std::isnan(kv::RoundShare(NaN)));
}

// Class 0 sub 1: 2 entries; class 1 sub 3: 3; class 3 subs 0 and 5: 3 and 4;
// class 4 subs 0 and 1: 5 and 3; class 5 sub 1: 3.
TEST(AllocYear, ThirdLevelEntriesHaveTheirPlaceInTheirList) {
    struct C {
        int cls, sub, entry;
        kv::TSubCls2List list;
        int pos;
    };
    const C cases[] = {
        {0, 1, 0, kv::kListCommon, 0}, {1, 3, 2, kv::kListCommon, 4}, {5, 1, 0, kv::kListCommon, 5},
        {5, 1, 2, kv::kListCommon, 7}, {3, 0, 0, kv::kListCls3, 0},   {3, 5, 3, kv::kListCls3, 6},
        {4, 0, 4, kv::kListCls4, 4},   {4, 1, 0, kv::kListCls4, 5},   {4, 1, 2, kv::kListCls4, 7},
    };
    TLibAllocYear y;
    for (const auto& c : cases) {
        y.SetSubCls2Share(c.cls, c.sub, c.entry, 0.01 * (c.pos + 1));
        EXPECT_EQ(y.SubCls2List(c.list)[std::size_t(c.pos)], 0.01 * (c.pos + 1))
            << c.cls << "/" << c.sub << "/" << c.entry;
    }
    for (auto l : {kv::kListCls3, kv::kListCls4, kv::kListCommon}) EXPECT_EQ(y.SubCls2List(l).size(), 23u);
    EXPECT_THROW(y.GetSubCls2Share(2, 0, 0), kv::EListError);   // class 2 has no third level
    EXPECT_THROW(y.SetSubCls2Share(4, 1, 3, 1), kv::EListError);
    EXPECT_THROW(y.GetClsShare(6), kv::EListError);
}

// Class 2 has no third level; class 5 sub 0 neither.
void PlainClasses(TLibAllocYear& y, double c2, double c5) {
    y.SetClsShare(2, c2);
    y.SetSubClsShare(2, 0, 1);
    y.SetClsShare(5, c5);
    if (c5 != 0) y.SetSubClsShare(5, 0, 1);
}

struct FixCase {
    const char* name;
    std::function<void(TLibAllocYear&)> setup;
    bool okBefore, fixResult, okAfter;
    std::function<void(const TLibAllocYear&)> after;
};

const FixCase kFixCases[] = {
    {"all zero is repaired to class 0", [](TLibAllocYear&) {}, true, false, true,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetClsShare(0), 1);
         EXPECT_EQ(y.GetSubClsShare(0, 0), 1);
     }},
    {"0.99995 fails and is not rescaled", [](TLibAllocYear& y) { PlainClasses(y, 0.5, 0.49995); }, false, false,
     false, [](const TLibAllocYear& y) { EXPECT_NEAR(y.GetClsShare(5), 0.49995, 1e-15); }},
    {"0.99996 passes", [](TLibAllocYear& y) { PlainClasses(y, 0.5, 0.49996); }, true, true, true, nullptr},
    {"NaN and infinite shares count 0 and are set to 0",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetClsShare(0, NaN);
         y.SetClsShare(1, Inf);
     },
     true, false, true, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetClsShare(0) + y.GetClsShare(1), 0); }},
    {"a negative class share is not netted",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1.3, 0);
         y.SetClsShare(4, -0.3);
     },
     false, false, false, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetClsShare(4), 0); }},
    {"an empty class loses its sub-class shares",
     [](TLibAllocYear& y) {
         PlainClasses(y, 1, 0);
         y.SetSubClsShare(5, 2, 0.4);
         y.SetSubClsShare(5, 3, 0.6);
     },
     true, false, true, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubClsShare(5, 2), 0); }},
    {"a class without sub-class shares gets its first", [](TLibAllocYear& y) { y.SetClsShare(2, 1); }, true,
     false, true, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubClsShare(2, 0), 1); }},
    {"a third level totalling 0 under 20 per cent: its first entry gets 20",
     [](TLibAllocYear& y) {
         y.SetClsShare(3, 1);
         y.SetSubClsShare(3, 0, 0.2);
         y.SetSubClsShare(3, 1, 0.8);
     },
     true, false, true, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubCls2Share(3, 0, 0), 0.2); }},
    {"a third level off its sub-class is not rescaled",
     [](TLibAllocYear& y) {
         y.SetClsShare(4, 1);
         y.SetSubClsShare(4, 1, 1);
         y.SetSubCls2Share(4, 1, 0, 0.5);
     },
     false, false, false, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubCls2Share(4, 1, 0), 0.5); }},
    // Four places at each of the four totals: 0.00004 off still passes.
    {"classes totalling 1.00004 pass", [](TLibAllocYear& y) { PlainClasses(y, 0.5, 0.50004); }, true, true, true,
     nullptr},
    {"sub-classes totalling 1.00004 pass",
     [](TLibAllocYear& y) {
         y.SetClsShare(2, 1);
         y.SetSubClsShare(2, 0, 0.6);
         y.SetSubClsShare(2, 1, 0.40004);
     },
     true, true, true, nullptr},
    {"a third level of 0.20004 under 0.2 passes",
     [](TLibAllocYear& y) {
         y.SetClsShare(5, 1);
         y.SetSubClsShare(5, 1, 0.2);
         y.SetSubClsShare(5, 0, 0.8);
         y.SetSubCls2Share(5, 1, 0, 0.20004);
     },
     true, true, true, nullptr},
    {"a sub-class of 0.20004 over a third level of 0.2 passes",
     [](TLibAllocYear& y) {
         y.SetClsShare(5, 1);
         y.SetSubClsShare(5, 1, 0.20004);
         y.SetSubClsShare(5, 0, 0.79996);
         y.SetSubCls2Share(5, 1, 0, 0.2);
     },
     true, true, true, nullptr},
    {"a third level of 0.19995 under 0.2 fails",
     [](TLibAllocYear& y) {
         y.SetClsShare(5, 1);
         y.SetSubClsShare(5, 1, 0.2);
         y.SetSubClsShare(5, 0, 0.8);
         y.SetSubCls2Share(5, 1, 0, 0.19995);
     },
     false, false, false, nullptr},
    {"a third level under an empty sub-class is cleared",
     [](TLibAllocYear& y) {
         y.SetClsShare(3, 1);
         y.SetSubClsShare(3, 1, 1);
         y.SetSubCls2Share(3, 0, 1, 0.3);
     },
     false, false, true, [](const TLibAllocYear& y) { EXPECT_EQ(y.GetSubCls2Share(3, 0, 1), 0); }},
    {"lists of other lengths are brought to the grand total, keeping their head",
     [](TLibAllocYear& y) {
         y.SetClsShare(4, 1);
         y.SetSubClsShare(4, 0, 1);
         std::vector<double> l(30, 0.0);
         l[0] = 0.75;
         l[4] = 0.25;
         y.SetSubCls2List(kv::kListCls4, l);
         y.SetSubCls2List(kv::kListCls3, {});
     },
     true, false, true,
     [](const TLibAllocYear& y) {
         EXPECT_EQ(y.GetSubCls2Share(4, 0, 4), 0.25);
         for (auto l : {kv::kListCls3, kv::kListCls4}) EXPECT_EQ(y.SubCls2List(l).size(), 23u);
     }},
};

TEST(AllocYear, CheckAndRepair) {
    for (const FixCase& c : kFixCases) {
        SCOPED_TRACE(c.name);
        TLibAllocYear y;
        c.setup(y);
        EXPECT_EQ(y.SharesOK(), c.okBefore);
        EXPECT_EQ(y.FixShares(), c.fixResult);
        if (c.after) c.after(y);
        EXPECT_EQ(y.SharesOK(), c.okAfter);
        if (c.okAfter) {
            EXPECT_TRUE(y.FixShares()) << "a second pass finds nothing";
        }
    }
}

std::string J(std::initializer_list<const char*> parts) {
    std::string s;
    for (const char* p : parts) {
        if (!s.empty()) s += ';';
        s += p;
    }
    return s;
}

// One year written out by hand, class by class (see the field table in
// docs/formats/allocation.md): class share, then each sub-class's share or
// its third-level shares.
const std::string kCurrent = J({
    "0.125", "0.5", "0.25", "0.25", "0", "0", "0", "0", "0",                      // class 0: s1 has 2 entries
    "0", "0", "0", "0", "0", "0", "0", "0", "0", "0",                             // class 1: s3 has 3
    "0.375", "0", "0", "0", "1", "0", "0", "0",                                   // class 2: none
    "0.25", "0.5", "0", "0.25", "0.25", "0", "0", "0", "0", "0", "0", "0", "0",   // class 3: s0 3, s5 4
    "0.25", "0", "0", "0", "0", "0", "0.5", "0.5", "0", "0", "0", "0", "0", "0",  // class 4: s0 5, s1 3
    "0", "0", "0", "0", "0", "0", "0", "0", "0", "0",                             // class 5: s1 3
});

const std::string k200507 = "200507;12.5;0;37.5;25;25;0";

const std::string k200803 = J({
    "200803",
    "12.5", "50", "50", "0", "0", "0", "0", "0",
    "0", "0", "0", "0", "0", "0", "0", "0",
    "37.5", "0", "0", "0", "100", "0", "0", "0",
    "25", "75", "25", "0", "0", "0", "0", "0",
    "25", "0", "100", "0", "0", "0", "0", "0",
    "0", "0", "0", "0", "0", "0", "0", "0",
});

const std::string k201202 = J({
    "201202",
    "12.5", "50", "50", "0", "0", "0", "0", "0",
    "0", "0", "0", "0", "0", "0", "0", "0",
    "37.5", "0", "0", "0", "100", "0", "0", "0",
    "25", "50", "0", "25", "25", "0", "0", "0", "0", "0", "0", "0", "0",
    "25", "0", "0", "0", "0", "0", "50", "50", "0", "0", "0", "0", "0", "0",
    "0", "0", "0", "0", "0", "0", "0", "0",
});

const std::string k201304 = J({
    "201304",
    "12.5", "50", "25", "25", "0", "0", "0", "0", "0",
    "0", "0", "0", "0", "0", "0", "0", "0", "0", "0",
    "37.5", "0", "0", "0", "100", "0", "0", "0",
    "25", "50", "0", "25", "25", "0", "0", "0", "0", "0", "0", "0", "0",
    "25", "0", "0", "0", "0", "0", "50", "50", "0", "0", "0", "0", "0", "0",
    "0", "0", "0", "0", "0", "0", "0", "0", "0", "0",
});

const std::string k201404 = "201404;" + kCurrent;

int Fields(const std::string& s) { return 1 + int(std::count(s.begin(), s.end(), ';')); }

// What each version holds: sub-class shares, the third level of classes 3
// and 4, the third level of the others.
struct VersionCase {
    std::int32_t version;
    const std::string* text;
    int fields;
    bool subs, entries34, entriesRest;
};

const VersionCase kVersions[] = {
    {TLibAllocYear::kVersion200507, &k200507, 7, false, false, false},
    {TLibAllocYear::kVersion200803, &k200803, 49, true, false, false},
    {TLibAllocYear::kVersion201202, &k201202, 60, true, true, false},
    {TLibAllocYear::kVersion201304, &k201304, 65, true, true, true},
    {TLibAllocYear::kVersion201404, &k201404, 65, true, true, true},
    {TLibAllocYear::kVersionCurrent, &kCurrent, 64, true, true, true},
};

TEST(AllocYearText, EveryVersionDecodesAndEncodesBack) {
    TLibAllocYear full;
    ASSERT_TRUE(full.Decode(kCurrent));
    for (const auto& v : kVersions) {
        SCOPED_TRACE(v.version);
        EXPECT_EQ(Fields(*v.text), v.fields);
        TLibAllocYear y;
        EXPECT_TRUE(y.Decode(*v.text));
        const double cls[] = {0.125, 0, 0.375, 0.25, 0.25, 0};
        for (int c = 0; c < 6; ++c) EXPECT_EQ(y.GetClsShare(c), cls[c]) << c;
        EXPECT_EQ(y.GetSubClsShare(2, 3), v.subs ? 1 : 0);
        EXPECT_EQ(y.GetSubClsShare(3, 0), v.subs ? 0.75 : 0);
        EXPECT_EQ(y.GetSubClsShare(3, 1), v.subs ? 0.25 : 0);
        EXPECT_EQ(y.GetSubCls2Share(0, 1, 1), v.entriesRest ? 0.25 : 0);
        EXPECT_EQ(y.GetSubCls2Share(3, 0, 2), v.entries34 ? 0.25 : 0);
        EXPECT_EQ(y.GetSubCls2Share(4, 1, 0), v.entries34 ? 0.5 : 0);
        EXPECT_EQ(y.EncodeAs(v.version), *v.text);
        // What an older version can hold of the full year is exactly its text.
        EXPECT_EQ(full.EncodeAs(v.version), *v.text);
    }
    EXPECT_EQ(full.Encode(), kCurrent);
    EXPECT_THROW(full.EncodeAs(201001), kv::EKvError);
}

TEST(AllocYearText, CurrentFormKeepsEveryBit) {
    TLibAllocYear y = TLibAllocYear::GetEvenlyAllocation();
    y.SetClsShare(1, 0.1 + 0.2);
    y.SetSubCls2Share(4, 0, 2, 1e-17);
    TLibAllocYear back;
    ASSERT_TRUE(back.Decode(y.Encode()));
    EXPECT_EQ(back.GetClsShare(1), 0.1 + 0.2);
    EXPECT_EQ(back.GetSubCls2Share(4, 0, 2), 1e-17);
    EXPECT_EQ(back.Encode(), y.Encode());
}

TEST(AllocYearText, DefectiveTextsReadWhatTheyCan) {
    struct C {
        std::string text;
        double cls0, cls1;
    };
    const C cases[] = {
        {"", 0, 0},
        {kCurrent.substr(0, kCurrent.rfind(';')), 0.125, 0},
        {kCurrent + ";0", 0.125, 0},
        {"200507;10;20", 0.1, 0.2},
        {"200507;10;20;0;0;0;1e400", 0.1, 0.2},   // out of range
        {"199901;1", 199901, 0},                 // no known version: the current form
    };
    for (const auto& c : cases) {
        TLibAllocYear y;
        y.SetClsShare(5, 0.7);
        EXPECT_FALSE(y.Decode(c.text)) << c.text;
        EXPECT_EQ(y.GetClsShare(0), c.cls0) << c.text;
        EXPECT_EQ(y.GetClsShare(1), c.cls1) << c.text;
        EXPECT_EQ(y.GetClsShare(5), 0) << c.text;
    }
}

// A class-0 share equal to a version number must not read as that version.
TEST(AllocYearText, FirstShareNeverPassesForAVersion) {
    for (double v : {200507.0, 201404.0, 201001.0}) {
        TLibAllocYear y;
        y.SetClsShare(0, v);
        y.SetClsShare(1, 0.5);
        TLibAllocYear back;
        EXPECT_TRUE(back.Decode(y.Encode())) << y.Encode().substr(0, 12);
        EXPECT_EQ(back.GetClsShare(0), v);
        EXPECT_EQ(back.GetClsShare(1), 0.5);
    }
}

} // namespace
