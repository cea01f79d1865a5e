// What makes building a mesh by merging fast: an index beside a list that finds, for one key, the
// few slots that can hold what is sought, where a scan would visit them all. It only proposes: the
// list still compares, so that the answer is that of the scan.
//
// An index may answer only while it describes the list. It knows the list by its count of changes:
// as long as nothing but merges moved the count, it is current; after any other change, or while a
// host may hold a writable pointer, the list scans. A list that goes back to merging gets a new
// index with the second merge in a row, so that a host that alternates merges with other changes
// never pays for one that is lost at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace trunnion::detail {

// Scrambles the bits of a key so that neighbouring keys fall far apart (the finalizer of splitmix64
// by Sebastiano Vigna, 2015).
constexpr std::uint64_t scramble(std::uint64_t key) {
    key = (key ^ (key >> 30)) * 0xBF58476D1CE4E5B9U;
    key = (key ^ (key >> 27)) * 0x94D049BB133111EBU;
    return key ^ (key >> 31);
}

// One key of three numbers.
constexpr std::uint64_t hashKey(long long x, long long y, long long z) {
    std::uint64_t key = scramble(static_cast<std::uint64_t>(x));
    key = scramble(key + static_cast<std::uint64_t>(y));
    return scramble(key + static_cast<std::uint64_t>(z));
}

// Slots in chains by the hash of their key; about one chain for each slot.
class SlotChains {
public:
    void clear() {
        heads.clear();
        entries.clear();
    }
    void add(std::uint64_t hash, int slot) {
        if (entries.size() == heads.size()) {
            spread();
        }
        entries.push_back({hash, slot, -1});
        link(entries.size() - 1);
    }
    // Calls visit(slot) for every slot that was added with the hash, in no order.
    template <class Visit>
    void visit(std::uint64_t hash, Visit visit) const {
        if (heads.empty()) {
            return;
        }
        for (int at = heads[hash & (heads.size() - 1)]; at >= 0;) {
            const Entry &entry = entries[static_cast<std::size_t>(at)];
            if (entry.hash == hash) {
                visit(entry.slot);
            }
            at = entry.next;
        }
    }

private:
    struct Entry {
        std::uint64_t hash;
        int slot;
        int next; // entry, or -1
    };

    void link(std::size_t at) {
        int &head = heads[entries[at].hash & (heads.size() - 1)];
        entries[at].next = head;
        head = static_cast<int>(at);
    }
    // Doubles the number of chains, a power of two.
    void spread() {
        heads.assign(heads.empty() ? 64 : heads.size() * 2, -1);
        for (std::size_t at = 0; at < entries.size(); ++at) {
            link(at);
        }
    }

    std::vector<int> heads; // entries, or -1
    std::vector<Entry> entries;
};

// A list as its index sees it.
struct MergedListState {
    std::uint64_t changes;
    bool writerMayLive;
    int bound;
};

// The index of one list. A copy of the list starts without one. Memory that cannot be had costs the
// index and nothing else.
//
// One merge: prepare(), then, if it said so, proposals from slots(); if the merge appends, enter()
// the new slot; finish().
class MergeIndex {
public:
    MergeIndex() = default;
    MergeIndex(const MergeIndex & /*other*/) {}
    // Nothing to do: the assignment counts as a change of the list.
    MergeIndex &
    operator=(const MergeIndex & /*other*/) { // NOLINT(bugprone-unhandled-self-assignment)
        return *this;
    }
    ~MergeIndex() = default;

    // True if the index describes the list, after it was built where that is worth it.
    // enterSlot(index, i) enters slot i if a search may find it.
    template <class EnterSlot>
    bool prepare(const MergedListState &list, EnterSlot enterSlot) {
        if (list.writerMayLive || list.bound < smallestList) {
            return false;
        }
        if (!isBuilt || describedChanges != list.changes) {
            forget();
            if (mergedChanges != list.changes) {
                return false;
            }
            isBuilt = true;
            for (int i = 0; i < list.bound && isBuilt; ++i) {
                enterSlot(*this, i);
            }
        }
        return isBuilt;
    }
    void enter(std::uint64_t hash, int slot) {
        try {
            chains.add(hash, slot);
        } catch (const std::bad_alloc &) {
            forget();
        }
    }
    const SlotChains &slots() const { return chains; }
    // `wasPrepared` is what prepare() answered for this merge, `changes` the list's count after it.
    void finish(bool wasPrepared, std::uint64_t changes) {
        mergedChanges = changes;
        describedChanges = wasPrepared ? changes : describedChanges;
    }

private:
    static constexpr int smallestList = 32; // a scan of fewer slots is as fast

    void forget() {
        isBuilt = false;
        chains = SlotChains();
    }

    SlotChains chains;
    bool isBuilt = false;
    std::uint64_t describedChanges = 0;       // the list that the chains describe, if built
    std::uint64_t mergedChanges = UINT64_MAX; // the list as the last merge left it
};

} // namespace trunnion::detail
