// Circles, spheres and cones against lines, planes and each other.
#include "trunnion/geometry/intersections.h"

#include <algorithm>
#include <cmath>

#include "trunnion/geometry/detail/frames.h"
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/distances.h"
#include "trunnion/geometry/matrices.h"

using namespace trunnion::detail;

namespace {

double square(double x) {
    return x * x;
}

// Where two circles or spheres touch from outside: the way between the centers parted in the ratio
// of the radii.
Vec3 outerTouch(const float *c1, double r1, const float *c2, double r2) {
    const double sum = r1 + r2;
    return blend(load3(c1), load3(c2), sum == 0.0 ? 0.0 : r1 / sum);
}

// Which crossings of a line and a circle lie on the segment: the one after the foot of the center,
// and the one before it.
struct Crossings {
    bool after;
    bool before;
};

// The foot has the parameter t; the ends have these squared distances from the center.
Crossings crossingsOnSegment(double t, double square0, double square1, double squaredRadius) {
    const bool inside0 = square0 <= squaredRadius;
    const bool inside1 = square1 <= squaredRadius;
    if (t < 0.0) {
        return {inside0 && square1 >= squaredRadius, false};
    }
    if (t > 1.0) {
        return {false, inside1 && square0 >= squaredRadius};
    }
    return {!inside1, !inside0};
}

// Where slLineIntCircle puts a crossing.
struct CrossingOutput {
    float *pt;
    float *t;
    float *ang;
};

// Two circles that cross, in the frame of the line of their centers.
int crossCircles(const XYCoordSysD &frame, double r1, const float *c2, double r2, float (*out)[3]) {
    float toLocal[16];
    float local[3];
    slGenMatrixToLocal(frame, toLocal);
    slMatrix16MultiPoint3(toLocal, c2, local);
    if (!(slFabs(local[1]) < slFabs(local[0]))) {
        return SL_CIRCLES_APART;
    }
    const double x = local[0];
    const double along = (x * x + r1 * r1 - r2 * r2) / (2.0 * x);
    const double aside = slSqrt(r1 * r1 - along * along);
    const Vec3 foot = load3(frame.origin) + along * load3(frame.xAxis);
    const Vec3 half = aside * load3(frame.yAxis);
    store(foot + half, out[0]);
    store(foot - half, out[1]);
    return SL_CIRCLES_CROSS;
}

// Two circles of which one touches the other from inside, their centers being d apart.
int touchInside(const float *c1, double r1, const float *c2, double r2, double d, float (*out)[3]) {
    if (d < SL_ZERO) {
        return SL_COINCIDENT;
    }
    const Vec3 start = load3(c1);
    const Vec3 e = (load3(c2) - start) / d;
    store(start + (r1 < r2 ? -r1 : r1) * e, out[0]);
    return SL_CIRCLES_TOUCH;
}

} // namespace

int slLineIntCircle(const float *p0, const float *p1, const float *center, float r, float *pt1,
                    float *t1, float *ang1, float *pt2, float *t2, float *ang2, int *count) {
    *count = 0;
    float foot[2];
    float t = 0.0F;
    slGetLineFoot(p0, p1, center, foot, &t);
    const double r2 = square(r);
    const double h2 = slPlaneDistSqr(center, foot);
    if (h2 > r2) {
        return 0;
    }
    const Crossings found =
        crossingsOnSegment(t, slPlaneDistSqr(p0, center), slPlaneDistSqr(p1, center), r2);
    if (!found.after && !found.before) { // always so for p0 = p1, which must not be divided by
        return 1;
    }
    const double half = slSqrt((r2 - h2) / slPlaneDistSqr(p0, p1));
    const CrossingOutput outputs[] = {{pt1, t1, ang1}, {pt2, t2, ang2}};
    const auto addCrossing = [&](double s) {
        const CrossingOutput &out = outputs[(*count)++];
        store(load2(p0) + s * (load2(p1) - load2(p0)), out.pt);
        *out.t = toFloat(s);
        *out.ang = slGetCircleAng(center, out.pt, r);
    };
    if (found.after) {
        addCrossing(t + half);
    }
    if (found.before) {
        addCrossing(t - half);
    }
    return 1;
}

int slIntersectLineCircle(const float *center, float r, const float *p, const float *q,
                          float (*out)[3]) {
    Vec3 u = load3(q) - load3(p);
    if (normalize(u) == 0) {
        return SL_LINE_NO_DIRECTION;
    }
    const auto storeBoth = [&](const Vec3 &middle, double half) {
        store(middle + half * u, out[0]);
        store(middle - half * u, out[1]);
        return SL_LINE_TWO_POINTS;
    };
    XYCoordSysD frame;
    if (slGenXYCoordSys(center, p, q, &frame) == 0) {
        return storeBoth(load3(center), r);
    }
    float foot[3];
    slProjectPntToLine(p, q, center, foot);
    const double r2 = square(r);
    const double h2 = slSquareDistance3(center, foot);
    if (h2 < r2 - SL_ZERO_SQR) {
        return storeBoth(load3(foot), slSqrt(r2 - h2));
    }
    store(load3(foot), out[0]);
    return SL_LINE_ONE_POINT;
}

int slIntersectLineSphere(const float *center, float r, const float *p, const float *q,
                          float (*out)[3]) {
    return slIntersectLineCircle(center, r, p, q, out);
}

int slIntersectCircle(const float *c1, float r1, const float *c2, float r2, const float *norm,
                      float (*out)[3]) {
    XYCoordSysD frame;
    if (slGenXYCoordSysByNorm(c1, c2, norm, &frame) != 1) {
        return SL_CIRCLES_TILTED;
    }
    const double d = slDistance3(c1, c2);
    const double sum = static_cast<double>(r1) + r2;
    const double lesser = std::min(r1, r2);
    const double greater = std::max(r1, r2);
    if (d < sum - SL_ZERO && greater + SL_ZERO < lesser + d) {
        return crossCircles(frame, r1, c2, r2, out);
    }
    if (belowTolerance(d - sum, SL_ZERO)) {
        store(outerTouch(c1, r1, c2, r2), out[0]);
        return SL_CIRCLES_TOUCH;
    }
    if (belowTolerance(lesser + d - greater, SL_ZERO)) {
        return touchInside(c1, r1, c2, r2, d, out);
    }
    return SL_CIRCLES_APART;
}

int slGetShereIntersect(const float *c1, float r1, const float *c2, float r2, float *center,
                        float *normal, float *radius) {
    const double d = slDistance3(c1, c2);
    if (d > static_cast<double>(r1) + r2) {
        return SL_SECTION_NONE;
    }
    if (belowTolerance(d - r1 - r2, SL_ZERO)) {
        store(outerTouch(c1, r1, c2, r2), center);
        return SL_SECTION_POINT;
    }
    if (d == 0.0) { // one center: no circle, and no direction to put it in
        return SL_SECTION_NONE;
    }
    const Vec3 start = load3(c1);
    const Vec3 axis = (load3(c2) - start) / d;
    const double along = (square(r1) - square(r2)) / (2.0 * d) + d / 2.0;
    store(axis, normal);
    store(start + along * axis, center);
    *radius = toFloat(slSqrt(square(r1) - square(along)));
    return SL_SECTION_CIRCLE;
}

int slIntersectPlaneSphereM(const float *p, const float *n, const float *c, float r, float *center,
                            float *radius) {
    const float D = slGetPlaneEquation(p, n);
    const double d = slGetPntPlaneDist(n, D, c);
    if (d > r) {
        return SL_SECTION_NONE;
    }
    slProjectPntToPlane(n, D, c, center);
    if (belowTolerance(d - r, SL_ZERO)) {
        return SL_SECTION_POINT;
    }
    *radius = toFloat(slSqrt(square(r) - square(d)));
    return SL_SECTION_CIRCLE;
}

int slIntersectPlaneCone(const float *p, const float *n, const float *apex, const float *axis,
                         float angle, float *center, float *radius) {
    const Vec3 w = load3(apex) - load3(p);
    const double height = dot(w, load3(axis));
    if (belowTolerance(height, length(w) * SL_ZERO)) {
        store(load3(apex), center);
        return SL_SECTION_POINT;
    }
    if (height < -SL_ZERO) {
        return SL_SECTION_NONE;
    }
    const float distance = slProjectPntToPlane(n, slGetPlaneEquation(p, n), apex, center);
    *radius = toFloat(slFabs(distance) * std::tan(static_cast<double>(angle)));
    return SL_SECTION_CIRCLE;
}
