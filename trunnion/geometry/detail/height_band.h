// Which edges of a polygon come near a height, many at a time.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "trunnion/geometry/scalars.h"

namespace trunnion::detail {

// The heights up to about twice SL_ZERO from y, and never less than SL_ZERO where floats lie that
// close. A NaN leaves no height outside.
class HeightBand {
public:
    // Points that are looked at together.
    static constexpr int mostPoints = 64;

    explicit HeightBand(float y)
        : low(static_cast<float>(static_cast<double>(y) - 2.0 * SL_ZERO_D)),
          high(static_cast<float>(static_cast<double>(y) + 2.0 * SL_ZERO_D)) {}

    // For the `count` edges between `count` + 1 points, 1 to mostPoints - 1 of them: bit i is 0 if
    // the edge from point i on lies wholly above the band or wholly below it. Heights that are a
    // NaN lie in the band.
    std::uint64_t edgesNear(const float (*pts)[2], int count) const {
        const Sides sides = sidesOf(pts, count + 1);
        const std::uint64_t away =
            (sides.above & (sides.above >> 1)) | (sides.below & (sides.below >> 1));
        return ~away & ((std::uint64_t{1} << count) - 1);
    }

private:
    // A bit for each point.
    struct Sides {
        std::uint64_t above;
        std::uint64_t below;
    };

    Sides sidesOf(const float (*pts)[2], int count) const {
        Sides sides{0, 0};
        int i = 0;
#if defined(__SSE2__)
        const __m128 lows = _mm_set1_ps(low);
        const __m128 highs = _mm_set1_ps(high);
        const auto bits = [](__m128 mask) {
            return static_cast<std::uint64_t>(static_cast<unsigned int>(_mm_movemask_ps(mask)));
        };
        for (; i + 4 <= count; i += 4) {
            const __m128 y =
                _mm_shuffle_ps(_mm_loadu_ps(pts[i]), _mm_loadu_ps(pts[i + 2]), 0b11'01'11'01);
            sides.above |= bits(_mm_cmpgt_ps(y, highs)) << i;
            sides.below |= bits(_mm_cmplt_ps(y, lows)) << i;
        }
#endif
        for (; i < count; ++i) {
            sides.above |= static_cast<std::uint64_t>(pts[i][1] > high) << i;
            sides.below |= static_cast<std::uint64_t>(pts[i][1] < low) << i;
        }
        return sides;
    }

    float low;
    float high;
};

} // namespace trunnion::detail
