// Finds the triangles that have some three nodes or fewer of them: for a list to which triangles
// are merged, one by one, and of which nothing else is asked. There the index of facets, which has
// every slot at each of its nodes, would be dear.
//
// It only proposes, the list compares. SlotFinder decides when it is used.
//
// Memory: 4 to 8 bytes for each triangle and 2 to 4 for the beginnings of the chains.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace trunnion::detail {

// Slots chained by the lowest of their nodes, the highest slot first. Node numbers beyond the
// number of chains begin with the first one again, so that any numbers will do.
//
// A chain has two slots on the average. Where many triangles share their lowest node, as about the
// axis of a cone, it is long: when the searches have taken too many steps, the chains are no longer
// worth their while.
class TriangleChains {
public:
    // Slots seen so far: enter() goes on behind them.
    int seen() const { return static_cast<int>(links.size()); }

    // Sees the slots up to `bound`. `nodesAt(slot)` gives the three nodes. Throws std::bad_alloc;
    // the chains are then of no use.
    template <class NodesAt>
    void enter(int bound, NodesAt nodesAt) {
        for (int slot = seen(); slot < bound; ++slot) {
            const int *nodes = nodesAt(slot);
            hasDegenerate |= nodes[0] == nodes[1] || nodes[1] == nodes[2] || nodes[0] == nodes[2];
            links.push_back(end);
            if (links.size() > 2 * heads.size()) {
                heads.assign(std::max(fewestChains, 2 * heads.size()), end);
                for (int known = 0; known < slot; ++known) {
                    link(known, nodesAt(known));
                }
            }
            link(slot, nodes);
        }
    }

    // Slots stay where they are when their triangle is deleted, as it keeps its nodes.
    bool isComplete() const { return true; }
    // Whether the searches so far have taken so many steps that another index does better.
    bool isCrowded() const { return steps > mostSteps * (searches + firstSearches); }

    // The lowest slot that passes `matches(slot)`, which is true of triangles only that have no
    // other nodes than these three, or -1.
    template <class Matches>
    int lowest(const int *nodes, Matches matches) {
        ++searches;
        int best = lowestInChain(std::min({nodes[0], nodes[1], nodes[2]}), matches);
        if (hasDegenerate) { // their lowest node may be any of the three
            for (int i = 0; i < 3; ++i) {
                const int found = lowestInChain(nodes[i], matches);
                best = best < 0 || (found >= 0 && found < best) ? found : best;
            }
        }
        return best;
    }

private:
    static constexpr int end = -1;
    static constexpr std::size_t fewestChains = 64;
    static constexpr std::size_t mostSteps = 8; // of a search, on the average
    static constexpr std::size_t firstSearches = 512;

    std::size_t chainOf(int node) const {
        return static_cast<std::uint32_t>(node) & (heads.size() - 1); // a power of two
    }
    void link(int slot, const int *nodes) {
        int &head = heads[chainOf(std::min({nodes[0], nodes[1], nodes[2]}))];
        links[static_cast<std::size_t>(slot)] = head;
        head = slot;
    }
    template <class Matches>
    int lowestInChain(int node, Matches matches) {
        int found = -1;
        for (int slot = heads[chainOf(node)]; slot != end;
             slot = links[static_cast<std::size_t>(slot)]) {
            ++steps;
            found = matches(slot) ? slot : found;
        }
        return found;
    }

    std::vector<int> heads; // the highest slot of each chain
    std::vector<int> links; // the next lower slot of the same chain, by slot
    bool hasDegenerate = false;
    std::size_t searches = 0;
    std::size_t steps = 0;
};

} // namespace trunnion::detail
