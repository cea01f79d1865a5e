// Node lists: lookup, merging and purging, transforms.
#include "trunnion/meshes/node_arr.h"

#include <cmath>
#include <utility>

#include "trunnion/containers/detail/item_array_impl.h"
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/triangle_arr.h"
#include "trunnion/persistence/detail/owned.h"

using trunnion::detail::dot;
using trunnion::detail::isFinitePoint;
using trunnion::detail::load3;
using trunnion::detail::squaredLength;
using trunnion::detail::store;
using trunnion::detail::toFloat;
using trunnion::detail::Vec3;

template class ItemArr<NodeCL>;

namespace {

bool isZeroVector(const float *vector) {
    constexpr float zero[3] = {};
    return slIsEqualPoint3D(vector, zero) != 0;
}

// What decides that a node of a polyline only repeats the one before it.
bool repeats(const NodeCL &anchor, const NodeCL &node, bool compareNormals) {
    if (!(slSquareDistance3(anchor.GetPntPM(), node.GetPntPM()) < SL_TINY)) {
        return false;
    }
    const double cosine = dot(load3(anchor.GetNormalPM()), load3(node.GetNormalPM()));
    return !compareNormals || std::fabs(cosine - 1.0) < SL_ZERO;
}

// Least and greatest dot product of points with a direction.
class Extent {
public:
    explicit Extent(const float *along) : direction(load3(along)) {}

    void add(const NodeCL &node, bool isFirst) {
        const double value = dot(load3(node.GetPntPM()), direction);
        least = isFirst || value < least ? value : least;
        greatest = isFirst || value > greatest ? value : greatest;
    }
    void get(float *extent) const {
        extent[0] = toFloat(least);
        extent[1] = toFloat(greatest);
    }

private:
    Vec3 direction;
    double least = 0.0;
    double greatest = 0.0;
};

} // namespace

NodeArr::~NodeArr() = default;

// Merging and purging

int NodeArr::MergeNodeLstM(const NodeCL &node, int *idx) {
    *idx = firstSamePoint(node.GetPntPM());
    if (*idx < 0) {
        *idx = AddItemM(node);
    }
    return 1;
}

int NodeArr::firstSamePoint(const float *point) {
    if (!isFinitePoint(point)) {
        return -1; // equal to none
    }
    const NodeCL *nodes = items();
    const Vec3 sought = load3(point);
    const auto livePoint = [nodes](int slot) {
        return isLive(nodes[slot]) ? nodes[slot].GetPntPM() : nullptr;
    };
    const auto isSame = [nodes, sought](int slot) { // what slIsEqualPoint3D tells
        return isLive(nodes[slot]) &&
               squaredLength(load3(nodes[slot].GetPntPM()) - sought) < SL_ZERO_SQR;
    };
    return samePoints.lowest(state(), point, livePoint, isSame);
}

void NodeArr::PurgeMultiSamePntsToOneM(int mode) {
    NodeCL *nodes = changedItems();
    int anchor = 0;
    for (int i = 1; i < bound; ++i) {
        if (repeats(nodes[anchor], nodes[i], mode == 0)) {
            nodes[i].DelItemM();
        } else {
            anchor = i;
        }
    }
    closeGaps();
    available = bound;
}

int NodeArr::AddNodeByIndex(int idx, const NodeArr &source) {
    if (source.holdsSlot(idx) && isLive(source.items()[idx]) &&
        !(holdsSlot(idx) && isLive(items()[idx]))) {
        SetItemM(source.items()[idx], idx);
    }
    return 1;
}

void NodeArr::MergeNodesM(IntArr *indexes, int first, int last, TriangleArr *triangles) {
    if (first < 0 || last >= indexes->GetBoundM()) {
        return;
    }
    int target = SL_DELETED_INT;
    indexes->GetItemM(&target, last);
    for (int position = first; position < last; ++position) {
        int node = SL_DELETED_INT;
        indexes->GetItemM(&node, position);
        triangles->ChangeNodeIdxM(node, target);
        DelItemM(node);
        indexes->DelItemM(position);
    }
}

// Ascending order makes the renumbering safe: a new number is below the old one, and whoever had it
// has been renumbered before or was deleted.
void NodeArr::PurgeDeletedNodes(IntArr *indexes, TriangleArr *triangles) {
    const auto newNumbers = trunnion::detail::allocateOwned<int[]>(
        static_cast<std::size_t>(bound) * sizeof(int)); // before anything changes: it may throw
    int target = 0;
    for (int i = 0; i < bound; ++i) {
        newNumbers[i] = isLive(items()[i]) ? target++ : i;
    }
    indexes->PurgeDeletedItemM();
    triangles->changeNodes(newNumbers.get(), bound);
    for (int position = 0; position < indexes->GetBoundM(); ++position) {
        int &node = (*indexes)[position];
        if (holdsSlot(node)) {
            // Only the first entry of a node changes.
            node = std::exchange(newNumbers[node], node);
        }
    }
    closeGaps();
    available = bound;
}

// Searches

int NodeArr::GetNearestNodeM(NodeCL &node, const float *const point) const {
    const int nearest = nearestNodes.find(state(), changeCount, items(), point);
    if (nearest >= 0) {
        node = items()[nearest];
    }
    return nearest;
}

int NodeArr::nearestCorner(float *distance, int *idx, const int *corners, int count,
                           const float *point) const {
    for (int i = 0; i < count; ++i) {
        if (!hasSlot(corners[i])) {
            continue;
        }
        const float candidate = slDistance3(items()[corners[i]].GetPntPM(), point);
        if (candidate < *distance) {
            *distance = candidate;
            *idx = corners[i];
        }
    }
    return *idx;
}

int NodeArr::GetNearestNodeM(float *distance, int *idx, const QuadCL &quad,
                             const float *const point) {
    return nearestCorner(distance, idx, quad.GetNodeIdxPM(), QuadCL::cornerCount, point);
}

int NodeArr::GetNearestNodeM(float *distance, int *idx, const TriangleCL &triangle,
                             const float *const point) {
    return nearestCorner(distance, idx, triangle.GetNodeIdxPM(), TriangleCL::cornerCount, point);
}

void NodeArr::GetNearestNodeIdxM(const NodeCL &node, const IntArr &indexes, int *position) const {
    // A slot that does not exist is as far away as a search can be.
    const auto distanceAt = [&](int place) {
        const int slot = *indexes.GetItemPM(place);
        return hasSlot(slot) ? slDistance3(node.GetPntPM(), items()[slot].GetPntPM()) : SL_BIG;
    };
    if (indexes.GetItemPM(*position) == nullptr) {
        return;
    }
    float distance = distanceAt(*position);
    if (!(distance < SL_BIG)) {
        return;
    }
    while (*position + 1 < indexes.GetBoundM()) {
        const float next = distanceAt(*position + 1);
        if (!(next < distance)) {
            return;
        }
        distance = next;
        ++*position;
    }
}

int NodeArr::GetSelectedIdxM(const float *const view, const float *const pick, float radius,
                             float *const point) const {
    const double limit = static_cast<double>(radius) * radius;
    double bestInView = limit;
    double bestInSpace = 2147483648.0;
    int selected = -1;
    for (int i = 0; i < bound; ++i) {
        if (!isLive(items()[i])) {
            continue;
        }
        float seen[3];
        slMatrix16MultiPoint3(view, items()[i].GetPntPM(), seen);
        const double x = static_cast<double>(seen[0]) - pick[0];
        const double z = static_cast<double>(seen[2]) - pick[2];
        const double inView = x * x + z * z;
        if (!(inView < limit)) {
            continue;
        }
        const float inSpace = slDistance3(pick, seen);
        if (inView < bestInView) {
            bestInView = inView;
        } else if (!(inView - bestInView < SL_ZERO) || !(inSpace < bestInSpace)) {
            continue;
        }
        bestInSpace = inSpace;
        selected = i;
    }
    if (selected >= 0) {
        items()[selected].GetPntM(point);
    }
    return selected;
}

void NodeArr::GetMinPntIdxM(const float *const point, const float *const a, const float *const b,
                            int *idx) const {
    double bestA = SL_BIG;
    double bestB = SL_BIG;
    for (int i = 0; i < bound; ++i) {
        const Vec3 offset = load3(items()[i].GetPntPM()) - load3(point);
        const double alongA = std::fabs(dot(offset, load3(a)));
        const double alongB = std::fabs(dot(offset, load3(b)));
        const bool qualifies = alongA < bestA || std::fabs(bestA - alongA) < SL_ZERO;
        if (qualifies && alongB < bestB) {
            *idx = i;
            bestB = alongB;
            bestA = alongA;
        }
    }
}

void NodeArr::GetMaxMinM(float *direction0, float *direction1, float *direction2, float *extent0,
                         float *extent1, float *extent2) const {
    Extent extents[3] = {Extent(direction0), Extent(direction1), Extent(direction2)};
    bool isFirst = true;
    for (int i = 0; i < bound; ++i) {
        if (!isLive(items()[i])) {
            continue;
        }
        for (Extent &extent : extents) {
            extent.add(items()[i], isFirst);
        }
        isFirst = false;
    }
    extents[0].get(extent0);
    extents[1].get(extent1);
    extents[2].get(extent2);
}

void NodeArr::GetMinXY(float *minX, float *minY) {
    *minX = SL_BIG;
    *minY = SL_BIG;
    for (int i = 0; i < bound; ++i) {
        if (isLive(items()[i])) {
            const float *point = items()[i].GetPntPM();
            *minX = point[0] < *minX ? point[0] : *minX;
            *minY = point[1] < *minY ? point[1] : *minY;
        }
    }
}

int NodeArr::IsOneLineM() const {
    if (available < 3) {
        return 1;
    }
    int origin = -1;
    bool hasReference = false;
    float reference[3];
    for (int i = 0; i < bound; ++i) {
        if (!isLive(items()[i])) {
            continue;
        }
        if (origin < 0) {
            origin = i;
            continue;
        }
        float direction[3];
        GeneratePositiveVectorM(origin, i, direction);
        if (isZeroVector(direction)) {
            continue;
        }
        slNormalize(direction);
        if (!hasReference) {
            std::copy_n(direction, 3, reference);
            hasReference = true;
        } else if (slIsEqualPoint3D(direction, reference) == 0) {
            return 0;
        }
    }
    return 1;
}

// Reading

void NodeArr::GetPntM(int idx, float *const point) const {
    if (hasSlot(idx)) {
        items()[idx].GetPntM(point);
    }
}

void NodeArr::GetNormalM(int idx, float *const normal) const {
    if (hasSlot(idx)) {
        items()[idx].GetNormalM(normal);
    }
}

void NodeArr::GetOnePntM(int idx, float *const point) const {
    GetPntM(idx, point);
}

int NodeArr::GenerateVectorM(int to, int from, float *const vector) const {
    if (hasSlot(to) && hasSlot(from)) {
        store(load3(items()[to].GetPntPM()) - load3(items()[from].GetPntPM()), vector);
    }
    return 1;
}

int NodeArr::GeneratePositiveVectorM(int to, int from, float *const vector) const {
    if (hasSlot(to) && hasSlot(from)) {
        GenerateVectorM(to, from, vector);
        if (vector[0] < 0.0F) {
            store(-load3(vector), vector);
        }
    }
    return 1;
}

void NodeArr::GetPntLstM(Point3DArr *points) const {
    points->IntialSizeM(bound);
    for (int i = 0; i < bound; ++i) {
        points->SetItemM(items()[i].GetPntPM(), i);
    }
}

// Changing the whole list

void NodeArr::InverseNodeLstM() {
    NodeCL *nodes = changedItems();
    std::reverse(nodes, nodes + bound);
}

void NodeArr::InverseMeshNodeLstM(int rows, int columns) {
    if (rows < 1 || columns < 1 || static_cast<long long>(rows) * columns > capacity) {
        return;
    }
    NodeCL *nodes = changedItems();
    for (int row = 0; row < rows / 2; ++row) {
        NodeCL *upper = nodes + static_cast<std::ptrdiff_t>(row) * columns;
        NodeCL *lower = nodes + static_cast<std::ptrdiff_t>(rows - 1 - row) * columns;
        std::swap_ranges(upper, upper + columns, lower);
    }
}

void NodeArr::TransByMatrixM(const float *const m) {
    std::for_each_n(changedItems(), bound, [m](NodeCL &node) { node.TransByMatrixM(m); });
}

void NodeArr::ScaleM(const float *const m) {
    std::for_each_n(changedItems(), bound, [m](NodeCL &node) {
        float moved[3];
        slMatrix16MultiPoint3(m, node.GetPntPM(), moved);
        node.SetPntM(moved);
    });
}

void NodeArr::RotateM(const float *const point, const float *const axis, float angle) {
    float m[16];
    slGetRotateMatrix(point, axis, angle, m);
    TransByMatrixM(m);
}
