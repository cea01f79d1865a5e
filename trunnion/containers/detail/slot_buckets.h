// Slots by the block of space that their points lie in.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "trunnion/containers/detail/lanes.h"
#include "trunnion/containers/detail/table.h"

namespace trunnion::detail {

// A chain of buckets for each block of several slots. Buckets are cache lines that are given out in
// the order in which blocks turn up, so that a walk over neighbouring points reads lines that it
// touched last or that lie side by side. A directory, a small hash with linear probing, tells where
// chains begin, or holds the only slot of a block: it alone is entered anew when blocks grow many.
class SlotBuckets {
public:
    // A block goes by the hash of its numbers, whose highest bits are spread best: two with the
    // same hash share a chain. The mark is that of a cell inside the block, and not 0.
    struct Key {
        std::uint32_t block;
        std::uint8_t mark;
    };

    std::size_t slots() const { return slotsEntered; }
    std::size_t blocks() const { return blocksEntered; }
    // How many full buckets the slots met on their way.
    std::size_t passed() const { return bucketsPassed; }

    // The first slot with this key, in the order of their entering, that passes `matches(slot)`, or
    // -1. The only slot of a block is asked whatever its mark. Something must have been entered.
    template <class Matches>
    int first(const Key &key, Matches matches) const {
        const std::uint32_t chain = directory[placeOf(key.block)].chain;
        if ((chain & onlySlot) != 0) {
            const int slot = static_cast<int>(chain & ~onlySlot);
            return matches(slot) ? slot : -1;
        }
        for (std::uint32_t at = chain; at != none;) {
            const Bucket &bucket = buckets[at];
            for (unsigned int left = bucket.with(key.mark); left != 0; left &= left - 1) {
                const int slot = bucket.slots[std::countr_zero(left)];
                if (matches(slot)) {
                    return slot;
                }
            }
            at = bucket.next;
        }
        return -1;
    }

    // Enters a slot behind the others of its block, and returns how many of them share its mark.
    // `markOf(slot)` gives the mark of one that was entered before. Throws std::bad_alloc; this is
    // of no use then.
    template <class MarkOf>
    std::size_t enter(const Key &key, int slot, MarkOf markOf) {
        ++slotsEntered;
        if (directory.size() < placesPerBlock * (blocksEntered + 1)) {
            growDirectory();
        }
        Place &place = directory[placeOf(key.block)];
        if (place.chain == none) {
            place = {key.block, onlySlot | static_cast<std::uint32_t>(slot)};
            ++blocksEntered;
            return 0;
        }
        if ((place.chain & onlySlot) != 0) {
            const int first = static_cast<int>(place.chain & ~onlySlot);
            place.chain = newBucket();
            buckets[place.chain].take(markOf(first), first);
        }
        return enterInto(place.chain, key.mark, slot);
    }

    // Keeps the memory.
    void clear() {
        std::fill(directory.begin(), directory.end(), Place{});
        buckets.clear();
        slotsEntered = 0;
        blocksEntered = 0;
        bucketsPassed = 0;
    }

private:
    static constexpr std::uint8_t freeMark = 0;
    static constexpr std::uint32_t none = 0;
    static constexpr std::uint32_t onlySlot = 0x80000000U;
    static constexpr std::size_t fewestPlaces = 64;
    static constexpr std::size_t placesPerBlock = 3; // at least: most blocks stand at once

    // Places for slots, taken in order, and looked through at once for those with a mark.
    struct alignas(64) Bucket {
        static constexpr int places = 12;

        // The places that hold a mark; that of the free ones is 0.
        unsigned int with(std::uint8_t mark) const {
            const auto *sixteen =
                reinterpret_cast<const std::uint8_t *>(this); // the marks and `next`
            return equalOfSixteen(sixteen, mark) & ((1U << places) - 1);
        }
        std::size_t countOf(std::uint8_t mark) const {
            return static_cast<std::size_t>(std::popcount(with(mark)));
        }
        bool isFull() const { return marks[places - 1] != freeMark; }
        void take(std::uint8_t mark, int slot) {
            const int free = std::countr_zero(with(freeMark));
            marks[free] = mark;
            slots[free] = slot;
        }

        std::uint8_t marks[places];
        std::uint32_t next; // of the chain
        int slots[places];
    };

    // Of a block in the directory.
    struct Place {
        std::uint32_t block;
        std::uint32_t chain; // its first bucket; its slot and onlySlot; none: the place is free
    };

    // Where the block stands, or else the free place where it belongs.
    std::size_t placeOf(std::uint32_t block) const {
        const std::size_t last = directory.size() - 1;
        std::size_t at = block >> toPlace;
        while (directory[at].block != block && directory[at].chain != none) {
            at = (at + 1) & last;
        }
        return at;
    }

    void growDirectory() {
        Table<Place> old(std::max(fewestPlaces, 2 * directory.size()), Place{});
        old.swap(directory);
        toPlace = std::max(0, 32 - std::countr_zero(directory.size()));
        for (const Place &place : old) {
            if (place.chain != none) {
                directory[placeOf(place.block)] = place;
            }
        }
    }

    std::size_t enterInto(std::uint32_t chain, std::uint8_t mark, int slot) {
        std::size_t mates = 0;
        std::uint32_t at = chain;
        for (; buckets[at].isFull(); at = followerOf(at)) {
            mates += buckets[at].countOf(mark);
            ++bucketsPassed;
        }
        mates += buckets[at].countOf(mark);
        buckets[at].take(mark, slot);
        return mates;
    }
    std::uint32_t followerOf(std::uint32_t at) {
        if (buckets[at].next == none) {
            const std::uint32_t follower = newBucket();
            buckets[at].next = follower;
        }
        return buckets[at].next;
    }
    std::uint32_t newBucket() {
        if (buckets.size() == buckets.capacity()) {
            buckets.reserve(std::max<std::size_t>(16, buckets.size() + buckets.size() / 2));
        }
        if (buckets.empty()) {
            buckets.emplace_back(); // number 0 is none
        }
        Bucket &bucket = buckets.emplace_back();
        std::fill_n(bucket.marks, Bucket::places, freeMark);
        bucket.next = none;
        return static_cast<std::uint32_t>(buckets.size() - 1);
    }

    Table<Place> directory; // a power of two
    int toPlace = 0;        // how many bits of a hash do not count for its place
    Table<Bucket> buckets;
    std::size_t slotsEntered = 0;
    std::size_t blocksEntered = 0;
    std::size_t bucketsPassed = 0;
};

} // namespace trunnion::detail
