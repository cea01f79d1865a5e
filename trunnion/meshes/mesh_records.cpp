// The mesh records: their forms on streams and files, and what they compute.
#include "trunnion/meshes/mesh_records.h"

#include <GL/gl.h>

#include <algorithm>

#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/line_io.h"
#include "trunnion/persistence/stream.h"

// NodeCL

void NodeCL::FmInputOzkFileM(TqIOCL *stream) {
    TqBaseCL::FmInputOzkFileM(stream);
    stream->InputPoint3DM(pnt);
    stream->InputPoint3DM(norm);
}

void NodeCL::FmOutputOzkFileM(TqIOCL *stream) const {
    TqBaseCL::FmOutputOzkFileM(stream);
    stream->OutputPoint3DM(pnt);
    stream->OutputPoint3DM(norm);
}

int NodeCL::FmReadOzkFileM(std::FILE *file) {
    TqBaseCL::FmReadOzkFileM(file);
    slFscanfPoint3D(file, "%f, %f, %f\n", pnt);
    slFscanfPoint3D(file, "%f, %f, %f\n", norm);
    return 1;
}

int NodeCL::FmWriteOzkFileM(std::FILE *file) {
    TqBaseCL::FmWriteOzkFileM(file);
    slFprintfPoint3D(file, "%16.8e,  %16.8e,  %16.8e\n", pnt);
    slFprintfPoint3D(file, "%16.8e,  %16.8e,  %16.8e\n", norm);
    return 1;
}

void NodeCL::GetPntM(float *const point) const {
    std::copy_n(pnt, 3, point);
}

void NodeCL::GetNormalM(float *const normal) const {
    std::copy_n(norm, 3, normal);
}

void NodeCL::GetNodeM(float *const point, float *const normal) {
    GetPntM(point);
    GetNormalM(normal);
}

void NodeCL::SetPntM(float *const point) {
    setPoint(point);
}

void NodeCL::SetNormM(float *const normal) {
    slNormalize(normal);
    setNormal(normal);
}

void NodeCL::SetNodeM(float *const point, float *const normal) {
    SetNormM(normal);
    SetPntM(point);
}

void NodeCL::DelItemM() {
    TqBaseCL::DelItemM();
    std::fill_n(pnt, 3, 0.0F);
    std::fill_n(norm, 3, 0.0F);
}

// By value, as callers are used to. NOLINTNEXTLINE(performance-unnecessary-value-param)
int NodeCL::CompareM(NodeCL other) const {
    return slIsEqualPoint3D(pnt, other.pnt);
}

void NodeCL::SetByMergeM(const NodeCL &other, int /*ignored*/) {
    *this = other;
}

void NodeCL::TransByMatrixM(const float *const m) {
    slMatrix16MultiPoint3(m, pnt);
    slMatrix16MultiVector3(m, norm);
}

// What triangles and quads share

namespace trunnion::detail {

template <int corners>
void Facet<corners>::FmInputOzkFileM(TqIOCL *stream) {
    TqBaseCL::FmInputOzkFileM(stream);
    if constexpr (corners == 4) {
        stream->InputDM(nodeIdx, nodeIdx + 1, nodeIdx + 2, nodeIdx + 3);
    } else if (stream->GetIoTypeM() == binaryStream) {
        stream->InputInt3DM(nodeIdx);
    } else {
        stream->InputDM(nodeIdx, nodeIdx + 1, nodeIdx + 2);
    }
    stream->InputPoint3DM(norm);
    stream->InputCM(&normType);
}

template <int corners>
void Facet<corners>::FmOutputOzkFileM(TqIOCL *stream) const {
    TqBaseCL::FmOutputOzkFileM(stream);
    if constexpr (corners == 4) {
        stream->OutputDM(nodeIdx, nodeIdx + 1, nodeIdx + 2, nodeIdx + 3);
    } else if (stream->GetIoTypeM() == binaryStream) {
        stream->OutputInt3DM(nodeIdx);
    } else {
        stream->OutputDM(nodeIdx, nodeIdx + 1, nodeIdx + 2);
    }
    stream->OutputPoint3DM(norm);
    stream->OutputCM(&normType);
}

template <int corners>
int Facet<corners>::FmReadOzkFileM(std::FILE *file) {
    TqBaseCL::FmReadOzkFileM(file);
    for (int i = 0; i < corners - 1; ++i) {
        slFscanfD(file, "%d, ", nodeIdx + i);
    }
    slFscanfD(file, "%d\n", nodeIdx + corners - 1);
    slFscanfPoint3D(file, "%f,%f,%f\n", norm);
    slFscanfC(file, "%d\n", &normType);
    return 1;
}

template <int corners>
int Facet<corners>::FmWriteOzkFileM(std::FILE *file) {
    writeText(file, norm);
    return 1;
}

template <int corners>
void Facet<corners>::writeText(std::FILE *file, const float *normal) const {
    TqBaseCL::FmWriteOzkFileM(file);
    for (int i = 0; i < corners - 1; ++i) {
        slFprintfD(file, "%10d,  ", nodeIdx[i]);
    }
    slFprintfD(file, "%10d\n", nodeIdx[corners - 1]);
    slFprintfPoint3D(file, "%16.8e,%16.8e,%16.8e\n", normal);
    slFprintfC(file, "%d\n", normType);
}

template <int corners>
int Facet<corners>::SetNormM(float *const normal) {
    std::copy_n(normal, 3, norm);
    normType = 1;
    return 1;
}

template <int corners>
int Facet<corners>::GetNormM(float *const normal) const {
    std::copy_n(norm, 3, normal);
    return 1;
}

template <int corners>
int Facet<corners>::GetNormTypeM(char *type) const {
    *type = normType;
    return 1;
}

template <int corners>
void Facet<corners>::NegativeNormalVectM() {
    for (float &component : norm) {
        component = -component;
    }
}

template <int corners>
void Facet<corners>::TransByMatrixM(const float *const m) {
    slMatrix16MultiVector3(m, norm);
}

template <int corners>
int Facet<corners>::MakeNewIdxM(const IntArr &map) {
    for (int &node : nodeIdx) {
        map.GetItemM(&node, node);
    }
    return 1;
}

template <int corners>
int Facet<corners>::ResetNodeIdxM(const IntArr &map) {
    MakeNewIdxM(map);
    return isDegenerate() ? 0 : 1;
}

template class Facet<3>;
template class Facet<4>;

} // namespace trunnion::detail

// TriangleCL

TriangleCL::~TriangleCL() = default;

void TriangleCL::GetTriangleM(int *idx) {
    std::copy_n(nodeIdx, 3, idx);
}

void TriangleCL::SetTriangleM(int *idx) {
    std::copy_n(idx, 3, nodeIdx);
}

void TriangleCL::SetTriangleM(int idx0, int idx1, int idx2) {
    nodeIdx[0] = idx0;
    nodeIdx[1] = idx1;
    nodeIdx[2] = idx2;
}

void TriangleCL::SetValueM(int idx0, int idx1, int idx2, const float *const normal) {
    SetTriangleM(idx0, idx1, idx2);
    std::copy_n(normal, 3, norm);
    normType = 1;
}

int TriangleCL::ModifyM(int *idx, float *const normal) {
    SetDeleteTagM(TAG_AVAILABLE);
    SetTriangleM(idx);
    return SetNormM(normal);
}

int TriangleCL::FindTriangleM(const int *const idx) {
    return std::is_permutation(nodeIdx, nodeIdx + 3, idx) ? 1 : 0;
}

int TriangleCL::FindEdgeM(int a, int b) {
    for (int i = 0; i < 3; ++i) {
        const int from = nodeIdx[i];
        const int to = nodeIdx[(i + 1) % 3];
        if ((from == a && to == b) || (from == b && to == a)) {
            return 1;
        }
    }
    return 0;
}

int TriangleCL::GetIdxM(int node) {
    const int position = positionOf(node);
    return position >= 0 ? position : SL_DELETED_INT;
}

void TriangleCL::GetOtherTwoIdxI(int position, int *const others) {
    if (position < 0 || position > 2) {
        return;
    }
    others[0] = nodeIdx[position == 0 ? 1 : 0];
    others[1] = nodeIdx[position == 2 ? 1 : 2];
}

void TriangleCL::ShowM(const Point3DArr &points) const {
    float vertices[3][3] = {};
    for (int i = 0; i < 3; ++i) {
        points.GetItemM(vertices[i], nodeIdx[i]);
    }
    glBegin(GL_TRIANGLES);
    glNormal3fv(norm);
    for (const float *vertex : vertices) {
        glVertex3fv(vertex);
    }
    glEnd();
}

void TriangleCL::ExportTriangleDBFIleM(std::FILE *file, const float *const m) const {
    float turned[3];
    slMatrix16MultiVector3(m, norm, turned);
    writeText(file, turned);
}

// QuadCL

QuadCL::~QuadCL() = default;

void QuadCL::GetQuadM(int *idx) {
    std::copy_n(nodeIdx, 4, idx);
}

void QuadCL::SetQuadM(int *idx) {
    std::copy_n(idx, 4, nodeIdx);
}

int QuadCL::SetQuadM(int idx0, int idx1, int idx2, int idx3) {
    nodeIdx[0] = idx0;
    nodeIdx[1] = idx1;
    nodeIdx[2] = idx2;
    nodeIdx[3] = idx3;
    return 1;
}

void QuadCL::SetNormTypeM(char type) {
    setNormType(type);
}

int QuadCL::ModifyM(int *idx) {
    SetDeleteTagM(TAG_AVAILABLE);
    SetQuadM(idx);
    SetNormTypeM(0);
    return 1;
}

void QuadCL::ExportQuadDBFileM(std::FILE *file) const {
    writeText(file, norm);
}
