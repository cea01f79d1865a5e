// Node normals of a mesh that has its facet normals, beside OpenMesh and Open3D.
#include <open3d/geometry/TriangleMesh.h>

#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>

#include "bench/peers/soups.h"
#include "trunnion/meshes/quad_arr.h"

namespace {

using OpenMeshMesh = OpenMesh::TriMesh_ArrayKernelT<>;

// The mesh with the facet normals that `mesh` has. Facets that would make the surface branch are
// left out, which OpenMesh tells on the error stream.
OpenMeshMesh makeOpenMesh(const bench::Patch &mesh) {
    OpenMeshMesh made;
    made.request_face_normals();
    made.request_vertex_normals();
    for (int i = 0; i < mesh.nodes.GetBoundM(); ++i) {
        const float *p = mesh.nodes.GetItemPM(i)->GetPntPM();
        made.add_vertex({p[0], p[1], p[2]});
    }
    for (int i = 0; i < mesh.triangles.GetBoundM(); ++i) {
        const TriangleCL &triangle = *mesh.triangles.GetItemPM(i);
        const int *nodes = triangle.GetNodeIdxPM();
        const auto facet =
            made.add_face(OpenMesh::VertexHandle(nodes[0]), OpenMesh::VertexHandle(nodes[1]),
                          OpenMesh::VertexHandle(nodes[2]));
        if (facet.is_valid()) {
            const float *n = triangle.GetNormPM();
            made.set_normal(facet, {n[0], n[1], n[2]});
        }
    }
    return made;
}

open3d::geometry::TriangleMesh makeOpen3D(const bench::Patch &mesh) {
    open3d::geometry::TriangleMesh made;
    for (int i = 0; i < mesh.nodes.GetBoundM(); ++i) {
        const float *p = mesh.nodes.GetItemPM(i)->GetPntPM();
        made.vertices_.emplace_back(p[0], p[1], p[2]);
    }
    for (int i = 0; i < mesh.triangles.GetBoundM(); ++i) {
        const TriangleCL &triangle = *mesh.triangles.GetItemPM(i);
        const int *nodes = triangle.GetNodeIdxPM();
        const float *n = triangle.GetNormPM();
        made.triangles_.emplace_back(nodes[0], nodes[1], nodes[2]);
        made.triangle_normals_.emplace_back(n[0], n[1], n[2]);
    }
    return made;
}

template <class Vector>
bool isSameDirection(const float *normal, const Vector &other) {
    return bench::isNear(normal[0] * other[0] + normal[1] * other[1] + normal[2] * other[2], 1.0);
}

void nodeNormals(bench::Contest &contest, const bench::Soup &soup, double ratioToReach,
                 bool facetsAreAlike) {
    bench::Patch mesh = bench::meshOf(soup);
    OpenMeshMesh openMesh = makeOpenMesh(mesh);
    open3d::geometry::TriangleMesh open3d = makeOpen3D(mesh);
    const bool isSameMesh =
        openMesh.n_faces() == static_cast<std::size_t>(mesh.triangles.GetBoundM());
    const QuadArr noQuads;
    contest.items(mesh.nodes.GetBoundM(), "nodes");
    contest.ours([&] { mesh.nodes.CalculateNormByFaceviewLst(mesh.triangles, noQuads); });
    contest.peer("OpenMesh update_vertex_normals", ratioToReach,
                 [&] { openMesh.update_vertex_normals(); });
    contest.peer("Open3D ComputeVertexNormals", ratioToReach,
                 [&] { open3d.ComputeVertexNormals(); });
    contest.note("Open3D takes the facet normals anew, each as long as the facet is large: "
                 "compared on the grid only");
    contest.measure([&] {
        for (int i = 0; i < mesh.nodes.GetBoundM(); ++i) {
            const float *normal = mesh.nodes.GetItemPM(i)->GetNormalPM();
            const auto &weighted = open3d.vertex_normals_[static_cast<std::size_t>(i)];
            bench::require(!facetsAreAlike || isSameDirection(normal, weighted),
                           "node normals of Open3D");
            const auto &plain = openMesh.normal(OpenMesh::VertexHandle(i));
            bench::require(!isSameMesh || plain.norm() < 0.5F || isSameDirection(normal, plain),
                           "node normals of OpenMesh");
        }
    });
}

void nodeNormalsOfGrid(bench::Contest &contest) {
    nodeNormals(contest, bench::gridSoup(contest.size()), 1.0, true);
}

const bench::Row rows[] = {{"node normals", "grid", 125000, nodeNormalsOfGrid},
                           {"node normals", "grid", 1000000, nodeNormalsOfGrid}};
const bench::MeshRows meshRows("node normals",
                               [](bench::Contest &contest, const bench::Soup &soup) {
                                   nodeNormals(contest, soup, 2.0, false);
                               });

} // namespace
