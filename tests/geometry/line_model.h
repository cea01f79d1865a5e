// Plain model of vectors in long double, and coordinates that make trouble.
#pragma once

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

#include "tests/geometry/support.h"

namespace test {

struct Exact {
    long double x, y, z;
    Exact(long double first, long double second, long double third)
        : x(first), y(second), z(third) {}
    Exact(const Triple &p) : Exact(p[0], p[1], p[2]) {}

    friend Exact operator*(long double s, const Exact &v) { return {s * v.x, s * v.y, s * v.z}; }
    Exact operator-(const Exact &b) const { return {x - b.x, y - b.y, z - b.z}; }
    long double length() const { return std::sqrt(x * x + y * y + z * z); }
};

inline long double dot(const Exact &a, const Exact &b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Exact cross(const Exact &a, const Exact &b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Whether the value is the exact one rounded to float, but for the noise of doubles of about 1.
inline bool isRounded(float value, long double exact) {
    return std::fabs(value - exact) <= std::fabs(exact) * 0x1p-23L + 1e-12L;
}

// Coordinates from the ends of the range of float and around the tolerance.
inline Triple nastyTriple(Random &random) {
    constexpr float coordinates[] = {0,       0,      1,       -1,   1e-45F, 1e-30F, 1e-5F,
                                     0.0001F, 0.005F, -0.005F, 1e9F, 1e18F,  3e38F,  -3e38F};
    const auto pick = [&] { return coordinates[random.integer(0, std::size(coordinates) - 1)]; };
    return {pick(), pick(), pick()};
}

inline bool areFinite(std::span<const float> values) {
    return std::ranges::all_of(values, [](float value) { return std::isfinite(value); });
}

} // namespace test
