// The geometry kernel: each figure is the time of one call, as the mean over a list of inputs.
#include "bench/inputs.h"

#include "trunnion/geometry/containment.h"
#include "trunnion/geometry/intersections.h"
#include "trunnion/geometry/line_pairs.h"
#include "trunnion/geometry/matrices.h"

namespace {

using bench::Point;

constexpr std::size_t inputCount = 1024;

// Calls with every input and checks the result, then measures the same calls. `check` also tells
// whether it could see anything in the result; it has to in one of twenty.
template <class Call, class Check>
void checkAndMeasure(benchmark::State &state, Call call, Check check) {
    std::size_t seen = 0;
    for (std::size_t i = 0; i < inputCount; ++i) {
        seen += check(i, call(i)) ? 1 : 0;
    }
    bench::require(seen > inputCount / 20, "nothing to check");
    bench::measure(state, inputCount, [&] {
        for (std::size_t i = 0; i < inputCount; ++i) {
            benchmark::DoNotOptimize(call(i));
        }
    });
}

// `perInput` points for each input.
std::vector<Point> randomPoints(std::size_t perInput) {
    bench::Random random;
    std::vector<Point> points(perInput * inputCount);
    for (Point &p : points) {
        p = random.point(5.0F);
    }
    return points;
}

void segmentDistance(benchmark::State &state) {
    const std::vector<Point> points = randomPoints(4);
    float t1 = 0;
    float t2 = 0;
    float found = 0;
    const auto call = [&](std::size_t i) {
        const Point *p = &points[4 * i];
        return slGetLinesCoPerpenticular(p[0].data(), p[1].data(), p[2].data(), p[3].data(), &t1,
                                         &t2, &found);
    };
    checkAndMeasure(state, call, [&](std::size_t i, int) {
        const Point *p = &points[4 * i];
        const bool feetInside = t1 > 0.01F && t1 < 0.99F && t2 > 0.01F && t2 < 0.99F;
        const Point foot1 = bench::along(p[0], bench::difference(p[1], p[0]), t1);
        const Point foot2 = bench::along(p[2], bench::difference(p[3], p[2]), t2);
        bench::require(!feetInside || bench::isNear(bench::distance(foot1, foot2), found),
                       "distance of segments");
        return feetInside;
    });
}
BENCHMARK(segmentDistance);

void rayAndPlaneSegment(benchmark::State &state) {
    const std::vector<Point> points = randomPoints(3);
    std::vector<Point> directions(inputCount);
    bench::Random random;
    for (Point &direction : directions) {
        const float angle = random.real(0.0F, 6.0F);
        direction = {std::cos(angle), std::sin(angle), 0.0F};
    }
    float t = 0;
    float s = 0;
    const auto call = [&](std::size_t i) {
        const Point *p = &points[3 * i];
        return slIntersectLines2D(p[0].data(), directions[i].data(), p[1].data(), p[2].data(), &t,
                                  &s);
    };
    checkAndMeasure(state, call, [&](std::size_t i, int result) {
        const Point *p = &points[3 * i];
        const Point onRay = bench::along(p[0], directions[i], t);
        const Point onSegment = bench::along(p[1], bench::difference(p[2], p[1]), s);
        bench::require(result != SL_RAY_CROSSES || (bench::isNear(onRay[0], onSegment[0]) &&
                                                    bench::isNear(onRay[1], onSegment[1])),
                       "ray and segment");
        return result == SL_RAY_CROSSES;
    });
}
BENCHMARK(rayAndPlaneSegment);

void lineAndPlane(benchmark::State &state) {
    const std::vector<Point> points = randomPoints(2);
    std::vector<Point> normals(inputCount);
    bench::Random random;
    for (Point &normal : normals) {
        normal = random.unit();
    }
    Point out{};
    const auto call = [&](std::size_t i) {
        return slLineIntersectPlane(points[2 * i].data(), points[2 * i + 1].data(),
                                    normals[i].data(), 1.0F, out.data());
    };
    checkAndMeasure(state, call, [&](std::size_t i, int result) {
        const double scale = 1.0 + bench::distance(out, {});
        bench::require(result != SL_LINE_HITS ||
                           bench::isNear(bench::dot(normals[i], out), -1.0, 1e-5 * scale),
                       "line and plane");
        return result == SL_LINE_HITS;
    });
}
BENCHMARK(lineAndPlane);

// Radii that make about half of the circles meet.
std::vector<float> randomRadii(std::size_t count) {
    bench::Random random;
    std::vector<float> radii(count);
    for (float &radius : radii) {
        radius = random.real(1.0F, 4.0F);
    }
    return radii;
}

std::vector<Point> randomPlanePoints(std::size_t perInput) {
    std::vector<Point> points = randomPoints(perInput);
    for (Point &p : points) {
        p[2] = 0.0F;
    }
    return points;
}

void circleAndCircle(benchmark::State &state) {
    const std::vector<Point> centers = randomPlanePoints(2);
    const std::vector<float> radii = randomRadii(2 * inputCount);
    const Point normal = {0, 0, 1};
    Point out[2] = {};
    const auto call = [&](std::size_t i) {
        return slIntersectCircle(centers[2 * i].data(), radii[2 * i], centers[2 * i + 1].data(),
                                 radii[2 * i + 1], normal.data(),
                                 reinterpret_cast<float(*)[3]>(out));
    };
    checkAndMeasure(state, call, [&](std::size_t i, int result) {
        for (std::size_t k = 0; result == SL_CIRCLES_CROSS && k < 4; ++k) {
            const std::size_t circle = 2 * i + k / 2;
            bench::require(
                bench::isNear(bench::distance(out[k % 2], centers[circle]), radii[circle]),
                "circle and circle");
        }
        return result == SL_CIRCLES_CROSS;
    });
}
BENCHMARK(circleAndCircle);

void segmentAndCircle(benchmark::State &state) {
    const std::vector<Point> points = randomPlanePoints(3);
    const std::vector<float> radii = randomRadii(inputCount);
    Point cuts[2] = {};
    float t[2];
    float angles[2];
    int count = 0;
    const auto call = [&](std::size_t i) {
        const Point *p = &points[3 * i];
        return slLineIntCircle(p[0].data(), p[1].data(), p[2].data(), radii[i], cuts[0].data(),
                               &t[0], &angles[0], cuts[1].data(), &t[1], &angles[1], &count);
    };
    checkAndMeasure(state, call, [&](std::size_t i, int) {
        for (int k = 0; k < count; ++k) {
            bench::require(bench::isNear(bench::distance(cuts[k], points[3 * i + 2]), radii[i]),
                           "segment and circle");
        }
        return count > 0;
    });
}
BENCHMARK(segmentAndCircle);

void pointInPolygon(benchmark::State &state) {
    const int edges = static_cast<int>(state.range(0));
    const std::vector<bench::PlanePoint> polygon = bench::starPolygon(edges);
    std::vector<Point> points = randomPoints(1);
    for (Point &p : points) {
        p = {p[0] / 5.0F, p[1] / 5.0F, 0.0F};
    }
    const auto call = [&](std::size_t i) {
        return slPointInterFaceM(reinterpret_cast<const float(*)[2]>(polygon.data()), edges + 1,
                                 points[i].data());
    };
    checkAndMeasure(state, call, [&](std::size_t i, int result) {
        const int inside = bench::countInside(polygon, points[i]);
        bench::require(inside < 0 || inside == (result == SL_POLYGON_INSIDE ? 1 : 0),
                       "point in polygon");
        return inside >= 0;
    });
}
BENCHMARK(pointInPolygon)->Arg(20)->Arg(1000);

// Whether the three points lie on the circle. Flat triangles with a great circle lose their places.
bool checkCircle(const Point *p, const Point &center, float radius) {
    for (int k = 0; k < 3; ++k) {
        bench::require(radius > 50.0F || bench::isNear(bench::distance(p[k], center), radius, 1e-2),
                       "circle through three points");
    }
    return true;
}

void circleThroughThreePoints(benchmark::State &state) {
    const std::vector<Point> points = randomPoints(3);
    Point center{};
    Point normal{};
    float radius = 0;
    const auto call = [&](std::size_t i) {
        const Point *p = &points[3 * i];
        return slGenCircle(p[0].data(), p[1].data(), p[2].data(), center.data(), normal.data(),
                           &radius);
    };
    checkAndMeasure(state, call, [&](std::size_t i, int result) {
        return result == 1 && checkCircle(&points[3 * i], center, radius);
    });
}
BENCHMARK(circleThroughThreePoints);

void circumcenterInSpace(benchmark::State &state) {
    const std::vector<Point> points = randomPoints(3);
    Point center{};
    float radius = 0;
    const auto call = [&](std::size_t i) {
        const Point *p = &points[3 * i];
        return slCircumCenter3D(p[0].data(), p[1].data(), p[2].data(), center.data(), &radius);
    };
    checkAndMeasure(state, call, [&](std::size_t i, int result) {
        return result == 1 && checkCircle(&points[3 * i], center, radius);
    });
}
BENCHMARK(circumcenterInSpace);

// A turn keeps the points where they can be turned again.
void matrixTimesPointList(benchmark::State &state) {
    constexpr int count = 100000;
    float M[16];
    slRotateByZ(0.5F, M);
    Point3DArr cloud = bench::randomCloud(count);
    const Point3DArr before = cloud;
    cloud.TransByMatrixM(M, 0);
    for (int i = 0; i < count; ++i) {
        const float *p = before.GetItemPM(i);
        const float *q = cloud.GetItemPM(i);
        bench::require(bench::isNear(q[0], std::cos(0.5) * p[0] - std::sin(0.5) * p[1]) &&
                           bench::isNear(q[1], std::sin(0.5) * p[0] + std::cos(0.5) * p[1]) &&
                           q[2] == p[2],
                       "matrix times point");
    }
    bench::measure(state, count, [&] { cloud.TransByMatrixM(M, 0); });
}
BENCHMARK(matrixTimesPointList);

} // namespace
