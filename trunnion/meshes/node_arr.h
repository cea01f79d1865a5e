// NodeArr: the node list of a mesh.
//
// Triangles and quads name nodes by their slots here, so what moves a node must rewrite every facet
// that names it; MergeNodesM and PurgeDeletedNodes do. What NodeArr shares with the other lists,
// streams included, stands in containers/item_array.h.
//
// Merging and the search for the nearest node keep an index each beside the list, once it pays: 10
// to 24 bytes a node for merging, 80 at most (containers/detail/point_cells.h), 23 to 30 for the
// nearest node (detail/nearest_nodes.h). The answers are those of the scans told here.
#pragma once

#include "trunnion/containers/detail/point_cells.h"
#include "trunnion/containers/detail/slot_finder.h"
#include "trunnion/containers/item_array.h"
#include "trunnion/meshes/detail/nearest_nodes.h"
#include "trunnion/meshes/mesh_records.h"

class QuadArr;
class TriangleArr;

TRUNNION_EXTERN_TEMPLATE(class ItemArr<NodeCL>);

class TRUNNION_API NodeArr : public ItemArr<NodeCL> {
public:
    NodeArr() = default;
    NodeArr(const NodeArr &) = default;
    NodeArr &operator=(const NodeArr &) = default;
    ~NodeArr() override;

    // One node for each point. *idx receives the first live node whose point is that of `node` to
    // NodeCL::CompareM, or the slot to which `node` was appended. Normals play no part: the first
    // node at a point keeps its own. Give a live node: one with another tag is stored and never
    // found. Constant time on the average in a list that merging, appending and deleting built.
    int MergeNodeLstM(const NodeCL &node, int *idx);
    // Takes the list as a polyline and deletes each node whose squared distance from the last one
    // kept, whatever its tag, is below SL_TINY; with `mode` 0 only if the dot product of both
    // normals is nearer to 1 than SL_ZERO, too. Then closes the gaps. Nodes that coincide without
    // being neighbours stay.
    void PurgeMultiSamePntsToOneM(int mode);
    // Copies the live node in slot `idx` of `source` to the same slot here, unless that is live
    // already. Any other `idx` changes nothing.
    int AddNodeByIndex(int idx, const NodeArr &source);

    // Searches. Each looks at the slots in ascending order, and of equal candidates the first wins.

    // Nearest live node to `point` by slDistance3: copied to `node`, and its slot is the result.
    // SL_DELETED_INT, with `node` untouched, when there is none nearer than SL_BIG. Log n on the
    // average where a list that only grows or loses nodes is searched many times.
    int GetNearestNodeM(NodeCL &node, const float *const point) const;
    // Lowers a running minimum: each node of the facet, live or not, that is nearer to `point` than
    // *distance sets *distance and *idx. The caller seeds both. Returns *idx.
    int GetNearestNodeM(float *distance, int *idx, const QuadCL &quad, const float *const point);
    int GetNearestNodeM(float *distance, int *idx, const TriangleCL &triangle,
                        const float *const point);
    // Walks `indexes`, a list of node slots without holes, from position *position on as long as
    // the next node is strictly nearer to `node`; *position receives where that ends. A start
    // outside the list changes nothing.
    void GetNearestNodeIdxM(const NodeCL &node, const IntArr &indexes, int *position) const;
    // Picks a node in a view: the matrix `view`, float[16], moves the nodes, and among the live
    // ones nearer to `pick` than `radius` in x and z the nearest wins. One that is less than
    // SL_ZERO behind it in squared distance takes its place if it is nearer in space. `point`
    // receives the node's own point; the result is its slot, or -1 with `point` untouched.
    int GetSelectedIdxM(const float *const view, const float *const pick, float radius,
                        float *const point) const;
    // Slot, live or not, of the node nearest to the corner at `point` of a frame with the axes a
    // and b: first by its distance along a, and of those that tie within SL_ZERO the one nearest
    // along b. Without a node *idx stays.
    void GetMinPntIdxM(const float *const point, const float *const a, const float *const b,
                       int *idx) const;
    // Extents of the live nodes: least and greatest dot product with each direction, as float[2].
    // Without a live node all are 0.
    void GetMaxMinM(float *direction0, float *direction1, float *direction2, float *extent0,
                    float *extent1, float *extent2) const;
    // Least x and least y of the live nodes; SL_BIG without one.
    void GetMinXY(float *minX, float *minY);
    // 1 if the live nodes lie on one line through the first of them, always so for fewer than
    // three; else 0. Directions are compared by slIsEqualPoint3D after they were turned to a
    // positive x: nodes on both sides of the first one count as not on a line where x is the same
    // for all.
    int IsOneLineM() const;

    // Reading. A slot that does not exist leaves the output untouched.

    // Point or normal of a slot, in use or not.
    void GetPntM(int idx, float *const point) const;
    void GetNormalM(int idx, float *const normal) const;
    // Point of a slot from 0 to bound - 1.
    void GetOnePntM(int idx, float *const point) const;
    // The vector from node `from` to node `to`, and the same turned round if its x is below 0.
    int GenerateVectorM(int to, int from, float *const vector) const;
    int GeneratePositiveVectorM(int to, int from, float *const vector) const;
    // Writes the points of all slots below the bound to the same slots of `points`.
    void GetPntLstM(Point3DArr *points) const;

    // Changing every slot below the bound, live or not.

    // Reverses the order of the slots. Normals stay.
    void InverseNodeLstM();
    // Reverses the order of the rows of a grid that is stored row by row. A grid for which there
    // are not enough slots stays.
    void InverseMeshNodeLstM(int rows, int columns);
    // Moves points and turns normals by the matrix `m`, float[16].
    void TransByMatrixM(const float *const m);
    // Moves the points only.
    void ScaleM(const float *const m);
    // Turns points and normals about the line through `point` with the unit direction `axis`;
    // `angle` in radians.
    void RotateM(const float *const point, const float *const axis, float angle);

    // Nodes and facets together.

    // Merges the nodes named at the positions first to last - 1 of `indexes` into the node at
    // `last`: the triangles take its number (TriangleArr::ChangeNodeIdxM), the nodes and their
    // entries are deleted. Positions outside the list, and first at or past last, change nothing.
    void MergeNodesM(IntArr *indexes, int first, int last, TriangleArr *triangles);
    // Closes the gaps of this list and of `indexes`, keeping the order, and renumbers the nodes in
    // `indexes` (its first entry of each) and in `triangles`. CMemoryException * is thrown, with
    // nothing changed, where the new numbers find no memory.
    void PurgeDeletedNodes(IntArr *indexes, TriangleArr *triangles);

    // Normals. A grid is a list of `rows` rows of `columns` nodes each, row by row.

    // Normal of the grid node at `row`, `column`: along the row cross down the column, by the
    // differences to the next nodes, backward in the last column and row. Where the neighbours
    // coincide (the sum of the magnitudes below 0.001), as at a pole, the diagonal takes their
    // place, or the normal of the node before in the row or column is taken over as it is at that
    // moment. Tags are not looked at. A grid that the list cannot hold, and a node outside it,
    // change nothing.
    int ReGenNormalVectM(int row, int column, int rows, int columns);
    // The normal of the facet's first corner, from its own points, into all its nodes; (1, 0, 0)
    // where the corner spans no plane. A node outside the list changes nothing. The facet's own
    // normal stays.
    int ReGenNormalVectM(const TriangleCL &triangle);
    int ReGenNormalVectM(const QuadCL &quad);
    // Every node that a triangle holds takes the normalised sum of the facet normals of all
    // triangles, live or not, that hold it, added in the order of their slots; the others keep
    // theirs. Quads are not consulted. One pass over the triangles and one over the nodes.
    int CalculateNormByFaceviewLst(const TriangleArr &triangles, const QuadArr &quads);
    // Turns the normals of the live nodes round.
    int NegativeNormalVectM();
    // Copies a normal into a node as it is. A slot that does not exist changes nothing.
    void SetNodeNormM(int idx, float *const normal);

    // Generators.

    // Appends the point x, y, z if x lies between -1e-8 and limits[0] and y between -1e-8 and
    // limits[1], all bounds excluded. While there is room, only the point of the slot at the bound
    // is written and the slot counted: its tag and normal are the caller's to prepare. In a full
    // list `scratch` takes the point, with 0.0001 for a z that is not above 0, and is appended. The
    // last three numbers are not read.
    void AddPntAndNormM(NodeCL &scratch, float *const limits, float x, float y, float z, float,
                        float, float);
    // Makes the list `n` live nodes from p to q at equal distances, with the normals that their
    // slots held. Returns 1; 0, and nothing changed, for n below 2.
    int GenIsometryNodesBtTowPntsM(int n, const float *const p, const float *const q);
    // Sweeps the list, one row, about the axis through `p` with the unit direction `axis`, n steps
    // to a full turn, angles in radians from a0 to a1. Part of a turn: the list is turned by a0 and
    // a row of its live nodes appended for each step, as many as come nearest to the span. A span
    // within 0.0001 of a full turn or beyond: n rows from where the list stands, and the start row
    // once more. Returns the number of steps and one: the rows of the list, but for the closing row
    // of a full turn. 0, and nothing changed, for n below 1; a negative span, or one that is no
    // number, gives no steps.
    int ExtendByRotateToCircleM(int n, const float *const p, const float *const axis, float a0,
                                float a1);

    // Reads a list from a text file, as TriangleArr reads one (its records are those of
    // NodeCL::FmWriteOzkFileM). The bound and the number of live items rise by one for each live
    // node read, the bound never past the slots that exist: with a record that is not live in the
    // list, nodes stand behind the bound.
    int FmReadNodeLstM(std::FILE *file);

private:
    void setNormal(int idx, const float *normal);
    void appendLive(const NodeArr &row);
    int setCornerNormal(const int *corners, int count);
    int firstSamePoint(const float *point);
    int nearestCorner(float *distance, int *idx, const int *corners, int count,
                      const float *point) const;

    trunnion::detail::SlotFinder<trunnion::detail::PointCells> samePoints;
    trunnion::detail::NearestNodes nearestNodes;
};

// Makes two profiles in the x-z plane, which run with falling z, comparable: afterwards *oa and *ob
// have the same number of nodes, and nodes in one slot the same z. Coincident neighbours are left
// out; both begin at the greater of the two first z; where one profile has a station and the other
// none, the other is interpolated, with a zero normal. The rest of the longer one is dropped.
// Returns 1; both outputs are empty if a profile is. The outputs must be different lists.
TRUNNION_API int UnitNodeLstM(const NodeArr &a, const NodeArr &b, NodeArr *oa, NodeArr *ob);
