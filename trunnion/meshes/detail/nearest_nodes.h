// Finds the live node nearest to a point by trees beside the list, where a scan would visit every
// slot.
//
// Memory: 16 bytes for each node and 7 to 14 for the boxes of the trees; as much again for a moment
// while trees are joined.
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "trunnion/containers/detail/slot_finder.h"
#include "trunnion/meshes/mesh_records.h"

namespace trunnion::detail {

// A point of a tree and the slot that it has in its list.
struct SlotPoint {
    float at[3];
    int slot;
};

// What a search for the nearest node has found so far. As in the scan a node wins by its
// slDistance3, a float, and of equal ones the lowest slot; nodes are offered in any order.
class NearestNode {
public:
    NearestNode(const NodeCL *list, const float *point);

    // The slot, or SL_DELETED_INT where none is nearer than SL_BIG.
    int slot() const { return best; }

    // Takes the node in `slot`, which has its point at `at`, if it is live and wins.
    void offer(const float *at, int slot);
    // False if no node in `slot` or behind it, with a squared distance of at least `square`, wins.
    bool mayWin(double square, int slot) const;
    // Least squared distance of a point in a box, formed like that of a point and never above it.
    double squareToBox(const float *low, const float *high) const;

private:
    const NodeCL *nodes;
    const float *sought;
    int best = SL_DELETED_INT;
    float distance; // of the best; its square, unrounded
    double square;
};

// A k-d tree of points (Friedman, Bentley and Finkel 1977), complete, its boxes stored as in a
// heap.
class PointTree {
public:
    explicit PointTree(std::vector<SlotPoint> content);

    const std::vector<SlotPoint> &content() const { return points; }
    void search(NearestNode &nearest) const;

private:
    struct Box {
        float low[3];
        float high[3];
        int lowestSlot;
    };

    void build(std::size_t node, std::size_t from, std::size_t to);
    void search(NearestNode &nearest, std::size_t node, std::size_t from, std::size_t to) const;
    bool isLeaf(std::size_t node) const { return 2 * node + 1 >= boxes.size(); }

    std::vector<SlotPoint> points;
    std::vector<Box> boxes; // those inside of box i are 2 i + 1 and 2 i + 2
};

// The searches of one list for the nearest node. Trees stay true while nodes are appended, which
// get trees of their own, joined as they grow (the logarithmic method of Bentley and Saxe 1980),
// and while nodes are deleted, which are passed over. After any other change, and while a host may
// hold a writable pointer, a search is a scan; trees are built once scans have cost as much.
//
// Searches may run on several threads at once as long as none changes the list. One of them builds;
// the others scan meanwhile. No part of the list's value: a copy starts without trees, and memory
// that cannot be had costs the trees and nothing else.
class NearestNodes {
public:
    NearestNodes() = default;
    NearestNodes(const NearestNodes & /*other*/) : NearestNodes() {}
    // Nothing to do: an assignment counts as a rewrite of the list.
    NearestNodes &
    operator=(const NearestNodes & /*other*/) { // NOLINT(bugprone-unhandled-self-assignment)
        return *this;
    }
    ~NearestNodes() = default;

    // The slot of the nearest live node of `nodes`, the list of which `list` tells, or
    // SL_DELETED_INT. `changes` is another number after every change of the list.
    int find(const ListState &list, std::uint64_t changes, const NodeCL *nodes,
             const float *point) const;

private:
    static constexpr int smallestList = 64; // a scan of fewer slots is as fast
    static constexpr int longestTail = 64;  // of appended nodes without a tree
    static constexpr int patience = 64;     // scans of a list that stays as it is, before trees

    bool prepare(const ListState &list, std::uint64_t changes, const NodeCL *nodes) const;
    bool bringUpToDate(const ListState &list, const NodeCL *nodes) const;
    void plant(int bound, const NodeCL *nodes) const;
    void forget() const;

    // All that follows belongs to the thread that has set isBusy, until it tells by `readyFor` for
    // which state of the list the trees may be read.
    mutable std::atomic<std::uint64_t> readyFor{UINT64_MAX};
    mutable std::atomic<bool> isBusy{false};
    mutable std::vector<PointTree> trees;
    mutable int seenSlots = 0; // nodes in trees; those behind them are the tail
    mutable std::uint64_t rewrites = 0;
    mutable std::uint64_t deletions = 0;
    mutable int scans = 0; // since the last rewrite
};

} // namespace trunnion::detail
