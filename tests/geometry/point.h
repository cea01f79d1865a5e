// A point or vector of floats that can be handed to the kernel as it stands.
#pragma once

#include <cmath>

#include "trunnion/geometry/matrices.h"

#include "tests/geometry/support.h"

namespace test {

struct Point {
    float v[3] = {SENTINEL, SENTINEL, SENTINEL};

    operator const float *() const { return v; }
    operator float *() { return v; }
    float operator[](int i) const { return v[i]; }
    bool operator==(const Point &) const = default;
};

inline Point operator+(const Point &a, const Point &b) {
    return {{a[0] + b[0], a[1] + b[1], a[2] + b[2]}};
}
inline Point operator*(float s, const Point &p) {
    return {{s * p[0], s * p[1], s * p[2]}};
}
inline Point operator-(const Point &a, const Point &b) {
    return a + -1.0F * b;
}
inline Point cross(const Point &a, const Point &b) {
    return {{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]}};
}
inline double dot(const Point &a, const Point &b) {
    return dot(Triple{a[0], a[1], a[2]}, Triple{b[0], b[1], b[2]});
}
inline double norm(const Point &p) {
    return std::sqrt(dot(p, p));
}
inline Point unit(const Point &p) {
    return static_cast<float>(1.0 / norm(p)) * p;
}
inline Point toPoint(const Triple &p) {
    return {{p[0], p[1], p[2]}};
}
inline Point randomPoint(Random &random, float size) {
    return toPoint(randomTriple(random, size));
}

// A turn about a line near the origin.
inline Matrix randomMotion(Random &random) {
    const Point axis = unit(randomPoint(random, 1));
    Matrix M{};
    slGetRotateMatrix(randomPoint(random, 20), axis, random.real(-3, 3), M.data());
    return M;
}

} // namespace test
