// Triangle lists: the cases where the told order decides, and renumbering together with the nodes.
// Every scan against a plain model over random lists stands in facet_index_test.cpp.
#include "trunnion/meshes/triangle_arr.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/facet_model.h"
#include "tests/support/random.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/meshes/node_arr.h"

namespace {

const float up[3] = {0, 0, 1};

using Model = test::FacetModel<3>;
using Nodes = Model::Nodes;
using Slot = Model::Slot;

std::vector<Slot> slotsOf(const TriangleArr &list) {
    std::vector<Slot> slots;
    for (int i = 0; i < list.GetBoundM(); ++i) {
        const int *nodes = list.GetItemPM(i)->GetNodeIdxPM();
        slots.push_back({{nodes[0], nodes[1], nodes[2]}, list.GetItemPM(i)->IsAvailableM()});
    }
    return slots;
}

TriangleArr listOf(const std::vector<Nodes> &triangles) {
    TriangleArr list;
    for (const Nodes &nodes : triangles) {
        list.AddTriangleM(nodes.data(), up);
    }
    return list;
}

TEST(TriangleArr, ModifyInsertsBelowTheBoundAndStoresBehindIt) {
    TriangleArr list = listOf({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    int nodes[3] = {0, 0, 1};
    float normal[3] = {0, 2, 0};
    for (const int idx : {0, -1, 6}) {
        EXPECT_EQ(list.ModifyM(idx, nodes, normal), 1);
    }
    EXPECT_EQ(list.GetBoundM(), 7);
    EXPECT_EQ(list.GetAvailableNumM(), 5);
    EXPECT_EQ(list.GetItemPM(1)->GetNodeIdxPM()[0], 1);
    EXPECT_EQ(list.GetItemPM(6)->GetNormPM()[1], 2.0F);
}

struct StepCase {
    std::vector<Nodes> triangles;
    int previous, current;
    int result, next, slot;
};

const StepCase stepCases[] = {
    {{{1, 2, 3}}, 1, 2, 1, 3, 0},                       // onward along a lone triangle
    {{{1, 2, 3}}, 99, 2, 1, 1, 0},                      // no previous node: the lower position
    {{{1, 2, 3}}, 99, 7, 0, -5, -5},                    // a node that no triangle holds
    {{{1, 2, 3}, {1, 3, 2}}, 99, 2, 2, -5, 1},          // closed: no step, the last count
    {{{1, 2, 3}, {1, 3, 2}}, 1, 2, 1, 1, 1},            // closed: turns back
    {{{1, 2, 3}, {1, 4, 2}}, 3, 2, 1, 4, 1},            // past the inner edge to 1
    {{{1, 2, 3}, {2, 4, 5}, {2, 6, 7}}, 3, 2, 1, 1, 0}, // fans that meet in 2: the lowest slot
};

TEST(TriangleArr, BoundaryStepTakesTheLowestSlotThenTheLowestPosition) {
    for (const StepCase &step : stepCases) {
        const TriangleArr list = listOf(step.triangles);
        int pair[2] = {step.current, -5};
        int slot = -5;
        EXPECT_EQ(list.GetOneBoundWithStIdxM(step.previous, pair, &slot), step.result);
        EXPECT_EQ(pair[1], step.next);
        EXPECT_EQ(slot, step.slot);
    }
}

TEST(TriangleArr, EdgeMostNearlyAtARightAngleIsChosen) {
    NodeArr nodes;
    const float points[5][3] = {{0, 0, 0}, {1, 0.5F, 0}, {0, 1, 0}, {-1, 0.1F, 0}, {-1, -0.1F, 0}};
    for (const auto &point : points) {
        float copy[3] = {point[0], point[1], point[2]};
        NodeCL node(31);
        node.SetPntM(copy);
        nodes.AddItemM(node);
    }
    const TriangleArr list = listOf({{1, 2, 0}, {2, 3, 0}, {0, 4, 1}, {0, 1, 50}});
    const float y[3] = {0, 1, 0};
    int position = -5;
    list.FindTriangleByVectM(y, nodes, Int2DArr(), &position);
    EXPECT_EQ(position, -5);
    Int2DArr found;
    list.FindTriangleM(0, &found);
    const int foreign[3][2] = {{77, 0}, {0, 3}, {-1, -1}};
    for (const auto &entry : foreign) {
        found.AddItemM(entry);
    }
    list.FindTriangleByVectM(y, nodes, found, &position);
    EXPECT_EQ(position, 1); // by its second edge; slot 2 has the same angle and comes later

    // The first edge that improves ends the look at a triangle: the better second one of slot 0 is
    // not seen, at each position of the node.
    for (const Nodes &turned : {Nodes{0, 2, 3}, Nodes{2, 0, 3}, Nodes{3, 2, 0}}) {
        const TriangleArr pair = listOf({turned, {0, 1, 2}});
        Int2DArr both;
        pair.FindTriangleM(0, &both);
        pair.FindTriangleByVectM(y, nodes, both, &position);
        EXPECT_EQ(position, 1) << turned[0];
    }
}

TEST(TriangleArr, MajorityOfNormals) {
    const auto major = [](const std::vector<float> &normals) {
        TriangleArr list;
        for (const float z : normals) {
            const int nodes[3] = {0, 1, 2};
            const float normal[3] = {0, 0, z};
            list.AddTriangleM(nodes, normal);
        }
        float normal[3];
        list.GetMajorNormM(normal);
        return normal[2];
    };
    EXPECT_EQ(major({1, -2, -3, -4}), -2.0F);
    EXPECT_EQ(major({1, 2, -3, -4}), 1.0F);
    EXPECT_EQ(major({1, 0, -3, -4}), 1.0F); // at a right angle counts as agreeing
    EXPECT_EQ(major({1, -1}), 1.0F);
    EXPECT_EQ(major({}), 0.0F);
}

NodeArr numberedNodes(int count) {
    NodeArr nodes;
    for (int i = 0; i < count; ++i) {
        float point[3] = {static_cast<float>(i), 0, 0};
        NodeCL node(31);
        node.SetPntM(point);
        nodes.AddItemM(node);
    }
    return nodes;
}

IntArr indexList(int first, int count) {
    IntArr indexes;
    for (int i = 0; i < count; ++i) {
        indexes.AddItemM(first + i);
    }
    return indexes;
}

TEST(NodeArr, MergedNodesLeaveTheirNumberToTheTarget) {
    NodeArr nodes = numberedNodes(20);
    IntArr indexes = indexList(10, 7);
    TriangleArr triangles = listOf({{12, 1, 2}, {1, 13, 14}, {14, 15, 2}, {1, 2, 3}, {9, 16, 13}});
    nodes.MergeNodesM(&indexes, 2, 5, &triangles);
    for (int position = 0; position < 7; ++position) {
        const bool merged = position >= 2 && position < 5;
        EXPECT_EQ(*indexes.GetItemPM(position), merged ? SL_DELETED_INT : 10 + position);
        EXPECT_EQ(nodes.GetItemPM(10 + position)->IsAvailableM(),
                  merged ? TAG_DELETED : TAG_AVAILABLE);
    }
    EXPECT_EQ(nodes.GetAvailableNumM(), 17);
    const std::vector<Slot> expected = {
        {{15, 1, 2}, 31}, {{1, 15, 15}, 32}, {{15, 15, 2}, 32}, {{1, 2, 3}, 31}, {{9, 16, 15}, 31}};
    EXPECT_EQ(slotsOf(triangles), expected);
    nodes.MergeNodesM(&indexes, 6, 5, &triangles);
    nodes.MergeNodesM(&indexes, 0, 7, &triangles); // no such position
    EXPECT_EQ(nodes.GetAvailableNumM(), 17);
}

TEST(NodeArr, ClosingGapsRenumbersListAndTriangles) {
    test::Random random(11);
    for (int round = 0; round < 400; ++round) {
        const int count = random.integer(0, 12);
        NodeArr nodes = numberedNodes(count);
        IntArr indexes = indexList(0, count);
        TriangleArr triangles;
        Model model;
        for (int i = 0; i < 8; ++i) {
            const Nodes three{random.integer(0, 12), random.integer(0, 12), random.integer(0, 12)};
            triangles.AddTriangleM(three.data(), up);
            model.add(three);
        }
        for (int i = 0; i < count; ++i) {
            if (random.oneIn(3)) {
                nodes.DelItemM(i);
            }
            if (random.oneIn(3)) { // a hole, or a node named twice
                indexes[i] = random.oneIn(2) ? SL_DELETED_INT : random.integer(0, count);
            }
        }
        std::vector<int> kept;
        for (int i = 0; i < nodes.GetBoundM(); ++i) {
            if (nodes.GetItemPM(i)->IsAvailableM() == TAG_AVAILABLE) {
                kept.push_back(i);
            }
        }
        IntArr expected = indexes;
        expected.PurgeDeletedItemM();
        for (int target = 0; target < static_cast<int>(kept.size()); ++target) {
            if (kept[target] != target) {
                model.change(kept[target], target, true);
                expected.ChangeNodeIdxM(kept[target], target);
            }
        }
        nodes.PurgeDeletedNodes(&indexes, &triangles);
        ASSERT_EQ(nodes.GetBoundM(), static_cast<int>(kept.size()));
        ASSERT_EQ(nodes.GetAvailableNumM(), nodes.GetBoundM());
        for (int i = 0; i < nodes.GetBoundM(); ++i) {
            ASSERT_EQ(nodes.GetItemPM(i)->GetPntPM()[0], static_cast<float>(kept[i]));
        }
        ASSERT_EQ(indexes.GetBoundM(), expected.GetBoundM());
        for (int i = 0; i < indexes.GetBoundM(); ++i) {
            ASSERT_EQ(indexes[i], expected[i]);
        }
        ASSERT_EQ(slotsOf(triangles), model.slots);
        ASSERT_EQ(triangles.GetAvailableNumM(), model.available);
    }
}

} // namespace
