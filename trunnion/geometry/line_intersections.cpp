// Lines and planes against each other.
#include "trunnion/geometry/intersections.h"

#include <algorithm>

#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/distances.h"

using namespace trunnion::detail;

namespace {

// slIntersectLines2D for a segment parallel to the ray.
int overlapRay(const Vec2 &p, const Vec2 &dir, const Vec2 &c, const Vec2 &d, float *t, float *s) {
    const double toStart = dot(c - p, dir);
    if (toStart > -SL_ZERO) {
        *s = 0.0F;
        *t = toFloat(std::max(toStart, 0.0));
        return SL_COINCIDENT;
    }
    if (dot(d - p, dir) <= -SL_ZERO) {
        return SL_RAY_MISSES;
    }
    *s = 1.0F;
    *t = 0.0F;
    return SL_COINCIDENT;
}

// How a line stands to a plane: the slope of its vector, and the height of its point.
struct Approach {
    double slope;
    double height;

    bool isParallel() const { return belowTolerance(slope, SL_ZERO); }
    bool startsInPlane() const { return belowTolerance(height, SL_ZERO); }
    int parallelCode() const { return startsInPlane() ? SL_LINE_IN_PLANE : SL_LINE_OFF_PLANE; }
    // Where the line meets the plane, in units of its vector.
    double parameter() const { return -(height / slope); }
};

Approach approachOf(const float *a, const float *dir, const float *n, float D) {
    const Vec3 normal = load3(n);
    return {dot(load3(dir), normal), dot(load3(a), normal) + D};
}

} // namespace

int slLineEquation2(float (*A)[2], float *b, float *x) {
    const Vec2 first{A[0][0], A[1][0]};
    const Vec2 second{A[0][1], A[1][1]};
    const Vec2 right = load2(b);
    const double det = cross(first, second);
    if (belowTolerance(det, SL_ZERO)) {
        return 0;
    }
    store(Vec2{cross(right, second), cross(first, right)} / det, x);
    return 1;
}

int slIntersectLines2D(const float *p, const float *dir, const float *c, const float *d, float *t,
                       float *s) {
    const Vec2 direction = load2(dir);
    const Vec2 e = load2(d) - load2(c);
    const Vec2 w = load2(p) - load2(c);
    const double den = cross(e, direction);
    if (length(e) * SL_ZERO > magnitude(den)) {
        return overlapRay(load2(p), direction, load2(c), load2(d), t, s);
    }
    if (den == 0.0) { // the length of e snapped to 0, so that it could not count as parallel
        *t = *s = 0.0F;
        return SL_RAY_MISSES;
    }
    const double along = cross(w, e) / den;
    const double fraction = cross(w, direction) / den;
    *t = toFloat(along);
    *s = toFloat(fraction);
    // All three are asked, which is cheaper than a branch on any of them that goes the other way.
    const int crosses = static_cast<int>(-SL_ZERO < fraction) &
                        static_cast<int>(fraction < SL_PAST_ONE_D) &
                        static_cast<int>(along > -SL_ZERO);
    return crosses != 0 ? SL_RAY_CROSSES : SL_RAY_MISSES;
}

int slIntersecLines(const float *a, const float *dir, const float *c, const float *d, float *out,
                    float s0) {
    const Vec3 direction = load3(dir);
    const Vec3 start = load3(c);
    const Vec3 e = load3(d) - start;
    float segment[3];
    store(e, segment);
    // Without a part across the line, as where c = d, there is no crossing; slVectParallel does not
    // call such a pair parallel.
    const Vec3 across = cross(e, direction);
    const double square = squaredLength(across);
    double s = s0;
    if (slVectParallel(segment, dir) == 0 && square > 0.0) {
        s = dot(cross(load3(a) - start, direction), across) / square;
    }
    if (!(-SL_ZERO < s && s < SL_PAST_ONE)) {
        return 0;
    }
    store(blend(start, load3(d), s), out);
    return 1;
}

int slLineIntersectPlane(const float *a, const float *dir, const float *n, float D, float *out) {
    const Approach approach = approachOf(a, dir, n, D);
    if (approach.isParallel()) {
        return approach.parallelCode();
    }
    store(load3(a) + approach.parameter() * load3(dir), out);
    return SL_LINE_HITS;
}

int slRadialIntersectPlane(const float *a, const float *dir, const float *n, float D, float *out) {
    const Approach approach = approachOf(a, dir, n, D);
    if (approach.isParallel()) {
        return approach.parallelCode();
    }
    if (approach.startsInPlane()) {
        store(load3(a), out);
        return SL_LINE_HITS;
    }
    store(load3(a) + approach.parameter() * load3(dir), out);
    return approach.parameter() > 0.0 ? SL_LINE_HITS : SL_LINE_HITS_BEHIND;
}

int slGetPlaneIntersectM(const float *p1, const float *n1, const float *p2, const float *n2,
                         float *pnt, float *dir) {
    const Vec3 normal = load3(n1);
    Vec3 common = cross(normal, load3(n2));
    const bool crosses = normalize(common) == 1;
    store(common, dir);
    if (!crosses) {
        const float distance = slGetPntPlaneDist(n1, slGetPlaneEquation(p1, n1), p2);
        return belowTolerance(distance, SL_ZERO) ? SL_PLANES_EQUAL : SL_PLANES_PARALLEL;
    }
    float across[3];
    store(unit(cross(normal, common)), across);
    slLineIntersectPlane(p1, across, n2, slGetPlaneEquation(p2, n2), pnt);
    return SL_PLANES_CROSS;
}

int slGetPointOnIntersectLine(const PlaneD &P, const PlaneD &Q, float *out) {
    float right[2];
    store(Vec2{dot(load3(P.normal), load3(P.point)), dot(load3(Q.normal), load3(Q.point))}, right);
    for (int zero = 0; zero < 3; ++zero) {
        const int first = zero == 0 ? 1 : 0;
        const int second = zero == 2 ? 1 : 2;
        float A[2][2] = {{P.normal[first], P.normal[second]}, {Q.normal[first], Q.normal[second]}};
        float x[2];
        if (slLineEquation2(A, right, x) == 1) {
            out[zero] = 0.0F;
            out[first] = x[0];
            out[second] = x[1];
            return 1;
        }
    }
    return 0;
}
