// Neighbours of a bound, sentinels and random vectors for the tests of the geometry kernel.
#pragma once

#include <array>
#include <cmath>
#include <limits>

#include "tests/support/random.h"

namespace test {

// Fills outputs before a call that must leave them alone.
inline constexpr float SENTINEL = 777.0F;

using Triple = std::array<float, 3>;
using Matrix = std::array<float, 16>;

inline float above(float x) {
    return std::nextafterf(x, std::numeric_limits<float>::infinity());
}
inline float below(float x) {
    return std::nextafterf(x, -std::numeric_limits<float>::infinity());
}
inline double above(double x) {
    return std::nextafter(x, std::numeric_limits<double>::infinity());
}
inline double below(double x) {
    return std::nextafter(x, -std::numeric_limits<double>::infinity());
}

inline Triple randomTriple(Random &random, float size) {
    return {random.real(-size, size), random.real(-size, size), random.real(-size, size)};
}

// Plain model in long double.
inline double dot(const Triple &a, const Triple &b) {
    long double sum = 0.0L;
    for (std::size_t i = 0; i < 3; ++i) {
        sum += static_cast<long double>(a[i]) * b[i];
    }
    return static_cast<double>(sum);
}

// Where the matrix takes (v, w), by the definition of its layout.
inline std::array<double, 3> image(const Matrix &M, const Triple &v, float w) {
    std::array<double, 3> result{};
    for (std::size_t row = 0; row < 3; ++row) {
        const Triple elements = {M[row], M[row + 4], M[row + 8]};
        result[row] = dot(elements, v) + static_cast<double>(M[row + 12]) * w;
    }
    return result;
}

} // namespace test
