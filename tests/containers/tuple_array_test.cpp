// Tuple arrays: which values a miss fills, keyed lists, sorting, and what single classes add.
#include "trunnion/containers/slot_array.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"

namespace {

constexpr int untouched = 77;

TEST(TupleArrays, MissesFillAsManyValuesAsTheClassSays) {
    int ints[4];
    int idx;
    std::fill_n(ints, 4, untouched);
    EXPECT_EQ(Int2DArr().GetItemM(ints, 0), 0) << "the one class that reports it";
    EXPECT_EQ(ints[1], SL_DELETED_INT);
    std::fill_n(ints, 4, untouched);
    EXPECT_EQ(Int4DArr().GetItemM(ints, 3), 1);
    EXPECT_EQ(ints[1], SL_DELETED_INT);
    EXPECT_EQ(ints[2], untouched);
    std::fill_n(ints, 4, untouched);
    EXPECT_EQ(Int3DArr().GetFirstM(ints, &idx), -1);
    EXPECT_EQ(ints[1], SL_DELETED_INT);
    EXPECT_EQ(ints[2], untouched);
    float floats[4] = {};
    EXPECT_EQ(PixelArr().GetItemM(floats, 0), 1);
    EXPECT_EQ(floats[3], SL_DELETED_REAL);
    EXPECT_EQ(Point2DArr().GetItemPM(0), nullptr);
}

TEST(TupleArrays, DeletionWritesTheFirstValueOnly) {
    Point2DArr points;
    for (int i = 0; i < 3; ++i) {
        const float point[2] = {1.0F, 2.0F + static_cast<float>(i)};
        points.AddItemM(point);
    }
    points.DelItemM(1);
    float out[2];
    points.GetItemM(out, 1);
    EXPECT_EQ(out[0], SL_DELETED_REAL);
    EXPECT_EQ(out[1], 3.0F);
}

// Keyed lists

TEST(Int2DArr, BisectionReportsTheNeighbourThatInsertionTakes) {
    Int2DArr list;
    int idx = 0;
    int value = 0;
    EXPECT_EQ(list.FindIdxInLstM(5, &idx, &value), 0);
    EXPECT_EQ(idx, SL_DELETED_INT);
    test::Random random(7);
    std::vector<std::pair<int, int>> model; // key, value
    for (int i = 0; i < 200; ++i) {
        const int key = random.integer(0, 400);
        const auto at = std::lower_bound(model.begin(), model.end(), std::pair(key, -1));
        const bool held = at != model.end() && at->first == key;
        ASSERT_EQ(list.FindIdxInLstM(key, &idx, &value), held ? 1 : 0) << key;
        if (held) {
            ASSERT_EQ(value, at->second);
            continue;
        }
        if (!model.empty()) {
            ASSERT_EQ(idx, std::max<long>(0, at - model.begin() - 1));
        }
        list.AddInIdxLstM(idx, key, i);
        model.insert(at, {key, i});
        ASSERT_EQ(list.GetBoundM(), static_cast<int>(model.size()));
    }
    list.DelItemInLstM(0);
    list.DelItemInLstM(list.GetBoundM());
    EXPECT_EQ(list.GetItemPM(0)[1], model[1].first);
    EXPECT_EQ(list.GetBoundM(), static_cast<int>(model.size()) - 1);
    EXPECT_EQ(list.FindItemByValueM(1, model[2].first, &value), 1);
    EXPECT_EQ(value, model[2].second);
    EXPECT_EQ(list.FindItemByValueM(2, model[2].first, &value), -1);
}

TEST(Int3DArr, FindsByFirstValueByWalkAndByKeyPair) {
    Int3DArr list;
    for (int i = 0; i < 7; ++i) {
        const int tuple[3] = {10 * i, i % 3, 100 - i};
        list.AddItemM(tuple);
    }
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(list.FindIdxInLstM(10 * i), i);
        EXPECT_EQ(list.FindIdxInLstM(10 * i + 5), SL_DELETED_INT);
    }
    const struct {
        int walk[3];
        int value;
        int slot;
        int other;
    } cases[] = {
        {{0, 1, 1}, 2, 2, 20},         {{3, 1, 1}, 2, 5, 50},
        {{4, -1, 1}, 2, 2, 20},        {{6, -1, 0}, 0, 0, 0},
        {{6, -2, 1}, 1, 4, 40},        {{0, 1, 2}, 96, 4, 40},
        {{0, 2, 0}, 0, 0, 0},          {{0, 2, 0}, 20, -1, untouched},
        {{3, 0, 1}, 0, 3, 30},         {{3, 0, 1}, 9, -1, untouched},
        {{7, 1, 1}, 1, -1, untouched}, {{-1, 1, 1}, 0, -1, untouched},
        {{0, 1, 3}, 0, -1, untouched}, {{9, -1, 0}, 60, 6, 0},
        {{8, -2, 1}, 0, 6, 60},        {{7, -2, 1}, 0, 3, 30},
    };
    for (const auto &c : cases) {
        int other = untouched;
        EXPECT_EQ(list.FindItemByValueM(c.walk, c.value, &other), c.slot)
            << c.walk[0] << ' ' << c.walk[1] << ' ' << c.walk[2];
        EXPECT_EQ(other, c.other);
    }
    const int key[2] = {40, 1};
    EXPECT_EQ(list.FindItemByKey2M(key), 4);
    const int wrong[2] = {40, 2};
    EXPECT_EQ(list.FindItemByKey2M(wrong), -1);
    list.DelItemM(2);
    EXPECT_EQ(list.IsAvailableM(2), 30);
    EXPECT_EQ(list.IsAvailableM(1), 31);
    EXPECT_EQ(list.IsAvailableM(7), 30);
}

TEST(Int4DArr, FirstValueIsChangedWithItsOwnGrowthRule) {
    Int4DArr list;
    list.ChangeFirstValueM(5, 4);
    EXPECT_EQ(list.GetLengthM(), 14);
    EXPECT_EQ(list.GetBoundM(), 5);
    EXPECT_EQ(list.GetAvailableNumM(), 1);
    list.ChangeFirstValueM(6, 14 + 11);
    EXPECT_EQ(list.GetLengthM(), 14 + 10 + 12);
    list.ModifyItemM(9, 4, 3);
    EXPECT_EQ(list.GetItemPM(4)[3], 9);
    EXPECT_EQ(list.GetAvailableNumM(), 2);
}

// Sorting

template <std::size_t width>
using Row = std::array<int, width>;

// The quicksort as it is described, with no thought of time or stack.
template <std::size_t width>
void plainQuickSort(std::vector<Row<width>> &rows, int lo, int hi) {
    const auto at = [&rows](int i) -> Row<width> & { return rows[static_cast<std::size_t>(i)]; };
    while (hi - lo >= 1) {
        if (hi - lo == 1) {
            if (at(hi)[0] < at(lo)[0]) {
                std::swap(at(hi), at(lo));
            }
            return;
        }
        const int mid = (lo + hi) / 2;
        const Row<width> pivot = at(mid);
        std::swap(at(mid), at(lo));
        int i = lo + 1;
        int j = hi;
        for (;;) {
            while (i <= j && at(i)[0] <= pivot[0]) {
                ++i;
            }
            while (at(j)[0] > pivot[0]) {
                --j;
            }
            if (i >= j) {
                break;
            }
            std::swap(at(i), at(j));
        }
        at(lo) = at(j);
        at(j) = pivot;
        if (lo < j - 1) {
            plainQuickSort(rows, lo, j - 1);
        }
        lo = j + 1;
    }
}

template <class Array, std::size_t width>
void expectSortedAsDescribed(const std::vector<Row<width>> &rows) {
    Array array;
    for (const Row<width> &row : rows) {
        array.AddItemM(row.data());
    }
    std::vector<Row<width>> expected = rows;
    plainQuickSort(expected, 0, static_cast<int>(rows.size()) - 1);
    array.QuickSortM();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int *held = array.GetItemPM(static_cast<int>(i));
        ASSERT_TRUE(std::equal(expected[i].begin(), expected[i].end(), held)) << "row " << i;
    }
}

TEST(QuickSort, LeavesEqualKeysInExactlyTheDescribedOrder) {
    test::Random random(99);
    for (int round = 0; round < 400; ++round) {
        const int length = random.integer(0, 70);
        const int keys = random.integer(1, 1 + length);
        const bool ascending = random.oneIn(4);
        std::vector<Row<3>> rows;
        std::vector<Row<4>> wide;
        for (int i = 0; i < length; ++i) {
            int key = ascending ? i * keys / length : random.integer(1, keys);
            key = random.oneIn(20) ? SL_DELETED_INT : key;
            rows.push_back({key, i, -i});
            wide.push_back({key, i, -i, 2 * i});
        }
        ASSERT_NO_FATAL_FAILURE((expectSortedAsDescribed<Int3DArr, 3>(rows)));
        ASSERT_NO_FATAL_FAILURE((expectSortedAsDescribed<Int4DArr, 4>(wide)));
    }
}

TEST(QuickSort, TakesAMillionEqualKeysInItsStride) {
    const auto start = std::chrono::steady_clock::now();
    for (const int distinct : {1, 2, 3}) {
        Int3DArr array;
        array.InitialSizeM(1000000);
        for (int i = 0; i < 1000000; ++i) {
            const int row[3] = {i % distinct, i, 0};
            array.AddItemM(row);
        }
        array.QuickSortM();
        for (int i = 1; i < 1000000; ++i) {
            ASSERT_LE(array.GetItemPM(i - 1)[0], array.GetItemPM(i)[0]);
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30))
        << "quadratic time would take hours";
}

// Point2DArr

Point2DArr pointsOf(const std::vector<std::array<float, 2>> &values) {
    Point2DArr points;
    for (const auto &value : values) {
        points.AddItemM(value.data());
    }
    return points;
}

TEST(Point2DArr, TurningSenseLeavesOutTheLastSlotAndTheClosingEdge) {
    EXPECT_EQ(pointsOf({{0, 0}, {1, 0}}).CheckCcwM(), 1);
    EXPECT_EQ(pointsOf({{1, 0}, {1, 1}, {0, 1}}).CheckCcwM(), 0);
    EXPECT_EQ(pointsOf({{1, 1}, {1, 0}, {0, 1}}).CheckCcwM(), 1);
    EXPECT_EQ(pointsOf({{1, 0}, {1, 0}, {-9, -9}}).CheckCcwM(), 1) << "a sum of 0";
}

TEST(Point2DArr, ScopeTakesPointsWithBothCoordinatesAboveTheLimit) {
    float x[2];
    float y[2];
    Point2DArr().GetScopeM(x, y);
    EXPECT_EQ(x[0], 1e18F);
    EXPECT_EQ(y[1], -1e18F);
    pointsOf({{1, 5}, {-3, 2}, {-6e17F, 90}, {90, -6e17F}}).GetScopeM(x, y);
    EXPECT_EQ(x[0], -3.0F);
    EXPECT_EQ(x[1], 1.0F);
    EXPECT_EQ(y[0], 2.0F);
    EXPECT_EQ(y[1], 5.0F);
}

} // namespace
