// Circles and spheres through points, angles on circles, the fillet of a corner.
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/intersections.h"
#include "trunnion/geometry/line_pairs.h"
#include "trunnion/geometry/matrices.h"

using namespace trunnion::detail;

namespace {

// The angle of a unit vector in the plane, told by its x and the side on which it lies.
float fullAngle(double x, double y) {
    const double angle = slAcos(x);
    return toFloat(y < 0.0 ? SL_TWO_PI - angle : angle);
}

// Unit vector from a to b; false if there is none.
bool findDirection(const float *a, const float *b, Vec3 &direction) {
    double wide[3];
    const int found = slGetNormalVectBtPnts(a, b, wide);
    direction = load3(wide);
    return found == 1;
}

int reportNoFillet(float *center) {
    center[0] = SL_BIG;
    return SL_DELETED_INT;
}

double turnBetween(const Vec3 &u, const Vec3 &v, const float *norm) {
    const double first[3] = {u.x, u.y, u.z};
    const double second[3] = {v.x, v.y, v.z};
    const double ref[3] = {norm[0], norm[1], norm[2]};
    return slCalAngleTwoVects(first, second, ref);
}

} // namespace

int slCircumcenter(float *p1, float *p2, float *p3, float *center) {
    const Vec2 a = load2(p1);
    const Vec2 b = load2(p2);
    const Vec2 c = load2(p3);
    float A[2][2];
    float right[2];
    store(2.0 * (a - b), A[0]);
    store(2.0 * (b - c), A[1]);
    store(Vec2{squaredLength(a) - squaredLength(b), squaredLength(b) - squaredLength(c)}, right);
    return slLineEquation2(A, right, center);
}

float slGetCircleRadius(const float *center, const float *p) {
    return slDistance3(center, p);
}

float slGetCircleAng(const float *center, const float *p, float r) {
    if (r == 0.0F) {
        return 0.0F;
    }
    const Vec2 v = (load2(p) - load2(center)) / r;
    return fullAngle(v.x, v.y);
}

float slGetCentralAngle(const float *v) {
    const float len = slLength(v);
    return len == 0.0F ? 0.0F : fullAngle(static_cast<double>(v[0]) / len, v[1]);
}

int slGetTangentCircle(const float *o, const float *p1, const float *p2, const float *norm, float r,
                       float *center, float *t1, float *t2) {
    Vec3 u1;
    Vec3 u2;
    if (!findDirection(o, p1, u1) || !findDirection(o, p2, u2)) {
        return reportNoFillet(center);
    }
    Vec3 middle = (u1 + u2) / 2.0;
    const double sine = length(u1 - middle);
    if (sine <= SL_ZERO_D) {
        return reportNoFillet(center);
    }
    normalize(middle);
    const Vec3 corner = load3(o);
    const double toCenter = r / sine;
    const double toTouch = slSqrt(toCenter * toCenter - static_cast<double>(r) * r);
    store(corner + toCenter * middle, center);
    store(corner + toTouch * u1, t1);
    store(corner + toTouch * u2, t2);
    return turnBetween(u1, u2, norm) > 0.0 ? CUR_DIR_CW : CUR_DIR_CCW;
}

int slGenCircle(const float *p0, const float *p1, const float *p2, float *center, float *normal,
                float *radius) {
    XYCoordSysD frame;
    if (slGenXYCoordSys(p0, p1, p2, &frame) == 0) {
        return 0;
    }
    float toLocal[16];
    float origin[3] = {0.0F, 0.0F, 0.0F};
    float second[3];
    float third[3];
    float local[2];
    slGenMatrixToLocal(frame, toLocal);
    slMatrix16MultiPoint3(toLocal, p1, second);
    slMatrix16MultiPoint3(toLocal, p2, third);
    if (slCircumcenter(origin, second, third, local) == 0) {
        return 0;
    }
    store(load3(frame.zAxis), normal);
    store(load3(frame.origin) + local[0] * load3(frame.xAxis) + local[1] * load3(frame.yAxis),
          center);
    *radius = slDistance3(p0, center);
    return 1;
}

int slCircumCenter3D(const float *a, const float *b, const float *c, float *center, float *radius) {
    float normal[3];
    if (slPlaneNormal(a, b, c, normal) != 1) {
        return 0;
    }
    float level[16];
    float points[3][3];
    float found[3];
    slGenVectToZMatrix(a, normal, level);
    slMatrix16MultiPoint3(level, a, points[0]);
    slMatrix16MultiPoint3(level, b, points[1]);
    slMatrix16MultiPoint3(level, c, points[2]);
    if (slCircumcenter(points[0], points[1], points[2], found) != 1) {
        return 0;
    }
    found[2] = points[0][2];
    *radius = slDistance2(points[0], found);
    float back[16];
    slGetInverseMotionMatrix(level, back);
    slMatrix16MultiPoint3(back, found, center);
    return 1;
}

int slGenSphere(const float *p0, const float *p1, const float *p2, const float *p3, float *center,
                float *radius) {
    float c1[3], n1[3], c2[3], n2[3];
    float circleRadius = 0.0F;
    if (slGenCircle(p0, p1, p2, c1, n1, &circleRadius) == 0 ||
        slGenCircle(p0, p1, p3, c2, n2, &circleRadius) == 0 || slVectParallel(n1, n2) == 1) {
        return 0;
    }
    float t1 = 0.0F;
    float t2 = 0.0F;
    const int meeting = slIntersectInfLines(c1, n1, c2, n2, &t1, &t2);
    if (meeting != SL_LINES_CROSS && meeting != SL_LINES_NOT_COPLANAR) {
        return 0; // parallel by a bound that only rounding keeps apart from the one above
    }
    const Vec3 onFirst = load3(c1) + t1 * load3(n1);
    const Vec3 onSecond = load3(c2) + t2 * load3(n2);
    store(meeting == SL_LINES_CROSS ? onFirst : (onFirst + onSecond) / 2.0, center);
    *radius = slDistance3(center, p0);
    return 1;
}
