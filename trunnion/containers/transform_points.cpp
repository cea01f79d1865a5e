// A matrix applied to many points at once, in as many ways as the processor may have vectors:
// blocks of points are taken apart into their axes, moved, and put together again. Written with the
// processor's instructions, since what the compiler makes of plain loops is half as fast.
#include "trunnion/containers/detail/transform_points.h"

#include <cstddef>
#include <limits>

#if defined(TRUNNION_WIDE_VECTORS)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "trunnion/containers/detail/slot_facts.h"
#include "trunnion/geometry/detail/vec.h"

namespace trunnion::detail {

namespace {

// Three rows of four, in the order of the sums.
struct Rows {
    double at[3][4];
};

Rows rowsOf(const float *m, bool moves) {
    Rows rows{};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column) {
            rows.at[row][column] = m[row + 4 * column];
        }
        // The fourth coordinate, 0 or 1, is multiplied like the others: it turns an infinite
        // element into a NaN.
        rows.at[row][3] *= moves ? 1.0 : 0.0;
    }
    return rows;
}

constexpr float greatest = std::numeric_limits<float>::max();

void transformEach(const Rows &rows, float *points, int count) {
    const auto &r = rows.at;
    for (float *end = points + static_cast<std::ptrdiff_t>(count) * 3; points != end; points += 3) {
        if (points[0] > pointLiveLimit) {
            const double x = points[0];
            const double y = points[1];
            const double z = points[2];
            for (int row = 0; row < 3; ++row) {
                points[row] =
                    roundToFloat(r[row][0] * x + r[row][1] * y + r[row][2] * z + r[row][3]);
            }
        }
    }
}

#if defined(__SSE2__)

// Infinities brought back to the greatest floats. A NaN stands second, and of two numbers that
// cannot be compared the second is taken.
inline __m128 finite(__m128 sums) {
    return _mm_min_ps(_mm_set1_ps(greatest), _mm_max_ps(_mm_set1_ps(-greatest), sums));
}

// Four values of one axis as doubles.
struct FourDoubles {
    explicit FourDoubles(__m128 values)
        : low(_mm_cvtps_pd(values)), high(_mm_cvtps_pd(_mm_movehl_ps(values, values))) {}

    __m128d low;
    __m128d high;
};

// A row of the matrix, each element twice.
class WideRow {
public:
    explicit WideRow(const double *row) {
        for (int column = 0; column < 4; ++column) {
            at[column] = _mm_set1_pd(row[column]);
        }
    }
    __m128 times(const FourDoubles &x, const FourDoubles &y, const FourDoubles &z) const {
        const __m128 sums = _mm_movelh_ps(_mm_cvtpd_ps(sum(x.low, y.low, z.low)),
                                          _mm_cvtpd_ps(sum(x.high, y.high, z.high)));
        return finite(sums);
    }

private:
    __m128d sum(__m128d x, __m128d y, __m128d z) const {
        const __m128d inPlane = _mm_add_pd(_mm_mul_pd(at[0], x), _mm_mul_pd(at[1], y));
        return _mm_add_pd(_mm_add_pd(inPlane, _mm_mul_pd(at[2], z)), at[3]);
    }

    __m128d at[4];
};

// For each bit of `mask` that of `ifSet` or of `ifNot`.
inline __m128 select(__m128 mask, __m128 ifSet, __m128 ifNot) {
    return _mm_or_ps(_mm_and_ps(mask, ifSet), _mm_andnot_ps(mask, ifNot));
}

// Four points, axis by axis.
struct FourPoints {
    __m128 x;
    __m128 y;
    __m128 z;
};

inline FourPoints loadFour(const float *points) {
    const __m128 a = _mm_loadu_ps(points);                           // x0 y0 z0 x1
    const __m128 b = _mm_loadu_ps(points + 4);                       // y1 z1 x2 y2
    const __m128 c = _mm_loadu_ps(points + 8);                       // z2 x3 y3 z3
    const __m128 xy = _mm_shuffle_ps(b, c, _MM_SHUFFLE(2, 1, 3, 2)); // x2 y2 x3 y3
    const __m128 yz = _mm_shuffle_ps(a, b, _MM_SHUFFLE(1, 0, 2, 1)); // y0 z0 y1 z1
    return {_mm_shuffle_ps(a, xy, _MM_SHUFFLE(2, 0, 3, 0)),
            _mm_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0)),
            _mm_shuffle_ps(yz, c, _MM_SHUFFLE(3, 0, 3, 1))};
}

inline void storeFour(float *points, const FourPoints &four) {
    const __m128 xy = _mm_shuffle_ps(four.x, four.y, _MM_SHUFFLE(2, 0, 2, 0)); // x0 x2 y0 y2
    const __m128 yz = _mm_shuffle_ps(four.y, four.z, _MM_SHUFFLE(3, 1, 3, 1)); // y1 y3 z1 z3
    const __m128 zx = _mm_shuffle_ps(four.z, four.x, _MM_SHUFFLE(3, 1, 2, 0)); // z0 z2 x1 x3
    _mm_storeu_ps(points, _mm_shuffle_ps(xy, zx, _MM_SHUFFLE(2, 0, 2, 0)));
    _mm_storeu_ps(points + 4, _mm_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0)));
    _mm_storeu_ps(points + 8, _mm_shuffle_ps(zx, yz, _MM_SHUFFLE(3, 1, 3, 1)));
}

// Stores the moved points where those held are live.
inline void storeLive(float *points, const FourPoints &held, FourPoints moved) {
    const __m128 live = _mm_cmpgt_ps(held.x, _mm_set1_ps(pointLiveLimit));
    if (_mm_movemask_ps(live) != 0b1111) {
        moved = {select(live, moved.x, held.x), select(live, moved.y, held.y),
                 select(live, moved.z, held.z)};
    }
    storeFour(points, moved);
}

// The same as transformEach for four points at a time, without a branch for each.
void transform128(const Rows &rows, float *points, int count) {
    const WideRow wide[3] = {WideRow(rows.at[0]), WideRow(rows.at[1]), WideRow(rows.at[2])};
    float *const lastFour = points + static_cast<std::ptrdiff_t>(count / 4) * 12;
    for (; points != lastFour; points += 12) {
        const FourPoints held = loadFour(points);
        const FourDoubles x(held.x);
        const FourDoubles y(held.y);
        const FourDoubles z(held.z);
        storeLive(points, held,
                  {wide[0].times(x, y, z), wide[1].times(x, y, z), wide[2].times(x, y, z)});
    }
    transformEach(rows, points, count % 4);
}

#else

void transform128(const Rows &rows, float *points, int count) {
    transformEach(rows, points, count);
}

#endif

#ifdef TRUNNION_WIDE_VECTORS

// A row of the matrix applied to four points.
__attribute__((target("avx2"))) inline __m128 timesRow256(const __m256d *row, __m256d x, __m256d y,
                                                          __m256d z) {
    return finite(_mm256_cvtpd_ps(((row[0] * x + row[1] * y) + row[2] * z) + row[3]));
}

__attribute__((target("avx2"))) void transform256(const Rows &rows, float *points, int count) {
    __m256d wide[3][4];
    for (int i = 0; i < 12; ++i) {
        wide[i / 4][i % 4] = _mm256_set1_pd(rows.at[i / 4][i % 4]);
    }
    float *const lastFour = points + static_cast<std::ptrdiff_t>(count / 4) * 12;
    for (; points != lastFour; points += 12) {
        const FourPoints held = loadFour(points);
        const __m256d x = _mm256_cvtps_pd(held.x);
        const __m256d y = _mm256_cvtps_pd(held.y);
        const __m256d z = _mm256_cvtps_pd(held.z);
        storeLive(points, held,
                  {timesRow256(wide[0], x, y, z), timesRow256(wide[1], x, y, z),
                   timesRow256(wide[2], x, y, z)});
    }
    _mm256_zeroupper();
    transformEach(rows, points, count % 4);
}

// Which of the 48 floats in three vectors stand where in a new one: the first choice is among the
// first two vectors, the second takes what it wants from that one and the rest from the third.
struct Choice {
    int fromTwo[16];
    int fromThird[16];
};

// Axis `axis` of 16 points that stand one behind the other.
constexpr Choice axisChoice(int axis) {
    Choice choice{};
    for (int i = 0; i < 16; ++i) {
        const int from = 3 * i + axis;
        choice.fromTwo[i] = from % 32;
        choice.fromThird[i] = from < 32 ? i : from - 16;
    }
    return choice;
}

// The `part`th third of such points from their three axes.
constexpr Choice partChoice(int part) {
    Choice choice{};
    for (int i = 0; i < 16; ++i) {
        const int point = (16 * part + i) / 3;
        const int axis = (16 * part + i) % 3;
        choice.fromTwo[i] = point + 16 * (axis % 2);
        choice.fromThird[i] = axis < 2 ? i : 16 + point;
    }
    return choice;
}

constexpr Choice axisChoices[3] = {axisChoice(0), axisChoice(1), axisChoice(2)};
constexpr Choice partChoices[3] = {partChoice(0), partChoice(1), partChoice(2)};

__attribute__((target("avx512f"))) inline __m512 choose(const Choice &choice, const __m512 *three) {
    const __m512i fromTwo = _mm512_loadu_si512(choice.fromTwo);
    const __m512i fromThird = _mm512_loadu_si512(choice.fromThird);
    return _mm512_permutex2var_ps(_mm512_permutex2var_ps(three[0], fromTwo, three[1]), fromThird,
                                  three[2]);
}

// One half of 16 values as doubles. (The form with a mask, of all, is the one that GCC 12 does not
// warn of.)
template <int half>
__attribute__((target("avx512f,avx512dq"))) inline __m512d widened(__m512 values) {
    return _mm512_maskz_cvtps_pd(0xFF, _mm512_maskz_extractf32x8_ps(0xFF, values, half));
}

// A row of the matrix applied to eight points.
__attribute__((target("avx512f"))) inline __m256 timesRow512(const __m512d *row, const __m512d *p) {
    const __m512d sum = ((row[0] * p[0] + row[1] * p[1]) + row[2] * p[2]) + row[3];
    return _mm256_min_ps(_mm256_set1_ps(greatest), _mm256_max_ps(_mm256_set1_ps(-greatest),
                                                                 _mm512_maskz_cvtpd_ps(0xFF, sum)));
}

__attribute__((target("avx512f,avx512vl,avx512dq"))) void transform512(const Rows &rows,
                                                                       float *points, int count) {
    __m512d wide[3][4];
    for (int i = 0; i < 12; ++i) {
        wide[i / 4][i % 4] = _mm512_set1_pd(rows.at[i / 4][i % 4]);
    }
    float *const lastSixteen = points + static_cast<std::ptrdiff_t>(count / 16) * 48;
    for (; points != lastSixteen; points += 48) {
        const __m512 three[3] = {_mm512_loadu_ps(points), _mm512_loadu_ps(points + 16),
                                 _mm512_loadu_ps(points + 32)};
        __m512 axes[3];
        __m512d low[3];
        __m512d high[3];
#pragma GCC unroll 3
        for (int axis = 0; axis < 3; ++axis) {
            axes[axis] = choose(axisChoices[axis], three);
            low[axis] = widened<0>(axes[axis]);
            high[axis] = widened<1>(axes[axis]);
        }
        const __mmask16 live =
            _mm512_cmp_ps_mask(axes[0], _mm512_set1_ps(pointLiveLimit), _CMP_GT_OQ);
#pragma GCC unroll 3
        for (int axis = 0; axis < 3; ++axis) {
            const __m512 moved = _mm512_maskz_insertf32x8(
                0xFFFF, _mm512_castps256_ps512(timesRow512(wide[axis], low)),
                timesRow512(wide[axis], high), 1);
            axes[axis] = _mm512_mask_mov_ps(axes[axis], live, moved);
        }
#pragma GCC unroll 3
        for (int part = 0; part < 3; ++part) {
            _mm512_storeu_ps(points + std::ptrdiff_t{16} * part, choose(partChoices[part], axes));
        }
    }
    _mm256_zeroupper();
    transformEach(rows, points, count % 16);
}

#endif

} // namespace

#ifdef TRUNNION_WIDE_VECTORS

void transformPoints(const float *m, bool moves, float *points, int count, VectorWidth width) {
    const Rows rows = rowsOf(m, moves);
    switch (width) {
    case VectorWidth::bits512:
        transform512(rows, points, count);
        break;
    case VectorWidth::bits256:
        transform256(rows, points, count);
        break;
    default:
        transform128(rows, points, count);
        break;
    }
}

#else

void transformPoints(const float *m, bool moves, float *points, int count, VectorWidth /*width*/) {
    transform128(rowsOf(m, moves), points, count);
}

#endif

} // namespace trunnion::detail
