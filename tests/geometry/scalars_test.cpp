// Constants, guarded scalars, small scalars, equations and determinants.
#include "trunnion/geometry/scalars.h"

#include <climits>
#include <tuple>
#include <vector>

#include "tests/geometry/support.h"

using namespace test;

namespace {

constexpr double HUGE_D = std::numeric_limits<double>::max();
constexpr float HUGE_F = std::numeric_limits<float>::max();

TEST(GuardedScalars, SnapExactlyAtTheirBounds) {
    using Function = double (*)(double);
    const Function fabsD = slFabs;
    const std::tuple<const char *, Function, double, double> cases[] = {
        {"fabs at the floor", fabsD, 1e-8, 0.0},
        {"fabs above the floor", fabsD, -above(1e-8), above(1e-8)},
        {"fabs of a NaN", fabsD, std::nan(""), 0.0},
        {"sqrt below the floor", slSqrt, below(1e-8), 0.0},
        {"sqrt at the floor", slSqrt, 1e-8, std::sqrt(1e-8)},
        {"sqrt negative", slSqrt, -4.0, 0.0},
        {"acos at the bound", slAcos, SL_NEAR_ONE_D, std::acos(SL_NEAR_ONE_D)},
        {"acos above", slAcos, above(SL_NEAR_ONE_D), 0.0},
        {"acos at the negative bound", slAcos, -SL_NEAR_ONE_D, std::acos(-SL_NEAR_ONE_D)},
        {"acos below", slAcos, -0.99995, SL_PI_D},
        {"acos far outside", slAcos, -HUGE_D, SL_PI_D},
        {"asin at the bound", slAsin, SL_NEAR_ONE_D, std::asin(SL_NEAR_ONE_D)},
        {"asin above", slAsin, 2.0, SL_HALF_PI_D},
        {"asin below", slAsin, -above(SL_NEAR_ONE_D), -SL_HALF_PI_D},
        {"log below the floor", slLog, below(1e-8), -SL_BIG_D},
        {"log at the floor", slLog, 1e-8, std::log(1e-8)},
        {"log negative", slLog, -1.0, -SL_BIG_D},
        {"tan below the tolerance", slTan, below(SL_ZERO_D), 0.0},
        {"tan at the tolerance", slTan, SL_ZERO_D, std::tan(SL_ZERO_D)},
        {"tan at the pole", slTan, SL_HALF_PI_D, SL_BIG_D},
        {"tan one turn after the pole", slTan, SL_HALF_PI_D + SL_PI_D, SL_BIG_D},
        {"tan at the other pole", slTan, -SL_HALF_PI_D, std::tan(-SL_HALF_PI_D)},
        {"tan just out of the pole", slTan, SL_HALF_PI_D + 1.01e-4,
         std::tan(SL_HALF_PI_D + 1.01e-4)},
        {"tan of pi is not reduced", slTan, SL_PI_D, std::tan(SL_PI_D)},
        {"tan of a multiple of pi", slTan, -3.0 * SL_PI_D, std::tan(-SL_PI_D)},
        {"tan of infinity", slTan, std::numeric_limits<double>::infinity(), 0.0},
    };
    for (const auto &[name, call, x, expected] : cases) {
        EXPECT_EQ(call(x), expected) << name;
    }
    EXPECT_EQ(slFabs(5e-9F), 0.0F);
    EXPECT_EQ(slFabs(-2e-8F), 2e-8F);
}

TEST(GuardedScalars, AtanTakesTheDenominatorFirst) {
    EXPECT_EQ(slAtan(2.0, 1.0), std::atan(0.5));
    EXPECT_EQ(slAtan(-SL_ZERO_D, -1.0), std::atan(1.0 / SL_ZERO_D));
    EXPECT_EQ(slAtan(-below(SL_ZERO_D), -1.0), SL_HALF_PI_D);
    EXPECT_EQ(slAtan(0.0, 0.0), SL_HALF_PI_D);
}

TEST(GuardedScalars, TanReducesAsRepeatedSubtraction) {
    test::Random random(31);
    for (int i = 0; i < 2000; ++i) {
        const double x = random.real(-20000.0F, 20000.0F);
        double reduced = x;
        while (std::fabs(reduced) > SL_PI_D) {
            reduced += reduced > 0.0 ? -SL_PI_D : SL_PI_D;
        }
        ASSERT_EQ(slTan(x), std::tan(reduced)) << x;
    }
    EXPECT_TRUE(std::isfinite(slTan(1e300)));
}

TEST(GuardedScalars, SineAndCosineSnapToTheUnits) {
    const float small = 9.0e-5F;
    EXPECT_EQ(slCos(0.0F), 1.0F);
    EXPECT_EQ(slCos(SL_HALF_PI), 0.0F);
    EXPECT_EQ(slCos(SL_PI), -1.0F);
    EXPECT_EQ(slSin(SL_PI), 0.0F);
    EXPECT_EQ(slSin(-SL_HALF_PI), -1.0F);
    EXPECT_EQ(slSin(small), 0.0F);
    EXPECT_EQ(slSin(-1.1e-4F), static_cast<float>(std::sin(-1.1e-4F)));
    // A cosine is nearer to 1 than 0.0001 up to 0.01414 radian.
    EXPECT_EQ(slCos(0.0141F), 1.0F);
    EXPECT_EQ(slCos(0.0142F), static_cast<float>(std::cos(static_cast<double>(0.0142F))));
}

TEST(SmallScalars, FollowTheirTables) {
    using Function = float (*)(float);
    const float ulp = std::numeric_limits<float>::epsilon();
    const Function sign = [](float x) { return static_cast<float>(slSign(x)); };
    const Function mod2 = [](float x) { return slMod(x, 2.0F); };
    const Function mod1 = [](float x) { return slMod(x, 1.0F); };
    const Function mod4 = [](float x) { return slMod(x, 4.0F); };
    const std::tuple<const char *, Function, float, float> cases[] = {
        {"sign at", sign, SL_ZERO, 0.0F},
        {"sign above", sign, above(SL_ZERO), 1.0F},
        {"sign at negative", sign, -SL_ZERO, 0.0F},
        {"sign below", sign, -above(SL_ZERO), -1.0F},
        {"two decimals lifted", slKeepTwoDecimal, 1.2299999F, 1.23F},
        {"two decimals cut", slKeepTwoDecimal, 1.239F, 1.23F},
        {"two decimals negative", slKeepTwoDecimal, -1.239F, -1.23F},
        {"two decimals tiny", slKeepTwoDecimal, 0.00005F, 0.0F},
        {"multiple", mod2, 4.0F, 2.0F},
        {"remainder", mod2, 5.0F, 1.0F},
        {"negative", mod4, -1.0F, 3.0F},
        {"fraction just below SL_ZERO", mod1, 1.0F + 838 * ulp, 1.0F + 838 * ulp},
        {"fraction just above SL_ZERO", mod1, 1.0F + 839 * ulp, 839 * ulp},
        {"zero", mod4, 0.0F, 0.0F},
        {"within tolerance of zero", mod4, -4.0F * SL_ZERO, -4.0F * SL_ZERO},
        {"quotient beyond int", mod2, 1e20F, 2.0F},
        {"radian", slAngleToRadian, 180.0F, static_cast<float>(SL_PI_D * 180.0 * SL_ONE_OVER_180)},
        {"degree", slRadianToAngle, SL_PI, static_cast<float>(SL_PI_D * 180.0 * SL_ONE_OVER_PI)},
    };
    for (const auto &[name, call, x, expected] : cases) {
        EXPECT_EQ(call(x), expected) << name;
    }
    // Too great for an int, and still about itself.
    EXPECT_FLOAT_EQ(slKeepTwoDecimal(-4e12F), -4e12F);
    EXPECT_TRUE(std::isfinite(slKeepTwoDecimal(HUGE_F)));
    EXPECT_TRUE(std::isfinite(slMod(HUGE_F, 1e-30F)));
}

TEST(SmallScalars, RoundHalvesAwayFromZeroAndSaturates) {
    const std::tuple<float, int> cases[] = {
        {2.5F, 3},        {-2.5F, -3},       {2.4999998F, 2},       {0.00005F, 0},
        {0.5F, 1},        {-0.4999F, 0},     {8388609.0F, 8388609}, {3e9F, INT_MAX},
        {-3e9F, INT_MIN}, {HUGE_F, INT_MAX}, {std::nanf(""), 0},
    };
    for (const auto &[x, expected] : cases) {
        EXPECT_EQ(slRound(x), expected) << x;
    }
}

TEST(SmallScalars, ChooseAndClamp) {
    EXPECT_EQ(slMinF2(1.0F, -2.0F), -2.0F);
    EXPECT_EQ(slMaxF2(1.0F, -2.0F), 1.0F);
    EXPECT_EQ(slMinI2(INT_MIN, 3), INT_MIN);
    EXPECT_EQ(slMaxI2(INT_MIN, 3), 3);
    EXPECT_EQ(slCheck(7, -1), 7);
    EXPECT_EQ(slCheck(7, 0), 0);
    for (const auto &[start, kept] : {std::pair{12, 9}, {-4, 2}, {5, 5}, {9, 9}, {2, 2}}) {
        int v = start;
        EXPECT_EQ(slFitI(&v, 2, 9), kept);
        EXPECT_EQ(v, kept);
    }
    EXPECT_EQ(slGetRatio(2.0, 4.0, 5.0), 1.5);
    EXPECT_EQ(slGetRatio(3.0, 3.00009, 5.0), 1.0);
    EXPECT_EQ(slGetRatio(0.0, SL_ZERO_D, 5.0), 1.0);
    EXPECT_EQ(slGetRatio(0.0, -above(SL_ZERO_D), 0.0), 0.0);
    EXPECT_TRUE(std::isfinite(slGetRatio(0.0, 1e-3, HUGE_D)));
}

TEST(QuadraticEquation, FollowsItsTable) {
    const double aTiny = SL_ZERO_D;
    const std::tuple<double, double, double, int, double, double> cases[] = {
        {0, 0, 0, 3, 0, 0},
        {0, 0, 1, 0, 0, 0},
        {0, 1e-8, below(1e-8), 3, 0, 0},
        {0, -1e-8, 1e-8, 0, 0, 0},
        {0, above(1e-8), 0, 1, -0.0, -0.0},
        {aTiny, 2, -4, 1, 2, 2},
        {-aTiny, 2, -4, 1, 2, 2},
        {1, 2, 5, 0, SL_BIG_D, SL_BIG_D},
        {1, -2, 1, 1, 1, 1},
        {1, 0, 2.5e-9, 1, -0.0, -0.0},
        {1, 0, 2.6e-9, 0, SL_BIG_D, SL_BIG_D},
        {1, 0, -2.6e-9, 2, -std::sqrt(2.6e-9), std::sqrt(2.6e-9)},
        {-1, 0, 4, 2, -2, 2},
        {2, -6, 4, 2, 1, 2},
        {1e200, 0, -4e200, 2, -2, 2},
        {-1e200, 3e200, -2e200, 2, 1, 2},
        {1e200, 1e200, 1e200, 0, SL_BIG_D, SL_BIG_D},
    };
    for (const auto &[a, b, c, result, wantedX1, wantedX2] : cases) {
        double x1 = 0.5, x2 = 0.5;
        EXPECT_EQ(slSolveEquationQuad(a, b, c, &x1, &x2), result) << a << ' ' << b << ' ' << c;
        EXPECT_DOUBLE_EQ(x1, wantedX1);
        EXPECT_DOUBLE_EQ(x2, wantedX2);
    }
    double x1 = 0.0, x2 = 0.0;
    EXPECT_EQ(slSolveEquationQuad(2 * aTiny, HUGE_D, HUGE_D, &x1, &x2), 2);
    EXPECT_TRUE(std::isfinite(x1) && std::isfinite(x2));
}

TEST(LinearEquations, AreSolvedColumnByColumn) {
    test::Random random(32);
    for (int round = 0; round < 300; ++round) {
        double a[9], wanted[3], b[3] = {};
        // The second half goes beyond where products of three would overflow.
        const double size = round < 150 ? 1.0 : 1e150;
        for (double &value : a) {
            value = size * random.real(-5.0F, 5.0F);
        }
        for (int i = 0; i < 3; ++i) {
            wanted[i] = random.real(-9.0F, 9.0F);
            for (int r = 0; r < 3; ++r) {
                b[r] += a[r + 3 * i] * wanted[i];
            }
        }
        a[0] += 20.0 * size;
        b[0] += 20.0 * size * wanted[0];
        const auto minor = [&](int p, int q) {
            return a[p] / size * a[q + 3] - a[q] / size * a[p + 3];
        };
        const double determinant = minor(1, 2) * a[6] + minor(2, 0) * a[7] + minor(0, 1) * a[8];
        double x[3] = {};
        const bool isSolved = slSolveEquationGroup3(a, b, x) == 1;
        ASSERT_TRUE(isSolved || std::fabs(determinant / size / size) < 1e-3) << determinant;
        for (int i = 0; i < 3 && isSolved; ++i) {
            ASSERT_NEAR(x[i], wanted[i], 1e-6);
        }
    }
}

TEST(LinearEquations, LeaveTheUnknownsWhereTheSystemIsSingular) {
    const double b[3] = {1.0, 2.0, 3.0};
    for (const auto &[corner, result] : {std::pair{SL_ZERO_D, 0}, {above(SL_ZERO_D), 1}}) {
        const double a[9] = {1, 0, 0, 0, 1, 0, 0, 0, corner};
        double x[3] = {7.0, 7.0, 7.0};
        EXPECT_EQ(slSolveEquationGroup3(a, b, x), result);
        EXPECT_EQ(x[0], result == 0 ? 7.0 : 1.0);
        EXPECT_EQ(x[2], result == 0 ? 7.0 : 3.0 / corner);
    }
}

TEST(Trains, GiveMinorsAndDeterminants) {
    float train[9] = {1, 2, 3, 4, 5, 6, 7, 8, 10}, minor[5] = {0, 0, 0, 0, test::SENTINEL};
    slNewTrainM(train, 1, 2, 3, minor);
    const std::vector<float> expected = {1, 3, 4, 6, test::SENTINEL};
    EXPECT_EQ(std::vector<float>(minor, minor + 5), expected);

    float six[36] = {};
    for (int i = 0; i < 6; ++i) {
        six[6 * i + (i + 1) % 6] = static_cast<float>(i + 1);
    }
    EXPECT_EQ(slValueOfTrainM(train, 3), -3.0F);
    EXPECT_EQ(slValueOfTrainM(train, 2), 1.0F * 4.0F - 3.0F * 2.0F);
    EXPECT_EQ(slValueOfTrainM(six, 6), -720.0F);
    EXPECT_EQ(slValueOfTrainM(train, 1), 1.0F);
    EXPECT_EQ(slValueOfTrainM(train, 0), 0.0F);
    EXPECT_EQ(slValueOfTrainM(nullptr, -3), 0.0F);
}

} // namespace
