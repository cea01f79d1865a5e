// Quad lists.
#include "trunnion/meshes/quad_arr.h"

#include <algorithm>

#include "trunnion/containers/detail/item_array_impl.h"
#include "trunnion/meshes/detail/facet_lists.h"

template class ItemArr<QuadCL>;

QuadArr::~QuadArr() = default;

// By value, as callers are used to. NOLINTNEXTLINE(performance-unnecessary-value-param)
int QuadArr::MergeQuadLstM(QuadCL quad) {
    AddItemM(quad);
    return 1;
}

int QuadArr::ModifyM(int idx, int *nodes) {
    QuadCL quad;
    quad.ModifyM(nodes);
    InsertItemM(quad, idx);
    return 1;
}

void QuadArr::ChangeNodeIdxM(int oldNode, int newNode) {
    std::for_each_n(changedItems(), bound,
                    [=](QuadCL &quad) { quad.replaceNode(oldNode, newNode); });
}

void QuadArr::ResetNodeIdxM(const IntArr &map) {
    available -= trunnion::detail::renumberFacets(changedItems(), bound, map);
    closeGapsOrMoveInline();
}

void QuadArr::NegativeNormalVectM() {
    std::for_each_n(changedItems(), bound, [](QuadCL &quad) { quad.NegativeNormalVectM(); });
}

void QuadArr::TransByMatrixM(const float *const m) {
    std::for_each_n(changedItems(), bound, [m](QuadCL &quad) { quad.TransByMatrixM(m); });
}

int QuadArr::JudgeBoundM(int a, int b, int *slot) const {
    return trunnion::detail::countEdge(items(), bound, a, b, slot);
}

int QuadArr::GetOneNeighbourPntM(int node) const {
    return trunnion::detail::nodeBehind(items(), bound, node);
}
