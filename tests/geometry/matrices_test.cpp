// Matrices: the layout, rotations and their fixed points, products, inverses, cleaning.
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/scalars.h"

#include <algorithm>
#include <tuple>

#include "tests/geometry/support.h"

using namespace test;

namespace {

constexpr double CLOSE = 2e-6;
const Matrix IDENTITY = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix ONES = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};

// What a builder writes over a matrix of sentinels.
template <typename Build, typename... Args>
Matrix made(Build build, Args... args) {
    Matrix M{};
    M.fill(SENTINEL);
    build(args..., M.data());
    return M;
}

Matrix product(const Matrix &A, const Matrix &B) {
    return made(slMultiMatrix, A.data(), B.data());
}

void expectNear(const Matrix &M, const Matrix &expected, double tolerance = CLOSE) {
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(M[i], expected[i], tolerance) << "element " << i;
    }
}

void expectImage(const Matrix &M, const Triple &from, const Triple &to, double tolerance = CLOSE) {
    const auto reached = image(M, from, 1.0F);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(reached[i], to[i], tolerance) << "component " << i;
    }
    EXPECT_NEAR(std::fabs(M[3]) + std::fabs(M[7]) + std::fabs(M[11]), 0.0, tolerance);
    EXPECT_NEAR(M[15], 1.0, tolerance);
}

Triple randomUnit(test::Random &random) {
    Triple v = randomTriple(random, 1.0F);
    slNormalize(v.data());
    return v;
}

TEST(Rotations, TurnCounterClockwiseSeenFromTheTip) {
    const float c = 0.6F, s = 0.8F, angle = std::atan2(s, c);
    using ByAngle = void (*)(float, float *);
    using ByFactors = void (*)(float, float, float *);
    const std::tuple<ByAngle, ByFactors, Triple, Triple, Triple> cases[] = {
        {slRotateByX, slRotateByXExt, {1, 0, 0}, {0, 1, 0}, {0, c, s}},
        {slRotateByY, slRotateByY, {0, 1, 0}, {0, 0, 1}, {s, 0, c}},
        {slRotateByZ, slRotateByZExt, {0, 0, 1}, {1, 0, 0}, {c, s, 0}},
    };
    for (const auto &[turnBy, byFactors, axis, from, to] : cases) {
        const Matrix byAngle = made(turnBy, angle);
        expectImage(byAngle, from, to);
        expectNear(made(byFactors, c, s), byAngle);
        expectNear(made(slGenerateRotateMatrix, axis.data(), angle), byAngle);
    }
    EXPECT_NE(made(slRotateByZ, SL_HALF_PI)[0], 0.0F) << "is not snapped";
}

TEST(Rotations, KeepTheirCentre) {
    test::Random random(41);
    for (int round = 0; round < 500; ++round) {
        const Triple p = randomTriple(random, 20.0F), v = randomUnit(random);
        const Triple tip = {p[0] + v[0], p[1] + v[1], p[2] + v[2]};
        const Matrix turn = made(slGetRotateMatrix, p.data(), v.data(), random.real(-4.0F, 4.0F));
        expectImage(turn, p, p, 4e-5);
        expectImage(turn, tip, tip, 4e-5);

        const Matrix toZ = made(slGenVectToZMatrix, p.data(), v.data());
        expectImage(toZ, p, p, 1e-5);
        expectImage(toZ, tip, {p[0], p[1], p[2] + 1.0F}, 2e-5);

        Triple flat = {v[0], v[1], SENTINEL};
        slNormalize2D(flat.data());
        const Matrix toX = made(slGenVectToXMatrix, p.data(), flat.data());
        expectImage(toX, p, p, 1e-5);
        expectImage(toX, {p[0] + flat[0], p[1] + flat[1], p[2]}, {p[0] + 1.0F, p[1], p[2]}, 2e-5);

        const Matrix scaling = made(slGenScaleMatrix, p.data(), v.data());
        expectImage(scaling, p, p, 1e-5);
        expectImage(scaling, {p[0] + 1.0F, p[1], p[2] - 2.0F},
                    {p[0] + v[0], p[1], p[2] - 2.0F * v[2]}, 2e-5);
    }
}

TEST(Rotations, IgnoreACentreThatIsNearlyTheOrigin) {
    const float half = SL_ZERO / 2.0F;
    const Triple axis = {0, 0, 1}, flat = {0.6F, 0.8F, 0};
    const Matrix about = made(slGenerateRotateMatrix, axis.data(), 2.0F);
    const Matrix toX = made(slRotateByZExt, 0.6F, -0.8F);
    for (const auto &[y, moved] :
         {std::pair{half / 2.0F, false}, {-half, false}, {above(half), true}}) {
        const Triple p = {half, y, 0};
        EXPECT_EQ(made(slGetRotateMatrix, p.data(), axis.data(), 2.0F) != about, moved);
        EXPECT_EQ(made(slGenVectToXMatrix, p.data(), flat.data()) != toX, moved);
    }
}

TEST(Rotations, ToZFromTheAxisItself) {
    const Triple p = {1, 2, 3};
    const Matrix halfTurn = {1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 0, 0, 4, 6, 1};
    for (const float z : {1.0F, 0.0F, -SL_ZERO, -above(SL_ZERO), -1.0F}) {
        const Triple v = {SL_ZERO, 0, z};
        const Matrix expected = z < -SL_ZERO ? halfTurn : IDENTITY;
        EXPECT_EQ(made(slGenVectToZMatrix, p.data(), v.data()), expected) << z;
    }
}

TEST(Products, ApplyTheRightFactorFirst) {
    const Triple step = {5, 0, 0};
    const Matrix move = made(slGenerateMoveMatrix, step.data(), 2.0F);
    const Matrix turn = made(slRotateByZExt, 0.0F, 1.0F);
    expectImage(product(move, turn), {1, 0, 0}, {10, 1, 0});
    expectImage(product(turn, move), {1, 0, 0}, {0, 11, 0});
    Matrix left = turn, right = turn;
    slSetMatrixByMulti(move.data(), left.data());
    EXPECT_EQ(left, product(move, turn));
    slSetMatrixByRightMulti(move.data(), right.data());
    EXPECT_EQ(right, product(turn, move));
}

TEST(Products, RoundEachStepOfAMatrixAndOnceForAVector) {
    // 2^24 + 1 is no float: added one by one, all ones are lost.
    Matrix A = ONES;
    A[0] = 16777216.0F;
    EXPECT_EQ(product(A, ONES)[0], 16777216.0F);
    float v[4] = {1, 1, 1, 0};
    EXPECT_EQ(slMatrix16MultiVector4(A.data(), v), 1);
    EXPECT_EQ(v[0], 16777218.0F);
    float p[3] = {1, 1, 1};
    slMatrix16MultiPoint3(A.data(), p);
    EXPECT_EQ(p[0], 16777220.0F);
}

TEST(Application, MatchesTheDefinitionInAllItsForms) {
    test::Random random(42);
    for (int round = 0; round < 300; ++round) {
        Matrix M{};
        std::generate(M.begin(), M.end(), [&random] { return random.real(-3.0F, 3.0F); });
        const Triple v = randomTriple(random, 10.0F);
        for (const float w : {0.0F, 1.0F}) {
            Triple inPlace = v, out{};
            float four[4] = {v[0], v[1], v[2], w};
            if (w == 0.0F) {
                slMatrix16MultiVector3(M.data(), inPlace.data());
                slMatrix16MultiVector3(M.data(), v.data(), out.data());
            } else {
                slMatrix16MultiPoint3(M.data(), inPlace.data());
                slMatrix16MultiPoint3(M.data(), v.data(), out.data());
            }
            slMatrix16MultiVector4(M.data(), four);
            const auto expected = image(M, v, w);
            for (std::size_t i = 0; i < 3; ++i) {
                ASSERT_NEAR(out[i], expected[i], 1e-5);
                ASSERT_EQ(inPlace[i], out[i]);
                ASSERT_EQ(four[i], out[i]);
            }
        }
        Triple flat = v;
        slMatrix16MultiPoint2(M.data(), flat.data());
        const auto expected = image(M, {v[0], v[1], 0.0F}, 1.0F);
        ASSERT_NEAR(flat[0], expected[0], 1e-5);
        ASSERT_NEAR(flat[1], expected[1], 1e-5);
        ASSERT_EQ(flat[2], v[2]);
    }
}

TEST(Application, TransposedTakesColumnsForRows) {
    const Matrix M = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    std::array<float, 4> four = {1, 10, 100, 1000};
    slMatrixTrans16MultiVector4(M.data(), four.data());
    EXPECT_EQ(four, (std::array<float, 4>{3210, 7654, 12098, 16542}));
    std::array<float, 4> three = {1, 10, 100, SENTINEL};
    slMatrixTrans16MultiVector3(M.data(), three.data());
    EXPECT_EQ(three, (std::array<float, 4>{210, 654, 1098, SENTINEL}));
}

TEST(Motions, InvertAndComeApart) {
    test::Random random(43);
    for (int round = 0; round < 300; ++round) {
        const Triple p = randomTriple(random, 10.0F), axis = randomUnit(random);
        Matrix M = made(slGetRotateMatrix, p.data(), axis.data(), random.real(-7.0F, 7.0F));
        const Matrix inverse = made(slGetInverseMotionMatrix, M.data());
        ASSERT_EQ(slCheckIndentity(product(inverse, M).data()), 1);
        expectNear(made(slInverseMatrixM, M.data()), inverse, 1e-4);

        const Matrix rotation = made(slGetRotMatrixFromMotion, M.data());
        const Matrix turnBack = made(slGetRotTransMatrixFromMotion, M.data());
        ASSERT_EQ(product(made(slGetMoveMatrixFromMotion, M.data()), rotation), M);
        ASSERT_EQ(product(made(slGetInvMvMatrixFromMotion, M.data()), M), rotation);
        expectNear(product(turnBack, rotation), IDENTITY);
        slSetMatrixByMvToOri(M.data());
        ASSERT_EQ(M, rotation);
    }
}

TEST(Motions, CompareTheirZAxes) {
    const Triple far = {9, 9, 9};
    const Matrix moved = made(slGenerateMoveMatrix, far.data(), 1.0F);
    for (const auto &[angle, sign] : {std::pair{1.0F, 1}, {2.0F, -1}, {1.5707963F, 0}}) {
        EXPECT_EQ(slGetTwoMatrixSign(moved.data(), made(slRotateByX, angle).data()), sign);
    }
}

TEST(Inverse, BoundsTheDeterminant) {
    for (const auto &[scale, result] :
         {std::pair{SL_ZERO, 1}, {-SL_ZERO, 1}, {below(SL_ZERO), 0}}) {
        Matrix M = IDENTITY;
        M[5] = scale;
        M[13] = 3.0F;
        Matrix inverse = ONES;
        EXPECT_EQ(slInverseMatrixM(M.data(), inverse.data()), result) << scale;
        if (result == 0) {
            EXPECT_EQ(inverse, ONES);
            continue;
        }
        EXPECT_FLOAT_EQ(inverse[5], 1.0F / scale);
        EXPECT_FLOAT_EQ(inverse[13], -3.0F / scale);
    }
    Matrix small = {0.04F, 0, 0, 0, 0, 0.04F, 0, 0, 0, 0, 0.04F, 0, 0, 0, 0, 1}, inverse = ONES;
    EXPECT_EQ(slInverseMatrixM(small.data(), inverse.data()), 0);
}

TEST(Inverse, MapsFourPointsOntoFour) {
    const float P[4][3] = {{1, 2, 3}, {4, 2, 3}, {1, 7, 3}, {0, 0, 9}};
    const float Q[4][3] = {{5, 5, 5}, {-1, 0, 2}, {3, 3, -8}, {6, 1, 1}};
    Matrix M{};
    EXPECT_EQ(slChangeFourPntMatrixM(P, Q, M.data()), 1);
    for (int k = 0; k < 4; ++k) {
        expectImage(M, {P[k][0], P[k][1], P[k][2]}, {Q[k][0], Q[k][1], Q[k][2]}, 1e-5);
    }
    EXPECT_EQ(slChangeFourPntMatrixM(P, P, M.data()), 1);
    EXPECT_EQ(slCheckIndentity(M.data()), 1);
    const float flat[4][3] = {{0, 0, 1}, {4, 0, 1}, {0, 4, 1}, {3, 3, 1}};
    EXPECT_EQ(slChangeFourPntMatrixM(flat, Q, M.data()), 0);
    EXPECT_TRUE(std::all_of(M.begin(), M.end(), [](float e) { return std::isfinite(e); }));
}

TEST(Cleaning, SnapsElementsOfTheBlockOnly) {
    const std::tuple<float, float> cases[] = {
        {0.99995F, 1},           {-1.00005F, -1},           {0.9F, 0.9F},
        {SL_ZERO, SL_ZERO},      {-below(SL_ZERO), 0},      {SL_NEAR_ONE, SL_NEAR_ONE},
        {above(SL_NEAR_ONE), 1}, {-below(SL_PAST_ONE), -1}, {SL_PAST_ONE, SL_PAST_ONE},
    };
    for (const auto &[element, cleaned] : cases) {
        Matrix M{};
        M.fill(element);
        slCheckMatrixError(M.data());
        for (std::size_t i = 0; i < 16; ++i) {
            const bool inBlock = i % 4 < 3 && i < 12;
            EXPECT_EQ(M[i], inBlock ? cleaned : element) << i;
        }
    }
}

TEST(Cleaning, SumsTheErrorsOfAllElements) {
    const std::tuple<std::size_t, float, int> cases[] = {
        {1, SL_IDENTITY_SUM, 1}, {14, -SL_IDENTITY_SUM, 1}, {3, above(SL_IDENTITY_SUM), 0},
        {15, 1.0015F, 1},        {15, 0.9983F, 0},          {0, -1.0F, 0}};
    for (const auto &[index, value, isIdentity] : cases) {
        Matrix M = IDENTITY;
        M[index] = value;
        EXPECT_EQ(slCheckIndentity(M.data()), isIdentity) << index;
    }
    Matrix spread = IDENTITY;
    std::for_each(spread.begin(), spread.end(), [](float &e) { e += 0.00011F; });
    EXPECT_EQ(slCheckIndentity(spread.data()), 0);
}

TEST(Cleaning, NormalizesColumns) {
    Matrix M = {3, 0, 0, 9, 4, 4, 0, 9, 9, 9, 9, 9, 5, 6, 7, 1};
    slNormalizeMatrix(M.data());
    const float r = std::sqrt(0.5F);
    const Matrix expected = {1, 0, 0, 9, r, r, 0, 9, 0, 0, 1, 9, 5, 6, 7, 1};
    expectNear(M, expected, 1e-7);
}

TEST(AngleFactors, TurnAVectorToZ) {
    test::Random random(44);
    for (int round = 0; round < 200; ++round) {
        const Triple v = randomUnit(random);
        float cosZ = 0, sinZ = 0, cosX = 0, sinX = 0;
        slGetAnglesRotToZ(v.data(), &cosZ, &sinZ, &cosX, &sinX);
        expectImage(product(made(slRotateByXExt, cosX, sinX), made(slRotateByZExt, cosZ, sinZ)), v,
                    {0, 0, 1});
    }
    for (const auto &[v, expected] : // cosZ, cosX, sinX
         {std::pair<Triple, Triple>{{SL_ZERO, 0, -0.5F}, {1, -1, 0}},
          {{0, 0, 0}, {1, 0, 0}},
          {{0, above(SL_ZERO), 3}, {1, 3, above(SL_ZERO)}}}) {
        float cosZ = 0, sinZ = SENTINEL, cosX = 0, sinX = 0;
        slGetAnglesRotToZ(v.data(), &cosZ, &sinZ, &cosX, &sinX);
        EXPECT_EQ((Triple{cosZ, cosX, sinX}), expected);
        EXPECT_EQ(sinZ, 0.0F);
    }
}

TEST(AngleFactors, MakeARightHandedFrame) {
    Triple X{}, Y{}, Z{};
    slGetAxes(0.3F, -1.2F, X.data(), Y.data(), Z.data());
    EXPECT_NEAR(test::dot(X, Y), 0.0, CLOSE);
    EXPECT_NEAR(test::dot(X, Z), 0.0, CLOSE);
    EXPECT_NEAR(X[0] * Y[1] - X[1] * Y[0], Z[2], CLOSE);
    EXPECT_FLOAT_EQ(Z[0], std::sin(-1.2F) * std::cos(0.3F));
    EXPECT_FLOAT_EQ(Y[0], std::sin(0.3F));
}

} // namespace
