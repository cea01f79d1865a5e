// The curve record: its ends, its stream form and the operations that move, reverse and mirror it.
#include "trunnion/curves/touch_cur.h"

#include <algorithm>
#include <utility>

#include "trunnion/curves/detail/curve_types.h"
#include "trunnion/persistence/stream.h"

using namespace trunnion::detail;

namespace {

// First version whose records hold all five coordinates of a point.
constexpr int FIVE_AXIS_VERSION = 820;

void copyXyz(const float *from, float *to) {
    std::copy_n(from, 3, to);
}

void readPoint(Tq5AxisPntCL &point, TqIOCL *stream, int version) {
    if (version >= FIVE_AXIS_VERSION) {
        point.ReadM(stream);
    } else {
        stream->InputPoint3DM(point);
    }
}

int opposite(int direction) {
    switch (direction) {
    case CUR_DIR_CCW:
        return CUR_DIR_CW;
    case CUR_DIR_CW:
        return CUR_DIR_CCW;
    default:
        return direction;
    }
}

// The coordinate that the mirror planes 0, 1 and 2 turn round; -1 for any other plane.
int mirroredAxis(int plane) {
    constexpr int axes[] = {2, 0, 1};
    return isBetween(plane, 0, 2) ? axes[plane] : -1;
}

float mirrored(float coordinate, float mirror) {
    return toFloat(2.0 * mirror - coordinate);
}

void addTurn(float &angle) {
    angle = toFloat(static_cast<double>(angle) + SL_TWO_PI);
}

void mirrorAngle(float &angle, int plane) {
    if (plane == 1) {
        angle = toFloat(static_cast<double>(SL_TWO_PI) - angle);
    } else {
        slMirrorAngleAboutVerticalAxis(&angle);
    }
}

// Puts mirrored angles back in the order of their direction, and above 0.
void orderAngles(TouchCurD &arc) {
    if (arc.direction == CUR_DIR_CCW && arc.firstAngle > arc.secondAngle) {
        addTurn(arc.secondAngle);
    } else if (arc.direction == CUR_DIR_CW && arc.firstAngle < arc.secondAngle) {
        addTurn(arc.firstAngle);
    }
    if (arc.firstAngle < 0.0F || arc.secondAngle < 0.0F) {
        addTurn(arc.firstAngle);
        addTurn(arc.secondAngle);
    }
}

// Moves one end, unless the curve is a point: then both.
int setEnd(TouchCurD &curve, Tq5AxisPntCL &end, const float *point) {
    if (spanOf(curve) >= SL_ZERO) {
        copyXyz(point, end);
        return 1;
    }
    copyXyz(point, curve.firstPoint);
    copyXyz(point, curve.secondPoint);
    return 0;
}

} // namespace

TouchCurD::~TouchCurD() = default;

int TouchCurD::InitialM() {
    *this = TouchCurD();
    return 1;
}

int TouchCurD::IsAvailableM() const {
    return type > SL_DELETED_INT ? TAG_AVAILABLE : TAG_UNUSED;
}

void TouchCurD::DelItemM() {
    type = SL_DELETED_INT;
}

void TouchCurD::SaveM(TqIOCL *stream) const {
    stream->OutputDM(&type);
    stream->OutputDM(&direction);
    for (const Tq5AxisPntCL *point : {&centre, &firstPoint, &secondPoint}) {
        point->SaveM(stream);
    }
    stream->OutputPoint3DM(vector1);
    stream->OutputPoint3DM(vector2);
    for (const float *value : {&radius, &pitch, &firstAngle, &secondAngle}) {
        stream->OutputRM(value);
    }
}

void TouchCurD::ReadM(TqIOCL *stream, int version) {
    stream->InputDM(&type);
    stream->InputDM(&direction);
    for (Tq5AxisPntCL *point : {&centre, &firstPoint, &secondPoint}) {
        readPoint(*point, stream, version);
    }
    stream->InputPoint3DM(vector1);
    stream->InputPoint3DM(vector2);
    for (float *value : {&radius, &pitch, &firstAngle, &secondAngle}) {
        stream->InputRM(value);
    }
}

void TouchCurD::FmOutputOzkFileM(TqIOCL *stream) const {
    SaveM(stream);
}

void TouchCurD::FmInputOzkFileM(TqIOCL *stream) {
    int version = 0;
    stream->GetVersionNumM(&version);
    ReadM(stream, version);
}

void TouchCurD::MoveM(const float *const displacement) {
    const Tq5AxisPntCL step(displacement);
    firstPoint += step;
    secondPoint += step;
    if (type != CUR_LINE) {
        centre += step;
    }
}

void TouchCurD::MirrorM(const float *const point, int plane) {
    const int axis = mirroredAxis(plane);
    if (axis < 0) {
        return;
    }
    const float mirror = point != nullptr ? point[axis] : 0.0F;
    firstPoint[axis] = mirrored(firstPoint[axis], mirror);
    secondPoint[axis] = mirrored(secondPoint[axis], mirror);
    if (type != CUR_ARC) {
        return;
    }
    centre[axis] = mirrored(centre[axis], mirror);
    direction = opposite(direction);
    mirrorAngle(firstAngle, plane);
    mirrorAngle(secondAngle, plane);
    orderAngles(*this);
}

void TouchCurD::SwapDirM() {
    std::swap(firstPoint, secondPoint);
    if (type == CUR_ARC) {
        std::swap(firstAngle, secondAngle);
        direction = opposite(direction);
    }
}

int TouchCurD::IsCurvePntM() const {
    if ((secondPoint - firstPoint).IsZeroLengthM() == 0) {
        return 0;
    }
    if (isBetween(type, CUR_ARC_XY, LAST_ARC_TYPE)) {
        return std::fabs(static_cast<double>(firstAngle) - secondAngle) < SL_ZERO ? 1 : 0;
    }
    return hasThirdPoint(type) ? (centre - firstPoint).IsZeroLengthM() : 1;
}

int TouchCurD::GetCurveStartPntM(float *const point) const {
    copyXyz(startOf(*this), point);
    return 1;
}

int TouchCurD::GetCurveEndPntM(float *const point) const {
    copyXyz(endOf(*this), point);
    return 1;
}

int TouchCurD::SetCurveStartPntM(const float *const point) {
    startOf(*this) = Tq5AxisPntCL(point);
    return 1;
}

int TouchCurD::SetCurveEndPntM(const float *const point) {
    endOf(*this) = Tq5AxisPntCL(point);
    return 1;
}

int slSetLine(TouchCurD *curve, int type, float *const first, float *const second) {
    curve->type = type;
    copyXyz(first, curve->firstPoint);
    copyXyz(second, curve->secondPoint);
    return 1;
}

int slSetArc(TouchCurD *curve, int type, int direction, float *const first, float *const centre,
             float *const second, float radius, float firstAngle, float secondAngle) {
    curve->type = type;
    curve->direction = direction;
    copyXyz(first, curve->firstPoint);
    copyXyz(centre, curve->centre);
    copyXyz(second, curve->secondPoint);
    curve->radius = radius;
    curve->pitch = radius;
    curve->firstAngle = firstAngle;
    curve->secondAngle = secondAngle;
    return 1;
}

int slGetStartPnt(const TouchCurD *curve, float *const point) {
    return curve->GetCurveStartPntM(point);
}

int slGetCurveStartPnt(const TouchCurD *curve, float *const point) {
    return slGetStartPnt(curve, point);
}

int slGetCurveEndPnt(const TouchCurD *curve, float *const point) {
    return curve->GetCurveEndPntM(point);
}

int GetCurveEndPnt(const TouchCurD *curve, float *const point) {
    return slGetCurveEndPnt(curve, point);
}

int slSetCurveStartPnt(TouchCurD *curve, const float *const point) {
    copyXyz(point, startOf(*curve));
    return 1;
}

int slSetCurveEndPnt(TouchCurD *curve, const float *const point) {
    copyXyz(point, endOf(*curve));
    return 1;
}

int slSetStartPnt(TouchCurD *curve, const float *const point) {
    return setEnd(*curve, startOf(*curve), point);
}

int slSetEndPnt(TouchCurD *curve, const float *const point) {
    return setEnd(*curve, endOf(*curve), point);
}
