// The curve record: its ends, its moves, and its stream form.
#include "trunnion/curves/touch_cur.h"

#include <array>
#include <cmath>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/curves/curve_support.h"
#include "tests/support/temp_dir.h"
#include "tests/support/thrown.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/persistence/stream.h"

namespace {

using namespace test;

const float P[] = {21, 22, 23};
constexpr int CCW = CUR_DIR_CCW, CW = CUR_DIR_CW;

TEST(TouchCur, IsAvailableAboveTheMarker) {
    TouchCurD curve = sentinelCurve(SL_DELETED_INT + 1);
    EXPECT_EQ(curve.IsAvailableM(), 31);
    curve.DelItemM();
    EXPECT_EQ(curve.IsAvailableM(), 30);
    EXPECT_EQ(bytesOf(curve), bytesOf(sentinelCurve(SL_DELETED_INT)));
    curve.InitialM();
    EXPECT_EQ(bytesOf(curve), bytesOf(TouchCurD()));
    EXPECT_EQ(curve.IsAvailableM(), 30);
}

TEST(TouchCur, LinesStartAtTheFirstPointAndArcsByTheirDirection) {
    const std::tuple<int, int, bool> cases[] = {
        {CUR_LINE, CW, true},   {163, CW, true},        {164, 0, true},       {166, CW, true},
        {162, CW, false},       {167, CW, false},       {CUR_ARC, CCW, true}, {CUR_ARC, CW, false},
        {CUR_ARC_XY, 0, false}, {CUR_ARC_XY, CW, false}};
    for (const auto &[type, direction, startsAtFirst] : cases) {
        SCOPED_TRACE(testing::Message() << "type " << type << ", direction " << direction);
        TouchCurD curve = sentinelCurve(type, direction);
        Tq5AxisPntCL &start = startsAtFirst ? curve.firstPoint : curve.secondPoint;
        Tq5AxisPntCL &end = startsAtFirst ? curve.secondPoint : curve.firstPoint;
        float found[4][3] = {};
        EXPECT_EQ(slGetStartPnt(&curve, found[0]) + slGetCurveStartPnt(&curve, found[1]), 2);
        EXPECT_EQ(slGetCurveEndPnt(&curve, found[2]) + GetCurveEndPnt(&curve, found[3]), 2);
        for (int i = 0; i < 4; ++i) {
            EXPECT_TRUE(samePoint(found[i], i < 2 ? start : end)) << i;
        }
        // The functions keep the two further coordinates, the members clear them.
        TouchCurD expected = curve;
        Tq5AxisPntCL &moved = startsAtFirst ? expected.firstPoint : expected.secondPoint;
        test::setXyz(moved, P);
        EXPECT_EQ(slSetCurveStartPnt(&curve, P), 1);
        EXPECT_EQ(bytesOf(curve), bytesOf(expected));
        moved = Tq5AxisPntCL(P);
        EXPECT_EQ(curve.SetCurveStartPntM(P), 1);
        EXPECT_EQ(bytesOf(curve), bytesOf(expected));
        EXPECT_EQ(slSetCurveEndPnt(&curve, P), 1);
        EXPECT_TRUE(samePoint(end, P) && end.V() != 0.0F);
        EXPECT_EQ(curve.SetCurveEndPntM(P), 1);
        EXPECT_EQ(end.V(), 0.0F);
    }
}

TEST(TouchCur, SettingOneEndOfAPointMovesBoth) {
    const std::tuple<float, float, float, bool> cases[] = {
        {0, 0, 0, true},
        {below(SL_ZERO), 0, 0, true},
        {0, 0, -SL_ZERO, false},
        {-0.00004F, -0.00004F, -0.00004F, false}}; // the sum counts
    for (const auto &[dx, dy, dz, isPoint] : cases) {
        for (const bool setsStart : {true, false}) {
            TouchCurD curve;
            curve.type = CUR_ARC_YZ;
            curve.direction = CW;
            curve.firstPoint = Tq5AxisPntCL(0, 0, 0, 1, 2);
            curve.secondPoint = Tq5AxisPntCL(dx, dy, dz, 3, 4);
            EXPECT_EQ((setsStart ? slSetStartPnt : slSetEndPnt)(&curve, P), isPoint ? 0 : 1);
            EXPECT_EQ(samePoint(curve.firstPoint, P), isPoint || !setsStart);
            EXPECT_EQ(samePoint(curve.secondPoint, P), isPoint || setsStart);
            EXPECT_EQ(curve.firstPoint.V() + curve.secondPoint.V(), 6.0F);
        }
    }
}

TEST(TouchCur, KnowsWhenItHasShrunkToAPoint) {
    const float less = below(SL_ZERO), full = SL_TWO_PI;
    // between: first and second point, in V; toThird: first point and centre, in IV; the first
    // angle is 0
    const std::tuple<int, float, float, float, int> cases[] = {
        {1, less, 9, 9, 1},   {1, SL_ZERO, 0, 0, 0},   {146, 0, 9, 9, 1},
        {154, 0, 9, less, 1}, {154, 0, 9, SL_ZERO, 0}, {156, 0, 9, full, 0},
        {156, 1, 9, 0, 0},    {159, 0, 9, -1, 0},      {162, 0, 9, 1, 0},
        {162, 0, 9, 0, 1},    {163, 0, less, 9, 1},    {163, 0, SL_ZERO, 9, 0},
        {164, 0, 9, 9, 1},    {165, 0, 9, 9, 0},       {166, 0, 9, 9, 0},
        {167, 0, 9, 9, 1}};
    for (const auto &[type, between, toThird, secondAngle, isPoint] : cases) {
        TouchCurD curve;
        curve.type = type;
        curve.firstPoint = curve.secondPoint = curve.centre = Tq5AxisPntCL(9, 8, 7, 0, 0);
        curve.secondPoint.V() = between;
        curve.centre.IV() = toThird;
        curve.secondAngle = secondAngle;
        EXPECT_EQ(curve.IsCurvePntM(), isPoint) << type << " " << between << " " << toThird;
    }
}

TEST(TouchCur, MovesItsCentreUnlessItIsALine) {
    const Tq5AxisPntCL step(P);
    for (const int type : {CUR_LINE, 164, CUR_ARC, CUR_HELIX_XY}) {
        TouchCurD curve = sentinelCurve(type), expected = curve;
        expected.firstPoint += step;
        expected.secondPoint += step;
        expected.centre += step * (type == CUR_LINE ? 0.0F : 1.0F);
        curve.MoveM(P);
        EXPECT_EQ(bytesOf(curve), bytesOf(expected)) << type;
    }
}

TEST(TouchCur, ReversedTwiceIsItself) {
    for (const int type : {CUR_LINE, CUR_ARC, CUR_ARC_XY, CUR_HELIX_ZX}) {
        for (const int direction : {CCW, CW, SL_DELETED_INT}) {
            const TouchCurD before = sentinelCurve(type, direction);
            TouchCurD curve = before;
            curve.SwapDirM();
            EXPECT_EQ(curve.firstPoint.V(), before.secondPoint.V());
            EXPECT_EQ(curve.secondPoint.X(), before.firstPoint.X());
            const bool turns = type == CUR_ARC;
            EXPECT_EQ(curve.firstAngle, turns ? before.secondAngle : before.firstAngle);
            EXPECT_EQ(curve.direction != direction, turns && direction != SL_DELETED_INT);
            curve.SwapDirM();
            EXPECT_EQ(bytesOf(curve), bytesOf(before)) << type << " " << direction;
        }
    }
}

TEST(TouchCur, MirrorsItsEndsInACoordinatePlane) {
    const float at[] = {100, 200, 300};
    for (int plane = -1; plane <= 3; ++plane) {
        const int axis = plane == 0 ? 2 : plane - 1;
        for (const bool atOrigin : {true, false}) {
            TouchCurD curve = sentinelCurve(CUR_ARC_ZX), expected = curve;
            if (plane >= 0 && plane <= 2) {
                const float twice = atOrigin ? 0 : 2 * at[axis];
                expected.firstPoint[axis] = twice - expected.firstPoint[axis];
                expected.secondPoint[axis] = twice - expected.secondPoint[axis];
            }
            curve.MirrorM(atOrigin ? nullptr : at, plane);
            EXPECT_EQ(bytesOf(curve), bytesOf(expected)) << plane;
        }
    }
}

// Plane, direction before, angles before and behind the mirror. The first six are in order for the
// direction behind it and left alone; in the next three one rises by a turn; in the last both do.
TEST(TouchCur, MirrorsTheAnglesOfAnArcAndPutsThemInOrder) {
    const float turn = SL_TWO_PI, half = SL_PI;
    using Angles = std::array<float, 2>;
    const std::tuple<int, int, Angles, Angles> cases[] = {
        {1, CCW, {1, 2}, {turn - 1, turn - 2}},
        {1, CW, {2, 1}, {turn - 2, turn - 1}},
        {0, CCW, {1, 2}, {half - 1, half - 2}},
        {2, CW, {2, 1}, {half - 2, half - 1}},
        {1, CCW, {1, 1}, {turn - 1, turn - 1}},
        {1, CW, {turn, turn}, {0, 0}},
        {1, CCW, {2, 1}, {2 * turn - 2, turn - 1}},
        {1, CW, {1, 2}, {turn - 1, 2 * turn - 2}},
        {0, CCW, {3, 4}, {half - 3 + turn, 3 * half - 4}},
        {1, CCW, {6, 7}, {2 * turn - 6, 2 * turn - 7}}};
    for (const auto &[plane, direction, from, to] : cases) {
        SCOPED_TRACE(testing::Message() << plane << " " << from[0] << " " << from[1]);
        TouchCurD arc = sentinelCurve(CUR_ARC, direction);
        arc.firstAngle = from[0];
        arc.secondAngle = from[1];
        const int axis = plane == 0 ? 2 : plane - 1;
        const float before = arc.centre[axis];
        arc.MirrorM(nullptr, plane);
        EXPECT_EQ(arc.centre[axis], -before);
        EXPECT_EQ(arc.direction, CCW + CW - direction);
        EXPECT_NEAR(arc.firstAngle, to[0], 2e-6F);
        EXPECT_NEAR(arc.secondAngle, to[1], 2e-6F);
        arc.MirrorM(nullptr, plane); // twice is nothing, but for turns
        EXPECT_EQ(arc.centre[axis], before);
        EXPECT_EQ(arc.direction, direction);
        EXPECT_NEAR(std::cos(arc.firstAngle), std::cos(from[0]), 2e-6F);
        EXPECT_NEAR(std::sin(arc.secondAngle), std::sin(from[1]), 2e-6F);
    }
}

TEST(TouchCur, SettersWriteWhatTheySayAndNoMore) {
    float points[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    TouchCurD curve = sentinelCurve(CUR_ARC, CW), expected = sentinelCurve(CUR_LINE, CW);
    test::setXyz(expected.firstPoint, points[0]); // exchanged in no direction
    test::setXyz(expected.secondPoint, points[2]);
    EXPECT_EQ(slSetLine(&curve, CUR_LINE, points[0], points[2]), 1);
    EXPECT_EQ(bytesOf(curve), bytesOf(expected));

    expected.type = CUR_ARC_YZ;
    test::setXyz(expected.centre, points[1]);
    expected.radius = expected.pitch = 2.5F;
    expected.firstAngle = 0.5F;
    expected.secondAngle = 1.5F;
    slSetArc(&curve, CUR_ARC_YZ, CW, points[0], points[1], points[2], 2.5F, 0.5F, 1.5F);
    EXPECT_EQ(bytesOf(curve), bytesOf(expected));
}

class TouchCurStream : public testing::Test {
protected:
    void open(const std::string &bytes, const char *mode, int version) {
        test::writeBytes(path, bytes);
        stream.OpenM(path.c_str(), mode);
        stream.SetVersionNumM(version);
    }

    const test::TempDir directory;
    const std::string path = directory.path("curve");
    TqIOCL stream;
};

TEST_F(TouchCurStream, WritesItsFieldsInOrderAndReadsThreeCoordinatesBefore820) {
    const TouchCurD written = sentinelCurve(CUR_ARC_XY);
    stream.OpenM(path.c_str(), "wb");
    written.FmOutputOzkFileM(&stream);
    stream.CloseM();
    EXPECT_EQ(test::readBytes(path), bytesOf(written));
    for (const int version : {821, 820, 819, 0, SL_DELETED_INT}) {
        const int values = version < 820 ? 3 : 5; // what a file does not hold stays
        TouchCurD expected = written;
        for (Tq5AxisPntCL *p : {&expected.centre, &expected.firstPoint, &expected.secondPoint}) {
            *p = Tq5AxisPntCL(*p, values);
        }
        TouchCurD found;
        found.secondPoint.V() = -5;
        expected.secondPoint.V() = values == 3 ? -5 : written.secondPoint.V();
        open(bytesOf(written, values), "rb", version);
        found.FmInputOzkFileM(&stream);
        EXPECT_EQ(bytesOf(found), bytesOf(expected)) << version;
        EXPECT_EQ(stream.EofM(), 1) << version;
    }
}

TEST_F(TouchCurStream, ThrowsOnEveryFileThatIsCutShort) {
    const std::string whole = bytesOf(sentinelCurve(CUR_ARC_XY));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        open(whole.substr(0, size), "rb", 820);
        TouchCurD found;
        EXPECT_EQ(test::thrown([&] { found.FmInputOzkFileM(&stream); }), 107) << size;
    }
}

TEST_F(TouchCurStream, HasATextFormOnlyInTheOlderVersions) {
    open("", "w", 820);
    EXPECT_EQ(test::thrown([&] { TouchCurD().SaveM(&stream); }), 108);
    stream.CloseM();
    open("1\n143\n1, 2, 3\n4, 5, 6\n7, 8, 9\n0, 0, 1\n1, 0, 0\n2.5\n0\n0.5\n1.5\n", "r", 819);
    TouchCurD found;
    found.FmInputOzkFileM(&stream);
    EXPECT_EQ(found.type, CUR_LINE);
    EXPECT_EQ(found.secondPoint.Z(), 9.0F);
    EXPECT_EQ(found.vector1[2], 1.0F);
    EXPECT_EQ(found.secondAngle, 1.5F);
}

} // namespace
