#include "trunnion/containers/detail/vector_width.h"

namespace trunnion::detail {

VectorWidth widestVectors() {
#ifdef TRUNNION_WIDE_VECTORS
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512dq")) {
        return VectorWidth::bits512;
    }
    if (__builtin_cpu_supports("avx2")) {
        return VectorWidth::bits256;
    }
#endif
    return VectorWidth::plain;
}

} // namespace trunnion::detail
