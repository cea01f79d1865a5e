// Rectangles: standard position, bounding rectangles, pan limits.
#include "trunnion/geometry/rectangles.h"

#include <algorithm>
#include <bit>
#include <numbers>

#include "trunnion/geometry/arc_directions.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/scalars.h"

#include "tests/geometry/cases.h"
#include "tests/geometry/point.h"

using namespace test;

namespace {

using Samples = std::vector<std::array<double, 2>>;

RectangleD box(float x0, float y0, float x1, float y1) {
    return {{x0, y0, 0}, {x1, y0, 0}, {x1, y1, 0}, {x0, y1, 0}};
}

RectangleD box(const float *lowAndHigh) {
    return box(lowAndHigh[0], lowAndHigh[1], lowAndHigh[2], lowAndHigh[3]);
}

std::array<float, 12> flat(const RectangleD &R) {
    return std::bit_cast<std::array<float, 12>>(R);
}

// The rectangle's low and high corner; the others must go with them, in the plane z = 0.
void putBox(const RectangleD &R, float *out) {
    EXPECT_EQ(flat(R), flat(box(R.c0[0], R.c0[1], R.c2[0], R.c2[1])));
    std::copy_n(R.c0, 2, out);
    std::copy_n(R.c2, 2, out + 2);
}

double greatestDifference(const RectangleD &A, const RectangleD &B) {
    double greatest = 0.0;
    for (std::size_t i = 0; i < 12; ++i) {
        greatest = std::max(greatest, std::fabs(static_cast<double>(flat(A)[i]) - flat(B)[i]));
    }
    return greatest;
}

// How far the points reach beyond the left, lower, right and upper side of a plane rectangle in any
// direction.
std::array<double, 4> excess(const RectangleD &R, const Samples &points) {
    const Point side = Point{R.c1[0], R.c1[1], 0} - Point{R.c0[0], R.c0[1], 0};
    const double ex = side[0] / test::norm(side), ey = side[1] / test::norm(side);
    std::array<double, 4> far = {-1e30, -1e30, -1e30, -1e30};
    for (const auto &[x, y] : points) {
        far[0] = std::max(far[0], (R.c0[0] - x) * ex + (R.c0[1] - y) * ey);
        far[1] = std::max(far[1], (R.c0[1] - y) * ex - (R.c0[0] - x) * ey);
        far[2] = std::max(far[2], (x - R.c2[0]) * ex + (y - R.c2[1]) * ey);
        far[3] = std::max(far[3], (y - R.c2[1]) * ex - (x - R.c2[0]) * ey);
    }
    return far;
}

TEST(StandardPosition, PutsTheFirstCornerAtTheOrigin) {
    test::Random random(71);
    for (int round = 0; round < 300; ++round) {
        const RectangleD standard = box(0, 0, random.real(0.1F, 30), random.real(0.1F, 30));
        RectangleD R{}, S{};
        Matrix M{};
        slTransRectangleByMatrix(standard, randomMotion(random).data(), &R);
        ASSERT_EQ(slTransToStdRect(R, &S, M.data()), 1);
        ASSERT_LT(greatestDifference(S, standard), 1e-3);
        slTransRectangleByMatrix(R, M.data(), &R);
        ASSERT_EQ(greatestDifference(R, S), 0.0);
    }
    RectangleD S = box(SENTINEL, 0, 0, 0);
    Matrix M = {SENTINEL};
    EXPECT_EQ(slTransToStdRect(box(1, 1, 1, 9), &S, M.data()), 0);
    EXPECT_EQ(S.c0[0], SENTINEL);
    EXPECT_EQ(M[0], SENTINEL);
}

TEST(StandardPosition, BringsBackWhatSticksOutByRounding) {
    // Within a frame from (0, 0) to (10, 5).
    check({{"inside", 0, {0, 0, 10, 5}, {0, 0, 10, 5}},
           {"left", 0, {-0.001F, 1, 2, 2}, {0.0001F, 1, 2.0011F, 2}},
           {"lower", 0, {1, -0.001F, 2, 2}, {1, 0.0001F, 2, 2.0011F}},
           {"right", 0, {1, 1, 10.001F, 2}, {0.9989F, 1, 9.9999F, 2}},
           {"upper", 0, {1, 1, 2, 5.001F}, {1, 0.9989F, 2, 4.9999F}},
           {"too large: the last move stands", 0, {-1, 1, 10, 2}, {-1.0001F, 1, 9.9999F, 2}}},
          [](const float *in, float *out) {
              RectangleD Q = box(in);
              slCorrectRectContainError(box(0, 0, 10, 5), &Q);
              putBox(Q, out);
              return 0;
          });
}

TEST(PointInRectangle, TakesTheEdgeWithOrWithoutTolerance) {
    // A place in a rectangle of 2 by 1; 2 for both forms, 1 for the standard rectangle only.
    check({{"middle", 2, {1, 0.5F}, {}},
           {"left edge", 1, {0, 0.5F}, {}},
           {"right edge", 1, {2, 0.5F}, {}},
           {"just left of it", 1, {-below(SL_ZERO), 0.5F}, {}},
           {"left by the tolerance", 0, {-SL_ZERO, 0.5F}, {}},
           {"below by the tolerance", 0, {1, -SL_ZERO}, {}},
           {"within the tolerance", 1, {2.00009F, 1.00009F}, {}},
           {"right by more", 0, {2.0002F, 0.5F}, {}},
           {"above by more", 0, {1, 1.0002F}, {}}},
          [](const float *in, float *) {
              const float o[2] = {1, 4}, size[2] = {2, 1}, relative[2] = {in[0] + 1, in[1] + 4};
              return slJudgePntInRectM(box(0, 0, 2, 1), in) + slJudgePntInRectM(o, size, relative);
          });
}

TEST(Bounding, OfArcsByQuarters) {
    constexpr float ccw = SL_RECT_ARC_CCW;
    // Direction and ends about (10, 20); the box around the unit circle.
    check({{"first quarter", 0, {ccw, 1, 0, 0, 1}, {10, 20, 11, 21}},
           {"the other three", 0, {ccw, 0, 1, 1, 0}, {9, 19, 11, 21}},
           {"the curve code is clockwise too", 0, {CUR_DIR_CCW, 1, 0, 0, 1}, {9, 19, 11, 21}},
           {"clockwise quarter", 0, {CUR_DIR_CW, 0, 1, 1, 0}, {10, 20, 11, 21}},
           {"lower half", 0, {ccw, -1, 0, 1, 0}, {9, 19, 11, 20}},
           {"one point", 0, {ccw, 0, 1, 0, 1}, {10, 21, 10, 21}}},
          [](const float *in, float *out) {
              const float p1[2] = {in[1] + 10, in[2] + 20}, p2[2] = {in[3] + 10, in[4] + 20};
              const float centre[2] = {10, 20};
              RectangleD R{};
              slGetArcRectangle(static_cast<short>(in[0]), p1, p2, centre, &R);
              putBox(R, out);
              return 0;
          });
    RectangleD R{};
    slGetCircleRectangle(Point{1, 1, 4}, Point{3, 1, 4 + std::sqrt(5.0F)}, &R);
    EXPECT_LT(greatestDifference(R, box(-2, -2, 4, 4)), 1e-6) << "a radius in space";
}

// Every arc lies in its rectangle and touches each side.
TEST(Bounding, OfAnyArcIsTight) {
    test::Random random(72);
    for (int round = 0; round < 2000; ++round) {
        const Point centre = test::randomPoint(random, 50);
        const double r = random.real(0.5F, 20), from = random.real(0, 6.28F);
        const double turn = random.real(-6.2F, 6.2F);
        Samples points;
        for (int i = 0; i <= 2000; ++i) {
            const double angle = from + turn * i / 2000;
            points.push_back({centre[0] + r * std::cos(angle), centre[1] + r * std::sin(angle)});
        }
        const auto end = [](const std::array<double, 2> &p) {
            return Point{static_cast<float>(p[0]), static_cast<float>(p[1]), SENTINEL};
        };
        RectangleD R{};
        slGetArcRectangle(turn > 0 ? SL_RECT_ARC_CCW : CUR_DIR_CW, end(points.front()),
                          end(points.back()), centre, &R);
        // An arc cosine that snaps moves an end by 0.0142 radians, and thus a side by 1e-4 radii.
        // An arc as short as that can even seem to run the other way round.
        if (std::fabs(turn) > 0.03 && std::fabs(turn) < 6.25) {
            for (const double beyond : excess(R, points)) {
                ASSERT_NEAR(beyond, 0.0, 1.1e-4 * r + 2e-5);
            }
        }
    }
}

// An angle at the bound, a float, is not yet on the arc; the next one is.
TEST(Bounding, OfArcsReachesAnAxisWithinTheTolerance) {
    const auto isReached = [](int quarter, bool isCcw, float a1, float a2) {
        const float u[2] = {0.5F, 0.5F}, v[2] = {-0.25F, 0.75F};
        float lo[2], hi[2];
        (isCcw ? slGetCCWArcRectangle : slGetCWArcRectangle)(u, v, a1, a2, 9, lo, hi);
        return (quarter == 1 ? hi[1] : quarter == 2 ? -lo[0] : -lo[1]) == 9.0F;
    };
    for (int quarter = 1; quarter <= 3; ++quarter) {
        const float low = static_cast<float>(quarter * SL_HALF_PI_D - SL_ZERO_D);
        const float high = static_cast<float>(quarter * SL_HALF_PI_D + SL_ZERO_D);
        EXPECT_FALSE(isReached(quarter, true, low - 0.5F, low));
        EXPECT_TRUE(isReached(quarter, true, low - 0.5F, above(low)));
        EXPECT_FALSE(isReached(quarter, true, high, high + 0.5F));
        EXPECT_TRUE(isReached(quarter, true, below(high), high + 0.5F));
        EXPECT_FALSE(isReached(quarter, false, low, low - 0.5F));
        EXPECT_TRUE(isReached(quarter, false, above(low), low - 0.5F));
        EXPECT_FALSE(isReached(quarter, false, high + 0.5F, high));
        EXPECT_TRUE(isReached(quarter, false, high + 0.5F, below(high)));
    }
}

TEST(Bounding, OfASphereTurnsWithADirection) {
    check(
        {{"from above", 0, {0, 0, 1}, {-4, -3, 0, 6, -3, 0, 6, 7, 0, -4, 7, 0}},
         {"nearly", 0, {0.00004F, 0.00005F, 1}, {-4, -3, 0, 6, -3, 0, 6, 7, 0, -4, 7, 0}},
         {"along X", 0, {2, 0, 5}, {-4, -3, 0, 6, -3, 0, 6, 7, 0, -4, 7, 0}},
         {"along Y", 0, {0, 2, 0}, {6, -3, 0, 6, 7, 0, -4, 7, 0, -4, -3, 0}},
         {"slanted", 0, {3, 4, 1}, {2, -5, 0, 8, 3, 0, 0, 9, 0, -6, 1, 0}}},
        [](const float *in, float *out) {
            RectangleD R{};
            slGetSphereProjRect(Point{1, 2, 3}, 5, in, &R);
            std::ranges::copy(flat(R), out);
            return 0;
        },
        1e-6);
}

// A true rectangle along the axis' plane direction, with the cylinder inside and all sides touched.
TEST(Bounding, OfACylinderIsTight) {
    test::Random random(73);
    for (int round = 0; round < 500; ++round) {
        const Point c = test::randomPoint(random, 30), v = test::unit(test::randomPoint(random, 1));
        const Point e = test::unit({v[1], -v[0], 0}), f = test::cross(e, v);
        const float r = random.real(0.1F, 8), h = random.real(-20, 20);
        Samples points;
        for (int i = 0; i < 2000; ++i) {
            const double angle = 2 * std::numbers::pi * i / 2000;
            const double x = r * std::cos(angle), y = r * std::sin(angle);
            for (const double z : {0.0F, h}) {
                points.push_back(
                    {c[0] + x * e[0] + y * f[0] + z * v[0], c[1] + x * e[1] + y * f[1] + z * v[1]});
            }
        }
        RectangleD R{};
        slGetCylinderProjRect(c, v, r, h, &R);
        for (const double beyond : excess(R, points)) {
            ASSERT_NEAR(beyond, 0.0, 5e-5);
        }
        ASSERT_NEAR(R.c0[0] + R.c2[0], R.c1[0] + R.c3[0], 4e-5);
        ASSERT_NEAR(R.c0[1] + R.c2[1], R.c1[1] + R.c3[1], 4e-5);
        ASSERT_NEAR(slDistance2(R.c0, R.c2), slDistance2(R.c1, R.c3), 4e-5);
        ASSERT_GT((R.c1[0] - R.c0[0]) * v[0] + (R.c1[1] - R.c0[1]) * v[1], 0);
    }
    RectangleD R{};
    slGetCylinderProjRect(Point{0, 0, 0}, Point{0, 0, 1}, 2, 1000, &R);
    EXPECT_EQ(greatestDifference(R, box(-2, -2, 2, 2)), 0.0);
    // Shorter in the plane than what can be made a unit vector.
    slGetCylinderProjRect(Point{0, 0, 0}, Point{0.00006F, 0.00006F, 1}, 2, 1e6F, &R);
    EXPECT_LT(excess(R, {{61, 61}})[3], 0.0);
}

TEST(Bounding, JoinsRectanglesOfOneDirection) {
    const RectangleD nearer = {{1, 1, 5}, {3, 3, 5}, {2, 4, 5}, {0, 2, 5}};
    const RectangleD farther = {{5, 5, 5}, {7, 7, 5}, {4, 10, 5}, {2, 8, 5}};
    const RectangleD joined = {{2, 0, 0}, {7, 7, 0}, {4, 10, 0}, {-1, 3, 0}};
    RectangleD first = nearer, second = farther;
    slMergeRectWithSameDir(first, farther, &first);
    slMergeRectWithSameDir(nearer, second, &second);
    EXPECT_LT(greatestDifference(first, joined), 1e-6);
    EXPECT_LT(greatestDifference(second, joined), 1e-6);
}

TEST(Pan, IsCutAtTheFrame) {
    // The shape and the pan, in a frame from (0, 0) to (10, 6).
    check(
        {{"free", 1, {1, 1, 3, 2, 5, 2, 1}, {5, 2, 1}},
         {"into the tolerance", 1, {1, 1, 3, 2, 7.00009F, 0, 0}, {7.00009F, 0, 0}},
         {"twice the room", 0, {1, 1, 3, 2, 14, 0, 0}, {7, 0, 0}},
         {"the nearest corner decides", 0, {1, 1, 3, 2, 8, 8, 0}, {4, 4, 0}},
         {"leftward, z with it", 0, {1, 1, 3, 2, -4, 0, 3}, {-0.8F, 0, 0.6F}},
         {"out of a corner", 0, {0, 0, 3, 2, -1, -1, 0}, {0, 0, 0}},
         {"along the edge", 0, {0, 0, 3, 2, 14, 0, 0}, {7, 0, 0}},
         {"in the tolerance, outward", 0, {9, 1, 10.00005F, 2, 0.01F, 0, 0}, {0, 0, 0}},
         {"outside, outward", 0, {11, 1, 12, 2, 3, 0, 0}, {0, 0, 0}},
         {"into the frame", 1, {-3, 1, -1, 2, 5, 1, 0}, {5, 1, 0}},
         {"no pan", 1, {1, 1, 3, 2, 0, 0, 0}, {0, 0, 0}},
         {"shorter than 0.0001, outside", 1, {11, 1, 12, 2, 0.00009F}, {0.00009F, 0, 0}}},
        [](const float *in, float *out) {
            return slGetStdRectMinPanDisplace(box(0, 0, 10, 6), box(in), in + 4, out);
        },
        1e-6);
}

// In whatever position: a rectangle that starts inside stays inside, and only the edge stops it.
TEST(Pan, NeverLeavesTheFrameAndEndsAtItsEdge) {
    test::Random random(74);
    int cut = 0;
    for (int round = 0; round < 2000; ++round) {
        const float width = random.real(2, 40), height = random.real(2, 40);
        const float x = random.real(0.01F, width - 0.5F), y = random.real(0.01F, height - 0.5F);
        const RectangleD S = box(0, 0, width, height);
        const RectangleD Q =
            box(x, y, random.real(x, width - 0.01F), random.real(y, height - 0.01F));
        const Point v = {random.real(-30, 30), random.real(-30, 30), 0};
        Point out;
        const int result = slGetStdRectMinPanDisplace(S, Q, v, out);
        const float room = std::min({Q.c0[0] + out[0], Q.c0[1] + out[1], width - Q.c2[0] - out[0],
                                     height - Q.c2[1] - out[1]});
        ASSERT_GT(room, -1.1e-4F);
        ASSERT_TRUE(result == 1 ? out == v : room < 1e-4F);
        cut += 1 - result;

        // The frame elsewhere: the same pan, free of its part across the frame.
        const Matrix place = randomMotion(random);
        RectangleD frame{}, shape{}, standard{};
        Matrix M{};
        Point pan = {v[0], v[1], random.real(-5, 5)}, found, again;
        slTransRectangleByMatrix(S, place.data(), &frame);
        slTransRectangleByMatrix(Q, place.data(), &shape);
        slMatrix16MultiVector3(place.data(), pan);
        slMatrix16MultiVector3(place.data(), out);
        slTransToStdRect(frame, &standard, M.data());
        slGetRectMinPanDisplace(frame, shape, pan, found);
        slGetStdRectMinPanDisp(standard, M.data(), shape, pan, again);
        ASSERT_LT(test::norm(found - out), 2e-3);
        ASSERT_LT(test::norm(again - out), 2e-3);
    }
    EXPECT_GT(cut, 500);
}

TEST(Pan, BringsAShapeInsideFirstOrGivesUpWithoutAFrame) {
    Matrix identity{};
    slSetIdentity(identity.data());
    const RectangleD outside = box(-0.01F, 1, 2, 2);
    Point out;
    EXPECT_EQ(
        slGetStdRectMinPanDisp(box(0, 0, 10, 6), identity.data(), outside, Point{16, 0, 2}, out),
        0);
    EXPECT_NEAR(out[0], 8 - 0.0101F, 1e-5F);
    EXPECT_EQ(out[2], 0.0F);
    EXPECT_EQ(slGetRectMinPanDisplace(box(1, 1, 1, 9), outside, Point{16, 0, 2}, out), 0);
    EXPECT_EQ(out, (Point{0, 0, 0}));
}

TEST(Pan, OfSegmentsAndArcsTakesTheirOwnBounds) {
    constexpr float ccw = SL_RECT_ARC_CCW;
    // Direction (0 for a segment), ends and pan, in a frame of 10 by 10; arcs about (3, 5).
    check(
        {{"segment, right", 0, {0, 1, 1, 4, 2, 12, 0}, {6, 0, 0}},
         {"segment, left", 0, {0, 1, 1, 4, 2, -12, 0}, {-1, 0, 0}},
         {"quarter, down", 0, {ccw, 5, 5, 3, 7, 0, -12}, {0, -5, 0}},
         {"three quarters, down", 0, {CUR_DIR_CW, 5, 5, 3, 7, 0, -12}, {0, -3, 0}},
         {"circle, left", 0, {ccw, 5, 5, 5.00009F, 5, -12, 0}, {-1, 0, 0}},
         {"circle, free", 1, {ccw, 5, 5, 5, 5, 4, 2}, {4, 2, 0}}},
        [](const float *in, float *out) {
            const RectangleD S = box(0, 0, 10, 10);
            const Point p = {in[1], in[2], 0}, q = {in[3], in[4], 0}, v = {in[5], in[6], 0};
            return in[0] == 0 ? slCheckLineInRect(S, p, q, v, out)
                              : slCheckArcInRect(static_cast<short>(in[0]), S, p, q, Point{3, 5, 0},
                                                 v, out);
        },
        1e-5);
}

TEST(Crossing, OfASegmentWithTheBoundary) {
    // The ends of the segment; a square of 4 by 4, or with the fifth number a turned one.
    check(
        {{"out at the right", 1, {1, 1, 7, 3}, {4, 2}},
         {"through: the first edge in order", 1, {2, 9, 2, -9}, {2, 0}},
         {"along an edge", 0, {1, 0, 2, 0}, {}},
         {"along an edge and out", 1, {1, 0, 9, 0}, {4, 0}},
         {"ends on an edge", 1, {1, 1, 1, 4}, {1, 4}},
         {"ends short of it", 0, {1, 1, 1, 3.999F}, {}},
         {"past a corner within the slack", 1, {4.00005F, -1, 4.00005F, 1}, {4.00005F, 0}},
         {"past a corner", 0, {4.0002F, -1, 4.0002F, 1}, {}},
         {"a turned frame, third edge", 1, {0, 0, -3, 3, 1}, {-1, 1}}},
        [](const float *in, float *out) {
            const RectangleD diamond = {{0, -2, 3}, {2, 0, 3}, {0, 2, 3}, {-2, 0, 3}};
            return slGetLineSegIntersectRect(in[4] != 0 ? diamond : box(0, 0, 4, 4), in, in + 2,
                                             out);
        },
        1e-6);
}

} // namespace
