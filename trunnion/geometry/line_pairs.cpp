// Two lines or two segments in space.
#include "trunnion/geometry/line_pairs.h"

#include <cmath>
#include <limits>

#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/skew_segments.h"
#include "trunnion/geometry/distances.h"
#include "trunnion/geometry/planes.h"

using namespace trunnion::detail;

namespace {

// Vectors that span the lines of slIntersectInfLines are lengthened by this factor, so that unit
// vectors do not count as too short.
constexpr double REACH = 10.0;

// Solution of t1 u - t2 v = w in one coordinate plane, as fractions over a determinant.
struct PlaneCut {
    double determinant;
    double first;
    double second;
};

// Which coordinate plane has the greatest determinant: 0 for XY, 1 for XZ, 2 for YZ. They are tried
// in that order, and a later one must be strictly greater; each determinant is a component of the
// same cross product. Told without a branch: which one it is is rarely foreseen.
int bestAxes(const Vec3 &determinants) {
    const double xy = magnitude(determinants.z);
    const double xz = magnitude(determinants.y);
    const double greater = xz > xy ? xz : xy;
    const int first = static_cast<int>(xz > xy);
    const int third = static_cast<int>(magnitude(determinants.x) > greater);
    return first + third * (2 - first);
}

// The cut with the greatest determinant.
PlaneCut bestCut(const Vec3 &u, const Vec3 &v, const Vec3 &w) {
    constexpr int axes[3][2] = {{0, 1}, {0, 2}, {1, 2}};
    const auto &[i, j] = axes[bestAxes(cross(v, u))];
    const double us[] = {u.x, u.y, u.z};
    const double vs[] = {v.x, v.y, v.z};
    const double ws[] = {w.x, w.y, w.z};
    return {vs[i] * us[j] - vs[j] * us[i], vs[i] * ws[j] - vs[j] * ws[i],
            us[i] * ws[j] - us[j] * ws[i]};
}

bool areParallel(const Vec3 &u, const Vec3 &v) {
    return squaredLength(cross(u, v)) < squaredLength(u) * squaredLength(v) * SL_ZERO_SQR_D;
}

// Where lines along u and v cross that are not parallel, w being the way from the start of the
// first to the start of the second. False if they span too little.
bool crossAt(const Vec3 &u, const Vec3 &v, const Vec3 &w, float *t1, float *t2) {
    const PlaneCut cut = bestCut(u, v, w);
    if (withinTolerance(cut.determinant, SL_ZERO)) {
        return false;
    }
    *t1 = toFloat(cut.first / cut.determinant);
    *t2 = toFloat(cut.second / cut.determinant);
    return true;
}

// Plane of points that slPlaneNormal gives up only because their cross product is too short to be
// normalised. False where two points are equal or all lie on one line.
bool getPlaneOfShortSides(const float *a, const float *b, const float *c, float *n, float *D) {
    const Vec3 u = load3(b) - load3(a);
    const Vec3 w = load3(c) - load3(a);
    const Vec3 product = cross(u, w);
    const double squared = squaredLength(product);
    const bool equalPoints =
        slIsEqualPoint3D(a, b) != 0 || slIsEqualPoint3D(a, c) != 0 || slIsEqualPoint3D(b, c) != 0;
    if (equalPoints || squared <= SL_ZERO_SQR * squaredLength(u) * squaredLength(w)) {
        return false;
    }
    store(product / std::sqrt(squared), n);
    *D = slGetPlaneEquation(a, n);
    return true;
}

Vec3 roundedToFloat(const Vec3 &v) {
    return {toFloat(v.x), toFloat(v.y), toFloat(v.z)};
}

// The second of two skew lines, moved along the common perpendicular into the plane that holds the
// first and is parallel to both; its points are rounded to float.
struct MovedLine {
    Vec3 c;
    Vec3 d;
    double height; // signed length of the move
};

MovedLine moveIntoPlaneOfFirst(const Vec3 &a, const Vec3 &b, const Vec3 &c, const Vec3 &d) {
    const Vec3 normal = unit(cross(b - a, d - c));
    const double height = dot(normal, c - a);
    return {roundedToFloat(c - height * normal), roundedToFloat(d - height * normal), height};
}

// Whether a parameter lies on its segment, with slack; the far end's bound is the caller's.
bool isOnSegment(float t, float farBound = SL_PAST_ONE) {
    return (static_cast<int>(-SL_ZERO < t) & static_cast<int>(t < farBound)) != 0;
}

// The foot of an end point on the other segment.
struct EndFoot {
    float t;
    Vec3 residual; // from the foot to the point
    double square; // of its length; infinite if the foot lies beside the segment
};

EndFoot footOfEnd(const Vec3 &end, const Vec3 &start, const Vec3 &line, double lineSquare) {
    constexpr double beside[] = {std::numeric_limits<double>::infinity(), 0.0};
    const Vec3 arm = end - start;
    const double t = lineSquare > 0.0 ? dot(arm, line) / lineSquare : 0.0;
    const Vec3 residual = arm - t * line;
    const float foot = toFloat(t);
    return {foot, residual, squaredLength(residual) + beside[isOnSegment(foot) ? 1 : 0]};
}

// Where two segments are nearest to each other; all SL_BIG where no foot lies on a segment.
struct Nearest {
    float t[2] = {SL_BIG, SL_BIG}; // on the first and on the second
    float distance = SL_BIG;
};

// The feet of the ends of two segments on the other one: those of c and d on the first, those of a
// and b on the second. The nearest counts, by its distance rounded to float; of equal ones the
// first.
class EndFeet {
public:
    EndFeet(const Vec3 &a, const Vec3 &b, const Vec3 &c, const Vec3 &d) {
        const Vec3 u = b - a;
        const Vec3 v = d - c;
        const double uu = squaredLength(u);
        const double vv = squaredLength(v);
        feet[0] = footOfEnd(c, a, u, uu);
        feet[1] = footOfEnd(d, a, u, uu);
        feet[2] = footOfEnd(a, c, v, vv);
        feet[3] = footOfEnd(b, c, v, vv);
    }

    // The squares tell which one it is, unless another is so near to it that their distances could
    // be rounded to the same float, or one is a NaN, or beyond what counts.
    Nearest nearest() const {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const int second = static_cast<int>(feet[1].square < feet[0].square);
        const int fourth = static_cast<int>(feet[3].square < feet[2].square);
        const double least1 = feet[second].square;
        const double least2 = feet[2 + fourth].square;
        const int onOther = static_cast<int>(least2 < least1);
        const int first = second + onOther * (2 + fourth - second);
        const double least = least2 < least1 ? least2 : least1;
        const double sum = feet[0].square + feet[1].square + feet[2].square + feet[3].square;
        if (least == infinity && sum == infinity) {
            return {};
        }
        int near = 0;
        for (const EndFoot &foot : feet) {
            near += static_cast<int>(!(foot.square > least * (1.0 + 1e-6)));
        }
        if (near != 1 || !(least > 2.0 * SL_TINY && least < 1e30) || std::isnan(sum)) {
            return nearestByDistance();
        }
        return nearestAt(first, toFloat(std::sqrt(least)));
    }

private:
    [[gnu::noinline]] Nearest nearestByDistance() const {
        Nearest best;
        for (int i = 0; i < 4; ++i) {
            const float distance = toFloat(length(feet[i].residual));
            if (isOnSegment(feet[i].t) && distance < best.distance) {
                best = nearestAt(i, distance);
            }
        }
        return best;
    }

    Nearest nearestAt(int i, float distance) const {
        Nearest nearest;
        nearest.t[i / 2] = feet[i].t;
        nearest.t[1 - i / 2] = static_cast<float>(i % 2);
        nearest.distance = distance;
        return nearest;
    }

    EndFoot feet[4];
};

// slGetCoPlaneLineDist.
Nearest nearestInPlane(const Vec3 &a, const Vec3 &b, const Vec3 &c, const Vec3 &d) {
    const Vec3 u = b - a;
    const Vec3 v = d - c;
    Nearest crossing;
    if (!areParallel(u, v) && crossAt(u, v, c - a, &crossing.t[0], &crossing.t[1]) &&
        (static_cast<int>(isOnSegment(crossing.t[0], SL_PAST_ONE2)) &
         static_cast<int>(isOnSegment(crossing.t[1]))) != 0) {
        crossing.distance = 0.0F;
        return crossing;
    }
    return EndFeet(a, b, c, d).nearest();
}

// slGetDifPlaneLineDist.
[[gnu::flatten]] Nearest nearestInSpace(const Vec3 &a, const Vec3 &b, const Vec3 &c,
                                        const Vec3 &d) {
    const MovedLine moved = moveIntoPlaneOfFirst(a, b, c, d);
    Nearest nearest = nearestInPlane(a, b, moved.c, moved.d);
    if (isOnSegment(nearest.t[0]) && isOnSegment(nearest.t[1])) {
        nearest.distance = toFloat(magnitude(moved.height));
    }
    return nearest;
}

void store(const Nearest &nearest, float *t1, float *t2, float *dist) {
    *t1 = nearest.t[0];
    *t2 = nearest.t[1];
    *dist = nearest.distance;
}

} // namespace

int slIntersectLines3D(const float *a, const float *b, const float *c, const float *d, float *t1,
                       float *t2) {
    const Vec3 u = load3(b) - load3(a);
    const Vec3 v = load3(d) - load3(c);
    if (areParallel(u, v)) {
        float unused = 0.0F;
        return slFabs(slGetPntLineDist(a, b, c, &unused)) < SL_ZERO ? SL_COINCIDENT
                                                                    : SL_LINES_APART;
    }
    return crossAt(u, v, load3(c) - load3(a), t1, t2) ? SL_LINES_CROSS : SL_LINES_APART;
}

int slJudgeLineCoPlane(const float *a, const float *b, const float *c, const float *d, float *n) {
    float D = 0.0F;
    if (slGetPlaneEquation(a, b, c, n, &D) == 0 && !getPlaneOfShortSides(a, b, c, n, &D)) {
        return SL_LINES_COPLANAR;
    }
    return belowTolerance(D + dot(load3(d), load3(n)), SL_ZERO) ? SL_LINES_COPLANAR : SL_LINES_SKEW;
}

int slIntersectInfLines(const float *a, const float *da, const float *c, const float *dc, float *t1,
                        float *t2) {
    float b[3];
    float d[3];
    store(load3(a) + REACH * load3(da), b);
    store(load3(c) + REACH * load3(dc), d);
    float unused[3];
    int result = SL_LINES_NOT_COPLANAR;
    if (slJudgeLineCoPlane(a, b, c, d, unused) == SL_LINES_COPLANAR) {
        result = slIntersectLines3D(a, b, c, d, t1, t2);
    } else {
        slGetDifPlaneInfLineDist(a, b, c, d, t1, t2, unused);
    }
    *t1 = toFloat(REACH * *t1);
    *t2 = toFloat(REACH * *t2);
    return result;
}

float slGetLineDist(const float *a, const float *b, const float *c, const float *d) {
    Vec3 normal = cross(load3(b) - load3(a), load3(d) - load3(c));
    if (normalize(normal) == 0) {
        float unused = 0.0F;
        return slGetPntLineDist(a, b, c, &unused);
    }
    float n[3];
    store(normal, n);
    return slGetPntPlaneDist(n, slGetPlaneEquation(a, n), c);
}

void slGetCoPlaneInfLineDist(const float *a, const float *b, const float *c, const float *d,
                             float *t1, float *t2, float *dist) {
    if (slIntersectLines3D(a, b, c, d, t1, t2) == SL_LINES_CROSS) {
        *dist = 0.0F;
        return;
    }
    *dist = slGetPntLineDist(a, b, c, t1);
    *t2 = 0.0F;
}

void slGetDifPlaneInfLineDist(const float *a, const float *b, const float *c, const float *d,
                              float *t1, float *t2, float *dist) {
    const MovedLine moved = moveIntoPlaneOfFirst(load3(a), load3(b), load3(c), load3(d));
    float start[3];
    float end[3];
    store(moved.c, start);
    store(moved.d, end);
    slGetCoPlaneInfLineDist(a, b, start, end, t1, t2, dist);
    *dist = toFloat(magnitude(moved.height));
}

int slGetInfLinesCoPerpenticular(const float *a, const float *b, const float *c, const float *d,
                                 float *t1, float *t2, float *dist) {
    float unused[3];
    const int judgement = slJudgeLineCoPlane(a, b, c, d, unused);
    const auto measure =
        judgement == SL_LINES_COPLANAR ? slGetCoPlaneInfLineDist : slGetDifPlaneInfLineDist;
    measure(a, b, c, d, t1, t2, dist);
    return judgement;
}

void slGetCoPlaneLineDist(const float *a, const float *b, const float *c, const float *d, float *t1,
                          float *t2, float *dist) {
    store(nearestInPlane(load3(a), load3(b), load3(c), load3(d)), t1, t2, dist);
}

void slGetDifPlaneLineDist(const float *a, const float *b, const float *c, const float *d,
                           float *t1, float *t2, float *dist) {
    store(nearestInSpace(load3(a), load3(b), load3(c), load3(d)), t1, t2, dist);
}

int slGetLinesCoPerpenticular(const float *a, const float *b, const float *c, const float *d,
                              float *t1, float *t2, float *dist) {
    if (measureSkewSegments(a, b, c, d, t1, t2, dist)) {
        return SL_LINES_SKEW;
    }
    float unused[3];
    const int judgement = slJudgeLineCoPlane(a, b, c, d, unused);
    const auto measure = judgement == SL_LINES_COPLANAR ? nearestInPlane : nearestInSpace;
    store(measure(load3(a), load3(b), load3(c), load3(d)), t1, t2, dist);
    return judgement;
}
