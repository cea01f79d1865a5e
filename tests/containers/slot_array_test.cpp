// What the nine slot arrays share, held against a plain model, and the operations that single
// classes add.
#include "trunnion/containers/char_arr.h"
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"

#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/slot_run.h"

namespace {

template <class Rules>
class SlotArrays : public ::testing::Test {
protected:
    using Array = typename Rules::Array;
    using Slot = typename test::SlotModel<Rules>::Slot;

    static auto argument(const Slot &slot) { return test::SlotRun<Rules>::argument(slot); }
};

template <class... Rules>
::testing::Types<Rules...> typesOf(test::TypeList<Rules...>);
TYPED_TEST_SUITE(SlotArrays, decltype(typesOf(test::AllSlotRules())));

TYPED_TEST(SlotArrays, BehaveLikeThePlainModelUnderRandomOperations) {
    test::Random random(20260114);
    for (int round = 0; round < 30; ++round) {
        test::SlotRun<TypeParam> run;
        for (int step = 0; step < 60; ++step) {
            ASSERT_STREQ(run.step(random), nullptr) << "round " << round << " step " << step;
        }
    }
}

TYPED_TEST(SlotArrays, GrowFromFourThroughTheIncrementAndThenDouble) {
    typename TestFixture::Array array;
    const typename TestFixture::Slot slot{1};
    std::vector<int> capacities;
    for (int i = 0; i < 61; ++i) {
        array.AddItemM(TestFixture::argument(slot));
        if (capacities.empty() || capacities.back() != array.GetLengthM()) {
            capacities.push_back(array.GetLengthM());
        }
    }
    EXPECT_EQ(capacities, (std::vector<int>{4, 15, 30, 60, 120}));
    typename TestFixture::Array jump;
    jump.SetItemM(TestFixture::argument(slot), 50);
    EXPECT_EQ(jump.GetLengthM(), 61);
    EXPECT_EQ(typename TestFixture::Array(4).GetLengthM(), 4);
    EXPECT_EQ(typename TestFixture::Array(5).GetLengthM(), 5);
    EXPECT_EQ(typename TestFixture::Array(-5).GetLengthM(), 4);
}

TYPED_TEST(SlotArrays, TrailingShrinkIsOneStep) {
    typename TestFixture::Array array;
    for (int i = 0; i < 5; ++i) {
        array.AddItemM(TestFixture::argument(typename TestFixture::Slot{9}));
    }
    array.DelItemM(3);
    array.DelItemM(4);
    EXPECT_EQ(array.GetBoundM(), 4);
    array.DelItemM(3);
    EXPECT_EQ(array.GetBoundM(), 3);
    EXPECT_EQ(array.GetAvailableNumM(), 3);
    array.DelItemM(3);
    array.DelItemM(-1);
    EXPECT_EQ(array.GetBoundM(), 3);
}

TEST(SlotArray, ArgumentMayPointIntoTheArrayItself) {
    Point3DArr points;
    const float first[3] = {1, 2, 3};
    for (int i = 0; i < 4; ++i) {
        points.AddItemM(first);
    }
    points.AddItemM(points.GetItemPM(0));
    points.InsertItemM(points.GetItemPM(0), 0);
    float out[3];
    points.GetItemM(out, 5);
    EXPECT_EQ(out[2], 3.0F);
}

TEST(SlotArray, ClassesAreDistinct) {
    static_assert(!std::is_convertible_v<RealArr, IntArr> &&
                  !std::is_convertible_v<IntArr, RealArr>);
    static_assert(!std::is_convertible_v<Int3DArr *, Int4DArr *>);
    static_assert(
        !std::is_convertible_v<IntArr *,
                               trunnion::detail::SlotArray<trunnion::detail::IntSlots> *>);
    static_assert(std::has_virtual_destructor_v<IntArr> && std::has_virtual_destructor_v<PixelArr>);
}

TEST(SlotArray, ClearsKeepOrReleaseTheBlock) {
    IntArr array;
    array.SetIncrementM(20);
    for (int i = 0; i < 100; ++i) {
        array.AddItemM(i);
    }
    const int capacity = array.GetLengthM();
    array.DelAllVirtualM();
    EXPECT_EQ(array.GetLengthM(), capacity);
    EXPECT_EQ(array.AddItemM(5), 0);
    EXPECT_EQ(array.GetAvailableNumM(), 1);
    array.DelAllM();
    EXPECT_EQ(array.GetLengthM(), 4);
    array.SetItemM(1, 4);
    EXPECT_EQ(array.GetLengthM(), 25) << "the increment outlives a clear";
}

// What a host wrote behind the bound, through a pointer or a reference, is what the slots hold.
TEST(SlotArray, WritesThroughAPointerBehindTheBoundStay) {
    IntArr array(20);
    array.AddItemM(1);
    int *slots = array.getCurrentItemPrtM();
    slots[7] = 5;
    array[12] = 6;
    IntArr copy = array;
    for (const int idx : {7, 12, 13}) {
        copy.SetItemM(9, idx);
    }
    EXPECT_EQ(copy.GetAvailableNumM(), 2) << "only slot 13 was empty";
    copy.DelAllVirtualM();
    array.SetItemM(2, 15);
    EXPECT_EQ(array.GetItemPosiM(6), 0);
    EXPECT_EQ(array.GetItemPosiM(SL_DELETED_INT), 2);
    EXPECT_EQ(copy.getCurrentItemPrtConstM()[12], SL_DELETED_INT);

    IntArr all(20);
    all.SetAllSameValueM(3, true);
    all.AddItemM(4);
    EXPECT_EQ(all.GetItemPosiM(3), 2);
    EXPECT_EQ(all.GetAvailableNumM(), 21);

    Int4DArr wide(20);
    wide.ModifyItemM(8, 10, 1);
    wide.ChangeFirstValueM(3, 12);
    EXPECT_EQ(wide.GetItemPM(10)[0], SL_DELETED_INT);
    EXPECT_EQ(wide.GetItemPM(10)[1], 8);
    EXPECT_EQ(wide.GetAvailableNumM(), 1);

    Point3DArr points(20);
    EXPECT_EQ(points.IsPntAvailableM(15), TAG_UNUSED);
    points.getCurrentItemPrtM()[45] = 1.0F;
    EXPECT_EQ(points.IsPntAvailableM(15), TAG_AVAILABLE);
    Point3DArr holed(20);
    const float p[3] = {1, 2, 3};
    holed.SetItemM(p, 6);
    points.AppendPntsM(holed);
    EXPECT_EQ(points.GetBoundM(), 7);
    EXPECT_EQ(points.IsPntAvailableM(5), TAG_UNUSED);
}

TEST(SlotArrayDeathTest, ExhaustedMemoryStopsInsteadOfWritingThroughNull) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Int4DArr array;
            array.AddSizeM(INT_MAX);
        },
        "out of memory");
}

// IntArr

std::vector<int> contents(const IntArr &array) {
    const int *items = array.getCurrentItemPrtConstM();
    return {items, items + array.GetBoundM()};
}

IntArr arrayOf(const std::vector<int> &values) {
    IntArr array;
    for (const int value : values) {
        array.AddItemM(value);
    }
    return array;
}

TEST(IntArr, OutsideTheRangeReadsAsTheMarker) {
    IntArr array = arrayOf({5, 6});
    int out = 0;
    for (const int idx : {-1, 2, 3, 1000}) {
        EXPECT_EQ(array.GetItemM(&out, idx), 1);
        EXPECT_EQ(out, SL_DELETED_INT);
        EXPECT_EQ(array.GetItemPM(idx), nullptr);
    }
    array.SetItemM(7, 9);
    int idx = 0;
    EXPECT_EQ(array.GetNextM(&out, &idx, 1), 1);
    EXPECT_EQ(idx, 9);
    EXPECT_EQ(array.GetLastM(&out, &idx), 9) << "the slot, not 1";
    EXPECT_EQ(array.GetNextM(&out, &idx, INT_MAX), -1);
}

TEST(IntArr, CountsFindsAndReplacesFirstMatchOnly) {
    IntArr array = arrayOf({4, 8, 4, 4, 4});
    EXPECT_EQ(array.GetItemPosiM(4), 2);
    EXPECT_EQ(array.GetItemPosiM(8), 0);
    EXPECT_EQ(array.GetItemPosiM(1), -1);
    array.ChangeNodeIdxM(4, 9);
    EXPECT_EQ(contents(array), (std::vector<int>{9, 8, 4, 4, 4}));
    int idx = 0;
    EXPECT_EQ(array.FindItemM(4, &idx), 1);
    EXPECT_EQ(idx, 2);
    EXPECT_EQ(array.FindItemM(77, &idx), 0);
    EXPECT_EQ(idx, SL_DELETED_INT);
}

TEST(IntArr, PurgeDropsExactlyTheMarkersAndStaysOnTheHeap) {
    IntArr array = arrayOf({1, SL_DELETED_INT - 1, 3, 4, 5});
    array.DelItemM(0);
    array.DelItemM(3);
    const int available = array.GetAvailableNumM();
    array.PurgeDeletedItemM();
    EXPECT_EQ(contents(array), (std::vector<int>{SL_DELETED_INT - 1, 3, 5}));
    EXPECT_EQ(array.GetAvailableNumM(), available);
    EXPECT_EQ(array.GetLengthM(), 15);
    EXPECT_EQ(array.AddItemM(6), 3);
    EXPECT_EQ(array.GetAvailableNumM(), available + 1) << "vacated slots are empty again";
}

TEST(IntArr, SetAllTakesLiveSlotsOrTheWholeCapacity) {
    IntArr array = arrayOf({1, 2, 3, 4, 5});
    array.DelItemM(1);
    array.SetAllSameValueM(7, false);
    EXPECT_EQ(contents(array), (std::vector<int>{7, SL_DELETED_INT, 7, 7, 7}));
    EXPECT_EQ(array.GetAvailableNumM(), 4);
    array.SetAllSameValueM(1, true);
    EXPECT_EQ(array.GetBoundM(), 15);
    EXPECT_EQ(array.GetAvailableNumM(), 15);
}

TEST(IntArr, ClosedChainStartsElsewhereInEitherDirection) {
    const struct {
        int start;
        int dir;
        std::vector<int> expected;
    } cases[] = {
        {0, 1, {5, 6, 7, 8, 5}}, {2, 1, {7, 8, 5, 6, 7}}, {2, 0, {7, 6, 5, 8, 7}},
        {4, 1, {5, 6, 7, 8, 5}}, {0, 0, {5, 8, 7, 6, 5}}, {9, 1, {5, 6, 7, 8, 5}},
    };
    for (const auto &c : cases) {
        IntArr chain = arrayOf({5, 6, 7, 8, 5});
        chain.SetIncrementM(99);
        chain.ChangeArrangeM(c.start, c.dir);
        EXPECT_EQ(contents(chain), c.expected) << c.start << ' ' << c.dir;
    }
    IntArr chain = arrayOf({5, 6, 7, 8, 5});
    chain.ChangeArrangeM(2, 1);
    EXPECT_EQ(chain.GetLengthM(), 5);
    IntArr empty(9);
    empty.ChangeArrangeM(0, -1);
    EXPECT_EQ(empty.GetLengthM(), 4) << "threaded anew like any other";
}

TEST(IntArr, CombiningClosesTheHolesOfTheSource) {
    IntArr source = arrayOf({1, 2, 3, 4});
    source.DelItemM(1);
    IntArr imported = arrayOf({9});
    EXPECT_EQ(imported.ImportArrM(source), 3);
    EXPECT_EQ(contents(imported), (std::vector<int>{9, 1, 3, 4}));
    EXPECT_EQ(imported.GetLengthM(), 7) << "room is added also where there was room";
    IntArr merged = arrayOf({9, 8});
    EXPECT_EQ(merged.MergeM(source), 2);
    EXPECT_EQ(contents(merged), (std::vector<int>{9, 8, 1, 3, 4}));
    EXPECT_EQ(merged.GetLengthM(), 5) << "just enough";
}

TEST(IntArr, AscendingInsertionAndAbsentAppending) {
    IntArr array;
    EXPECT_EQ(array.AddItemByCompareM(20), 1);
    EXPECT_EQ(array.AddItemByCompareM(10), 1);
    EXPECT_EQ(array.AddItemByCompareM(30), 1);
    EXPECT_EQ(array.AddItemByCompareM(25), 1);
    EXPECT_EQ(contents(array), (std::vector<int>{10, 20, 25, 30}));
    for (const int slot : {0, 1, 2, 3}) {
        EXPECT_EQ(array.AddItemByCompareM(*array.GetItemPM(slot)), slot);
    }
    IntArr set;
    EXPECT_EQ(set.AddItemByCompare2M(5), 0);
    EXPECT_EQ(set.AddItemByCompare2M(3), 1);
    EXPECT_EQ(set.AddItemByCompare2M(5), 0);
    set.MergeByCompareM(arrayOf({3, 8, 8, 5, 1}));
    EXPECT_EQ(contents(set), (std::vector<int>{5, 3, 8, 1}));
    IntArr empty;
    empty.MergeByCompareM(arrayOf({8, 8}));
    EXPECT_EQ(contents(empty), (std::vector<int>{8, 8})) << "plain assignment";
}

// RealArr and CharArr

TEST(RealArr, FindsWithinTheToleranceAndTheNearest) {
    RealArr array;
    array.AddItemM(1.00005F);
    array.AddItemM(3.0F);
    array.AddItemM(1.0F);
    int idx = 0;
    EXPECT_EQ(array.FindItemM(1.0F, &idx), 1);
    EXPECT_EQ(idx, 0);
    EXPECT_EQ(array.FindItemM(1.001F, &idx), 0);
    EXPECT_EQ(array.GetItemPosiM(1.0F), 0) << "exact";
    EXPECT_EQ(array.FindNearItemM(2.0F, &idx), 1.00005F);
    array.DelItemM(0);
    EXPECT_EQ(array.FindNearItemM(2.0F, &idx), 3.0F) << "of equally near ones the lowest slot";
    EXPECT_EQ(idx, 1);
    EXPECT_EQ(RealArr().FindNearItemM(2.0F, &idx), -1e18F);
    EXPECT_EQ(idx, SL_DELETED_INT);
    RealArr limit;
    limit.AddItemM(0.0F);
    EXPECT_EQ(limit.FindItemM(0.0001F, &idx), 1) << "the limit is included";
}

TEST(RealArr, PurgeReturnsToTheInlineSlots) {
    RealArr array;
    for (int i = 0; i < 6; ++i) {
        array.AddItemM(static_cast<float>(i));
    }
    array.DelItemM(0);
    array.DelItemM(3);
    array.PurgeDeletedItemM();
    EXPECT_EQ(array.GetLengthM(), 4);
    EXPECT_EQ(array.GetBoundM(), 4);
    float out = 0;
    array.GetItemM(&out, 2);
    EXPECT_EQ(out, 4.0F);
}

TEST(RealArr, TakesRawFloatsFromABuffer) {
    const float values[3] = {1.5F, 2.5F, 3.5F};
    RealArr array;
    for (int i = 0; i < 9; ++i) {
        array.AddItemM(7.0F);
    }
    array.CopyFromBufferM(reinterpret_cast<const char *>(values), 14);
    EXPECT_EQ(array.GetBoundM(), 3);
    EXPECT_EQ(array.GetAvailableNumM(), 3);
    array.SetItemM(4.0F, 3);
    EXPECT_EQ(array.GetAvailableNumM(), 4) << "what stood behind is gone";
}

TEST(CharArr, HasTwoReadingsOfAByte) {
    CharArr array;
    for (const char c : {'a', '\0', static_cast<char>(0x80), 'b'}) {
        array.AddItemM(c);
    }
    EXPECT_EQ(array.GetAvailableNumM(0), 3) << "a walk sees every byte";
    array.DelItemM(2);
    EXPECT_EQ(array.GetAvailableNumM(), 4)
        << "a byte from 0x80 up is not live: nothing was deleted";
    EXPECT_EQ(*array.GetItemPM(2), static_cast<char>(0x80));
    array.SetItemM('c', 3);
    EXPECT_EQ(array.GetAvailableNumM(), 5) << "every store counts";
    array.PurgeDeletedItemM();
    EXPECT_EQ(array.GetBoundM(), 2);
    int idx = 0;
    EXPECT_EQ(array.FindItemM('c', &idx, 1), 1);
    EXPECT_EQ(array.FindItemM('a', &idx, 1), 0);
    EXPECT_EQ(idx, SL_DELETED_INT);
    CharArr sized;
    sized.InitialSizeM(4);
    EXPECT_EQ(sized.GetLengthM(), 8);
}

} // namespace
