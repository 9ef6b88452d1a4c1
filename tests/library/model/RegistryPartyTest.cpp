#include <gtest/gtest.h>

#include "items/KvFnItemClasses.h"
#include "items/KvFnClassRegistry.h"
#include "parties/KvFnParty.h"

namespace {

TEST(ModelRegistry, NumbersToClasses) {
    struct Case { std::int32_t number; const kv::TFinItemClass* cls; };
    const Case cases[] = {
        // Outside the rows and the rows without a class of their own: the base record.
        {0, &kv::TFinItem::Class},    {-1, &kv::TFinItem::Class},  {252, &kv::TFinItem::Class},
        {218, &kv::TFinItem::Class},  {1, &kv::TAsset::Class},     {50, &kv::TRRSP::Class},
        {79, &kv::TNonCapLoss::Class}, {251, &kv::TITCCarryforward::Class},
    };
    for (const Case& c : cases) EXPECT_EQ(&kv::ItemClassByNumber(c.number), c.cls) << c.number;
}

TEST(ModelRegistry, ReverseLookupGivesTheLowestRow) {
    EXPECT_EQ(kv::ItemClassNumber(kv::TNonCapLoss::Class), 78);
    EXPECT_EQ(kv::ItemClassNumber(kv::TFinItem::Class), 0);
    EXPECT_EQ(kv::ItemClassNumber(kv::TRRSP::Class), 50);
    EXPECT_EQ(kv::ItemClassNumber(kv::TPortfolioBase::Class), -1);   // a base with no row
    for (std::int32_t n = 1; n < kv::kClassRegistryRows; ++n) {
        const kv::TFinItemClass& cls = kv::ItemClassByNumber(n);
        EXPECT_LE(kv::ItemClassNumber(cls), n) << cls.Name;
        EXPECT_TRUE(cls.InheritsFrom(kv::TFinItem::Class)) << cls.Name;
        auto item = cls.Create(nullptr, nullptr, n);
        EXPECT_EQ(&item->ClassType(), &cls) << cls.Name;
    }
}

TEST(ModelRegistry, InvestmentAccountsDeriveAsTheFamilyDoes) {
    struct Case { const kv::TFinItemClass* cls; const kv::TFinItemClass* base; bool derives; };
    const Case cases[] = {
        {&kv::TRRSP::Class, &kv::TLRIF::Class, true},        {&kv::TTFSA::Class, &kv::TPortfolio::Class, true},
        {&kv::TRESP::Class, &kv::TRetPlan::Class, false},     {&kv::TTFSA::Class, &kv::TRRSP::Class, false},
        {&kv::TRRIF::Class, &kv::TDCP::Class, false},         {&kv::TBankAccount::Class, &kv::TPortfolio::Class, false},
    };
    for (const Case& c : cases) EXPECT_EQ(c.cls->InheritsFrom(*c.base), c.derives) << c.cls->Name << " / " << c.base->Name;
}

TEST(ModelParties, ClassByRoleTypeAndKind) {
    struct Case { std::uint8_t kind, role, type; const char* cls; };
    const Case cases[] = {
        {0, 1, 0, "TParticipant"},     {0, 40, 150, "TCorpParticipant"}, {2, 60, 150, "TCorpParticipant"},
        {0, 60, 150, "TCorporation"},  {1, 60, 0, "TParticipant"},       {0, 0, 150, "TCorporation"},
        {0, 0, 160, "TJointVenture"},  {0, 0, 161, "TJointVenture"},     {0, 0, 170, "TTrust"},
        {0, 2, 171, "TParticipant"},
    };
    for (const Case& c : cases)
        EXPECT_STREQ(kv::CreateParty(c.kind, 5, c.role, c.type)->ClassName(), c.cls)
            << int(c.kind) << "/" << int(c.role) << "/" << int(c.type);
    EXPECT_NE(dynamic_cast<kv::TCorporation*>(kv::CreateParty(0, 1, 0, 170).get()), nullptr);
}

TEST(ModelParties, DisplayNames) {
    struct Case { const char* first; const char* last; const char* full; const char* lastFirst; };
    const Case cases[] = {{"Anne", "Roy", "Anne Roy", "Roy, Anne"}, {"", "Roy Inc.", "Roy Inc.", "Roy Inc."},
                          {"Léa", "", "Léa", "Léa"},                {"", "", "", ""}};
    for (const Case& c : cases) {
        kv::TParticipant p(1);
        p.FirstName = c.first;
        p.LastName = c.last;
        EXPECT_EQ(p.FullName(), c.full);
        EXPECT_EQ(p.FullNameLastFirst(), c.lastFirst);
    }
}

TEST(ModelParties, BeneficiaryKeyFromThePropertyArrays) {
    struct Case { kv::TPropArrays props; std::int32_t key; };
    const Case cases[] = {
        {{}, 9}, {{{}}, 9}, {{{""}}, 9}, {{{"x1"}}, 9}, {{{"12"}}, 12}, {{{"-3", "a"}, {"b"}}, -3}, {{{" 4"}}, 9},
    };
    for (const Case& c : cases) {
        kv::TCorporation p(9);
        p.DecodeProps(c.props);
        EXPECT_EQ(p.BenefKey, c.key);
        EXPECT_EQ(p.EncodeProps(), c.props);   // unchanged: written as read
        p.BenefKey = 5;
        const kv::TPropArrays out = p.EncodeProps();
        EXPECT_GE(out.size(), 3u);
        EXPECT_GE(out[1].size(), 30u);   // a corporation writes at least 30 strings there
        EXPECT_EQ(out[0][0], "5");
    }
}

} // namespace
