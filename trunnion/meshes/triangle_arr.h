// TriangleArr: the triangle list of a mesh.
//
// A mesh has no edge structure: which facets share an edge, where the boundary runs and which
// facets meet at a node is worked out by scans over the node indexes. A scan visits every slot
// below the bound in ascending order and, unless an operation says otherwise, does not look at the
// tag: a deleted triangle keeps its indexes and still takes part. PurgeDeletedTrianglesM takes it
// out. Indexes are not compared with a node list. When an index takes the place of the scans stands
// in meshes/facet_arr.h; what the list shares with the others, streams included, in
// containers/item_array.h.
//
// A triangle is degenerate when two of its indexes are equal. An edge has no direction.
#pragma once

#include "trunnion/containers/detail/slot_finder.h"
#include "trunnion/containers/item_array.h"
#include "trunnion/meshes/detail/triangle_chains.h"
#include "trunnion/meshes/facet_arr.h"
#include "trunnion/meshes/mesh_records.h"

class Int2DArr;
class NodeArr;
class Point2DArr;
struct XYCoordSysD;

TRUNNION_EXTERN_TEMPLATE(class ItemArr<TriangleCL>);
TRUNNION_EXTERN_TEMPLATE(class trunnion::detail::FacetArr<TriangleCL>);

class TRUNNION_API TriangleArr : public trunnion::detail::FacetArr<TriangleCL> {
public:
    TriangleArr() = default;
    TriangleArr(const TriangleArr &) = default;
    TriangleArr &operator=(const TriangleArr &) = default;
    ~TriangleArr() override;

    // Building.

    // Appends the triangle and returns 1. Returns 0 if it is degenerate or if all nodes of a slot,
    // deleted ones too, are among its own. Give a live triangle: another is stored and not counted.
    // Constant time on the average while nothing but merging happens in between, with an index of 6
    // to 12 bytes a triangle.
    int MergeTriangleLstM(TriangleCL triangle);
    // Appends a live triangle, indexes int[3], normal float[3], without any check.
    void AddTriangleM(const int *const nodes, const float *const normal);
    // Inserts a live triangle in front of slot `idx`, in spite of the name; at or past the bound it
    // is stored at `idx`. A negative `idx` does nothing.
    int ModifyM(int idx, int *nodes, float *const normal);

    // Deleting and renumbering.

    // Deletes every live triangle that uses the node.
    void DelTriangleByVertexM(int node);
    // In every triangle the first position that holds `oldNode`, and only that one, takes
    // `newNode`; a triangle that holds it and is degenerate afterwards is deleted.
    void ChangeNodeIdxM(int oldNode, int newNode);
    // Renumbers the live triangles: node i becomes map[i], or SL_DELETED_INT outside the map. What
    // becomes degenerate goes, and so does every slot that is not live; order is kept. A list that
    // falls from 5 slots or more to 4 or fewer returns to its inline slots.
    void ResetNodeIdxM(const IntArr &map);
    // Closes the gaps, if there are any; slot numbers change.
    void PurgeDeletedTrianglesM();

    // Normals, on every slot.

    // Makes all normal types 0.
    void ResetNormalTypeM();
    // Turns all normals round.
    void NegativeNormalVectM();
    // Turns all normals by the matrix `m`, float[16]. The nodes are NodeArr's to move.
    void TransByMatrixM(const float *const m);
    // The facet normal of the majority: that of slot 0, or the first opposite one if strictly more
    // normals than not point against it (dot product below 0). With fewer than three live triangles
    // that of slot 0.
    void GetMajorNormM(float *const normal) const;

    // Topology; JudgeBoundM and GetOneNeighbourPntM stand in FacetArr.

    // One step along the boundary of the mesh from node pair[0], reached from node `previous` (any
    // number that is no neighbour, on the first step): 1, with the next node in pair[1] and a slot
    // of the edge in *slot. The lowest slot with a boundary edge wins, in it the lower position;
    // where there is no other way the step goes back to `previous`. Without any step the result is
    // not 1 and pair[1] stays.
    int GetOneBoundWithStIdxM(int previous, int *const pair, int *slot) const;

    // Finding triangles.

    // Highest slot whose three nodes are all among the three of `nodes`, or -1.
    int FindTriangleM(const int *const nodes) const;
    // Lowest slot that holds the three nodes in any order: 1 and *slot, or 0.
    int FindTriangleM(const int *const nodes, int *slot);
    // Appends (slot, position of the node) for every triangle at a node to `found`.
    void FindTriangleM(int node, Int2DArr *found) const;
    // Of such a list: the list position of the triangle with an edge, leaving the node, that is
    // most nearly at a right angle to `vector`, float[3]. *position stays on an empty list; entries
    // that name no triangle, or nodes outside `nodes`, are passed over.
    void FindTriangleByVectM(const float *const vector, const NodeArr &nodes, const Int2DArr &found,
                             int *position) const;

    // Texture coordinates.

    // Lays the mesh flat: a start triangle is placed in the plane, then its neighbours are unfolded
    // one by one across the edges that they share, lengths and angles kept. Entry 3 t + p of
    // `coordinates` receives the point of the corner at position p of slot t, in the mesh's
    // lengths, so that a node may have another point in each of its triangles. Entries of slots
    // that are not reached stay. Before, `coordinates` grows by AddSizeM of three times the bound.
    //
    // Without a frame (the first float of `frame` is SL_DELETED_REAL) the start is slot 0, with its
    // first corner at (0, 0). With one, it is the triangle at the node nearest to the origin of the
    // frame (NodeArr::GetMinPntIdxM) that has an edge along the x axis there
    // (FindTriangleByVectM), turned about that node until the node's normal, which must have been
    // set, is that of the frame.
    //
    // A step leads from (i0, i1, i2) over the first of the edges (i0, i2), (i1, i0), (i2, i1) that
    // an unreached triangle has in its own order; the lowest slot wins. A neighbour of the opposite
    // winding is thus none. Where there is no step the walk goes on from the lowest slot that was
    // reached and is not finished; one that was deleted (tag 32) counts as reached.
    //
    // 1 when every live triangle was reached, 0 when some were not: they keep the tag 31. A
    // triangle that names a node outside `nodes` is not reached. 0 as well, and nothing placed, if
    // there is no start: an empty list, without a frame a slot 0 that is not live, with one a start
    // node without a triangle.
    //
    // The walk uses up the list: reached triangles end with the tag 37, 38 or 30, for one, two or
    // all edges tried, and none of them is live any more. Work on a copy to keep it. Cost n log n;
    // n squared where memory is short.
    int GetTexCoordM(const XYCoordSysD &frame, Point2DArr *coordinates, const NodeArr &nodes);

    // Text files, opened and closed by the caller; several lists may follow each other in one file.
    // A list is a head line with the number of records, for each record a line with its slot and
    // the record, and an end line. Nothing is reported and nothing thrown except for memory.

    // Reads a list of any name; give an empty one. The bound is raised to the number in the head,
    // each record goes to the slot that it names, with the tag that it has, and raises the number
    // of live items by one if it is live. (In a list that was not empty the count is added to, and
    // slots are overwritten.) A file that ends early leaves the rest as it was; a number above the
    // capacity that the rest of the file cannot hold counts as the largest that it can. A record
    // may name a slot behind that number, as in an export with gaps: it stands behind the bound,
    // though counted. One that names no slot of the list ends the reading in front of it.
    // Returns 1.
    int FmReadTriangleLstM(std::FILE *file);
    // Writes all slots below the bound under the name "TRIANGLE"; what is read back is the same
    // list. Returns 1.
    int FmWriteTriangleLstToFileM(std::FILE *file);
    // Writes the live slots only, under the name "Triangle", with their own slot numbers and with
    // the facet normals turned by the matrix `m`, float[16]. The head has the number of live items.
    void ExportTriangleLstDBFileM(std::FILE *file, const float *const m) const;

private:
    friend class NodeArr;

    // True if all nodes of a slot are among the three of `nodes`, which are different.
    bool hasWithin(const int *nodes);
    // ChangeNodeIdxM(i, newNumbers[i]) for every i below `count` whose new number is another, in
    // ascending order, in one pass. No new number may be above the old one.
    void changeNodes(const int *newNumbers, int count);
    // The steps of one triangle. Returns the first one above `lastSince` that deletes it, and takes
    // none behind it; -1 if there is none.
    int changeNodesOf(int idx, const int *newNumbers, int count, int lastSince);
    // Writes the slots that hold the node, ascending, to `slots`. Returns their number, or -1 if
    // there are more than `most`.
    int gatherAt(int node, int *slots, int most) const;

    trunnion::detail::SlotFinder<trunnion::detail::TriangleChains> mergedTriangles;
};
