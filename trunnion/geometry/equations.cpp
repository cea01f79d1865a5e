// Quadratic equation, three linear equations, determinants of any size.
#include "trunnion/geometry/equations.h"

#include <initializer_list>
#include <vector>

#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

// A power of two that brings the greatest of `values` near 1 where a product of three could
// overflow, otherwise 1, which changes no bit of what is multiplied by it.
double scaleAgainstOverflow(std::initializer_list<double> values) {
    constexpr double safe = 1e100;
    double greatest = 0.0;
    for (const double value : values) {
        greatest = std::max(greatest, std::fabs(value));
    }
    return greatest > safe ? std::ldexp(1.0, -std::ilogb(greatest)) : 1.0;
}

int setBoth(double value, int result, double *x1, double *x2) {
    *x1 = *x2 = clampFinite(value);
    return result;
}

// b x + c = 0.
int solveLinear(double b, double c, double *x1, double *x2) {
    if (b > SL_TINY || b < -SL_TINY) {
        return setBoth(-(c / b), 1, x1, x2);
    }
    const bool always = -SL_TINY < c && c < SL_TINY;
    return setBoth(0.0, always ? 3 : 0, x1, x2);
}

// The sum for minors that fit into `scratch` of n * n floats.
double expandAlongFirstRow(float *train, int n, float *scratch) {
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        slNewTrainM(train, i, 0, n, scratch);
        const double minor = slValueOfTrainM(scratch, n - 1);
        sum += (i % 2 == 0 ? minor : -minor) * train[i];
    }
    return sum;
}

} // namespace

int slSolveEquationQuad(double a, double b, double c, double *x1, double *x2) {
    if (-SL_ZERO_D <= a && a <= SL_ZERO_D) {
        return solveLinear(b, c, x1, x2);
    }
    // Roots do not change when all coefficients are scaled.
    const double scale = scaleAgainstOverflow({a, b, c});
    const double as = a * scale;
    const double bs = b * scale;
    const double discriminant = bs * bs - 4.0 * as * (c * scale);
    const double tiny = SL_TINY * scale * scale;
    if (discriminant < -tiny) {
        return setBoth(SL_BIG_D, 0, x1, x2);
    }
    if (!(discriminant > tiny)) {
        return setBoth(-(b / (2.0 * a)), 1, x1, x2);
    }
    const double r = std::sqrt(discriminant);
    const bool opensUpward = a > SL_TINY;
    *(opensUpward ? x1 : x2) = clampFinite((-bs - r) / (2.0 * as));
    *(opensUpward ? x2 : x1) = clampFinite((r - bs) / (2.0 * as));
    return 2;
}

int slSolveEquationGroup3(const double *a, const double *b, double *x) {
    const auto determinant = [](const Vec3 *c) { return dot(c[0], cross(c[1], c[2])); };
    const double scale =
        scaleAgainstOverflow({a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8]});
    const Vec3 columns[3] = {scale * load3(a), scale * load3(a + 3), scale * load3(a + 6)};
    const double whole = determinant(columns);
    if (withinTolerance(whole / scale / scale / scale, SL_ZERO_D)) {
        return 0;
    }
    const double rightScale = scaleAgainstOverflow({b[0], b[1], b[2]});
    const Vec3 right = rightScale * load3(b);
    for (int i = 0; i < 3; ++i) {
        Vec3 replaced[3] = {columns[0], columns[1], columns[2]};
        replaced[i] = right;
        x[i] = clampFinite(determinant(replaced) / whole / rightScale * scale);
    }
    return 1;
}

void slNewTrainM(float *src, int col, int row, int n, float *dst) {
    for (int r = 0; r < n; ++r) {
        for (int c = 0; c < n; ++c, ++src) {
            if (c != col && r != row) {
                *dst++ = *src;
            }
        }
    }
}

float slValueOfTrainM(float *train, int n) {
    if (n <= 0) {
        return 0.0F;
    }
    if (n == 1) {
        return train[0];
    }
    if (n == 2) {
        return toFloat(static_cast<double>(train[0]) * train[3] -
                       static_cast<double>(train[2]) * train[1]);
    }
    // Matrices have four rows: these need no heap.
    constexpr int small = 4;
    if (n <= small) {
        float scratch[small * small];
        return toFloat(expandAlongFirstRow(train, n, scratch));
    }
    const auto count = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
    std::vector<float> scratch(count);
    return toFloat(expandAlongFirstRow(train, n, scratch.data()));
}
