// Generators of node lists.
#include "trunnion/meshes/node_arr.h"

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/nodes.h"
#include "trunnion/geometry/scalars.h"

using test::nodesAt;
using test::Vector;

namespace {

Vector pointOf(const NodeArr &nodes, int idx) {
    Vector point{};
    nodes.GetPntM(idx, point.data());
    return point;
}

int liveSlots(const NodeArr &nodes, int from) {
    int live = 0;
    for (int i = from; i < nodes.GetLengthM(); ++i) {
        live += nodes.getCurrentItemPrtConstM()[i].IsAvailableM() == 31 ? 1 : 0;
    }
    return live;
}

TEST(StraightRun, EndsExactlyAndLeavesNothingLiveBehindIt) {
    const float p[3] = {0, 0, 0};
    const float q[3] = {0.3F, 1, -7};
    NodeArr nodes = nodesAt(std::vector<Vector>(9, Vector{8, 8, 8}));
    EXPECT_EQ(nodes.GenIsometryNodesBtTowPntsM(1, p, q), 0);
    EXPECT_EQ(nodes.GetBoundM(), 9);
    EXPECT_NE(nodes.GenIsometryNodesBtTowPntsM(4, p, q), 0);
    EXPECT_EQ(nodes.GetBoundM(), 4);
    EXPECT_EQ(nodes.GetAvailableNumM(), 4);
    EXPECT_EQ(liveSlots(nodes, 0), 4);
    EXPECT_EQ(pointOf(nodes, 3), (Vector{0.3F, 1, -7}));
    EXPECT_NEAR(pointOf(nodes, 1)[2], -7.0F / 3, 1e-6F);
    EXPECT_NE(nodes.GenIsometryNodesBtTowPntsM(40, p, q), 0);
    EXPECT_EQ(nodes.GetAvailableNumM(), 40);
    EXPECT_EQ(nodes.GenIsometryNodesBtTowPntsM(2, p, nodes.GetItemPM(0)->GetPntPM()), 1)
        << "an end in the list itself";
    EXPECT_EQ(pointOf(nodes, 1), pointOf(nodes, 0));
}

TEST(LimitedPoints, AreTakenStrictlyInsideTheLimits) {
    float limits[2] = {2, 3};
    const struct {
        float x;
        float y;
        bool taken;
    } cases[] = {{2, 1, false},     {1, 3, false},      {-1e-9F, 1, true},
                 {1, -1e-9F, true}, {-2e-8F, 1, false}, {1.9999F, 2.9999F, true}};
    for (const auto &c : cases) {
        NodeArr nodes;
        NodeCL scratch(31);
        nodes.AddPntAndNormM(scratch, limits, c.x, c.y, -5, 9, 9, 9);
        EXPECT_EQ(nodes.GetBoundM(), c.taken ? 1 : 0) << c.x << ' ' << c.y;
        EXPECT_EQ(nodes.GetAvailableNumM(), nodes.GetBoundM());
    }
    NodeArr nodes = nodesAt(std::vector<Vector>(4, Vector{1, 1, 1}));
    NodeCL scratch(31);
    nodes.AddPntAndNormM(scratch, limits, 1, 1, -5, 0, 0, 0);
    EXPECT_EQ(pointOf(nodes, 4), (Vector{1, 1, SL_ZERO})) << "in a full list z is lifted above 0";
    nodes.AddPntAndNormM(scratch, limits, 1, 2, -5, 0, 0, 0);
    EXPECT_EQ(pointOf(nodes, 5), (Vector{1, 2, -5}))
        << "in a slot that exists it is taken as it is";
}

constexpr float origin[3] = {0, 0, 0};
constexpr float zAxis[3] = {0, 0, 1};

TEST(Sweep, FullTurnClosesWithTheStartRowItself) {
    NodeArr nodes = nodesAt({{2, 0, 0}, {2.5F, 0, 1}, {3, 0, 2}, {3, 0, 3}, {1, 0, 4}});
    EXPECT_EQ(nodes.ExtendByRotateToCircleM(12, origin, zAxis, 0, SL_TWO_PI), 13);
    ASSERT_EQ(nodes.GetBoundM(), 70);
    EXPECT_EQ(nodes.GetAvailableNumM(), 70);
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(pointOf(nodes, 65 + k), pointOf(nodes, k));
        EXPECT_NEAR(pointOf(nodes, 60 + k)[0], pointOf(nodes, k)[0], 1e-5F);
    }
    EXPECT_NEAR(pointOf(nodes, 15)[0], 0.0F, 1e-5F);
    EXPECT_NEAR(pointOf(nodes, 15)[1], 2.0F, 1e-5F) << "three of twelve steps are a quarter turn";
}

TEST(Sweep, PartOfATurnStartsAtItsFirstAngleAndTakesTheNearestNumberOfSteps) {
    const struct {
        float a0;
        float a1;
        int rows;
    } cases[] = {{0, SL_HALF_PI, 4}, {0.25F, 0.25F + SL_HALF_PI, 4},
                 {0, 0.27F, 2},      {0, 0.26F, 1},
                 {1, 0, 1},          {0, NAN, 1}};
    for (const auto &c : cases) {
        NodeArr nodes = nodesAt({{2, 0, 0}, {9, 9, 9}, {2, 0, 1}});
        nodes.DelItemM(1);
        EXPECT_EQ(nodes.ExtendByRotateToCircleM(12, origin, zAxis, c.a0, c.a1), c.rows)
            << c.a0 << ' ' << c.a1;
        EXPECT_EQ(nodes.GetBoundM(), 3 + 2 * (c.rows - 1)) << "only live nodes are appended";
        EXPECT_NEAR(pointOf(nodes, 0)[0], 2 * std::cos(c.a0), 1e-6F);
    }
    NodeArr nodes = nodesAt({{2, 0, 0}});
    EXPECT_EQ(nodes.ExtendByRotateToCircleM(0, origin, zAxis, 0, 1), 0);
    EXPECT_EQ(nodes.GetBoundM(), 1);
}

TEST(CommonStations, LongerProfileIsInterpolatedAtTheStationsOfTheOther) {
    const NodeArr a = nodesAt({{1, 0, 10}, {1, 0, 10}, {2, 0, 5}, {3, 0, 0}});
    const NodeArr b = nodesAt({{4, 0, 9}, {8, 0, 0}});
    NodeArr oa = nodesAt(std::vector<Vector>(9, Vector{8, 8, 8}));
    NodeArr ob;
    EXPECT_EQ(UnitNodeLstM(a, b, &oa, &ob), 1);
    ASSERT_EQ(oa.GetBoundM(), 3);
    ASSERT_EQ(ob.GetBoundM(), 3);
    EXPECT_EQ(oa.GetAvailableNumM(), 3);
    EXPECT_EQ(liveSlots(oa, 3), 0);
    EXPECT_EQ(pointOf(ob, 0), (Vector{4, 0, 10})) << "both begin at the greater height";
    EXPECT_EQ(pointOf(oa, 1), (Vector{2, 0, 5}));
    EXPECT_EQ(pointOf(ob, 1), (Vector{6, 0, 5})) << "half way down from its own, lifted start";
    EXPECT_EQ(pointOf(ob, 2), (Vector{8, 0, 0}));
    UnitNodeLstM(b, a, &oa, &ob);
    EXPECT_EQ(pointOf(oa, 1), (Vector{6, 0, 5})) << "the other way round";
    EXPECT_EQ(pointOf(ob, 1), (Vector{2, 0, 5}));
    UnitNodeLstM(NodeArr(), a, &oa, &ob);
    EXPECT_EQ(oa.GetBoundM(), 0);
    EXPECT_EQ(ob.GetBoundM(), 0);
}

} // namespace
