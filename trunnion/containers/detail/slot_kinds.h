// The kinds of slot arrays beyond the storage that all nine share: those with a form on a stream,
// those of single values, and the keyed and the sorted tuples of integers.
#pragma once

#include "trunnion/containers/detail/slot_storage.h"

class TqIOCL;

namespace trunnion::detail {

// All classes but PixelArr: whole lists on streams.
template <class Slots>
class TRUNNION_API ListedSlots : public SlotArray<Slots> {
    using Base = SlotArray<Slots>;

public:
    using Value = typename Base::Value;

    // Reads or writes the whole list through a stream, in its text or binary form. A read over an
    // array that holds something replaces its counts and the slots that the file sets. Throws the
    // stream's codes: 107 also for counts or slot numbers that the file cannot hold, before memory
    // is taken for them. `name` stands in the tag lines of the text form only.
    void FmInputOzkLstM(TqIOCL *stream);
    void FmOutputOzkLstM(TqIOCL *stream, const char *name) const;

protected:
    using Base::Base;
    using Base::bound;
    using Base::slotAt;

private:
    void readBinary(TqIOCL &stream);
    void readText(TqIOCL &stream);
    void readPlainText(TqIOCL &stream, int count);
    void readIndexedText(TqIOCL &stream, int count);
    void writeText(TqIOCL &stream, const char *name) const;
};

// IntArr, RealArr, CharArr: one value in a slot.
template <class Slots>
class TRUNNION_API SingleSlots : public ListedSlots<Slots> {
    using Base = ListedSlots<Slots>;

public:
    using Value = typename Base::Value;

    // How often `value` stands below the bound, by exact comparison: -1 for never, 0 for once, 1
    // for twice, 2 for more often. It locates nothing.
    int GetItemPosiM(Value value) const;
    // Appends the live items of `other`, in order, holes closed, behind this array's bound. The
    // capacity rises by the number of items taken, which is the result, even if there was room.
    // `other` must be another array.
    int ImportArrM(const SingleSlots &other);

protected:
    using Base::Base;
    using Base::bound;
    using Base::slotAt;
};

// Int2DArr, Int3DArr, Int4DArr: lists that are kept in the order of a key, the second value.
template <class Slots>
class TRUNNION_API KeyedSlots : public ListedSlots<Slots> {
    using Base = ListedSlots<Slots>;

public:
    using Base::width;
    using Value = typename Base::Value;

    // Puts a new slot with `value` first and `key` second, further values 0, behind slot `idx`, or
    // at `idx` itself when the key there is above `key`. On an empty array it goes to slot 0.
    int AddInIdxLstM(int idx, int key, int value);
    // Removes slot `idx` and closes the gap; both counts fall by one. At or past the bound nothing
    // happens.
    int DelItemInLstM(int idx);

protected:
    using Base::available;
    using Base::Base;
    using Base::bound;
    using Base::slotAt;
};

// Int3DArr, Int4DArr: operations on the first value.
template <class Slots>
class TRUNNION_API SortedSlots : public KeyedSlots<Slots> {
    using Base = KeyedSlots<Slots>;

public:
    using Base::width;

    // Slot with the first value `key` in a list that ascends by it, by bisection, or
    // SL_DELETED_INT.
    int FindIdxInLstM(int key) const;
    // TAG_AVAILABLE for a live slot, TAG_UNUSED for an empty one and outside 0 to bound - 1.
    int IsAvailableM(int idx) const {
        return idx >= 0 && idx < bound && Base::isLive(*slotAt(idx)) ? TAG_AVAILABLE : TAG_UNUSED;
    }
    // Sorts the slots below the bound by first value, ascending; empty slots go to the front. Not
    // stable: equal first values end up in the order of the quicksort told in slot_sort_impl.h.
    // Time n log n also with many equal keys, stack log n.
    void QuickSortM();

protected:
    using Base::Base;
    using Base::bound;
    using Base::slotAt;
};

TRUNNION_EXTERN_TEMPLATE(class SlotArray<IntSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<RealSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<CharSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<Int2DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<Int3DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<Int4DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<Point2DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<Point3DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SlotArray<PixelSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<IntSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<RealSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<CharSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<Int2DSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<Int3DSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<Int4DSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<Point2DSlots>);
TRUNNION_EXTERN_TEMPLATE(class ListedSlots<Point3DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SingleSlots<IntSlots>);
TRUNNION_EXTERN_TEMPLATE(class SingleSlots<RealSlots>);
TRUNNION_EXTERN_TEMPLATE(class SingleSlots<CharSlots>);
TRUNNION_EXTERN_TEMPLATE(class KeyedSlots<Int2DSlots>);
TRUNNION_EXTERN_TEMPLATE(class KeyedSlots<Int3DSlots>);
TRUNNION_EXTERN_TEMPLATE(class KeyedSlots<Int4DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SortedSlots<Int3DSlots>);
TRUNNION_EXTERN_TEMPLATE(class SortedSlots<Int4DSlots>);

} // namespace trunnion::detail
