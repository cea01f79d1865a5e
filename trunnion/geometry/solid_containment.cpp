// Rays that pick points and lines, bodies that touch, and directions between points and lines.
#include <algorithm>
#include <cmath>

#include "trunnion/geometry/containment.h"
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/matrix.h"
#include "trunnion/geometry/line_pairs.h"
#include "trunnion/geometry/matrices.h"

using namespace trunnion::detail;

namespace {

// Where a ray meets the plane z = 0 of the frame that M places, in local coordinates.
bool hitLocalPlane(const float *org, const float *dir, const float (&M)[MATRIX_SIZE],
                   float (&hit)[3]) {
    const float up[3] = {0.0F, 0.0F, 1.0F};
    float toLocal[MATRIX_SIZE];
    float start[3];
    float along[3];
    slGetInverseMotionMatrix(M, toLocal);
    slMatrix16MultiPoint3(toLocal, org, start);
    slMatrix16MultiVector3(toLocal, dir, along);
    return slRadialIntersectPlane(start, along, up, 0.0F, hit) == SL_LINE_HITS;
}

// The point of the segment from a to b that is nearest to p.
Vec2 nearestOnSegment(const Vec2 &a, const Vec2 &b, const Vec2 &p) {
    const double square = squaredLength(b - a);
    const double along = square > 0.0 ? dot(p - a, b - a) / square : 0.0;
    return a + std::clamp(along, 0.0, 1.0) * (b - a);
}

// How far a ball may stand up in the direction of a prism's side face, at the height h along the
// axis.
double sideLimit(float angle, float radius, double h) {
    // Stands for no limit, and is also a tangent that counts as that of a right angle.
    constexpr double unlimited = 1e7;
    const double tangent = toFloat(slTan(angle));
    const double cosine = std::cos(static_cast<double>(angle));
    if (tangent == unlimited || tangent == -unlimited || belowTolerance(cosine, SL_ZERO)) {
        return unlimited;
    }
    return radius / cosine + tangent * h;
}

} // namespace

int slJudgeRadialThroughPntM(const float *org, const float *dir, float *pnt, float tol,
                             const float (&M)[16]) {
    float hit[3];
    return hitLocalPlane(org, dir, M, hit) && slDistance2(hit, pnt) < tol ? 1 : 0;
}

int slJudgeRadialThroughLineM(const float *org, const float *dir, float *p1, float *p2, float tol,
                              const float (&M)[16]) {
    float hit[3];
    if (!hitLocalPlane(org, dir, M, hit)) {
        return 0;
    }
    const Vec2 picked = load2(hit);
    return length(picked - nearestOnSegment(load2(p1), load2(p2), picked)) < tol ? 1 : 0;
}

void slJudgeBallAndPrism(const BallAndPrismD &r, int *result) {
    const Vec3 w = load3(r.ballCentre) - load3(r.prismOrigin);
    const double h = dot(w, load3(r.axis));
    const double radius = r.ballRadius;
    const bool apart = h < r.low - radius || h > r.high + radius ||
                       dot(w, load3(r.firstDirection)) > sideLimit(r.firstAngle, r.ballRadius, h) ||
                       dot(w, load3(r.secondDirection)) > sideLimit(r.secondAngle, r.ballRadius, h);
    *result = apart ? 0 : 1;
}

int slJudgeTwoCylinder(const float *p1, const float *p2, const float *v1, const float *v2,
                       const float *s1, const float *s2) {
    float end1[3];
    float end2[3];
    store(load3(p1) + s1[1] * load3(v1), end1);
    store(load3(p2) + s2[1] * load3(v2), end2);
    float t1 = 0.0F;
    float t2 = 0.0F;
    float distance = 0.0F;
    slGetLinesCoPerpenticular(p1, end1, p2, end2, &t1, &t2, &distance);
    const double overlap = static_cast<double>(s1[0]) + s2[0] - distance;
    return overlap > SL_ZERO || belowTolerance(overlap, SL_ZERO) ? 1 : 0;
}

int slCalculateVectTwoParallel(const float (&a)[3], const float (&da)[3], const float (&b)[3],
                               const float (&db)[3], float *out) {
    if (slVectParallel(da, db) != 1) {
        return 0;
    }
    const Vec3 start = load3(a);
    const Vec3 across = load3(b) - start;
    const Vec3 u = unit(load3(da));
    const Vec3 foot = load3(b) - dot(u, across) * u;
    float rounded[3];
    store(foot, rounded);
    if (slIsEqualPoint3D(a, rounded) != 0) {
        return 0;
    }
    store(foot - start, out);
    return 1;
}

void slGetPntsMidVect(const float *o, const float *p1, const float *p2, float *out) {
    float u1[3];
    float u2[3];
    if (slGetNormalVectBtPnts(o, p1, u1) == 0 || slGetNormalVectBtPnts(o, p2, u2) == 0) {
        std::fill_n(out, 3, 0.0F);
        return;
    }
    const Vec3 middle = (load3(u1) + load3(u2)) / 2.0;
    if (magnitude(middle.x) + magnitude(middle.y) + magnitude(middle.z) < SL_ZERO) {
        slOthVect(u1, out);
        return;
    }
    store(unit(middle), out);
}
