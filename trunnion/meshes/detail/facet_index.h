// Which facets hold a node, which hold an edge, which a set of nodes: what the scans of a facet
// list ask, answered from lists of slots.
//
// Each node has the ascending list of the slots that hold it, deleted ones too. A question about an
// edge or about three nodes is put to the shortest list of the nodes concerned. Where every list
// concerned is long, as in a book of facets that share their spine, one more kind of list helps:
// the slots that hold an edge between two such crowded nodes. Degenerate facets, few in a mesh,
// stand in lists of their own, by their nodes, so that who looks for the duplicates of a proper
// facet need not look for them in three places.
//
// Of a triangle each list of a node knows the two other nodes, since most questions are about edges
// and to read the facets for them would mean to wait for memory. Everything else is read in the
// facet list, which tells of every change.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

#include "trunnion/meshes/detail/ascending_lists.h"
#include "trunnion/meshes/detail/facet_lists.h"
#include "trunnion/meshes/detail/hash_key.h"

namespace trunnion::detail {

// The index of a list of facets. What changes it throws std::bad_alloc; the index is then of no use
// any more.
template <class Item>
class FacetIndex {
public:
    // Enters the slots from 0 to bound - 1. Linear.
    FacetIndex(const Item *current, int bound) : facets(current) {
        layOut(bound);
        for (int slot = 0; slot < bound; ++slot) {
            enter(slot);
        }
    }

    // Where the facets stand from now on.
    void setFacets(const Item *current) { facets = current; }
    // A slot takes part from now on, or no longer.
    void enter(int slot) {
        if (!enterPlain(slot)) {
            enter(slot, nullptr);
        }
    }
    void leave(int slot) { leave(slot, facets[slot].GetNodeIdxPM(), nullptr); }
    // The facet in the slot has other nodes than before.
    void change(int slot, const int *before) {
        leave(slot, before, facets[slot].GetNodeIdxPM());
        enter(slot, before);
    }
    // True when it is time for a new index, since this one holds more memory than it needs.
    bool isWasteful() const { return lists.isWasteful(); }

    // Calls visit(slot) for every slot that holds the node, ascending, until it returns true. True
    // if it did.
    template <class Visit>
    bool anyAt(int node, Visit visit) const {
        return lists.any(at(node), visit);
    }
    int countAt(int node) const { return at(node).size(); }
    // The same slots, for who is about to change them. Throws std::bad_alloc.
    std::vector<int> slotsAt(int node) const { return lists.copy(at(node)); }

    // As countEdge.
    int countEdge(int a, int b, int *slot) const {
        if (lists.isCompact(at(a)) && areEdge(a, b)) {
            return lists.countBeside(at(a), b, slot);
        }
        const bool takesFirst = at(a).size() <= at(b).size();
        const List &list = takesFirst ? at(a) : at(b);
        if (isCrowded(list)) {
            const List &edge = find(edges, edgeKey(a, b));
            lists.anyDown(edge, [slot](int highest) {
                *slot = highest;
                return true;
            });
            return edge.size();
        }
        if (areEdge(a, b) && lists.knowsBeside(list)) {
            return lists.countBeside(list, takesFirst ? b : a, slot);
        }
        return countIn(list, slot, [a, b](const Item &facet) {
            return holdsEdge<corners>(facet.GetNodeIdxPM(), a, b);
        });
    }

    // Highest slot with all its nodes among the three of `nodes`, or -1.
    int highestWithin(const int *nodes) const {
        int highest = -1;
        const auto search = [&](const List &list) {
            lists.anyDown(list, [&](int slot) {
                const bool found = slot > highest && liesWithin(facets[slot], nodes);
                highest = found ? slot : highest;
                return found || slot <= highest;
            });
        };
        if (!areDegenerate(nodes)) {
            search(fewestWith(nodes));
        }
        if (!degenerate.empty()) {
            for (int i = 0; i < corners * corners; ++i) {
                const int twice = nodes[i / corners];
                search(find(degenerate, setKey(twice, twice, nodes[i % corners])));
            }
        }
        return highest;
    }
    // Lowest slot with the three nodes in any order, or -1.
    int lowestEqual(const int *nodes) const {
        int lowest = -1;
        const List &list = areDegenerate(nodes)
                               ? find(degenerate, setKey(nodes[0], nodes[1], nodes[2]))
                               : fewestWith(nodes);
        lists.any(list, [&](int slot) {
            const bool found = std::is_permutation(nodes, nodes + 3, facets[slot].GetNodeIdxPM());
            lowest = found ? slot : lowest;
            return found;
        });
        return lowest;
    }

private:
    // Beside the slots of a node the other nodes of a triangle; of a quad nothing.
    using Lists = AscendingLists<Item::cornerCount == 3 ? 2 : 0>;
    using List = typename Lists::List;
    using ListMap = std::unordered_map<std::uint64_t, List>;

    static constexpr int corners = Item::cornerCount;

    static bool isCrowded(const List &list) { return list.size() > Lists::longest; }
    static std::uint64_t nodeKey(int node) { return static_cast<std::uint32_t>(node); }
    static std::uint64_t edgeKey(int a, int b) { return nodeKey(a) << 32 | nodeKey(b); }
    static std::uint64_t setKey(int a, int b, int c) {
        int nodes[3] = {a, b, c};
        std::sort(nodes, nodes + 3);
        return hashKey(nodes[0], nodes[1], nodes[2]);
    }
    // What stands beside the slot in the list of the node at a place.
    static typename Lists::Beside besideAt(const int *nodes, int place) {
        typename Lists::Beside beside;
        for (std::size_t i = 0; i < beside.size(); ++i) {
            const int next = place + 1 + static_cast<int>(i);
            beside[i] = nodes[next < corners ? next : next - corners];
        }
        return beside;
    }
    // Whether every facet that holds both nodes holds the edge between them: in a triangle every
    // other node than a stands next to it.
    static bool areEdge(int a, int b) { return corners == 3 && a != b; }
    static bool areDegenerate(const int *nodes) {
        return nodes[0] == nodes[1] || nodes[1] == nodes[2] || nodes[0] == nodes[2];
    }
    static bool isAmong(const int *nodes, int count, int node) {
        return nodes != nullptr && std::find(nodes, nodes + count, node) != nodes + count;
    }

    static const List &find(const ListMap &map, std::uint64_t key) {
        static const List none;
        const auto entry = map.find(key);
        return entry != map.end() ? entry->second : none;
    }
    void eraseFrom(ListMap &map, std::uint64_t key, int slot) {
        const auto entry = map.find(key);
        if (entry != map.end()) {
            lists.erase(entry->second, slot);
            if (entry->second.size() == 0) {
                map.erase(entry);
            }
        }
    }

    const List &at(int node) const {
        const auto number = static_cast<std::uint32_t>(node);
        return number < dense.size() ? dense[number] : find(sparse, nodeKey(node));
    }
    // The same with a place made for a node that is new.
    List &placeOf(int node) {
        const auto number = static_cast<std::uint32_t>(node);
        if (number >= dense.size() && number < denseLimit(lists.size())) {
            widen(number + 1);
        }
        return number < dense.size() ? dense[number] : sparse[nodeKey(node)];
    }
    // Node numbers below this have their lists in a row, the others by hash.
    static std::size_t denseLimit(std::size_t entries) { return 2 * entries + 1024; }
    void widen(std::size_t size) {
        std::size_t number = dense.size();
        dense.resize(std::max(size, std::min(2 * number, denseLimit(lists.size()))));
        for (; number < dense.size() && !sparse.empty(); ++number) {
            const auto entry = sparse.find(number);
            if (entry != sparse.end()) {
                dense[number] = entry->second;
                sparse.erase(entry);
            }
        }
    }

    // Gives the nodes of the first `bound` facets their lists, with the room that they will need.
    void layOut(int bound) {
        const std::size_t limit = denseLimit(static_cast<std::size_t>(bound) * corners);
        std::vector<int> counts;
        for (int slot = 0; slot < bound; ++slot) {
            for (int i = 0; i < corners; ++i) {
                const auto number = static_cast<std::uint32_t>(facets[slot].GetNodeIdxPM()[i]);
                if (number >= limit) {
                    continue;
                }
                if (number >= counts.size()) {
                    counts.resize(
                        std::min(std::max(std::size_t{number} + 1, 2 * counts.size()), limit));
                }
                ++counts[number];
            }
        }
        dense.resize(counts.size());
        lists.makeRooms(dense, counts);
    }

    // Enters the slot if nothing about it is out of the ordinary. This is the way of nearly all
    // facets; false if it is not that of this one.
    bool enterPlain(int slot) {
        const int *nodes = facets[slot].GetNodeIdxPM();
        List *own[corners];
        for (int i = 0; i < corners; ++i) {
            const auto number = static_cast<std::uint32_t>(nodes[i]);
            if (number >= dense.size() || isAmong(nodes, i, nodes[i]) ||
                dense[number].size() >= Lists::longest) {
                return false;
            }
            own[i] = &dense[number];
        }
        for (int i = 0; i < corners; ++i) {
            lists.insert(*own[i], slot, besideAt(nodes, i));
        }
        return true;
    }
    // Enters the slot where the nodes `before` have not brought it yet.
    void enter(int slot, const int *before) {
        const int *nodes = facets[slot].GetNodeIdxPM();
        int crowded = 0;
        for (int i = 0; i < corners; ++i) {
            List &list = placeOf(nodes[i]);
            if (isAmong(nodes, i, nodes[i])) {
                // entered at its first place
            } else if (isAmong(before, corners, nodes[i])) {
                lists.setBeside(list, slot, besideAt(nodes, i));
            } else {
                lists.insert(list, slot, besideAt(nodes, i));
                if (list.size() == Lists::longest + 1) { // crowded from now on
                    for (const int other : lists.copy(list)) {
                        enterEdges(other);
                    }
                }
            }
            crowded += isCrowded(list) ? 1 : 0;
        }
        if (crowded >= 2) {
            enterEdges(slot);
        }
        if (corners == 3 && areDegenerate(nodes)) {
            lists.insert(degenerate[setKey(nodes[0], nodes[1], nodes[2])], slot, {});
        }
    }
    // Takes the slot, which had the nodes `before`, out of every list that the nodes `after` do not
    // bring it into.
    void leave(int slot, const int *before, const int *after) {
        for (int i = 0; i < corners; ++i) {
            if (isAmong(after, corners, before[i])) {
                continue;
            }
            const auto number = static_cast<std::uint32_t>(before[i]);
            if (number < dense.size()) {
                lists.erase(dense[number], slot);
            } else {
                eraseFrom(sparse, nodeKey(before[i]), slot);
            }
        }
        if (!edges.empty()) {
            forEachEdge(before, [&](int a, int b) { eraseFrom(edges, edgeKey(a, b), slot); });
        }
        if (corners == 3 && areDegenerate(before)) {
            eraseFrom(degenerate, setKey(before[0], before[1], before[2]), slot);
        }
    }
    // Enters the slot for its edges between crowded nodes.
    void enterEdges(int slot) {
        forEachEdge(facets[slot].GetNodeIdxPM(), [&](int a, int b) {
            if (isCrowded(at(a)) && isCrowded(at(b))) {
                lists.insert(edges[edgeKey(a, b)], slot, {});
            }
        });
    }
    // Calls visit(a, b) for every pair of nodes that is an edge.
    template <class Visit>
    static void forEachEdge(const int *nodes, Visit visit) {
        for (int i = 0; i < corners * corners; ++i) {
            const int a = nodes[i / corners];
            const int b = nodes[i % corners];
            if (holdsEdge<corners>(nodes, a, b)) {
                visit(a, b);
            }
        }
    }

    // Number of facets in a list for which `holds(facet)` is true; *slot receives the highest one
    // and stays when there is none. Which ones hold nobody can foresee: said by masks, so that it
    // stays without a branch.
    template <class Holds>
    int countIn(const List &list, int *slot, Holds holds) const {
        int found = 0;
        int highest = -1;
        lists.each(list, [&](int i) {
            const int isHeld = holds(facets[i]) ? 1 : 0;
            found += isHeld;
            highest = std::max(highest, i | (isHeld - 1)); // -1 where it is not held
        });
        if (found > 0) {
            *slot = highest;
        }
        return found;
    }

    // The shortest list that has all facets with three different nodes.
    const List &fewestWith(const int *nodes) const {
        const auto shorter = [](const List &a, const List &b) { return a.size() < b.size(); };
        const List &fewest = std::min(
            {std::cref(at(nodes[0])), std::cref(at(nodes[1])), std::cref(at(nodes[2]))}, shorter);
        if (!isCrowded(fewest)) {
            return fewest;
        }
        return std::min({std::cref(find(edges, edgeKey(nodes[0], nodes[1]))),
                         std::cref(find(edges, edgeKey(nodes[1], nodes[2]))),
                         std::cref(find(edges, edgeKey(nodes[0], nodes[2])))},
                        shorter);
    }

    const Item *facets;
    Lists lists;
    Table<List> dense;  // by node
    ListMap sparse;     // by node, the others
    ListMap edges;      // by edgeKey of two crowded nodes
    ListMap degenerate; // by setKey; of triangles only
};

} // namespace trunnion::detail
