// The normals of nodes from the normals of the facets around them.
#pragma once

#include "trunnion/containers/detail/vector_width.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/meshes/mesh_records.h"

namespace trunnion::detail {

// What the facets at a node add up to, and their number: a full vector, so that one addition enters
// a facet.
struct alignas(32) NormalSum {
    double x, y, z;
    double facets;

    NormalSum &operator+=(const NormalSum &other) {
        x += other.x;
        y += other.y;
        z += other.z;
        facets += other.facets;
        return *this;
    }
};

// The sum as a normal holds it, normalised, into the node.
void setNormalisedSum(const Vec3 &sum, NodeCL &node);

// Adds the normal of each triangle, in ascending order, to the sums of its nodes, then gives each
// node that a triangle holds its normalised sum. A triangle that names a node twice adds to it
// once; numbers of no node are passed over. `sums` has one for each node, each 0. `width` must not
// be beyond widestVectors().
void setNormalsBySums(const TriangleCL *triangles, int triangleCount, NodeCL *nodes, int nodeCount,
                      NormalSum *sums, VectorWidth width = widestVectors());

} // namespace trunnion::detail
