// Feet and distances against a plain model, and the bounds that decide between branches.
#include "trunnion/geometry/distances.h"

#include "trunnion/geometry/scalars.h"
#include <tuple>

#include "tests/geometry/line_model.h"

using namespace test;

namespace {

const Triple UNTOUCHED = {SENTINEL, SENTINEL, SENTINEL};

TEST(Foot, OnALineIsThatOfTheModel) {
    test::Random random(331);
    for (int round = 0; round < 2000; ++round) {
        // The functions in the plane see a third component that they must not read.
        const float flat = round % 2 == 0 ? 0.0F : 1.0F;
        Triple points[3];
        Exact exact[3] = {UNTOUCHED, UNTOUCHED, UNTOUCHED};
        for (int i = 0; i < 3; ++i) {
            points[i] = randomTriple(random, 10);
            exact[i] = {points[i][0], points[i][1], flat * points[i][2]};
        }
        const float *const a = points[0].data(), *const b = points[1].data();
        const float *const p = points[2].data();
        const Exact line = exact[1] - exact[0], arm = exact[2] - exact[0];
        const auto t = dot(arm, line) / dot(line, line);
        const auto distance = (arm - t * line).length();
        const Exact offset = exact[0] - -t * line;
        float found[2] = {};
        Triple foot = UNTOUCHED;
        if (flat == 0.0F) {
            // Positive on the left, where the cross product of line and arm points up.
            ASSERT_PRED2(isRounded, slGetPntLineDist2D(a, b, p, &found[0]),
                         std::copysign(distance, cross(line, arm).z));
            ASSERT_EQ(slGetLineFoot(a, b, p, foot.data(), &found[1]), 1);
            ASSERT_EQ(foot[2], SENTINEL);
            foot[2] = 0.0F;
        } else {
            ASSERT_PRED2(isRounded, slGetPntLineDist(a, b, p, &found[0]), distance);
            ASSERT_PRED2(isRounded, slGetPntLineSquareDist(a, b, p, &found[1]),
                         distance * distance);
            ASSERT_PRED2(isRounded, slProjectPntToLine(a, b, p, foot.data()), t * line.length());
        }
        ASSERT_LT((offset - foot).length(), 2e-6L);
        ASSERT_PRED2(isRounded, found[0], t);
        ASSERT_PRED2(isRounded, found[1], t);
    }
}

TEST(Foot, OnAPlaneOrAlongADirectionIsThatOfTheModel) {
    test::Random random(332);
    for (int round = 0; round < 2000; ++round) {
        const Triple base = randomTriple(random, 10), p = randomTriple(random, 10);
        Triple n = randomTriple(random, 1);
        slNormalize(n.data());
        const float D = base[0];
        const auto height = dot(Exact(n), p) + D;
        const Exact arm = Exact(p) - base;
        Triple foot = p; // in place
        float t = SENTINEL;
        ASSERT_PRED2(isRounded, slProjectPntToPlane(n.data(), D, foot.data(), foot.data()), height);
        ASSERT_LT((Exact(p) - foot - height * Exact(n)).length(), 2e-6L);
        ASSERT_PRED2(isRounded, slGetPntPlaneDist(n.data(), D, p.data()), std::fabs(height));
        ASSERT_PRED2(isRounded, slGetPntLineDistByVect(base.data(), n.data(), p.data(), &t),
                     (arm - dot(arm, n) * Exact(n)).length());
        ASSERT_PRED2(isRounded, t, dot(arm, n));
    }
}

TEST(Distance, BelowTheToleranceIsZeroButItsSquareIsNot) {
    const float a[] = {0, 0, 0}, b[] = {300000, 0, 0}, unit[] = {1, 0, 0};
    for (const float off : {0.0F, 5e-5F, SL_ZERO, above(SL_ZERO)}) {
        // The foot's parameter has no exact float: the distance must not depend on its rounding.
        const float p[] = {100000.7F, off, 0}, expected = off > SL_ZERO ? off : 0.0F;
        float t = SENTINEL;
        EXPECT_EQ(slGetPntLineDist(a, b, p, &t), expected);
        EXPECT_EQ(slGetPntLineDist2D(a, b, p, &t), expected);
        EXPECT_EQ(slGetPntLineDistByVect(a, unit, p, &t), expected);
        EXPECT_FLOAT_EQ(slGetPntLineSquareDist(a, b, p, &t), off * off);
    }
}

TEST(ShortLine, HasItsOwnBoundInEachFunction) {
    const float a[] = {0, 0, 0}, p[] = {3, 4, 0};
    const auto isLongEnough = [](double x) { return x * x >= SL_ZERO_HALF_D; };
    float bound = 0.00707F;
    while (!isLongEnough(bound)) {
        bound = above(bound);
    }
    for (const float x : {bound, below(bound), above(SL_ZERO), SL_ZERO, 1e-40F, 0.0F}) {
        const float b[] = {x, 0, 0};
        Triple foot = UNTOUCHED;
        float t = SENTINEL;
        EXPECT_EQ(slGetLineFoot(a, b, p, foot.data(), &t), 1);
        EXPECT_FLOAT_EQ(t, isLongEnough(x) ? 3 / x : 1.0F) << x;
        EXPECT_FLOAT_EQ(foot[0], isLongEnough(x) ? 3.0F : 0.0F) << x;
        foot = UNTOUCHED;
        EXPECT_EQ(slProjectPntToLine(a, b, p, foot.data()), x > SL_ZERO ? 3.0F : -SL_BIG);
        EXPECT_EQ(foot, x > SL_ZERO ? (Triple{3, 0, 0}) : UNTOUCHED) << x;
        EXPECT_EQ(slGetPntLineDist(a, b, p, &t), x > 0 ? 4.0F : 5.0F);
        EXPECT_EQ(t > 0, x > 0) << x;
    }
}

TEST(NearestPair, IsTheFirstOfTheClosestInListedOrder) {
    const float O[] = {0, 0, 0}, X[] = {1, 0, 0}, Y[] = {0, 1, 0}, XY[] = {1, 1, 0};
    const float near[] = {1, 0.9F, 0}, far[] = {2e9F, 0, 0}, farther[] = {0, 2e9F, 0};
    const std::tuple<std::array<const float *, 4>, const float *, const float *> cases[] = {
        {{O, X, Y, XY}, O, X},          {{XY, O, Y, X}, XY, Y},       {{O, XY, near, X}, XY, near},
        {{O, far, XY, near}, XY, near}, {{X, O, farther, far}, X, O},
    };
    for (const auto &[p, first, second] : cases) {
        float out[2][3];
        slGetNearestPair(p[0], p[1], p[2], p[3], out);
        EXPECT_TRUE(std::equal(first, first + 3, out[0]) && std::equal(second, second + 3, out[1]));
    }
    float out[2][3] = {{SENTINEL}, {SENTINEL}}; // no pair below SL_BIG
    const float up[] = {0, 0, 2e9F};
    slGetNearestPair(O, far, farther, up, out);
    EXPECT_TRUE(out[0][0] == SENTINEL && out[1][0] == SENTINEL);
}

const Triple A = {0, 5, 0}, ELSEWHERE = {3, 5, -7};

// The case again with x and z reversed, which changes nothing but signs.
Triple turned(const Triple &p) {
    return {-p[0], p[1], -p[2]};
}

TEST(PointOnXZ, AtTheHeightOfAPointFallsBackToTheNearerEnd) {
    const Triple cases[][4] = {
        {A, {2, 6, 4}, {9, 9, 8}, {4, 0, 8}},
        {A, {2, 6, above(SL_ZERO)}, {9, 9, 0}, {0, 0, 0}},
        {A, {2, 6, SL_ZERO}, {0.9F, 9, 0}, A},
        {A, {2, 6, -SL_ZERO}, {1, 9, 0}, {2, 6, -SL_ZERO}}, // both as near
        {ELSEWHERE, {5, 6, -3}, {9, 9, -4}, {4.5F, 0, -4}},
        {ELSEWHERE, {5, 6, -7}, {3.9F, 9, 0}, ELSEWHERE},
    };
    for (const auto &[a, b, p, expected] : cases) {
        Triple out = p; // in place
        slProjToLineAlongXOnXZ(a.data(), b.data(), out.data(), out.data());
        EXPECT_EQ(out, expected);
        out = turned(p);
        slProjToLineAlongXOnXZ(turned(a).data(), turned(b).data(), out.data(), out.data());
        EXPECT_EQ(out, turned(expected));
    }
}

TEST(PointOnXZ, AtTheXOfAPointTakesTheSlackOfItsBranch) {
    const Triple wide = {2, 6, 4}, unit = {1, 6, 4}, narrow = {0.5F, 6, 4};
    const Triple upright = {SL_ZERO, 6, -4}, steep = {above(SL_ZERO), 6, -4};
    // out: UNTOUCHED where the result is 0
    const std::tuple<const char *, Triple, Triple, Triple, float, Triple> cases[] = {
        {"slack before a", A, wide, {-0.25F, 9, 0}, 0.25F, UNTOUCHED},
        {"just within it", A, wide, {above(-0.25F), 9, 0}, 0.25F, A},
        {"slack beyond b", A, wide, {2.25F, 9, 9}, 0.25F, UNTOUCHED},
        {"just within it", A, wide, {below(2.25F), 9, 9}, 0.25F, wide},
        {"nearer end by z, not by x", A, wide, {2.1F, 9, 1.9F}, 0.25F, A},
        {"both ends as near", A, wide, {2.1F, 9, 2}, 0.25F, wide},
        {"-SL_ZERO", A, unit, {-SL_ZERO, 9, 0}, 0.25F, A},
        {"above it", A, unit, {-SL_ZERO / 2, 9, 0}, 0.25F, {-SL_ZERO / 2, 0, -2 * SL_ZERO}},
        {"SL_PAST_ONE", A, unit, {SL_PAST_ONE, 9, 4}, 0.25F, unit},
        {"below it", A, unit, {1.00005F, 9, 4}, 0.25F, {1.00005F, 0, 4 * 1.00005F}},
        {"width 1 is the slack", A, unit, {-1, 9, 0}, 2, UNTOUCHED},
        {"tol where width is above 1", A, {above(1.0F), 6, 4}, {-1, 9, 0}, 2, A},
        {"narrow: just within width", A, narrow, {above(-0.25F), 9, 0}, 2, A},
        {"narrow: tol is the slack", A, narrow, {-0.125F, 9, 0}, 0.25F, UNTOUCHED},
        {"upright: tol in x", A, upright, {0.25F, 9, -1}, 0.25F, UNTOUCHED},
        {"upright: just within it", A, upright, {-0.24F, 9, -1}, 0.25F, {-0.24F, 9, -1}},
        {"upright: SL_ZERO past a", A, upright, {0, 9, SL_ZERO}, 0.25F, A},
        {"upright: less than that", A, upright, {0, 9, SL_ZERO / 2}, 0.25F, {0, 9, SL_ZERO / 2}},
        {"upright: far beyond b", A, upright, {0, 9, -99}, 0.25F, upright},
        {"elsewhere", ELSEWHERE, {5, 6, -3}, {4, 9, 9}, 0.25F, {4, 0, -5}},
        {"elsewhere: in the slack", ELSEWHERE, {5, 6, -3}, {5.1F, 9, -5.1F}, 0.25F, ELSEWHERE},
        {"elsewhere: upright", ELSEWHERE, {3, 6, -3}, {3.1F, 9, -5}, 0.25F, {3.1F, 9, -5}},
        {"steep: out of its slack", A, steep, {0.1F, 9, -1}, 0.25F, UNTOUCHED},
    };
    for (const auto &[name, a, b, p, tol, expected] : cases) {
        const int code = expected == UNTOUCHED ? 0 : 1;
        Triple out = UNTOUCHED;
        EXPECT_EQ(slProjToLineAlongZOnXZ(a.data(), b.data(), p.data(), tol, out.data()), code)
            << name;
        EXPECT_LT((Exact(out) - expected).length(), 1e-6L) << name;
        out = turned(UNTOUCHED);
        EXPECT_EQ(slProjToLineAlongZOnXZ(turned(a).data(), turned(b).data(), turned(p).data(), tol,
                                         out.data()),
                  code)
            << name;
        EXPECT_LT((Exact(out) - turned(expected)).length(), 1e-6L) << name;
    }
}

TEST(Outputs, AreFiniteForAnyFiniteInput) {
    test::Random random(334);
    for (int round = 0; round < 20000; ++round) {
        const Triple points[] = {nastyTriple(random), nastyTriple(random), nastyTriple(random)};
        const float *const a = points[0].data(), *const b = points[1].data();
        const float *const p = points[2].data();
        float t[20] = {};
        const float results[] = {
            slGetPntLineDist(a, b, p, &t[0]),    slGetPntLineSquareDist(a, b, p, &t[1]),
            slGetPntLineDist2D(a, b, p, &t[2]),  slGetPntLineDistByVect(a, b, p, &t[3]),
            slProjectPntToLine(a, b, p, &t[5]),  slGetPntPlaneDist(a, *b, p),
            slProjectPntToPlane(a, *b, p, &t[8])};
        slGetLineFoot(a, b, p, &t[11], &t[4]);
        slProjToLineAlongXOnXZ(a, b, p, &t[14]);
        slProjToLineAlongZOnXZ(a, b, p, std::fabs(b[1]), &t[17]);
        ASSERT_TRUE(test::areFinite(t) && test::areFinite(results));
    }
}

} // namespace
