// Pairs of lines against a plain model, and the bounds that decide between result codes.
#include "trunnion/geometry/distances.h"
#include "trunnion/geometry/line_pairs.h"
#include "trunnion/geometry/scalars.h"

#include <tuple>
#include <vector>

#include "tests/geometry/line_model.h"

using namespace test;

namespace {

struct Pair {
    Triple a, b, c, d;
};

// Calls a function with the points of a pair, and with its outputs behind them.
template <typename Function, typename... Outputs>
auto on(const Pair &l, Function function, Outputs... outputs) {
    return function(l.a.data(), l.b.data(), l.c.data(), l.d.data(), outputs...);
}

using Answer = std::array<float, 3>; // t1, t2, dist

template <typename Function>
Answer measure(Function function, const Pair &l) {
    Answer answer = {SENTINEL, SENTINEL, SENTINEL};
    on(l, function, &answer[0], &answer[1], &answer[2]);
    return answer;
}

const Triple O = {0, 0, 0}, X = {1, 0, 0}, UP = {0, 0, 1};
const Triple UNTOUCHED = {SENTINEL, SENTINEL, SENTINEL};
constexpr Answer NO_FEET = {SL_BIG, SL_BIG, SL_BIG};

TEST(Crossing, TellsParallelShortAndCoincidentLinesApart) {
    constexpr float S = SENTINEL;
    const std::tuple<const char *, Pair, int, float, float> cases[] = {
        {"crossing upright", {O, {0, 0, 2}, {0, -1, 1}, {0, 3, 1}}, 1, 0.5F, 0.25F},
        {"parallel", {O, X, {0, 1, 0}, {5, 1, 0}}, 0, S, S},
        {"SL_ZERO apart", {O, X, {9, SL_ZERO, 0}, {5, SL_ZERO, 0}}, SL_COINCIDENT, S, S},
        {"further", {O, X, {0, above(SL_ZERO), 0}, {5, above(SL_ZERO), 0}}, 0, S, S},
        {"sine below the bound", {O, X, O, {1, SL_ZERO, 0}}, SL_COINCIDENT, S, S},
        {"sine above it", {O, X, O, {1, above(SL_ZERO), 0}}, 1, 0, 0},
        {"determinant SL_ZERO", {O, X, O, {0, SL_ZERO, 0}}, 0, S, S},
        {"determinant above it", {O, X, O, {0, above(SL_ZERO), 0}}, 1, 0, 0},
        {"short at right angles", {O, {0.005F, 0, 0}, O, {0, 0.005F, 0}}, 0, S, S},
        {"no first line", {O, O, O, {0, 1, 0}}, 0, S, S},
        // Not in one plane: the projection decides, XY before XZ and YZ on a tie.
        {"tie of XY and XZ", {O, X, {0, 2, 3}, {0, 3, 4}}, 1, 0, -2},
        {"XZ greater", {O, X, {0, 2, 3}, {0, 3, 5}}, 1, 0, -1.5F},
        {"tie of all", {O, {1, -1, 0}, {0, 2, 3}, {0, 3, 4}}, 1, 0, -2},
        {"YZ greater", {O, {1, -2, 0}, {2, 2, 3}, {2, 3, 4}}, 1, 0.5F, -3},
        {"YZ greater, reversed", {O, {1, -2, 0}, {2, 2, 3}, {2, 1, 2}}, 1, 0.5F, 3},
    };
    for (const auto &[name, lines, code, wantedT1, wantedT2] : cases) {
        float t1 = SENTINEL, t2 = SENTINEL;
        EXPECT_EQ(on(lines, slIntersectLines3D, &t1, &t2), code) << name;
        EXPECT_EQ(t1, wantedT1) << name;
        EXPECT_EQ(t2, wantedT2) << name;
    }
}

TEST(Judgement, ComparesTheResidualByMagnitudeAndAcceptsLinesThatShareAPoint) {
    const Triple right = {0.005F, 0, 1}, left = {0, 0.005F, 1};
    const std::tuple<const char *, Pair, int, Triple> cases[] = {
        {"just below the bound", {O, X, {0, 1, 0}, {9, 9, below(SL_ZERO)}}, 2, UP},
        {"the bound", {O, X, {0, 1, 0}, {9, 9, SL_ZERO}}, 3, UP},
        {"far below the plane", {O, X, {0, 1, 0}, {9, 9, -9}}, 3, UP},
        {"c on the first line", {O, X, {3, 0, 0}, {4, 5, 6}}, 2, O},
        {"c = a", {O, X, O, {4, 5, 6}}, 2, UNTOUCHED},
        {"a = b", {O, O, X, {4, 5, 6}}, 2, UNTOUCHED},
        {"c = b", {O, X, X, {4, 5, 6}}, 2, O},
        {"short lines in one plane", {UP, right, left, {9, 9, 1}}, 2, UP},
        {"short lines that are skew", {UP, right, left, O}, 3, UP},
    };
    for (const auto &[name, lines, code, wantedN] : cases) {
        Triple n = UNTOUCHED;
        EXPECT_EQ(on(lines, slJudgeLineCoPlane, n.data()), code) << name;
        EXPECT_EQ(n, wantedN) << name;
    }
}

TEST(InfiniteLines, OfAPointAndAVectorCountInUnitsOfTheVector) {
    const std::tuple<const char *, Triple, Triple, int, float, float> cases[] = {
        {"crossing", {3, 4, 0}, {0, -1, 0}, 1, 3, 4},
        {"short vector", {0.5F, 0.25F, 0}, {0, 0x1p-10F, 0}, 1, 0.5F, -256},
        {"skew", {3, 4, 5}, {0, -1, 0}, -1, 3, 4},
        {"parallel: 10 times what was there", {0, 1, 0}, {-1, 0, 0}, 0, 20, 30},
        {"on one line", {5, 0, 0}, {-1, 0, 0}, SL_COINCIDENT, 20, 30},
    };
    for (const auto &[name, c, dc, code, wantedT1, wantedT2] : cases) {
        float t1 = 2, t2 = 3;
        EXPECT_EQ(on({O, X, c, dc}, slIntersectInfLines, &t1, &t2), code) << name;
        EXPECT_FLOAT_EQ(t1, wantedT1) << name;
        EXPECT_FLOAT_EQ(t2, wantedT2) << name;
    }
}

TEST(InfiniteLines, HaveFeetJoinedByTheCommonPerpendicular) {
    test::Random random(381);
    int tried = 0;
    while (tried < 2000) {
        const Pair l = {randomTriple(random, 10), randomTriple(random, 10),
                        randomTriple(random, 10), randomTriple(random, 10)};
        const Exact u = Exact(l.b) - l.a, v = Exact(l.d) - l.c, n = cross(u, v);
        if (n.length() < 0.3L * u.length() * v.length() || u.length() < 1 || v.length() < 1) {
            continue; // nearly parallel or short: the feet lie badly
        }
        ++tried;
        const auto distance = std::fabs(dot(n, Exact(l.c) - l.a)) / n.length();
        const auto [t1, t2, dist] = measure(slGetInfLinesCoPerpenticular, l);
        ASSERT_PRED2(test::isRounded, dist, distance);
        ASSERT_LT(std::fabs(on(l, slGetLineDist) - distance), 1e-5L);
        const Exact joint = Exact(l.c) - l.a - t1 * u - -t2 * v;
        ASSERT_LT(std::fabs(joint.length() - distance), 1e-4L);
        ASSERT_LT(std::fabs(dot(joint, u)) / u.length(), 1e-4L);
        ASSERT_LT(std::fabs(dot(joint, v)) / v.length(), 1e-4L);
    }
}

TEST(InfiniteLines, InOnePlaneAreMeasuredFromTheStartOfTheSecond) {
    const Pair crossing = {O, X, {3, 4, 0}, {3, 3, 0}};
    const Pair parallel = {O, {2, 0, 0}, {3, 4, 0}, {9, 4, 0}};
    EXPECT_EQ(measure(slGetInfLinesCoPerpenticular, crossing), (Answer{3, 4, 0}));
    EXPECT_EQ(measure(slGetInfLinesCoPerpenticular, parallel), (Answer{1.5F, 0, 4}));
    EXPECT_EQ(on(crossing, slGetLineDist), 0.0F);
    EXPECT_EQ(on(parallel, slGetLineDist), 4.0F);
}

// What slGetCoPlaneLineDist tells, where nothing lies within the slack of a bound.
Answer modelOfSegments(const Pair &l) {
    const Exact u = Exact(l.b) - l.a, v = Exact(l.d) - l.c, w = Exact(l.c) - l.a;
    const auto isInside = [](long double t) { return 0 <= t && t <= 1; };
    const auto t1 = cross(w, v).z / cross(u, v).z;
    const auto t2 = cross(w, u).z / cross(u, v).z;
    if (isInside(t1) && isInside(t2)) { // not so for parallel lines, which have no numbers here
        return {static_cast<float>(t1), static_cast<float>(t2), 0};
    }
    Answer best = NO_FEET;
    const auto consider = [&](const Exact &line, const Exact &arm, float atEnd, int footIndex) {
        const auto t = dot(line, line) > 0 ? dot(arm, line) / dot(line, line) : 0;
        const auto dist = static_cast<float>((arm - t * line).length());
        if (isInside(t) && dist < best[2]) {
            best = {atEnd, atEnd, dist};
            best[footIndex] = static_cast<float>(t);
        }
    };
    consider(u, w, 0, 0);
    consider(u, Exact(l.d) - l.a, 1, 0);
    consider(v, Exact(l.a) - l.c, 0, 1);
    consider(v, Exact(l.b) - l.c, 1, 1);
    return best;
}

TEST(Segments, AreMeasuredAsTheModelDoes) {
    test::Random random(382);
    const auto place = [&] { // on a small grid, so that points and distances often coincide
        return Triple{static_cast<float>(random.integer(0, 5)),
                      static_cast<float>(random.integer(0, 5)), 0};
    };
    for (int round = 0; round < 20000; ++round) {
        Pair l = {place(), place(), place(), place()};
        const Answer expected = modelOfSegments(l);
        const Answer answer = measure(slGetCoPlaneLineDist, l);
        for (std::size_t i = 0; i < 3; ++i) {
            ASSERT_FLOAT_EQ(answer[i], expected[i]) << round;
        }
        // With the second two units higher, the distance is that height alone.
        l.c[2] = l.d[2] = 2;
        if (cross(Exact(l.b) - l.a, Exact(l.d) - l.c).z != 0) {
            const float height = expected == NO_FEET ? SL_BIG : 2.0F;
            ASSERT_EQ(measure(slGetLinesCoPerpenticular, l),
                      (Answer{answer[0], answer[1], height}));
        }
    }
}

TEST(Segments, HaveSlackThatIsGreaterOnTheFirstOne) {
    // The segment along X from 0 to 1 and one along Y that meets its line at x, at a height.
    const auto crossAt = [](float x, float height = 0) {
        return Pair{O, X, {x, -1, height}, {x, 1, height}};
    };
    const auto swapped = [](const Pair &l) { return Pair{l.c, l.d, l.a, l.b}; };
    const float nearZero = -below(SL_ZERO), nearOne = below(SL_PAST_ONE);
    const float between = below(SL_PAST_ONE2);
    const std::tuple<const char *, Pair, Answer> cases[] = {
        {"-SL_ZERO on the first", crossAt(-SL_ZERO), {0, 0.5F, 0}}, // a distance that snaps
        {"less than that", crossAt(nearZero), {nearZero, 0.5F, 0}},
        {"SL_PAST_ONE2 on the first", crossAt(SL_PAST_ONE2), {1, 0.5F, SL_PAST_ONE2 - 1}},
        {"less than that", crossAt(between), {between, 0.5F, 0}},
        {"-SL_ZERO on the second", swapped(crossAt(-SL_ZERO)), {0.5F, 0, 0}},
        {"SL_PAST_ONE on the second", swapped(crossAt(SL_PAST_ONE)), {0.5F, 1, SL_PAST_ONE - 1}},
        {"less than that", swapped(crossAt(nearOne)), {0.5F, nearOne, 0}},
        {"no foot on either", {O, X, {2, 1, 0}, {3, 2, 0}}, NO_FEET},
    };
    for (const auto &[name, lines, answer] : cases) {
        EXPECT_EQ(measure(slGetCoPlaneLineDist, lines), answer) << name;
    }
    // Between the two bounds the crossing counts, but the height of skew segments does not.
    EXPECT_EQ(measure(slGetDifPlaneLineDist, crossAt(between, 2)), (Answer{between, 0.5F, 0}));
    EXPECT_EQ(measure(slGetDifPlaneLineDist, crossAt(nearOne, 2)), (Answer{nearOne, 0.5F, 2}));
}

// slGetCoPlaneLineDist step by step, with the distance of every foot.
Answer describedInPlane(const Pair &l) {
    float t1 = 0, t2 = 0;
    const auto isInside = [](float t, float end) { return -SL_ZERO < t && t < end; };
    if (on(l, slIntersectLines3D, &t1, &t2) == SL_LINES_CROSS && isInside(t1, SL_PAST_ONE2) &&
        isInside(t2, SL_PAST_ONE)) {
        return {t1, t2, 0};
    }
    Answer best = NO_FEET;
    const auto consider = [&](const Triple &from, const Triple &to, const Triple &end, float atEnd,
                              int footIndex) {
        float t = 0;
        const float dist = slGetPntLineDist(from.data(), to.data(), end.data(), &t);
        if (isInside(t, SL_PAST_ONE) && dist < best[2]) {
            best = {atEnd, atEnd, dist};
            best[footIndex] = t;
        }
    };
    consider(l.a, l.b, l.c, 0, 0);
    consider(l.a, l.b, l.d, 1, 0);
    consider(l.c, l.d, l.a, 0, 1);
    consider(l.c, l.d, l.b, 1, 1);
    return best;
}

// On a grid, so that distances are equal, blurred by about the tolerance, so that pairs are nearly
// flat, or by more; near the origin and far from it.
TEST(Segments, AreJudgedAndMeasuredStepByStep) {
    test::Random random(384);
    int skew = 0;
    for (int round = 0; round < 100000; ++round) {
        const float middle = random.oneIn(3) ? 2000.0F : 0.0F;
        const float blur = random.oneIn(3) ? 0.0F : random.oneIn(2) ? 4e-5F : 0.11F;
        const auto place = [&] {
            Triple p{};
            for (float &x : p) {
                x = middle + static_cast<float>(random.integer(-2, 2)) +
                    blur * static_cast<float>(random.integer(-3, 3));
            }
            if (random.oneIn(200)) {
                p[0] = random.oneIn(2) ? std::nanf("") : SL_BIG;
            }
            return p;
        };
        const Pair l = {place(), place(), place(), place()};
        Triple n{};
        Answer answer{};
        const int judgement = on(l, slJudgeLineCoPlane, n.data());
        skew += judgement == SL_LINES_SKEW ? 1 : 0;
        ASSERT_EQ(on(l, slGetLinesCoPerpenticular, &answer[0], &answer[1], &answer[2]), judgement);
        ASSERT_EQ(
            answer,
            measure(judgement == SL_LINES_SKEW ? slGetDifPlaneLineDist : slGetCoPlaneLineDist, l));
        ASSERT_EQ(measure(slGetCoPlaneLineDist, l), describedInPlane(l)) << round;
    }
    EXPECT_GT(skew, 30000);
}

TEST(LinePairs, AreMeasuredFinitelyForAnyFiniteInput) {
    test::Random random(383);
    for (int round = 0; round < 20000; ++round) {
        const Pair l = {nastyTriple(random), nastyTriple(random), nastyTriple(random),
                        nastyTriple(random)};
        Triple n = O;
        float t[4] = {};
        on(l, slJudgeLineCoPlane, n.data());
        on(l, slIntersectLines3D, &t[0], &t[1]);
        on(l, slIntersectInfLines, &t[2], &t[3]);
        ASSERT_TRUE(test::areFinite(n) && test::areFinite(t)) << round;
        ASSERT_TRUE(std::isfinite(on(l, slGetLineDist))) << round;
        ASSERT_TRUE(test::areFinite(measure(slGetInfLinesCoPerpenticular, l))) << round;
        ASSERT_TRUE(test::areFinite(measure(slGetLinesCoPerpenticular, l))) << round;
        // Parallel lines too, which these are not meant for.
        ASSERT_TRUE(test::areFinite(measure(slGetDifPlaneInfLineDist, l))) << round;
        ASSERT_TRUE(test::areFinite(measure(slGetDifPlaneLineDist, l))) << round;
    }
}

} // namespace
