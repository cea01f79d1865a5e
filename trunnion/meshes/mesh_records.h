// The records of a mesh: NodeCL, a point with a normal, and the facets TriangleCL and QuadCL, node
// indexes with a facet normal.
//
// A mesh is three parallel lists, NodeArr, TriangleArr and QuadArr; a facet names its nodes by
// their slots in the node list. The records hold no pointers and own nothing. They check nothing:
// no index is compared with a node list.
//
// A record built by default has the tag TAG_UNUSED and is not live; one built with 31
// (TAG_AVAILABLE) is. Points are in the caller's lengths. Operations that return an int return 1
// unless they say otherwise.
//
// FmWriteOzkFileM of a record is a member without const and hides the one of TqBaseCL instead of
// overriding it: a write through a TqBaseCL pointer gives the tag line alone.
#pragma once

#include <cstdio>
#include <cstring>

#include "trunnion/containers/item_base.h"
#include "trunnion/export.h"

class IntArr;
class NodeArr;
class Point2DArr;
class Point3DArr;

// A node: a point and a normal, which is of unit length only where it came in through SetNormM.
class TRUNNION_API NodeCL : public TqBaseCL {
public:
    static constexpr int recordBytes = 25; // tag, point, normal
    using PackedItem = NodeCL;

    NodeCL() = default;
    NodeCL(char tag) : TqBaseCL(tag) {}
    NodeCL(const NodeCL &) = default;
    NodeCL &operator=(const NodeCL &) = default;
    ~NodeCL() override = default;

    // Tag, point, normal through a stream. Throws the stream's codes.
    void FmInputOzkFileM(TqIOCL *stream) override;
    void FmOutputOzkFileM(TqIOCL *stream) const override;
    // The record as a binary stream holds it, recordBytes bytes.
    void pack(unsigned char *record) const {
        record[0] = static_cast<unsigned char>(deleteTag);
        std::memcpy(record + 1, pnt, sizeof pnt);
        std::memcpy(record + 13, norm, sizeof norm);
    }
    void unpack(const unsigned char *record) {
        deleteTag = static_cast<char>(record[0]);
        std::memcpy(pnt, record + 1, sizeof pnt);
        std::memcpy(norm, record + 13, sizeof norm);
    }
    // The same as three lines of a text file. What the file does not hold stays as it was.
    int FmReadOzkFileM(std::FILE *file) override;
    int FmWriteOzkFileM(std::FILE *file);

    // Copy out. GetNodeM gives the point, then the normal.
    void GetPntM(float *const point) const;
    void GetNormalM(float *const normal) const;
    void GetNodeM(float *const point, float *const normal);
    // The point itself, float[3]; valid as long as the node.
    const float *GetPntPM() const { return pnt; }
    const float *GetNormalPM() const { return norm; }

    // Copies the point in.
    void SetPntM(float *const point);
    // Copy in as they are, value by value: what was computed just before is then taken from where
    // it is, while a copy of several values at once would wait until all of them are in memory.
    void setPoint(const float *point) {
        pnt[0] = point[0];
        pnt[1] = point[1];
        pnt[2] = point[2];
    }
    void setNormal(const float *normal) {
        norm[0] = normal[0];
        norm[1] = normal[1];
        norm[2] = normal[2];
    }
    // Normalises the caller's vector in place, then copies it in. A vector without direction
    // becomes (1, 0, 0).
    void SetNormM(float *const normal);
    // SetNormM of the normal and SetPntM of the point.
    void SetNodeM(float *const point, float *const normal);
    // Makes the tag TAG_DELETED and clears point and normal.
    void DelItemM();

    // 1 if both points are the same to slIsEqualPoint3D, else 0. Normals and tags play no part.
    int CompareM(NodeCL other) const;
    // Assignment; the number is ignored.
    void SetByMergeM(const NodeCL &other, int ignored);
    // Moves the point by the matrix `m`, float[16], and turns the normal, which is not normalised
    // again.
    void TransByMatrixM(const float *const m);

private:
    float pnt[3] = {};
    float norm[3] = {};
};

namespace trunnion::detail {

// What a triangle and a quad have in common: normal type, facet normal and node indexes.
//
// The normal type is 1 once a normal was stored and 0 before; the library carries it and never asks
// for it. The node indexes are SL_DELETED_INT by default. A facet of which two indexes are equal is
// degenerate; nothing forbids one.
template <int corners>
class TRUNNION_API Facet : public TqBaseCL {
public:
    static constexpr int cornerCount = corners;
    static constexpr int recordBytes = 1 + 4 * corners + 12 + 1; // tag, indexes, normal, its type

    ~Facet() override = default;

    // Tag, node indexes, normal, normal type through a stream. Throws the stream's codes.
    void FmInputOzkFileM(TqIOCL *stream) override;
    void FmOutputOzkFileM(TqIOCL *stream) const override;
    // The record as a binary stream holds it, recordBytes bytes.
    void pack(unsigned char *record) const {
        record[0] = static_cast<unsigned char>(deleteTag);
        std::memcpy(record + 1, nodeIdx, sizeof nodeIdx);
        std::memcpy(record + 1 + sizeof nodeIdx, norm, sizeof norm);
        record[recordBytes - 1] = static_cast<unsigned char>(normType);
    }
    void unpack(const unsigned char *record) {
        deleteTag = static_cast<char>(record[0]);
        std::memcpy(nodeIdx, record + 1, sizeof nodeIdx);
        std::memcpy(norm, record + 1 + sizeof nodeIdx, sizeof norm);
        normType = static_cast<char>(record[recordBytes - 1]);
    }
    // The same as four lines of a text file. What the file does not hold stays as it was.
    int FmReadOzkFileM(std::FILE *file) override;
    int FmWriteOzkFileM(std::FILE *file);

    // Copies the normal in as it is and makes the normal type 1.
    int SetNormM(float *const normal);
    int GetNormM(float *const normal) const;
    int GetNormTypeM(char *type) const;
    // Turns the normal round; its type stays.
    void NegativeNormalVectM();
    // Turns the normal by the matrix `m`, float[16]; the indexes stay.
    void TransByMatrixM(const float *const m);
    // Makes the tag TAG_DELETED; a deleted facet keeps indexes and normal.
    void DelItemM() { TqBaseCL::DelItemM(); }

    // Replaces each node index by the map's entry for it; an index outside the map becomes
    // SL_DELETED_INT.
    int MakeNewIdxM(const IntArr &map);
    // The same. Returns 0 if two indexes are equal afterwards, otherwise 1.
    int ResetNodeIdxM(const IntArr &map);

    // The node indexes in the facet's order, and the normal; valid as long as the facet.
    const int *GetNodeIdxPM() const { return nodeIdx; }
    const float *GetNormPM() const { return norm; }

    // First position of a node, or -1.
    int positionOf(int node) const {
        for (int i = 0; i < corners; ++i) {
            if (nodeIdx[i] == node) {
                return i;
            }
        }
        return -1;
    }
    // Writes `newNode` to the first position that holds `oldNode`, and only there. False if none
    // does.
    bool replaceNode(int oldNode, int newNode) {
        const int position = positionOf(oldNode);
        if (position >= 0) {
            nodeIdx[position] = newNode;
        }
        return position >= 0;
    }
    bool isDegenerate() const {
        bool isSame = false;
        for (int i = 0; i < corners; ++i) {
            for (int k = i + 1; k < corners; ++k) {
                isSame |= nodeIdx[i] == nodeIdx[k];
            }
        }
        return isSame;
    }
    void setNormType(char type) { normType = type; }

protected:
    Facet() : Facet(TAG_UNUSED) {}
    explicit Facet(char tag) : TqBaseCL(tag) {
        for (int &node : nodeIdx) {
            node = SL_DELETED_INT;
        }
    }
    Facet(const Facet &) = default;
    Facet &operator=(const Facet &) = default;

    // The four lines with another normal than the facet's own.
    void writeText(std::FILE *file, const float *normal) const;

    char normType = 0;
    float norm[3] = {};
    int nodeIdx[corners];
};

TRUNNION_EXTERN_TEMPLATE(class Facet<3>);
TRUNNION_EXTERN_TEMPLATE(class Facet<4>);

} // namespace trunnion::detail

// A triangle. Its nodes by position: 0, 1, 2.
class TRUNNION_API TriangleCL : public trunnion::detail::Facet<3> {
public:
    using PackedItem = TriangleCL;

    TriangleCL() = default;
    TriangleCL(char tag) : Facet(tag) {}
    TriangleCL(const TriangleCL &) = default;
    TriangleCL &operator=(const TriangleCL &) = default;
    ~TriangleCL() override;

    // Read and write the node indexes, int[3], only.
    void GetTriangleM(int *idx);
    void SetTriangleM(int *idx);
    void SetTriangleM(int idx0, int idx1, int idx2);
    // Writes indexes and normal, with the normal type 1. The tag stays.
    void SetValueM(int idx0, int idx1, int idx2, const float *const normal);
    // The same, and makes the triangle live.
    int ModifyM(int *idx, float *const normal);

    // 1 if `idx`, int[3], are the triangle's nodes in any order, else 0.
    int FindTriangleM(const int *const idx);
    // 1 if nodes a and b stand at two positions of the triangle, else 0. An edge has no direction.
    int FindEdgeM(int a, int b);
    // First position of a node, or SL_DELETED_INT.
    int GetIdxM(int node);
    // The nodes at the two positions other than `position`, in ascending order of position. Any
    // other number than 0, 1, 2 writes nothing.
    void GetOtherTwoIdxI(int position, int *const others);

    // Unfolds the triangle, whose slot is `slot`, into the texture plane
    // (TriangleArr::GetTexCoordM): from the entries of the corners a and b, a pair (0, 1), (1, 2)
    // or (2, 0) of positions, it sets that of the third. The third corner keeps its distance from b
    // and, by slCalAngleTwoVects about the facet normal, the angle at b. Where the entries of a and
    // b coincide to slDistance2, the direction from b to a is that of the first axis. The three
    // vectors are not read and may be null. Other positions, and a triangle with a node outside
    // `nodes`, change nothing.
    void SetTexCoordM(int slot, int a, int b, const float *const unused1,
                      const float *const unused2, const float *const unused3, const NodeArr &nodes,
                      Point2DArr *coordinates);
    // Draws the triangle in the current OpenGL context: the facet normal and the three nodes, taken
    // from `points`, between glBegin and glEnd. The tag is not looked at.
    void ShowM(const Point3DArr &points) const;
    // The text form with the normal turned by the matrix `m`, float[16].
    void ExportTriangleDBFIleM(std::FILE *file, const float *const m) const;
};

// A quad: four nodes in cyclic order; the diagonals are no edges.
class TRUNNION_API QuadCL : public trunnion::detail::Facet<4> {
public:
    using PackedItem = QuadCL;

    QuadCL() = default;
    QuadCL(char tag) : Facet(tag) {}
    QuadCL(const QuadCL &) = default;
    QuadCL &operator=(const QuadCL &) = default;
    ~QuadCL() override;

    // Read and write the node indexes, int[4], only.
    void GetQuadM(int *idx);
    void SetQuadM(int *idx);
    int SetQuadM(int idx0, int idx1, int idx2, int idx3);
    // Stores any normal type.
    void SetNormTypeM(char type);
    // Writes the indexes and makes the quad live. The normal type becomes 0: the normal is no
    // longer that of the quad.
    int ModifyM(int *idx);

    // The text form, the same as FmWriteOzkFileM.
    void ExportQuadDBFileM(std::FILE *file) const;
};
