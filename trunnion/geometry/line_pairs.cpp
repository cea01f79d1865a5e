// Two lines or two segments in space.
#include "trunnion/geometry/line_pairs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/two_vectors.h"
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
    const Vec3 determinants = cross(v, u);
    const Vec3 firsts = cross(v, w);
    const Vec3 seconds = cross(u, w);
    const PlaneCut cuts[] = {{determinants.z, firsts.z, seconds.z},
                             {determinants.y, firsts.y, seconds.y},
                             {determinants.x, firsts.x, seconds.x}};
    return cuts[bestAxes(determinants)];
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

#if defined(__SSE2__)

// Two segments that are skew beyond doubt, the common case of slGetLinesCoPerpenticular. Its
// result without the judgement's root and divisions, with two points or two lines at a time, and
// without a branch that depends on how the segments lie, since nobody can foresee it. Pairs near a
// bound are left to the described steps.
class SkewSegments {
public:
    SkewSegments(const float *a, const float *b, const float *c, const float *d)
        : ab(load3(a, b)),
          cd(load3(c, d)),
          start(firsts(ab, ab)),
          line(seconds(ab, ab) - start),
          arms(cd - start),
          normal(cross(first(line), first(seconds(cd, cd) - cd))),
          lineSquare(squaredLength(first(line))),
          normalSquare(squaredLength(normal)) {}

    // Whether slJudgeLineCoPlane finds them skew for sure, and all numbers to come lie well in the
    // range of float. The judgement rounds the normal of the plane of a, b and c to float, and its
    // number too: that changes the height of d by a few times 2^-24 of the coordinates at most. The
    // volume of the four points is the height times the area of a, b and c, which is at most the
    // product of two sides; so it also tells that these span a plane.
    bool areClearlySkew() const {
        constexpr double roundings = 1e-12;           // squared, 16 times as many as there can be
        constexpr double spread = 10.0 * SL_ZERO_SQR; // beyond a sine that spans no plane, squared
        constexpr double margin = 4.0;
        constexpr double shortest = 2.0 * SL_ZERO_SQR;
        constexpr double greatest = 1e18;
        const Two squares = dot(arms, arms);
        const double toC = _mm_cvtsd_f64(squares);
        const double toD = _mm_cvtsd_f64(_mm_unpackhi_pd(squares, squares));
        const double fromOrigin = squaredLength(first(ab));
        const double volume = dot(normal, first(arms));
        const double height =
            margin * SL_ZERO_SQR_D + roundings * fromOrigin + spread * (toC + toD);
        return lineSquare + fromOrigin + toC + toD < greatest && lineSquare > shortest &&
               toC > shortest && normalSquare > shortest &&
               volume * volume > std::max(height * (lineSquare * toC), spread * toD);
    }

    // What nearestInSpace finds; false where only its steps can tell. For segments that are clearly
    // skew.
    bool measure(Nearest &nearest) const {
        const TwoVec3 unitNormal = normalised();
        const double height = dot(first(unitNormal), first(arms));
        const TwoVec3 moved = roundedToFloat(cd - twice(height) * unitNormal);
        const TwoVec3 movedStart = firsts(moved, moved);
        const TwoVec3 movedLine = seconds(moved, moved) - movedStart;
        const TwoVec3 movedArms = moved - start;
        __m128 crossing;
        if (!crossLines(movedLine, movedArms, crossing)) {
            return false;
        }
        const Feet feet(movedArms, line, lineSquare, ab - movedStart, movedLine);
        const int place = PLACES[static_cast<std::size_t>(feet.nearest() | insideBits(crossing))];
        if (place == UNDECIDED) {
            return false;
        }
        // Ends of the other segment have the parameter 0 or 1.
        const __m128 ends = _mm_setr_ps(0.0F, 1.0F, 0.0F, 1.0F);
        const __m128 none = _mm_set1_ps(SL_BIG);
        alignas(16) float onFirst[8];
        alignas(16) float onSecond[8];
        _mm_store_ps(onFirst, _mm_shuffle_ps(feet.t, ends, 0b01'00'01'00));
        _mm_store_ps(onFirst + CROSSING, _mm_move_ss(none, crossing));
        _mm_store_ps(onSecond, _mm_shuffle_ps(ends, feet.t, 0b11'10'01'00));
        _mm_store_ps(onSecond + CROSSING, _mm_move_ss(none, _mm_shuffle_ps(crossing, crossing, 1)));
        const float distances[] = {static_cast<float>(magnitude(height)), SL_BIG};
        nearest = {{onFirst[place], onSecond[place]}, distances[place == NOWHERE ? 1 : 0]};
        return true;
    }

private:
    // Where the segments are nearest to each other: at one of the four feet, or here.
    static constexpr unsigned char CROSSING = 4;
    static constexpr unsigned char NOWHERE = 5;
    static constexpr unsigned char UNDECIDED = 6;

    // Places by eight bits: the lower four name the feet that may be the nearest. The next three
    // tell whether the crossing lies on the first segment with its greater slack, on the second,
    // and on the first with the slack within which the height counts.
    static constexpr std::array<unsigned char, 256> PLACES = [] {
        constexpr unsigned char byFeet[16] = {
            NOWHERE, 0,         1,         UNDECIDED, 2,         UNDECIDED, UNDECIDED, UNDECIDED,
            3,       UNDECIDED, UNDECIDED, UNDECIDED, UNDECIDED, UNDECIDED, UNDECIDED, UNDECIDED};
        std::array<unsigned char, 256> places{};
        for (unsigned int i = 0; i < 256; ++i) {
            const bool crosses = (i & 0x30) == 0x30;
            const unsigned char atCrossing = (i & 0x40) != 0 ? CROSSING : UNDECIDED;
            places[i] = crosses ? atCrossing : byFeet[i & 15];
        }
        return places;
    }();

    // The feet of c and d on the first segment, and of a and b on the second.
    struct Feet {
        __m128 t;
        __m128 squares; // of the distances

        Feet(const TwoVec3 &arms1, const TwoVec3 &line1, double square1, const TwoVec3 &arms2,
             const TwoVec3 &line2) {
            const Two t1 = dot(arms1, line1) / twice(square1);
            const Two t2 = dot(arms2, line2) / twice(squaredLength(first(line2)));
            const TwoVec3 residual1 = arms1 - t1 * line1;
            const TwoVec3 residual2 = arms2 - t2 * line2;
            t = toFloats(t1, t2);
            squares = toFloats(dot(residual1, residual1), dot(residual2, residual2));
        }

        // A bit for each foot on its segment whose distance, rounded to float and snapped, may be
        // the least.
        int nearest() const {
            constexpr float roundings = 1e-6F;
            constexpr auto snapped = static_cast<float>(3.0 * SL_TINY);
            const __m128 inside = _mm_and_ps(_mm_cmplt_ps(_mm_set1_ps(-SL_ZERO), t),
                                             _mm_cmplt_ps(t, _mm_set1_ps(SL_PAST_ONE)));
            const __m128 beside = _mm_set1_ps(std::numeric_limits<float>::infinity());
            const __m128 counted =
                _mm_or_ps(_mm_and_ps(inside, squares), _mm_andnot_ps(inside, beside));
            __m128 least = _mm_min_ps(counted, _mm_shuffle_ps(counted, counted, 0b01'00'11'10));
            least = _mm_min_ps(least, _mm_shuffle_ps(least, least, 0b10'11'00'01));
            const __m128 bound =
                _mm_max_ps(least * _mm_set1_ps(1.0F + roundings), _mm_set1_ps(snapped));
            return _mm_movemask_ps(_mm_and_ps(_mm_cmple_ps(counted, bound), inside));
        }
    };

    // The normal with length 1, twice.
    TwoVec3 normalised() const {
        const Two length = _mm_sqrt_pd(twice(normalSquare));
        const Two xy = _mm_setr_pd(normal.x, normal.y) / length;
        const Two z = _mm_set_sd(normal.z) / length;
        return {_mm_unpacklo_pd(xy, xy), _mm_unpackhi_pd(xy, xy), _mm_unpacklo_pd(z, z)};
    }

    // areParallel and crossAt of the first line and the moved second one: the parameters come in
    // the lower two places. False if they are parallel or span too little.
    bool crossLines(const TwoVec3 &movedLine, const TwoVec3 &movedArms, __m128 &crossing) const {
        const Vec3 v = first(movedLine);
        const Vec3 determinant = cross(v, first(line));
        const TwoVec3 fractions = cross(firsts(movedLine, line), firsts(movedArms, movedArms));
        const double determinants[] = {determinant.z, determinant.y, determinant.x};
        alignas(16) double numerators[6];
        _mm_store_pd(numerators, fractions.z);
        _mm_store_pd(numerators + 2, fractions.y);
        _mm_store_pd(numerators + 4, fractions.x);
        const int best = bestAxes(determinant);
        crossing = _mm_cvtpd_ps(_mm_load_pd(numerators + std::ptrdiff_t{2} * best) /
                                twice(determinants[best]));
        return !(squaredLength(determinant) < lineSquare * squaredLength(v) * SL_ZERO_SQR_D) &&
               std::fabs(determinants[best]) > SL_ZERO;
    }

    // The bits of PLACES that tell of the crossing.
    static int insideBits(__m128 crossing) {
        const __m128 t = _mm_movelh_ps(crossing, crossing);
        const __m128 ends = _mm_setr_ps(SL_PAST_ONE2, SL_PAST_ONE, SL_PAST_ONE, SL_PAST_ONE);
        const __m128 inside =
            _mm_and_ps(_mm_cmplt_ps(_mm_set1_ps(-SL_ZERO), t), _mm_cmplt_ps(t, ends));
        return _mm_movemask_ps(inside) << 4;
    }

    TwoVec3 ab;
    TwoVec3 cd;
    TwoVec3 start; // a, twice
    TwoVec3 line;  // from a to b, twice
    TwoVec3 arms;  // from a to c and to d
    Vec3 normal;   // of both lines, not normalised
    double lineSquare;
    double normalSquare;
};

#endif

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
#if defined(__SSE2__)
    const SkewSegments segments(a, b, c, d);
    if (segments.areClearlySkew()) {
        Nearest nearest;
        if (!segments.measure(nearest)) {
            nearest = nearestInSpace(load3(a), load3(b), load3(c), load3(d));
        }
        store(nearest, t1, t2, dist);
        return SL_LINES_SKEW;
    }
#endif
    float unused[3];
    const int judgement = slJudgeLineCoPlane(a, b, c, d, unused);
    const auto measure = judgement == SL_LINES_COPLANAR ? nearestInPlane : nearestInSpace;
    store(measure(load3(a), load3(b), load3(c), load3(d)), t1, t2, dist);
    return judgement;
}
