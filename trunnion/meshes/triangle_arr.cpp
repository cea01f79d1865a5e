// Triangle lists: building, renumbering, topology by scans.
#include "trunnion/meshes/triangle_arr.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/detail/facet_arr_impl.h"
#include "trunnion/meshes/node_arr.h"

using trunnion::detail::countEdgeAmong;
using trunnion::detail::dot;
using trunnion::detail::liesWithin;
using trunnion::detail::load3;

template class ItemArr<TriangleCL>;
template class trunnion::detail::FacetArr<TriangleCL>;

namespace {

// A step along the boundary, given the triangles at a node one by one. countEdge(next) is the
// number of triangles with the edge from the node to `next`.
template <class CountEdge>
class BoundaryStep {
public:
    BoundaryStep(int previousNode, CountEdge counter)
        : previous(previousNode), countEdge(counter) {}

    // True if a boundary edge of the triangle leads on.
    bool leadsOn(TriangleCL triangle, int current) {
        int others[2];
        triangle.GetOtherTwoIdxI(triangle.positionOf(current), others);
        return leadsTo(others[0]) || leadsTo(others[1]);
    }
    // The result of the step, with the next node in pair[1] if there is one.
    int finish(int *pair) const {
        if (count != 1 && !cameFromNeighbour) {
            return count;
        }
        pair[1] = count == 1 ? reached : previous;
        return 1;
    }

private:
    bool leadsTo(int next) {
        if (next == previous) {
            cameFromNeighbour = true;
            return false;
        }
        count = countEdge(next);
        reached = next;
        return count == 1;
    }

    const int previous;
    CountEdge countEdge;
    bool cameFromNeighbour = false;
    int count = 0; // of the edge that was tried last
    int reached = SL_DELETED_INT;
};

} // namespace

TriangleArr::~TriangleArr() = default;

// Building

// By value, as callers are used to. NOLINTNEXTLINE(performance-unnecessary-value-param)
int TriangleArr::MergeTriangleLstM(TriangleCL triangle) {
    if (triangle.isDegenerate() || hasWithin(triangle.GetNodeIdxPM())) {
        return 0;
    }
    AddItemM(triangle);
    return 1;
}

// The index of facets serves where other searches have it already, and where too many triangles
// share a node; otherwise an index for this search alone takes a fraction of its time.
bool TriangleArr::hasWithin(const int *nodes) {
    const auto *facetIndex = readyIndex();
    if (facetIndex != nullptr || mergedTriangles.current().isCrowded()) {
        if (facetIndex != nullptr) {
            mergedTriangles.drop();
        }
        return FindTriangleM(nodes) >= 0;
    }
    const TriangleCL *triangles = items();
    const auto nodesAt = [triangles](int slot) { return triangles[slot].GetNodeIdxPM(); };
    const auto matches = [triangles, nodes](int slot) {
        return liesWithin(triangles[slot], nodes);
    };
    return mergedTriangles.lowest(state(), nodes, nodesAt, matches) >= 0;
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
    changeAt(node, [this](int slot) {
        if (isLive(items()[slot])) {
            DelItemM(slot);
        }
    });
}

void TriangleArr::ChangeNodeIdxM(int oldNode, int newNode) {
    replaceNode(oldNode, newNode, [this](int slot) {
        if (items()[slot].isDegenerate()) {
            DelItemM(slot);
        }
    });
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

int TriangleArr::gatherAt(int node, int *slots, int most) const {
    int count = 0;
    anyAt(node, [&](int slot) {
        if (count < most) {
            slots[count] = slot;
        }
        return ++count > most;
    });
    return count <= most ? count : -1;
}

int TriangleArr::GetOneBoundWithStIdxM(int previous, int *const pair, int *slot) const {
    const int current = pair[0];
    // Every edge at the node is held by the triangles at the node. Without an index they are
    // gathered once, if they are not very many, instead of scanning for each edge.
    int around[64];
    const int aroundCount = searchIndex() == nullptr ? gatherAt(current, around, 64) : -1;
    if (aroundCount >= 0) {
        BoundaryStep step(previous, [&](int next) {
            return countEdgeAmong(items(), around, aroundCount, current, next, slot);
        });
        for (int i = 0; i < aroundCount && !step.leadsOn(items()[around[i]], current); ++i) {
        }
        return step.finish(pair);
    }
    BoundaryStep step(previous, [&](int next) { return JudgeBoundM(current, next, slot); });
    anyAt(current, [&](int i) { return step.leadsOn(items()[i], current); });
    return step.finish(pair);
}

// Finding triangles

int TriangleArr::FindTriangleM(const int *const nodes) const {
    if (const auto *found = searchIndex()) {
        return found->highestWithin(nodes);
    }
    int slot = bound - 1;
    while (slot >= 0 && !liesWithin(items()[slot], nodes)) {
        --slot;
    }
    noteScan(bound - 1 - slot);
    return slot;
}

int TriangleArr::FindTriangleM(const int *const nodes, int *slot) {
    const auto lowestEqual = [&] {
        if (const auto *found = searchIndex()) {
            return found->lowestEqual(nodes);
        }
        int i = 0;
        while (i < bound && !std::is_permutation(nodes, nodes + 3, items()[i].GetNodeIdxPM())) {
            ++i;
        }
        noteScan(i);
        return i < bound ? i : -1;
    };
    const int lowest = lowestEqual();
    *slot = lowest >= 0 ? lowest : *slot;
    return lowest >= 0 ? 1 : 0;
}

void TriangleArr::FindTriangleM(int node, Int2DArr *found) const {
    anyAt(node, [&](int slot) {
        const int entry[2] = {slot, items()[slot].positionOf(node)};
        found->AddItemM(entry);
        return false;
    });
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
