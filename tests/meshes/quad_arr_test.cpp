// Quad lists, by what differs from triangle lists.
#include "trunnion/meshes/quad_arr.h"

#include <gtest/gtest.h>

#include "trunnion/containers/slot_array.h"

namespace {

QuadCL makeQuad(int a, int b, int c, int d) {
    QuadCL quad(31);
    quad.SetQuadM(a, b, c, d);
    return quad;
}

TEST(QuadArr, MergingRefusesNothing) {
    QuadArr list;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(list.MergeQuadLstM(makeQuad(1, 2, 3, 4)), 1);
    }
    EXPECT_EQ(list.MergeQuadLstM(makeQuad(7, 7, 7, 7)), 1);
    int nodes[4] = {5, 6, 7, 8};
    EXPECT_EQ(list.ModifyM(0, nodes), 1);
    EXPECT_EQ(list.ModifyM(-1, nodes), 1);
    EXPECT_EQ(list.GetAvailableNumM(), 4);
    EXPECT_EQ(list.GetItemPM(0)->GetNodeIdxPM()[3], 8);
}

TEST(QuadArr, EdgesRunRoundTheCycleAndDiagonalsAreNone) {
    QuadArr list;
    list.MergeQuadLstM(makeQuad(1, 2, 3, 4));
    list.MergeQuadLstM(makeQuad(4, 3, 5, 6));
    list.MergeQuadLstM(makeQuad(9, 9, 9, 9));
    list.DelItemM(1); // still looked at
    const struct {
        int a, b, count, slot;
    } cases[] = {{1, 2, 1, 0},  {2, 3, 1, 0},  {3, 4, 2, 1},  {4, 1, 1, 0}, {4, 6, 1, 1},
                 {1, 3, 0, -5}, {2, 4, 0, -5}, {4, 5, 0, -5}, {1, 7, 0, -5}};
    for (const auto &edge : cases) {
        for (const bool reversed : {false, true}) {
            int slot = -5;
            EXPECT_EQ(reversed ? list.JudgeBoundM(edge.b, edge.a, &slot)
                               : list.JudgeBoundM(edge.a, edge.b, &slot),
                      edge.count);
            EXPECT_EQ(slot, edge.slot) << edge.a << edge.b;
        }
    }
    EXPECT_EQ(list.GetOneNeighbourPntM(4), 1);
    EXPECT_EQ(list.GetOneNeighbourPntM(5), 6);
    EXPECT_EQ(list.GetOneNeighbourPntM(8), SL_DELETED_INT);
}

TEST(QuadArr, RenumberingKeepsDegenerateQuadsOnlyByChange) {
    QuadArr list;
    for (int i = 0; i < 6; ++i) {
        list.MergeQuadLstM(makeQuad(1 + i, 2 + i, 3 + i, 4 + i));
    }
    list.ChangeNodeIdxM(2, 1);
    EXPECT_EQ(list.GetItemPM(0)->GetNodeIdxPM()[1], 1);
    EXPECT_EQ(list.GetAvailableNumM(), 6);

    IntArr map;
    for (const int entry : {10, 11, 12, 13, 14, 15, 14, 17, 18, 19}) {
        map.AddItemM(entry); // nodes 4 and 6, a diagonal of some quads, become one
    }
    list.ResetNodeIdxM(map); // slot 0 had become degenerate before
    EXPECT_EQ(list.GetBoundM(), 3);
    EXPECT_EQ(list.GetAvailableNumM(), 3);
    EXPECT_EQ(list.GetLengthM(), 4);
    EXPECT_EQ(list.GetItemPM(0)->GetNodeIdxPM()[0], 11);
    EXPECT_EQ(list.GetItemPM(1)->GetNodeIdxPM()[0], 15);
    list.MergeQuadLstM(makeQuad(1, 2, 3, 4));
    EXPECT_EQ(list.GetAvailableNumM(), 4);
}

TEST(QuadArr, NormalsTurnInDeletedSlotsToo) {
    QuadArr list;
    float normal[3] = {1, 2, 0};
    for (int i = 0; i < 2; ++i) {
        QuadCL quad = makeQuad(1, 2, 3, 4);
        quad.SetNormM(normal);
        list.MergeQuadLstM(quad);
    }
    list.DelItemM(0);
    const float quarterTurnAboutZ[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
    list.TransByMatrixM(quarterTurnAboutZ);
    list.NegativeNormalVectM();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(list.GetItemPM(i)->GetNormPM()[0], 2.0F);
        EXPECT_EQ(list.GetItemPM(i)->GetNormPM()[1], -1.0F);
    }
}

} // namespace
