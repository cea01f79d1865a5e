// A mesh put together from loose triangles, nodes and facets, beside CGAL and Open3D. These merge
// points that are exactly equal, we those within the tolerance too.
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Polygon_mesh_processing/repair_polygon_soup.h>
#include <open3d/geometry/TriangleMesh.h>

#include "bench/peers/loose.h"

namespace {

using bench::Soup;
using CgalPoint = CGAL::Exact_predicates_inexact_constructions_kernel::Point_3;

struct PolygonSoup {
    std::vector<CgalPoint> points;
    std::vector<std::array<std::size_t, 3>> triangles;
};

PolygonSoup polygonSoup(const Soup &soup) {
    PolygonSoup polygons;
    for (std::size_t i = 0; i < soup.size(); ++i) {
        polygons.points.emplace_back(soup[i][0], soup[i][1], soup[i][2]);
        if (i % 3 == 2) {
            polygons.triangles.push_back({i - 2, i - 1, i});
        }
    }
    return polygons;
}

open3d::geometry::TriangleMesh looseMesh(const Soup &soup) {
    open3d::geometry::TriangleMesh mesh;
    for (std::size_t i = 0; i < soup.size(); ++i) {
        mesh.vertices_.emplace_back(soup[i][0], soup[i][1], soup[i][2]);
        if (i % 3 == 2) {
            const int corner = static_cast<int>(i);
            mesh.triangles_.emplace_back(corner - 2, corner - 1, corner);
        }
    }
    return mesh;
}

struct Counts {
    std::size_t nodes;
    std::size_t triangles;
};

void requireSame(const Counts &ours, const Counts &theirs, bool tolerant) {
    bench::require(bench::isSameCount(ours.nodes, theirs.nodes, tolerant) &&
                       bench::isSameCount(ours.triangles, theirs.triangles, tolerant),
                   "nodes and triangles of a mesh");
}

void build(bench::Contest &contest, const Soup &soup, double ratioToReach, bool tolerant) {
    const PolygonSoup polygons = polygonSoup(soup);
    const open3d::geometry::TriangleMesh loose = looseMesh(soup);
    NodeArr nodes;
    TriangleArr triangles;
    std::vector<int> slots(soup.size());
    PolygonSoup repaired;
    open3d::geometry::TriangleMesh cleaned;
    contest.items(static_cast<double>(soup.size() / 3), "triangles",
                  3 * (sizeof(bench::Point) + sizeof(int)));
    contest.ours(
        [&] {
            bench::mergeCorners(soup, nodes, slots);
            bench::mergeTriangles(slots, triangles);
        },
        [&] {
            nodes = NodeArr();
            triangles = TriangleArr();
        });
    contest.peer(
        "CGAL repair_polygon_soup", ratioToReach,
        [&] {
            CGAL::Polygon_mesh_processing::repair_polygon_soup(repaired.points, repaired.triangles);
        },
        [&] { repaired = polygons; });
    contest.peer(
        "Open3D", ratioToReach,
        [&] {
            cleaned.RemoveDuplicatedVertices();
            cleaned.RemoveDegenerateTriangles();
            cleaned.RemoveDuplicatedTriangles();
        },
        [&] { cleaned = loose; });
    contest.note("The peers merge exactly equal points only. The numbers of nodes and triangles "
                 "are compared, on real meshes within a thousandth");
    contest.measure([&] {
        const Counts ours{static_cast<std::size_t>(nodes.GetBoundM()),
                          static_cast<std::size_t>(triangles.GetBoundM())};
        requireSame(ours, {repaired.points.size(), repaired.triangles.size()}, tolerant);
        requireSame(ours, {cleaned.vertices_.size(), cleaned.triangles_.size()}, tolerant);
    });
}

void buildGrid(bench::Contest &contest) {
    contest.growthLimit(10.0);
    build(contest, bench::gridSoup(contest.size()), 1.2, false);
}

const bench::Row rows[] = {
    {"mesh build", "grid", 125000, buildGrid},
    {"mesh build", "grid", 1000000, buildGrid},
};
const bench::MeshRows meshRows("mesh build", [](bench::Contest &contest, const Soup &soup) {
    build(contest, soup, 1.5, true);
});

} // namespace
