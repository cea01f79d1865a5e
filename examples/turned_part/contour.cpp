#include "contour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "trunnion/curves/arcs.h"
#include "trunnion/geometry/scalars.h"

namespace {

using Point = std::array<float, 3>;

Point inSpace(const PlanePoint &p) {
    return {static_cast<float>(p.x), 0.0F, static_cast<float>(p.z)};
}

PlanePoint inPlane(const float *p) {
    return {p[2], p[0]};
}

double angleAbout(const PlanePoint &centre, const PlanePoint &p) {
    return std::atan2(p.x - centre.x, p.z - centre.z);
}

// From the start to the end in the direction of the arc: above 0, and a full turn where both are
// one point. Unlike the angles of the record it is not snapped near the axis.
double sweepOf(const TouchCurD &arc) {
    const PlanePoint centre = inPlane(arc.centre);
    const PlanePoint start = startOf(arc);
    const PlanePoint end = endOf(arc);
    constexpr double turn = 2.0 * std::numbers::pi;
    if (std::hypot(end.z - start.z, end.x - start.x) <= SL_ZERO) {
        return turn;
    }
    const double counterClockwise = angleAbout(centre, end) - angleAbout(centre, start);
    const double sweep = arc.direction == CUR_DIR_CW ? -counterClockwise : counterClockwise;
    return sweep > 0.0 ? sweep : sweep + turn;
}

// The point that stands `sweep` behind the start of an arc.
PlanePoint pointAt(const TouchCurD &arc, double sweep) {
    const PlanePoint start = startOf(arc);
    float radius = 0.0F;
    float z = 0.0F;
    float x = 0.0F;
    slCalArcRadiusPnt(arc.direction, static_cast<float>(start.z), static_cast<float>(start.x),
                      arc.centre.Z(), arc.centre.X(), static_cast<float>(sweep), &radius, &z, &x);
    return {z, x};
}

// Points between the ends of an arc, no further apart than `turn`. Where the arc is farthest out
// along an axis there is one, so that the part has its full length and diameter.
std::vector<PlanePoint> pointsInside(const TouchCurD &arc, double turn) {
    constexpr double quadrant = 0.5 * std::numbers::pi;
    const double sweep = sweepOf(arc);
    const double angle = angleAbout(inPlane(arc.centre), startOf(arc)) / quadrant;
    const double inQuadrant =
        arc.direction == CUR_DIR_CW ? angle - std::floor(angle) : std::ceil(angle) - angle;
    std::vector<PlanePoint> points;
    double from = 0.0;
    for (double stop = inQuadrant * quadrant; from < sweep; stop += quadrant) {
        const double to = std::min(stop, sweep);
        const int chords = static_cast<int>(std::ceil((to - from) / turn));
        for (int i = 1; i <= chords; ++i) {
            points.push_back(pointAt(arc, from + (to - from) * i / chords));
        }
        from = to;
    }
    points.pop_back(); // the end
    return points;
}

double bulgeOf(double radius, double sweep) {
    return radius * (1.0 - std::cos(0.5 * std::min(sweep, 2.0 * std::numbers::pi)));
}

// The given centre, moved to where it is equally far from both ends: programs round their numbers,
// so that the end lies a little off the circle.
PlanePoint centreBetween(const Move &arc) {
    const double dz = arc.to.z - arc.from.z;
    const double dx = arc.to.x - arc.from.x;
    const double squared = dz * dz + dx * dx;
    if (squared <= static_cast<double>(SL_ZERO) * SL_ZERO) {
        return arc.centre;
    }
    const double fromMiddle = ((arc.centre.z - 0.5 * (arc.from.z + arc.to.z)) * dz +
                               (arc.centre.x - 0.5 * (arc.from.x + arc.to.x)) * dx) /
                              squared;
    return {arc.centre.z - fromMiddle * dz, arc.centre.x - fromMiddle * dx};
}

TouchCurD lineOf(const Move &move) {
    Point from = inSpace(move.from);
    Point to = inSpace(move.to);
    TouchCurD line;
    slSetLine(&line, CUR_LINE, from.data(), to.data());
    return line;
}

// G2 is clockwise and G3 counter-clockwise as seen with Z to the right and X upwards, which are the
// first and the second axis of CUR_ARC_ZX.
TouchCurD arcOf(const Move &move, double tolerance) {
    TouchCurD arc;
    arc.type = CUR_ARC_ZX;
    arc.direction = move.motion == Motion::clockwise ? CUR_DIR_CW : CUR_DIR_CCW;
    const PlanePoint middle = centreBetween(move);
    const double radius = std::hypot(move.from.z - middle.z, move.from.x - middle.x);
    Point start = inSpace(move.from);
    Point end = inSpace(move.to);
    Point centre = inSpace(middle);
    const TouchCurD unset = arc;
    slSetArcPara(&arc, start.data(), end.data(), centre.data(), static_cast<float>(radius));
    if (arc.type == CUR_ARC_ZX) {
        return arc;
    }
    // Near the Z axis the angles of the library are coarse, and an arc may look flat that is not.
    TouchCurD exact = unset;
    Point &first = exact.direction == CUR_DIR_CW ? end : start;
    Point &second = exact.direction == CUR_DIR_CW ? start : end;
    const double firstAngle = angleAbout(middle, inPlane(first.data()));
    slSetArc(&exact, CUR_ARC_ZX, exact.direction, first.data(), centre.data(), second.data(),
             static_cast<float>(radius), static_cast<float>(firstAngle), 0.0F);
    const double sweep = sweepOf(exact);
    exact.secondAngle = static_cast<float>(firstAngle + sweep);
    return bulgeOf(radius, sweep) > tolerance ? exact : arc;
}

} // namespace

PlanePoint startOf(const TouchCurD &curve) {
    float start[3];
    slGetCurveStartPnt(&curve, start);
    return inPlane(start);
}

PlanePoint endOf(const TouchCurD &curve) {
    float end[3];
    slGetCurveEndPnt(&curve, end);
    return inPlane(end);
}

std::vector<Element> contourOf(const std::vector<Move> &moves, double tolerance) {
    std::vector<Element> contour;
    contour.reserve(moves.size());
    for (const Move &move : moves) {
        contour.push_back({isArc(move.motion) ? arcOf(move, tolerance) : lineOf(move), move.line});
    }
    return contour;
}

int countOf(int type, const std::vector<Element> &contour) {
    return static_cast<int>(std::count_if(
        contour.begin(), contour.end(), [type](const Element &e) { return e.curve.type == type; }));
}

double Fineness::turnAt(double radius) const {
    const double byTolerance = 2.0 * std::acos(std::max(1.0 - tolerance / radius, 0.0));
    return std::min({largestTurn, byTolerance, longestChord / radius});
}

std::vector<PlanePoint> pointsAlong(const TouchCurD &curve, const Fineness &fineness) {
    std::vector<PlanePoint> points;
    if (curve.type == CUR_ARC_ZX) {
        points = pointsInside(curve, fineness.turnAt(curve.radius));
    }
    points.push_back(endOf(curve));
    return points;
}
