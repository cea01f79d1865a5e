// Meshes: made from a profile, put together from loose triangles, and given normals.
#include "bench/inputs.h"

#include <algorithm>

#include "trunnion/containers/slot_array.h"
#include "trunnion/meshes/quad_arr.h"

namespace {

using bench::Point;

// A row of 100 nodes in the x-z plane, turned about Z in 360 steps. The list then holds the row
// itself, a row for each step, and the first one again.
void sweep(benchmark::State &state) {
    constexpr int rowLength = 100;
    constexpr int steps = 360;
    constexpr int nodeCount = rowLength * (steps + 2);
    NodeArr profile;
    for (int i = 0; i < rowLength; ++i) {
        profile.AddItemM(bench::nodeAt(
            {5.0F + 0.01F * static_cast<float>(i), 0.0F, 0.1F * static_cast<float>(i)}));
    }
    const Point origin{};
    const Point axis = {0, 0, 1};
    const auto extend = [&](NodeArr &nodes) {
        return nodes.ExtendByRotateToCircleM(steps, origin.data(), axis.data(), 0.0F,
                                             static_cast<float>(2.0 * std::numbers::pi));
    };
    NodeArr swept = profile;
    extend(swept);
    bench::require(swept.GetAvailableNumM() == nodeCount, "nodes of a sweep");
    for (int i = 0; i < swept.GetBoundM(); ++i) {
        const float *p = swept.GetItemPM(i)->GetPntPM();
        const float *first = profile.GetItemPM(i % rowLength)->GetPntPM();
        const int row = std::min(i / rowLength, steps);
        const double angle = 2.0 * std::numbers::pi * row / steps;
        bench::require(bench::isNear(p[0], first[0] * std::cos(angle)) &&
                           bench::isNear(p[1], first[0] * std::sin(angle)) && p[2] == first[2],
                       "sweep");
    }
    bench::measure(state, nodeCount, [&] {
        NodeArr nodes = profile;
        extend(nodes);
        benchmark::DoNotOptimize(nodes.GetBoundM());
    });
}
BENCHMARK(sweep)->Unit(benchmark::kMillisecond);

// On a sphere the normals are known.
void nodeNormals(benchmark::State &state) {
    constexpr int side = 200;
    bench::Patch patch = bench::spherePatch(side);
    const QuadArr noQuads;
    patch.nodes.CalculateNormByFaceviewLst(patch.triangles, noQuads);
    for (int i = 0; i < side * side; ++i) {
        const float *p = patch.nodes.GetItemPM(i)->GetPntPM();
        const float *normal = patch.nodes.GetItemPM(i)->GetNormalPM();
        const double cosine =
            bench::dot({p[0], p[1], p[2]}, {normal[0], normal[1], normal[2]}) / 200;
        bench::require(bench::isNear(cosine, 1.0, 1e-4), "normals");
    }
    bench::measure(state, patch.nodes.GetBoundM(),
                   [&] { patch.nodes.CalculateNormByFaceviewLst(patch.triangles, noQuads); });
}
BENCHMARK(nodeNormals)->Unit(benchmark::kMillisecond);

// The loose triangles of a grid become a mesh again: three nodes for each.
void mergeNodes(benchmark::State &state) {
    const int side = static_cast<int>(state.range(0));
    const bench::Patch patch = bench::spherePatch(side);
    const int triangles = patch.triangles.GetBoundM();
    const auto merge = [&] {
        NodeArr merged;
        int idx = 0;
        for (int i = 0; i < 3 * triangles; ++i) {
            const int corner = patch.triangles.GetItemPM(i / 3)->GetNodeIdxPM()[i % 3];
            merged.MergeNodeLstM(*patch.nodes.GetItemPM(corner), &idx);
        }
        return merged.GetBoundM();
    };
    bench::require(merge() == side * side, "number of merged nodes");
    bench::measure(state, 3 * triangles, [&] { benchmark::DoNotOptimize(merge()); });
}
BENCHMARK(mergeNodes)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);

// Every triangle comes twice.
void mergeTriangles(benchmark::State &state) {
    const int side = static_cast<int>(state.range(0));
    const bench::Patch patch = bench::spherePatch(side);
    const int triangles = patch.triangles.GetBoundM();
    const auto merge = [&] {
        TriangleArr merged;
        for (int i = 0; i < 2 * triangles; ++i) {
            merged.MergeTriangleLstM(*patch.triangles.GetItemPM(i % triangles));
        }
        return merged.GetBoundM();
    };
    bench::require(merge() == triangles, "number of merged triangles");
    bench::measure(state, 2 * triangles, [&] { benchmark::DoNotOptimize(merge()); });
}
BENCHMARK(mergeTriangles)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);

double planeDistance(const float *a, const float *b) {
    return std::hypot(static_cast<double>(a[0]) - b[0], static_cast<double>(a[1]) - b[1]);
}

// Unfolding uses the list up: every round works on a copy, which is measured with it.
void unfold(benchmark::State &state) {
    const bench::Patch patch = bench::spherePatch(static_cast<int>(state.range(0)));
    const int count = patch.triangles.GetBoundM();
    XYCoordSysD none{};
    none.origin[0] = SL_DELETED_REAL;
    Point2DArr coordinates;
    const auto lay = [&] {
        TriangleArr triangles = patch.triangles;
        coordinates.DelAllM();
        return triangles.GetTexCoordM(none, &coordinates, patch.nodes);
    };
    bench::require(lay() == 1, "all triangles unfolded");
    for (int i = 0; i < 3 * count; ++i) {
        const int from = i % 3;
        const int to = (from + 1) % 3;
        const int *corners = patch.triangles.GetItemPM(i / 3)->GetNodeIdxPM();
        const float *a = patch.nodes.GetItemPM(corners[from])->GetPntPM();
        const float *b = patch.nodes.GetItemPM(corners[to])->GetPntPM();
        const double flat =
            planeDistance(coordinates.GetItemPM(i), coordinates.GetItemPM(i - from + to));
        bench::require(bench::isNear(flat, bench::distance({a[0], a[1], a[2]}, {b[0], b[1], b[2]})),
                       "length of an unfolded edge");
    }
    bench::measure(state, count, [&] { benchmark::DoNotOptimize(lay()); });
}
BENCHMARK(unfold)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace
