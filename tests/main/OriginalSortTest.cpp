// The list sorts keep the original's order of equal keys on ordinary input and
// stay n log n on input crafted against them.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "OriginalQuicksort.h"
#include "core/ProductQuicksort.h"

using namespace tessary;

namespace {

enum class Sort { Text, Pointer };

// Sorts item numbers by keys[item] with the algorithm named; counts comparisons.
template <class Compare>
std::vector<int> SortItems(Sort sort, bool reference, std::vector<int> items, Compare compare, long long* count) {
    auto counted = [&](int a, int b) {
        ++*count;
        return compare(a, b);
    };
    const int last = static_cast<int>(items.size()) - 1;
    if (items.size() > 1) {
        if (sort == Sort::Text)
            reference ? kvtest::OriginalTextSort(items, 0, last, counted) : TextListSort(items, counted);
        else
            reference ? kvtest::OriginalPointerSort(items, 0, last, counted) : PointerListSort(items, counted);
    }
    return items;
}

std::vector<int> Identity(int n) {
    std::vector<int> v(static_cast<std::size_t>(n));
    std::iota(v.begin(), v.end(), 0);
    return v;
}

// McIlroy's adversary: keys are fixed only when a comparison needs them, always
// so that the current pivot candidate comes out smallest. The keys it leaves
// are an input on which the sort it watched takes its longest.
std::vector<int> KillerKeys(Sort sort, bool reference, int n) {
    return kvtest::AdversaryKeys(n, [&](std::vector<int>& items, auto compare) {
        long long count = 0;
        items = SortItems(sort, reference, items, compare, &count);
    });
}

struct Case {
    Sort sort;
    int n;
    int distinctKeys;
};

class OrdinaryInput : public ::testing::TestWithParam<Case> {};

TEST_P(OrdinaryInput, SameOrderAsTheOriginal) {
    const Case c = GetParam();
    std::mt19937 rng(static_cast<std::uint32_t>(c.n * 31 + c.distinctKeys));
    std::uniform_int_distribution<int> draw(0, c.distinctKeys - 1);
    for (int round = 0; round < 20; ++round) {
        std::vector<int> keys(static_cast<std::size_t>(c.n));
        for (int& k : keys) k = draw(rng);
        if (round % 4 == 2) {   // nearly in order
            std::sort(keys.begin(), keys.end());
            for (int k = 0; k < c.n / 100; ++k) std::swap(keys[rng() % keys.size()], keys[rng() % keys.size()]);
        }
        if (round % 4 == 3) std::sort(keys.begin(), keys.end(), std::greater<>());
        auto cmp = [&](int a, int b) { return (keys[std::size_t(a)] > keys[std::size_t(b)]) - (keys[std::size_t(a)] < keys[std::size_t(b)]); };
        long long refCount = 0, count = 0;
        const auto expected = SortItems(c.sort, true, Identity(c.n), cmp, &refCount);
        const auto got = SortItems(c.sort, false, Identity(c.n), cmp, &count);
        ASSERT_EQ(got, expected) << "round " << round;
        EXPECT_EQ(count, refCount) << "round " << round;   // the very same steps, no fallback
    }
}

INSTANTIATE_TEST_SUITE_P(Random, OrdinaryInput, ::testing::Values(
    Case{Sort::Text, 2, 2}, Case{Sort::Text, 100, 3}, Case{Sort::Text, 5000, 7}, Case{Sort::Text, 20000, 300},
    Case{Sort::Text, 20000, 1 << 30}, Case{Sort::Pointer, 2, 2}, Case{Sort::Pointer, 100, 3},
    Case{Sort::Pointer, 5000, 7}, Case{Sort::Pointer, 20000, 300}, Case{Sort::Pointer, 20000, 1 << 30}));

class CraftedInput : public ::testing::TestWithParam<Sort> {};

TEST_P(CraftedInput, SortedInNLogNComparisons) {
    const Sort sort = GetParam();
    const int n = 6000;
    const long long bound = 8LL * n * std::bit_width(unsigned(n));
    // Crafted against the original, and against these sorts themselves.
    for (bool againstOriginal : {true, false}) {
        const std::vector<int> keys = KillerKeys(sort, againstOriginal, n);
        auto cmp = [&](int a, int b) { return (keys[std::size_t(a)] > keys[std::size_t(b)]) - (keys[std::size_t(a)] < keys[std::size_t(b)]); };
        long long count = 0;
        const auto got = SortItems(sort, false, Identity(n), cmp, &count);
        for (std::size_t i = 1; i < got.size(); ++i)
            ASSERT_LE(keys[std::size_t(got[i - 1])], keys[std::size_t(got[i])]) << "at " << i;
        EXPECT_LE(count, bound) << (againstOriginal ? "crafted against the original" : "crafted against itself");
        if (againstOriginal) {
            long long refCount = 0;
            SortItems(sort, true, Identity(n), cmp, &refCount);
            EXPECT_GT(refCount, 10 * bound);   // the input really is the original's worst case
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Killer, CraftedInput, ::testing::Values(Sort::Text, Sort::Pointer),
                         [](const auto& info) { return info.param == Sort::Text ? "Text" : "Pointer"; });

} // namespace
