// What the benchmarks share: inputs that are the same in every run, and how a figure is reported.
#pragma once

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "trunnion/containers/point3d_arr.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/triangle_arr.h"

namespace bench {

using Point = std::array<float, 3>;
using PlanePoint = std::array<float, 2>;

// Ends the program: to measure wrong results is worth nothing.
inline void require(bool holds, const char *what) {
    if (!holds) {
        std::fprintf(stderr, "wrong result: %s\n", what);
        std::exit(1);
    }
}

// Measures `action`, which works on `count` items, and reports the time of one item too.
template <class Action>
void measure(benchmark::State &state, double count, Action action) {
    for ([[maybe_unused]] auto _ : state) {
        action();
    }
    state.counters["items"] = static_cast<double>(count);
    state.counters["per_item"] = benchmark::Counter(static_cast<double>(count),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

class Random {
public:
    float real(float low, float high) {
        const double unit = engine() / 4294967296.0;
        return static_cast<float>(low + (static_cast<double>(high) - low) * unit);
    }
    Point point(float size) { return {real(-size, size), real(-size, size), real(-size, size)}; }
    Point unit() {
        Point p = point(1.0F);
        const float length = std::hypot(p[0], p[1], p[2]);
        return {p[0] / length, p[1] / length, p[2] / length};
    }

private:
    std::mt19937 engine{20};
};

inline double dot(const Point &a, const Point &b) {
    return static_cast<double>(a[0]) * b[0] + static_cast<double>(a[1]) * b[1] +
           static_cast<double>(a[2]) * b[2];
}
inline Point along(const Point &a, const Point &direction, float t) {
    return {a[0] + t * direction[0], a[1] + t * direction[1], a[2] + t * direction[2]};
}
inline Point difference(const Point &a, const Point &b) {
    return along(a, b, -1.0F);
}
inline double distance(const Point &a, const Point &b) {
    return std::sqrt(dot(difference(a, b), difference(a, b)));
}
inline bool isNear(double a, double b, double tolerance = 1e-3) {
    return std::fabs(a - b) <= tolerance;
}

// A ragged polygon about the origin with this number of edges, closed: radii from 0.5 to 1.
inline std::vector<PlanePoint> starPolygon(int edges) {
    Random random;
    std::vector<PlanePoint> polygon;
    for (int i = 0; i < edges; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / edges;
        const double radius = static_cast<double>(random.real(0.5F, 1.0F));
        polygon.push_back({static_cast<float>(radius * std::cos(angle)),
                           static_cast<float>(radius * std::sin(angle))});
    }
    polygon.push_back(polygon.front());
    return polygon;
}

// 1 or 0 by the number of edges to the right of a point; -1 where a tolerance could decide: close
// to an edge, or at the height of a vertex.
inline int countInside(const std::vector<PlanePoint> &polygon, const Point &p) {
    int inside = 0;
    for (std::size_t i = 1; i < polygon.size(); ++i) {
        const PlanePoint &a = polygon[i - 1];
        const PlanePoint &b = polygon[i];
        const double t = (static_cast<double>(p[1]) - a[1]) / (static_cast<double>(b[1]) - a[1]);
        const double x = a[0] + t * (static_cast<double>(b[0]) - a[0]);
        if (isNear(p[1], a[1], 2e-4) || isNear(t, 0, 2e-4) ||
            (t > 0 && t < 1 && isNear(p[0], x, 2e-4))) {
            return -1;
        }
        inside ^= t > 0 && t < 1 && p[0] < x ? 1 : 0;
    }
    return inside;
}

inline Point3DArr randomCloud(int count) {
    Random random;
    Point3DArr cloud(count);
    for (int i = 0; i < count; ++i) {
        cloud.SetItemM(random.point(10.0F).data(), i);
    }
    return cloud;
}

inline NodeCL nodeAt(const Point &point) {
    NodeCL node(TAG_AVAILABLE);
    node.setPoint(point.data());
    return node;
}

// A square patch of the sphere of radius 200 about the origin: side * side nodes, row by row, and
// two triangles for each field.
struct Patch {
    NodeArr nodes;
    TriangleArr triangles;
};

inline Patch spherePatch(int side) {
    Patch patch;
    const float step = 100.0F / static_cast<float>(side - 1);
    for (int k = 0; k < side * side; ++k) {
        const int row = k / side;
        const float x = step * static_cast<float>(k % side) - 50.0F;
        const float y = step * static_cast<float>(row) - 50.0F;
        patch.nodes.AddItemM(nodeAt({x, y, std::sqrt(40000.0F - x * x - y * y)}));
    }
    const auto addTriangle = [&patch](std::array<int, 3> corners) {
        const auto point = [&](std::size_t i) {
            return patch.nodes.GetItemPM(corners[i])->GetPntPM();
        };
        Point normal{};
        slPlaneNormal(point(0), point(1), point(2), normal.data());
        patch.triangles.AddTriangleM(corners.data(), normal.data());
    };
    for (int k = 0; k < (side - 1) * side; ++k) {
        if (k % side < side - 1) {
            addTriangle({k, k + 1, k + side});
            addTriangle({k + 1, k + side + 1, k + side});
        }
    }
    return patch;
}

// A part program of this number of lines.
inline std::string partProgram(int lines) {
    Random random;
    std::string text;
    for (int i = 0; i < lines; ++i) {
        char line[80];
        const Point p = random.point(500.0F);
        std::snprintf(line, sizeof line, "N%d G1 X%.3f Y%.3f Z%.3f F1200\r\n", 10 * i,
                      static_cast<double>(p[0]), static_cast<double>(p[1]),
                      static_cast<double>(p[2]));
        text += line;
    }
    return text;
}

} // namespace bench
