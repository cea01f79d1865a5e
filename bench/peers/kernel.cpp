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
    const std::vector<Point> points = randomPoints(4 * callCount, 5.0F);
    std::vector<Kernel::Segment_3> segments;
    for (std::size_t i = 0; i < points.size(); i += 2) {
        segments.emplace_back(spacePoint(points[i].data()), spacePoint(points[i + 1].data()));
    }
    std::vector<Feet> feet(callCount);
    std::vector<double> squares(callCount);
    contest.items(callCount, "pairs");
    contest.ours([&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            const Point *p = &points[4 * i];
            slGetLinesCoPerpenticular(p[0].data(), p[1].data(), p[2].data(), p[3].data(),
                                      &feet[i].t1, &feet[i].t2, &feet[i].distance);
        }
    });
    contest.peer("CGAL squared_distance", 0.7, [&] {
        for (std::size_t i = 0; i < callCount; ++i) {
            squares[i] = CGAL::squared_distance(segments[2 * i], segments[2 * i + 1]);
        }
    });
    contest.note("The peer gives the squared distance alone. Compared where both feet lie inside");
    contest.measure([&] {
        for (std::size_t i = 0; i < callCount; ++i) {
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
    return parameters.x() >= 0.0 && parameters.y() >= 0.0 && parameters.y() <= 1.0;
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

const bench::Row rows[] = {
    {"slGetLinesCoPerpenticular", "segments in a box", 0, segmentDistance},
    {"slIntersectLines2D", "rays and segments in a square", 0, rayAndSegment},
};

} // namespace
