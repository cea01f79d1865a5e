// Arc construction: centres, radii and end points, and what slSetArcPara makes of an arc.
#include "trunnion/curves/arcs.h"

#include <cfloat>
#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/curves/curve_support.h"
#include "trunnion/geometry/scalars.h"

namespace {

using namespace test;

constexpr int CCW = CUR_DIR_CCW, CW = CUR_DIR_CW;
const float ROOT2 = std::sqrt(2.0F), ROOT3 = std::sqrt(3.0F);

// What the constructing functions write, and a row that expects a failure.
struct Outputs {
    float r = SENTINEL, u = SENTINEL, v = SENTINEL;

    void expect(const Outputs &expected, float slack = 1e-6F) const {
        EXPECT_NEAR(r, expected.r, slack);
        EXPECT_NEAR(u, expected.u, slack);
        EXPECT_NEAR(v, expected.v, slack);
    }
};

// Ends at the bound coincide. A radius reaches if it is the half chord with the tolerance, as a
// float; any other direction than CW turns counter-clockwise.
TEST(Arcs, CentreFromEndsAndRadius) {
    const float reach = 0.9999F, ends = 2 * SL_ZERO;
    const struct {
        int direction;
        float ub, r; // from (0, 0) to (ub, 0)
        int result;
        float cu = SENTINEL, cv = SENTINEL;
    } cases[] = {{CCW, 2, 2, 1, 1, ROOT3},   {CW, 2, 2, 1, 1, -ROOT3},
                 {CCW, 2, -2, 1, 1, -ROOT3}, {CW, 2, -2, 1, 1, ROOT3},
                 {0, 2, 2, 1, 1, ROOT3},     {CCW, 2, 1, 1, 1, 0},
                 {CCW, 2, reach, 1, 1, 0},   {CCW, 2, -reach, 1, 1, 0},
                 {CCW, 2, 0.99989F, 0},      {CCW, 2, 0, 0},
                 {CCW, 0, 3, 1, 3, 0},       {CCW, 0, -3, 1, -3, 0},
                 {CCW, ends, 3, 1, 3, 0},    {CCW, above(ends), 3, 1, SL_ZERO, 3},
                 {CCW, above(ends), 0, 0}};
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.direction << " to " << c.ub << ", r " << c.r);
        Outputs out;
        EXPECT_EQ(slCalArcCent(c.direction, 0, 0, c.ub, 0, c.r, &out.u, &out.v), c.result);
        out.expect({SENTINEL, c.cu, c.cv});
    }
}

TEST(Arcs, CentreWithASlackOnTheRadius) {
    // From (0, 0) to (ub, 0).
    const std::tuple<float, float, float, int, Outputs> cases[] = {
        {2, 2, 0.01F, 1, {2, 1, ROOT3}},
        {2, -2, 0.01F, 1, {-2, 1, -ROOT3}},
        {2, 0.995F, 0.01F, 1, {1, 1, 0}},
        {2, -0.995F, 0.01F, 1, {1, 1, 0}}, // stretched, it loses its sign
        {2, 0.99F, 0.01F, 1, {1, 1, 0}},   // the slack itself still reaches
        {2, 0.9899F, 0.01F, 0, {0.9899F}},
        {2, 0.995F, 0, 0, {0.995F}},
        {0, 3, 0.01F, 1, {0, 0, 0}},
        {2 * SL_ZERO, -3, 0.01F, 1, {0, 0, 0}}};
    for (const auto &[ub, r, tolerance, result, wantedOut] : cases) {
        SCOPED_TRACE(testing::Message() << "to " << ub << ", r " << r);
        Outputs out{r};
        EXPECT_EQ(slCalArcCentNear(CCW, 0, 0, ub, 0, &out.r, &out.u, &out.v, tolerance), result);
        out.expect(wantedOut);
    }
    float r = 0.9999F; // inside the base tolerance nothing is stretched
    Outputs out;
    EXPECT_EQ(slCalArcCentNear(CCW, 0, 0, 2, 0, &r, &out.u, &out.v, 0.01F), 1);
    EXPECT_EQ(r, 0.9999F);
}

TEST(Arcs, CentreAndRadiusFromASweep) {
    // From (1, 0) to (0, 1).
    const std::tuple<int, float, int, Outputs> cases[] = {
        {CCW, SL_HALF_PI, 1, {1, 0, 0}},
        {CCW, -SL_HALF_PI, 1, {-1, 0, 0}},
        {CW, SL_HALF_PI, 1, {1, 1, 1}},
        {CCW, 3 * SL_HALF_PI, 1, {1, 1, 1}},
        {CCW, SL_PI, 1, {ROOT2 / 2, 0.5F, 0.5F}},
        {CCW, 0, 0, {}},
        {CCW, SL_TWO_PI, 0, {}},
        {CW, -SL_TWO_PI, 0, {}},
        {CCW, 0.0001414F, 0, {}}}; // the bound of the sine is the half chord's
    for (const auto &[direction, sweep, result, wantedOut] : cases) {
        SCOPED_TRACE(testing::Message() << direction << " by " << sweep);
        Outputs out;
        EXPECT_EQ(slCalArcCentRadius(direction, 1, 0, 0, 1, sweep, &out.r, &out.u, &out.v), result);
        out.expect(wantedOut);
    }
    Outputs out;
    EXPECT_EQ(slCalArcCentRadius(CCW, 1, 0, 0, 1, 0.0001415F, &out.r, &out.u, &out.v), 1);
    EXPECT_NEAR(out.r, ROOT2 / 0.0001415F, 0.1F);
    EXPECT_EQ(slCalArcCentRadius(CCW, 0, 0, 2 * SL_ZERO, 0, 1, &out.r, &out.u, &out.v), 0);
    EXPECT_EQ(slCalArcCentRadius(CCW, 0, 0, above(2 * SL_ZERO), 0, 1, &out.r, &out.u, &out.v), 1);
}

TEST(Arcs, EndFromASweepClosesOnAWholeTurn) {
    // From (ua, 0) about the origin.
    const std::tuple<int, float, float, int, Outputs> cases[] = {
        {CCW, 2, SL_HALF_PI, 1, {2, 0, 2}},
        {CCW, 2, -SL_HALF_PI, 1, {2, 0, 2}}, // only the magnitude counts
        {CW, 2, SL_HALF_PI, 1, {2, 0, -2}},
        {0, 2, SL_HALF_PI, 1, {2, 0, -2}},
        {CCW, 2, SL_TWO_PI, 1, {2, 2, 0}},
        {CCW, 2, 0.0001999F, 1, {2, 2, 0}},
        {CCW, 2, 0.0002001F, 1, {2, 2, 0.0004002F}},
        {CCW, above(SL_ZERO), SL_PI, 1, {SL_ZERO, -SL_ZERO, 0}},
        {CCW, below(SL_ZERO), SL_PI, 0, {}}};
    for (const auto &[direction, ua, sweep, result, wantedOut] : cases) {
        SCOPED_TRACE(testing::Message() << direction << " from " << ua << " by " << sweep);
        Outputs out;
        EXPECT_EQ(slCalArcRadiusPnt(direction, ua, 0, 0, 0, sweep, &out.r, &out.u, &out.v), result);
        out.expect(wantedOut);
    }
}

// Start, centre and sweep give an end; ends and sweep, and ends and radius, give the centre back.
TEST(Arcs, TheThreeStatementsOfAnArcAgree) {
    test::Random random(42);
    for (int i = 0; i < 2000; ++i) {
        const int direction = random.oneIn(2) ? CCW : CW;
        const float cu = random.real(-20, 20), cv = random.real(-20, 20);
        const float ua = cu + random.real(5, 20), va = cv + random.real(-20, 20);
        const float sweep = random.real(0.5F, 5.8F);
        Outputs end;
        ASSERT_EQ(slCalArcRadiusPnt(direction, ua, va, cu, cv, sweep, &end.r, &end.u, &end.v), 1);
        EXPECT_NEAR(std::hypot(end.u - cu, end.v - cv), end.r, 1e-4F);
        Outputs out;
        ASSERT_EQ(
            slCalArcCentRadius(direction, ua, va, end.u, end.v, sweep, &out.r, &out.u, &out.v), 1);
        out.expect({end.r, cu, cv}, 1e-3F);
        const float radius = sweep > SL_PI ? -end.r : end.r;
        ASSERT_EQ(slCalArcCent(direction, ua, va, end.u, end.v, radius, &out.u, &out.v), 1);
        EXPECT_NEAR(out.u, cu, 0.05F) << sweep; // near half a turn the radius hardly tells
        EXPECT_NEAR(out.v, cv, 0.05F) << sweep;
    }
}

TEST(Arcs, PointGoesOntoTheCircle) {
    float centre[] = {1, 1}; // rows: point, result, where it goes
    const float cases[][5] = {
        {1, 5, 1, 1, 4}, {1, 1.001F, 1, 1, 4}, {-4, 1, 1, -2, 1}, {1, 1.00005F, 0, 4, 1}};
    for (const auto &c : cases) {
        float point[] = {c[0], c[1]};
        EXPECT_EQ(slCalCirPnt(centre, 3, point), static_cast<int>(c[2]));
        EXPECT_NEAR(point[0], c[3], 1e-5F);
        EXPECT_NEAR(point[1], c[4], 1e-5F);
    }
}

// The last four: v / r that is 0 as a float, a negative radius, and a radius of 0 twice.
TEST(Arcs, AngleSnapsNearTheFirstAxis) {
    const float right = std::acos(0.0F);
    const std::tuple<float, float, float, float> cases[] = {{0, 1, 1, right},
                                                            {0, -1, 1, SL_TWO_PI - right},
                                                            {-1, -0.001F, 1, SL_PI},
                                                            {0.99995F, 0.01F, 1, 0},
                                                            {0.99995F, -0.01F, 1, SL_TWO_PI},
                                                            {0.9998F, 0.02F, 1, std::acos(0.9998F)},
                                                            {1, -1e-38F, 1e10F, right},
                                                            {1, 0, -1, SL_PI},
                                                            {1, 2, 0, 0},
                                                            {0, 0, 0, 0}};
    for (const auto &[pu, pv, r, angle] : cases) {
        EXPECT_NEAR(slGetArcAng2(0, 0, pu, pv, r), angle, 1e-6F) << pu << " " << pv;
    }
}

// An arc about (10, 20, 30), told by the angles of its lower and higher end in its own plane.
struct ArcCase {
    const char *what;
    double low, high, radius;
    int type; // 0: as it was; 1: a line; 3: a helix
    double first, second, rise = 0.0;
};

test::Triple pointOf(int type, double radius, double angle, double rise) {
    test::Triple point = {10, 20, 30};
    const int *axes = test::PLANE_AXES[type - CUR_ARC_XY];
    point[axes[0]] += static_cast<float>(radius * std::cos(angle));
    point[axes[1]] += static_cast<float>(radius * std::sin(angle));
    point[axes[2]] += static_cast<float>(rise);
    return point;
}

constexpr double TURN = SL_TWO_PI;
const ArcCase ARC_CASES[] = {
    {"quarter", 0.5, 2.0, 5, 0, 0.5, 2.0},
    {"across the first axis", 5.5, 7.0, 5, 0, 5.5, 7.0},
    {"just above six degrees", 1.0, 1.106, 5, 0, 1.0, 1.106},
    {"short", 1.0, 1.05, 5, 0, 1.0, 1.05},
    {"short, below the axis", 4.0, 4.05, 5, 0, 4.0, 4.05},
    {"nearly full", 1.05, 1.0, 5, 0, 1.05, 1.0 + TURN},
    {"nearly full, beyond six degrees", 1.106, 1.0, 5, 0, 1.106, 1.0 + TURN},
    {"full", 1.0, 1.0, 5, 0, 1.0, 1.0 + TURN},
    {"full at the first axis", 0.0, 0.0, 5, 0, 0.0, TURN},
    {"full within the tolerance", 1.0, 1.0 + 1e-5, 5, 0, 1.0, 1.0 + TURN},
    {"flat: the angles snap to one", 0.01, 0.012, 5, 1, 0.0, 0.0},
    {"flat across the first axis", -0.01, 0.005, 5, 1, TURN, TURN},
    {"flat: a huge radius", 1.0, 1.0 + 3e-5, 20000, 1, 1.0, 1.0},
    {"tiny radius", 1.0, 1.0, 0.00005, 0, 1.0, 1.0 + TURN},
    {"helix", 1.0, 3.0, 5, 3, 1.0, 3.0, 2.0},
    {"falling helix", 1.0, 3.0, 5, 3, 1.0, 3.0, -2.0},
    {"helix of a turn", 1.0, 1.0, 5, 3, 1.0, 1.0 + TURN, 2.0},
    {"no helix", 1.0, 3.0, 5, 0, 1.0, 3.0, 0.00009}};

void checkArc(const ArcCase &c, int type, int direction) {
    TouchCurD curve = sentinelCurve(type, direction);
    const float keptPitch = curve.pitch;
    test::Triple low = pointOf(type, c.radius, c.low, 0.0);
    test::Triple high = pointOf(type, c.radius, c.high, c.rise);
    test::Triple &start = direction == CCW ? low : high;
    test::Triple &end = direction == CCW ? high : low;
    float centre[] = {10, 20, 30};
    const auto radius = static_cast<float>(c.radius);
    EXPECT_EQ(slSetArcPara(&curve, start.data(), end.data(), centre, radius), 1);

    EXPECT_EQ(curve.type, c.type == 1 ? CUR_LINE : type + c.type);
    float found[2][3];
    curve.GetCurveStartPntM(found[0]);
    curve.GetCurveEndPntM(found[1]);
    EXPECT_TRUE(samePoint(found[0], start.data()) && samePoint(found[1], end.data()));
    EXPECT_TRUE(samePoint(curve.centre, centre));
    EXPECT_EQ(curve.radius, radius);
    const double slack = c.radius < 0.001 ? 0.5 : 1e-4; // the ends are rounded to float
    EXPECT_NEAR(curve.firstAngle, c.first, slack);
    EXPECT_NEAR(curve.secondAngle, c.second, slack);
    const double pitch = c.rise * SL_TWO_PI / (c.second - c.first);
    EXPECT_NEAR(curve.pitch, c.type != 3 ? keptPitch : direction == CW ? -pitch : pitch, 1e-3);
    // A flat arc of the clockwise direction exchanges its points whole.
    EXPECT_EQ(curve.firstPoint.V(), c.type == 1 && direction == CW ? 15.0F : 10.0F);
}

TEST(SetArcPara, SettlesWhatAnArcIsInEveryPlaneAndDirection) {
    for (const ArcCase &c : ARC_CASES) {
        for (const int type : test::PLANAR_ARCS) {
            for (const int direction : test::DIRECTIONS) {
                SCOPED_TRACE(testing::Message() << c.what << ", " << type << ", " << direction);
                checkArc(c, type, direction);
            }
        }
    }
}

// The measure of a flat arc leaves y out in every plane, and only z-x puts equal angles in order.
TEST(SetArcPara, TreatsThePlanesDifferentlyWhereTheEndsMeetTheFirstAxis) {
    const struct {
        double half;      // the arc runs from -half to half
        int types[3];     // xy, yz, zx
        float seconds[3]; // second angles; the first is SL_TWO_PI
    } cases[] = {
        {0.01, {CUR_ARC_XY, CUR_LINE, CUR_LINE}, {SL_TWO_PI, SL_TWO_PI, SL_TWO_PI}},
        {5e-6, {CUR_ARC_XY, CUR_ARC_YZ, CUR_ARC_ZX}, {SL_TWO_PI, SL_TWO_PI, 2 * SL_TWO_PI}}};
    for (const auto &c : cases) {
        for (int i = 0; i < 3; ++i) {
            const int type = test::PLANAR_ARCS[i];
            test::Triple start = pointOf(type, 5, -c.half, 0), end = pointOf(type, 5, c.half, 0);
            float centre[] = {10, 20, 30};
            TouchCurD curve = sentinelCurve(type);
            EXPECT_EQ(slSetArcPara(&curve, start.data(), end.data(), centre, 5), 1);
            EXPECT_EQ(curve.type, c.types[i]) << c.half;
            EXPECT_EQ(curve.firstAngle, SL_TWO_PI) << c.half;
            EXPECT_EQ(curve.secondAngle, c.seconds[i]) << c.half;
        }
    }
}

// In y-z about the origin: y and z of the ends, how much x rises, the radius; then the type, the
// angles and whether the pitch is written. The radius need not fit the ends.
TEST(SetArcPara, BoundsBelongToTheSideThatIsTold) {
    const float past = above(SL_ZERO), turn = SL_TWO_PI;
    const std::tuple<float, float, float, float, float, float, int, float, float> cases[] = {
        // Both ends read as the first axis: full up to the tolerance, a line beyond it.
        {5, 1, 5, 2, 0, SL_ZERO, CUR_ARC_YZ, 0, turn},
        {5, 1, 5, 2, 0, past, CUR_LINE, 0, 0},
        // The same across the axis, where up to the tolerance it stays as it is.
        {5, -1, 5, 1, 0, SL_ZERO, CUR_ARC_YZ, turn, turn},
        {5, -1, 5, 1, 0, past, CUR_LINE, turn, turn},
        {5, -1, 5, 1, 2, -1, CUR_HELIX_YZ, SL_PI, turn + SL_PI},
        // A chord that runs outwards turns by no more than the tolerance, or by more.
        {0, 1, -0.00015F, 3, 0, 1, CUR_ARC_YZ, 1.5707963F, 1.5709463F + turn},
        {0, 1, -0.00025F, 3, 0, 1, CUR_ARC_YZ, 1.5707963F, 1.5710463F},
        // The ends lie apart across the plane by the tolerance, or by more.
        {0, 1, -1, 0, SL_ZERO, 1, CUR_ARC_YZ, 1.5707963F, SL_PI},
        {0, 1, -1, 0, past, 1, CUR_HELIX_YZ, 1.5707963F, SL_PI}};
    for (const auto &[y1, z1, y2, z2, rise, r, type, first, second] : cases) {
        SCOPED_TRACE(testing::Message() << y1 << " " << y2 << " " << rise << " " << r);
        float start[] = {0, y1, z1}, end[] = {rise, y2, z2}, centre[] = {0, 0, 0};
        TouchCurD curve = sentinelCurve(CUR_ARC_YZ);
        EXPECT_EQ(slSetArcPara(&curve, start, end, centre, r), 1);
        EXPECT_EQ(curve.type, type);
        EXPECT_NEAR(curve.firstAngle, first, 1e-6F);
        EXPECT_NEAR(curve.secondAngle, second, 1e-6F);
    }
}

TEST(SetArcPara, StoresPointsAndRadiusOnOtherTypesToo) {
    float start[] = {1, 2, 3}, end[] = {4, 5, 6}, centre[] = {7, 8, 9};
    for (const int type : {CUR_LINE, CUR_ARC, 153, CUR_HELIX_XY, SL_DELETED_INT}) {
        for (const int direction : test::DIRECTIONS) {
            TouchCurD curve = sentinelCurve(type, direction), expected = curve;
            test::setXyz(expected.firstPoint, direction == CCW ? start : end);
            test::setXyz(expected.secondPoint, direction == CCW ? end : start);
            test::setXyz(expected.centre, centre);
            expected.radius = 2.5F;
            EXPECT_EQ(slSetArcPara(&curve, start, end, centre, 2.5F), 0);
            EXPECT_EQ(bytesOf(curve), bytesOf(expected)) << type;
        }
    }
}

TEST(SetArcPara, StoresFiniteNumbersWhateverTheRadius) {
    test::Random random(3);
    const float sizes[] = {0, 1e-38F, 0.00005F, 1, 1e20F, FLT_MAX};
    for (int i = 0; i < 5000; ++i) {
        float points[3][3];
        for (float &value : points[0]) {
            value = sizes[random.integer(0, 5)] * static_cast<float>(random.integer(-1, 1));
        }
        std::copy_n(points[0], 3, points[1]);
        points[1][random.integer(0, 2)] = sizes[random.integer(0, 5)];
        std::copy_n(points[random.integer(0, 1)], 3, points[2]);
        const float radius = sizes[random.integer(0, 5)] * (random.oneIn(2) ? 1.0F : -1.0F);
        TouchCurD curve = sentinelCurve(random.integer(CUR_ARC_XY, CUR_ARC_ZX));
        slSetArcPara(&curve, points[0], points[1], points[2], radius);
        EXPECT_TRUE(std::isfinite(curve.firstAngle + curve.secondAngle + curve.pitch));
        EXPECT_TRUE(radius != 0.0F || (curve.firstAngle == 0.0F && curve.secondAngle == 0.0F));
    }
}

TEST(RegArc, RebuildsAnArcInEachPlane) {
    for (int i = 0; i < 6; ++i) {
        const int *axes = test::PLANE_AXES[i / 2];
        TouchCurD curve = sentinelCurve(test::PLANAR_ARCS[i / 2], test::DIRECTIONS[i % 2]);
        SCOPED_TRACE(testing::Message() << curve.type << " " << curve.direction);
        curve.radius = 0.995F; // is stretched to half of the chord
        curve.firstPoint.SetAsZeroM();
        curve.secondPoint.SetAsZeroM();
        curve.firstPoint[axes[2]] = curve.secondPoint[axes[2]] = 9;
        curve.secondPoint[axes[1]] = 2;
        EXPECT_EQ(curve.RegArcByStPntAndDir(), 1);
        EXPECT_EQ(curve.type, test::PLANAR_ARCS[i / 2]);
        EXPECT_EQ(curve.radius, 1.0F);
        EXPECT_EQ(curve.centre[axes[0]], 0.0F);
        EXPECT_EQ(curve.centre[axes[1]], 1.0F);
        EXPECT_EQ(curve.centre[axes[2]], 9.0F);
        EXPECT_NEAR(curve.secondAngle - curve.firstAngle, SL_PI, 1e-5F);

        TouchCurD tooFar = curve;
        tooFar.secondPoint[axes[1]] = 2.1F;
        const TouchCurD expected = tooFar;
        tooFar.centre[axes[2]] = -1; // is set all the same
        EXPECT_EQ(tooFar.RegArcByStPntAndDir(), 0);
        EXPECT_EQ(bytesOf(tooFar), bytesOf(expected));

        curve.secondPoint = curve.firstPoint;
        EXPECT_EQ(curve.RegArcByStPntAndDir(), 1);
        EXPECT_EQ(curve.radius, 0.0F);
        EXPECT_TRUE(samePoint(curve.centre, curve.firstPoint));
    }
    for (const int type : {CUR_LINE, CUR_ARC, CUR_HELIX_XY}) {
        TouchCurD curve = sentinelCurve(type);
        EXPECT_EQ(curve.RegArcByStPntAndDir(), 2);
        EXPECT_EQ(bytesOf(curve), bytesOf(sentinelCurve(type)));
    }
}

} // namespace
