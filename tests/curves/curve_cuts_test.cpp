// Curves cut, clipped, offset and moved to a new start.
#include "trunnion/curves/curve_cuts.h"

#include <cfloat>
#include <cmath>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/curves/curve_support.h"
#include "trunnion/geometry/scalars.h"

namespace {

using namespace test;

// A search, with everything that it must leave alone checked.
struct Found {
    float rows[3][3];
    int count = -1;

    Found(TouchCurD &curve, char axis, float station) {
        std::fill_n(&rows[0][0], 9, SENTINEL);
        const int result = axis == 'x' ? slFindIntPnt(&curve, station, rows, &count)
                                       : slFindIntPnt(&curve, station, rows, &count, 0);
        EXPECT_EQ(result, 1);
        EXPECT_EQ(rows[2][2], SENTINEL);
        for (int i = count; i < 2; ++i) {
            EXPECT_TRUE(rows[i][0] == SENTINEL && rows[2][i] == SENTINEL) << i << " of " << count;
        }
    }
};

TouchCurD makeLine(const Tq5AxisPntCL &first, const Tq5AxisPntCL &second, int type = CUR_LINE) {
    TouchCurD line = sentinelCurve(type);
    line.firstPoint = first;
    line.secondPoint = second;
    return line;
}

TouchCurD makeArc(float z, float x, float radius, float firstAngle, float secondAngle) {
    TouchCurD arc = sentinelCurve(CUR_ARC_ZX);
    arc.centre = Tq5AxisPntCL(x, 3, z, 0, 0);
    arc.radius = radius;
    arc.firstAngle = firstAngle;
    arc.secondAngle = secondAngle;
    return arc;
}

TEST(FindIntPnt, LineGivesItsFirstEndThenItsSecondThenItsCrossing) {
    // From (0, 1, 0) to (10, 2, 5), and with x and z exchanged for the constant z.
    const std::tuple<float, int, float, float, float> cases[] = {
        {4, 1, 1, 2, SENTINEL},
        {0.00005F, 1, 1, 0, 0},
        {-below(SL_ZERO), 1, 1, 0, 0},
        {-SL_ZERO, 0, 0, 0, 0},
        {SL_ZERO, 1, 1, SL_ZERO / 2, SENTINEL},
        {10, 1, 2, 5, 1},
        {10.00005F, 1, 2, 5, 1},
        {11, 0, 0, 0, 0}};
    TouchCurD lines[] = {makeLine({0, 1, 0, 0, 0}, {10, 2, 5, 0, 0}),
                         makeLine({0, 1, 0, 0, 0}, {5, 2, 10, 0, 0})};
    for (const auto &[station, count, y, other, parameter] : cases) {
        for (const int at : {0, 2}) {
            const Found found(lines[at / 2], at == 0 ? 'x' : 'z', station);
            ASSERT_EQ(found.count, count) << station;
            if (count == 1) {
                EXPECT_EQ(found.rows[0][at], station);
                EXPECT_EQ(found.rows[0][1], y);
                EXPECT_FLOAT_EQ(found.rows[0][2 - at], other);
                EXPECT_EQ(found.rows[2][0], parameter);
            }
        }
    }
    TouchCurD inPlane = makeLine({3, 1, 0, 0, 0}, {3, 2, 9, 0, 0});
    const Found found(inPlane, 'x', 3);
    EXPECT_EQ(found.count, 1);
    EXPECT_EQ(found.rows[0][1], 1.0F);
}

TEST(FindIntPnt, TheDeadBandOfALineIsWiderForAConstantZ) {
    const std::tuple<float, float, int, int> cases[] = {
        {0.0002F, 0.4F, 1, 0},    // product 8e-5
        {0.0002F, 0.6F, 1, 1},    // product 1.2e-4
        {SL_ZERO, SL_ZERO, 0, 0}, // product below 1e-8, by the bits of SL_ZERO
        {SL_ZERO, 0.000101F, 1, 0}};
    for (const auto &[before, behind, countX, countZ] : cases) {
        TouchCurD line = makeLine({-before, 0, -before, 0, 0}, {behind, 0, behind, 0, 0});
        EXPECT_EQ(Found(line, 'x', 0).count, countX) << before << " " << behind;
        EXPECT_EQ(Found(line, 'z', 0).count, countZ) << before << " " << behind;
    }
}

TEST(FindIntPnt, FullCircleIsCutTwiceTouchedOnceOrMissed) {
    const float half = SL_PI, turn = SL_TWO_PI, sine = std::asin(0.5F), cosine = std::acos(0.5F);
    const std::tuple<char, float, std::vector<float>> cases[] = {
        {'x', 1, {sine, half - sine}},
        {'x', -1, {half + sine, turn - sine}},
        {'x', 0, {0, half}},
        {'x', 2, {SL_HALF_PI}},
        {'x', -2, {3 * SL_HALF_PI}},
        {'x', 2.0001F, {SL_HALF_PI}},
        {'x', 2.1F, {}},
        {'x', -2.1F, {}},
        {'z', 1, {cosine, turn - cosine}},
        {'z', -1, {half - cosine, half + cosine}},
        {'z', 2, {0}},
        {'z', -2, {half}},
        {'z', 2.1F, {}}};
    for (const auto &[axis, station, angles] : cases) {
        SCOPED_TRACE(testing::Message() << axis << " " << station);
        TouchCurD circle = makeArc(0, 0, 2, 0, SL_TWO_PI);
        const Found found(circle, axis, station);
        ASSERT_EQ(found.count, static_cast<int>(angles.size()));
        for (int i = 0; i < found.count; ++i) {
            EXPECT_NEAR(found.rows[2][i], angles[i], 1e-6F);
            EXPECT_NEAR(found.rows[i][0], 2 * std::sin(angles[i]), 2e-4F);
            EXPECT_EQ(found.rows[i][1], 3.0F);
            EXPECT_NEAR(found.rows[i][2], 2 * std::cos(angles[i]), 2e-4F);
        }
    }
}

TEST(FindIntPnt, TouchingIsStrictlyBetweenItsBounds) {
    // s: on a unit circle about the origin
    const std::tuple<float, int> cases[] = {{below(SL_NEAR_ONE), 2},
                                            {SL_NEAR_ONE, 0},
                                            {above(SL_NEAR_ONE), 1},
                                            {below(SL_PAST_ONE), 1},
                                            {SL_PAST_ONE, 0}};
    for (const auto &[s, count] : cases) {
        for (const float station : {s, -s}) {
            TouchCurD circle = makeArc(0, 0, 1, 0, SL_TWO_PI);
            EXPECT_EQ(Found(circle, 'x', station).count, count) << station;
            EXPECT_EQ(Found(circle, 'z', station).count, count) << station;
        }
    }
}

TEST(FindIntPnt, ParametersLieInTheRangeOfTheArc) {
    // Through the first axis: a candidate below the range is a turn higher.
    TouchCurD through = makeArc(0, 0, 2, 5.5F, 7.0F);
    const float z = 2 * std::cos(0.5F);
    const Found found(through, 'z', z);
    ASSERT_EQ(found.count, 2);
    EXPECT_NEAR(found.rows[2][0], 0.5F + SL_TWO_PI, 1e-5F) << "exceeds the one behind it";
    EXPECT_NEAR(found.rows[2][1], SL_TWO_PI - 0.5F, 1e-5F);
    EXPECT_NEAR(found.rows[0][0], 2 * std::sin(0.5F), 1e-5F);

    // Angles out of order are ordered in the record, beyond the tolerance.
    TouchCurD unordered = makeArc(0, 0, 2, 6, 1);
    EXPECT_EQ(Found(unordered, 'z', z).count, 1);
    EXPECT_EQ(unordered.secondAngle, 1 + SL_TWO_PI);
    TouchCurD nearlyEqual = makeArc(0, 0, 2, 1, 0.99995F);
    EXPECT_EQ(Found(nearlyEqual, 'x', 0).count, 0);
    EXPECT_EQ(nearlyEqual.secondAngle, 0.99995F);

    // The slack of the range, by the touch at half a turn: first angle, second angle, count.
    const float ranges[][3] = {{SL_PI + 0.00005F, 4, 1},
                               {SL_PI + 0.0002F, 4, 0},
                               {1, SL_PI - 0.00005F, 1},
                               {1, SL_PI - 0.0002F, 0}};
    for (const auto &range : ranges) {
        TouchCurD arc = makeArc(0, 0, 2, range[0], range[1]);
        EXPECT_EQ(static_cast<float>(Found(arc, 'z', -2).count), range[2]) << range[0];
    }
}

// Every candidate of every turn that an arc may reach is found if it lies inside, and lies where
// its parameter says.
TEST(FindIntPnt, FindsEveryCrossingOfRandomArcs) {
    test::Random random(7);
    const double half = std::acos(-1.0);
    for (int i = 0; i < 3000; ++i) {
        const float first = random.real(0, SL_TWO_PI);
        TouchCurD arc = makeArc(random.real(-9, 9), random.real(-9, 9), random.real(1, 9), first,
                                first + random.real(0.1F, 6.2F));
        const bool isX = random.oneIn(2);
        const float s = random.real(-0.99F, 0.99F);
        const double base = isX ? std::asin(s) : std::acos(s);
        const double span = static_cast<double>(arc.secondAngle) - first;
        int expected = 0;
        bool isAtAnEnd = false; // within the slack either answer is right
        for (const double t : {base, isX ? half - base : -base}) {
            const double onward = std::remainder(t - first - half, 2 * half) + half;
            expected += onward < span ? 1 : 0;
            isAtAnEnd |=
                onward < 0.001 || onward > 2 * half - 0.001 || std::fabs(onward - span) < 0.001;
        }
        const float station = (isX ? arc.centre.X() : arc.centre.Z()) + arc.radius * s;
        const Found found(arc, isX ? 'x' : 'z', station);
        ASSERT_TRUE(isAtAnEnd || found.count == expected) << "run " << i;
        for (int k = 0; k < found.count; ++k) {
            const float *p = found.rows[k];
            const float t = found.rows[2][k];
            EXPECT_NEAR(isX ? p[0] : p[2], station, 1e-4F);
            EXPECT_NEAR(arc.centre.X() + arc.radius * std::sin(t), p[0], 1e-4F);
            EXPECT_NEAR(arc.centre.Z() + arc.radius * std::cos(t), p[2], 1e-4F);
        }
    }
}

TEST(FindIntPnt, PassesOverOtherTypesAndARadiusOfZero) {
    for (const int type : {164, CUR_ARC, CUR_ARC_XY, CUR_HELIX_ZX}) {
        TouchCurD curve = sentinelCurve(type);
        EXPECT_EQ(Found(curve, 'x', curve.firstPoint.X()).count, 0);
        EXPECT_EQ(Found(curve, 'z', curve.centre.Z()).count, 0);
        EXPECT_EQ(bytesOf(curve), bytesOf(sentinelCurve(type)));
    }
    TouchCurD shrunk = makeArc(0, 0, 0, 6, 1);
    EXPECT_EQ(Found(shrunk, 'x', 0).count + Found(shrunk, 'z', 0).count, 0);
    EXPECT_EQ(shrunk.secondAngle, 1.0F);
    TouchCurD tiny = makeArc(0, 0, FLT_MIN, 0, 6);
    EXPECT_EQ(Found(tiny, 'x', FLT_MAX).count, 0);
}

// Type, x, z, sign, and z where the cut line begins (0: nothing is cut), of a line from (-2, z 1)
// to (8, z 3). The last four are at the first end, which is moved onto the station.
TEST(ZxIntCur, KeepsWhatLiesBeyondTheStationOnTheNamedSide) {
    const std::tuple<int, float, float, int, float> cases[] = {
        {1, 3, 0, 1, 2},          {164, 3, 0, 1, 2},       {156, 3, 0, 1, 0},
        {1, 3, 0, -1, 0},         {1, 3, 4, -1, 2},        {1, 3, 2, 1, 0},
        {1, 3, 1.9998F, 1, 2},    {1, 3, 1.99995F, 1, 0},  {1, 8, 0, 1, 0},
        {1, 7.999995F, 0, 1, 0},  {1, 9, 0, 1, 0},         {1, -2.00005F, 0, 1, 1},
        {1, -2.00005F, 2, -1, 1}, {1, -2.00005F, 1, 1, 0}, {1, -2.0002F, 0, 1, 0}};
    for (const auto &[type, x, z, sign, firstZ] : cases) {
        SCOPED_TRACE(testing::Message() << x << " " << z << " " << sign);
        TouchCurD line = makeLine({-2, 1, 1, 0, 0}, {8, 2, 3, 0, 0}, type);
        TouchCurD out = sentinelCurve(CUR_ARC), expected = out;
        if (firstZ != 0.0F) {
            expected.type = type;
            expected.firstPoint.X() = x;
            expected.firstPoint.Z() = firstZ;
            expected.secondPoint.X() = 8;
            expected.secondPoint.Z() = 3;
        }
        EXPECT_EQ(slZxIntCur(&line, x, z, sign, &out), 0);
        EXPECT_EQ(bytesOf(out), bytesOf(expected));
    }
}

TEST(Offset, MovesALineAcrossItselfTowardsTheSide) {
    // The line runs along x.
    const std::tuple<int, Triple, Triple> cases[] = {{CUR_LINE, {1, 1, 0}, {0, 2, 0}},
                                                     {164, {5, 0, -0.01F}, {0, 0, -2}},
                                                     {CUR_LINE, {1, 0.00011F, 0}, {0, 2, 0}},
                                                     {CUR_LINE, {1, SL_ZERO, 0}, {0, 0, 0}},
                                                     {CUR_LINE, {0, 0, 0}, {0, 0, 0}},
                                                     {CUR_ARC_XY, {0, 1, 0}, {0, 0, 0}},
                                                     {163, {0, 1, 0}, {0, 0, 0}}};
    for (const auto &[type, side, step] : cases) {
        TouchCurD line = makeLine({1, 2, 3, 4, 5}, {7, 2, 3, 4, 5}, type), expected = line;
        expected.MoveM(step.data());
        line.OffsetM(2, side.data());
        EXPECT_EQ(bytesOf(line), bytesOf(expected)) << type << " " << side[1];
    }
}

TEST(Offset, ArcStaysConcentric) {
    // The side is told from the first end, 5 to the right of the centre.
    const std::tuple<float, Triple, float> cases[] = {
        {1, {1, 0, 0}, 6},         {1, {-1, 0, 0}, 4}, {-1, {1, 0, 0}, 4},
        {1, {0.000019F, 9, 9}, 5},                       // the dot product is within the tolerance
        {1, {0.000021F, 9, 9}, 6}, {7, {-1, 0, 0}, -2}}; // beyond the centre nothing stops it
    for (const auto &[distance, side, radius] : cases) {
        TouchCurD arc = makeLine({6, 1, 0, 8, 9}, {1, 6, 0, 8, 9}, CUR_ARC);
        arc.centre = Tq5AxisPntCL(1, 1, 0, 0, 0);
        arc.radius = 5;
        TouchCurD expected = arc;
        arc.OffsetM(distance, side.data());
        EXPECT_NEAR(arc.firstPoint.X(), 1 + radius, 1e-5F);
        EXPECT_NEAR(arc.secondPoint.Y(), 1 + radius, 1e-5F);
        expected.firstPoint.X() = arc.firstPoint.X();
        expected.secondPoint.Y() = arc.secondPoint.Y();
        expected.radius = radius;
        EXPECT_EQ(bytesOf(arc), bytesOf(expected));
        if (radius > 0) {
            arc.OffsetM(-distance, side.data());
            EXPECT_NEAR(arc.radius, 5, 1e-6F);
            EXPECT_NEAR(arc.secondPoint.Y(), 6, 1e-5F);
        }
    }
    TouchCurD shrunk = sentinelCurve(CUR_ARC);
    shrunk.radius = 0;
    const std::string before = bytesOf(shrunk);
    shrunk.OffsetM(2, Triple{1, 1, 1}.data());
    EXPECT_EQ(bytesOf(shrunk), before);
}

TEST(TransCoord, LineKeepsItsEndOrItsLength) {
    float start[] = {100, 100, 100};
    const std::tuple<int, float, Triple> cases[] = {
        {0, 5, {6, 2, 3}},
        {54, 5, {6, 2, 3}},
        {55, 5, {105, 100, 100}},
        {0, SL_ZERO / 2, {100, 100, 100}},                // short: a point at the new start
        {55, SL_ZERO / 2, {100 + SL_ZERO / 2, 100, 100}}, // its end is moved before it is judged
        {55, 0, {100, 100, 100}}};
    for (const auto &[mode, dx, expectedEnd] : cases) {
        TouchCurD line = makeLine({1, 2, 3, 4, 5}, {1 + dx, 2, 3, 6, 7}), expected = line;
        test::setXyz(expected.firstPoint, start);
        test::setXyz(expected.secondPoint, expectedEnd.data());
        float end[3];
        EXPECT_EQ(slTouchCurTransCoord(&line, mode, nullptr, start, end), 1);
        EXPECT_TRUE(samePoint(end, expectedEnd.data())) << mode;
        EXPECT_EQ(bytesOf(line), bytesOf(expected)) << mode;
    }
    for (const float back : {5.0F, 4.0F}) {
        TouchCurD line = makeLine({5, 0, 0, 0, 0}, {10, 0, 0, 0, 0});
        float end[] = {5 - back, 0, 0};
        EXPECT_EQ(slTouchCurTransCoord(&line, 55, nullptr, end, end), 1) << "start and end in one";
        EXPECT_EQ(line.firstPoint.X(), 5 - back);
        EXPECT_EQ(end[0], back == 5 ? 0.0F : 6.0F) << "back to its old start: a point";
        EXPECT_EQ(end[0], line.secondPoint.X());
    }
}

TEST(TransCoord, ArcMovesWholeAndOtherTypesStay) {
    float start[] = {100, 100, 100};
    for (int type = 153; type <= 160; ++type) {
        for (const int direction : test::DIRECTIONS) {
            TouchCurD curve = sentinelCurve(type, direction), expected = curve;
            float expectedEnd[3] = {100, 100, 100};
            const bool moves = type >= 154 && type <= 159;
            if (moves) {
                float from[3];
                curve.GetCurveStartPntM(from);
                const float step[] = {100 - from[0], 100 - from[1], 100 - from[2]};
                expected.MoveM(step);
                expected.GetCurveEndPntM(expectedEnd);
            }
            float end[3];
            EXPECT_EQ(slTouchCurTransCoord(&curve, 55, nullptr, start, end), moves ? 1 : 0);
            EXPECT_TRUE(samePoint(end, expectedEnd)) << type << " " << direction;
            EXPECT_EQ(bytesOf(curve), bytesOf(expected)) << type << " " << direction;
        }
    }
}

} // namespace
