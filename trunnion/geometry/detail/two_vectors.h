// Two vectors of doubles side by side, so that one instruction works on both. Arithmetic is as
// plain as that of Vec3 and gives the same bits; only where the processor has such instructions.
#pragma once

#if defined(__SSE2__)
#include <emmintrin.h>

#include "trunnion/geometry/detail/vec.h"

namespace trunnion::detail {

using Two = __m128d;

inline Two twice(double value) {
    return _mm_set1_pd(value);
}

struct TwoVec3 {
    Two x, y, z;
};

inline TwoVec3 operator-(const TwoVec3 &a, const TwoVec3 &b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline TwoVec3 operator*(Two s, const TwoVec3 &v) {
    return {s * v.x, s * v.y, s * v.z};
}
inline Two dot(const TwoVec3 &a, const TwoVec3 &b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline TwoVec3 cross(const TwoVec3 &a, const TwoVec3 &b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// The first ones of two pairs, and the second ones.
inline TwoVec3 firsts(const TwoVec3 &a, const TwoVec3 &b) {
    return {_mm_unpacklo_pd(a.x, b.x), _mm_unpacklo_pd(a.y, b.y), _mm_unpacklo_pd(a.z, b.z)};
}
inline TwoVec3 seconds(const TwoVec3 &a, const TwoVec3 &b) {
    return {_mm_unpackhi_pd(a.x, b.x), _mm_unpackhi_pd(a.y, b.y), _mm_unpackhi_pd(a.z, b.z)};
}
inline Vec3 first(const TwoVec3 &v) {
    return {_mm_cvtsd_f64(v.x), _mm_cvtsd_f64(v.y), _mm_cvtsd_f64(v.z)};
}

inline TwoVec3 load3(const float *a, const float *b) {
    const auto plane = [](const float *p) {
        return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i *>(p)));
    };
    const __m128 xy = _mm_unpacklo_ps(plane(a), plane(b));
    const __m128 z = _mm_unpacklo_ps(_mm_load_ss(a + 2), _mm_load_ss(b + 2));
    return {_mm_cvtps_pd(xy), _mm_cvtps_pd(_mm_movehl_ps(xy, xy)), _mm_cvtps_pd(z)};
}

// Four numbers in the range of float: two pairs, rounded.
inline __m128 toFloats(Two a, Two b) {
    return _mm_movelh_ps(_mm_cvtpd_ps(a), _mm_cvtpd_ps(b));
}

} // namespace trunnion::detail
#endif
