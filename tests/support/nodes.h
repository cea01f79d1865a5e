// Node lists for the tests of meshes.
#pragma once

#include <array>
#include <vector>

#include "trunnion/meshes/node_arr.h"

namespace test {

using Vector = std::array<float, 3>;

// A list with one live node, of the tag 31, at each point.
inline NodeArr nodesAt(const std::vector<Vector> &points) {
    NodeArr nodes;
    for (Vector point : points) {
        NodeCL node(31);
        node.SetPntM(point.data());
        nodes.AddItemM(node);
    }
    return nodes;
}

} // namespace test
