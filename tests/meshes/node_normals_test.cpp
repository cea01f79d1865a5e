// Node normals, from a grid and from facets.
#include "trunnion/meshes/node_arr.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/nodes.h"
#include "tests/support/random.h"
#include "tests/support/short_memory.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/detail/normal_sums.h"
#include "trunnion/meshes/quad_arr.h"
#include "trunnion/meshes/triangle_arr.h"

using test::nodesAt;
using test::Vector;

namespace {

Vector normalOf(const NodeArr &nodes, int idx) {
    Vector normal{};
    nodes.GetNormalM(idx, normal.data());
    return normal;
}

void expectNear(const Vector &a, const Vector &b) {
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(a[i], b[i], 1e-6F);
    }
}

TEST(GridNormals, FlatGridPointsTheSameWayAtEveryNode) {
    std::vector<Vector> points;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            points.push_back({static_cast<float>(column), static_cast<float>(row), 0});
        }
    }
    NodeArr grid = nodesAt(points);
    for (int k = 0; k < 9; ++k) {
        EXPECT_EQ(grid.ReGenNormalVectM(k / 3, k % 3, 3, 3), 1);
        EXPECT_EQ(normalOf(grid, k), (Vector{0, 0, 1})) << k;
    }
}

TEST(GridNormals, PoleTakesTheDiagonalAndItsLastNodeCopies) {
    // Row 0 is one point, the rows below are circles about it.
    NodeArr grid = nodesAt({{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}});
    grid.ReGenNormalVectM(0, 0, 2, 3);
    // Along: the diagonal to (0, 1, 0); down: to (1, 0, 0).
    const float third = 1.0F / std::sqrt(3.0F);
    expectNear(normalOf(grid, 0), {-third, -third, -third});
    Vector mark{5, 6, 7};
    grid.SetNodeNormM(1, mark.data());
    grid.ReGenNormalVectM(0, 2, 2, 3);
    EXPECT_EQ(normalOf(grid, 2), mark) << "as the left neighbour stands at that moment";
}

TEST(GridNormals, CoincidentRowsTakeOverFromTheRowBefore) {
    NodeArr grid = nodesAt({{0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0}});
    Vector mark{5, 6, 7};
    grid.SetNodeNormM(0, mark.data());
    grid.ReGenNormalVectM(1, 0, 2, 2);
    EXPECT_EQ(normalOf(grid, 2), mark);
    grid.ReGenNormalVectM(5, 0, 2, 2);
    grid.ReGenNormalVectM(0, 0, 70000, 70000);
    EXPECT_EQ(grid.ReGenNormalVectM(0, 0, 1, 1), 1) << "a grid of one node has no neighbours";
}

TEST(FacetNormals, OneFacetGivesAllItsNodesOneNormal) {
    NodeArr nodes = nodesAt({{0, 0, 0}, {2, 0, 0}, {2, 2, 5}, {0, 2, 0}, {4, 0, 0}});
    QuadCL quad(31);
    quad.SetQuadM(0, 1, 2, 3);
    EXPECT_EQ(nodes.ReGenNormalVectM(quad), 1);
    for (const int corner : {0, 1, 2, 3}) {
        EXPECT_EQ(normalOf(nodes, corner), (Vector{0, 0, 1}))
            << "from the first, second and fourth node";
    }
    TriangleCL flat(31);
    flat.SetTriangleM(0, 1, 4);
    nodes.ReGenNormalVectM(flat);
    EXPECT_EQ(normalOf(nodes, 4), (Vector{1, 0, 0})) << "collinear nodes span no plane";
    TriangleCL foreign(31);
    foreign.SetTriangleM(0, 1, 99);
    nodes.ReGenNormalVectM(foreign);
    EXPECT_EQ(normalOf(nodes, 0), (Vector{1, 0, 0}));
}

// The described form: for each node a scan of all triangles.
std::vector<Vector> plainNormals(const NodeArr &nodes, const TriangleArr &triangles) {
    std::vector<Vector> normals;
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        double sum[3] = {};
        bool held = false;
        for (int k = 0; k < triangles.GetBoundM(); ++k) {
            const TriangleCL &triangle = *triangles.GetItemPM(k);
            const int *corners = triangle.GetNodeIdxPM();
            if (corners[0] == i || corners[1] == i || corners[2] == i) {
                for (int axis = 0; axis < 3; ++axis) {
                    sum[axis] += triangle.GetNormPM()[axis];
                }
                held = true;
            }
        }
        Vector normal;
        std::transform(sum, sum + 3, normal.begin(), [](double value) {
            constexpr double greatest = std::numeric_limits<float>::max();
            return static_cast<float>(std::clamp(value, -greatest, greatest));
        });
        if (held) {
            slNormalize(normal.data());
        } else {
            normal = normalOf(nodes, i);
        }
        normals.push_back(normal);
    }
    return normals;
}

// To the bit.
bool haveNormals(const NodeArr &nodes, const std::vector<Vector> &expected) {
    const auto isSame = [](float a, float b) {
        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
    };
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        const Vector &normal = expected[static_cast<std::size_t>(i)];
        if (!std::equal(normal.begin(), normal.end(), nodes.GetItemPM(i)->GetNormalPM(), isSame)) {
            return false;
        }
    }
    return true;
}

// What every width of vectors makes of the sums, and the list itself, without memory for sums too.
TEST(FacetNormals, NodeNormalsHaveTheBitsOfTheScanOnAnyMesh) {
    using trunnion::detail::VectorWidth;
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float odd[] = {infinity, -infinity, NAN, 3e38F, -3e38F, 1e-5F, 7e-5F, 0.0F};
    test::Random random(31);
    for (int round = 0; round < 300; ++round) {
        const int count = random.integer(0, round % 3 == 0 ? 70 : 12);
        NodeArr nodes =
            nodesAt(std::vector<Vector>(static_cast<std::size_t>(count), Vector{1, 2, 3}));
        TriangleArr triangles;
        for (int i = random.integer(0, 60); i > 0; --i) {
            const int corners[3] = {random.integer(-1, count + 1), random.integer(0, count),
                                    random.integer(0, count)};
            float normal[3];
            for (float &value : normal) {
                value = random.oneIn(20) ? odd[random.integer(0, 7)] : random.real(-1, 1);
                value *= random.oneIn(9) ? 1e-4F : 1.0F;
            }
            triangles.AddTriangleM(corners, normal);
        }
        triangles.DelItemM(random.integer(0, 10));
        nodes.DelItemM(0);
        const int bound = nodes.GetBoundM();
        const std::vector<Vector> expected = plainNormals(nodes, triangles);
        for (const VectorWidth width :
             {VectorWidth::plain, VectorWidth::bits256, VectorWidth::bits512}) {
            if (width <= trunnion::detail::widestVectors()) {
                NodeArr made = nodes;
                std::vector<trunnion::detail::NormalSum> sums(static_cast<std::size_t>(bound));
                trunnion::detail::setNormalsBySums(triangles.getCurrentItemPrtConstM(),
                                                   triangles.GetBoundM(), made.getCurrentItemPrtM(),
                                                   bound, sums.data(), width);
                ASSERT_TRUE(haveNormals(made, expected)) << round;
            }
        }
        for (const int allocations : {0, -1}) {
            NodeArr made = nodes;
            const QuadArr quads;
            test::allocationsLeft = allocations;
            EXPECT_EQ(made.CalculateNormByFaceviewLst(triangles, quads), 1);
            test::allocationsLeft = -1;
            ASSERT_TRUE(haveNormals(made, expected)) << round;
        }
    }
}

TEST(FacetNormals, TurnRoundOnLiveNodesOnly) {
    NodeArr nodes = nodesAt({{0, 0, 0}, {1, 0, 0}});
    Vector normal{0, 0, 2};
    nodes.SetNodeNormM(0, normal.data());
    nodes.SetNodeNormM(1, normal.data());
    nodes.SetNodeNormM(99, normal.data());
    nodes.getCurrentItemPrtM()[1].SetDeleteTagM(30);
    EXPECT_EQ(nodes.NegativeNormalVectM(), 1);
    EXPECT_EQ(normalOf(nodes, 0), (Vector{0, 0, -2})) << "not normalised";
    EXPECT_EQ(normalOf(nodes, 1), normal);
}

} // namespace
