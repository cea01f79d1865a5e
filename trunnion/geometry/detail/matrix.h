// Layout of a matrix: float[16], column by column.
#pragma once

#include <cstddef>

namespace trunnion::detail {

inline constexpr int MATRIX_SIZE = 16;

// The four elements of a column, 0 to 3.
inline float *column(float *M, std::ptrdiff_t index) {
    return M + 4 * index;
}
inline const float *column(const float *M, std::ptrdiff_t index) {
    return M + 4 * index;
}

} // namespace trunnion::detail
