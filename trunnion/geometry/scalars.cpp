// Guarded scalar functions and small scalars.
#include "trunnion/geometry/scalars.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

constexpr float HUNDREDTH = std::bit_cast<float>(std::uint32_t{0x3C23D70A});

// Brings x within SL_PI_D of 0 by whole multiples of SL_PI_D, as repeated subtraction would:
// SL_PI_D has only 24 significant bits, so that each difference is exact and the remainder the
// same. A multiple itself ends at SL_PI_D with its sign, not at 0.
double reduceByPi(double x) {
    if (magnitude(x) <= SL_PI_D) {
        return x;
    }
    const double rest = std::fmod(x, SL_PI_D);
    return rest == 0.0 ? std::copysign(SL_PI_D, x) : rest;
}

// Conversion toward 0 that is defined for every value.
int truncateToInt(double x) {
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double greatest = std::numeric_limits<int>::max();
    return std::isnan(x) ? 0 : static_cast<int>(std::clamp(x, least, greatest));
}

} // namespace

float slFabs(float x) {
    return toFloat(magnitude(x));
}

double slFabs(double x) {
    return magnitude(x);
}

double slSqrt(double x) {
    return root(x);
}

double slTan(double x) {
    if (belowTolerance(x, SL_ZERO_D) || std::isinf(x)) {
        return 0.0;
    }
    const double reduced = reduceByPi(x);
    if (belowTolerance(reduced - SL_HALF_PI_D, SL_ZERO_D)) {
        return SL_BIG_D;
    }
    return std::tan(reduced);
}

double slAcos(double x) {
    return arcCosine(x);
}

double slAsin(double x) {
    if (x > SL_NEAR_ONE_D) {
        return SL_HALF_PI_D;
    }
    return x < -SL_NEAR_ONE_D ? -SL_HALF_PI_D : std::asin(x);
}

double slLog(double x) {
    return x < SL_TINY ? -SL_BIG_D : std::log(x);
}

double slAtan(double x, double y) {
    return belowTolerance(x, SL_ZERO_D) ? SL_HALF_PI_D : std::atan(y / x);
}

float slCos(float x) {
    return snapToUnits(toFloat(std::cos(static_cast<double>(x))));
}

float slSin(float x) {
    return snapToUnits(toFloat(std::sin(static_cast<double>(x))));
}

int slSign(float x) {
    if (x > SL_ZERO) {
        return 1;
    }
    return x < -SL_ZERO ? -1 : 0;
}

int slRound(float x) {
    return truncateToInt(slSign(x) * (magnitude(x) + 0.5));
}

// The cut value stays a double: one too great for an int has no decimals in a float, and keeps its
// size.
float slKeepTwoDecimal(float x) {
    const double lifted = x * 100.0 + slSign(x) * SL_ZERO_D;
    return toFloat(std::trunc(lifted) * HUNDREDTH);
}

float slMod(float a, float b) {
    const float quotient = toFloat(static_cast<double>(a) / b);
    if (withinTolerance(quotient, SL_ZERO)) {
        return toFloat(static_cast<double>(quotient) * b);
    }
    double fraction = static_cast<double>(quotient) - std::trunc(quotient);
    if (fraction < SL_ZERO) {
        fraction += 1.0;
    }
    return toFloat(fraction * b);
}

float slMinF2(float a, float b) {
    return a <= b ? a : b;
}

float slMaxF2(float a, float b) {
    return a > b ? a : b;
}

int slMinI2(int a, int b) {
    return std::min(a, b);
}

int slMaxI2(int a, int b) {
    return std::max(a, b);
}

int slFitI(int *v, int low, int high) {
    if (*v > high) {
        *v = high;
    } else if (*v < low) {
        *v = low;
    }
    return *v;
}

int slCheck(int a, int b) {
    return b != 0 ? a : 0;
}

float slAngleToRadian(float degrees) {
    return toFloat(static_cast<double>(degrees) * SL_PI * SL_ONE_OVER_180);
}

float slRadianToAngle(float radians) {
    return toFloat(static_cast<double>(radians) * SL_HALF_TURN_DEGREES * SL_ONE_OVER_PI);
}

double slGetRatio(double a, double b, double x) {
    return withinTolerance(b - a, SL_ZERO_D) ? 1.0 : clampFinite((x - a) / (b - a));
}
