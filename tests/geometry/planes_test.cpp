// Planes and frames from points, their matrices, and bounds.
#include "trunnion/geometry/matrices.h"

#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/scalars.h"
#include <tuple>
#include <vector>

#include "tests/geometry/support.h"

using namespace test;

namespace {

const Triple O = {0, 0, 0}, UNTOUCHED = {SENTINEL, SENTINEL, SENTINEL};

Triple triple(const float *p) {
    return {p[0], p[1], p[2]};
}

TEST(PlaneNormal, TellsDegenerateTriples) {
    const float side = above(SL_ZERO);
    const std::tuple<const char *, Triple, Triple, Triple, int, Triple> cases[] = {
        {"XY plane", O, {1, 0, 0}, {0, 1, 0}, 1, {0, 0, 1}},
        {"reversed", {1, 1, 1}, {1, 3, 1}, {2, 1, 1}, 1, {0, 0, -1}},
        {"equal points", O, O, {0, 1, 0}, 0, UNTOUCHED},
        {"a side of SL_ZERO", O, {1, 0, 0}, {0, SL_ZERO, 0}, 0, UNTOUCHED},
        {"a side just longer", O, {2, 0, 0}, {0, side, 0}, 1, {0, 0, 1}},
        {"on a line", O, {1, 0, 0}, {2, 0, 0}, 0, {0, 0, 0}},
        {"sine just below", O, {100, 0, 0}, {100, 0.00999F, 0}, 0, {0, 0, 100 * 0.00999F}},
        {"sine just above", O, {100, 0, 0}, {100, 0.01001F, 0}, 1, {0, 0, 1}},
        {"product that snaps", O, {0, 0.005F, 0}, {0, 0, 0.005F}, 0, {1, 0, 0}},
        {"far away", O, {1e18F, 0, 0}, {0, 1e18F, 0}, 1, {0, 0, 1}},
    };
    for (const auto &[name, a, b, c, result, wantedN] : cases) {
        Triple n = UNTOUCHED;
        EXPECT_EQ(slPlaneNormal(a.data(), b.data(), c.data(), n.data()), result) << name;
        EXPECT_EQ(n, wantedN) << name;
        float D = SENTINEL;
        slGetPlaneEquation(a.data(), b.data(), c.data(), n.data(), &D);
        EXPECT_EQ(D, result == 0 ? SENTINEL : -test::dot(wantedN, a)) << name;
    }
}

TEST(PlaneEquation, HoldsForItsPoints) {
    test::Random random(51);
    for (int round = 0; round < 500; ++round) {
        const Triple p[3] = {randomTriple(random, 10), randomTriple(random, 10),
                             randomTriple(random, 10)};
        Triple n = UNTOUCHED;
        float D = SENTINEL;
        ASSERT_EQ(slGetPlaneEquation(p[0].data(), p[1].data(), p[2].data(), n.data(), &D), 1);
        for (const Triple &point : p) {
            ASSERT_NEAR(test::dot(n, point) + D, 0.0, 1e-5);
        }
        PlaneD middle{};
        EXPECT_EQ(slGetAveragePlane(p[0].data(), p[1].data(), &middle), 1);
        const float level = slGetPlaneEquation(middle.point, middle.normal);
        ASSERT_NEAR(test::dot(p[0], triple(middle.normal)) + test::dot(p[1], triple(middle.normal)),
                    -2.0F * level, 1e-3);
        ASSERT_EQ(middle.normal[2], p[0][2] - p[1][2]);
    }
}

TEST(FourPoints, UseTheFirstThreeThatSpanAPlane) {
    const Triple a = {0, 0, 8}, x = {1, 0, 8}, y = {0, 1, 8};
    const std::tuple<const char *, Triple, Triple, Triple, int, Triple> cases[] = {
        {"in the plane", x, y, {7, 7, 8}, 1, {0, 0, 1}},
        {"off the plane", x, y, {0, 0, 9}, 0, {0, 0, 1}},
        {"fourth is the first", x, y, a, 1, {0, 0, 1}},
        {"fourth is nearly the first", x, y, {0, 0, 8.00009F}, 1, {0, 0, 1}},
        {"slope just below", x, y, {100, 0, 8.00999F}, 1, {0, 0, 1}},
        {"slope just above", x, y, {100, 0, 7.98999F}, 0, {0, 0, 1}},
        {"first three on a line", x, {2, 0, 8}, {0, 0, 11}, 1, {0, -1, 0}},
        {"all on a line", x, {2, 0, 8}, {3, 0, 8}, 0, {0, 0, 0}},
    };
    for (const auto &[name, b, c, d, result, wantedN] : cases) {
        Triple n = UNTOUCHED;
        EXPECT_EQ(slGetPlaneFourPnt(a.data(), b.data(), c.data(), d.data(), n.data()), result)
            << name;
        EXPECT_EQ(n, wantedN) << name;
    }
}

TEST(Frames, AreRightHandedWithTheThirdPointOnTheUpperSide) {
    test::Random random(52);
    for (int round = 0; round < 500; ++round) {
        const Triple o = randomTriple(random, 10), px = randomTriple(random, 10);
        Triple py = randomTriple(random, 10);
        XYCoordSysD cs{};
        ASSERT_EQ(slGenXYCoordSys(o.data(), px.data(), py.data(), &cs), 1);
        Matrix toWorld{}, toLocal{};
        slGenMatrixToWorld(cs, toWorld.data());
        slGenMatrixToLocal(cs, toLocal.data());
        Triple local = px;
        slMatrix16MultiPoint3(toLocal.data(), local.data());
        ASSERT_GT(local[0], 0.0F);
        ASSERT_NEAR(local[1], 0.0, 1e-5);
        slMatrix16MultiPoint3(toLocal.data(), py.data(), local.data());
        ASSERT_GT(local[1], 0.0F);
        ASSERT_NEAR(local[2], 0.0, 1e-5);
        slTransPntToPlane(py.data(), cs);
        ASSERT_NEAR(py[0], local[0], 2e-5);
        ASSERT_NEAR(py[1], local[1], 2e-5);
        ASSERT_EQ(py[2], 0.0F);

        slSetMatrixByMulti(toLocal.data(), toWorld.data());
        ASSERT_EQ(slCheckIndentity(toWorld.data()), 1);
        ASSERT_NEAR(cs.xAxis[1] * cs.yAxis[2] - cs.xAxis[2] * cs.yAxis[1], cs.zAxis[0], 2e-6);
    }
}

TEST(Frames, AreNotWrittenForPointsOnALine) {
    XYCoordSysD cs{};
    cs.origin[0] = SENTINEL;
    const Triple x = {1, 0, 0}, close = {0, SL_ZERO, 0}, flat = {5, 0.00049F, 0};
    for (const Triple &py : {O, x, close, flat}) {
        EXPECT_EQ(slGenXYCoordSys(O.data(), x.data(), py.data(), &cs), 0);
        EXPECT_EQ(cs.origin[0], SENTINEL);
        EXPECT_EQ(cs.zAxis[2], 0.0F);
    }
    const Triple lower = {5, -2, 0};
    EXPECT_EQ(slGenXYCoordSys(O.data(), x.data(), lower.data(), &cs), 1);
    EXPECT_EQ(triple(cs.yAxis), (Triple{0, -1, 0}));
    EXPECT_EQ(triple(cs.zAxis), (Triple{0, 0, -1}));
}

TEST(Frames, CarryDirections) {
    const Triple x = {0, 1, 0}, y = {0, 0, 1}, z = {1, 0, 0}, p = {2, 3, 5};
    Triple world{};
    slTransToWorld(x.data(), y.data(), z.data(), p.data(), world.data());
    EXPECT_EQ(world, (Triple{5, 2, 3}));
    slTransVectToPlane(world.data(), x.data(), y.data());
    EXPECT_EQ(world, (Triple{2, 3, 0}));
}

TEST(RayMatrices, MultiplyTheFactorsOfBothRays) {
    const Triple p1 = {1, 2, 3}, p2 = {4, 4, 4};
    const float c1 = 0.8F, s1 = 0.6F, e1 = 5.0F / 13.0F, f1 = 12.0F / 13.0F;
    const float c2 = 0.28F, s2 = 0.96F, e2 = -15.0F / 17.0F, f2 = 8.0F / 17.0F;
    const Triple d1 = {s1 * f1, c1 * f1, e1}, d2 = {s2 * f2, c2 * f2, e2};
    const std::vector<Triple> expected = {{c1 * c2, -s1 * s2 * e2, 0},
                                          {-s1 * e1 * s2, c1 * e1 * c2 * e2, -f1 * c2 * f2},
                                          {0, -c1 * f1 * f2, e1 * e2},
                                          {-3, -2, -1}};
    Matrix M{};
    const auto expectFactors = [&] {
        for (std::size_t i = 0; i < 16; ++i) {
            const float last = i == 15 ? 1.0F : 0.0F;
            EXPECT_NEAR(M[i], i % 4 < 3 ? expected[i / 4][i % 4] : last, 1e-6) << i;
        }
    };
    slGenMatrixToSpRadials(p1.data(), d1.data(), p2.data(), d2.data(), M.data());
    expectFactors();
    const Triple b1 = {p1[0] + 2 * d1[0], p1[1] + 2 * d1[1], p1[2] + 2 * d1[2]};
    const Triple b2 = {p2[0] + 9 * d2[0], p2[1] + 9 * d2[1], p2[2] + 9 * d2[2]};
    M.fill(SENTINEL);
    EXPECT_EQ(slGenMatrixToSpLines(p1.data(), b1.data(), p2.data(), p2.data(), M.data()), 0);
    EXPECT_EQ(slGenMatrixToSpLines(p1.data(), p1.data(), p2.data(), b2.data(), M.data()), 0);
    EXPECT_EQ(M[0], SENTINEL);
    EXPECT_EQ(slGenMatrixToSpLines(p1.data(), b1.data(), p2.data(), b2.data(), M.data()), 1);
    expectFactors();
}

TEST(Bounds, CoverBothListsAndSkipEmptyOnes) {
    const float first[2][3] = {{1, -5, 3}, {4, 2, -6}}, second[1][3] = {{-7, 0, 9}};
    Triple low{}, high{};
    slGetMinXYZ(2, first, 1, second, low.data());
    slGetMaxXYZ(2, first, 1, second, high.data());
    EXPECT_EQ(low, (Triple{-7, -5, -6}));
    EXPECT_EQ(high, (Triple{4, 2, 9}));
    slGetMinXYZ(0, nullptr, 1, second, low.data());
    slGetMaxXYZ(2, first, -1, second, high.data());
    EXPECT_EQ(low, triple(second[0]));
    EXPECT_EQ(high, (Triple{4, 2, 3}));
    slGetMinXYZ(0, nullptr, -2, nullptr, low.data());
    slGetMaxXYZ(0, nullptr, 0, nullptr, high.data());
    EXPECT_EQ(low, (Triple{SL_BIG, SL_BIG, SL_BIG}));
    EXPECT_EQ(high, (Triple{-SL_BIG, -SL_BIG, -SL_BIG}));
}

} // namespace
