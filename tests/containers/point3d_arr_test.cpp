// The list of points in space: its own storage operations.
#include "trunnion/containers/point3d_arr.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

using Point = std::array<float, 3>;

Point3DArr pointsOf(const std::vector<Point> &values) {
    Point3DArr points;
    for (const Point &value : values) {
        points.AddItemM(value.data());
    }
    return points;
}

Point at(const Point3DArr &points, int idx) {
    Point out{};
    points.GetItemM(out.data(), idx);
    return out;
}

TEST(Point3DArr, AddsOnlyWhatLiesOutsideTheBoxOfTheTolerance) {
    const struct {
        Point offset;
        bool same;
    } cases[] = {
        {{0.00005F, 0.00005F, 0.00005F}, true},
        {{0.000099F, 0.000099F, -0.000099F}, true},
        {{0.0001F, 0, 0}, false},
        {{0, 0, -0.001F}, false},
        {{5e-9F, 0, 0}, true},
    };
    for (const auto &c : cases) {
        Point3DArr points = pointsOf({{9, 9, 9}, {0, 0, 0}, {0, 0, 0}});
        Point moved = c.offset;
        EXPECT_EQ(points.AddPointM(moved.data()), c.same ? 1 : 3);
        EXPECT_EQ(points.GetBoundM(), c.same ? 3 : 4);
    }
    Point3DArr deleted = pointsOf({{1, 1, 1}, {2, 2, 2}});
    deleted.DelItemM(0);
    Point again{1, 1, 1};
    EXPECT_EQ(deleted.AddPointM(again.data()), 2) << "a deleted point matches nothing";
}

TEST(Point3DArr, WalksBackAndCancels) {
    Point3DArr points = pointsOf({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    points.DelItemM(1);
    Point out{};
    int idx = 0;
    EXPECT_EQ(points.GetLastM(out.data(), &idx), 1);
    EXPECT_EQ(idx, 2);
    EXPECT_EQ(points.GetPreviousM(out.data(), &idx, idx), 1);
    EXPECT_EQ(idx, 0);
    EXPECT_EQ(points.GetPreviousM(out.data(), &idx, 0), -1);
    EXPECT_EQ(idx, SL_DELETED_INT);
    EXPECT_EQ(out[2], SL_DELETED_REAL);
    EXPECT_EQ(points.IsPntAvailableM(1), 30);
    EXPECT_EQ(points.IsPntAvailableM(2), 31);
    EXPECT_EQ(points.CancelLastItemM(), 2);
    EXPECT_EQ(points.CancelLastItemM(), 1) << "a hole at the end is taken back like a point";
    EXPECT_EQ(points.CancelLastItemM(), 0);
    EXPECT_EQ(points.CancelLastItemM(), 0);
    EXPECT_EQ(points.GetAvailableNumM(), 0);
}

TEST(Point3DArr, GathersAndChangesZInsideTheListOnly) {
    Point3DArr points = pointsOf({{1, 2, 3}, {4, 5, 6}});
    points.SetItemZValueM(1, 9);
    points.SetItemZValueM(2, 9);
    points.SetItemZValueM(-1, 9);
    int idx[3] = {1, 7, 0};
    float out[3][3];
    points.GetVertexM(3, idx, out);
    EXPECT_EQ(out[0][2], 9.0F);
    EXPECT_EQ(out[1][0], SL_DELETED_REAL);
    EXPECT_EQ(out[1][1], SL_DELETED_REAL);
    EXPECT_EQ(out[2][2], 3.0F);
}

TEST(Point3DArr, AppendingKeepsTheRelativeSlots) {
    Point3DArr points = pointsOf({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    Point3DArr other = pointsOf({{4, 0, 0}, {5, 0, 0}, {6, 0, 0}});
    other.DelItemM(1);
    points.AppendPntsM(other);
    EXPECT_EQ(points.GetLengthM(), 6) << "the exact difference";
    EXPECT_EQ(points.GetBoundM(), 6);
    EXPECT_EQ(points.GetAvailableNumM(), 6) << "all new slots count";
    EXPECT_EQ(at(points, 5)[0], 6.0F);
    EXPECT_EQ(points.IsPntAvailableM(4), 30);
}

TEST(Point3DArr, MatrixMovesLivePointsAndTurnsDirectionsOnly) {
    const float move[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1};
    Point3DArr points = pointsOf({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    points.DelItemM(1);
    points.TransByMatrixM(move, 0);
    EXPECT_EQ(at(points, 0), (Point{11, 22, 33}));
    EXPECT_EQ(at(points, 1)[1], 5.0F);
    points.TransByMatrixM(move, 1);
    EXPECT_EQ(at(points, 2), (Point{17, 28, 39}));
}

TEST(Point3DArr, RawFileHoldsPointsAndNothingElse) {
    const test::TempDir dir;
    const std::string path = dir.path("points");
    std::FILE *file = std::fopen(path.c_str(), "wb");
    pointsOf({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}).FmOutputLstM(file);
    std::fclose(file);
    EXPECT_EQ(test::readBytes(path).size(), 36U);
    for (const int wanted : {2, 3, 2000000000, 0, -1}) {
        file = std::fopen(path.c_str(), "rb");
        Point3DArr points = pointsOf({{9, 9, 9}, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}, {9, 9, 9}});
        points.FmInputLstM(file, wanted);
        std::fclose(file);
        const int held = std::clamp(wanted, 0, 3);
        EXPECT_EQ(points.GetBoundM(), held);
        EXPECT_EQ(points.GetAvailableNumM(), held);
        EXPECT_LE(points.GetLengthM(), 15) << "no room is taken for what the file cannot hold";
        if (held > 1) {
            EXPECT_EQ(at(points, 1), (Point{4, 5, 6}));
        }
    }
}

} // namespace
