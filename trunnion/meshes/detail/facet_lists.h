// What the lists of triangles and of quads share, over a run of facets: renumbering and scans. A
// scan visits the facets in ascending order and does not look at the tags.
#pragma once

#include <algorithm>

#include "trunnion/containers/item_base.h"
#include "trunnion/meshes/mesh_records.h"

namespace trunnion::detail {

// Renumbers the live facets through `map`. Those that become degenerate take the tag TAG_UNUSED;
// returns their number.
template <class Item>
int renumberFacets(Item *facets, int count, const IntArr &map) {
    int dropped = 0;
    for (int i = 0; i < count; ++i) {
        if (facets[i].IsAvailableM() == TAG_AVAILABLE && facets[i].ResetNodeIdxM(map) == 0) {
            facets[i].SetDeleteTagM(TAG_UNUSED);
            ++dropped;
        }
    }
    return dropped;
}

// True if the node stands at some position of the facet. Without a branch for each position: a scan
// asks it of facets that nearly all do not hold the node.
template <class Item>
bool holdsNode(const Item &facet, int node) {
    bool holds = false;
    for (int i = 0; i < Item::cornerCount; ++i) {
        holds |= facet.GetNodeIdxPM()[i] == node;
    }
    return holds;
}

// True if b stands next to the first place of a in the cycle of a facet's nodes.
template <int corners>
bool holdsEdge(const int *nodes, int a, int b) {
    const auto place = static_cast<int>(std::find(nodes, nodes + corners, a) - nodes);
    return place < corners &&
           (nodes[(place + 1) % corners] == b || nodes[(place + corners - 1) % corners] == b);
}

// Number of facets with the edge; *slot receives the highest and stays when there is none.
template <class Item>
int countEdge(const Item *facets, int count, int a, int b, int *slot) {
    int found = 0;
    for (int i = 0; i < count; ++i) {
        if (holdsNode(facets[i], a) &&
            holdsEdge<Item::cornerCount>(facets[i].GetNodeIdxPM(), a, b)) {
            ++found;
            *slot = i;
        }
    }
    return found;
}

// The same among the slots of an ascending list.
template <class Item>
int countEdgeAmong(const Item *facets, const int *slots, int count, int a, int b, int *slot) {
    int found = 0;
    std::for_each_n(slots, count, [&](int i) {
        if (holdsEdge<Item::cornerCount>(facets[i].GetNodeIdxPM(), a, b)) {
            ++found;
            *slot = i;
        }
    });
    return found;
}

// True if all nodes of the triangle are among the three of `nodes`. Without a branch for each node,
// as above.
inline bool liesWithin(const TriangleCL &triangle, const int *nodes) {
    const auto isAmong = [nodes](int node) {
        return (node == nodes[0]) | (node == nodes[1]) | (node == nodes[2]);
    };
    const int *own = triangle.GetNodeIdxPM();
    return (isAmong(own[0]) & isAmong(own[1]) & isAmong(own[2])) != 0;
}

} // namespace trunnion::detail
