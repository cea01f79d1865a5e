// Curves with a value of its own in every field, and their comparison byte by byte.
#pragma once

#include <algorithm>
#include <string>

#include "tests/geometry/support.h"
#include "trunnion/curves/touch_cur.h"

namespace test {

// The coordinates u and v of the plane of the types 154 to 156, and the one across it.
inline constexpr int PLANE_AXES[3][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}};
inline constexpr int PLANAR_ARCS[3] = {CUR_ARC_XY, CUR_ARC_YZ, CUR_ARC_ZX};
inline constexpr int DIRECTIONS[2] = {CUR_DIR_CCW, CUR_DIR_CW};

inline bool samePoint(const float *a, const float *b) {
    return std::equal(a, a + 3, b);
}
inline void setXyz(Tq5AxisPntCL &point, const float *xyz) {
    std::copy_n(xyz, 3, &point.X());
}

// Calls `visit` with every field of a curve behind type and direction, in the order of its record;
// of a point the first values only.
template <class Curve, class Visit>
void forEachRun(Curve &curve, int valuesPerPoint, Visit visit) {
    for (auto *point : {&curve.centre, &curve.firstPoint, &curve.secondPoint}) {
        visit(&(*point)[0], valuesPerPoint);
    }
    for (auto *vector : {curve.vector1, curve.vector2}) {
        visit(vector, 3);
    }
    for (auto *value : {&curve.radius, &curve.pitch, &curve.firstAngle, &curve.secondAngle}) {
        visit(value, 1);
    }
}

// A curve in which no two values agree, so that a field that was moved or left shows.
inline TouchCurD sentinelCurve(int type, int direction = CUR_DIR_CCW) {
    TouchCurD curve;
    curve.type = type;
    curve.direction = direction;
    float next = 0.0F;
    forEachRun(curve, 5, [&next](float *values, int n) {
        std::generate_n(values, n, [&next] { return ++next; });
    });
    return curve;
}

// What a binary stream holds of a curve.
inline std::string bytesOf(TouchCurD curve, int valuesPerPoint = 5) {
    std::string bytes(reinterpret_cast<const char *>(&curve.type), sizeof curve.type);
    bytes.append(reinterpret_cast<const char *>(&curve.direction), sizeof curve.direction);
    forEachRun(curve, valuesPerPoint, [&bytes](const float *values, int n) {
        bytes.append(reinterpret_cast<const char *>(values), sizeof(float) * n);
    });
    return bytes;
}

} // namespace test
