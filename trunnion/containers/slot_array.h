// The slot arrays of plain values: IntArr, RealArr, Int2DArr, Int3DArr, Int4DArr, Point2DArr,
// PixelArr. (CharArr stands in char_arr.h, Point3DArr in point3d_arr.h.)
//
// What they share, and the comment of every operation named by `using`, stands in
// detail/slot_storage.h and slot_kinds.h: a growable array with lazy deletion, in which deleting
// moves nothing. The classes are distinct: none converts to another.
//
// Walking: for (int r = a.GetFirstM(&value, &idx); r != -1; r = a.GetNextM(&value, &idx, idx)) ...
#pragma once

#include "trunnion/containers/detail/slot_finder.h"
#include "trunnion/containers/detail/slot_kinds.h"
#include "trunnion/containers/detail/value_slots.h"

// Integers. A slot is empty when it holds SL_DELETED_INT; -2147483648 is not live either.
class TRUNNION_API IntArr : private trunnion::detail::SingleSlots<trunnion::detail::IntSlots> {
    using Base = trunnion::detail::SingleSlots<trunnion::detail::IntSlots>;

public:
    IntArr() = default;
    // Room for `size` slots; below 5 the array stays inline.
    explicit IntArr(int size) : Base(size) {}
    IntArr(const IntArr &) = default;
    IntArr &operator=(const IntArr &) = default;
    virtual ~IntArr();

    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetItemPosiM;
    using Base::GetLastM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::PurgeDeletedItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    using Base::FmInputOzkLstM;
    // Reads the text form of a list from an open file. A list that breaks off, or a slot number
    // far outside the announced count, ends the reading; the array then holds what was read so far.
    // Nothing is thrown.
    void FmInputOzkLstM(std::FILE *file);

    // Unchecked access to a slot below the capacity; a write changes no count.
    int &operator[](int idx) {
        changes.noteWriter();
        markBlock();
        return *slotAt(idx);
    }
    int &ElementAtM(int idx) { return (*this)[idx]; }

    // First slot below the bound that equals `value`: 1 and its number, or 0 and SL_DELETED_INT.
    // Looks at empty slots too.
    int FindItemM(int value, int *idx) const;
    // Replaces the first slot below the bound that holds `oldValue`, and only that one. No match
    // changes nothing.
    void ChangeNodeIdxM(int oldValue, int newValue);
    // `all` false: every slot below the bound that is not deleted takes `value`. `all` true: every
    // slot up to the capacity does, and both counts become the capacity.
    void SetAllSameValueM(int value, bool all);
    // Re-threads a closed chain, whose last slot repeats its first, so that it starts at slot
    // `start`. `dir` 1 keeps the direction, anything else reverses it. The increment returns to 10
    // and the capacity becomes the larger of 4 and the bound. `start` 0 with `dir` 1, or a `start`
    // outside the array, changes nothing. The array must have no holes.
    void ChangeArrangeM(int start, int dir);

    // The inherited operation on an array of the same class.
    int ImportArrM(const IntArr &other) { return Base::ImportArrM(other); }
    // Appends the live items of `other`, holes closed, with a capacity just large enough. Returns
    // the slot of the first item appended, the old bound. `other` must be another array.
    int MergeM(const IntArr &other);
    // Keeps a strictly ascending array without holes ascending. Returns the slot of an equal item,
    // with no change, or 1 when the value was inserted. On an array that does not ascend the place
    // is arbitrary. Log n and a move.
    int AddItemByCompareM(int value);
    // Appends the value if no slot holds it. Returns the slot of the first equal one, or the new
    // one. Constant time on the average while nothing but appending happens in between, with an
    // index of 8 to 16 bytes a value; linear otherwise, and as long as a reference from operator[]
    // or a writable pointer may be in use.
    int AddItemByCompare2M(int value);
    // AddItemByCompare2M of every slot of `other`, in order; an empty array becomes a copy of
    // `other`. Both arrays must have no holes, and `other` must be another array.
    void MergeByCompareM(const IntArr &other);

private:
    trunnion::detail::SlotFinder<trunnion::detail::ValueSlots> finder;
};

// Floats. A slot is empty when it holds SL_DELETED_REAL.
class TRUNNION_API RealArr : private trunnion::detail::SingleSlots<trunnion::detail::RealSlots> {
    using Base = trunnion::detail::SingleSlots<trunnion::detail::RealSlots>;

public:
    RealArr() = default;
    explicit RealArr(int size) : Base(size) {}
    RealArr(const RealArr &) = default;
    RealArr &operator=(const RealArr &) = default;
    virtual ~RealArr();

    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetItemPosiM;
    using Base::GetLastM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::PurgeDeletedItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // The inherited operation on an array of the same class.
    int ImportArrM(const RealArr &other) { return Base::ImportArrM(other); }
    // First slot below the bound whose value differs from `value` by 0.0001 or less: 1 and its
    // number, or 0 and SL_DELETED_INT.
    int FindItemM(float value, int *idx) const;
    // The value nearest to `value` and its slot; of equally near ones the lowest slot. Empty slots
    // lose to any real value. On an array of bound 0: SL_DELETED_REAL and SL_DELETED_INT.
    float FindNearItemM(float value, int *idx) const;
    // Replaces the content by the floats in the `nbytes` raw bytes at `buf`; both counts become
    // their number. Bytes behind the last whole float are not taken.
    void CopyFromBufferM(const char *buf, int nbytes);

protected:
    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;
};

// Pairs of integers. The keyed operations take the second value as the key and the first as the
// data.
class TRUNNION_API Int2DArr : private trunnion::detail::KeyedSlots<trunnion::detail::Int2DSlots> {
    using Base = trunnion::detail::KeyedSlots<trunnion::detail::Int2DSlots>;

public:
    Int2DArr() = default;
    explicit Int2DArr(int size) : Base(size) {}
    Int2DArr(const Int2DArr &) = default;
    Int2DArr &operator=(const Int2DArr &) = default;
    virtual ~Int2DArr();

    using Base::AddInIdxLstM;
    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemInLstM;
    using Base::DelItemM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::getCurrentItemPrtConstM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // Bisection for `key` in a list that ascends by its second values. Found: 1 with the slot and
    // its first value. Not found: 0 with the neighbour, the last slot below `key` or slot 0 if
    // there is none below; this is the slot that AddInIdxLstM takes. On an empty array 0 with both
    // outputs SL_DELETED_INT.
    int FindIdxInLstM(int key, int *idx, int *value) const;
    // First slot whose value number `which` (0 or 1) equals `value`, empty slots too; `other`
    // receives the slot's other value. -1 and `other` untouched when there is none or `which` is
    // neither.
    int FindItemByValueM(int which, int value, int *other) const;

protected:
    using Base::getCurrentItemPrtM;
};

// Triples of integers, sorted and searched by their first value.
class TRUNNION_API Int3DArr : private trunnion::detail::SortedSlots<trunnion::detail::Int3DSlots> {
    using Base = trunnion::detail::SortedSlots<trunnion::detail::Int3DSlots>;

public:
    Int3DArr() = default;
    explicit Int3DArr(int size) : Base(size) {}
    Int3DArr(const Int3DArr &) = default;
    Int3DArr &operator=(const Int3DArr &) = default;
    virtual ~Int3DArr();

    using Base::AddInIdxLstM;
    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemInLstM;
    using Base::DelItemM;
    using Base::FindIdxInLstM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetLastM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::IsAvailableM;
    using Base::QuickSortM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // Scans for a value; `walk` is a start slot, a step and a value number. A step of 1 goes up to
    // the last slot, -1 down to slot 0; other steps go on while step times the slot number is at or
    // below 0. The first slot whose value number walk[2] equals `value` is the result, and `other`
    // receives its value 1 if the number is 0 and its value 0 otherwise. A walk down may start past
    // the last slot. -1 when there is none, for a start below 0 and for a value number outside 0 to
    // 2. Looks at empty slots too.
    int FindItemByValueM(const int *walk, int value, int *other) const;
    // First slot whose first two values equal key[0] and key[1], empty slots too, or -1.
    int FindItemByKey2M(const int *key) const;

protected:
    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;
};

// Quadruples of integers, sorted and searched by their first value.
class TRUNNION_API Int4DArr : private trunnion::detail::SortedSlots<trunnion::detail::Int4DSlots> {
    using Base = trunnion::detail::SortedSlots<trunnion::detail::Int4DSlots>;

public:
    Int4DArr() = default;
    explicit Int4DArr(int size) : Base(size) {}
    Int4DArr(const Int4DArr &) = default;
    Int4DArr &operator=(const Int4DArr &) = default;
    virtual ~Int4DArr();

    using Base::AddInIdxLstM;
    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemInLstM;
    using Base::DelItemM;
    using Base::FindIdxInLstM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::getCurrentItemPrtM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetLastM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::IsAvailableM;
    using Base::QuickSortM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // Writes value number `which` (0 to 3) of slot `idx`, which must lie below the capacity; no
    // count changes.
    int ModifyItemM(int value, int idx, int which);
    // Writes the first value of slot `idx` only and counts as SetItemM does. Past the capacity the
    // array grows by the increment, or, where that is not enough, by the increment more than what
    // is missing.
    int ChangeFirstValueM(int value, int idx);

protected:
    using Base::getCurrentItemPrtConstM;
};

// Points of the plane, x and y.
class TRUNNION_API Point2DArr
    : private trunnion::detail::ListedSlots<trunnion::detail::Point2DSlots> {
    using Base = trunnion::detail::ListedSlots<trunnion::detail::Point2DSlots>;

public:
    Point2DArr() = default;
    explicit Point2DArr(int size) : Base(size) {}
    Point2DArr(const Point2DArr &) = default;
    Point2DArr &operator=(const Point2DArr &) = default;
    virtual ~Point2DArr();

    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // Turning sense of the open chain of points: 0 when the sum of the cross products of neighbours
    // is above 0, else 1, also with fewer than three points. The closing edge and the last slot
    // take no part.
    int CheckCcwM();
    // Bounding ranges, minimum then maximum, of the slots whose x and y are both above -5e17.
    // Without one the ranges are 1e18, -1e18.
    void GetScopeM(float *xRange, float *yRange) const;
    // 1 if p lies inside or on the boundary of the polygon of all slots below the bound, empty ones
    // too, else 0; 0 with a bound below 4. The test is slPointInterFaceM, and this one is defined
    // beside it, among the sources of the geometry.
    int JudgePntInBoundM(const float *p) const;

protected:
    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;
};

// Quadruples of floats. They have no form on a stream.
class TRUNNION_API PixelArr : private trunnion::detail::SlotArray<trunnion::detail::PixelSlots> {
    using Base = trunnion::detail::SlotArray<trunnion::detail::PixelSlots>;

public:
    PixelArr() = default;
    explicit PixelArr(int size) : Base(size) {}
    PixelArr(const PixelArr &) = default;
    PixelArr &operator=(const PixelArr &) = default;
    virtual ~PixelArr();

    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelItemM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InsertItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

protected:
    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;
};
