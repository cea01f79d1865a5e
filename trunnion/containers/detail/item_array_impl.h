// The definitions of ItemArr, for the sources that instantiate it.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

#include "trunnion/containers/item_array.h"
#include "trunnion/persistence/detail/list_frame.h"
#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/stream.h"
#include "trunnion/platform/framework.h"

namespace trunnion::detail {

// True for a class of items that has pack and unpack, and says so itself: a class derived from it
// may have another record.
template <class T>
inline constexpr bool packsItself = requires {
    requires std::is_same_v<typename T::PackedItem, T>;
};

} // namespace trunnion::detail

template <class T>
ItemArr<T>::ItemArr(const ItemArr &other) : ItemArr() {
    *this = other;
}

template <class T>
ItemArr<T> &ItemArr<T>::operator=(const ItemArr &other) {
    if (this == &other) {
        return *this;
    }
    if (other.capacity > inlineSlots) {
        const long long slots = static_cast<long long>(other.capacity) + inlineSlots;
        T *block = allocate(slots);
        std::uninitialized_default_construct_n(block, slots);
        std::copy_n(other.heapItems, other.bound, block);
        DelAllM();
        heapItems = block;
        capacity = static_cast<int>(slots);
    } else {
        DelAllM();
        std::copy_n(other.inlineItems, other.bound, inlineItems);
    }
    available = other.available;
    bound = other.bound;
    increment = other.increment;
    return *this;
}

template <class T>
ItemArr<T>::~ItemArr() {
    releaseBlock();
    bound = 0;
    available = 0;
}

template <class T>
int ItemArr<T>::AddSizeM(int n) {
    if (n >= 1) {
        grow(n);
    }
    return 1;
}

template <class T>
void ItemArr<T>::SetItemM(const T &item, int idx) {
    if (idx < 0) {
        return;
    }
    if (idx >= capacity) {
        // The item may stand in the block that growth gives back.
        const T copy(item); // NOLINT(performance-unnecessary-copy-initialization)
        grow(std::max<long long>(capacity, idx + 1LL - capacity));
        SetItemM(copy, idx);
        return;
    }
    ++changeCount;
    rewriteCount += idx != bound ? 1 : 0;
    T &slot = storage()[idx];
    bound = std::max(bound, idx + 1);
    available += !isLive(slot) && isLive(item) ? 1 : 0;
    slot = item;
}

template <class T>
void ItemArr<T>::InsertItemM(const T &item, int idx) {
    if (idx < 0 || idx >= bound) {
        SetItemM(item, idx);
        return;
    }
    // The item may stand in a slot that moves.
    const T copy(item); // NOLINT(performance-unnecessary-copy-initialization)
    if (bound == capacity) {
        grow(increment);
    }
    T *slots = changedItems();
    std::destroy_at(slots + bound);
    relocate(slots + idx + 1, slots + idx, bound - idx);
    ::new (static_cast<void *>(slots + idx)) T(copy);
    ++bound;
    available += isLive(copy) ? 1 : 0;
}

template <class T>
void ItemArr<T>::DelItemM(int idx) {
    if (!holdsSlot(idx)) {
        return;
    }
    const bool isLast = idx == bound - 1;
    ++changeCount;
    rewriteCount += isLast ? 1 : 0;
    T &item = storage()[idx];
    if (isLive(item)) {
        item.DelItemM();
        --available;
        ++deletionCount;
    }
    bound -= isLast ? 1 : 0;
}

template <class T>
int ItemArr<T>::DelAllM() {
    noteChange();
    releaseBlock();
    // The inline items have stood still since the array left them, some of them live.
    for (T &item : inlineItems) {
        if (isLive(item)) {
            item.DelItemM();
        }
    }
    available = 0;
    bound = 0;
    increment = 10;
    return 1;
}

template <class T>
void ItemArr<T>::closeGaps() {
    T *slots = changedItems();
    int removed = 0;
    for (int i = 0; i < bound; ++i) {
        if (!isLive(slots[i])) {
            ++removed;
        } else if (removed > 0) {
            slots[i - removed] = slots[i];
            slots[i].DelItemM();
        }
    }
    bound -= removed;
}

template <class T>
void ItemArr<T>::closeGapsOrMoveInline() {
    const int oldBound = bound;
    closeGaps();
    if (oldBound > inlineSlots && bound <= inlineSlots) {
        std::copy_n(heapItems, inlineSlots, inlineItems);
        releaseBlock();
    }
}

// Memory for items that are not constructed yet, behind those that `block` holds. More of them than
// an int can number are asked for as more bytes than any heap has, so that both end in the one
// exception.
template <class T>
T *ItemArr<T>::allocate(long long slots, T *block, int held) {
    const std::size_t bytes =
        slots > INT_MAX ? SIZE_MAX : static_cast<std::size_t>(slots) * sizeof(T);
    return static_cast<T *>(trunnion::detail::frameworkReallocate(
        block, static_cast<std::size_t>(held) * sizeof(T), bytes));
}

// Moves items as raw memory; the ranges may overlap. The old places then hold bytes and no items:
// nothing is destroyed in them. This is sound for items that hold no pointer into themselves; so a
// block may be moved when it grows, too, instead of a constructor and a destructor, both virtual,
// for every item.
template <class T>
void ItemArr<T>::relocate(T *to, const T *from, int count) {
    std::memmove(static_cast<void *>(to), static_cast<const void *>(from),
                 static_cast<std::size_t>(count) * sizeof(T));
}

// The inline items are copied and stay: they live as long as the array does.
template <class T>
void ItemArr<T>::grow(long long slots) {
    const long long size = capacity + slots;
    heapItems = allocate(size, heapItems, capacity);
    if (capacity == inlineSlots) {
        std::uninitialized_copy_n(inlineItems, inlineSlots, heapItems);
    }
    std::uninitialized_default_construct_n(heapItems + capacity, slots);
    capacity = static_cast<int>(size);
    writerMayLive = false;
    ++changeCount;
}

// Destroys the heap items and returns to the inline ones as they stand.
template <class T>
void ItemArr<T>::releaseBlock() {
    if (capacity > inlineSlots) {
        std::destroy_n(heapItems, capacity);
        trunnion::detail::frameworkFree(heapItems);
        heapItems = nullptr;
        capacity = inlineSlots;
    }
    writerMayLive = false;
}

template <class T>
void ItemArr<T>::FmOutputOzkLstM(TqIOCL *stream, const char *name) const {
    if (stream->GetIoTypeM() == trunnion::detail::binaryStream) {
        stream->OutputDM(&bound);
        writeBinaryRecords(*stream);
        return;
    }
    trunnion::detail::ListFrameWriter frame(*stream, "%d, %s", name);
    frame.begin(bound);
    for (int i = 0; i < bound; ++i) {
        frame.index(i);
        items()[i].FmOutputOzkFileM(stream);
    }
    frame.end();
}

template <class T>
int ItemArr<T>::FmInputOzkLstM(TqIOCL *stream) {
    const bool isText = stream->GetIoTypeM() != trunnion::detail::binaryStream;
    // A text record takes at least the line of its slot number and the line of its tag, of which
    // the last may lack its end.
    constexpr int textRecordBytes = 3;
    int count = 0;
    stream->InputDM(&count);
    if (count >= 1) {
        trunnion::detail::StreamAccess::require(*stream, count,
                                                isText ? textRecordBytes : T::recordBytes);
        const int held = capacity;
        AddSizeM(count - held);
        std::for_each_n(changedItems(), held, [](T &item) {
            if (isLive(item)) {
                item.DelItemM();
            }
        });
        available = 0;
        bound = count;
    }
    if (!isText) {
        if (count >= 1) {
            readBinaryRecords(*stream);
        }
        return 1;
    }
    for (int i = 0; i < count; ++i) {
        int idx = 0;
        stream->InputDM(&idx);
        trunnion::detail::requireSlot(idx, count);
        readRecord(*stream, idx);
    }
    stream->SkipLineM();
    return 1;
}

// Whole records go straight between the items and the memory of the stream. A record that the
// memory cuts off, and any of a class that does not pack itself, goes through the operations of the
// stream.
template <class T>
void ItemArr<T>::writeBinaryRecords(TqIOCL &stream) const {
    const T *item = items();
    const T *const end = item + bound;
    while (item != end) {
        if constexpr (trunnion::detail::packsItself<T>) {
            const std::span<unsigned char> room = trunnion::detail::StreamAccess::claimRoom(
                stream, T::recordBytes, static_cast<int>(end - item));
            for (std::size_t at = 0; at < room.size(); at += T::recordBytes, ++item) {
                item->pack(room.data() + at);
            }
        }
        if (item != end) {
            item->FmOutputOzkFileM(&stream);
            ++item;
        }
    }
}

template <class T>
void ItemArr<T>::readBinaryRecords(TqIOCL &stream) {
    for (int idx = 0; idx < bound;) {
        if constexpr (trunnion::detail::packsItself<T>) {
            const std::span<const unsigned char> ready =
                trunnion::detail::StreamAccess::takeReady(stream, T::recordBytes, bound - idx);
            T *item = changedItems() + idx;
            int live = 0;
            for (std::size_t at = 0; at < ready.size(); at += T::recordBytes, ++item) {
                item->unpack(ready.data() + at);
                live += isLive(*item) ? 1 : 0;
            }
            available += live;
            idx += static_cast<int>(ready.size() / T::recordBytes);
        }
        if (idx < bound) {
            readRecord(stream, idx);
            ++idx;
        }
    }
}

// A slot is live before only if a damaged file names it twice: it must not count twice.
template <class T>
void ItemArr<T>::readRecord(TqIOCL &stream, int idx) {
    T &item = changedItems()[idx];
    available -= isLive(item) ? 1 : 0;
    try {
        item.FmInputOzkFileM(&stream);
    } catch (...) {
        if (isLive(item)) {
            item.DelItemM();
        }
        throw;
    }
    available += isLive(item) ? 1 : 0;
}
