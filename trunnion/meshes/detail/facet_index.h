// The keys of triangles in an index: the set of their nodes.
#pragma once

#include <algorithm>

#include "trunnion/meshes/detail/merge_index.h"
#include "trunnion/meshes/mesh_records.h"

namespace trunnion::detail {

// The key of a set of one to three nodes, given in any order and with any repetition.
inline std::uint64_t nodeSetKey(int a, int b, int c) {
    int nodes[3] = {a, b, c};
    std::sort(nodes, nodes + 3);
    if (nodes[0] == nodes[1]) {
        nodes[1] = nodes[2]; // two nodes are one key, whichever of them stood twice
    }
    return hashKey(nodes[0], nodes[1], nodes[2]);
}

// Enters every triangle: a deleted one still blocks its duplicate.
inline void enterTriangle(MergeIndex &index, const TriangleCL &triangle, int slot) {
    const int *nodes = triangle.GetNodeIdxPM();
    index.enter(nodeSetKey(nodes[0], nodes[1], nodes[2]), slot);
}

// True if a slot of the index passes `test`, which holds only for triangles with all their nodes
// among the three different ones of `nodes`. Degenerate triangles in the list have fewer than three
// nodes, so every part of the set is a key.
template <class Test>
bool anyWithin(const SlotChains &slots, const int *nodes, Test test) {
    const int a = nodes[0];
    const int b = nodes[1];
    const int c = nodes[2];
    const int sets[7][3] = {{a, b, c}, {a, b, b}, {a, c, c}, {b, c, c},
                            {a, a, a}, {b, b, b}, {c, c, c}};
    return std::any_of(sets, sets + 7, [&](const int *set) {
        bool found = false;
        slots.visit(nodeSetKey(set[0], set[1], set[2]),
                    [&](int slot) { found = found || test(slot); });
        return found;
    });
}

} // namespace trunnion::detail
