// The kernel's snapping and its guards, inline for the inner loops: what slFabs, slSqrt, slAcos and
// slNormalize compute, on values that are already doubles.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"

namespace trunnion::detail {

// slFabs; without a branch, since which sign comes is rarely foreseen.
inline double magnitude(double x) {
    const double size = std::fabs(x);
    return size > SL_TINY ? size : 0.0;
}

// slSqrt.
inline double root(double x) {
    return x < SL_TINY ? 0.0 : std::sqrt(x);
}

// slAcos.
inline double arcCosine(double x) {
    if (x > SL_NEAR_ONE_D) {
        return 0.0;
    }
    return x < -SL_NEAR_ONE_D ? SL_PI_D : std::acos(x);
}

// slFabs(value) < tolerance.
inline bool belowTolerance(double value, double tolerance) {
    return magnitude(value) < tolerance;
}

// slFabs(value) <= tolerance.
inline bool withinTolerance(double value, double tolerance) {
    return magnitude(value) <= tolerance;
}

// A double that is left of an overflow becomes the greatest double of its sign.
inline double clampFinite(double x) {
    constexpr double greatest = std::numeric_limits<double>::max();
    return std::clamp(x, -greatest, greatest);
}

// The kernel's length: 0 below 0.0001. Doubles whose squares overflow take the slow road.
inline double length(const Vec3 &v) {
    const double squared = squaredLength(v);
    return std::isfinite(squared) ? root(squared) : clampFinite(std::hypot(v.x, v.y, v.z));
}
inline double length(const Vec2 &v) {
    return length(Vec3{v.x, v.y, 0.0});
}

// At such a length a vector has no direction; NaN counts as such.
inline bool isDegenerateLength(double len) {
    return !(len > SL_ZERO_D);
}

// Divides v by its length and answers 1; a vector without direction becomes (1, 0, 0) and answers
// 0.
inline int normalize(Vec3 &v) {
    const double len = length(v);
    if (isDegenerateLength(len)) {
        v = {1.0, 0.0, 0.0};
        return 0;
    }
    v = v / len;
    return 1;
}

// v normalised, where the caller does not ask whether it had a direction.
inline Vec3 unit(Vec3 v) {
    normalize(v);
    return v;
}

// slCalAngleTwoVects of normalised vectors.
inline double signedAngle(const Vec3 &a, const Vec3 &b, const Vec3 &ref) {
    const double angle = arcCosine(dot(a, b));
    return dot(cross(a, b), ref) < 0.0 ? -angle : angle;
}

// Snaps a sine or cosine to 0, 1 and -1.
inline float snapToUnits(float w) {
    if (belowTolerance(w, SL_ZERO)) {
        return 0.0F;
    }
    if (belowTolerance(magnitude(w) - 1.0, SL_ZERO)) {
        return std::copysign(1.0F, w);
    }
    return w;
}

} // namespace trunnion::detail
