// The geometry kernel beside CGAL and Eigen. The peers get their points as doubles and in their own
// types, made before anything is measured.
#include <cmath>

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Polygon_2_algorithms.h>
#include <CGAL/linear_least_squares_fitting_3.h>
#include <CGAL/squared_distance_3.h>
#include <Eigen/LU>

#include "bench/peers/contest.h"
#include "trunnion/geometry/containment.h"
#include "trunnion/geometry/intersections.h"
#include "trunnion/geometry/line_pairs.h"

namespace {

using bench::Point;
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;

constexpr std::size_t callCount = 20000;
// A processor learns the branches of some ten thousand pairs by heart, and a peer that branches
// takes half the time then, or not, from run to run. Nobody asks for the same pairs again and
// again.
constexpr std::size_t pairCount = 100000;

std::vector<Point> randomPoints(std::size_t count, float size) {
    bench::Random random;
    std::vector<Point> points(count);
    for (Point &p : points) {
        p = random.point(size);
    }
    return points;
}

Kernel::Point_3 spacePoint(const float *p) {
    return {p[0], p[1], p[2]};
}
Kernel::Point_2 planePoint(const float *p) {
    return {p[0], p[1]};
}

// Two segments in space.

struct Feet {
    float t1;
    float t2;
    float distance;

    static bool isInside(float t) { return t > 0.01F && t < 0.99F; }
    bool areInside() const { return isInside(t1) && isInside(t2); }
};

void segmentDistance(bench::Contest &contest) {
    const std::vector<Point> points = randomPoints(4 * pairCount, 5.0F);
    std::vector<Kernel::Segment_3> segments;
    for (std::size_t i = 0; i < points.size(); i += 2) {
        segments.emplace_back(spacePoint(points[i].data()), spacePoint(points[i + 1].data()));
    }
    std::vector<Feet> feet(pairCount);
    std::vector<double> squares(pairCount);
    contest.items(pairCount, "pairs");
    contest.ours([&] {
        for (std::size_t i = 0; i < pairCount; ++i) {
            const Point *p = &points[4 * i];
            slGetLinesCoPerpenticular(p[0].data(), p[1].data(), p[2].data(), p[3].data(),
                                      &feet[i].t1, &feet[i].t2, &feet[i].distance);
        }
    });
    contest.peer("CGAL squared_distance", 0.7, [&] {
        for (std::size_t i = 0; i < pairCount; ++i) {
            squares[i] = CGAL::squared_distance(segments[2 * i], segments[2 * i + 1]);
        }
    });
    contest.note("The peer gives the squared distance alone. Compared where both feet lie inside");
    contest.measure([&] {
        for (std::size_t i = 0; i < pairCount; ++i) {
            bench::require(!feet[i].areInside() ||
                               bench::isNear(std::sqrt(squares[i]), feet[i].distance),
                           "distance of segments");
        }
    });
}

// A ray and a segment in the plane.

struct Crossing {
    int code;
    float t;
    float s;
};

struct PlaneRays {
    std::vector<Point> starts;
    std::vector<Point> directions; // of length 1
    std::vector<Point> ends;       // of the segments, two for each
};

PlaneRays planeRays() {
    PlaneRays rays{randomPoints(callCount, 5.0F), {}, randomPoints(2 * callCount, 4.0F)};
    bench::Random random;
    for (std::size_t i = 0; i < callCount; ++i) {
        const float angle = random.real(0.0F, 6.2F);
        rays.directions.push_back({std::cos(angle), std::sin(angle), 0.0F});
    }
    return rays;
}

// The solution of p + t dir = c + s (d - c), and whether it lies on the ray and on the segment.
bool crossByEigen(const Eigen::Vector2d &p, const Eigen::Vector2d &dir, const Eigen::Vector2d &c,
                  const Eigen::Vector2d &d, Eigen::Vector2d &parameters) {
    Eigen::Matrix2d system;
    system << dir, c - d;
    Eigen::Matrix2d inverse;
    bool hasCrossing = false;
    system.computeInverseWithCheck(inverse, hasCrossing);
    if (!hasCrossing) {
        return false;
    }
    parameters = inverse * (c - p);
    return (parameters.array() >= 0.0).all() && parameters.y() <= 1.0;
}

void rayAndSegment(bench::Contest &contest) {
    const PlaneRays rays = planeRays();
    std::vector<Kernel::Ray_2> cgalRays;
    std::vector<Kernel::Segment_2> cgalSegments;
    std::vector<Eigen::Vector2d> vectors;
    for (std::size_t i = 0; i < callCount; ++i) {
        const float *ends[2] = {rays.ends[2 * i].data(), rays.ends[2 * i + 1].data()};
        const float *dir = rays.directions[i].data();
        cgalRays.emplace_back(planePoint(rays.starts[i].data()), Kernel::Vector_2(dir[0], dir[1]));
        cgalSegments.emplace_back(planePoint(ends[0]), planePoint(ends[1]));
        for (const float *p : {rays.starts[i].data(), dir, ends[0], ends[1]}) {
            vectors.emplace_back(p[0], p[1]);
        }
    }
    std::vector<Crossing> ours(callCount);
    std::vector<Kernel::Point_2> cgalPoints(callCount);
    std::vector<char> cgalHits(callCount);
    std::vector<Eigen::Vector2d> parameters(callCount);
    std::vector<char> eigenHits(callCount);
    contest.items(callCount, "pairs");
    contest.ours([&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            ours[i].code = slIntersectLines2D(rays.starts[i].data(), rays.directions[i].data(),
                                              rays.ends[2 * i].data(), rays.ends[2 * i + 1].data(),
                                              &ours[i].t, &ours[i].s);
        }
    });
    contest.peer("CGAL intersection", 1.5, [&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            const auto found = CGAL::intersection(cgalRays[i], cgalSegments[i]);
            const auto *point = found ? boost::get<Kernel::Point_2>(&*found) : nullptr;
            cgalHits[i] = point != nullptr;
            if (point != nullptr) {
                cgalPoints[i] = *point;
            }
        }
    });
    contest.peer("Eigen inverse", 1.5, [&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            const Eigen::Vector2d *v = &vectors[4 * i];
            eigenHits[i] = crossByEigen(v[0], v[1], v[2], v[3], parameters[i]);
        }
    });
    contest.note("CGAL decides exactly and gives the point; Eigen solves the system of two "
                 "equations. Compared where no tolerance can decide");
    contest.measure([&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            const Crossing &crossing = ours[i];
            if (bench::isNear(crossing.t, 0.0) || bench::isNear(crossing.s, 0.0) ||
                bench::isNear(crossing.s, 1.0)) {
                continue;
            }
            const bool crosses = crossing.code == SL_RAY_CROSSES;
            bench::require(crosses == (cgalHits[i] != 0) && crosses == (eigenHits[i] != 0),
                           "whether ray and segment cross");
            if (crosses) {
                const Point at = bench::along(rays.starts[i], rays.directions[i], crossing.t);
                bench::require(bench::isNear(cgalPoints[i].x(), at[0]) &&
                                   bench::isNear(cgalPoints[i].y(), at[1]) &&
                                   bench::isNear(parameters[i].x(), crossing.t) &&
                                   bench::isNear(parameters[i].y(), crossing.s),
                               "where ray and segment cross");
            }
        }
    });
}

// A point and a polygon.

void pointInPolygon(bench::Contest &contest) {
    const int edges = contest.size();
    const std::vector<bench::PlanePoint> polygon = bench::starPolygon(edges);
    std::vector<Kernel::Point_2> corners; // the peer's polygon is open
    for (int i = 0; i < edges; ++i) {
        corners.push_back(planePoint(polygon[static_cast<std::size_t>(i)].data()));
    }
    const std::vector<Point> points = randomPoints(callCount, 1.0F);
    std::vector<Kernel::Point_2> peerPoints;
    for (const Point &p : points) {
        peerPoints.push_back(planePoint(p.data()));
    }
    std::vector<int> answers(callCount);
    std::vector<CGAL::Bounded_side> sides(callCount);
    contest.items(callCount, "points");
    contest.ours([&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            answers[i] = slPointInterFaceM(reinterpret_cast<const float(*)[2]>(polygon.data()),
                                           edges + 1, points[i].data());
        }
    });
    contest.peer("CGAL bounded_side_2", edges < 1000 ? 1.2 : 1.5, [&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            sides[i] =
                CGAL::bounded_side_2(corners.begin(), corners.end(), peerPoints[i], Kernel());
        }
    });
    contest.note("The peer decides exactly, ours within SL_ZERO of edges and of the heights of "
                 "corners: points there are not compared");
    contest.measure([&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            const int expected = bench::countInside(polygon, points[i]);
            bench::require(expected < 0 ||
                               (expected == (answers[i] == SL_POLYGON_INSIDE ? 1 : 0) &&
                                expected == (sides[i] != CGAL::ON_UNBOUNDED_SIDE ? 1 : 0)),
                           "point in polygon");
        }
    });
}

// The plane through a cloud.

// Points of a plane that is not level, moved up and down by up to a thousandth.
Point3DArr nearlyPlaneCloud(int count) {
    bench::Random random;
    Point3DArr cloud = bench::randomCloud(count);
    for (int i = 0; i < count; ++i) {
        const float *p = cloud.GetItemPM(i);
        cloud.SetItemZValueM(i, 0.1F * p[0] + 0.2F * p[1] + 3.0F + random.real(-1e-3F, 1e-3F));
    }
    return cloud;
}

void planeOfLeastSquares(bench::Contest &contest) {
    constexpr int fitCount = 200;
    const Point3DArr cloud = nearlyPlaneCloud(contest.size());
    std::vector<Kernel::Point_3> points;
    for (int i = 0; i < contest.size(); ++i) {
        points.push_back(spacePoint(cloud.GetItemPM(i)));
    }
    const Point up = {0, 0, 1};
    Point normal{};
    float d = 0;
    Kernel::Plane_3 plane;
    contest.items(static_cast<double>(fitCount) * contest.size(), "points");
    contest.ours([&] {
        for (int i = 0; i < fitCount; ++i) {
            bench::require(cloud.GenPlaneByLeastSquareM(up.data(), normal.data(), &d) == 1,
                           "a plane");
        }
    });
    contest.peer("CGAL linear_least_squares_fitting_3", 1.0, [&] {
        for (int i = 0; i < fitCount; ++i) {
            CGAL::linear_least_squares_fitting_3(points.begin(), points.end(), plane,
                                                 CGAL::Dimension_tag<0>());
        }
    });
    contest.note("The peer measures across the plane, ours along Z: on these points, which are a "
                 "thousandth off the plane, the planes agree within a ten-thousandth");
    contest.measure([&] {
        const double length = std::sqrt(plane.orthogonal_vector().squared_length());
        const double sign = plane.c() > 0.0 ? 1.0 : -1.0;
        const double theirs[4] = {plane.a(), plane.b(), plane.c(), plane.d()};
        const float ours[4] = {normal[0], normal[1], normal[2], d};
        for (int i = 0; i < 4; ++i) {
            bench::require(bench::isNear(sign * theirs[i] / length, ours[i], 1e-4),
                           "plane of least squares");
        }
    });
}

const bench::Row rows[] = {
    {"slGetLinesCoPerpenticular", "segments in a box", 0, segmentDistance},
    {"slIntersectLines2D", "rays and segments in a square", 0, rayAndSegment},
    {"slPointInterFaceM", "edges", 20, pointInPolygon},
    {"slPointInterFaceM", "edges", 1000, pointInPolygon},
    {"GenPlaneByLeastSquareM", "points near a plane", 1000, planeOfLeastSquares},
};

} // namespace
