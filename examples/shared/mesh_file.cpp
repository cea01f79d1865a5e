#include "mesh_file.h"

#include <cstring>

#include "trunnion/persistence/compress_stream.h"

namespace {

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
