// Triangle lists: building, renumbering, topology by scans.
#include "trunnion/meshes/triangle_arr.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "trunnion/containers/detail/item_array_impl.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/detail/facet_index.h"
#include "trunnion/meshes/detail/facet_lists.h"
#include "trunnion/meshes/node_arr.h"

using trunnion::detail::anyWithin;
using trunnion::detail::dot;
using trunnion::detail::enterTriangle;
using trunnion::detail::load3;
using trunnion::detail::MergeIndex;

template class ItemArr<TriangleCL>;

namespace {

bool holds(const int *nodes, int node) {
    return nodes[0] == node || nodes[1] == node || nodes[2] == node;
}

// True if all nodes of the triangle are among the three of `nodes`.
bool liesWithin(const TriangleCL &triangle, const int *nodes) {
    const int *own = triangle.GetNodeIdxPM();
    return holds(nodes, own[0]) && holds(nodes, own[1]) && holds(nodes, own[2]);
}

} // namespace

TriangleArr::~TriangleArr() = default;

// Building

// By value, as callers are used to. NOLINTNEXTLINE(performance-unnecessary-value-param)
int TriangleArr::MergeTriangleLstM(TriangleCL triangle) {
    if (triangle.isDegenerate()) {
        return 0;
    }
    const int *nodes = triangle.GetNodeIdxPM();
    const bool indexed =
        index.prepare({changeCount, writerMayLive, bound}, [this](MergeIndex &built, int slot) {
            enterTriangle(built, items()[slot], slot);
        });
    const bool isDuplicate =
        indexed ? anyWithin(index.slots(), nodes,
                            [&](int slot) { return liesWithin(items()[slot], nodes); })
                : FindTriangleM(nodes) >= 0;
    if (!isDuplicate) {
        const int slot = AddItemM(triangle);
        if (indexed) {
            enterTriangle(index, triangle, slot);
        }
    }
    index.finish(indexed, changeCount);
    return isDuplicate ? 0 : 1;
}

void TriangleArr::AddTriangleM(const int *const nodes, const float *const normal) {
    TriangleCL triangle(TAG_AVAILABLE);
    triangle.SetValueM(nodes[0], nodes[1], nodes[2], normal);
    AddItemM(triangle);
}

int TriangleArr::ModifyM(int idx, int *nodes, float *const normal) {
    TriangleCL triangle;
    triangle.ModifyM(nodes, normal);
    InsertItemM(triangle, idx);
    return 1;
}

// Deleting and renumbering

void TriangleArr::DelTriangleByVertexM(int node) {
    for (int i = 0; i < bound; ++i) {
        if (isLive(items()[i]) && items()[i].positionOf(node) >= 0) {
            DelItemM(i);
        }
    }
}

void TriangleArr::ChangeNodeIdxM(int oldNode, int newNode) {
    TriangleCL *triangles = changedItems();
    for (int i = 0; i < bound; ++i) {
        if (triangles[i].replaceNode(oldNode, newNode) && triangles[i].isDegenerate()) {
            DelItemM(i);
        }
    }
}

void TriangleArr::changeNodes(const int *newNumbers, int count) {
    // A triangle meets the steps that name its nodes whatever happens to the others, with one
    // exception: the last one leaves the list when it is deleted, the next one is then the last,
    // and only steps behind that one find it so.
    bool isLast = true;
    int leftAt = -1;
    for (int i = bound - 1; i >= 0; --i) {
        const int step = changeNodesOf(i, newNumbers, count, isLast ? leftAt : INT_MAX);
        isLast = isLast && step >= 0;
        if (isLast) {
            bound = i;
            leftAt = step;
        }
    }
}

int TriangleArr::changeNodesOf(int idx, const int *newNumbers, int count, int lastSince) {
    TriangleCL &triangle = changedItems()[idx];
    int steps[3];
    triangle.GetTriangleM(steps);
    std::sort(steps, steps + 3);
    const int *end = std::unique(steps, steps + 3); // a step changes one position
    for (const int *step = steps; step != end; ++step) {
        if (*step < 0 || *step >= count || newNumbers[*step] == *step) {
            continue;
        }
        triangle.replaceNode(*step, newNumbers[*step]);
        if (!triangle.isDegenerate()) {
            continue;
        }
        if (isLive(triangle)) {
            triangle.DelItemM();
            --available;
        }
        if (*step > lastSince) {
            return *step;
        }
    }
    return -1;
}

void TriangleArr::ResetNodeIdxM(const IntArr &map) {
    available -= trunnion::detail::renumberFacets(changedItems(), bound, map);
    closeGapsOrMoveInline();
}

void TriangleArr::PurgeDeletedTrianglesM() {
    if (available == bound) {
        return;
    }
    TriangleArr kept;
    for (int i = 0; i < bound; ++i) {
        if (isLive(items()[i])) {
            kept.AddItemM(items()[i]);
        }
    }
    *this = kept;
}

// Normals

void TriangleArr::ResetNormalTypeM() {
    std::for_each_n(changedItems(), bound, [](TriangleCL &triangle) { triangle.setNormType(0); });
}

void TriangleArr::NegativeNormalVectM() {
    std::for_each_n(changedItems(), bound,
                    [](TriangleCL &triangle) { triangle.NegativeNormalVectM(); });
}

void TriangleArr::TransByMatrixM(const float *const m) {
    std::for_each_n(changedItems(), bound,
                    [m](TriangleCL &triangle) { triangle.TransByMatrixM(m); });
}

void TriangleArr::GetMajorNormM(float *const normal) const {
    const TriangleCL &first = items()[0];
    const TriangleCL *firstOpposite = nullptr;
    int agreeing = 1;
    int opposite = 0;
    for (int i = 1; i < bound && available >= 3; ++i) {
        if (dot(load3(items()[i].GetNormPM()), load3(first.GetNormPM())) < 0.0) {
            firstOpposite = opposite == 0 ? items() + i : firstOpposite;
            ++opposite;
        } else {
            ++agreeing;
        }
    }
    (agreeing < opposite ? *firstOpposite : first).GetNormM(normal);
}

// Topology

int TriangleArr::JudgeBoundM(int a, int b, int *slot) const {
    return trunnion::detail::countEdge(items(), bound, a, b, slot);
}

int TriangleArr::GetOneBoundWithStIdxM(int previous, int *const pair, int *slot) const {
    const int current = pair[0];
    bool cameFromNeighbour = false;
    int count = 0;
    for (int i = 0; i < bound; ++i) {
        const int place = items()[i].positionOf(current);
        if (place < 0) {
            continue;
        }
        TriangleCL triangle = items()[i];
        int others[2];
        triangle.GetOtherTwoIdxI(place, others);
        for (const int next : others) {
            if (next == previous) {
                cameFromNeighbour = true;
                continue;
            }
            count = JudgeBoundM(current, next, slot);
            if (count == 1) {
                pair[1] = next;
                return 1;
            }
        }
    }
    if (cameFromNeighbour) {
        pair[1] = previous;
        return 1;
    }
    return count;
}

int TriangleArr::GetOneNeighbourPntM(int node) const {
    return trunnion::detail::nodeBehind(items(), bound, node);
}

// Finding triangles

int TriangleArr::FindTriangleM(const int *const nodes) const {
    for (int i = bound - 1; i >= 0; --i) {
        if (liesWithin(items()[i], nodes)) {
            return i;
        }
    }
    return -1;
}

int TriangleArr::FindTriangleM(const int *const nodes, int *slot) {
    for (int i = 0; i < bound; ++i) {
        if (std::is_permutation(nodes, nodes + 3, items()[i].GetNodeIdxPM())) {
            *slot = i;
            return 1;
        }
    }
    return 0;
}

void TriangleArr::FindTriangleM(int node, Int2DArr *found) const {
    for (int i = 0; i < bound; ++i) {
        const int entry[2] = {i, items()[i].positionOf(node)};
        if (entry[1] >= 0) {
            found->AddItemM(entry);
        }
    }
}

void TriangleArr::FindTriangleByVectM(const float *const vector, const NodeArr &nodes,
                                      const Int2DArr &found, int *position) const {
    double best = SL_BIG;
    // True if the edge was the best so far.
    const auto improves = [&](const float *from, const float *to) {
        float direction[3];
        slGetNormalVectBtPnts(from, to, direction);
        const double cosine = std::fabs(dot(load3(direction), load3(vector)));
        if (!(cosine < best)) {
            return false;
        }
        best = cosine;
        return true;
    };
    for (int i = 0; i < found.GetBoundM(); ++i) {
        const int *entry = found.GetItemPM(i);
        const TriangleCL *triangle = GetItemPM(entry[0]);
        if (triangle == nullptr || entry[1] < 0 || entry[1] >= TriangleCL::cornerCount) {
            continue;
        }
        // The two edges of a corner are tried in this order; the first that improves hides the
        // other.
        constexpr int otherCorners[3][2] = {{1, 2}, {0, 2}, {1, 0}};
        const int *idx = triangle->GetNodeIdxPM();
        const int *others = otherCorners[entry[1]];
        const NodeCL *corner = nodes.GetItemPM(idx[entry[1]]);
        const NodeCL *first = nodes.GetItemPM(idx[others[0]]);
        const NodeCL *second = nodes.GetItemPM(idx[others[1]]);
        if (corner == nullptr || first == nullptr || second == nullptr) {
            continue;
        }
        if (improves(corner->GetPntPM(), first->GetPntPM()) ||
            improves(corner->GetPntPM(), second->GetPntPM())) {
            *position = i;
        }
    }
}
