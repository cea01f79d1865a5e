// What the library makes of loose triangles.
#pragma once

#include "bench/peers/soups.h"

namespace bench {

// The slot of the node of each corner.
inline void mergeCorners(const Soup &soup, NodeArr &nodes, std::vector<int> &slots) {
    for (std::size_t i = 0; i < soup.size(); ++i) {
        nodes.MergeNodeLstM(nodeAt(soup[i]), &slots[i]);
    }
}

inline void mergeTriangles(const std::vector<int> &slots, TriangleArr &triangles) {
    TriangleCL triangle(TAG_AVAILABLE);
    for (std::size_t i = 0; i < slots.size(); i += 3) {
        triangle.SetTriangleM(slots[i], slots[i + 1], slots[i + 2]);
        triangles.MergeTriangleLstM(triangle);
    }
}

// Whether two counts are equal or, where `tolerant`, differ by less than a thousandth: real meshes
// hold points that one rule merges and another does not.
inline bool isSameCount(std::size_t a, std::size_t b, bool tolerant) {
    const double difference = std::fabs(static_cast<double>(a) - static_cast<double>(b));
    return tolerant ? difference < 1e-3 * static_cast<double>(a) : a == b;
}

} // namespace bench
