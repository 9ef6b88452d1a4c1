// The two quicksorts of the original list classes. Where the original leaves
// the order of equal keys open, these reproduce the order it produced.
#pragma once

#include <utility>
#include <vector>

namespace tessary {

// The text list's sort: the pivot is followed by its index while items move.
// compare(a, b) returns <0, 0 or >0.
template <class T, class Compare>
void TextListQuickSort(std::vector<T>& list, int l, int r, Compare compare) {
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
        if (l < j) TextListQuickSort(list, l, j, compare);
        l = i;
    } while (i < r);
}

template <class T, class Compare>
void TextListSort(std::vector<T>& list, Compare compare) {
    if (list.size() > 1) TextListQuickSort(list, 0, static_cast<int>(list.size()) - 1, compare);
}

// The pointer list's sort: the pivot value is taken once per pass.
template <class T, class Compare>
void PointerListQuickSort(std::vector<T>& list, int l, int r, Compare compare) {
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
        if (l < j) PointerListQuickSort(list, l, j, compare);
        l = i;
    } while (i < r);
}

template <class T, class Compare>
void PointerListSort(std::vector<T>& list, Compare compare) {
    if (list.size() > 1) PointerListQuickSort(list, 0, static_cast<int>(list.size()) - 1, compare);
}

} // namespace tessary
