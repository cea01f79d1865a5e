// The arithmetic of unfolding a triangle abc over its edge ab into the plane: what it takes from
// the mesh, and the placing of c.
//
// Both are told in functions of the kernel. Between lengths that are ordinary, neither tiny nor
// huge, no guard of theirs takes hold, and the same bits are had without them.
#pragma once

#include <cmath>

#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"

namespace trunnion::detail {

// Cosine and sine of the angle at b, from ba to bc, and the length of bc.
struct CornerShape {
    float cosine;
    float sine;
    float length;
};

inline constexpr double longestOrdinary = 1e15;

// By the square of a length: it is not snapped to 0, and what is computed from it stays in the
// range of float. False for a NaN.
inline bool isOrdinary(double square) {
    return square > 2.0 * SL_TINY && square < longestOrdinary * longestOrdinary;
}

// Rounds what lies in the range of float.
inline Vec3 narrowed(const Vec3 &v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

// The angle is positive about the facet normal.
inline CornerShape shapeOfAny(const float *a, const float *b, const float *c, const float *normal) {
    float toA[3];
    float toC[3];
    slVect(a, b, c, toA, toC);
    const float angle = slCalAngleTwoVects(toA, toC, normal);
    return {slCos(angle), slSin(angle), slNorm2(toC)};
}

// shapeOfAny, as fast as it can be had.
inline CornerShape shapeOf(const float *a, const float *b, const float *c, const float *normal) {
    const Vec3 toA = narrowed(load3(a) - load3(b));
    const Vec3 toC = narrowed(load3(c) - load3(b));
    const double squareA = squaredLength(toA);
    const double squareC = squaredLength(toC);
    if (!isOrdinary(squareA) || !isOrdinary(squareC)) {
        return shapeOfAny(a, b, c, normal);
    }
    const double lengthC = std::sqrt(squareC);
    const double angle = static_cast<float>(
        signedAngle(narrowed(toA / std::sqrt(squareA)), narrowed(toC / lengthC), load3(normal)));
    // Side by side, so that the compiler asks for both in one call.
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return {snapToUnits(static_cast<float>(cosine)), snapToUnits(static_cast<float>(sine)),
            static_cast<float>(lengthC)};
}

// Where c comes, with the direction from b to a.
inline Vec2 unfolded(const CornerShape &corner, const Vec2 &b, const Vec2 &along) {
    const Vec2 across{-along.y, along.x};
    const Vec2 toward = corner.cosine * along + corner.sine * across;
    return b + corner.length * toward;
}

// Places c beside the placed points a and b. Where these coincide to slDistance2, the direction
// from b to a is that of the first axis.
inline void placeAny(const CornerShape &corner, const float *a, const float *b, float *c) {
    const double distance = slDistance2(b, a);
    const Vec2 along = distance > 0.0 ? (load2(a) - load2(b)) / distance : Vec2{1.0, 0.0};
    store(unfolded(corner, load2(b), along), c);
}

// placeAny, as fast as it can be had.
inline void place(const CornerShape &corner, const float *a, const float *b, float *c) {
    const Vec2 line = load2(a) - load2(b);
    const double square = squaredLength(line);
    if (!isOrdinary(square) || !(corner.length < longestOrdinary)) {
        placeAny(corner, a, b, c);
        return;
    }
    const double distance = static_cast<float>(std::sqrt(square));
    const Vec2 placed = unfolded(corner, load2(b), line / distance);
    c[0] = static_cast<float>(placed.x);
    c[1] = static_cast<float>(placed.y);
}

} // namespace trunnion::detail
