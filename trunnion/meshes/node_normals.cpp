// Node normals, from a grid or from facets.
#include "trunnion/meshes/node_arr.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>

#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/detail/normal_sums.h"
#include "trunnion/meshes/triangle_arr.h"

using trunnion::detail::cross;
using trunnion::detail::load3;
using trunnion::detail::NormalSum;
using trunnion::detail::setNormalisedSum;
using trunnion::detail::store;
using trunnion::detail::Vec3;

namespace {

// The sum of magnitudes below which two grid nodes count as one.
constexpr float coincidence = std::bit_cast<float>(std::uint32_t{0x3A83126E});

bool coincide(const Vec3 &difference) {
    return std::fabs(difference.x) + std::fabs(difference.y) + std::fabs(difference.z) <
           coincidence;
}

// Sum of the facet normals of all triangles that hold the node, in the order of their slots. False
// if none does.
bool sumOfNormals(const TriangleArr &triangles, int node, Vec3 &sum) {
    bool held = false;
    sum = {0.0, 0.0, 0.0};
    for (int k = 0; k < triangles.GetBoundM(); ++k) {
        const TriangleCL &triangle = *triangles.GetItemPM(k);
        if (triangle.positionOf(node) >= 0) {
            sum = sum + load3(triangle.GetNormPM());
            held = true;
        }
    }
    return held;
}

} // namespace

void NodeArr::setNormal(int idx, const float *normal) {
    changedItems()[idx].setNormal(normal);
}

int NodeArr::ReGenNormalVectM(int row, int column, int rows, int columns) {
    const long long gridEnd = static_cast<long long>(rows) * columns;
    if (row < 0 || row >= rows || column < 0 || column >= columns || gridEnd > capacity) {
        return 1;
    }
    const int k = row * columns + column;
    const bool lastRow = row == rows - 1;
    const bool lastColumn = column == columns - 1;
    const auto difference = [this](int to, int from) {
        return hasSlot(to) && hasSlot(from)
                   ? load3(items()[to].GetPntPM()) - load3(items()[from].GetPntPM())
                   : Vec3{0.0, 0.0, 0.0};
    };
    const auto takeOver = [this, k](int from) {
        if (hasSlot(from)) {
            setNormal(k, items()[from].GetNormalPM());
        }
    };

    bool isComputed = true;
    Vec3 along = lastColumn ? difference(k, k - 1) : difference(k + 1, k);
    if (coincide(along)) {
        if (lastColumn || lastRow) {
            takeOver(lastColumn ? k - 1 : k - columns);
            isComputed = false;
        } else {
            along = difference(k + columns + 1, k);
        }
    }
    Vec3 down = lastRow ? difference(k, k - columns) : difference(k + columns, k);
    if (coincide(down)) {
        if (lastRow || lastColumn) {
            takeOver(lastRow ? k - columns : k - 1);
            return 1;
        }
        down = difference(k + columns + 1, k);
    }
    if (isComputed) {
        setNormalisedSum(cross(along, down), changedItems()[k]);
    }
    return 1;
}

// The facet's first corner lies between the first and the last of its other nodes: for a triangle
// P1 and P2, for a quad P1 and P3.
int NodeArr::setCornerNormal(const int *corners, int count) {
    for (int i = 0; i < count; ++i) {
        if (!hasSlot(corners[i])) {
            return 1;
        }
    }
    const Vec3 corner = load3(items()[corners[0]].GetPntPM());
    const Vec3 u = load3(items()[corners[1]].GetPntPM()) - corner;
    const Vec3 w = load3(items()[corners[count - 1]].GetPntPM()) - corner;
    setNormalisedSum(cross(u, w), changedItems()[corners[0]]);
    for (int i = 1; i < count; ++i) {
        setNormal(corners[i], items()[corners[0]].GetNormalPM());
    }
    return 1;
}

int NodeArr::ReGenNormalVectM(const TriangleCL &triangle) {
    return setCornerNormal(triangle.GetNodeIdxPM(), TriangleCL::cornerCount);
}

int NodeArr::ReGenNormalVectM(const QuadCL &quad) {
    return setCornerNormal(quad.GetNodeIdxPM(), QuadCL::cornerCount);
}

// One pass over the triangles in ascending slots adds to every node what a scan for that node would
// add, in the same order: the sums have the same bits. Without memory for the sums each node is
// scanned for.
int NodeArr::CalculateNormByFaceviewLst(const TriangleArr &triangles, const QuadArr & /*quads*/) {
    NodeCL *nodes = changedItems();
    const std::unique_ptr<NormalSum[]> sums(new (std::nothrow)
                                                NormalSum[static_cast<std::size_t>(bound)]());
    if (sums) {
        trunnion::detail::setNormalsBySums(triangles.items(), triangles.bound, nodes, bound,
                                           sums.get());
        return 1;
    }
    for (int i = 0; i < bound; ++i) {
        Vec3 sum;
        if (sumOfNormals(triangles, i, sum)) {
            setNormalisedSum(sum, nodes[i]);
        }
    }
    return 1;
}

int NodeArr::NegativeNormalVectM() {
    NodeCL *nodes = changedItems();
    for (int i = 0; i < bound; ++i) {
        if (isLive(nodes[i])) {
            float turned[3];
            store(-load3(nodes[i].GetNormalPM()), turned);
            nodes[i].setNormal(turned);
        }
    }
    return 1;
}

void NodeArr::SetNodeNormM(int idx, float *const normal) {
    if (hasSlot(idx)) {
        setNormal(idx, normal);
    }
}
