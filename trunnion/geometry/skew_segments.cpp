// The common perpendicular of two skew segments without a branch that depends on how they lie,
// since nobody can foresee it, and with two points or two lines at a time. The results are those of
// the described steps to the bit. Where a step can be had for less, it is had together with a bound
// of the difference; segments within that bound are left to the steps.
#include "trunnion/geometry/detail/skew_segments.h"

#if defined(__SSE2__)

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "trunnion/containers/detail/vector_width.h"
#include "trunnion/geometry/detail/two_vectors.h"
#include "trunnion/geometry/scalars.h"

namespace trunnion::detail {

namespace {

// Where two segments are nearest to each other: at one of the four feet (of c and d on the first
// segment, of a and b on the second), or here.
constexpr unsigned char CROSSING = 4;
constexpr unsigned char NOWHERE = 5;
constexpr unsigned char UNDECIDED = 6;

// Such places by seven bits: the lower four name the feet that may be the nearest. The next three
// tell whether the crossing lies on the first segment with its greater slack, on the second, and on
// the first with the slack within which the height counts.
constexpr std::array<unsigned char, 128> PLACES = [] {
    std::array<unsigned char, 128> places{};
    for (unsigned int i = 0; i < places.size(); ++i) {
        unsigned char &place = places[i];
        place = UNDECIDED;
        if ((i & 0x30U) == 0x30U) {
            place = (i & 0x40U) != 0 ? CROSSING : UNDECIDED;
        } else if ((i & 0xFU) == 0) {
            place = NOWHERE;
        } else {
            for (unsigned char foot = 0; foot < 4; ++foot) {
                place = (i & 0xFU) == 1U << foot ? foot : place;
            }
        }
    }
    return places;
}();

// Two roundings of the same two values, one from above and one from below the doubt about them.
struct Rounded {
    __m128 low;
    __m128 isSure; // in the lower two places; the others are all ones
};

Rounded roundedWithDoubt(Two value, Two doubt) {
    const __m128 low = _mm_cvtpd_ps(value - doubt);
    return {low, _mm_cmpeq_ps(low, _mm_cvtpd_ps(value + doubt))};
}

// Which of four parameters lie strictly between the slack below 0 and an end.
__m128 areInside(__m128 t, __m128 ends) {
    return _mm_and_ps(_mm_cmplt_ps(_mm_set1_ps(-SL_ZERO), t), _mm_cmplt_ps(t, ends));
}

class SkewSegments {
public:
    SkewSegments(const float *a, const float *b, const float *c, const float *d)
        : ab(load3(a, b)),
          cd(load3(c, d)),
          start(firsts(ab, ab)),
          line(seconds(ab, ab) - start),
          lineSquare(dot(line, line)),
          normal(cross(line, seconds(cd, cd) - firsts(cd, cd))),
          normalSquare(dot(normal, normal)) {
        const TwoVec3 arms = cd - start;
        const Two armSquares = dot(arms, arms);
        volume = dot(normal, firsts(arms, arms));
        toC = lower(armSquares);
        toD = upper(armSquares);
        fromOrigin = squaredLength(first(ab));
        reach = fromOrigin + lower(lineSquare) + toC + toD;
    }

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
        const double square = lower(lineSquare);
        const double height =
            margin * SL_ZERO_SQR_D + roundings * fromOrigin + spread * (toC + toD);
        return reach < greatest && square > shortest && toC > shortest &&
               lower(normalSquare) > shortest &&
               lower(volume) * lower(volume) > std::max(height * (square * toC), spread * toD);
    }

    // slGetDifPlaneLineDist of segments that are clearly skew. False, with nothing written, where
    // only its steps can tell.
    bool measure(float *t1, float *t2, float *dist) const {
        TwoVec3 moved;
        float height = 0.0F;
        if (!moveIntoPlaneOfFirst(moved, height)) {
            return false;
        }
        const TwoVec3 movedStart = firsts(moved, moved);
        const TwoVec3 movedLine = seconds(moved, moved) - movedStart;
        const TwoVec3 movedArms = moved - start;
        const Two movedSquare = dot(movedLine, movedLine);
        __m128 crossing;
        if (!crossLines(movedLine, movedArms, movedSquare, crossing)) {
            return false;
        }
        const __m128 feet = toFloats(dot(movedArms, line) / lineSquare,
                                     dot(ab - movedStart, movedLine) / movedSquare);
        const int bits =
            nearestFeet(feet, crossing, toFloats(movedSquare, lineSquare)) | crossingBits(crossing);
        const int place = PLACES[static_cast<std::size_t>(bits)];
        if (place == UNDECIDED) {
            return false;
        }
        // Ends of the other segment have the parameter 0 or 1.
        const __m128 ends = _mm_setr_ps(0.0F, 1.0F, 0.0F, 1.0F);
        const __m128 none = _mm_set1_ps(SL_BIG);
        alignas(16) float onFirst[8];
        alignas(16) float onSecond[8];
        _mm_store_ps(onFirst, _mm_shuffle_ps(feet, ends, 0b01'00'01'00));
        _mm_store_ps(onFirst + CROSSING, _mm_move_ss(none, crossing));
        _mm_store_ps(onSecond, _mm_shuffle_ps(ends, feet, 0b11'10'01'00));
        _mm_store_ps(onSecond + CROSSING, _mm_move_ss(none, _mm_shuffle_ps(crossing, crossing, 1)));
        const float distances[] = {height, SL_BIG};
        *t1 = onFirst[place];
        *t2 = onSecond[place];
        *dist = distances[place == NOWHERE ? 1 : 0];
        return true;
    }

private:
    static double lower(Two value) { return _mm_cvtsd_f64(value); }
    static double upper(Two value) { return _mm_cvtsd_f64(_mm_unpackhi_pd(value, value)); }

    // The second segment moved along the common perpendicular into the plane of the first, and its
    // height. By a division instead of the root and the divisions that a unit normal takes one
    // after the other. Both ways differ by less than 64 times 2^-53 of the greatest distance, and
    // doubt is at least twice that: where values that far apart round to the same float, so does
    // the described one.
    bool moveIntoPlaneOfFirst(TwoVec3 &moved, float &height) const {
        const Two doubt = twice(0x1p-47 + 0x1p-47 * reach);
        const Two factor = volume / normalSquare;
        const Rounded x = roundedWithDoubt(cd.x - factor * normal.x, doubt);
        const Rounded y = roundedWithDoubt(cd.y - factor * normal.y, doubt);
        const Rounded z = roundedWithDoubt(cd.z - factor * normal.z, doubt);
        const Rounded rise = roundedWithDoubt(_mm_sqrt_pd(volume * factor), doubt);
        moved = {_mm_cvtps_pd(x.low), _mm_cvtps_pd(y.low), _mm_cvtps_pd(z.low)};
        height = _mm_cvtss_f32(rise.low);
        const __m128 areSure =
            _mm_and_ps(_mm_and_ps(x.isSure, y.isSure), _mm_and_ps(z.isSure, rise.isSure));
        return _mm_movemask_ps(areSure) == 0b1111;
    }

    // Where slIntersectLines3D finds the crossing of the first line and the moved second one: the
    // parameters come in the lower two places. False where they are nearly parallel or span too
    // little, or where two axes of the normal are so near to each other in length that the rounding
    // of the moved points could decide which pair of axes is taken.
    bool crossLines(const TwoVec3 &movedLine, const TwoVec3 &movedArms, Two movedSquare,
                    __m128 &crossing) const {
        constexpr double roundings = 1e-10; // squared, 200 times as many as there can be
        constexpr double sine = 1e-3;       // squared
        constexpr double least = 1.001 * SL_ZERO_SQR_D;
        const double xy = std::fabs(lower(normal.z));
        const double xz = std::fabs(lower(normal.y));
        const double yz = std::fabs(lower(normal.x));
        const double greater = std::max(xy, xz);
        const double gap =
            std::max(greater, yz) - std::max(std::min(xy, xz), std::min(greater, yz));
        const double square = lower(lineSquare);
        const int isYz = static_cast<int>(yz > greater);
        const int i = isYz;
        const int j = 1 + (static_cast<int>(xz > xy) | isYz);
        const double u[] = {lower(line.x), lower(line.y), lower(line.z)};
        const double v[] = {lower(movedLine.x), lower(movedLine.y), lower(movedLine.z)};
        const double w[] = {lower(movedArms.x), lower(movedArms.y), lower(movedArms.z)};
        const double determinant = v[i] * u[j] - v[j] * u[i];
        const Two fractions =
            _mm_setr_pd(v[i], u[i]) * twice(w[j]) - _mm_setr_pd(v[j], u[j]) * twice(w[i]);
        crossing = _mm_cvtpd_ps(fractions / twice(determinant));
        return gap * gap > roundings * reach * square &&
               determinant * determinant > std::max(sine * square * lower(movedSquare), least);
    }

    // A bit for each foot on its segment whose distance, rounded to float and snapped, may be the
    // least. An end of one line is as far from the other as the crossing is from that end, times
    // the sine of their angle, which is the same for all four and, by crossLines, above a
    // thirtieth. The moved points lie off the plane by their rounding: in units of the way along
    // the line that is less than 1.2e-4 of the root of `reach`. (x + e)^2 is at most
    // (1 + 1/256) x^2 + 257 e^2. `extents` are the squared lengths of both lines.
    int nearestFeet(__m128 feet, __m128 crossing, __m128 extents) const {
        constexpr float relative = 1.0F + 1.0F / 256.0F;
        constexpr float roundings = 1e-5F;
        constexpr float snapped = 4e-5F;
        const __m128 inside = areInside(feet, _mm_set1_ps(SL_PAST_ONE));
        const __m128 beside = _mm_set1_ps(std::numeric_limits<float>::infinity());
        const __m128 ways =
            _mm_shuffle_ps(crossing, crossing, 0b00'00'01'01) - _mm_setr_ps(0.0F, 1.0F, 0.0F, 1.0F);
        const __m128 counted = _mm_max_ps(ways * ways * extents, _mm_andnot_ps(inside, beside));
        __m128 least = _mm_min_ps(counted, _mm_shuffle_ps(counted, counted, 0b01'00'11'10));
        least = _mm_min_ps(least, _mm_shuffle_ps(least, least, 0b10'11'00'01));
        const __m128 bound = least * _mm_set1_ps(relative) +
                             _mm_set1_ps(snapped + roundings * static_cast<float>(reach));
        return _mm_movemask_ps(_mm_and_ps(_mm_cmple_ps(counted, bound), inside));
    }

    // The bits of PLACES that tell of the crossing.
    static int crossingBits(__m128 crossing) {
        const __m128 ends = _mm_setr_ps(SL_PAST_ONE2, SL_PAST_ONE, SL_PAST_ONE, -SL_ZERO);
        return _mm_movemask_ps(areInside(_mm_movelh_ps(crossing, crossing), ends)) << 4;
    }

    TwoVec3 ab;
    TwoVec3 cd;
    TwoVec3 start; // a, twice
    TwoVec3 line;  // from a to b, twice
    Two lineSquare;
    TwoVec3 normal; // of both lines, twice and not normalised
    Two normalSquare;
    Two volume;        // of the box along both lines and from a to c, with its sign
    double toC;        // squared
    double toD;        // squared
    double fromOrigin; // of a, squared
    double reach;      // squares together that no squared coordinate is much greater than
};

} // namespace

#ifdef TRUNNION_WIDE_VECTORS

namespace {

// The same body for processors with 32 vector registers instead of 16, where it need not go through
// memory.
[[gnu::flatten, gnu::target("avx512f,avx512vl,avx512dq")]] bool
measureInRegisters(const float *a, const float *b, const float *c, const float *d, float *t1,
                   float *t2, float *dist) {
    const SkewSegments segments(a, b, c, d);
    return segments.areClearlySkew() && segments.measure(t1, t2, dist);
}

const bool hasManyRegisters = widestVectors() == VectorWidth::bits512;

} // namespace

#endif

bool measureSkewSegments(const float *a, const float *b, const float *c, const float *d, float *t1,
                         float *t2, float *dist) {
#ifdef TRUNNION_WIDE_VECTORS
    if (hasManyRegisters) {
        return measureInRegisters(a, b, c, d, t1, t2, dist);
    }
#endif
    const SkewSegments segments(a, b, c, d);
    return segments.areClearlySkew() && segments.measure(t1, t2, dist);
}

} // namespace trunnion::detail

#else

namespace trunnion::detail {

bool measureSkewSegments(const float * /*a*/, const float * /*b*/, const float * /*c*/,
                         const float * /*d*/, float * /*t1*/, float * /*t2*/, float * /*dist*/) {
    return false;
}

} // namespace trunnion::detail

#endif
