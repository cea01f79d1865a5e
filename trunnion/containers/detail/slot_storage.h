// detail::SlotArray: the one behaviour of the nine slot arrays.
//
// A growable array of plain values with lazy deletion: deleting moves nothing, so a slot's number
// is its identity. The nine classes inherit privately and name the operations that are theirs; what
// differs between them stands in slot_facts.h.
//
// Four slots are part of the object, more stand in a block of the heap. Terms: `capacity`, the
// slots that exist; `bound`, one past the highest slot in use; `available`, the live slots below
// the bound; a hole is a slot below the bound that is not live. Slots at or behind the bound hold
// the marker (or a dead value that was deleted), for whoever looks; but fresh memory is dear, so
// those from `marked` on are raw until a pointer or reference through which a host could see them
// is handed out.
//
// Shared rules. A slot has one to four values and the first decides whether it is live; a slot of
// several values is passed by the address of its first, and deleting it writes the marker into the
// first only. Operations return 1 unless they say otherwise. A slot number below 0 reads as the
// marker and changes nothing where a slot would be written. Pointers into the array live until it
// grows or is cleared.
//
// Memory: when the heap is exhausted the array cannot hold what it was given, and no operation has
// a result for that. The process then stops through std::abort with one line on standard error,
// after the error hook was called: nothing is written through a null pointer, and nothing goes on
// as if the value were stored.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "trunnion/containers/detail/slot_facts.h"
#include "trunnion/export.h"

namespace trunnion::detail {

// `block` (null for a new one) resized to `slots` slots. Stops the process, as told above, when
// that cannot be had.
TRUNNION_API void *resizeBlock(void *block, long long slots, std::size_t slotBytes);

// What an index beside an array has to know of it, in the classes that have one.
struct SlotChanges {
    std::uint64_t rewrites = 0; // changes but for appending
    bool writerMayLive = false; // a host may still hold a pointer or reference that can write

    void noteRewrite() { ++rewrites; }
    void noteWriter() {
        ++rewrites;
        writerMayLive = true;
    }
    // A pointer lives until the array grows or is cleared.
    void noteEndOfPointers() { writerMayLive = false; }
};
struct NoSlotChanges {
    void noteRewrite() {}
    void noteWriter() {}
    void noteEndOfPointers() {}
};

template <class Slots>
class TRUNNION_API SlotArray {
public:
    using Value = typename Slots::Value;
    static constexpr int width = Slots::width;
    // A slot as an argument: the value itself, or the address of the first of several.
    using Argument = std::conditional_t<width == 1, Value, const Value *>;

    // Room for `n` more slots, exactly; n below 1 changes nothing. Linear in the capacity.
    int AddSizeM(int n);
    // Raises the capacity to exactly `n` if it is lower (in CharArr to the next multiple of 8). The
    // bound stays.
    int InitialSizeM(int n) {
        constexpr long long multiple = Slots::sizeMultiple;
        const long long size = (n + multiple - 1) / multiple * multiple;
        return AddSizeM(static_cast<int>(std::min<long long>(size - capacity, INT_MAX)));
    }
    // Growth step of the stores; `n` below 1 keeps the old one.
    int SetIncrementM(int n) {
        increment = n > 0 ? n : increment;
        return 1;
    }
    // Slots that exist now.
    int GetLengthM() const { return capacity; }
    // One past the highest slot in use: with holes it is more than the number of items.
    int GetBoundM() const { return bound; }
    // Number of live slots.
    int GetAvailableNumM() const { return available; }
    // Number of live slots strictly behind `idx`, counted by a scan.
    int GetAvailableNumM(int idx);

    // Stores into slot `idx`. Past the capacity the array grows to the larger of twice its size and
    // idx + 1 + increment; slots between the old bound and idx become holes. Amortised constant
    // time.
    int SetItemM(Argument value, int idx) {
        const auto at = static_cast<unsigned int>(idx);
        if (at < static_cast<unsigned int>(bound)) {
            changes.noteRewrite();
        } else if (at < static_cast<unsigned int>(marked)) {
            bound = idx + 1;
        } else if (idx == marked && idx < capacity) {
            appendToBlock(value);
            return 1;
        } else {
            return setFarBehind(value, idx);
        }
        Value *slot = storageByBranch() + static_cast<std::size_t>(at) * width;
        available += countsAsNew(*slot) ? 1 : 0;
        writeSlot(slot, value);
        return 1;
    }
    // Appends behind the last slot, never into a hole; returns the slot.
    int AddItemM(Argument value) {
        SetItemM(value, bound);
        return bound - 1;
    }
    // Puts a new slot at `idx`: slots from idx up move one place up, holes too. At or past the
    // bound the same as SetItemM.
    int InsertItemM(Argument value, int idx);
    // Deletes one slot: it becomes a hole, and if it was the last one the bound falls by one, once.
    // At or past the bound nothing happens.
    int DelItemM(int idx) {
        const auto at = static_cast<unsigned int>(idx);
        if (at >= static_cast<unsigned int>(bound)) {
            return 1;
        }
        changes.noteRewrite();
        Value &first = storageByBranch()[static_cast<std::size_t>(at) * width];
        if (isLive(first)) {
            first = Slots::marker;
            --available;
        }
        if (idx == bound - 1) {
            bound = idx;
        }
        return 1;
    }
    // Clears, gives the block back and returns to the four inline slots. The increment stays.
    int DelAllM();
    // Clears and keeps the block.
    typename Slots::ClearResult DelAllVirtualM();
    // Closes the holes: live slots move down in order, the bound becomes their number. The number
    // of available items is not touched. Slot numbers behind the first hole change.
    void PurgeDeletedItemM();

    // Slot `idx`, deleted ones too. Outside 0 to bound - 1 the marker is stored; returns 1 then as
    // well (0 in Int2DArr).
    int GetItemM(Value *out, int idx) const {
        if (idx < 0 || idx >= bound) {
            std::fill_n(out, Slots::outsideFill, Slots::marker);
            return Slots::outsideResult;
        }
        std::copy_n(slotAt(idx), width, out);
        return 1;
    }
    // Address of slot `idx`, deleted ones too. Outside 0 to bound - 1 null in IntArr, Int2DArr and
    // Point2DArr; the others do not look at the number.
    const Value *GetItemPM(int idx) const {
        if constexpr (Slots::checkedPointer) {
            if (idx < 0 || idx >= bound) {
                return nullptr;
            }
        } else if (idx >= marked) {
            markBlock();
        }
        return slotAt(idx);
    }
    // The storage, inline or heap. A write through it changes no count.
    Value *getCurrentItemPrtM() {
        changes.noteWriter();
        markBlock();
        return storage();
    }
    const Value *getCurrentItemPrtConstM() const {
        markBlock();
        return data();
    }

    // First live slot: GetNextM(value, idx, -1).
    int GetFirstM(Value *value, int *idx) const { return GetNextM(value, idx, -1); }
    // First live slot behind `after`: stores its value and number and returns 1. At the end the
    // marker and SL_DELETED_INT are stored and the result is -1.
    int GetNextM(Value *value, int *idx, int after) const {
        const auto end = static_cast<unsigned int>(bound);
        unsigned int slot = static_cast<unsigned int>(after) + 1U;
        if (slot > end) { // foreseen, where a clamp would be waited for
            slot = after < 0 ? 0U : end;
        }
        for (; slot < end; ++slot) {
            if (isMixed() && end - slot > walkAhead) {
                slot = firstSeen(slot);
            }
            const Value *held = data() + static_cast<std::size_t>(slot) * width;
            if (walkSees(*held)) {
                std::copy_n(held, width, value);
                *idx = static_cast<int>(slot);
                return 1;
            }
        }
        std::fill_n(value, Slots::endFill, Slots::marker);
        *idx = SL_DELETED_INT;
        return -1;
    }
    // Last live slot. Returns its number in IntArr, RealArr and CharArr, 1 in the others; with
    // none, outputs and result as for GetNextM.
    int GetLastM(Value *value, int *idx) const;

protected:
    SlotArray() { markAll(inlineItems, inlineSlots); }
    // A block of exactly `size` slots, all empty; below 5 the array stays inline.
    explicit SlotArray(int size) : SlotArray() {
        if (size > inlineSlots) {
            AddSizeM(size - inlineSlots);
        }
    }
    SlotArray(const SlotArray &other) : SlotArray() { *this = other; }
    // Slots, holes, counts, increment and capacity of `other`.
    SlotArray &operator=(const SlotArray &other);
    ~SlotArray() { release(); }

    static constexpr int inlineSlots = 4;

    // The slot at `values` as an argument.
    static Argument asArgument(const Value *values) {
        if constexpr (width == 1) {
            return *values;
        } else {
            return values;
        }
    }

    static bool isLive(Value first) { return first > Slots::liveAbove; }
    static bool walkSees(Value first) { return !Slots::walkSkipsEmpty || isLive(first); }

    // For reading, and for a change, which is noted.
    Value *data() {
        changes.noteRewrite();
        return storage();
    }
    const Value *data() const { return heapItems == nullptr ? inlineItems : heapItems; }
    const Value *slotAt(int idx) const { return data() + static_cast<std::ptrdiff_t>(idx) * width; }
    Value *slotAt(int idx) { return data() + static_cast<std::ptrdiff_t>(idx) * width; }

    static void markAll(Value *first, int slots) {
        std::fill_n(first, static_cast<std::ptrdiff_t>(slots) * width, Slots::marker);
    }
    // Marks slots `from` up to `to` as empty, touching the first value of each only.
    void markEmpty(int from, int to);
    // Brings the markers up to slot `to`, or to the end of the block, where they are not yet.
    void markUpTo(int to) const;
    void markBlock() const {
        if (marked < capacity) {
            markUpTo(capacity);
        }
    }
    // Slots below `to`, within the capacity, get no marker any more: the caller writes them.
    void claim(int to) { marked = std::max(marked, to); }
    // Takes counts that came from elsewhere; slots that fall out of use become empty again.
    void setCounts(int newBound, int newAvailable);

    Value *heapItems = nullptr; // null while inline: one load tells where the slots stand
    Value inlineItems[inlineSlots * width];
    int capacity = inlineSlots;
    int bound = 0;
    int available = 0;
    int increment = 10;
    // From the bound to the capacity, and the same as the capacity while that is four. Reading may
    // bring it up: nothing that can be observed changes.
    mutable int marked = inlineSlots;
    [[no_unique_address]] std::conditional_t<Slots::isSearched, SlotChanges, NoSlotChanges> changes;

private:
    Value *storage() { return heapItems == nullptr ? inlineItems : heapItems; }
    // The same for stores to slots far apart. How many of them are under way at once depends on how
    // few instructions each takes: a foreseen branch, which the empty statement keeps one, is
    // shorter than a choice.
    Value *storageByBranch() {
        Value *items = heapItems;
        if (items == nullptr) {
#if defined(__GNUC__)
            asm("");
#endif
            items = inlineItems;
        }
        return items;
    }
    static bool countsAsNew(Value held) {
        if constexpr (Slots::newItemRule == NewItemRule::heldMarker) {
            return held == Slots::marker;
        } else if constexpr (Slots::newItemRule == NewItemRule::heldBelowLimit) {
            return held < Slots::newItemLimit;
        } else if constexpr (Slots::newItemRule == NewItemRule::heldNotAbove) {
            return !(held > Slots::newItemLimit);
        } else {
            return true;
        }
    }
    static void writeSlot(Value *slot, Argument value) {
        if constexpr (width == 1) {
            *slot = value;
        } else {
            std::copy_n(value, width, slot);
        }
    }
    // The slot at `marked`, which stands in the block, becomes the last one.
    void appendToBlock(Argument value) {
        writeSlot(heapItems + static_cast<std::ptrdiff_t>(marked) * width, value);
        bound = ++marked;
        ++available;
    }
    // Whether holes and items may alternate in a way that no processor foresees.
    bool isMixed() const {
        return Slots::walkSkipsEmpty && available > bound / 4 && available < bound - bound / 4;
    }
    // The first of the four slots from `slot` on that a walk sees, or the one behind them. A walk
    // waits for this from item to item: it takes a load, a comparison and four moves.
    static constexpr unsigned int walkAhead = 4;
    unsigned int firstSeen(unsigned int slot) const {
        constexpr std::size_t step = width;
        const Value *held = data() + slot * step;
        unsigned int seen = slot + walkAhead;
        seen = chooseByMove(walkSees(held[3 * step]), slot + 3, seen);
        seen = chooseByMove(walkSees(held[2 * step]), slot + 2, seen);
        seen = chooseByMove(walkSees(held[step]), slot + 1, seen);
        seen = chooseByMove(walkSees(held[0]), slot, seen);
        return seen;
    }
    // `a` if `condition` holds, else `b`. The empty statements hide both and the result from the
    // compiler, which would make a branch of the choice.
    static unsigned int chooseByMove(bool condition, unsigned int a, unsigned int b) {
#if defined(__GNUC__)
        asm("" : "+r"(a), "+r"(b));
        unsigned int chosen = condition ? a : b;
        asm("" : "+r"(chosen));
        return chosen;
#else
        return condition ? a : b;
#endif
    }
    int setFarBehind(Argument value, int idx);
    int setBehindCapacity(Argument value, int idx);
    void release();
    bool purgeKeeps(Value first) const {
        return Slots::purgeDropsMarkerOnly ? first != Slots::marker : isLive(first);
    }
    void moveInline();
};

} // namespace trunnion::detail
