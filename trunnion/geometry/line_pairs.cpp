// Two lines or two segments in space.
#include "trunnion/geometry/line_pairs.h"

#include <cmath>
#include <initializer_list>

#include "trunnion/geometry/detail/guards.h"
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

// The cut with the greatest determinant. The coordinate planes XY, XZ and YZ are tried in that
// order, and a later one must be strictly greater: each is a component of the same cross products.
PlaneCut bestCut(const Vec3 &u, const Vec3 &v, const Vec3 &w) {
    const Vec3 determinants = cross(v, u);
    const Vec3 firsts = cross(v, w);
    const Vec3 seconds = cross(u, w);
    PlaneCut best{determinants.z, firsts.z, seconds.z};
    for (const PlaneCut &cut : {PlaneCut{determinants.y, firsts.y, seconds.y},
                                PlaneCut{determinants.x, firsts.x, seconds.x}}) {
        if (magnitude(cut.determinant) > magnitude(best.determinant)) {
            best = cut;
        }
    }
    return best;
}

bool areParallel(const Vec3 &u, const Vec3 &v) {
    return squaredLength(cross(u, v)) < squaredLength(u) * squaredLength(v) * SL_ZERO_SQR_D;
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

// The second of two skew lines, moved along the common perpendicular into the plane that holds the
// first and is parallel to both.
struct MovedLine {
    float c[3];
    float d[3];
    double height; // signed length of the move
};

MovedLine moveIntoPlaneOfFirst(const float *a, const float *b, const float *c, const float *d) {
    const Vec3 start = load3(a);
    const Vec3 otherStart = load3(c);
    const Vec3 otherEnd = load3(d);
    const Vec3 normal = unit(cross(load3(b) - start, otherEnd - otherStart));
    MovedLine moved{};
    moved.height = dot(normal, otherStart - start);
    store(otherStart - moved.height * normal, moved.c);
    store(otherEnd - moved.height * normal, moved.d);
    return moved;
}

// Whether a parameter lies on its segment, with slack; the far end's bound is the caller's.
bool isOnSegment(float t, float farBound = SL_PAST_ONE) {
    return -SL_ZERO < t && t < farBound;
}

// Takes the distance of a segment's end point, at the parameter `atEnd`, from the other segment, if
// its foot lies on that and it is less than *dist.
void takeIfNearer(const float *end, float atEnd, const float *from, const float *to, float *tEnd,
                  float *tFoot, float *dist) {
    float foot = 0.0F;
    const float distance = slGetPntLineDist(from, to, end, &foot);
    if (isOnSegment(foot) && distance < *dist) {
        *dist = distance;
        *tEnd = atEnd;
        *tFoot = foot;
    }
}

using Measure = void(const float *a, const float *b, const float *c, const float *d, float *t1,
                     float *t2, float *dist);

// Judges two lines, measures them in the one or the other way, and gives the judgement.
int measureAsJudged(Measure *coplanar, Measure *skew, const float *a, const float *b,
                    const float *c, const float *d, float *t1, float *t2, float *dist) {
    float unused[3];
    const int judgement = slJudgeLineCoPlane(a, b, c, d, unused);
    (judgement == SL_LINES_COPLANAR ? coplanar : skew)(a, b, c, d, t1, t2, dist);
    return judgement;
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
    const PlaneCut cut = bestCut(u, v, load3(c) - load3(a));
    if (withinTolerance(cut.determinant, SL_ZERO)) {
        return SL_LINES_APART;
    }
    *t1 = toFloat(cut.first / cut.determinant);
    *t2 = toFloat(cut.second / cut.determinant);
    return SL_LINES_CROSS;
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
    const MovedLine moved = moveIntoPlaneOfFirst(a, b, c, d);
    slGetCoPlaneInfLineDist(a, b, moved.c, moved.d, t1, t2, dist);
    *dist = toFloat(magnitude(moved.height));
}

int slGetInfLinesCoPerpenticular(const float *a, const float *b, const float *c, const float *d,
                                 float *t1, float *t2, float *dist) {
    return measureAsJudged(slGetCoPlaneInfLineDist, slGetDifPlaneInfLineDist, a, b, c, d, t1, t2,
                           dist);
}

void slGetCoPlaneLineDist(const float *a, const float *b, const float *c, const float *d, float *t1,
                          float *t2, float *dist) {
    if (slIntersectLines3D(a, b, c, d, t1, t2) == SL_LINES_CROSS &&
        isOnSegment(*t1, SL_PAST_ONE2) && isOnSegment(*t2)) {
        *dist = 0.0F;
        return;
    }
    *dist = *t1 = *t2 = SL_BIG;
    takeIfNearer(c, 0.0F, a, b, t2, t1, dist);
    takeIfNearer(d, 1.0F, a, b, t2, t1, dist);
    takeIfNearer(a, 0.0F, c, d, t1, t2, dist);
    takeIfNearer(b, 1.0F, c, d, t1, t2, dist);
}

void slGetDifPlaneLineDist(const float *a, const float *b, const float *c, const float *d,
                           float *t1, float *t2, float *dist) {
    const MovedLine moved = moveIntoPlaneOfFirst(a, b, c, d);
    slGetCoPlaneLineDist(a, b, moved.c, moved.d, t1, t2, dist);
    if (isOnSegment(*t1) && isOnSegment(*t2)) {
        *dist = toFloat(magnitude(moved.height));
    }
}

int slGetLinesCoPerpenticular(const float *a, const float *b, const float *c, const float *d,
                              float *t1, float *t2, float *dist) {
    return measureAsJudged(slGetCoPlaneLineDist, slGetDifPlaneLineDist, a, b, c, d, t1, t2, dist);
}
