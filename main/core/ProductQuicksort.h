// The products' own quicksort order for equal keys: the two quicksorts of
// the original list classes. Where the original leaves the order of equal keys
// open, these reproduce the order it produced.
//
// Crafted keys can drive either quicksort quadratic (and its recursion as deep
// as the list is long). Each partition therefore spends one unit of a depth
// budget of about 3·log2(n); a range that exhausts it is finished with a
// stable merge sort, as introsort does. Lists in random or nearly sorted order
// never get that deep, so their order is the original's. Crafted input, and
// input in a few long sorted runs (which drive the middle pivot to depths like
// the square root of n), may see equal keys in another order; no input costs
// more than n log n comparisons.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>
#include <vector>

namespace tessary {

namespace sortdetail {

// Introsort's 2·log2(n) would cut in on ordinary data: with the middle
// element as pivot, lists in random order reach up to about 2.75·log2(n).
inline int DepthBudget(std::size_t n) { return 3 * static_cast<int>(std::bit_width(n)) + 8; }

template <class T, class Compare>
void FinishRange(std::vector<T>& list, int l, int r, Compare& compare) {
    std::stable_sort(list.begin() + l, list.begin() + r + 1, [&](const T& a, const T& b) { return compare(a, b) < 0; });
}

} // namespace sortdetail

// The text list's sort: the pivot is followed by its index while items move.
// compare(a, b) returns <0, 0 or >0.
template <class T, class Compare>
void TextListQuickSort(std::vector<T>& list, int l, int r, Compare compare, int depth) {
    int i, j, p;
    do {
        if (depth-- <= 0) {
            sortdetail::FinishRange(list, l, r, compare);
            return;
        }
        i = l;
        j = r;
        p = (l + r) >> 1;
        do {
            while (compare(list[i], list[p]) < 0) ++i;
            while (compare(list[j], list[p]) > 0) --j;
            if (i <= j) {
                if (i != j) std::swap(list[i], list[j]);
                if (p == i)
                    p = j;
                else if (p == j)
                    p = i;
                ++i;
                --j;
            }
        } while (i <= j);
        if (l < j) TextListQuickSort(list, l, j, compare, depth);
        l = i;
    } while (i < r);
}

template <class T, class Compare>
void TextListSort(std::vector<T>& list, Compare compare) {
    if (list.size() > 1)
        TextListQuickSort(list, 0, static_cast<int>(list.size()) - 1, compare, sortdetail::DepthBudget(list.size()));
}

// The pointer list's sort: the pivot value is taken once per pass.
template <class T, class Compare>
void PointerListQuickSort(std::vector<T>& list, int l, int r, Compare compare, int depth) {
    int i, j;
    do {
        if (depth-- <= 0) {
            sortdetail::FinishRange(list, l, r, compare);
            return;
        }
        i = l;
        j = r;
        const T pivot = list[(l + r) >> 1];
        do {
            while (compare(list[i], pivot) < 0) ++i;
            while (compare(list[j], pivot) > 0) --j;
            if (i <= j) {
                if (i != j) std::swap(list[i], list[j]);
                ++i;
                --j;
            }
        } while (i <= j);
        if (l < j) PointerListQuickSort(list, l, j, compare, depth);
        l = i;
    } while (i < r);
}

template <class T, class Compare>
void PointerListSort(std::vector<T>& list, Compare compare) {
    if (list.size() > 1)
        PointerListQuickSort(list, 0, static_cast<int>(list.size()) - 1, compare, sortdetail::DepthBudget(list.size()));
}

} // namespace tessary
