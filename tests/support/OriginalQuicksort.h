// The planning products' two list quicksorts exactly as they are, and
// McIlroy's adversary against any sort: the reference for the order of equal
// keys and the source of inputs that make a quicksort take its longest.
#pragma once

#include <numeric>
#include <utility>
#include <vector>

namespace kvtest {

// The text list's sort: the pivot is followed by its index while items move.
template <class T, class Compare>
void OriginalTextSort(std::vector<T>& list, int l, int r, Compare compare) {
    int i, j, p;
    do {
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
        if (l < j) OriginalTextSort(list, l, j, compare);
        l = i;
    } while (i < r);
}

// The pointer list's sort: the pivot value is taken once per pass.
template <class T, class Compare>
void OriginalPointerSort(std::vector<T>& list, int l, int r, Compare compare) {
    int i, j;
    do {
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
        if (l < j) OriginalPointerSort(list, l, j, compare);
        l = i;
    } while (i < r);
}

// McIlroy's adversary: keys are fixed only when a comparison needs them,
// always so that the current pivot candidate comes out smallest. sortItems
// (std::vector<int>& items, compare) sorts item numbers 0..n-1 with the sort
// watched. Keys never compared while undecided are left at n.
template <class SortItems>
std::vector<int> AdversaryKeys(int n, SortItems sortItems) {
    const int gas = n;
    std::vector<int> key(static_cast<std::size_t>(n), gas);
    int solid = 0, candidate = 0;
    std::vector<int> items(static_cast<std::size_t>(n));
    std::iota(items.begin(), items.end(), 0);
    sortItems(items, [&](int x, int y) {
        int& kx = key[std::size_t(x)];
        int& ky = key[std::size_t(y)];
        if (kx == gas && ky == gas) (x == candidate ? kx : ky) = solid++;
        if (kx == gas)
            candidate = x;
        else if (ky == gas)
            candidate = y;
        return (kx > ky) - (kx < ky);
    });
    return key;
}

} // namespace kvtest
