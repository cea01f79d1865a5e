// A matrix applied to many points at once, in as many ways as the processor may have vectors. For
// wide vectors the body is written once, over blocks that the compiler turns into vectors of the
// width at hand; for those of two doubles, where its code is slower than a point after the other,
// it is written with the processor's instructions.
#include "trunnion/containers/detail/transform_points.h"

#include <cstddef>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "trunnion/containers/detail/slot_facts.h"

namespace trunnion::detail {

namespace {

constexpr int blockSize = 32;

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

// toFloat: rounding first and bringing infinities back then gives the same, on half the bits.
constexpr float greatest = std::numeric_limits<float>::max();
inline __attribute__((always_inline)) float roundToFloat(double value) {
    float rounded = static_cast<float>(value);
    rounded = rounded < -greatest ? -greatest : rounded;
    return rounded > greatest ? greatest : rounded;
}

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
        // A NaN stands second, and of two numbers that cannot be compared the second is taken.
        return _mm_min_ps(_mm_set1_ps(greatest), _mm_max_ps(_mm_set1_ps(-greatest), sums));
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

// The same as transformEach for four points at a time, without a branch for each.
void transform128(const Rows &rows, float *points, int count) {
    const WideRow wide[3] = {WideRow(rows.at[0]), WideRow(rows.at[1]), WideRow(rows.at[2])};
    const __m128 limit = _mm_set1_ps(pointLiveLimit);
    float *const lastFour = points + static_cast<std::ptrdiff_t>(count / 4) * 12;
    for (; points != lastFour; points += 12) {
        const FourPoints held = loadFour(points);
        const FourDoubles x(held.x);
        const FourDoubles y(held.y);
        const FourDoubles z(held.z);
        const __m128 live = _mm_cmpgt_ps(held.x, limit);
        FourPoints moved = {wide[0].times(x, y, z), wide[1].times(x, y, z), wide[2].times(x, y, z)};
        if (_mm_movemask_ps(live) != 0b1111) {
            moved = {select(live, moved.x, held.x), select(live, moved.y, held.y),
                     select(live, moved.z, held.z)};
        }
        storeFour(points, moved);
    }
    transformEach(rows, points, count % 4);
}

#else

void transform128(const Rows &rows, float *points, int count) {
    transformEach(rows, points, count);
}

#endif

#ifdef TRUNNION_WIDE_VECTORS

// The same for as many points as make full vectors, without branches.
inline __attribute__((always_inline)) void transformBlock(const Rows &rows, float *points) {
    float held[3][blockSize];
    float moved[3][blockSize];
    for (int i = 0; i < blockSize; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            held[axis][i] = points[3 * i + axis];
        }
    }
    for (int row = 0; row < 3; ++row) {
        const double *r = rows.at[row];
        for (int i = 0; i < blockSize; ++i) {
            const float sum =
                roundToFloat(r[0] * held[0][i] + r[1] * held[1][i] + r[2] * held[2][i] + r[3]);
            moved[row][i] = held[0][i] > pointLiveLimit ? sum : held[row][i];
        }
    }
    for (int i = 0; i < blockSize; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            points[3 * i + axis] = moved[axis][i];
        }
    }
}

inline __attribute__((always_inline)) void transformBlocks(const Rows &rows, float *points,
                                                           int count) {
    int done = 0;
    for (; count - done >= blockSize; done += blockSize) {
        transformBlock(rows, points + static_cast<std::ptrdiff_t>(done) * 3);
    }
    transformEach(rows, points + static_cast<std::ptrdiff_t>(done) * 3, count - done);
}

__attribute__((target("avx2"))) void transform256(const Rows &rows, float *points, int count) {
    transformBlocks(rows, points, count);
}
__attribute__((target("avx512f,avx512vl,avx512dq"))) void transform512(const Rows &rows,
                                                                       float *points, int count) {
    transformBlocks(rows, points, count);
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
