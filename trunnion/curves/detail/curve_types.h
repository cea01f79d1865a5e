// What the sources of the curves ask of a curve's type, direction and points.
#pragma once

#include <cmath>

#include "trunnion/curves/touch_cur.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"

namespace trunnion::detail {

// Lines that only the host tells apart: 164 has two points, 163, 165 and 166 a third one in the
// centre.
inline constexpr int LINE_WITH_THIRD_POINT_A = 163;
inline constexpr int LINE_PLAIN = 164;
inline constexpr int LINE_WITH_THIRD_POINT_B = 165;
inline constexpr int LINE_WITH_THIRD_POINT_C = 166;
// End of the arc types for which a full circle is no point.
inline constexpr int LAST_ARC_TYPE = 162;

constexpr bool isBetween(int type, int first, int last) {
    return type >= first && type <= last;
}
constexpr bool isLineLike(int type) {
    return type == CUR_LINE || isBetween(type, LINE_WITH_THIRD_POINT_A, LINE_WITH_THIRD_POINT_C);
}
constexpr bool hasThirdPoint(int type) {
    return isLineLike(type) && type != CUR_LINE && type != LINE_PLAIN;
}

// The end of the record at which the curve starts, and the other one.
inline bool startsAtFirst(const TouchCurD &curve) {
    return isLineLike(curve.type) || curve.direction == CUR_DIR_CCW;
}
inline Tq5AxisPntCL &startOf(TouchCurD &curve) {
    return startsAtFirst(curve) ? curve.firstPoint : curve.secondPoint;
}
inline Tq5AxisPntCL &endOf(TouchCurD &curve) {
    return startsAtFirst(curve) ? curve.secondPoint : curve.firstPoint;
}
inline const Tq5AxisPntCL &startOf(const TouchCurD &curve) {
    return startsAtFirst(curve) ? curve.firstPoint : curve.secondPoint;
}
inline const Tq5AxisPntCL &endOf(const TouchCurD &curve) {
    return startsAtFirst(curve) ? curve.secondPoint : curve.firstPoint;
}

// The measure by which two points of a curve coincide: |dx| + |dy| + |dz|, not a Euclidean length.
inline double spanOf(const TouchCurD &curve) {
    const Vec3 span = load3(curve.secondPoint) - load3(curve.firstPoint);
    return std::fabs(span.x) + std::fabs(span.y) + std::fabs(span.z);
}

} // namespace trunnion::detail
