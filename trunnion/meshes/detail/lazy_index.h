// When a list has an index beside it: not before the searches without one have cost about as much
// as building one, and only as long as the index describes the list.
//
// The index is no part of the list's value. It knows the list by its count of changes: a change
// that the index was not told of makes it useless, and the next one is built when that pays again.
// Memory that cannot be had costs the index and nothing else.
//
// Searches are const and may run on several threads at once as long as nobody changes the list:
// one thread builds, the others go on without until it is published.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <new>

namespace trunnion::detail {

template <class Index>
class LazyIndex {
public:
    LazyIndex() = default;
    // A copy of a list starts without an index.
    LazyIndex(const LazyIndex & /*other*/) {}
    LazyIndex &operator=(const LazyIndex &other) {
        if (this != &other) {
            drop();
        }
        return *this;
    }
    ~LazyIndex() = default;

    // The index of a list with this count of changes and this bound, built by makeIndex() if that
    // pays; null without one.
    template <class MakeIndex>
    const Index *find(std::uint64_t changes, int bound, MakeIndex makeIndex) const {
        const Index *found = ready(changes);
        return found == nullptr && isWorthBuilding(bound) && build(changes, makeIndex) ? index.get()
                                                                                       : found;
    }
    // The index of a list with this count of changes if it is there; null otherwise.
    const Index *ready(std::uint64_t changes) const {
        return described.load(std::memory_order_acquire) == changes ? index.get() : nullptr;
    }
    // A search without the index has looked at so many slots.
    void noteScan(int slots) const {
        scanned.fetch_add(static_cast<std::uint64_t>(slots), std::memory_order_relaxed);
    }

    // For a change of the list, on one thread. Before it: true if there is an index of the list;
    // one that does not describe it gives its memory back.
    bool keep(std::uint64_t changes) {
        if (index != nullptr && described.load(std::memory_order_relaxed) != changes) {
            drop();
        }
        return index != nullptr;
    }
    // After it, where there is an index: enters the change by update(index), which may throw
    // std::bad_alloc. An index that has become wasteful goes.
    template <class Update>
    void follow(std::uint64_t changes, Update update) {
        try {
            update(*index);
            described.store(changes, std::memory_order_relaxed);
        } catch (const std::bad_alloc &) {
            drop();
            return;
        }
        if (index->isWasteful()) {
            drop();
        }
    }
    void drop() {
        described.store(nothing, std::memory_order_relaxed);
        index.reset();
    }

private:
    static constexpr std::uint64_t nothing = UINT64_MAX;
    static constexpr int smallestList = 32; // a scan of fewer slots is as fast
    static constexpr std::uint64_t scansToBuild = 4;

    bool isWorthBuilding(int bound) const {
        return bound >= smallestList && scanned.load(std::memory_order_relaxed) >=
                                            scansToBuild * static_cast<std::uint64_t>(bound);
    }
    // False if there is no memory or another thread is about it.
    template <class MakeIndex>
    bool build(std::uint64_t changes, MakeIndex makeIndex) const {
        if (isBuilding.test_and_set(std::memory_order_acquire)) {
            return false;
        }
        bool isThere = described.load(std::memory_order_relaxed) == changes;
        if (!isThere) {
            scanned.store(0, std::memory_order_relaxed);
            try {
                index.reset();
                index = makeIndex();
                described.store(changes, std::memory_order_release);
                isThere = true;
            } catch (const std::bad_alloc &) {
                // The searches go on without.
            }
        }
        isBuilding.clear(std::memory_order_release);
        return isThere;
    }

    mutable std::unique_ptr<Index> index;
    mutable std::atomic<std::uint64_t> described = nothing; // count of changes of its list
    mutable std::atomic<std::uint64_t> scanned = 0;         // slots looked at without an index
    mutable std::atomic_flag isBuilding;
};

} // namespace trunnion::detail
