// Intersection, clipping, offset and placement of curves.
#include "trunnion/curves/curve_cuts.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "trunnion/curves/detail/curve_types.h"
#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

constexpr int X = 0;
constexpr int Z = 2;

// Three quarters of a turn, where a plane of constant x touches the circle below its centre.
constexpr float THREE_HALF_PI = std::bit_cast<float>(std::uint32_t{0x4096CBE4});

// What the search for a constant x and for a constant z differ in.
struct PlaneKind {
    int axis;          // the coordinate that is constant
    int other;         // the other one of the z-x plane
    double crossing;   // the ends of a line lie on both sides below this product
    double touchAbove; // angle at which a plane touches the circle, from the centre upwards
    double touchBelow; // and below it
};
constexpr PlaneKind CONSTANT_X{X, Z, -SL_TINY, SL_HALF_PI, THREE_HALF_PI};
constexpr PlaneKind CONSTANT_Z{Z, X, -static_cast<double>(SL_ZERO), 0.0, SL_PI};

// The results as they are found.
struct Hits {
    float (*rows)[3];
    int count = 0;

    void add(const Vec3 &point) { store(point, rows[count++]); }
    void add(const Vec3 &point, double parameter) {
        rows[2][count] = toFloat(parameter);
        add(point);
    }
};

bool isNearer(double value, double station) {
    return std::fabs(value - station) < SL_ZERO;
}

// `point` with one coordinate put onto the plane.
Vec3 ontoPlane(const float *point, const PlaneKind &plane, float station) {
    float moved[3] = {point[0], point[1], point[2]};
    moved[plane.axis] = station;
    return load3(moved);
}

// The coordinate `other` of the line where its coordinate `axis` is `station`; the ends differ
// there.
double interpolate(const TouchCurD &line, int axis, int other, double station) {
    const double from = line.firstPoint[axis];
    const double to = line.secondPoint[axis];
    const double first = line.firstPoint[other];
    const double span = line.secondPoint[other] - first;
    return first + span * (station - from) / (to - from);
}

// Product of the signed distances of the ends from a station.
double sidesOf(const TouchCurD &line, int axis, double station) {
    return (line.firstPoint[axis] - station) * (line.secondPoint[axis] - station);
}

void findOnLine(const TouchCurD &line, const PlaneKind &plane, float station, Hits &hits) {
    if (isNearer(line.firstPoint[plane.axis], station)) {
        hits.add(ontoPlane(line.firstPoint, plane, station), 0.0);
    } else if (isNearer(line.secondPoint[plane.axis], station)) {
        hits.add(ontoPlane(line.secondPoint, plane, station), 1.0);
    } else if (sidesOf(line, plane.axis, station) < plane.crossing) {
        float crossing[3] = {0.0F, line.firstPoint.Y(), 0.0F};
        crossing[plane.other] = toFloat(interpolate(line, plane.axis, plane.other, station));
        hits.add(ontoPlane(crossing, plane, station));
    }
}

// The angles of an arc, with a slack of SL_ZERO at both ends.
struct AngleRange {
    double low;
    double high;

    // Brings t into the range by at most one turn up; false where it is outside.
    bool bring(double &t) const {
        const double turned = t + SL_TWO_PI;
        if (low < t && t < high) {
            return true;
        }
        t = turned;
        return low < turned && turned < high;
    }
};

// Puts the angles in order in the record, and answers their range.
AngleRange orderedRange(TouchCurD &arc) {
    if (static_cast<double>(arc.firstAngle) - SL_ZERO > arc.secondAngle) {
        arc.secondAngle = toFloat(static_cast<double>(arc.secondAngle) + SL_TWO_PI);
    }
    return {toFloat(static_cast<double>(arc.firstAngle) - SL_ZERO),
            static_cast<double>(arc.secondAngle) + SL_ZERO};
}

Vec3 pointAt(const TouchCurD &arc, double t) {
    const double radius = arc.radius;
    return load3(arc.centre) + radius * Vec3{std::sin(t), 0.0, std::cos(t)};
}

// The two angles at which a circle is cut, ascending within a turn; `s` is the distance of the
// plane from the centre by the radius.
struct Candidates {
    double first;
    double second;
};

Candidates candidatesOf(const PlaneKind &plane, float s) {
    if (plane.axis == Z) {
        const double f = slAcos(s);
        return {f, SL_TWO_PI - f};
    }
    const double f = SL_HALF_PI - slAcos(std::fabs(s));
    if (s >= 0.0F) {
        return {f, SL_PI - f};
    }
    return {SL_TWO_PI - (SL_PI - f), SL_TWO_PI - f};
}

void findOnArc(TouchCurD &arc, const PlaneKind &plane, float station, Hits &hits) {
    if (arc.radius == 0.0F) {
        return;
    }
    const AngleRange range = orderedRange(arc);
    const double offset = static_cast<double>(station) - arc.centre[plane.axis];
    const float s = toFloat(offset / arc.radius);
    const float size = std::fabs(s);
    if (size > SL_NEAR_ONE && size < SL_PAST_ONE) {
        double t = offset >= 0.0 ? plane.touchAbove : plane.touchBelow;
        if (range.bring(t)) {
            hits.add(ontoPlane(arc.centre, plane, station), t);
        }
        return;
    }
    if (size >= SL_NEAR_ONE) {
        return;
    }
    const Candidates candidates = candidatesOf(plane, s);
    for (const double candidate : {candidates.first, candidates.second}) {
        double t = candidate;
        if (range.bring(t)) {
            hits.add(pointAt(arc, candidate), t);
        }
    }
}

int findOn(TouchCurD &curve, const PlaneKind &plane, float station, float (*rows)[3], int *count) {
    Hits hits{rows};
    if (curve.type == CUR_LINE) {
        findOnLine(curve, plane, station, hits);
    } else if (curve.type == CUR_ARC_ZX) {
        findOnArc(curve, plane, station, hits);
    }
    *count = hits.count;
    return 1;
}

// The part of `side` at a right angle to the line, normalised; false where there is none.
bool sidewaysOf(const TouchCurD &line, const float *side, Vec3 &sideways) {
    double along[3];
    slGetNormalVectBtPnts(line.firstPoint, line.secondPoint, along);
    const Vec3 t = load3(along);
    sideways = cross(cross(t, load3(side)), t);
    return normalize(sideways) == 1;
}

void offsetLine(TouchCurD &line, float distance, const float *side) {
    Vec3 sideways{};
    if (!sidewaysOf(line, side, sideways)) {
        return;
    }
    float step[3];
    store(static_cast<double>(distance) * sideways, step);
    line.MoveM(step);
}

void offsetArc(TouchCurD &arc, float distance, const float *side) {
    if (arc.radius == 0.0F) {
        return;
    }
    const Tq5AxisPntCL firstArm = arc.firstPoint - arc.centre;
    const Tq5AxisPntCL secondArm = arc.secondPoint - arc.centre;
    const int outwards = slSign(toFloat(dot(load3(firstArm), load3(side))));
    const double growth = static_cast<double>(outwards) * distance;
    const float share = toFloat(growth / arc.radius);
    arc.firstPoint.AddM(firstArm, share);
    arc.secondPoint.AddM(secondArm, share);
    arc.radius = toFloat(arc.radius + growth);
}

void moveLineTo(TouchCurD &line, int mode, const Vec3 &start, float *end) {
    if (mode == LINE_MOVES_AS_A_WHOLE) {
        const Vec3 displacement = start - load3(line.firstPoint);
        store(load3(line.secondPoint) + displacement, line.secondPoint);
    }
    if (spanOf(line) < SL_ZERO) {
        store(start, line.secondPoint);
    }
    store(start, line.firstPoint);
    store(load3(line.secondPoint), end);
}

void moveArcTo(TouchCurD &arc, const Vec3 &start, float *end) {
    const Vec3 displacement = start - load3(startOf(arc));
    store(load3(arc.centre) + displacement, arc.centre);
    store(load3(endOf(arc)) + displacement, endOf(arc));
    store(start, startOf(arc));
    arc.GetCurveEndPntM(end);
}

} // namespace

int slFindIntPnt(TouchCurD *curve, float x, float (*hits)[3], int *count) {
    return findOn(*curve, CONSTANT_X, x, hits, count);
}

int slFindIntPnt(TouchCurD *curve, float z, float (*hits)[3], int *count, int /*constantZ*/) {
    return findOn(*curve, CONSTANT_Z, z, hits, count);
}

int slZxIntCur(TouchCurD *curve, float x, float z, int sign, TouchCurD *out) {
    if (curve->type != CUR_LINE && curve->type != LINE_PLAIN) {
        return 0;
    }
    double zThere = curve->firstPoint.Z();
    if (sidesOf(*curve, X, x) < -SL_ZERO) {
        zThere = interpolate(*curve, X, Z, x);
    } else if (!isNearer(curve->firstPoint.X(), x)) {
        return 0;
    }
    if ((zThere - z) * sign <= SL_ZERO) {
        return 0;
    }
    out->type = curve->type;
    out->firstPoint.X() = x;
    out->firstPoint.Z() = toFloat(zThere);
    out->secondPoint.X() = curve->secondPoint.X();
    out->secondPoint.Z() = curve->secondPoint.Z();
    return 0;
}

int slTouchCurTransCoord(TouchCurD *curve, int mode, const float *const /*unused*/,
                         float *const start, float *const end) {
    const Vec3 newStart = load3(start);
    if (curve->type == CUR_LINE) {
        moveLineTo(*curve, mode, newStart, end);
        return 1;
    }
    if (isBetween(curve->type, CUR_ARC_XY, CUR_HELIX_ZX)) {
        moveArcTo(*curve, newStart, end);
        return 1;
    }
    store(newStart, end);
    return 0;
}

void TouchCurD::OffsetM(float distance, const float *const side) {
    if (type == CUR_LINE || type == LINE_PLAIN) {
        offsetLine(*this, distance, side);
    } else if (type == CUR_ARC) {
        offsetArc(*this, distance, side);
    }
}
