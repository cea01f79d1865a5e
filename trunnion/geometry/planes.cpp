// Planes and local coordinate systems.
#include "trunnion/geometry/planes.h"

#include <algorithm>

#include "trunnion/geometry/detail/frames.h"
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/matrix.h"
#include "trunnion/geometry/matrices.h"

using namespace trunnion::detail;

namespace {

// Whether both sides are long enough to span a plane; their squared lengths count as floats.
bool areLongSides(const Vec3 &u, const Vec3 &w) {
    return toFloat(squaredLength(u)) > SL_ZERO_SQR && toFloat(squaredLength(w)) > SL_ZERO_SQR;
}

// Whether the squared sine of the angle between two sides with the given cross product is above
// SL_ZERO_SQR.
bool areSpreadSides(const Vec3 &u, const Vec3 &w, const Vec3 &product) {
    const double uu = toFloat(squaredLength(u));
    const double ww = toFloat(squaredLength(w));
    return SL_ZERO_SQR * uu * ww < squaredLength(product);
}

void setFrame(const float *origin, const Vec3 &x, const Vec3 &y, const Vec3 &z, XYCoordSysD *cs) {
    store(load3(origin), cs->origin);
    store(x, cs->xAxis);
    store(y, cs->yAxis);
    store(z, cs->zAxis);
}

// Writes the three columns and the translation of a motion, over the last row 0, 0, 0, 1.
void setMotion(const Vec3 (&columns)[3], const Vec3 &translation, float *M) {
    slSetIdentity(M);
    for (int col = 0; col < 3; ++col) {
        store(columns[col], column(M, col));
    }
    store(translation, column(M, 3));
}

// Gives `visit` every point of a list; a negative count is an empty list.
template <typename Visit>
void forEachPoint(int count, const float (*points)[3], Visit visit) {
    for (int i = 0; i < count; ++i) {
        visit(points[i]);
    }
}

} // namespace

int slPlaneNormal(const float *a, const float *b, const float *c, float *n) {
    const Vec3 u = load3(b) - load3(a);
    const Vec3 w = load3(c) - load3(a);
    if (!areLongSides(u, w)) {
        return 0;
    }
    const Vec3 product = cross(u, w);
    store(product, n);
    return areSpreadSides(u, w, product) ? slNormalize(n) : 0;
}

int slGetPlaneEquation(const float *a, const float *b, const float *c, float *n, float *D) {
    if (slPlaneNormal(a, b, c, n) == 0) {
        return 0;
    }
    *D = slGetPlaneEquation(a, n);
    return 1;
}

float slGetPlaneEquation(const float *p, const float *n) {
    return toFloat(-dot(load3(p), load3(n)));
}

int slGetPlaneFourPnt(const float *a, const float *b, const float *c, const float *d, float *n) {
    if (slPlaneNormal(a, b, c, n) == 0) {
        return slPlaneNormal(a, b, d, n);
    }
    Vec3 toFourth = load3(d) - load3(a);
    if (normalize(toFourth) == 0) {
        return 1;
    }
    return withinTolerance(dot(toFourth, load3(n)), SL_ZERO) ? 1 : 0;
}

int slGetAveragePlane(const float *p, const float *q, PlaneD *out) {
    const Vec3 first = load3(p);
    const Vec3 second = load3(q);
    store((first + second) / 2.0, out->point);
    store(first - second, out->normal);
    return 1;
}

int slGenXYCoordSys(const float *o, const float *px, const float *py, XYCoordSysD *cs) {
    const Vec3 u = load3(px) - load3(o);
    const Vec3 w = load3(py) - load3(o);
    const Vec3 product = cross(u, w);
    if (!areLongSides(u, w) || !areSpreadSides(u, w, product)) {
        return 0;
    }
    const Vec3 x = unit(u);
    const Vec3 z = unit(product);
    setFrame(o, x, unit(cross(z, x)), z, cs);
    return 1;
}

int trunnion::detail::slGenXYCoordSysByNorm(const float *p, const float *q, const float *n,
                                            XYCoordSysD *cs) {
    const Vec3 z = load3(n);
    double toward[3];
    if (slGetNormalVectBtPnts(p, q, toward) == 0) {
        float x[3];
        float y[3];
        slOthPlane(n, x, y);
        setFrame(p, load3(x), load3(y), z, cs);
        return 1;
    }
    const Vec3 x = load3(toward);
    if (!belowTolerance(dot(x, z), SL_ZERO)) {
        return FRAME_NOT_PERPENDICULAR;
    }
    setFrame(p, x, unit(cross(z, x)), z, cs);
    return 1;
}

void slGenMatrixToWorld(const XYCoordSysD &cs, float *M) {
    setMotion({load3(cs.xAxis), load3(cs.yAxis), load3(cs.zAxis)}, load3(cs.origin), M);
}

void slGenMatrixToLocal(const XYCoordSysD &cs, float *M) {
    slGenMatrixToLocal(cs.origin, cs.xAxis, cs.yAxis, cs.zAxis, M);
}

void slGenMatrixToLocal(const float *o, const float *x, const float *y, const float *z, float *M) {
    const Vec3 origin = load3(o);
    const Vec3 xAxis = load3(x);
    const Vec3 yAxis = load3(y);
    const Vec3 zAxis = load3(z);
    setMotion(
        {{xAxis.x, yAxis.x, zAxis.x}, {xAxis.y, yAxis.y, zAxis.y}, {xAxis.z, yAxis.z, zAxis.z}},
        -Vec3{dot(xAxis, origin), dot(yAxis, origin), dot(zAxis, origin)}, M);
}

void slTransToWorld(const float *x, const float *y, const float *z, const float *p, float *out) {
    store(p[0] * load3(x) + p[1] * load3(y) + p[2] * load3(z), out);
}

void slTransPntToPlane(float *p, const XYCoordSysD &cs) {
    const Vec3 arm = load3(p) - load3(cs.origin);
    store(Vec3{dot(arm, load3(cs.xAxis)), dot(arm, load3(cs.yAxis)), 0.0}, p);
}

void slTransVectToPlane(float *v, const float *x, const float *y) {
    const Vec3 vector = load3(v);
    store(Vec3{dot(vector, load3(x)), dot(vector, load3(y)), 0.0}, v);
}

void slGenMatrixToSpRadials(const float *p1, const float *d1, const float *p2, const float *d2,
                            float *M) {
    // Cosine and sine of the turns about Z (c, s) and about X (e, f) for each ray, in floats.
    float first[4];
    float second[4];
    slGetAnglesRotToZ(d1, &first[0], &first[1], &first[2], &first[3]);
    slGetAnglesRotToZ(d2, &second[0], &second[1], &second[2], &second[3]);
    const double c1 = first[0], s1 = first[1], e1 = first[2], f1 = first[3];
    const double c2 = second[0], s2 = second[1], e2 = second[2], f2 = second[3];
    setMotion({{c1 * c2, -(s1 * s2 * e2), 0.0},
               {-(s1 * e1 * s2), c1 * e1 * c2 * e2, -(f1 * c2 * f2)},
               {0.0, -(c1 * f1 * f2), e1 * e2}},
              load3(p1) - load3(p2), M);
}

int slGenMatrixToSpLines(const float *a1, const float *b1, const float *a2, const float *b2,
                         float *M) {
    float d1[3];
    float d2[3];
    if (slGetNormalVectBtPnts(a1, b1, d1) == 0 || slGetNormalVectBtPnts(a2, b2, d2) == 0) {
        return 0;
    }
    slGenMatrixToSpRadials(a1, d1, a2, d2, M);
    return 1;
}

void slGetMinXYZ(int n1, const float (*pts1)[3], int n2, const float (*pts2)[3], float *out) {
    std::fill_n(out, 3, SL_BIG);
    const auto lower = [out](const float *p) {
        for (int i = 0; i < 3; ++i) {
            out[i] = slMinF2(out[i], p[i]);
        }
    };
    forEachPoint(n1, pts1, lower);
    forEachPoint(n2, pts2, lower);
}

void slGetMaxXYZ(int n1, const float (*pts1)[3], int n2, const float (*pts2)[3], float *out) {
    std::fill_n(out, 3, -SL_BIG);
    const auto raise = [out](const float *p) {
        for (int i = 0; i < 3; ++i) {
            out[i] = slMaxF2(out[i], p[i]);
        }
    };
    forEachPoint(n1, pts1, raise);
    forEachPoint(n2, pts2, raise);
}
