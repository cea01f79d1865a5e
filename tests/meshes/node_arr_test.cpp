// Node lists: which node a search finds, at the tolerance and among equals.
#include "trunnion/meshes/node_arr.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/scalars.h"

namespace {

struct P {
    float x, y, z;
};

NodeCL makeNode(P p, P normal = {0, 0, 1}) {
    float point[3] = {p.x, p.y, p.z};
    float direction[3] = {normal.x, normal.y, normal.z};
    NodeCL node(31);
    node.SetNodeM(point, direction);
    return node;
}

NodeArr makeList(const std::vector<P> &points) {
    NodeArr list;
    for (const P &point : points) {
        list.AddItemM(makeNode(point));
    }
    return list;
}

float xOf(const NodeArr &list, int idx) {
    return list.GetItemPM(idx)->GetPntPM()[0];
}

struct MergeCase {
    P given;
    int slot;
};

// Into live nodes at x = 0 (slot 0), 1 (slot 1, deleted), 2 (slot 2) and 2.0001 (slot 3).
const MergeCase mergeCases[] = {
    {{0.00009F, 0, 0}, 0},  {{0.00011F, 0, 0}, 4},
    {{0, -0.00009F, 0}, 0}, {{0, 0, 0.0001F}, 4},
    {{1, 0, 0}, 4},         {{2.00005F, 0, 0}, 2},
    {{2.00015F, 0, 0}, 3},  {{0.00007F, 0.00007F, 0.00007F}, 4},
};

TEST(NodeArr, MergingTakesTheFirstLiveNodeWithinTheTolerance) {
    for (const MergeCase &merge : mergeCases) {
        NodeArr list = makeList({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2.00011F, 0, 0}});
        list.DelItemM(1);
        int slot = -1;
        EXPECT_EQ(list.MergeNodeLstM(makeNode(merge.given, {1, 0, 0}), &slot), 1);
        EXPECT_EQ(slot, merge.slot) << merge.given.x << " " << merge.given.y;
        EXPECT_EQ(list.GetBoundM(), std::max(4, merge.slot + 1));
        EXPECT_EQ(list.GetItemPM(0)->GetNormalPM()[2], 1.0F);
    }
    NodeArr list; // a node that is not live is stored and never found
    int slot = -1;
    list.MergeNodeLstM(NodeCL(), &slot);
    list.MergeNodeLstM(NodeCL(), &slot);
    EXPECT_EQ(slot, 1);
    EXPECT_EQ(list.GetAvailableNumM(), 0);
}

TEST(NodeArr, PurgingRunsComparesWithTheLastNodeKept) {
    // Steps of 0.00006: each node repeats its neighbour, every second one moves the anchor.
    std::vector<P> points(7);
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i] = {0.00006F * static_cast<float>(i), 0, 0};
    }
    points.push_back({0, 0, 0}); // coincides with slot 0 but is no neighbour
    NodeArr list = makeList(points);
    list.PurgeMultiSamePntsToOneM(1);
    EXPECT_EQ(list.GetBoundM(), 5);
    EXPECT_EQ(list.GetAvailableNumM(), 5);
    EXPECT_EQ(xOf(list, 1), points[2].x);
    EXPECT_EQ(xOf(list, 4), 0.0F);

    struct {
        P normal;
        int mode;
        int left;
    } const cases[] = {
        {{0, 0, -1}, 0, 2}, {{0, 0, -1}, 1, 1}, {{0.01F, 0, 1}, 0, 1}, {{0.02F, 0, 1}, 0, 2}};
    for (const auto &purge : cases) {
        NodeArr pair = makeList({{5, 5, 5}});
        pair.AddItemM(makeNode({5, 5, 5}, purge.normal));
        pair.PurgeMultiSamePntsToOneM(purge.mode);
        EXPECT_EQ(pair.GetBoundM(), purge.left);
        // What was left behind is no live slot: the next node counts.
        pair.AddItemM(makeNode({0, 0, 0}));
        EXPECT_EQ(pair.GetAvailableNumM(), purge.left + 1);
    }
    NodeArr none;
    none.PurgeMultiSamePntsToOneM(0);
    EXPECT_EQ(none.GetBoundM(), 0);
}

TEST(NodeArr, NearestNodeIsTheFirstOfEqualOnes) {
    const NodeArr empty;
    const float origin[3] = {};
    NodeCL node;
    EXPECT_EQ(empty.GetNearestNodeM(node, origin), SL_DELETED_INT);
    NodeArr list = makeList({{0, 0, 0}, {2, 0, 0}, {0.00005F, 0, 0}, {-2, 0, 0}, {0, 0, 0}});
    list.DelItemM(0);
    EXPECT_EQ(list.GetNearestNodeM(node, origin), 2); // both distances snap to 0
    EXPECT_EQ(node.GetPntPM()[0], 0.00005F);

    float distance = 2.5F;
    int idx = -7;
    TriangleCL triangle;
    triangle.SetTriangleM(1, 3, 99); // a corner outside the list is passed over
    EXPECT_EQ(list.GetNearestNodeM(&distance, &idx, triangle, origin), 1);
    QuadCL quad;
    quad.SetQuadM(3, 0, 2, -1); // the deleted slot 0 counts
    EXPECT_EQ(list.GetNearestNodeM(&distance, &idx, quad, origin), 0);
    EXPECT_EQ(distance, 0.0F);
}

TEST(NodeArr, DescentStopsWhereTheDistanceNoLongerFalls) {
    const NodeArr list = makeList({{9, 0, 0}, {5, 0, 0}, {-5, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    const auto descend = [&](const std::vector<int> &order, int position) {
        IntArr indexes;
        for (const int slot : order) {
            indexes.AddItemM(slot);
        }
        list.GetNearestNodeIdxM(makeNode({0, 0, 0}), indexes, &position);
        return position;
    };
    EXPECT_EQ(descend({0, 1, 2, 3}, 0), 1); // a plateau
    EXPECT_EQ(descend({0, 1, 3, 4}, 0), 2);
    EXPECT_EQ(descend({0, 1, 3}, 0), 2); // the end of the list
    EXPECT_EQ(descend({0, 1, 77}, 0), 1);
    EXPECT_EQ(descend({77, 1, 3}, 0), 0); // no node to start from
    EXPECT_EQ(descend({0, 1}, 2), 2);
    EXPECT_EQ(descend({0, 1}, -1), -1);
}

struct PickCase {
    std::vector<P> points;
    float radius;
    int selected;
};

const PickCase pickCases[] = {
    {{{1, 5, 0}, {1.000025F, 1, 0}}, 2, 1}, // behind by less than the tolerance, nearer in space
    {{{1, 1, 0}, {1.000025F, 5, 0}}, 2, 0}, // and farther
    {{{1, 5, 0}, {1.0001F, 1, 0}}, 2, 0},   // behind by more than the tolerance
    {{{1, 1, 0}, {0.99999F, 9, 0}}, 2, 1},  // nearer in the view wins whatever the depth
    {{{0, 0, 1}, {0, 0, -1}}, 2, 0},        // equal in both
    {{{2, 0, 0}, {0, 50, 2}}, 2, -1},       // on the circle is outside
    {{}, 2, -1},
};

TEST(NodeArr, PickingJudgesInTheViewAndSettlesTiesInSpace) {
    const float pick[3] = {0, 0, 0};
    float view[16];
    slSetIdentity(view);
    for (const PickCase &test : pickCases) {
        const NodeArr list = makeList(test.points);
        float point[3] = {-9, -9, -9};
        EXPECT_EQ(list.GetSelectedIdxM(view, pick, test.radius, point), test.selected);
        EXPECT_EQ(point[0], test.selected < 0 ? -9.0F : test.points[test.selected].x);
    }
    // The view moves the node under the pick point; the node's own point comes back.
    view[12] = -30.0F;
    NodeArr list = makeList({{0, 0, 0}, {30, 1, 0}, {30, 0, 0}});
    list.DelItemM(2);
    float point[3];
    EXPECT_EQ(list.GetSelectedIdxM(view, pick, 1.0F, point), 1);
    EXPECT_EQ(point[0], 30.0F);
}

TEST(NodeArr, CornerOfAFrameIsSoughtAlongOneAxisAndThenTheOther) {
    const float origin[3] = {0, 0, 0};
    const float x[3] = {1, 0, 0};
    const float y[3] = {0, 1, 0};
    int idx = -3;
    NodeArr().GetMinPntIdxM(origin, y, x, &idx);
    EXPECT_EQ(idx, -3);
    // Slot 1 ties with slot 0 along a and is nearer along b; slot 2 is nearest along a but farther
    // along b, so it does not qualify.
    makeList({{5, 1, 0}, {-3, 1.00005F, 0}, {4, 0, 0}}).GetMinPntIdxM(origin, y, x, &idx);
    EXPECT_EQ(idx, 1);
    NodeArr list = makeList({{1, 5, 0}, {3, 0, 0}});
    list.DelItemM(1); // at the origin now, and still looked at
    list.AddItemM(makeNode({9, 9, 9}));
    list.GetMinPntIdxM(origin, y, x, &idx);
    EXPECT_EQ(idx, 0); // the last slot gave way to the added node
}

TEST(NodeArr, ExtentsOfTheLiveNodes) {
    float axes[3][3] = {{1, 0, 0}, {0, -2, 0}, {1, 1, 1}};
    NodeArr list = makeList({{-100, -100, -100}, {1, 2, 3}, {-4, 5, 6}});
    list.DelItemM(0);
    const float expected[2][3][2] = {{{-4, 1}, {-10, -4}, {6, 7}}, {}};
    for (const auto &extents : expected) {
        float got[3][2];
        list.GetMaxMinM(axes[0], axes[1], axes[2], got[0], got[1], got[2]);
        // To the bit: a 0 that became -0 counts.
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
        EXPECT_EQ(std::memcmp(got, extents, sizeof got), 0);
        float x;
        float y;
        list.GetMinXY(&x, &y);
        EXPECT_EQ(x, list.GetAvailableNumM() == 0 ? SL_BIG : -4.0F);
        EXPECT_EQ(y, list.GetAvailableNumM() == 0 ? SL_BIG : 2.0F);
        list.DelAllM();
    }
}

struct LineCase {
    std::vector<P> points;
    int result;
};

const LineCase lineCases[] = {
    {{{1, 1, 1}, {1, 1, 1}}, 1},
    {{{0, 0, 0}, {1, 0, 0}, {-1, 0, 0}}, 1},
    {{{0, 0, 0}, {0, 1, 0}, {0, -1, 0}}, 0}, // opposite directions without an x
    {{{0, 0, 0}, {0, 1, 0}, {0, 2, 0}}, 1},
    {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1.00005F}, {1, 1, 1}}, 1},
    {{{0, 0, 0}, {0, 0, 0}, {1, 2, 3}, {2, 4, 6}, {-1, -2, -3}}, 1},
    {{{0, 0, 0}, {1000, 0, 0}, {1000, 0.05F, 0}}, 1}, // a direction within 0.0001
    {{{0, 0, 0}, {1000, 0, 0}, {1000, 0.2F, 0}}, 0},
};

TEST(NodeArr, OneLineIsJudgedByDirectionsFromTheFirstNode) {
    for (const LineCase &line : lineCases) {
        NodeArr list = makeList({{7, -3, 2}});
        for (const P &point : line.points) {
            list.AddItemM(makeNode(point));
        }
        list.DelItemM(0);
        EXPECT_EQ(list.IsOneLineM(), line.result);
    }
}

TEST(NodeArr, VectorsRunFromTheSecondNodeToTheFirst) {
    const NodeArr list = makeList({{1, 2, 3}, {5, 1, 1}, {1, 7, 3}});
    float vector[3];
    EXPECT_EQ(list.GenerateVectorM(0, 1, vector), 1);
    EXPECT_EQ(vector[0], -4.0F);
    EXPECT_EQ(list.GeneratePositiveVectorM(0, 1, vector), 1);
    EXPECT_EQ(vector[0], 4.0F);
    EXPECT_EQ(vector[1], -1.0F);
    list.GeneratePositiveVectorM(0, 2, vector);
    EXPECT_EQ(vector[1], -5.0F);                // x is 0
    list.GeneratePositiveVectorM(0, 9, vector); // no such node: untouched
    EXPECT_EQ(vector[1], -5.0F);
}

TEST(NodeArr, NodesKeepTheirSlotInAnotherList) {
    NodeArr source = makeList({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    source.DelItemM(1);
    NodeArr list = makeList({{-8, 0, 0}});
    for (int idx = -1; idx < 6; ++idx) {
        EXPECT_EQ(list.AddNodeByIndex(idx, source), 1);
    }
    EXPECT_EQ(list.GetBoundM(), 4);
    EXPECT_EQ(list.GetAvailableNumM(), 3);
    EXPECT_EQ(xOf(list, 0), -8.0F);
    EXPECT_EQ(xOf(list, 3), 3.0F);
}

TEST(NodeArr, OrderIsReversedByNodesAndByRows) {
    NodeArr list = makeList({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}});
    list.DelItemM(0);
    list.InverseNodeLstM();
    EXPECT_EQ(xOf(list, 0), 5.0F);
    EXPECT_EQ(xOf(list, 2), 3.0F);
    EXPECT_EQ(list.GetItemPM(5)->IsAvailableM(), TAG_DELETED);
    list.InverseMeshNodeLstM(3, 2);
    EXPECT_EQ(xOf(list, 0), 1.0F);
    EXPECT_EQ(xOf(list, 2), 3.0F);
    EXPECT_EQ(xOf(list, 4), 5.0F);
    list.InverseMeshNodeLstM(60000, 60000); // no such grid
    list.InverseMeshNodeLstM(-2, -2);
    EXPECT_EQ(xOf(list, 0), 1.0F);
}

TEST(NodeArr, WholeListTransformsTakeDeletedSlotsToo) {
    NodeArr list = makeList({{9, 9, 9}, {1, 0, 0}, {0, 2, 0}});
    list.DelItemM(0); // at the origin now
    list.SetItemM(makeNode({0, 2, 0}, {1, 0, 0}), 2);
    const float up[3] = {0, 0, 1};
    const float pivot[3] = {1, 0, 0};
    list.RotateM(pivot, up, SL_HALF_PI);
    const float origin[3] = {0, 0, 0};
    const float factors[3] = {2, 2, 2};
    float scale[16];
    slGenScaleMatrix(origin, factors, scale);
    list.ScaleM(scale);
    Point3DArr points;
    list.GetPntLstM(&points);
    const float expected[3][2] = {{2, -2}, {2, 0}, {-2, -2}};
    for (int i = 0; i < 3; ++i) {
        float point[3];
        list.GetOnePntM(i, point);
        EXPECT_NEAR(point[0], expected[i][0], 1e-5);
        EXPECT_NEAR(points.GetItemPM(i)[1], expected[i][1], 1e-5);
    }
    EXPECT_NEAR(list.GetItemPM(2)->GetNormalPM()[1], 1.0F, 1e-6); // turned, not scaled
}

} // namespace
