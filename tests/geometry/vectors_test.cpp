// Lengths, directions and angles.
#include "trunnion/geometry/scalars.h"

#include <tuple>

#include "tests/geometry/support.h"

using namespace test;

namespace {

constexpr float HUGE_F = std::numeric_limits<float>::max();
// Plain model: no snapping but that of lengths below 0.0001.
long double modelLength(long double squared) {
    return squared < 1e-8L ? 0.0L : std::sqrt(squared);
}

TEST(Lengths, MatchThePlainModel) {
    test::Random random(33);
    for (int round = 0; round < 3000; ++round) {
        const float size = round % 3 == 0 ? 2e-4F : 1000.0F;
        const Triple a = randomTriple(random, size), b = randomTriple(random, size);
        const double d[3] = {1.0 * b[0] - a[0], 1.0 * b[1] - a[1], 1.0 * b[2] - a[2]};
        const long double plane = 1.0L * d[0] * d[0] + 1.0L * d[1] * d[1];
        const long double space = plane + 1.0L * d[2] * d[2];
        const auto spaceLength = static_cast<float>(modelLength(space));
        const auto planeLength = static_cast<float>(modelLength(plane));
        ASSERT_FLOAT_EQ(slDistance3(a.data(), b.data()), spaceLength);
        ASSERT_FLOAT_EQ(slDistance(a[0], a[1], a[2], b[0], b[1], b[2]), spaceLength);
        ASSERT_DOUBLE_EQ(slLength(d), static_cast<double>(modelLength(space)));
        ASSERT_FLOAT_EQ(slDistance2(a.data(), b.data()), planeLength);
        ASSERT_DOUBLE_EQ(slLength2(d), static_cast<double>(modelLength(plane)));
        ASSERT_DOUBLE_EQ(slSquareDistance3(a.data(), b.data()), static_cast<double>(space));
        ASSERT_DOUBLE_EQ(slPlaneDistSqr(a.data(), b.data()), static_cast<double>(plane));
        ASSERT_FLOAT_EQ(slDistSquare2(a[0], a[1], b[0], b[1]), static_cast<float>(plane));
        ASSERT_EQ(slNorm2(a.data()), static_cast<float>(slLengthD(a.data())));
        ASSERT_EQ(slLength(a.data()), slNorm2(a.data()));
    }
}

TEST(Lengths, SnapShortOnesAndSurviveHugeOnes) {
    const float shorter[3] = {0.00009F, 0.0F, 0.0F}, longer[3] = {0.0F, 0.00009F, 0.00009F};
    const double nearby[2] = {1.0, 1.0}, tooGreatToSquare[3] = {3e200, 4e200, 0.0};
    const float greatest[3] = {HUGE_F, HUGE_F, HUGE_F};
    EXPECT_EQ(slLength(shorter), 0.0F);
    EXPECT_EQ(slLength2(shorter), 0.0F);
    EXPECT_NEAR(slLength(longer), 0.000127279F, 1e-9F);
    EXPECT_DOUBLE_EQ(slLength(tooGreatToSquare), 5e200);
    EXPECT_DOUBLE_EQ(slDistanceD2(nearby, tooGreatToSquare), 5e200);
    EXPECT_DOUBLE_EQ(slDistanceD2(nearby, nearby), 0.0);
    EXPECT_TRUE(std::isfinite(slSquareLength2(tooGreatToSquare)));
    EXPECT_EQ(slLength(greatest), HUGE_F);
    EXPECT_EQ(slSquareLength2(longer + 1), 2.0 * (static_cast<double>(0.00009F) * 0.00009F));
    EXPECT_EQ(slDot2D(greatest, greatest), HUGE_F);
    EXPECT_EQ(slDot2D(longer, greatest), 0.00009F * HUGE_F);
}

TEST(Normalizing, GivesPlusXWhereThereIsNoDirection) {
    // The square of SL_ZERO is below 1e-8, that of the next float above it.
    for (const auto &[y, result] :
         {std::pair{0.0F, 0}, {0.00005F, 0}, {-SL_ZERO, 0}, {-above(SL_ZERO), 1}, {-HUGE_F, 1}}) {
        const float origin[3] = {}, v[3] = {0, y, 0};
        float out[4][3] = {{0, y, 0}, {0, y, 0}};
        double wide[3][3] = {{0, y, 0}, {0, y, 0}};
        EXPECT_EQ(slNormalize(out[0]), result) << y;
        EXPECT_EQ(slNormalize2D(out[1]), result) << y;
        EXPECT_EQ(slLenAndDir(v, out[2]), slLength(v)) << y;
        EXPECT_EQ(slGetNormalVectBtPnts(origin, v, out[3]), result) << y;
        EXPECT_EQ(slNormalize(wide[0]), result) << y;
        EXPECT_EQ(slNormalize2D(wide[1]), result) << y;
        EXPECT_EQ(slGetNormalVectBtPnts(origin, v, wide[2]), result) << y;
        const Triple expected = {result == 1 ? 0.0F : 1.0F, result == 1 ? -1.0F : 0.0F, 0.0F};
        for (int i = 0; i < 4; ++i) {
            EXPECT_TRUE(std::equal(expected.begin(), expected.end(), out[i])) << y;
            EXPECT_TRUE(i == 3 || std::equal(expected.begin(), expected.end(), wide[i])) << y;
        }
    }
    double huge[3] = {0.0, 0.0, -1e300};
    EXPECT_EQ(slNormalize(huge), 1);
    EXPECT_EQ(huge[2], -1.0);
}

TEST(Directions, OthVectIsAUnitVectorAtRightAngles) {
    const float near = below(SL_ZERO), r = std::sqrt(0.5F);
    const std::tuple<Triple, Triple> cases[] = {
        {{0, 0, 0}, {1, 0, 0}},           {{near, 9, 9}, {1, 0, 0}},
        {{-SL_ZERO, near, 9}, {0, 1, 0}}, {{5, -SL_ZERO, -near}, {0, 0, 1}},
        {{1, 1, 1}, {-r, r, 0}},          {{3, 4, SL_ZERO}, {-0.8F, 0.6F, 0}},
    };
    for (const auto &[v, expected] : cases) {
        Triple out{};
        slOthVect(v.data(), out.data());
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_FLOAT_EQ(out[i], expected[i]);
        }
    }
    test::Random random(34);
    for (int round = 0; round < 500; ++round) {
        Triple n = randomTriple(random, 50.0F);
        slNormalize(n.data());
        Triple u{}, w{};
        slOthPlane(n.data(), u.data(), w.data());
        ASSERT_NEAR(test::dot(n, u), 0.0, 1.01e-4);
        ASSERT_NEAR(test::dot(n, w), 0.0, 1e-6);
        ASSERT_NEAR(test::dot(u, w), 0.0, 1e-6);
        ASSERT_NEAR(test::dot(w, w), 1.0, 1e-6);
    }
}

TEST(Directions, CompareByTheirTolerances) {
    const float shorter = below(SL_ZERO);
    // The cross product of the last but one is 0.000025 long, which snaps to 0.
    const std::tuple<Triple, Triple, int> cases[] = {
        {{1, 2, 3}, {-2, -4, -6}, 1},        {{1, 0, 0}, {0, 1, 0}, 0},
        {{0, 0, 0}, {0, 1, 0}, 0},           {{1, 0, 0}, {shorter, 0, 0}, 0},
        {{10, 0, 0}, {10, 0.00099F, 0}, 1},  {{10, 0, 0}, {10, 0.00101F, 0}, 0},
        {{0.005F, 0, 0}, {0, 0.005F, 0}, 1}, {{0.02F, 0, 0}, {0, 0.02F, 0}, 0},
    };
    for (const auto &[a, b, parallel] : cases) {
        EXPECT_EQ(slVectParallel(a.data(), b.data()), parallel) << a[0] << ' ' << b[1];
        EXPECT_EQ(slVectParallel(b.data(), a.data()), parallel);
    }
    const std::tuple<Triple, int, int> axes[] = {
        {{1, -1, 1}, 0, -1},      {{0, -2, 1}, 1, -1},     {{-1, 2, -3}, 2, -1},
        {{0, 0, 0}, 0, 0},        {{5, shorter, 0}, 0, 0}, {{5, SL_ZERO, 0}, 0, -1},
        {{shorter, -5, 0}, 1, 1}, {{0, shorter, 5}, 2, 2}, {{1e-9F, 5e-9F, 9e-9F}, 0, 0},
    };
    for (const auto &[v, greatest, axis] : axes) {
        EXPECT_EQ(slGetVectMaxDir(v.data()), greatest) << v[0] << ' ' << v[1];
        EXPECT_EQ(slComparWithCoordAxis(v.data()), axis) << v[0] << ' ' << v[1];
    }
    const float origin[3] = {};
    for (const auto &[x, equal] : {std::pair{shorter, 1}, {below(shorter), 1}, {SL_ZERO, 0}}) {
        const float p[3] = {0.0F, 0.0F, x};
        EXPECT_EQ(slIsEqualPoint3D(origin, p), equal) << x;
    }
}

TEST(Directions, ArmsMeetAtTheMiddlePoint) {
    const Triple a = {1, 2, 3}, b = {5, 5, 5}, c = {0, 7, 9};
    Triple u{}, w{};
    EXPECT_EQ(slVect(a.data(), b.data(), c.data(), u.data(), w.data()), 1);
    EXPECT_EQ(u, (Triple{-4, -3, -2}));
    EXPECT_EQ(w, (Triple{-5, 2, 4}));
    slSetPnt3DValueByDiv(-2.0F, w.data());
    EXPECT_EQ(w, (Triple{2.5F, -1, -2}));
}

TEST(Angles, BetweenVectorsSnapAndCarryTheSignOfTheReference) {
    const Triple x = {2, 0, 0}, y = {0, 3, 0}, up = {0, 0, 0.5F}, none = {0, 0, SL_ZERO};
    float angle = SENTINEL;
    const Triple slanted = {6, 8, 0};
    EXPECT_EQ(slGetVectAngle(x.data(), slanted.data(), &angle), 1);
    EXPECT_FLOAT_EQ(angle, std::acos(0.6F));
    EXPECT_EQ(slGetVectAngle(up.data(), none.data(), &angle), 0);
    EXPECT_EQ(angle, 0.5F * SL_ZERO);
    EXPECT_FLOAT_EQ(slCalAngleTwoVects(x.data(), y.data(), up.data()), 1.5707963F);
    EXPECT_FLOAT_EQ(slCalAngleTwoVects(slanted.data(), x.data(), up.data()), -std::acos(0.6F));
    EXPECT_FLOAT_EQ(slCalAngleTwoVects(none.data(), y.data(), up.data()), 1.5707963F);
    const double wideX[3] = {-1e250, 0, 0}, wideY[3] = {0, 3, 0}, wideUp[3] = {0, 0, 1};
    EXPECT_DOUBLE_EQ(slCalAngleTwoVects(wideX, wideY, wideUp), -std::acos(0.0));
    EXPECT_EQ(slCalAngleTwoVects(wideX, wideX, wideUp), 0.0);
}

TEST(Angles, InDegreesKeepTheirOwnFactors) {
    const auto degrees = [](double radians) {
        return static_cast<float>(radians * 180.0 * SL_ONE_OVER_PI);
    };
    const std::tuple<float, float, float> cases[] = {
        {0, -1, degrees(SL_TWO_PI - std::acos(0.0))},
        {0, 0.00005F, 0},
        {0, 2, degrees(std::acos(0.0))},
        {-3, 0, degrees(SL_PI_D)},
        {5, -0.01F, degrees(SL_TWO_PI)},
        {5, -SL_ZERO, 0},
        {3, 4, degrees(std::acos(0.6))},
    };
    for (const auto &[x, y, expected] : cases) {
        const float v[2] = {x, y};
        EXPECT_FLOAT_EQ(slGetVectorAngle(v), expected) << x << ' ' << y;
    }
    Triple a = {1, 0, 5}, b = {-6, 8, 5}, vertex = {0, 0, 5};
    EXPECT_FLOAT_EQ(slComputeAngle(a.data(), b.data(), vertex.data()),
                    static_cast<float>(std::acos(-0.6) * SL_DEGREES_PER_RADIAN));
    EXPECT_EQ(slComputeAngle(vertex.data(), b.data(), vertex.data()), 0.0F);
}

TEST(Angles, ToZRunThroughAWholeTurn) {
    const Triple p = {1, 2, 3};
    const std::tuple<int, Triple, float> cases[] = {
        {0, {0, 0, 4}, 0},           {1, {0, 0, 4}, 0},
        {0, {0, -2, 0}, 1.5707963F}, {0, {0, 2, 0}, SL_TWO_PI - 1.5707963F},
        {1, {2, 0, 0}, 1.5707963F},  {1, {-2, 0, 0}, SL_TWO_PI - 1.5707963F},
        {0, {0, 0, -1}, SL_PI},      {7, {0, 0, 0}, 1.5707963F},
    };
    for (const auto &[axis, step, expected] : cases) {
        const Triple q = {p[0] + step[0], p[1] + step[1], p[2] + step[2]};
        EXPECT_FLOAT_EQ(slGetDirectAngleToZ(axis, p.data(), q.data()), expected);
    }
}

TEST(Angles, MirrorAboutTheVerticalStaysWithinATurn) {
    for (const auto &[start, expected] :
         {std::pair{0.0F, SL_PI}, {SL_PI, 0.0F}, {above(SL_PI), SL_TWO_PI}, {SL_TWO_PI, SL_PI}}) {
        float angle = start;
        EXPECT_EQ(slMirrorAngleAboutVerticalAxis(&angle), 1);
        EXPECT_EQ(angle, expected) << start;
    }
    test::Random random(35);
    for (int round = 0; round < 1000; ++round) {
        const float start = random.real(-SL_TWO_PI, 2.0F * SL_TWO_PI);
        float angle = start;
        slMirrorAngleAboutVerticalAxis(&angle);
        ASSERT_GE(angle, 0.0F) << start;
        ASSERT_LE(angle, SL_TWO_PI) << start;
        ASSERT_NEAR(std::cos(angle), -std::cos(start), 2e-6) << start;
        ASSERT_NEAR(std::sin(angle), std::sin(start), 2e-6) << start;
    }
}

} // namespace
