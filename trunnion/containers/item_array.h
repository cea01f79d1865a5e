// ItemArr<T>: the array of items, base of NodeArr, TriangleArr, QuadArr and TqStringArr.
//
// Like a slot array it grows, deletes lazily and never moves an item by deleting, so that a slot's
// number is the item's identity. It differs in that its elements are objects derived from TqBaseCL:
// the tag of an item, and no value in it, says whether its slot is live, and a deleted item keeps
// what its class's DelItemM leaves.
//
// Four slots are part of the object, more stand in a block of the heap. Terms: `capacity`, the
// slots that exist, each of which holds a constructed item; `bound`, one past the highest slot in
// use; `available`, the live slots below the bound; a hole is a slot below the bound that is not
// live. No slot at or behind the bound is live, unless a host makes it so through a pointer or
// NodeArr::FmReadNodeLstM leaves it so.
//
// Operations that return an int return 1 unless they say otherwise. A slot number below 0 changes
// nothing. Pointers into the array live until it grows or is cleared. Growth takes memory from the
// framework, which throws CMemoryException * when it has none, also where more slots are wanted
// than an int can number; the array then keeps its old block and its content.
//
// T gives: a default constructor with the tag TAG_UNUSED, assignment that copies tag and content,
// DelItemM, the two stream operations of TqBaseCL, and recordBytes if its record is longer than the
// tag. A class whose record is a fixed run of bytes may name itself PackedItem and give pack and
// unpack, which move the run: its lists are then written and read much faster. Items must bear
// being moved as plain bytes: none may hold a pointer into itself.
//
// The definitions stand in detail/item_array_impl.h; they are instantiated beside each class that
// rests on them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "trunnion/containers/detail/slot_finder.h"
#include "trunnion/containers/item_base.h"
#include "trunnion/export.h"

class TqIOCL;

template <class T>
class TRUNNION_API ItemArr {
public:
    // Four inline slots, none in use.
    ItemArr() = default;
    // Slots, holes, counts and increment of `other`. If `other` has a block, the copy takes one of
    // four slots more; otherwise it is inline, whatever it was before.
    ItemArr(const ItemArr &other);
    ItemArr &operator=(const ItemArr &other);

    // Reads or writes the whole list through a stream. Every slot below the bound is written, live
    // or not, so that holes survive. Binary: the bound and the records. Text: a begin line with the
    // bound, for each slot a line with its number and the record, an end line; `name` stands in
    // these lines only, and automatic new line must be on.
    //
    // A read replaces the list and keeps block and increment; the live items are counted from the
    // tags that were read. A list without items leaves the array as it was. Throws the stream's
    // codes: 107 also for a bound that the file cannot hold, before memory is taken for it, and for
    // a slot number outside the list. What was read before a failure stays, except the record that
    // broke off, which is not live.
    virtual int FmInputOzkLstM(TqIOCL *stream);
    virtual void FmOutputOzkLstM(TqIOCL *stream, const char *name) const;
    virtual ~ItemArr();

    // Room for `n` more slots, exactly; n below 1 changes nothing. Linear in the capacity.
    int AddSizeM(int n);
    // Stores a copy into slot `idx`. Past the capacity the array grows to the larger of twice its
    // size and idx + 1; slots between the old bound and idx become holes. An item that is not live,
    // stored over a live one, leaves the number of live items too high by one. Amortised constant
    // time.
    void SetItemM(const T &item, int idx);
    // Appends behind the last slot, never into a hole; returns the slot.
    int AddItemM(const T &item) {
        SetItemM(item, bound);
        return bound - 1;
    }
    // Puts a new slot at `idx`: slots from idx up move one place up, holes too. A full array grows
    // by its increment, 10. At or past the bound the same as SetItemM.
    void InsertItemM(const T &item, int idx);
    // Deletes one slot: its item is deleted, and if it was the last one, live or not, the bound
    // falls by one, once. At or past the bound nothing happens.
    void DelItemM(int idx);
    // Deletes all, gives the block back and returns to the four inline slots. No slot is live
    // afterwards, the inline ones included; the increment is 10 again.
    int DelAllM();

    // Slots that exist now; 4 means that they stand in the object.
    int GetLengthM() const { return capacity; }
    // One past the highest slot in use: with holes it is more than the number of items.
    int GetBoundM() const { return bound; }
    // Number of live slots.
    int GetAvailableNumM() const { return available; }
    // The item in slot `idx`, deleted ones too; null outside 0 to bound - 1.
    const T *GetItemPM(int idx) const { return holdsSlot(idx) ? items() + idx : nullptr; }
    // The storage, inline or heap, capacity items long.
    const T *getCurrentItemPrtConstM() const { return items(); }
    // The same for writing. A write through it changes no count: a host that makes a slot live or
    // not live through it leaves the number of live items wrong.
    T *getCurrentItemPrtM() {
        writerMayLive = true;
        return changedItems();
    }

protected:
    static constexpr int inlineSlots = 4;

    static bool isLive(const T &item) { return item.IsAvailableM() == TAG_AVAILABLE; }
    bool holdsSlot(int idx) const { return idx >= 0 && idx < bound; }
    // False for a number that names no item at all, in use or not.
    bool hasSlot(int idx) const { return idx >= 0 && idx < capacity; }

    // The storage as the library reaches it: for reading, and for a change, which is noted.
    const T *items() const { return capacity == inlineSlots ? inlineItems : heapItems; }
    T *changedItems() {
        noteChange();
        return storage();
    }
    // Every change of an item or a count is counted, so that what is kept beside a list can tell
    // whether the list is still the one that it knows.
    void noteChange() {
        ++changeCount;
        ++rewriteCount;
    }

    trunnion::detail::ListState state() const {
        return {rewriteCount, deletionCount, writerMayLive, bound};
    }

    // Moves the live items down over the slots that are not live, in order, and lowers the bound to
    // their number; the slots that are left behind are deleted. The number of live items is not
    // touched.
    void closeGaps();
    // The same; a list that falls from 5 slots or more to 4 or fewer returns to its inline slots.
    void closeGapsOrMoveInline();

    T *heapItems = nullptr; // null while inline
    T inlineItems[inlineSlots];
    int capacity = inlineSlots;
    int bound = 0;
    int available = 0;
    int increment = 10; // growth step of insertion only

    // Changes so far; a writable pointer that is handed out counts as one. Rewrites are all of them
    // but two kinds, after which every slot that was live before is what it was or deleted: items
    // appended, and items deleted below the last slot.
    std::uint64_t changeCount = 0;
    std::uint64_t rewriteCount = 0;
    std::uint64_t deletionCount = 0; // calls of DelItemM that found a live item
    bool writerMayLive = false;      // a host may still hold a writable pointer to the storage

private:
    T *storage() { return capacity == inlineSlots ? inlineItems : heapItems; }

    static T *allocate(long long slots, T *block = nullptr, int held = 0);
    static void relocate(T *to, const T *from, int count);

    void grow(long long slots);
    void releaseBlock();
    void writeBinaryRecords(TqIOCL &stream) const;
    void readBinaryRecords(TqIOCL &stream);
    void readRecord(TqIOCL &stream, int idx);
};
