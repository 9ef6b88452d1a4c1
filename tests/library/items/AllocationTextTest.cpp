// Text forms: the year in every version and as CSV, the portfolio
// allocation and its variants, ids.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "catalogue/KvIdentText.h"
#include "items/KvAllocationYears.h"
#include "items/KvAssetSubClasses.h"
#include "items/KvPortAllocation.h"

using kv::TLibAllocYear;

namespace {

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

struct Expect {
    bool subs;       // sub-class shares present
    bool entries34;  // third level of classes 3 and 4
    bool entriesRest;
};

void CheckYear(const TLibAllocYear& y, const Expect& e, const std::string& what) {
    SCOPED_TRACE(what);
    const double cls[] = {0.125, 0, 0.375, 0.25, 0.25, 0};
    for (int c = 0; c < 6; ++c) EXPECT_EQ(y.GetClsShare(c), cls[c]) << c;
    EXPECT_EQ(y.GetSubClsShare(0, 0), e.subs ? 0.5 : 0);
    EXPECT_EQ(y.GetSubClsShare(0, 1), e.subs ? 0.5 : 0);
    EXPECT_EQ(y.GetSubClsShare(2, 3), e.subs ? 1 : 0);
    EXPECT_EQ(y.GetSubClsShare(3, 0), e.subs ? 0.75 : 0);
    EXPECT_EQ(y.GetSubClsShare(3, 1), e.subs ? 0.25 : 0);
    EXPECT_EQ(y.GetSubClsShare(4, 1), e.subs ? 1 : 0);
    EXPECT_EQ(y.GetSubClsShare(4, 0), 0);
    EXPECT_EQ(y.GetSubCls2Share(0, 1, 0), e.entriesRest ? 0.25 : 0);
    EXPECT_EQ(y.GetSubCls2Share(0, 1, 1), e.entriesRest ? 0.25 : 0);
    EXPECT_EQ(y.GetSubCls2Share(3, 0, 0), e.entries34 ? 0.5 : 0);
    EXPECT_EQ(y.GetSubCls2Share(3, 0, 2), e.entries34 ? 0.25 : 0);
    EXPECT_EQ(y.GetSubCls2Share(4, 1, 0), e.entries34 ? 0.5 : 0);
    EXPECT_EQ(y.GetSubCls2Share(4, 1, 1), e.entries34 ? 0.5 : 0);
    for (auto l : {kv::kListCls3, kv::kListCls4, kv::kListCommon}) EXPECT_EQ(y.SubCls2List(l).size(), 23u);
}

struct VersionCase {
    std::int32_t version;
    const std::string* text;
    int fields;
    Expect expect;
};

const VersionCase kVersions[] = {
    {TLibAllocYear::kVersion200507, &k200507, 7, {false, false, false}},
    {TLibAllocYear::kVersion200803, &k200803, 49, {true, false, false}},
    {TLibAllocYear::kVersion201202, &k201202, 60, {true, true, false}},
    {TLibAllocYear::kVersion201304, &k201304, 65, {true, true, true}},
    {TLibAllocYear::kVersion201404, &k201404, 65, {true, true, true}},
    {TLibAllocYear::kVersionCurrent, &kCurrent, 64, {true, true, true}},
};

TEST(AllocationText, EveryVersionDecodesAndEncodesBack) {
    TLibAllocYear full;
    ASSERT_TRUE(full.Decode(kCurrent));
    for (const auto& v : kVersions) {
        SCOPED_TRACE(v.version);
        EXPECT_EQ(Fields(*v.text), v.fields);
        TLibAllocYear y;
        EXPECT_TRUE(y.Decode(*v.text));
        CheckYear(y, v.expect, std::to_string(v.version));
        EXPECT_EQ(y.EncodeAs(v.version), *v.text);
        // What an older version can hold of the full year is exactly its text.
        EXPECT_EQ(full.EncodeAs(v.version), *v.text);
    }
    EXPECT_EQ(full.Encode(), kCurrent);
    EXPECT_THROW(full.EncodeAs(201001), kv::EKvError);
}

TEST(AllocationText, CurrentFormRoundTripsExactly) {
    TLibAllocYear y = TLibAllocYear::GetEvenlyAllocation();
    y.SetClsShare(1, 0.1 + 0.2);          // not a short decimal
    y.SetSubCls2Share(4, 0, 2, 1e-17);
    y.SetSubCls2Share(0, 1, 1, -0.5);
    TLibAllocYear back;
    ASSERT_TRUE(back.Decode(y.Encode()));
    for (int c = 0; c < 6; ++c) {
        EXPECT_EQ(back.GetClsShare(c), y.GetClsShare(c));
        for (int s = 0; s < 7; ++s) {
            const int n = y.GetSubCls2Count(c, s);
            double sum = 0;
            for (int e = 0; e < n; ++e) {
                EXPECT_EQ(back.GetSubCls2Share(c, s, e), y.GetSubCls2Share(c, s, e));
                sum += y.GetSubCls2Share(c, s, e);
            }
            // A sub-class with entries is written through them and reads back as their total.
            EXPECT_EQ(back.GetSubClsShare(c, s), n ? sum : y.GetSubClsShare(c, s));
        }
    }
    EXPECT_EQ(back.Encode(), y.Encode());
}

struct BadText {
    std::string text;
    double cls0, cls1, cls5;
};

TEST(AllocationText, DefectiveTextsReadWhatTheyCan) {
    std::string shortText = kCurrent.substr(0, kCurrent.rfind(';'));
    std::string badField = kCurrent;
    badField.replace(0, 5, "abc");   // the class 0 share
    const BadText cases[] = {
        {"", 0, 0, 0},
        {shortText, 0.125, 0, 0},
        {kCurrent + ";0", 0.125, 0, 0},
        {badField, 0, 0, 0},
        {"200507;10;20", 0.1, 0.2, 0},
        {"200507;10;20;0;0;0;1e400", 0.1, 0.2, 0},     // out of range: 0
        {"200507;10;20;0;0;0; 5", 0.1, 0.2, 0},        // a space makes it unreadable
        {"199901;1", 199901, 0, 0},                   // no known version: the current form
        {";;;;;", 0, 0, 0},
    };
    for (const auto& c : cases) {
        TLibAllocYear y;
        y.SetClsShare(5, 0.7);   // cleared by Decode
        EXPECT_FALSE(y.Decode(c.text)) << c.text;
        EXPECT_EQ(y.GetClsShare(0), c.cls0) << c.text;
        EXPECT_EQ(y.GetClsShare(1), c.cls1) << c.text;
        EXPECT_EQ(y.GetClsShare(5), c.cls5) << c.text;
    }
}

// A class-0 share equal to a version number must not read as that version.
TEST(AllocationText, FirstShareNeverPassesForAVersion) {
    for (double v : {200507.0, 201404.0, 201001.0, -200507.0}) {
        TLibAllocYear y;
        y.SetClsShare(0, v);
        y.SetClsShare(1, 0.5);
        TLibAllocYear back;
        EXPECT_TRUE(back.Decode(y.Encode())) << y.Encode().substr(0, 12);
        EXPECT_EQ(back.GetClsShare(0), v);
        EXPECT_EQ(back.GetClsShare(1), 0.5);
    }
    TLibAllocYear y;
    y.SetClsShare(0, 201304);
    EXPECT_EQ(y.Encode().substr(0, 9), "201304.0;");
}

// The text carries no counts: the year's own counts lay it out.
TEST(AllocationText, LayoutFollowsTheYearsCounts) {
    TLibAllocYear y;
    y.SetSubCls2Count(2, 6, 2);
    y.SetClsShare(2, 1);
    y.SetSubCls2Share(2, 6, 0, 0.25);
    y.SetSubCls2Share(2, 6, 1, 0.75);
    const std::string t = y.Encode();
    EXPECT_EQ(Fields(t), 65);
    TLibAllocYear plain;
    EXPECT_FALSE(plain.Decode(t));    // one field too many for the table's counts
    TLibAllocYear same;
    same.SetSubCls2Count(2, 6, 2);
    EXPECT_TRUE(same.Decode(t));
    EXPECT_EQ(same.GetSubCls2Share(2, 6, 1), 0.75);
    EXPECT_EQ(same.GetSubClsShare(2, 6), 1);
}

TEST(AllocationText, CsvRows) {
    const std::string csv =
        "Class,Sub,Entry,Percent\r\n"
        "2,,,40\r\n"
        "\"3\", , ,60\r\n"
        "2,3,,100\n"
        "3,0,0,50\n"
        "3,0,2,25\n"
        "3,1,,25\n"
        "3,0,,99\n"        // a sub-class with entry rows takes their total
        "6,,,10\n"         // no class 6
        "2,7,,10\n"        // no sub-class 7
        "3,0,3,10\n"       // three entries only
        "2,,0,10\n"        // an entry needs its sub-class
        "2,0,,10,extra\n"  // five fields
        "2,0,,abc\n"
        "-1,,,5\n"
        "\n"
        "2,1,,5";
    TLibAllocYear y;
    y.SetClsShare(0, 1);
    EXPECT_EQ(y.DecodeCSV(csv), 8);
    EXPECT_EQ(y.GetClsShare(0), 0);
    EXPECT_EQ(y.GetClsShare(2), 0.4);
    EXPECT_EQ(y.GetClsShare(3), 0.6);
    EXPECT_EQ(y.GetSubClsShare(2, 3), 1);
    EXPECT_EQ(y.GetSubClsShare(2, 1), 0.05);
    EXPECT_EQ(y.GetSubClsShare(2, 0), 0);
    EXPECT_EQ(y.GetSubClsShare(3, 0), 0.75);
    EXPECT_EQ(y.GetSubClsShare(3, 1), 0.25);
    EXPECT_EQ(y.GetSubCls2Share(3, 0, 0), 0.5);
    EXPECT_EQ(y.GetSubCls2Share(3, 0, 1), 0);
    EXPECT_EQ(y.GetSubCls2Share(3, 0, 2), 0.25);
    EXPECT_EQ(y.DecodeCSV(""), 0);
    EXPECT_EQ(y.GetClsShare(2), 0);
}

// ---------------------------------------------------------------------------
// Ids and date-time texts

struct IdText {
    std::int32_t id;
    const char* text;
};

TEST(AllocationPortAlloc, UniqueIdTexts) {
    for (const IdText c : {IdText{0, "00000000"}, IdText{123456, "0001E240"}, IdText{-1, "FFFFFFFF"},
                           IdText{INT32_MIN, "80000000"}, IdText{1003, "000003EB"}}) {
        EXPECT_EQ(kv::UniqueIDToText(c.id), c.text);
        std::int32_t back = 7;
        EXPECT_TRUE(kv::TryTextToUniqueID(c.text, back));
        EXPECT_EQ(back, c.id);
    }
    std::int32_t v = 7;
    EXPECT_TRUE(kv::TryTextToUniqueID("1e240", v));
    EXPECT_EQ(v, 123456);
    for (const char* bad : {"", "123456789", "12G", " 1", "-1", "0x1"}) {
        v = 7;
        EXPECT_FALSE(kv::TryTextToUniqueID(bad, v)) << bad;
        EXPECT_EQ(v, 7);
    }
}

TEST(AllocationPortAlloc, DateTimeTexts) {
    struct C {
        double dt;
        const char* text;
    };
    for (const C c : {C{0, "1899-12-30 00:00:00.000"}, C{45356 + 3723.004 / 86400, "2024-03-05 01:02:03.004"},
                      C{36526 - 1e-10, "2000-01-01 00:00:00.000"}, C{-1.25, "1899-12-28 18:00:00.000"},
                      C{std::nan(""), "1899-12-30 00:00:00.000"}})
        EXPECT_EQ(kv::DateTimeToText(c.dt), c.text) << c.dt;
    // A new allocation's id is its creation time's text, a millisecond apart is another id.
    EXPECT_EQ(kv::TPortAllocation::IDFromDateTime(45356.25), kv::SubstituteID("2024-03-05 06:00:00.000"));
    EXPECT_NE(kv::TPortAllocation::IDFromDateTime(45356.25),
              kv::TPortAllocation::IDFromDateTime(45356.25 + 1.0 / 86400000));
}

// ---------------------------------------------------------------------------
// TPortAllocation text form

TEST(AllocationPortAlloc, TextFormInFieldOrder) {
    kv::TPortAllocation a(123456);
    a.Name = "Core";
    a.Text = "note";
    a.Reference = 1003;
    a.Flag2 = 1;
    a.Kind = 2;
    EXPECT_EQ(a.GetAsString(), "0001E240;Core;note;000003EB;0;1;2;0");
    kv::TPortAllocation b(0);
    b.SetAsString(a.GetAsString());
    EXPECT_EQ(b.ID, 123456);
    EXPECT_EQ(b.Reference, 1003);
    EXPECT_EQ(b.SavedText, "note");
    EXPECT_FALSE(b.TextChanged());
    b.Text = "changed";
    EXPECT_TRUE(b.TextChanged());
    EXPECT_EQ(b.GetAsString(), "0001E240;Core;changed;000003EB;0;1;2;0");
}

struct ReadCase {
    const char* text;
    std::int32_t id, ref, f1, f2, kind, f4;
    const char* name;
    const char* txt;
};

TEST(AllocationPortAlloc, MissingOrUnreadableFieldsTakeDefaults) {
    const ReadCase cases[] = {
        {"", 0, 0, 0, 1, 1, 0, "", ""},
        {"0000000A;n;t", 10, 0, 0, 1, 1, 0, "n", "t"},
        {"0000000a;n;t;zz;x;;7", 10, 0, 0, 1, 7, 0, "n", "t"},
        {"0000000A;n;t;0;5;6;7;8;extra", 10, 0, 5, 6, 7, 8, "n", "t"},
        {"0000000A;n;t;0;-3;+4;1.5;2", 10, 0, -3, 1, 1, 2, "n", "t"},
        {"GHIJ;;;3EB;0;0;0;0", 0, 1003, 0, 0, 0, 0, "", ""},
        {"1;a\\;b;x\\\\y;2", 1, 2, 0, 1, 1, 0, "a;b", "x\\y"},
        {"1;C:\\temp;\\", 1, 0, 0, 1, 1, 0, "C:\\temp", "\\"},
    };
    for (const auto& c : cases) {
        kv::TPortAllocation a(99);
        a.Flag1 = a.Flag2 = a.Kind = a.Flag4 = 42;
        a.SetAsString(c.text);
        EXPECT_EQ(a.ID, c.id) << c.text;
        EXPECT_EQ(a.Reference, c.ref) << c.text;
        EXPECT_EQ(a.Flag1, c.f1) << c.text;
        EXPECT_EQ(a.Flag2, c.f2) << c.text;
        EXPECT_EQ(a.Kind, c.kind) << c.text;
        EXPECT_EQ(a.Flag4, c.f4) << c.text;
        EXPECT_EQ(a.Name, c.name) << c.text;
        EXPECT_EQ(a.Text, c.txt) << c.text;
        EXPECT_EQ(a.SavedText, c.txt) << c.text;
    }
}

TEST(AllocationPortAlloc, TextsWithSeparatorsRoundTrip) {
    for (const char* s : {"a;b", "x\\y", "\\;", ";;", "end\\", "\\\\;\\", "plain"}) {
        kv::TPortAllocation a(5);
        a.Name = s;
        a.Text = std::string(s) + "|2";
        kv::TPortAllocation b(0);
        b.SetAsString(a.GetAsString());
        EXPECT_EQ(b.Name, a.Name) << a.GetAsString();
        EXPECT_EQ(b.Text, a.Text) << a.GetAsString();
        EXPECT_EQ(b.Flag2, 0);
    }
}

// ---------------------------------------------------------------------------
// Variants

std::unique_ptr<kv::TPortAllocation> Holdings() {
    auto h = std::make_unique<kv::TCHPortAllocation>(1);
    h->Name = "H";
    h->Holdings = {{"XIU", 2, 0, -1, 1500.5}, {"VFV;US", 3, 0, 1, 250}, {"XEF", 2, 3, -1, 10}};
    return h;
}

std::unique_ptr<kv::TPortAllocation> ClassTargets() {
    auto p = std::make_unique<kv::TPAClass>(2);
    p->ClsShares = {0.1, 0.2, 0.3, 0.4, 0, 0};
    return p;
}

std::unique_ptr<kv::TPortAllocation> Sma() {
    auto p = std::make_unique<kv::TPASMAClass>(3);
    p->Kind = 4;
    p->ClsShares = {0, 0, 0.5, 0.5, 0, 0};
    p->Manager = "Acme; Capital";
    p->FeeRate = 1.25;
    p->MinAccount = 250000;
    return p;
}

std::unique_ptr<kv::TPortAllocation> Fees() {
    auto p = std::make_unique<kv::TFeesAssetClassesPr>(4);
    p->FeeRates = {0.1, 0.25, 1, 1, 1.5, 1.1};
    return p;
}

struct VariantCase {
    std::unique_ptr<kv::TPortAllocation> (*make)();
    const char* cls;
    const char* text;
};

TEST(AllocationVariants, TextFormsAndClones) {
    const VariantCase cases[] = {
        {Holdings, "TCHPortAllocation",
         "00000001;H;;00000000;0;0;0;0;3;XIU;2;0;-1;1500.5;VFV\\;US;3;0;1;250;XEF;2;3;-1;10"},
        {ClassTargets, "TPAClass", "00000002;;;00000000;0;0;0;0;0.1;0.2;0.3;0.4;0;0"},
        {Sma, "TPASMAClass", "00000003;;;00000000;0;0;4;0;0;0;0.5;0.5;0;0;Acme\\; Capital;1.25;250000"},
        {Fees, "TFeesAssetClassesPr", "00000004;;;00000000;0;0;0;0;0.1;0.25;1;1;1.5;1.1"},
    };
    for (const auto& c : cases) {
        const auto orig = c.make();
        EXPECT_STREQ(orig->ClassName(), c.cls);
        EXPECT_EQ(orig->GetAsString(), c.text);
        const auto copy = orig->Clone();
        EXPECT_NE(copy.get(), orig.get());
        EXPECT_STREQ(copy->ClassName(), c.cls);
        EXPECT_EQ(copy->GetAsString(), c.text);
        // Read into a blank object of the same class.
        auto blank = c.make();
        blank->SetAsString("");
        EXPECT_NE(blank->GetAsString(), c.text);
        blank->SetAsString(c.text);
        EXPECT_EQ(blank->GetAsString(), c.text);
    }
}

TEST(AllocationVariants, HoldingsNeverOutnumberTheirFields) {
    struct C {
        const char* text;
        std::size_t n;
    };
    const std::string head = "00000001;H;;0;0;0;0;0;";
    for (const C c : {C{"2;A;1;0;-1;5;B;2;0;-1;7", 2}, C{"5;A;1;0;-1;5;B;2;0;-1;7", 2}, C{"-1;A;1;0;-1;5", 0},
                      C{"1;A;1;0", 0}, C{"2147483647;A;1;0;-1;5", 1}, C{"x;A;1;0;-1;5", 0}, C{"", 0}}) {
        kv::TCHPortAllocation h(0);
        h.SetAsString(head + c.text);
        EXPECT_EQ(h.Holdings.size(), c.n) << c.text;
    }
    kv::TCHPortAllocation h(0);
    h.SetAsString(head + "3;A;1;0;;5;B;x;0;-1;7;C;1;2;3;oops");
    ASSERT_EQ(h.Holdings.size(), 3u);
    EXPECT_EQ(h.Holdings[0].SubCls2, -1);   // empty: the default
    EXPECT_EQ(h.Holdings[1].Cls, 0);
    EXPECT_EQ(h.Holdings[2].Value, 0);
    EXPECT_EQ(h.ClsValue(1), 5);
    auto full = Holdings();
    EXPECT_EQ(static_cast<kv::TCHPortAllocation&>(*full).ClsValue(2), 1510.5);
}

TEST(AllocationVariants, SubClassRecords) {
    kv::TAssetSubClass sub(4, 0, "Asia");
    sub.SubCls2 = 1;
    sub.Share = 0.25;
    EXPECT_EQ(sub.GetAsString(), "4;0;Asia;1;0.25");

    kv::TLibAssetSubClass lib(3, 5, "Sector Funds");
    lib.SubCls2 = 2;
    lib.Share = 0.1;
    lib.NAV = 12.5;
    lib.Returns.PutVal(2024, -0.02);
    lib.Returns.PutVal(2023, 0.05);
    const std::string libText = "3;5;Sector Funds;2;0.1;12.5;2023:0.05,2024:-0.02";
    EXPECT_EQ(lib.GetAsString(), libText);

    kv::TLibAssetSubClass back;
    back.SetAsString(libText);
    EXPECT_EQ(back.Cls, 3);
    EXPECT_EQ(back.Name, "Sector Funds");
    EXPECT_EQ(back.NAV, 12.5);
    EXPECT_EQ(back.Returns.GetVal(2024), -0.02);
    EXPECT_EQ(back.GetAsString(), libText);
    EXPECT_DOUBLE_EQ(back.CompoundReturn(2023, 2024), 1.05 * 0.98 - 1);
    EXPECT_NEAR(back.CompoundReturn(2024, 2030), -0.02, 1e-15);
    EXPECT_EQ(back.CompoundReturn(2025, 2020), 0);
}

TEST(AllocationVariants, ListByIndexAndId) {
    kv::TPortAllocList l;
    l.Add(std::make_unique<kv::TPortAllocation>(10));
    l.Add(std::make_unique<kv::TPAClass>(20));
    l.Add(std::make_unique<kv::TPortAllocation>(20));
    EXPECT_EQ(l.IndexOfID(20), 1);   // the first of an id
    EXPECT_STREQ(l.FindByID(20)->ClassName(), "TPAClass");
    EXPECT_EQ(l.FindByID(30), nullptr);
    l.Delete(0);
    EXPECT_EQ(l.Get(0)->ID, 20);
    EXPECT_THROW(l.Get(2), kv::EListError);
    EXPECT_THROW(l.Delete(-1), kv::EListError);
}

} // namespace
