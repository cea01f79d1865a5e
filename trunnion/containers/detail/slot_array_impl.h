// Definitions of detail::SlotArray's operations that are not inline. Included by slot_array.cpp
// alone, which instantiates the nine classes; lists on streams and the sort have files of their
// own.
#pragma once

#include <algorithm>
#include <climits>

#include "trunnion/containers/detail/slot_kinds.h"

namespace trunnion::detail {

template <class Slots>
void SlotArray<Slots>::release() {
    changes.noteRewrite();
    changes.noteEndOfPointers();
    if (capacity > inlineSlots) {
        slFree(heapItems);
    }
    heapItems = nullptr;
    capacity = inlineSlots;
    marked = inlineSlots;
    bound = 0;
    available = 0;
}

template <class Slots>
SlotArray<Slots> &SlotArray<Slots>::operator=(const SlotArray &other) {
    if (this == &other) {
        return *this;
    }
    changes.noteRewrite();
    if (capacity != other.capacity) {
        release();
        if (other.capacity > inlineSlots) {
            heapItems =
                static_cast<Value *>(resizeBlock(nullptr, other.capacity, sizeof(Value) * width));
        }
    }
    capacity = other.capacity;
    marked = other.marked;
    bound = other.bound;
    available = other.available;
    increment = other.increment;
    std::copy_n(other.inlineItems, inlineSlots * width, inlineItems);
    if (capacity > inlineSlots) {
        std::copy_n(other.heapItems, static_cast<std::ptrdiff_t>(marked) * width, heapItems);
    }
    return *this;
}

template <class Slots>
int SlotArray<Slots>::AddSizeM(int n) {
    if (n < 1) {
        return 1;
    }
    const bool wasInline = capacity == inlineSlots;
    const long long grown = static_cast<long long>(capacity) + n;
    auto *block = static_cast<Value *>(
        resizeBlock(wasInline ? nullptr : heapItems, grown, sizeof(Value) * width));
    if (wasInline) {
        std::copy_n(inlineItems, inlineSlots * width, block);
    }
    heapItems = block;
    capacity = static_cast<int>(grown);
    if (!Slots::marksLate) {
        markBlock();
    }
    changes.noteEndOfPointers();
    return 1;
}

// A slot below 0 or, with some left between, behind those that are marked.
template <class Slots>
int SlotArray<Slots>::setFarBehind(Argument value, int idx) {
    if (idx < 0) {
        return 1;
    }
    if (idx >= capacity) {
        return setBehindCapacity(value, idx);
    }
    markUpTo(idx);
    appendToBlock(value);
    return 1;
}

template <class Slots>
int SlotArray<Slots>::setBehindCapacity(Argument value, int idx) {
    const long long missing = static_cast<long long>(increment) + idx + 1 - capacity;
    const int growth =
        static_cast<int>(std::min<long long>(INT_MAX, std::max<long long>(capacity, missing)));
    if constexpr (width == 1) {
        AddSizeM(growth);
        return SetItemM(value, idx);
    } else {
        Value kept[width]; // the argument may point into the block that is about to move
        std::copy_n(value, width, kept);
        AddSizeM(growth);
        return SetItemM(kept, idx);
    }
}

template <class Slots>
int SlotArray<Slots>::InsertItemM(Argument value, int idx) {
    if (idx < 0 || idx >= bound) {
        return SetItemM(value, idx);
    }
    Value kept[width]; // the argument may point into the slots that are about to move
    writeSlot(kept, value);
    if (bound == capacity) {
        SetItemM(value, bound);
    } else {
        ++bound;
        ++available;
        claim(bound);
    }
    Value *slot = slotAt(idx);
    std::copy_backward(slot, slotAt(bound - 1), slotAt(bound));
    std::copy_n(kept, width, slot);
    return 1;
}

template <class Slots>
int SlotArray<Slots>::DelAllM() {
    release();
    markAll(inlineItems, inlineSlots);
    return 1;
}

template <class Slots>
typename Slots::ClearResult SlotArray<Slots>::DelAllVirtualM() {
    changes.noteRewrite();
    markEmpty(0, Slots::clearsWholeBlock ? marked : bound);
    if constexpr (Slots::clearsWholeBlock) {
        markAll(inlineItems, inlineSlots);
    }
    bound = 0;
    available = 0;
    return static_cast<typename Slots::ClearResult>(1);
}

template <class Slots>
void SlotArray<Slots>::markEmpty(int from, int to) {
    for (int i = from; i < to; ++i) {
        *slotAt(i) = Slots::marker;
    }
}

template <class Slots>
void SlotArray<Slots>::markUpTo(int to) const {
    if (marked < to) {
        markAll(heapItems + static_cast<std::ptrdiff_t>(marked) * width, to - marked);
        marked = to;
    }
}

template <class Slots>
void SlotArray<Slots>::setCounts(int newBound, int newAvailable) {
    changes.noteRewrite();
    markEmpty(newBound, bound);
    markUpTo(newBound);
    bound = newBound;
    available = newAvailable;
}

template <class Slots>
void SlotArray<Slots>::PurgeDeletedItemM() {
    Value *to = data();
    const Value *end = slotAt(bound);
    for (const Value *from = to; from != end; from += width) {
        // Every slot is copied, so that no branch has to be foreseen.
        const bool keeps = purgeKeeps(*from);
        std::copy_n(from, width, to);
        to += keeps ? width : 0;
    }
    const auto kept = static_cast<int>((to - data()) / width);
    markAll(to, bound - kept);
    const bool fitsInline = bound > inlineSlots && kept <= inlineSlots;
    bound = kept;
    if (Slots::purgeReturnsInline && fitsInline) {
        moveInline();
    }
}

// Brings an array in heap mode whose bound is at most four back to the inline slots.
template <class Slots>
void SlotArray<Slots>::moveInline() {
    std::copy_n(heapItems, inlineSlots * width, inlineItems);
    slFree(heapItems);
    heapItems = nullptr;
    capacity = inlineSlots;
    marked = inlineSlots;
}

template <class Slots>
int SlotArray<Slots>::GetAvailableNumM(int idx) {
    int count = 0;
    for (int i = std::clamp(idx, -1, bound - 1) + 1; i < bound; ++i) {
        count += walkSees(*slotAt(i)) ? 1 : 0;
    }
    return count;
}

template <class Slots>
int SlotArray<Slots>::GetLastM(Value *value, int *idx) const {
    for (int i = bound - 1; i >= 0; --i) {
        if (walkSees(*slotAt(i))) {
            std::copy_n(slotAt(i), width, value);
            *idx = i;
            return Slots::lastGivesSlot ? i : 1;
        }
    }
    std::fill_n(value, Slots::endFill, Slots::marker);
    *idx = SL_DELETED_INT;
    return -1;
}

template <class Slots>
int SingleSlots<Slots>::GetItemPosiM(Value value) const {
    int matches = 0;
    for (int i = 0; i < bound && matches < 3; ++i) {
        matches += *slotAt(i) == value ? 1 : 0;
    }
    return matches - 1;
}

template <class Slots>
int SingleSlots<Slots>::ImportArrM(const SingleSlots &other) {
    const int taken = other.available;
    const int end = other.bound;
    // A count of live slots above the bound has come from a damaged file, or in CharArr from stores
    // over slots in use: only there may it cost memory, and not much.
    constexpr int mostStoredOver = Slots::walkSkipsEmpty ? 0 : 1 << 24;
    this->AddSizeM(std::min(taken, std::max(end, mostStoredOver)));
    for (int i = 0; i < end; ++i) {
        const Value held = *other.slotAt(i);
        if (Base::walkSees(held)) {
            this->SetItemM(held, bound);
        }
    }
    return taken;
}

template <class Slots>
int KeyedSlots<Slots>::AddInIdxLstM(int idx, int key, int value) {
    const Value slot[width] = {value, key};
    if (bound == 0) {
        this->AddItemM(slot);
        return 1;
    }
    const int beside = std::clamp(idx, 0, bound - 1);
    return this->InsertItemM(slot, slotAt(beside)[1] > key ? beside : beside + 1);
}

template <class Slots>
int KeyedSlots<Slots>::DelItemInLstM(int idx) {
    if (idx < 0 || idx >= bound) {
        return 1;
    }
    std::copy(slotAt(idx + 1), slotAt(bound), slotAt(idx));
    std::fill_n(slotAt(bound - 1), 2, Slots::marker);
    --bound;
    --available;
    return 1;
}

template <class Slots>
int SortedSlots<Slots>::FindIdxInLstM(int key) const {
    if (bound == 0) {
        return SL_DELETED_INT;
    }
    int low = 0;
    int high = bound - 1;
    while (high - low > 1) {
        const int mid = (high + low) / 2;
        const int held = *slotAt(mid);
        if (held == key) {
            return mid;
        }
        (held < key ? low : high) = mid;
    }
    if (*slotAt(low) == key) {
        return low;
    }
    return *slotAt(high) == key ? high : SL_DELETED_INT;
}

} // namespace trunnion::detail
