// Rectangles: standard position, bounding rectangles, pan limits.
#include "trunnion/geometry/rectangles.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <iterator>

#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/matrix.h"
#include "trunnion/geometry/intersections.h"
#include "trunnion/geometry/matrices.h"

using namespace trunnion::detail;

namespace {

void storePlane(const Vec2 &p, float *corner) {
    store(Vec3{p.x, p.y, 0.0}, corner);
}

// Plane rectangle along the axes.
void setAlongAxes(const Vec2 &low, const Vec2 &high, RectangleD *R) {
    storePlane(low, R->c0);
    storePlane({high.x, low.y}, R->c1);
    storePlane(high, R->c2);
    storePlane({low.x, high.y}, R->c3);
}

// Plane rectangle with its sides along the unit vector e and across it: from `low` to `high` along
// e and from -side to side across, measured from c.
void setAlong(const Vec2 &e, const Vec2 &c, double low, double high, double side, RectangleD *R) {
    const Vec2 across = side * Vec2{-e.y, e.x};
    storePlane(c + low * e - across, R->c0);
    storePlane(c + high * e - across, R->c1);
    storePlane(c + high * e + across, R->c2);
    storePlane(c + low * e + across, R->c3);
}

// Square along the axes about c, reaching r to each side.
void setSquare(const float *c, double r, RectangleD *R) {
    const Vec2 reach{r, r};
    setAlongAxes(load2(c) - reach, load2(c) + reach, R);
}

bool hasPlaneDirection(const float *v) {
    return !(magnitude(v[0]) + magnitude(v[1]) < SL_ZERO);
}

// Adds a shift to component `axis` of all corners.
void shift(RectangleD *Q, int axis, double by) {
    for (float *corner : {Q->c0, Q->c1, Q->c2, Q->c3}) {
        corner[axis] = toFloat(corner[axis] + by);
    }
}

// Brings the low side of Q inside that of R. The shift is what is missing, plus the tolerance.
void raiseIfBelow(const RectangleD &R, RectangleD *Q, int axis) {
    if (Q->c0[axis] < R.c0[axis]) {
        shift(Q, axis, static_cast<double>(R.c0[axis]) - Q->c0[axis] + SL_ZERO);
    }
}

void lowerIfAbove(const RectangleD &R, RectangleD *Q, int axis) {
    if (Q->c2[axis] > R.c2[axis]) {
        shift(Q, axis, static_cast<double>(R.c2[axis]) - Q->c2[axis] - SL_ZERO);
    }
}

// The angles, in quarter turns, at which an arc reaches its extremes: an arc that passes +X meets
// them one turn further on.
struct Quarters {
    int left[2];
    int right[2];
    int top[2];
    int bottom[2];
};
constexpr Quarters CCW_QUARTERS{{2, 6}, {0, 4}, {1, 5}, {3, 7}};
constexpr Quarters CW_QUARTERS{{2, -2}, {0, 4}, {1, -3}, {3, -1}};

// Whether one of two axis angles lies between `low` and `high`, with slack. The bounds are floats.
bool meets(const int (&quarters)[2], float low, float high) {
    return std::any_of(std::begin(quarters), std::end(quarters), [=](int quarter) {
        const double angle = quarter * SL_HALF_PI_D;
        return low < toFloat(angle + SL_ZERO) && high > toFloat(angle - SL_ZERO);
    });
}

// Extremes of an arc with ends u and v that covers the angles from `low` to `high`.
void setExtremes(const Quarters &at, float low, float high, const float *u, const float *v, float r,
                 float *lo, float *hi) {
    lo[0] = meets(at.left, low, high) ? -r : slMinF2(u[0], v[0]);
    hi[0] = meets(at.right, low, high) ? r : slMaxF2(u[0], v[0]);
    hi[1] = meets(at.top, low, high) ? r : slMaxF2(u[1], v[1]);
    lo[1] = meets(at.bottom, low, high) ? -r : slMinF2(u[1], v[1]);
}

// How far the plane point g may go along the pan v: as far as the boundary of S if it ends outside.
double roomFor(const RectangleD &S, const float *g, const float *v, double noLimit) {
    float end[2];
    float hit[2];
    store(load2(g) + load2(v), end);
    if (slJudgePntInRectM(S, end) != 0) {
        return noLimit;
    }
    return slGetLineSegIntersectRect(S, g, end, hit) != 0 ? slDistance2(hit, g) : 0.0;
}

// The rule of all pan limits, for the plane points of a shape.
int limitPan(const RectangleD &S, std::initializer_list<const float *> points, const float *v,
             float *out) {
    const double whole = slLength(v);
    double best = whole;
    for (const float *g : points) {
        best = std::min(best, roomFor(S, g, v, whole));
    }
    const double k = whole > 0.0 ? best / whole : 1.0;
    store(k * load3(v), out);
    return k < 1.0 ? 0 : 1;
}

// A pan v of Q, moved by M into the coordinates of the standard frame S, is limited there by
// slGetStdRectMinPanDisplace and comes back as a vector.
int limitPanInFrame(const RectangleD &S, const float *M, const RectangleD &Q, const float *v,
                    float *out) {
    float pan[3];
    float limited[3];
    float back[MATRIX_SIZE];
    slMatrix16MultiVector3(M, v, pan);
    pan[2] = 0.0F;
    const int result = slGetStdRectMinPanDisplace(S, Q, pan, limited);
    slGetInverseMotionMatrix(M, back);
    slMatrix16MultiVector3(back, limited, out);
    return result;
}

} // namespace

int slTransToStdRect(const RectangleD &R, RectangleD *S, float *M) {
    XYCoordSysD frame;
    if (slGenXYCoordSys(R.c0, R.c1, R.c3, &frame) == 0) {
        return 0;
    }
    slGenMatrixToLocal(frame, M);
    slTransRectangleByMatrix(R, M, S);
    return 1;
}

void slTransRectangleByMatrix(const RectangleD &R, const float *M, RectangleD *out) {
    slMatrix16MultiPoint3(M, R.c0, out->c0);
    slMatrix16MultiPoint3(M, R.c1, out->c1);
    slMatrix16MultiPoint3(M, R.c2, out->c2);
    slMatrix16MultiPoint3(M, R.c3, out->c3);
}

void slCorrectRectContainError(const RectangleD &R, RectangleD *Q) {
    raiseIfBelow(R, Q, 0);
    raiseIfBelow(R, Q, 1);
    lowerIfAbove(R, Q, 0);
    lowerIfAbove(R, Q, 1);
}

int slJudgePntInRectM(const RectangleD &S, const float *p) {
    const double right = static_cast<double>(S.c1[0]) + SL_ZERO;
    const double top = static_cast<double>(S.c3[1]) + SL_ZERO;
    return -SL_ZERO < p[0] && p[0] < right && -SL_ZERO < p[1] && p[1] < top ? 1 : 0;
}

int slJudgePntInRectM(const float *o, const float *size, const float *p) {
    const double right = static_cast<double>(o[0]) + size[0];
    const double top = static_cast<double>(o[1]) + size[1];
    return o[0] < p[0] && p[0] < right && o[1] < p[1] && p[1] < top ? 1 : 0;
}

void slGetCircleRectangle(const float *center, const float *p, RectangleD *R) {
    setSquare(center, slGetCircleRadius(center, p), R);
}

void slGetArcRectangle(short dir, const float *p1, const float *p2, const float *center,
                       RectangleD *R) {
    const Vec2 middle = load2(center);
    float u[3];
    float v[3];
    storePlane(load2(p1) - middle, u);
    storePlane(load2(p2) - middle, v);
    const float r = slLength(u);
    const float a1 = slGetCentralAngle(u);
    const float a2 = slGetCentralAngle(v);
    float lo[2];
    float hi[2];
    if (dir == SL_RECT_ARC_CCW) {
        slGetCCWArcRectangle(u, v, a1, a2, r, lo, hi);
    } else {
        slGetCWArcRectangle(u, v, a1, a2, r, lo, hi);
    }
    setAlongAxes(middle + load2(lo), middle + load2(hi), R);
}

void slGetCCWArcRectangle(const float *u, const float *v, float a1, float a2, float r, float *lo,
                          float *hi) {
    if (a1 > a2) {
        a2 = toFloat(static_cast<double>(a2) + SL_TWO_PI);
    }
    setExtremes(CCW_QUARTERS, a1, a2, u, v, r, lo, hi);
}

void slGetCWArcRectangle(const float *u, const float *v, float a1, float a2, float r, float *lo,
                         float *hi) {
    if (a1 < a2) {
        a2 = toFloat(static_cast<double>(a2) - SL_TWO_PI);
    }
    setExtremes(CW_QUARTERS, a2, a1, u, v, r, lo, hi);
}

void slGetSphereProjRect(const float *c, float r, const float *d, RectangleD *R) {
    if (!hasPlaneDirection(d)) {
        setSquare(c, r, R);
        return;
    }
    const Vec3 e = unit({d[0], d[1], 0.0});
    setAlong({e.x, e.y}, load2(c), -r, r, r, R);
}

// Seen from above a base is an ellipse, r across and r |v.z| along the direction of v; the other
// base is the same one h v further. The direction is not taken by slNormalize, which would turn one
// shorter than 0.0001 to +X, and a long cylinder would then stick out.
void slGetCylinderProjRect(const float *c, const float *v, float r, float h, RectangleD *R) {
    if (!hasPlaneDirection(v)) {
        setSquare(c, r, R);
        return;
    }
    const Vec2 lean = load2(v);
    const double planar = std::sqrt(squaredLength(lean));
    const double along = std::abs(static_cast<double>(r) * v[2]);
    const double reach = h * planar;
    setAlong(lean / planar, load2(c), std::min(0.0, reach) - along, std::max(0.0, reach) + along,
             std::abs(r), R);
}

void slMergeRectWithSameDir(const RectangleD &A, const RectangleD &B, RectangleD *out) {
    const Vec2 wider = (load2(B.c3) - load2(B.c0)) / 2.0 - (load2(A.c3) - load2(A.c0)) / 2.0;
    const Vec2 nearLow = load2(A.c0) - wider;
    const Vec2 nearHigh = load2(A.c3) + wider;
    storePlane(load2(B.c1), out->c1);
    storePlane(load2(B.c2), out->c2);
    storePlane(nearLow, out->c0);
    storePlane(nearHigh, out->c3);
}

int slGetStdRectMinPanDisplace(const RectangleD &S, const RectangleD &Q, const float *v,
                               float *out) {
    return limitPan(S, {Q.c0, Q.c1, Q.c2, Q.c3}, v, out);
}

int slGetRectMinPanDisplace(const RectangleD &R, const RectangleD &Q, const float *v, float *out) {
    RectangleD standard;
    float toStandard[MATRIX_SIZE];
    if (slTransToStdRect(R, &standard, toStandard) == 0) {
        std::fill_n(out, 3, 0.0F);
        return 0;
    }
    RectangleD moved;
    slTransRectangleByMatrix(Q, toStandard, &moved);
    return limitPanInFrame(standard, toStandard, moved, v, out);
}

int slGetStdRectMinPanDisp(const RectangleD &S, const float *M, const RectangleD &Q, const float *v,
                           float *out) {
    RectangleD moved;
    slTransRectangleByMatrix(Q, M, &moved);
    slCorrectRectContainError(S, &moved);
    return limitPanInFrame(S, M, moved, v, out);
}

int slCheckLineInRect(const RectangleD &S, const float *p, const float *q, const float *v,
                      float *out) {
    return limitPan(S, {p, q}, v, out);
}

int slCheckArcInRect(short dir, const RectangleD &S, const float *p1, const float *p2,
                     const float *center, const float *v, float *out) {
    RectangleD around;
    if (slDistance3(p1, p2) < SL_ZERO) {
        slGetCircleRectangle(center, p1, &around);
    } else {
        slGetArcRectangle(dir, p1, p2, center, &around);
    }
    return slGetStdRectMinPanDisplace(S, around, v, out);
}

int slGetLineSegIntersectRect(const RectangleD &S, const float *a, const float *b, float *out) {
    const float *const corners[4] = {S.c0, S.c1, S.c2, S.c3};
    for (int i = 0; i < 4; ++i) {
        const float *corner = corners[i];
        float e[3];
        float t = 0.0F;
        float s = 0.0F;
        storePlane(load2(corners[(i + 1) % 4]) - load2(corner), e);
        const double edgeLength = slLength(e);
        slNormalize(e);
        if (slIntersectLines2D(corner, e, a, b, &t, &s) == SL_RAY_CROSSES &&
            t < edgeLength + SL_ZERO) {
            store(load2(corner) + t * load2(e), out);
            return 1;
        }
    }
    return 0;
}
