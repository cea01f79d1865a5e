// What a list of points measures of its cloud.
#include "trunnion/containers/point3d_arr.h"

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "trunnion/geometry/planes.h"

namespace {

using Point = std::array<float, 3>;

Point3DArr cloudOf(const std::vector<Point> &values) {
    Point3DArr points;
    for (const Point &value : values) {
        points.AddItemM(value.data());
    }
    return points;
}

constexpr float origin[3] = {0, 0, 0};
constexpr float xAxis[3] = {1, 0, 0};
constexpr float yAxis[3] = {0, 1, 0};
constexpr float zAxis[3] = {0, 0, 1};

TEST(PointCloud, FarthestPairIsTheEarliestOfEqualOnesAmongTheLivePointsCounted) {
    Point3DArr cloud = cloudOf({{0, 0, 0}, {3, 0, 0}, {9, 9, 9}, {0, 4, 0}, {3, 0, 0}, {0, 4, 0}});
    cloud.DelItemM(2);
    const struct {
        int start;
        int count;
        float squared;
        int i1;
        int i2;
    } cases[] = {
        {0, -1, 25, 1, 3},
        {0, 2, 9, 0, 1},
        {0, 3, 25, 1, 3},
        {3, -1, 25, 3, 4},
        {4, 2, 25, 4, 5},
        {0, 1, 0, SL_DELETED_INT, SL_DELETED_INT},
        {9, -1, 0, SL_DELETED_INT, SL_DELETED_INT},
        {0, 0, 0, SL_DELETED_INT, SL_DELETED_INT},
    };
    for (const auto &c : cases) {
        int i1 = 7;
        int i2 = 7;
        EXPECT_EQ(cloud.GetFarthestTwoPointsM(c.start, c.count, &i1, &i2), c.squared)
            << c.start << ' ' << c.count;
        EXPECT_EQ(i1, c.i1);
        EXPECT_EQ(i2, c.i2);
    }
}

TEST(PointCloud, FarthestFromLineAndPlaneKeepTheirUnits) {
    const Point3DArr cloud = cloudOf({{1, 0, 2}, {5, 2, 0}, {7, 0, -2}, {0, 0, 0}});
    int idx = 7;
    EXPECT_EQ(cloud.GetFarthestPntToLineM(origin, xAxis, 0, -1, &idx), 4.0F) << "squared";
    EXPECT_EQ(idx, 0);
    EXPECT_EQ(cloud.GetFarthestPntToPlaneM(zAxis, -1.0F, 0, -1, &idx), 3.0F) << "not squared";
    EXPECT_EQ(idx, 2);
    EXPECT_EQ(cloud.GetFarthestPntToLineM(origin, xAxis, 3, -1, &idx), 0.0F);
    EXPECT_EQ(idx, SL_DELETED_INT);
}

TEST(PointCloud, ShapeErrorsMeasureTheSpreadAndNotTheDistance) {
    const float ab[3] = {1, 0, 0};
    EXPECT_EQ(cloudOf({{0, 0, 5}, {3, 5, 0}, {7, 0, -5}}).GetShapeErrorToLineM(origin, ab), 0.0F);
    const float center[3] = {0, 0, 0};
    const Point3DArr ring = cloudOf({{3, 0, 0}, {0, 1, 0}, {-3, 0, 0}, {0, -1, 0}});
    EXPECT_FLOAT_EQ(ring.GetShapeErrorToCircleM(center, 2.0F), 0.5F);
    EXPECT_FLOAT_EQ(cloudOf({{0, 0, 2}, {0, 0, -4}}).GetShapeErrorToPlaneM(zAxis, 0.0F),
                    std::sqrt(2.0F) / 2.0F);
    EXPECT_EQ(Point3DArr().GetShapeErrorToPlaneM(zAxis, 0.0F), 0.0F);
}

TEST(PointCloud, LeastSquaresPlaneIsPositiveAlongTheDominantAxisOfTheHint) {
    test::Random random(5);
    for (const Point &hint : {Point{9, 1, 2}, Point{1, -9, 2}, Point{0, 1, -9}}) {
        const int w = hint[0] == 9 ? 0 : hint[1] == -9 ? 1 : 2;
        Point3DArr cloud;
        for (int i = 0; i < 50; ++i) {
            Point p{};
            p[static_cast<std::size_t>((w + 1) % 3)] = random.real(-5, 5);
            p[static_cast<std::size_t>((w + 2) % 3)] = random.real(-5, 5);
            p[static_cast<std::size_t>(w)] = 3.0F + 0.5F * p[static_cast<std::size_t>((w + 1) % 3)];
            cloud.AddItemM(p.data());
        }
        float normal[3];
        float d = 0;
        ASSERT_EQ(cloud.GenPlaneByLeastSquareM(hint.data(), normal, &d), 1);
        const float length = std::sqrt(1.25F);
        EXPECT_NEAR(normal[w], 1.0F / length, 1e-5F);
        EXPECT_NEAR(normal[(w + 1) % 3], -0.5F / length, 1e-5F);
        EXPECT_NEAR(d, -3.0F / length, 1e-4F);
    }
    float normal[3] = {7, 7, 7};
    float d = 7;
    EXPECT_EQ(cloudOf({{0, 0, 0}, {1, 0, 0}}).GenPlaneByLeastSquareM(zAxis, normal, &d), 0);
    EXPECT_EQ(normal[2], 7.0F);
    EXPECT_EQ(d, 7.0F);
}

TEST(PointCloud, CentreAveragesAndExtents) {
    Point3DArr cloud = cloudOf({{1, 0, 0}, {50, 50, 50}, {3, 4, 0}, {-1, 2, 6}});
    cloud.DelItemM(1);
    float out[3] = {9, 9, 9};
    cloud.GetBaryCenterM(out);
    EXPECT_FLOAT_EQ(out[0], 1.0F);
    EXPECT_FLOAT_EQ(out[1], 2.0F);
    EXPECT_FLOAT_EQ(out[2], 2.0F);
    EXPECT_FLOAT_EQ(cloud.GetMaxLenToGivenPntM(origin), std::sqrt(41.0F));
    EXPECT_FLOAT_EQ(cloud.GetAverageDistToPntM(origin), (1.0F + 5.0F + std::sqrt(41.0F)) / 3.0F);
    EXPECT_FLOAT_EQ(cloud.GetAverageDistToLineM(origin, xAxis), (4.0F + std::sqrt(40.0F)) / 3.0F);
    float x[2];
    float y[2];
    float z[2];
    cloud.GetMaxMinM(xAxis, yAxis, zAxis, x, y, z);
    EXPECT_EQ(x[0], -1.0F);
    EXPECT_EQ(x[1], 3.0F);
    EXPECT_EQ(z[1], 6.0F);
    Point3DArr().GetBaryCenterM(out);
    EXPECT_EQ(out[0], 0.0F);
    EXPECT_EQ(Point3DArr().GetAverageDistToPntM(origin), 0.0F);
}

TEST(PointCloud, PointsMoveToAPlaneOrIntoAFrame) {
    Point3DArr cloud = cloudOf({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    cloud.DelItemM(1);
    const float above[3] = {5, 5, 1};
    cloud.ProjectPntsToPlaneM(above, zAxis);
    EXPECT_EQ(cloud.GetItemPM(0)[2], 1.0F);
    EXPECT_EQ(cloud.GetItemPM(1)[2], 6.0F) << "a deleted point stays";
    const XYCoordSysD frame = {{1, 1, 1}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}};
    cloud.TransToLocalCoordSysM(frame);
    EXPECT_EQ(cloud.GetItemPM(2)[0], 7.0F);
    EXPECT_EQ(cloud.GetItemPM(2)[1], -6.0F);
    EXPECT_EQ(cloud.GetItemPM(2)[2], 0.0F);
}

} // namespace
