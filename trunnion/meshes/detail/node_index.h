// The keys of nodes in an index: cells of a grid in space.
#pragma once

#include <algorithm>
#include <cmath>

#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/detail/merge_index.h"
#include "trunnion/meshes/mesh_records.h"

namespace trunnion::detail {

// Edge of a cell. Much longer than the tolerance, so that a search seldom touches more than one
// cell, and short enough that few nodes of a mesh share one.
inline constexpr double nodeCellSize = 64.0 * SL_ZERO_D;
// Points that are the same to slIsEqualPoint3D are nearer than this in every coordinate. Twice the
// tolerance: far more than any rounding in the search.
inline constexpr double nodeReach = 2.0 * SL_ZERO_D;

// Number of the cell along one axis; it never falls while the coordinate rises, which is all that
// a search relies on. The limits keep it an integer.
inline long long nodeCell(double coordinate) {
    return static_cast<long long>(std::clamp(std::floor(coordinate / nodeCellSize), -9e18, 9e18));
}

inline bool isFinitePoint(const float *point) {
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

// Enters a node that a merge may find: a live one. A point that is not finite equals none.
inline void enterNode(MergeIndex &index, const NodeCL &node, int slot) {
    const float *point = node.GetPntPM();
    if (node.IsAvailableM() == TAG_AVAILABLE && isFinitePoint(point)) {
        index.enter(hashKey(nodeCell(point[0]), nodeCell(point[1]), nodeCell(point[2])), slot);
    }
}

// The lowest slot of the index whose node has the point of `node`, or -1.
inline int lowestSamePoint(const SlotChains &slots, const NodeCL *nodes, const NodeCL &node) {
    const float *point = node.GetPntPM();
    int lowest = -1;
    if (!isFinitePoint(point)) {
        return lowest;
    }
    long long from[3];
    long long to[3];
    for (int axis = 0; axis < 3; ++axis) {
        from[axis] = nodeCell(point[axis] - nodeReach);
        to[axis] = nodeCell(point[axis] + nodeReach);
    }
    const auto propose = [&](int slot) {
        if ((lowest < 0 || slot < lowest) && slIsEqualPoint3D(nodes[slot].GetPntPM(), point) != 0) {
            lowest = slot;
        }
    };
    for (long long x = from[0]; x <= to[0]; ++x) {
        for (long long y = from[1]; y <= to[1]; ++y) {
            for (long long z = from[2]; z <= to[2]; ++z) {
                slots.visit(hashKey(x, y, z), propose);
            }
        }
    }
    return lowest;
}

} // namespace trunnion::detail
