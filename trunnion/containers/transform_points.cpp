// A matrix applied to many points at once, in as many ways as the processor may have vectors. The
// body is written once, over blocks that the compiler turns into vectors of the width at hand.
#include "trunnion/containers/detail/transform_points.h"

#include <cstddef>
#include <limits>

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
inline __attribute__((always_inline)) float roundToFloat(double value) {
    constexpr float greatest = std::numeric_limits<float>::max();
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

VectorWidth widestVectors() {
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512dq")) {
        return VectorWidth::bits512;
    }
    return __builtin_cpu_supports("avx2") ? VectorWidth::bits256 : VectorWidth::plain;
}

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
        transformEach(rows, points, count);
        break;
    }
}

#else

VectorWidth widestVectors() {
    return VectorWidth::plain;
}

void transformPoints(const float *m, bool moves, float *points, int count, VectorWidth /*width*/) {
    transformEach(rowsOf(m, moves), points, count);
}

#endif

} // namespace trunnion::detail
