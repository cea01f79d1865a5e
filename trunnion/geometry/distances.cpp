// Distances of points from lines and planes, feet and projections.
#include "trunnion/geometry/distances.h"

#include <algorithm>

#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

// The foot of a point on a line: its parameter, and the way from it to the point.
template <typename Vec>
struct Foot {
    double t;
    Vec residual;
};

// On the line through the origin along `line`, for the point `arm`.
template <typename Vec>
Foot<Vec> footOf(const Vec &arm, const Vec &line) {
    const double squared = squaredLength(line);
    const double t = squared > 0.0 ? dot(arm, line) / squared : 0.0;
    return {t, arm - t * line};
}

Foot<Vec3> footInSpace(const float *a, const float *b, const float *p) {
    const Vec3 start = load3(a);
    return footOf(load3(p) - start, load3(b) - start);
}

// The point at parameter t of the line from a to b in the XZ plane. Both ends are weighted, so that
// they are met exactly.
Vec3 pointOnXZ(const Vec3 &a, const Vec3 &b, double t) {
    return {(1.0 - t) * a.x + t * b.x, 0.0, (1.0 - t) * a.z + t * b.z};
}

Vec3 endNearerInX(const Vec3 &a, const Vec3 &b, const Vec3 &p) {
    return magnitude(b.x - p.x) <= magnitude(a.x - p.x) ? b : a;
}

Vec3 endNearerInZ(const Vec3 &a, const Vec3 &b, const Vec3 &p) {
    return magnitude(b.z - p.z) <= magnitude(a.z - p.z) ? b : a;
}

// Slack in units of the parameter, for a segment of the given width in x.
double slackOfParameter(double width, double tol) {
    return width > 1.0 ? tol / width : std::min(width, tol);
}

// slProjToLineAlongZOnXZ for a segment that leaves x.
int projectAlongZ(const Vec3 &a, const Vec3 &b, const Vec3 &p, double tol, float *out) {
    const double t = (p.x - a.x) / (b.x - a.x);
    const double slack = slackOfParameter(magnitude(b.x - a.x), tol);
    if (!(t > -slack) || t >= 1.0 + slack) {
        return 0;
    }
    const bool inside = -SL_ZERO < t && t < SL_PAST_ONE;
    store(inside ? pointOnXZ(a, b, t) : endNearerInZ(a, b, p), out);
    return 1;
}

// slProjToLineAlongZOnXZ for a segment along Z.
int projectToUpright(const Vec3 &a, const Vec3 &b, const Vec3 &p, double tol, float *out) {
    if (!belowTolerance(a.x - p.x, tol)) {
        return 0;
    }
    const auto [low, high] = std::minmax(a.z, b.z);
    const bool inside = low - SL_ZERO < p.z && p.z < high + SL_ZERO;
    store(inside ? p : endNearerInZ(a, b, p), out);
    return 1;
}

} // namespace

float slGetPntLineDist(const float *a, const float *b, const float *p, float *t) {
    const Foot<Vec3> foot = footInSpace(a, b, p);
    *t = toFloat(foot.t);
    return toFloat(length(foot.residual));
}

float slGetPntLineSquareDist(const float *a, const float *b, const float *p, float *t) {
    const Foot<Vec3> foot = footInSpace(a, b, p);
    *t = toFloat(foot.t);
    return toFloat(squaredLength(foot.residual));
}

float slGetPntLineDist2D(const float *a, const float *b, const float *p, float *t) {
    const Vec2 start = load2(a);
    const Vec2 line = load2(b) - start;
    const Foot<Vec2> foot = footOf(load2(p) - start, line);
    const double distance = length(foot.residual);
    *t = toFloat(foot.t);
    return toFloat(cross(line, foot.residual) < 0.0 ? -distance : distance);
}

float slGetPntLineDistByVect(const float *a, const float *dir, const float *p, float *t) {
    const Vec3 arm = load3(p) - load3(a);
    const Vec3 direction = load3(dir);
    const double along = dot(arm, direction);
    *t = toFloat(along);
    return toFloat(length(arm - along * direction));
}

int slGetLineFoot(const float *a, const float *b, const float *p, float *foot, float *t) {
    const Vec2 start = load2(a);
    if (slPlaneDistSqr(a, b) < SL_ZERO_HALF_D) {
        *t = 1.0F;
        store(start, foot);
        return 1;
    }
    const Vec2 line = load2(b) - start;
    const double along = footOf(load2(p) - start, line).t;
    *t = toFloat(along);
    store(start + along * line, foot);
    return 1;
}

float slProjectPntToLine(const float *a, const float *b, const float *p, float *foot) {
    const Vec3 start = load3(a);
    Vec3 direction = load3(b) - start;
    if (normalize(direction) == 0) {
        return -SL_BIG;
    }
    const double along = dot(load3(p) - start, direction);
    store(start + along * direction, foot);
    return toFloat(along);
}

float slGetPntPlaneDist(const float *n, float D, const float *p) {
    return toFloat(magnitude(dot(load3(n), load3(p)) + D));
}

float slProjectPntToPlane(const float *n, float D, const float *p, float *foot) {
    const Vec3 normal = load3(n);
    const Vec3 point = load3(p);
    const double height = dot(normal, point) + D;
    store(point - height * normal, foot);
    return toFloat(height);
}

void slGetNearestPair(const float *p0, const float *p1, const float *p2, const float *p3,
                      float (*out)[3]) {
    const float *const points[] = {p0, p1, p2, p3};
    const float *first = nullptr;
    const float *second = nullptr;
    double least = SL_BIG;
    for (int i = 0; i < 3; ++i) {
        for (int j = i + 1; j < 4; ++j) {
            const double squared = slSquareDistance3(points[i], points[j]);
            if (squared < least) {
                least = squared;
                first = points[i];
                second = points[j];
            }
        }
    }
    if (first != nullptr) {
        const Vec3 partner = load3(second);
        store(load3(first), out[0]);
        store(partner, out[1]);
    }
}

void slProjToLineAlongXOnXZ(const float *a, const float *b, const float *p, float *out) {
    const Vec3 start = load3(a);
    const Vec3 end = load3(b);
    const Vec3 point = load3(p);
    const double rise = end.z - start.z;
    const bool leavesX = magnitude(rise) > SL_ZERO;
    store(leavesX ? pointOnXZ(start, end, (point.z - start.z) / rise)
                  : endNearerInX(start, end, point),
          out);
}

int slProjToLineAlongZOnXZ(const float *a, const float *b, const float *p, float tol, float *out) {
    const Vec3 start = load3(a);
    const Vec3 end = load3(b);
    const Vec3 point = load3(p);
    if (magnitude(end.x - start.x) > SL_ZERO) {
        return projectAlongZ(start, end, point, tol, out);
    }
    return projectToUpright(start, end, point, tol, out);
}
