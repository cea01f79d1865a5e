#include "mesh.h"

#include "progress.h"
#include "trunnion/geometry/planes.h"

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
