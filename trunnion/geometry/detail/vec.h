// Small vectors of doubles, so that function bodies read like the mathematics. Arithmetic is plain:
// no tolerance and no snapping. Values leave through `store` or `toFloat`, with one rounding to
// float.
#pragma once

#include <limits>

namespace trunnion::detail {

struct Vec3 {
    double x, y, z;
};

struct Vec2 {
    double x, y;
};

// Rounds to float. A finite value beyond the range of float becomes the greatest float of its sign,
// so that finite input never leaves an infinity behind; a NaN stays a NaN. Said so that each bound
// is one instruction, without a branch.
constexpr float toFloat(double value) {
    constexpr double greatest = std::numeric_limits<float>::max();
    const double fromBelow = -greatest > value ? -greatest : value;
    return static_cast<float>(greatest < fromBelow ? greatest : fromBelow);
}

// The same for loops over many values: rounding first and bringing infinities back then gives the
// same bits, with bounds on half as many of them.
inline __attribute__((always_inline)) float roundToFloat(double value) {
    constexpr float greatest = std::numeric_limits<float>::max();
    float rounded = static_cast<float>(value);
    rounded = rounded < -greatest ? -greatest : rounded;
    return rounded > greatest ? greatest : rounded;
}

constexpr Vec3 load3(const float *p) {
    return {p[0], p[1], p[2]};
}
constexpr Vec3 load3(const double *p) {
    return {p[0], p[1], p[2]};
}
constexpr Vec2 load2(const float *p) {
    return {p[0], p[1]};
}
constexpr Vec2 load2(const double *p) {
    return {p[0], p[1]};
}

constexpr void store(const Vec3 &v, float *p) {
    p[0] = toFloat(v.x);
    p[1] = toFloat(v.y);
    p[2] = toFloat(v.z);
}
constexpr void store(const Vec3 &v, double *p) {
    p[0] = v.x;
    p[1] = v.y;
    p[2] = v.z;
}
constexpr void store(const Vec2 &v, float *p) {
    p[0] = toFloat(v.x);
    p[1] = toFloat(v.y);
}
constexpr void store(const Vec2 &v, double *p) {
    p[0] = v.x;
    p[1] = v.y;
}

constexpr Vec3 operator+(const Vec3 &a, const Vec3 &b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(const Vec3 &a, const Vec3 &b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator-(const Vec3 &v) {
    return {-v.x, -v.y, -v.z};
}
constexpr Vec3 operator*(double s, const Vec3 &v) {
    return {s * v.x, s * v.y, s * v.z};
}
constexpr Vec3 operator/(const Vec3 &v, double s) {
    return {v.x / s, v.y / s, v.z / s};
}
constexpr double dot(const Vec3 &a, const Vec3 &b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3 cross(const Vec3 &a, const Vec3 &b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
constexpr double squaredLength(const Vec3 &v) {
    return dot(v, v);
}
// The point at t on the way from a (0) to b (1). Both ends are weighted, so that they are met
// exactly.
constexpr Vec3 blend(const Vec3 &a, const Vec3 &b, double t) {
    return (1.0 - t) * a + t * b;
}

constexpr Vec2 operator+(const Vec2 &a, const Vec2 &b) {
    return {a.x + b.x, a.y + b.y};
}
constexpr Vec2 operator-(const Vec2 &a, const Vec2 &b) {
    return {a.x - b.x, a.y - b.y};
}
constexpr Vec2 operator-(const Vec2 &v) {
    return {-v.x, -v.y};
}
constexpr Vec2 operator*(double s, const Vec2 &v) {
    return {s * v.x, s * v.y};
}
constexpr Vec2 operator/(const Vec2 &v, double s) {
    return {v.x / s, v.y / s};
}
constexpr double dot(const Vec2 &a, const Vec2 &b) {
    return a.x * b.x + a.y * b.y;
}
// Third component of the cross product in space.
constexpr double cross(const Vec2 &a, const Vec2 &b) {
    return a.x * b.y - a.y * b.x;
}
constexpr double squaredLength(const Vec2 &v) {
    return dot(v, v);
}

} // namespace trunnion::detail
