// Texture coordinates: what an unfolded mesh looks like; the order of the walk, and every bit that
// it writes, against the plain scans and steps that define them.
#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/short_memory.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/triangle_arr.h"

namespace {

using Point = std::array<float, 3>;
using Nodes = std::array<int, 3>;
using Entry = std::array<float, 2>;

const XYCoordSysD noFrame{{SL_DELETED_REAL, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

XYCoordSysD frameAt(Point origin) {
    return {{origin[0], origin[1], origin[2]}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
}

struct Mesh {
    NodeArr nodes;
    TriangleArr triangles;
    Point2DArr coordinates;

    explicit Mesh(const std::vector<Point> &points, const std::vector<Nodes> &facets = {},
                  Point nodeNormal = {0, 0, 1}) {
        for (Point point : points) {
            NodeCL node(31);
            node.SetNodeM(point.data(), nodeNormal.data());
            nodes.AddItemM(node);
        }
        for (const Nodes &facet : facets) {
            add(facet, 31);
        }
    }
    void add(const Nodes &facet, int tag) {
        float point[3][3] = {};
        float normal[3] = {};
        for (int i = 0; i < 3; ++i) {
            nodes.GetPntM(facet[i], point[i]);
        }
        slPlaneNormal(point[0], point[1], point[2], normal);
        TriangleCL triangle(static_cast<char>(tag));
        triangle.SetValueM(facet[0], facet[1], facet[2], normal);
        triangles.AddItemM(triangle);
    }
    int unfold(const XYCoordSysD &frame = noFrame) {
        return triangles.GetTexCoordM(frame, &coordinates, nodes);
    }
    Entry entry(int slot, int position) const {
        Entry value;
        coordinates.GetItemM(value.data(), 3 * slot + position);
        return value;
    }
    std::vector<Entry> entries() const {
        std::vector<Entry> all;
        all.reserve(static_cast<std::size_t>(coordinates.GetBoundM()));
        for (int i = 0; i < coordinates.GetBoundM(); ++i) {
            all.push_back(entry(i / 3, i % 3));
        }
        return all;
    }
    std::vector<int> tags() const {
        std::vector<int> all;
        all.reserve(static_cast<std::size_t>(triangles.GetBoundM()));
        for (int i = 0; i < triangles.GetBoundM(); ++i) {
            all.push_back(triangles.GetItemPM(i)->IsAvailableM());
        }
        return all;
    }
};

void expectNear(const Entry &entry, const Entry &expected) {
    EXPECT_NEAR(entry[0], expected[0], 1e-5);
    EXPECT_NEAR(entry[1], expected[1], 1e-5);
}

TEST(TexCoords, TheLayoutOfSmallMeshes) {
    const std::vector<Nodes> halves{{3, 0, 2}, {1, 2, 0}};
    const float s = std::sqrt(0.5F);
    struct Case {
        const char *what;
        XYCoordSysD frame;
        Mesh mesh;
        std::vector<Entry> expected;
    };
    Case cases[] = {
        {"one triangle in its own plane",
         noFrame,
         Mesh({{1, 1, 5}, {5, 1, 5}, {1, 4, 5}}, {{0, 1, 2}}),
         {{0, 0}, {4, 0}, {0, 3}}},
        {"an upright one laid flat",
         noFrame,
         Mesh({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {2, 1, 3}}, {{0, 1, 2}, {2, 1, 3}}),
         {{0, 0}, {2, 0}, {2, 2}, {2, 2}, {2, 0}, {5, 1}}},
        {"the start is node 1, not node 3 above the origin",
         frameAt({2, 1, 0}),
         Mesh({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {2, 1, 3}}, {{0, 1, 2}, {2, 1, 3}}),
         {{-2, -1}, {0, -1}, {0, 1}, {0, 1}, {0, -1}, {3, 0}}},
        {"a slope tilted about its start node",
         frameAt({0, 0, 1}),
         Mesh({{0, 0, 0}, {2, 0, 0}, {2, 2 * s, 2 * s}, {0, 2 * s, 2 * s}}, halves, {0, -s, s}),
         {{0, 2}, {0, 0}, {2, 2}, {2, 0}, {2, 2}, {0, 0}}},
    };
    for (Case &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.mesh.unfold(c.frame), 1);
        EXPECT_EQ(c.mesh.triangles.GetAvailableNumM(), 0);
        ASSERT_EQ(c.mesh.entries().size(), c.expected.size());
        for (std::size_t i = 0; i < c.expected.size(); ++i) {
            expectNear(c.mesh.entries()[i], c.expected[i]);
        }
        const bool needsLiveStart = c.frame.origin[0] == SL_DELETED_REAL;
        EXPECT_EQ(c.mesh.unfold(c.frame), needsLiveStart ? 0 : 1) << "nothing is left to walk";
    }
}

TEST(TexCoords, UnfoldingOneTriangle) {
    Mesh mesh({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}}, {{0, 1, 2}});
    TriangleCL triangle = *mesh.triangles.GetItemPM(0);
    const auto place = [&](int slot, int a, int b) {
        triangle.SetTexCoordM(slot, a, b, nullptr, nullptr, nullptr, mesh.nodes, &mesh.coordinates);
    };
    const Entry placed[] = {{1, 1}, {1, 4}, {50, 60}}; // the first edge along +Y
    for (int i = 0; i < 3; ++i) {
        mesh.coordinates.SetItemM(placed[i].data(), 3 + i);
    }
    for (const Nodes &refused :
         {Nodes{1, 1, 0}, {1, 0, 0}, {1, 3, 1}, {-1, 0, 1}, {INT_MAX, 0, 1}}) {
        place(refused[0], refused[1], refused[2]);
    }
    EXPECT_EQ(mesh.entry(1, 2), placed[2]);
    EXPECT_EQ(mesh.coordinates.GetBoundM(), 6);

    place(1, 0, 1);
    expectNear(mesh.entry(1, 2), {-3, 4});
    triangle.NegativeNormalVectM(); // folds over its edge
    place(1, 0, 1);
    expectNear(mesh.entry(1, 2), {5, 4});
    mesh.coordinates.SetItemM(placed[0].data(), 4); // no direction left: along +X
    place(1, 0, 1);
    expectNear(mesh.entry(1, 2), {1, 5});
}

// The unfolding of one triangle as it is told, over the edge at position a.
void unfoldAsTold(const Mesh &mesh, int slot, int a, Point2DArr &coordinates) {
    const TriangleCL &triangle = *mesh.triangles.GetItemPM(slot);
    const int order[] = {a, (a + 1) % 3, (a + 2) % 3};
    const float *point[3];
    for (int i = 0; i < 3; ++i) {
        point[i] = mesh.nodes.GetItemPM(triangle.GetNodeIdxPM()[order[i]])->GetPntPM();
    }
    float u[3];
    float w[3];
    slVect(point[0], point[1], point[2], u, w);
    const float angle = slCalAngleTwoVects(u, w, triangle.GetNormPM());
    Entry placed[2];
    for (int i = 0; i < 2; ++i) {
        coordinates.GetItemM(placed[i].data(), 3 * slot + order[i]);
    }
    const double distance = slDistance2(placed[1].data(), placed[0].data());
    double e[] = {1, 0};
    for (std::size_t k = 0; k < 2 && distance > 0; ++k) {
        e[k] = (static_cast<double>(placed[0][k]) - placed[1][k]) / distance;
    }
    const double f[] = {-e[1], e[0]};
    Entry third;
    for (std::size_t k = 0; k < 2; ++k) {
        constexpr double greatest = std::numeric_limits<float>::max();
        const double direction = slCos(angle) * e[k] + slSin(angle) * f[k];
        third[k] = static_cast<float>(
            std::clamp(placed[1][k] + slNorm2(w) * direction, -greatest, greatest));
    }
    coordinates.SetItemM(third.data(), 3 * slot + order[2]);
}

// The walk as it is told: every search a scan over all slots.
struct ScanningWalk {
    Mesh mesh;
    int live = mesh.triangles.GetAvailableNumM();
    std::vector<int> tags = mesh.tags();
    TriangleCL *triangles = mesh.triangles.getCurrentItemPrtM();
    int bound = mesh.triangles.GetBoundM();

    int run(int t) {
        for (bool found = true; live != 0;) {
            if (!found) {
                const auto valid = [](int tag) { return tag != 30 && tag != 31; };
                t = static_cast<int>(std::ranges::find_if(tags, valid) - tags.begin());
                if (t == bound) {
                    return 0;
                }
            }
            found = false;
            for (int k = 0; k < 3 && !found; ++k) {
                const int *idx = triangles[t].GetNodeIdxPM();
                const int edge[2] = {idx[k], idx[(k + 2) % 3]};
                int next = -1;
                const int position = neighbour(t, edge, &next);
                found = position >= 0;
                live -= tags[t] == 31 ? 1 : 0;
                tags[t] = k == 2 ? 30 : 37 + k;
                if (!found) {
                    continue;
                }
                for (int end = 0; end < 2; ++end) {
                    const Entry shared = mesh.entry(t, triangles[t].GetIdxM(edge[end]));
                    mesh.coordinates.SetItemM(shared.data(), 3 * next + (position + end) % 3);
                }
                unfoldAsTold(mesh, next, position, mesh.coordinates);
                t = next;
            }
            if (live < 1) {
                return 1;
            }
        }
        return 1;
    }
    int neighbour(int t, const int *edge, int *next) const {
        const auto exists = [&](int node) { return mesh.nodes.GetItemPM(node) != nullptr; };
        for (int slot = 0; slot < bound; ++slot) {
            const int *i = triangles[slot].GetNodeIdxPM();
            for (int k = 0; k < 3 && slot != t && tags[slot] == 31; ++k) {
                if (i[k] == edge[0] && i[(k + 1) % 3] == edge[1] && std::all_of(i, i + 3, exists)) {
                    *next = slot;
                    return k;
                }
            }
        }
        return -1;
    }
};

// Few nodes, so that edges are shared by many triangles and in both directions; some triangles
// twice, some degenerate, some with a node that does not exist, some not live. Or none at all.
Mesh nastyMesh(test::Random &random) {
    std::vector<Point> points(
        static_cast<std::size_t>(random.integer(random.oneIn(40) ? 0 : 3, 12)));
    for (Point &point : points) {
        point = {random.real(-5, 5), random.real(-5, 5), random.real(-5, 5)};
    }
    Mesh mesh(points);
    const int last = std::max(1, mesh.nodes.GetBoundM()) - 1;
    const auto node = [&] { return random.integer(random.oneIn(60) ? -1 : 0, last); };
    Nodes facet{0, 1, 2};
    for (int count = random.integer(0, 40); count > 0; --count) {
        constexpr int dead[] = {30, 32, 32, 37, -1};
        mesh.add(facet, random.oneIn(8) ? dead[random.integer(0, 4)] : 31);
        // Most are neighbours of the one before, in the order that lets the walk pass.
        const Nodes neighbour{facet[2], facet[1], node()};
        facet = random.oneIn(3) ? Nodes{node(), node(), node()} : neighbour;
    }
    if (random.oneIn(5)) { // behind the back of the count
        mesh.triangles.getCurrentItemPrtM()[0].SetDeleteTagM(random.oneIn(2) ? 31 : 32);
    }
    return mesh;
}

int startSlot(const Mesh &mesh, const XYCoordSysD &frame) {
    if (frame.origin[0] == SL_DELETED_REAL) {
        const bool hasSlot0 = mesh.triangles.GetBoundM() > 0 && mesh.nodes.GetBoundM() > 2;
        return hasSlot0 && mesh.tags()[0] == 31 ? 0 : -1;
    }
    int node = -1;
    mesh.nodes.GetMinPntIdxM(frame.origin, frame.yAxis, frame.xAxis, &node);
    Int2DArr found;
    mesh.triangles.FindTriangleM(node, &found);
    int chosen = -1;
    mesh.triangles.FindTriangleByVectM(frame.yAxis, mesh.nodes, found, &chosen);
    return chosen >= 0 ? found.GetItemPM(chosen)[0] : -1;
}

// Common and extreme ones, so that edges become parallel, square, tiny, huge or nothing.
float nastyNumber(test::Random &random, float scale) {
    using Limits = std::numeric_limits<float>;
    constexpr float rare[] = {Limits::max(), -Limits::max(), Limits::infinity(),
                              -Limits::infinity(), Limits::quiet_NaN()};
    if (random.oneIn(100)) {
        return rare[random.integer(0, 4)];
    }
    return random.oneIn(2) ? random.real(-scale, scale)
                           : scale * static_cast<float>(random.integer(-1, 1));
}

TEST(TexCoords, ATriangleUnfoldsToTheLastBit) {
    constexpr float scales[] = {1e-30F, 1e-4F, 2e-4F, 1, 1, 1000, 1e15F, 3e15F, 1e20F, 3e38F};
    test::Random random(59);
    Mesh mesh(std::vector<Point>(3), {{0, 1, 2}});
    TriangleCL *triangle = mesh.triangles.getCurrentItemPrtM();
    for (int round = 0; round < 50000; ++round) {
        const auto scale = [&] { return scales[random.integer(0, 9)]; };
        const float numbers[] = {scale(), scale(), random.oneIn(2) ? 0 : scale()};
        for (int i = 0; i < 3; ++i) {
            Point point;
            Entry placed;
            std::ranges::generate(point, [&] { return nastyNumber(random, numbers[0]); });
            std::ranges::generate(placed, [&] { return nastyNumber(random, numbers[1]); });
            point[0] += numbers[2];
            mesh.nodes.getCurrentItemPrtM()[i].setPoint(point.data());
            mesh.coordinates.SetItemM(placed.data(), i);
        }
        float normal[] = {nastyNumber(random, 1), nastyNumber(random, 1), nastyNumber(random, 1)};
        triangle->SetNormM(normal);
        const int a = random.integer(0, 2);
        Point2DArr expected = mesh.coordinates;
        unfoldAsTold(mesh, 0, a, expected);
        triangle->SetTexCoordM(0, a, (a + 1) % 3, nullptr, nullptr, nullptr, mesh.nodes,
                               &mesh.coordinates);
        for (int i = 0; i < 6; ++i) {
            const float value = mesh.coordinates.GetItemPM(0)[i];
            const float told = expected.GetItemPM(0)[i];
            ASSERT_TRUE((std::isnan(value) && std::isnan(told)) ||
                        std::bit_cast<int>(value) == std::bit_cast<int>(told))
                << round << ": " << value << " for " << told;
        }
    }
}

TEST(TexCoords, TheWalkGoesWhereTheScansGo) {
    test::Random random(57);
    int results[2] = {};
    for (int round = 0; round < 4000; ++round) {
        Mesh mesh = nastyMesh(random);
        const XYCoordSysD frame = random.oneIn(2) ? noFrame : frameAt({random.real(-5, 5), 0, 0});
        const int start = startSlot(mesh, frame);
        ScanningWalk expected{mesh};
        test::allocationsLeft = random.oneIn(3) ? random.integer(0, 5) : -1;
        const int result = mesh.unfold(frame);
        test::allocationsLeft = -1;
        for (int i = 0; i < 3 && start >= 0; ++i) {
            expected.mesh.coordinates.SetItemM(mesh.entry(start, i).data(), 3 * start + i);
        }
        ASSERT_EQ(result, start >= 0 ? expected.run(start) : 0) << round;
        ASSERT_EQ(mesh.tags(), expected.tags) << round;
        ASSERT_EQ(mesh.triangles.GetAvailableNumM(), expected.live) << round;
        ASSERT_EQ(mesh.entries(), expected.mesh.entries()) << round; // no NaN: it equals nothing
        ++results[result];
    }
    EXPECT_GT(std::min(results[0], results[1]), 300);
}

TEST(TexCoords, ALargeWavySheetKeepsItsLengths) {
    test::Random random(58);
    constexpr int side = 250; // scans would take minutes
    Mesh mesh({});
    for (int i = 0; i < side * side; ++i) {
        NodeCL node(31);
        const int row = i / side;
        Point point{static_cast<float>(i % side), static_cast<float>(row), random.real(0, 1)};
        node.SetPntM(point.data());
        mesh.nodes.AddItemM(node);
        if (i % side > 0 && i >= side) {
            mesh.add({i - side - 1, i - side, i}, 31);
            mesh.add({i - side - 1, i, i - 1}, 31);
        }
    }
    EXPECT_EQ(mesh.unfold(), 1);
    for (int slot = 0; slot < mesh.triangles.GetBoundM(); ++slot) {
        const int *facet = mesh.triangles.GetItemPM(slot)->GetNodeIdxPM();
        for (const auto &[i, j] : {std::pair(0, 1), {1, 2}, {2, 0}}) {
            const double length = slDistance3(mesh.nodes.GetItemPM(facet[i])->GetPntPM(),
                                              mesh.nodes.GetItemPM(facet[j])->GetPntPM());
            const Entry ends[] = {mesh.entry(slot, i), mesh.entry(slot, j)};
            ASSERT_NEAR(slDistance2(ends[0].data(), ends[1].data()), length, 2e-3 * length);
        }
    }
}

} // namespace
