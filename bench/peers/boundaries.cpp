// All boundary loops of a mesh that is a plain list of facets, beside CGAL, which builds a halfedge
// mesh for it.
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include <CGAL/Polygon_mesh_processing/border.h>
#include <CGAL/Polygon_mesh_processing/polygon_soup_to_polygon_mesh.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>

#include "bench/peers/soups.h"

namespace {

namespace processing = CGAL::Polygon_mesh_processing;

using Triangles = std::vector<std::array<std::size_t, 3>>;
using CgalPoint = CGAL::Simple_cartesian<double>::Point_3;
using CgalMesh = CGAL::Surface_mesh<CgalPoint>;

struct Loops {
    int count = 0;
    int edges = 0;
    bool operator==(const Loops &) const = default;
};

// Edges of the loop that runs through node `from`; marks its nodes.
int walkLoop(const TriangleArr &triangles, int from, std::vector<char> &isSeen) {
    int pair[2] = {from, from};
    isSeen[static_cast<std::size_t>(from)] = 1;
    int previous = SL_DELETED_INT;
    int slot = 0;
    int edges = 0;
    while (triangles.GetOneBoundWithStIdxM(previous, pair, &slot) == 1) {
        ++edges;
        previous = std::exchange(pair[0], pair[1]);
        if (std::exchange(isSeen[static_cast<std::size_t>(pair[0])], 1) != 0) {
            break;
        }
    }
    return edges;
}

// Looks at every edge for whether it is a boundary, and follows the loop where it is a new one.
Loops findLoops(const TriangleArr &triangles, int nodeCount) {
    std::vector<char> isSeen(static_cast<std::size_t>(nodeCount));
    Loops loops;
    int slot = 0;
    for (int i = 0; i < triangles.GetBoundM(); ++i) {
        const int *nodes = triangles.GetItemPM(i)->GetNodeIdxPM();
        for (int k = 0; k < 3; ++k) {
            if (triangles.JudgeBoundM(nodes[k], nodes[(k + 1) % 3], &slot) == 1 &&
                isSeen[static_cast<std::size_t>(nodes[k])] == 0) {
                loops.edges += walkLoop(triangles, nodes[k], isSeen);
                ++loops.count;
            }
        }
    }
    return loops;
}

Loops findLoopsByCgal(const std::vector<CgalPoint> &points, const Triangles &triangles) {
    CgalMesh mesh;
    processing::polygon_soup_to_polygon_mesh(points, triangles, mesh);
    std::vector<CgalMesh::Halfedge_index> cycles;
    processing::extract_boundary_cycles(mesh, std::back_inserter(cycles));
    Loops loops;
    for (const CgalMesh::Halfedge_index cycle : cycles) {
        const auto around = CGAL::halfedges_around_face(cycle, mesh);
        loops.edges += static_cast<int>(std::distance(around.begin(), around.end()));
        ++loops.count;
    }
    return loops;
}

void boundaryLoops(bench::Contest &contest, const bench::Soup &soup) {
    const bench::Patch mesh = bench::meshOf(soup);
    std::vector<CgalPoint> points;
    for (int i = 0; i < mesh.nodes.GetBoundM(); ++i) {
        const float *p = mesh.nodes.GetItemPM(i)->GetPntPM();
        points.emplace_back(p[0], p[1], p[2]);
    }
    Triangles triangles;
    for (int i = 0; i < mesh.triangles.GetBoundM(); ++i) {
        const int *nodes = mesh.triangles.GetItemPM(i)->GetNodeIdxPM();
        triangles.push_back({static_cast<std::size_t>(nodes[0]), static_cast<std::size_t>(nodes[1]),
                             static_cast<std::size_t>(nodes[2])});
    }
    if (!processing::is_polygon_soup_a_polygon_mesh(triangles)) {
        contest.skip("CGAL has no mesh for a surface that branches");
        return;
    }
    TriangleArr list;
    Loops ours;
    Loops theirs;
    contest.items(static_cast<double>(triangles.size()), "triangles");
    contest.ours([&] { ours = findLoops(list, mesh.nodes.GetBoundM()); },
                 [&] { list = mesh.triangles; });
    contest.peer("CGAL build and extract_boundary_cycles", 2.0,
                 [&] { theirs = findLoopsByCgal(points, triangles); });
    contest.note("Ours asks JudgeBoundM for every edge of a list that was not asked before, then "
                 "walks");
    contest.measure([&] { bench::require(ours == theirs, "boundary loops"); });
}

void boundaryLoopsOfGrid(bench::Contest &contest) {
    boundaryLoops(contest, bench::gridSoup(contest.size()));
}

const bench::Row rows[] = {{"boundary loops", "grid", 125000, boundaryLoopsOfGrid},
                           {"boundary loops", "grid", 1000000, boundaryLoopsOfGrid}};
const bench::MeshRows meshRows("boundary loops", boundaryLoops);

} // namespace
