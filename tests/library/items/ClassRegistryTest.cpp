// Class numbers of the chart to item classes and back, and the family tree
// the import relies on.
#include <gtest/gtest.h>

#include "items/KvFnItemClasses.h"
#include "items/KvFnClassRegistry.h"

namespace {

TEST(ClassRegistry, NumbersToClasses) {
    struct Case { std::int32_t number; const kv::TFinItemClass* cls; };
    const Case cases[] = {
        // Outside the rows and the rows without a class of their own: the base record.
        {0, &kv::TFinItem::Class},    {-1, &kv::TFinItem::Class},  {252, &kv::TFinItem::Class},
        {218, &kv::TFinItem::Class},  {1, &kv::TAsset::Class},     {50, &kv::TRRSP::Class},
        {79, &kv::TNonCapLoss::Class}, {251, &kv::TITCCarryforward::Class},
    };
    for (const Case& c : cases) EXPECT_EQ(&kv::ItemClassByNumber(c.number), c.cls) << c.number;
}

TEST(ClassRegistry, ReverseLookupGivesTheLowestRow) {
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

TEST(ClassRegistry, InvestmentAccountsDeriveAsTheFamilyDoes) {
    struct Case { const kv::TFinItemClass* cls; const kv::TFinItemClass* base; bool derives; };
    const Case cases[] = {
        {&kv::TRRSP::Class, &kv::TLRIF::Class, true},        {&kv::TTFSA::Class, &kv::TPortfolio::Class, true},
        {&kv::TRESP::Class, &kv::TRetPlan::Class, false},     {&kv::TTFSA::Class, &kv::TRRSP::Class, false},
        {&kv::TRRIF::Class, &kv::TDCP::Class, false},         {&kv::TBankAccount::Class, &kv::TPortfolio::Class, false},
    };
    for (const Case& c : cases) EXPECT_EQ(c.cls->InheritsFrom(*c.base), c.derives) << c.cls->Name << " / " << c.base->Name;
}

} // namespace
