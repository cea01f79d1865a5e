// The plain model of a facet list: slots below the bound, the number of live ones, and every
// operation as the scan that it is told as.
#pragma once

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "trunnion/meshes/mesh_records.h"

namespace test {

template <int corners>
struct FacetModel {
    using Nodes = std::array<int, corners>;

    struct Slot {
        Nodes nodes;
        int tag;
        bool operator==(const Slot &) const = default;
        bool isLive() const { return tag == TAG_AVAILABLE; }
        bool isDegenerate() const {
            Nodes sorted = nodes;
            std::sort(sorted.begin(), sorted.end());
            return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
        }
        // First position of a node, or -1.
        int positionOf(int node) const {
            const auto at = std::find(nodes.begin(), nodes.end(), node);
            return at != nodes.end() ? static_cast<int>(at - nodes.begin()) : -1;
        }
        bool holdsEdge(int a, int b) const {
            const int at = positionOf(a);
            return at >= 0 &&
                   (nodes[(at + 1) % corners] == b || nodes[(at + corners - 1) % corners] == b);
        }
        bool liesWithin(const Nodes &others) const {
            return std::all_of(nodes.begin(), nodes.end(), [&](int node) {
                return std::count(others.begin(), others.end(), node) > 0;
            });
        }
    };

    std::vector<Slot> slots;
    int available = 0;

    int bound() const { return static_cast<int>(slots.size()); }
    void set(const Slot &slot, int k) {
        if (k >= bound()) {
            Nodes none;
            none.fill(SL_DELETED_INT);
            slots.resize(k + 1, {none, TAG_UNUSED});
        }
        available += !slots[k].isLive() && slot.isLive();
        slots[k] = slot;
    }
    void add(const Nodes &nodes) { set({nodes, TAG_AVAILABLE}, bound()); }
    void insert(const Nodes &nodes, int k) {
        if (k < bound()) {
            slots.insert(slots.begin() + k, {nodes, TAG_UNUSED});
        }
        set({nodes, TAG_AVAILABLE}, k);
    }
    void del(int k) {
        if (slots[k].isLive()) {
            slots[k].tag = TAG_DELETED;
            --available;
        }
        if (k == bound() - 1) {
            slots.pop_back();
        }
    }
    int merge(const Nodes &nodes) {
        const bool isRefused = Slot{nodes, 0}.isDegenerate() ||
                               std::any_of(slots.begin(), slots.end(), [&](const Slot &slot) {
                                   return slot.liesWithin(nodes);
                               });
        if (!isRefused) {
            add(nodes);
        }
        return isRefused ? 0 : 1;
    }
    void change(int from, int to, bool deletesDegenerate) {
        for (int k = 0; k < bound(); ++k) {
            const int at = slots[k].positionOf(from);
            if (at >= 0) {
                slots[k].nodes[at] = to;
                if (deletesDegenerate && slots[k].isDegenerate()) {
                    del(k);
                }
            }
        }
    }
    void delByVertex(int node) {
        for (int k = 0; k < bound(); ++k) {
            if (slots[k].isLive() && slots[k].positionOf(node) >= 0) {
                del(k);
            }
        }
    }
    void reset(const std::vector<int> &map) {
        std::vector<Slot> kept;
        for (Slot slot : slots) {
            for (int &node : slot.nodes) {
                const bool inside = node >= 0 && node < static_cast<int>(map.size());
                node = inside ? map[node] : SL_DELETED_INT;
            }
            if (slot.isLive() && slot.isDegenerate()) {
                --available;
            } else if (slot.isLive()) {
                kept.push_back(slot);
            }
        }
        slots = kept;
    }
    void purge() {
        if (available != bound()) {
            std::erase_if(slots, [](const Slot &slot) { return !slot.isLive(); });
            available = bound();
        }
    }
    void countAgain() {
        available = static_cast<int>(std::count_if(slots.begin(), slots.end(),
                                                   [](const Slot &slot) { return slot.isLive(); }));
    }

    int judge(int a, int b, int *slot) const {
        int count = 0;
        for (int k = 0; k < bound(); ++k) {
            if (slots[k].holdsEdge(a, b)) {
                ++count;
                *slot = k;
            }
        }
        return count;
    }
    int neighbour(int node) const {
        for (const Slot &slot : slots) {
            const int at = slot.positionOf(node);
            if (at >= 0) {
                return slot.nodes[(at + 1) % corners];
            }
        }
        return SL_DELETED_INT;
    }
    // The boundary step, of triangles.
    int step(int previous, int *pair, int *slot) const {
        bool seen = false;
        int count = 0;
        for (const Slot &candidate : slots) {
            const int at = candidate.positionOf(pair[0]);
            for (int other = 0; at >= 0 && other < corners; ++other) {
                const int next = candidate.nodes[other];
                if (other == at) {
                    continue;
                }
                if (next == previous) {
                    seen = true;
                    continue;
                }
                count = judge(pair[0], next, slot);
                if (count == 1) {
                    pair[1] = next;
                    return 1;
                }
            }
        }
        if (seen) {
            pair[1] = previous;
            return 1;
        }
        return count;
    }
    int highestWithin(const Nodes &nodes) const {
        int highest = -1;
        for (int k = 0; k < bound(); ++k) {
            highest = slots[k].liesWithin(nodes) ? k : highest;
        }
        return highest;
    }
    int lowestEqual(const Nodes &nodes) const {
        for (int k = 0; k < bound(); ++k) {
            if (std::is_permutation(nodes.begin(), nodes.end(), slots[k].nodes.begin())) {
                return k;
            }
        }
        return -1;
    }
    // (slot, position) of every slot that holds the node.
    std::vector<std::pair<int, int>> at(int node) const {
        std::vector<std::pair<int, int>> found;
        for (int k = 0; k < bound(); ++k) {
            if (slots[k].positionOf(node) >= 0) {
                found.emplace_back(k, slots[k].positionOf(node));
            }
        }
        return found;
    }
};

} // namespace test
