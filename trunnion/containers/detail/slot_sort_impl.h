// The quicksort of Int3DArr and Int4DArr. Included by slot_array.cpp alone.
#pragma once

#include <algorithm>
#include <cstddef>

#include "trunnion/containers/detail/slot_kinds.h"

namespace trunnion::detail {

// Rows of `width` integers, as the sort sees them.
template <int width>
class Rows {
public:
    explicit Rows(int *first) : rows(first) {}

    int key(int row) const { return *at(row); }
    void swap(int a, int b) { std::swap_ranges(at(a), at(a) + width, at(b)); }
    void copy(int from, int to) { std::copy_n(at(from), width, at(to)); }
    void get(int row, int *out) const { std::copy_n(at(row), width, out); }
    void set(int row, const int *in) { std::copy_n(in, width, at(row)); }

    // The largest key from lo to hi and how often it stands there.
    void findMaximum(int lo, int hi, int &maximum, int &count) const {
        maximum = key(lo);
        count = 0;
        for (int row = lo; row <= hi; ++row) {
            if (key(row) > maximum) {
                maximum = key(row);
                count = 0;
            }
            count += key(row) == maximum ? 1 : 0;
        }
    }

private:
    int *at(int row) { return rows + static_cast<std::ptrdiff_t>(row) * width; }
    const int *at(int row) const { return rows + static_cast<std::ptrdiff_t>(row) * width; }

    int *rows;
};

inline int middle(int lo, int hi) {
    return lo + (hi - lo) / 2;
}

// Splits lo to hi about the key of the middle row and returns where that row comes to stand: rows
// at or below the key lie left of it, rows above it right.
template <int width>
int partition(Rows<width> rows, int lo, int hi) {
    const int mid = middle(lo, hi);
    int pivot[width];
    rows.get(mid, pivot);
    rows.swap(mid, lo);
    int i = lo + 1;
    int j = hi;
    for (;;) {
        while (i <= j && rows.key(i) <= pivot[0]) {
            ++i;
        }
        while (rows.key(j) > pivot[0]) {
            --j;
        }
        if (i >= j) {
            break;
        }
        rows.swap(i, j);
    }
    rows.copy(j, lo);
    rows.set(j, pivot);
    return j;
}

// partition() of a range in which no key is above the pivot's: it splits off the last row alone, so
// the scan that would find this out can be left undone. This is what keeps many equal keys from
// taking quadratic time.
template <int width>
void splitOffLast(Rows<width> rows, int lo, int hi) {
    const int mid = middle(lo, hi);
    int pivot[width];
    rows.get(mid, pivot);
    rows.copy(lo, mid);
    rows.copy(hi, lo);
    rows.set(hi, pivot);
}

template <int width>
void sortRange(Rows<width> rows, int lo, int hi) {
    while (hi - lo >= 1) {
        if (hi - lo == 1) {
            if (rows.key(hi) < rows.key(lo)) {
                rows.swap(hi, lo);
            }
            return;
        }
        int maximum;
        int count;
        rows.findMaximum(lo, hi, maximum, count);
        while (count > 0 && hi - lo > 1 && rows.key(middle(lo, hi)) == maximum) {
            splitOffLast(rows, lo, hi);
            --hi;
            --count;
        }
        if (count == 0 || hi - lo <= 1) {
            continue;
        }
        const int split = partition(rows, lo, hi);
        // The two sides do not touch each other, so the smaller one may go first: the stack then
        // stays below log2 of the length.
        if (split - lo < hi - split) {
            sortRange(rows, lo, split - 1);
            lo = split + 1;
        } else {
            sortRange(rows, split + 1, hi);
            hi = split - 1;
        }
    }
}

template <class Slots>
void SortedSlots<Slots>::QuickSortM() {
    sortRange(Rows<width>(this->data()), 0, bound - 1);
}

} // namespace trunnion::detail
