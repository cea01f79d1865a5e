// What the lists of triangles and of quads share, over a run of facets: renumbering and scans. A
// scan visits the facets in ascending order and does not look at the tags.
#pragma once

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

// True if b stands next to the first place of a in the facet's cycle.
template <class Item>
bool holdsEdge(const Item &facet, int a, int b) {
    constexpr int corners = Item::cornerCount;
    const int *nodes = facet.GetNodeIdxPM();
    const int place = facet.positionOf(a);
    return place >= 0 &&
           (nodes[(place + 1) % corners] == b || nodes[(place + corners - 1) % corners] == b);
}

// Number of facets with the edge; *slot receives the highest and stays when there is none.
template <class Item>
int countEdge(const Item *facets, int count, int a, int b, int *slot) {
    int found = 0;
    for (int i = 0; i < count; ++i) {
        if (holdsEdge(facets[i], a, b)) {
            ++found;
            *slot = i;
        }
    }
    return found;
}

// The node behind `node` in the lowest facet that holds it, or SL_DELETED_INT.
template <class Item>
int nodeBehind(const Item *facets, int count, int node) {
    for (int i = 0; i < count; ++i) {
        const int place = facets[i].positionOf(node);
        if (place >= 0) {
            return facets[i].GetNodeIdxPM()[(place + 1) % Item::cornerCount];
        }
    }
    return SL_DELETED_INT;
}

} // namespace trunnion::detail
