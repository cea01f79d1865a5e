// The search of a list for the lowest slot with some key, by an index beside the list where that
// pays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

namespace trunnion::detail {

// A list as an index beside it sees it.
struct ListState {
    // Changes so far, but for appending and for deletions that are counted apart.
    std::uint64_t rewrites;
    std::uint64_t deletions; // of items below the last slot
    bool writerMayLive;      // a host may hold a writable pointer or reference
    int bound;
};

// The searches of one list. The index only proposes slots and the list compares, so that the answer
// is that of a scan in ascending order. It is used as long as it describes the list, which
// appending leaves true; otherwise the list is scanned, and where scans have cost as much as a new
// index would, it is built anew. While a host may hold a writable pointer every search is a scan.
//
// An index is no part of the list's value: a copy of the list starts without one, and memory that
// cannot be had costs the index and nothing else.
//
// `Index` gives: seen(), the slots that it knows; enter(bound, keyAt), which takes the slots behind
// them; isComplete(), false if it does not outlive deletions; lowest(key, matches), the lowest slot
// with the key that passes matches(slot), or -1.
template <class Index>
class SlotFinder {
public:
    SlotFinder() = default;
    SlotFinder(const SlotFinder & /*other*/) {}
    // Nothing to do: an assignment counts as a rewrite of the list.
    SlotFinder &
    operator=(const SlotFinder & /*other*/) { // NOLINT(bugprone-unhandled-self-assignment)
        return *this;
    }
    ~SlotFinder() = default;

    // The lowest slot below the bound that passes `matches(slot)`, or -1. `keyAt(slot)` gives the
    // key of a slot in the form that the index takes.
    template <class Key, class KeyAt, class Matches>
    int lowest(const ListState &list, Key key, KeyAt keyAt, Matches matches) {
        if (!isCurrent(list) && !prepare(list, keyAt)) {
            return scan(list.bound, matches);
        }
        return index.lowest(key, matches);
    }

    // The same by visiting every slot.
    template <class Matches>
    int scan(int bound, Matches matches) {
        int slot = 0;
        while (slot < bound && !matches(slot)) {
            ++slot;
        }
        scanned += static_cast<std::size_t>(slot);
        return slot < bound ? slot : -1;
    }

    // The index as it is, built or not; and gives its memory back.
    const Index &current() const { return index; }
    void drop() {
        if (isBuilt) {
            forget();
        }
    }

private:
    static constexpr int smallestList = 32;     // a scan of fewer slots is as fast
    static constexpr std::size_t entryCost = 8; // of a slot, in slots scanned

    // Whether the index describes the list as it is, up to the last slot.
    bool isCurrent(const ListState &list) const {
        return isBuilt && rewrites == list.rewrites && index.seen() == list.bound &&
               !list.writerMayLive && (index.isComplete() || deletions == list.deletions);
    }
    bool describes(const ListState &list) const {
        return isBuilt && rewrites == list.rewrites && index.seen() <= list.bound &&
               (index.isComplete() || deletions == list.deletions);
    }

    // Brings the index up to the list, if that is possible and pays. Apart from the search, which
    // seldom needs it and is the faster for being short.
    template <class KeyAt>
    __attribute__((noinline)) bool prepare(const ListState &list, KeyAt keyAt) {
        if (list.writerMayLive || list.bound < smallestList) {
            return false;
        }
        if (!describes(list)) {
            if (isBuilt) {
                forget();
            }
            if (scanned < entryCost * static_cast<std::size_t>(list.bound)) {
                return false;
            }
        }
        scanned = 0;
        try {
            index.enter(list.bound, keyAt);
        } catch (const std::bad_alloc &) {
            forget();
            return false;
        }
        isBuilt = true;
        rewrites = list.rewrites;
        deletions = list.deletions;
        return true;
    }
    void forget() {
        isBuilt = false;
        index = Index();
    }

    Index index;
    bool isBuilt = false;
    std::uint64_t rewrites = 0; // of the list that the index describes
    std::uint64_t deletions = 0;
    std::size_t scanned = 0; // slots since the index was last of use
};

} // namespace trunnion::detail
