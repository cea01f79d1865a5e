#include "mesh.h"

#include <cstring>

#include "progress.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/persistence/compress_stream.h"

namespace {

int nodeAt(const Corner &corner, NodeArr &nodes) {
    Corner point = corner;
    NodeCL node(TAG_AVAILABLE);
    node.SetPntM(point.data());
    int idx = SL_DELETED_INT;
    nodes.MergeNodeLstM(node, &idx);
    return idx;
}

TriangleCL triangleOf(const Facet &facet, const std::array<int, 3> &idx) {
    float normal[3] = {0.0F, 0.0F, 0.0F};
    slPlaneNormal(facet[0].data(), facet[1].data(), facet[2].data(), normal);
    TriangleCL triangle(TAG_AVAILABLE);
    triangle.SetValueM(idx[0], idx[1], idx[2], normal);
    return triangle;
}

bool isDegenerate(const std::array<int, 3> &idx) {
    return idx[0] == idx[1] || idx[1] == idx[2] || idx[2] == idx[0];
}

template <class Value>
bool sameBits(const Value *a, const Value *b, int count) {
    return std::memcmp(a, b, sizeof(Value) * static_cast<std::size_t>(count)) == 0;
}

bool sameNode(const NodeCL &a, const NodeCL &b) {
    return a.IsAvailableM() == b.IsAvailableM() && sameBits(a.GetPntPM(), b.GetPntPM(), 3) &&
           sameBits(a.GetNormalPM(), b.GetNormalPM(), 3);
}

bool sameTriangle(const TriangleCL &a, const TriangleCL &b) {
    char typeA = 0;
    char typeB = 0;
    a.GetNormTypeM(&typeA);
    b.GetNormTypeM(&typeB);
    return a.IsAvailableM() == b.IsAvailableM() && typeA == typeB &&
           sameBits(a.GetNodeIdxPM(), b.GetNodeIdxPM(), 3) &&
           sameBits(a.GetNormPM(), b.GetNormPM(), 3);
}

// The first slot in which both lists differ, as text; empty if there is none.
template <class List, class Same>
std::string listDifference(const char *what, const List &a, const List &b, Same same) {
    if (a.GetBoundM() != b.GetBoundM() || a.GetAvailableNumM() != b.GetAvailableNumM()) {
        return std::string("the number of ") + what + "s";
    }
    for (int i = 0; i < a.GetBoundM(); ++i) {
        if (!same(*a.GetItemPM(i), *b.GetItemPM(i))) {
            return what + (" " + std::to_string(i));
        }
    }
    return {};
}

} // namespace

MergeCount mergeFacets(const Soup &soup, Mesh &mesh) {
    MergeCount count;
    Progress progress("merging", soup.size());
    for (std::size_t i = 0; i < soup.size(); ++i) {
        progress.show(i);
        const Facet &facet = soup[i];
        const std::array<int, 3> idx{nodeAt(facet[0], mesh.nodes), nodeAt(facet[1], mesh.nodes),
                                     nodeAt(facet[2], mesh.nodes)};
        if (isDegenerate(idx)) {
            ++count.degenerate;
        } else if (mesh.triangles.MergeTriangleLstM(triangleOf(facet, idx)) == 0) {
            ++count.duplicate;
        }
    }
    return count;
}

void save(const Mesh &mesh, const std::string &path) {
    TqCompressIOCL stream;
    stream.SetVersionNumM(mesh.version);
    stream.OpenM(path.c_str(), "wb");
    mesh.nodes.FmOutputOzkLstM(&stream, "NODE");
    mesh.triangles.FmOutputOzkLstM(&stream, "TRIANGLE");
    stream.FinishSaveM(1);
    stream.CloseM();
}

int load(Mesh &mesh, const std::string &path) {
    TqCompressIOCL stream;
    stream.OpenM(path.c_str(), "rb");
    stream.GetVersionNumM(&mesh.version);
    mesh.nodes.FmInputOzkLstM(&stream);
    mesh.triangles.FmInputOzkLstM(&stream);
    const int bytes = stream.GetFileLengthM();
    stream.CloseM();
    return bytes;
}

long long rawSize(const Mesh &mesh) {
    constexpr long long countBytes = 4; // in front of each list
    return countBytes + 1LL * NodeCL::recordBytes * mesh.nodes.GetBoundM() + countBytes +
           1LL * TriangleCL::recordBytes * mesh.triangles.GetBoundM();
}

std::string difference(const Mesh &a, const Mesh &b) {
    if (a.version != b.version) {
        return "the version number";
    }
    const std::string nodes = listDifference("node", a.nodes, b.nodes, sameNode);
    return nodes.empty() ? listDifference("triangle", a.triangles, b.triangles, sameTriangle)
                         : nodes;
}
