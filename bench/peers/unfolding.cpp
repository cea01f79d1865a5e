// A strip of triangles laid flat, beside a parameterization by CGAL.
#include <utility>

#include <CGAL/Polygon_mesh_processing/measure.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/Surface_mesh_parameterization/LSCM_parameterizer_3.h>
#include <CGAL/Surface_mesh_parameterization/parameterize.h>

#include "bench/peers/soups.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/scalars.h"

namespace {

namespace parameterization = CGAL::Surface_mesh_parameterization;

using Kernel = CGAL::Simple_cartesian<double>;
using CgalMesh = CGAL::Surface_mesh<Kernel::Point_3>;

// A band of fields of two triangles each, bent into an open arc.
bench::Soup strip(int triangles) {
    const int fields = triangles / 2;
    const double step = 1.5 * std::numbers::pi / fields;
    const auto radius = static_cast<float>(0.01 * fields);
    const auto corner = [&](int column, int row) {
        const double angle = step * column;
        return bench::Point{radius * static_cast<float>(std::cos(angle)),
                            radius * static_cast<float>(std::sin(angle)),
                            0.04F * static_cast<float>(row)};
    };
    bench::Soup soup;
    for (int i = 0; i < fields; ++i) {
        for (const auto &[column, row] :
             {std::pair(i, 0), {i + 1, 0}, {i, 1}, {i + 1, 0}, {i + 1, 1}, {i, 1}}) {
            soup.push_back(corner(column, row));
        }
    }
    return soup;
}

CgalMesh makeCgalMesh(const bench::Patch &mesh) {
    CgalMesh made;
    for (int i = 0; i < mesh.nodes.GetBoundM(); ++i) {
        const float *p = mesh.nodes.GetItemPM(i)->GetPntPM();
        made.add_vertex({p[0], p[1], p[2]});
    }
    for (int i = 0; i < mesh.triangles.GetBoundM(); ++i) {
        const int *nodes = mesh.triangles.GetItemPM(i)->GetNodeIdxPM();
        const auto vertex = [nodes](int k) {
            return CgalMesh::Vertex_index(static_cast<CgalMesh::size_type>(nodes[k]));
        };
        made.add_face(vertex(0), vertex(1), vertex(2));
    }
    return made;
}

void unfoldStrip(bench::Contest &contest) {
    const bench::Patch mesh = bench::meshOf(strip(contest.size()));
    const int count = mesh.triangles.GetBoundM();
    XYCoordSysD noFrame{};
    noFrame.origin[0] = SL_DELETED_REAL;
    TriangleArr triangles;
    Point2DArr coordinates;
    int isWhole = 0;
    CgalMesh cgalMesh = makeCgalMesh(mesh);
    auto uv = cgalMesh.add_property_map<CgalMesh::Vertex_index, Kernel::Point_2>("v:uv").first;
    const auto boundary = CGAL::Polygon_mesh_processing::longest_border(cgalMesh).first;
    auto outcome = parameterization::ERROR_EMPTY_MESH;

    contest.items(count, "triangles");
    contest.growthLimit(13.0);
    contest.ours([&] { isWhole = triangles.GetTexCoordM(noFrame, &coordinates, mesh.nodes); },
                 [&] {
                     triangles = mesh.triangles;
                     coordinates.DelAllM();
                 });
    contest.peer("CGAL LSCM", contest.size() >= 100000 ? 20.0 : 0.0, [&] {
        outcome = parameterization::parameterize(
            cgalMesh, parameterization::LSCM_parameterizer_3<CgalMesh>(), boundary, uv);
    });
    contest.note("Ours keeps every length, which is compared with the mesh; LSCM keeps angles, up "
                 "to a scale");
    contest.measure([&] {
        bench::require(isWhole == 1 && outcome == parameterization::OK, "whole strip unfolded");
        for (int i = 0; i < 3 * count; ++i) {
            const int other = i - i % 3 + (i + 1) % 3;
            const int *corners = mesh.triangles.GetItemPM(i / 3)->GetNodeIdxPM();
            const float *a = mesh.nodes.GetItemPM(corners[i % 3])->GetPntPM();
            const float *b = mesh.nodes.GetItemPM(corners[other % 3])->GetPntPM();
            bench::require(
                bench::isNear(slDistance2(coordinates.GetItemPM(i), coordinates.GetItemPM(other)),
                              slDistance3(a, b)),
                "length of an unfolded edge");
        }
    });
}

const bench::Row rows[] = {{"GetTexCoordM", "strip", 10000, unfoldStrip},
                           {"GetTexCoordM", "strip", 100000, unfoldStrip}};

} // namespace
