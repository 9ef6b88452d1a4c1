// The portfolio allocation records and their variants as text: ids, field
// order, defaults of missing fields, escaped separators, hostile counts.
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "KvErrors.h"
#include "catalogue/KvIdentText.h"
#include "items/KvAllocationYears.h"
#include "items/KvAssetSubClasses.h"
#include "items/KvPortAllocation.h"
#include "items/KvReturnStatistics.h"

namespace {

TEST(PortAllocation, UniqueIdTexts) {
    struct C {
        std::int32_t id;
        const char* text;
    };
    for (const C c : {C{0, "00000000"}, C{123456, "0001E240"}, C{-1, "FFFFFFFF"}, C{INT32_MIN, "80000000"}}) {
        EXPECT_EQ(kv::UniqueIDToText(c.id), c.text);
        std::int32_t back = 7;
        EXPECT_TRUE(kv::TryTextToUniqueID(c.text, back));
        EXPECT_EQ(back, c.id);
    }
    for (const char* bad : {"", "123456789", "12G", " 1", "-1"}) {
        std::int32_t v = 7;
        EXPECT_FALSE(kv::TryTextToUniqueID(bad, v)) << bad;
        EXPECT_EQ(v, 7);
    }
    // A new allocation's id is its creation time's text.
    EXPECT_EQ(kv::DateTimeToText(45356 + 3723.004 / 86400), "2024-03-05 01:02:03.004");
    EXPECT_EQ(kv::TPortAllocation::IDFromDateTime(45356.25), kv::SubstituteID("2024-03-05 06:00:00.000"));
}

TEST(PortAllocation, FieldsReadInTheirOrderOrTakeTheirDefaults) {
    struct C {
        const char* text;
        std::int32_t id, ref, f1, f2, kind, f4;
        const char* name;
        const char* txt;
    };
    const C cases[] = {
        {"0001E240;Core;note;000003EB;0;1;2;0", 123456, 1003, 0, 1, 2, 0, "Core", "note"},
        {"", 0, 0, 0, 1, 1, 0, "", ""},
        {"0000000a;n;t;zz;x;;7", 10, 0, 0, 1, 7, 0, "n", "t"},
        {"0000000A;n;t;0;5;6;7;8;extra", 10, 0, 5, 6, 7, 8, "n", "t"},
        {"0000000A;n;t;0;-3;+4;1.5;2", 10, 0, -3, 1, 1, 2, "n", "t"},
        {"1;a\\;b;x\\\\y;2", 1, 2, 0, 1, 1, 0, "a;b", "x\\y"},
        {"1;C:\\temp;\\", 1, 0, 0, 1, 1, 0, "C:\\temp", "\\"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        kv::TPortAllocation a(99);
        a.Flag1 = a.Flag2 = a.Kind = a.Flag4 = 42;
        a.SetAsString(c.text);
        EXPECT_EQ(a.ID, c.id);
        EXPECT_EQ(a.Reference, c.ref);
        EXPECT_EQ(a.Flag1, c.f1);
        EXPECT_EQ(a.Flag2, c.f2);
        EXPECT_EQ(a.Kind, c.kind);
        EXPECT_EQ(a.Flag4, c.f4);
        EXPECT_EQ(a.Name, c.name);
        EXPECT_EQ(a.Text, c.txt);
        EXPECT_FALSE(a.TextChanged());
    }
    kv::TPortAllocation a(0);
    a.SetAsString(cases[0].text);
    EXPECT_EQ(a.GetAsString(), cases[0].text);
    a.Text = "changed";
    EXPECT_TRUE(a.TextChanged());
}

TEST(PortAllocation, TextsWithSeparatorsRoundTrip) {
    for (const char* s : {"a;b", "x\\y", "\\;", "end\\", "\\\\;\\"}) {
        kv::TPortAllocation a(5);
        a.Name = s;
        a.Text = std::string(s) + "|2";
        kv::TPortAllocation b(0);
        b.SetAsString(a.GetAsString());
        EXPECT_EQ(b.Name, a.Name) << a.GetAsString();
        EXPECT_EQ(b.Text, a.Text) << a.GetAsString();
    }
}

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

TEST(PortAllocation, VariantsWriteTheirFieldsAfterTheCommonOnes) {
    struct C {
        std::unique_ptr<kv::TPortAllocation> (*make)();
        const char* text;
    };
    const C cases[] = {
        {Holdings, "00000001;H;;00000000;0;0;0;0;3;XIU;2;0;-1;1500.5;VFV\\;US;3;0;1;250;XEF;2;3;-1;10"},
        {ClassTargets, "00000002;;;00000000;0;0;0;0;0.1;0.2;0.3;0.4;0;0"},
        {Sma, "00000003;;;00000000;0;0;4;0;0;0;0.5;0.5;0;0;Acme\\; Capital;1.25;250000"},
        {Fees, "00000004;;;00000000;0;0;0;0;0.1;0.25;1;1;1.5;1.1"},
    };
    for (const auto& c : cases) {
        const auto orig = c.make();
        EXPECT_EQ(orig->GetAsString(), c.text);
        EXPECT_EQ(orig->Clone()->GetAsString(), c.text);
        auto blank = c.make();
        blank->SetAsString("");
        blank->SetAsString(c.text);
        EXPECT_EQ(blank->GetAsString(), c.text);
    }
}

TEST(PortAllocation, HoldingsNeverOutnumberTheirFields) {
    struct C {
        const char* text;
        std::size_t n;
    };
    const std::string head = "00000001;H;;0;0;0;0;0;";
    // A holding takes five fields; a sixth to ninth field starts none.
    for (const C c : {C{"2;A;1;0;-1;5;B;2;0;-1;7", 2}, C{"5;A;1;0;-1;5;B;2;0;-1;7", 2}, C{"-1;A;1;0;-1;5", 0},
                      C{"3;A;1;0;-1;5;B;2;0;-1;7;C;1", 2},
                      C{"1;A;1;0", 0}, C{"2147483647;A;1;0;-1;5", 1}, C{"x;A;1;0;-1;5", 0}}) {
        kv::TCHPortAllocation h(0);
        h.SetAsString(head + c.text);
        EXPECT_EQ(h.Holdings.size(), c.n) << c.text;
    }
    EXPECT_EQ(static_cast<kv::TCHPortAllocation&>(*Holdings()).ClsValue(2), 1510.5);
}

} // namespace
