// Quad lists.
#include "trunnion/meshes/quad_arr.h"

#include <algorithm>

#include "trunnion/meshes/detail/facet_arr_impl.h"

template class ItemArr<QuadCL>;
template class trunnion::detail::FacetArr<QuadCL>;

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
    replaceNode(oldNode, newNode, [](int /*slot*/) {});
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
