// QuadArr: the quad list of a mesh.
//
// A quad is four nodes in cyclic order; the diagonals are no edges. Its scans work as those of
// TriangleArr: every slot below the bound, deleted ones too, in ascending order. JudgeBoundM,
// GetOneNeighbourPntM and when an index takes the place of the scans stand in meshes/facet_arr.h;
// what the list shares with the others, streams included, in containers/item_array.h.
#pragma once

#include "trunnion/containers/item_array.h"
#include "trunnion/meshes/facet_arr.h"
#include "trunnion/meshes/mesh_records.h"

TRUNNION_EXTERN_TEMPLATE(class ItemArr<QuadCL>);
TRUNNION_EXTERN_TEMPLATE(class trunnion::detail::FacetArr<QuadCL>);

class TRUNNION_API QuadArr : public trunnion::detail::FacetArr<QuadCL> {
public:
    QuadArr() = default;
    QuadArr(const QuadArr &) = default;
    QuadArr &operator=(const QuadArr &) = default;
    ~QuadArr() override;

    // Appends the quad. In spite of the name neither a degenerate nor a duplicate one is refused.
    int MergeQuadLstM(QuadCL quad);
    // Inserts a live quad in front of slot `idx`, in spite of the name; at or past the bound it is
    // stored at `idx`. Its normal type is 0. A negative `idx` does nothing.
    int ModifyM(int idx, int *nodes);
    // In every quad the first position that holds `oldNode`, and only that one, takes `newNode`. A
    // quad that becomes degenerate stays.
    void ChangeNodeIdxM(int oldNode, int newNode);
    // Renumbers the live quads: node i becomes map[i], or SL_DELETED_INT outside the map. What
    // becomes degenerate goes, and so does every slot that is not live; order is kept. A list that
    // falls from 5 slots or more to 4 or fewer returns to its inline slots.
    void ResetNodeIdxM(const IntArr &map);
    // Turns all normals round.
    void NegativeNormalVectM();
    // Turns all normals by the matrix `m`, float[16].
    void TransByMatrixM(const float *const m);

    // Text files, as in TriangleArr: reading, writing all slots under the name "QUAD", and writing
    // the live ones under the name "Quad".
    int FmReadQuadLstM(std::FILE *file);
    int FmWriteQuadLstToFileM(std::FILE *file);
    void ExportQuadLstDBFileM(std::FILE *file) const;
};
