// Arc construction.
#include "trunnion/curves/arcs.h"

#include <cmath>
#include <utility>

#include "trunnion/curves/detail/curve_types.h"
#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

// Six degrees: angles that differ by less may belong to ends that nearly meet.
constexpr float NEARLY_CLOSED = 0.10471975F;
// What RegArcByStPntAndDir lets a radius fall short of half the chord.
constexpr float RADIUS_SLACK = 0.01F;
// From an arc type to its helix type.
constexpr int ARC_TO_HELIX = CUR_HELIX_XY - CUR_ARC_XY;

// A chord from a to b: the vector of its length at a right angle to it, on the side of the centre
// of an arc of less than half a turn, and its middle.
struct Chord {
    Vec2 normal;
    Vec2 middle;

    double halfLength() const { return 0.5 * root(squaredLength(normal)); }
};

// `signedValue` below 0 asks for the centre on the other side.
Chord chordOf(int direction, Vec2 a, Vec2 b, float signedValue) {
    const double side = (direction == CUR_DIR_CW) != (signedValue < 0.0F) ? -1.0 : 1.0;
    const Vec2 normal = side * Vec2{a.y - b.y, b.x - a.x};
    return {{toFloat(normal.x), toFloat(normal.y)}, 0.5 * (a + b)};
}

// The sum is a float before it is compared: a radius short by just the tolerance then reaches.
bool reaches(float r, float tolerance, float half) {
    return toFloat(std::fabs(static_cast<double>(r)) + tolerance) >= half;
}

void storeCentre(const Vec2 &centre, float *cu, float *cv) {
    *cu = toFloat(centre.x);
    *cv = toFloat(centre.y);
}

// The centre of radius r over a chord that is no point.
Vec2 centreOver(const Chord &chord, double r, double half) {
    const double along = 0.5 * root(r * r - half * half) / half;
    return chord.middle + along * chord.normal;
}

// The coordinates of an arc's plane, first and second axis, and the one across it.
struct PlaneAxes {
    int u, v, w;
};

bool planeAxesOf(int type, PlaneAxes &axes) {
    constexpr PlaneAxes table[] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}};
    if (!isBetween(type, CUR_ARC_XY, CUR_ARC_ZX)) {
        return false;
    }
    axes = table[type - CUR_ARC_XY];
    return true;
}

Vec2 inPlane(const Tq5AxisPntCL &point, const PlaneAxes &axes) {
    return {point[axes.u], point[axes.v]};
}

double angleSpan(const TouchCurD &arc) {
    return static_cast<double>(arc.secondAngle) - arc.firstAngle;
}

void raiseSecondAngle(TouchCurD &arc) {
    arc.secondAngle = toFloat(static_cast<double>(arc.secondAngle) + SL_TWO_PI);
}

void degradeToLine(TouchCurD &arc) {
    arc.type = CUR_LINE;
    if (arc.direction == CUR_DIR_CW) {
        std::swap(arc.firstPoint, arc.secondPoint);
    }
}

void storePoints(TouchCurD &curve, const Vec3 &start, const Vec3 &end, const Vec3 &centre) {
    const bool forward = curve.direction == CUR_DIR_CCW;
    store(forward ? start : end, curve.firstPoint);
    store(forward ? end : start, curve.secondPoint);
    store(centre, curve.centre);
}

float angleOf(const TouchCurD &arc, const Tq5AxisPntCL &point, const PlaneAxes &axes) {
    return slGetArcAng2(arc.centre[axes.u], arc.centre[axes.v], point[axes.u], point[axes.v],
                        arc.radius);
}

// Angles that are clearly apart: only their order is open, and an arc across the first axis whose
// two angles both read as that axis.
void settleOpenArc(TouchCurD &arc) {
    if (arc.secondAngle < arc.firstAngle) {
        raiseSecondAngle(arc);
    }
    const Tq5AxisPntCL &first = arc.firstPoint;
    const Tq5AxisPntCL &second = arc.secondPoint;
    const float apart = slDistance(first.X(), 0.0F, first.Z(), second.X(), 0.0F, second.Z());
    if (apart > SL_ZERO && arc.radius > SL_ZERO && std::fabs(angleSpan(arc)) < SL_ZERO) {
        degradeToLine(arc);
    }
}

// Angles that nearly agree: the ends and the way from one to the other decide.
void settleNearlyClosedArc(TouchCurD &arc, const PlaneAxes &axes) {
    const Vec2 first = inPlane(arc.firstPoint, axes);
    const Vec2 chord = inPlane(arc.secondPoint, axes) - first;
    const float apart = toFloat(length(chord));
    if (apart <= SL_ZERO || arc.radius <= SL_ZERO) {
        raiseSecondAngle(arc);
        return;
    }
    if (std::fabs(angleSpan(arc)) < SL_ZERO) {
        degradeToLine(arc);
        return;
    }
    const Vec2 outwards = (first - inPlane(arc.centre, axes)) / arc.radius;
    if (cross(outwards, chord / apart) < SL_ZERO) {
        raiseSecondAngle(arc);
    }
}

void settleAngles(TouchCurD &arc, const PlaneAxes &axes) {
    if (std::fabs(angleSpan(arc)) < NEARLY_CLOSED) {
        settleNearlyClosedArc(arc, axes);
    } else {
        settleOpenArc(arc);
    }
    const bool unordered = static_cast<double>(arc.firstAngle) + SL_ZERO > arc.secondAngle;
    if (arc.type == CUR_ARC_ZX && unordered) {
        raiseSecondAngle(arc);
    }
}

// An arc whose ends differ across its plane is a helix.
void settleRise(TouchCurD &arc, const PlaneAxes &axes) {
    const double rise = static_cast<double>(arc.secondPoint[axes.w]) - arc.firstPoint[axes.w];
    if (std::fabs(rise) <= SL_ZERO) {
        return;
    }
    const double span = angleSpan(arc);
    const double pitch = span == 0.0 ? 0.0 : rise * SL_TWO_PI / span;
    arc.pitch = toFloat(arc.direction == CUR_DIR_CW ? -pitch : pitch);
    arc.type += ARC_TO_HELIX;
}

} // namespace

int slCalArcCent(int direction, float ua, float va, float ub, float vb, float r, float *cu,
                 float *cv) {
    const Chord chord = chordOf(direction, {ua, va}, {ub, vb}, r);
    const float half = toFloat(chord.halfLength());
    if (!reaches(r, SL_ZERO, half)) {
        return 0;
    }
    if (half <= SL_ZERO) {
        storeCentre(Vec2{ua, va} + Vec2{r, 0.0}, cu, cv);
        return 1;
    }
    storeCentre(centreOver(chord, r, half), cu, cv);
    return 1;
}

int slCalArcCentNear(int direction, float ua, float va, float ub, float vb, float *r, float *cu,
                     float *cv, float tolerance) {
    const Chord chord = chordOf(direction, {ua, va}, {ub, vb}, *r);
    const float half = toFloat(chord.halfLength());
    if (!reaches(*r, tolerance, half)) {
        return 0;
    }
    if (!reaches(*r, SL_ZERO, half)) {
        *r = half;
    }
    if (half <= SL_ZERO) {
        *r = 0.0F;
        storeCentre({ua, va}, cu, cv);
        return 1;
    }
    storeCentre(centreOver(chord, *r, half), cu, cv);
    return 1;
}

int slCalArcCentRadius(int direction, float ua, float va, float ub, float vb, float sweep, float *r,
                       float *cu, float *cv) {
    const Chord chord = chordOf(direction, {ua, va}, {ub, vb}, sweep);
    const double half = chord.halfLength();
    if (half <= SL_ZERO) {
        return 0;
    }
    const double angle = 0.5 * sweep;
    const double sine = std::sin(angle);
    if (std::fabs(sine) <= half * SL_ZERO) {
        return 0;
    }
    const Vec2 scaled = 0.5 * chord.normal / half;
    const Vec2 normal{toFloat(scaled.x), toFloat(scaled.y)};
    const double signedRadius = half / sine;
    storeCentre(signedRadius * std::cos(angle) * normal + chord.middle, cu, cv);
    *r = toFloat(signedRadius);
    return 1;
}

int slCalArcRadiusPnt(int direction, float ua, float va, float cu, float cv, float sweep, float *r,
                      float *ub, float *vb) {
    const Vec2 centre{cu, cv};
    const Vec2 arm = Vec2{ua, va} - centre;
    const float distance = toFloat(length(arm));
    if (distance < SL_ZERO) {
        return 0;
    }
    *r = distance;
    if (std::fabs(std::sin(0.5 * sweep)) <= SL_ZERO) {
        *ub = ua;
        *vb = va;
        return 1;
    }
    const double magnitudeOfSweep = std::fabs(static_cast<double>(sweep));
    const double angle = direction == CUR_DIR_CCW ? magnitudeOfSweep : -magnitudeOfSweep;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    storeCentre(centre + Vec2{c * arm.x - s * arm.y, s * arm.x + c * arm.y}, ub, vb);
    return 1;
}

int slCalCirPnt(float *centre, float r, float *point) {
    const Vec2 middle = load2(centre);
    const Vec2 arm = load2(point) - middle;
    const double distance = length(arm);
    if (distance < SL_ZERO) {
        store(middle + Vec2{r, 0.0}, point);
        return 0;
    }
    store(middle + r / distance * arm, point);
    return 1;
}

float slGetArcAng2(float cu, float cv, float pu, float pv, float r) {
    if (r == 0.0F) {
        return 0.0F;
    }
    const Vec2 onUnitCircle = (Vec2{pu, pv} - Vec2{cu, cv}) / r;
    const double angle = slAcos(onUnitCircle.x);
    return toFloat(toFloat(onUnitCircle.y) >= 0.0F ? angle : SL_TWO_PI - angle);
}

int slSetArcPara(TouchCurD *curve, float *const start, float *const end, float *const centre,
                 float r) {
    storePoints(*curve, load3(start), load3(end), load3(centre));
    curve->radius = r;
    PlaneAxes axes{};
    if (!planeAxesOf(curve->type, axes)) {
        return 0;
    }
    curve->firstAngle = angleOf(*curve, curve->firstPoint, axes);
    curve->secondAngle = angleOf(*curve, curve->secondPoint, axes);
    if (r != 0.0F) {
        settleAngles(*curve, axes);
    }
    if (curve->type != CUR_LINE) {
        settleRise(*curve, axes);
    }
    return 1;
}

int TouchCurD::RegArcByStPntAndDir() {
    PlaneAxes axes{};
    if (!planeAxesOf(type, axes)) {
        return 2;
    }
    float start[3];
    float end[3];
    GetCurveStartPntM(start);
    GetCurveEndPntM(end);
    centre[axes.w] = firstPoint[axes.w];
    const int found =
        slCalArcCentNear(direction, start[axes.u], start[axes.v], end[axes.u], end[axes.v], &radius,
                         &centre[axes.u], &centre[axes.v], RADIUS_SLACK);
    if (found != 1) {
        return found;
    }
    slSetArcPara(this, start, end, centre, radius);
    return 1;
}
