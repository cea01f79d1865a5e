// One number compared with several at once.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace trunnion::detail {

// Which of `count` numbers equal `sought`, for processors without the instructions used below.
template <class Number>
unsigned int equalOneByOne(const Number *numbers, unsigned int count, Number sought) {
    unsigned int equal = 0;
    for (unsigned int i = 0; i < count; ++i) {
        equal |= numbers[i] == sought ? 1U << i : 0U;
    }
    return equal;
}

// Which of eight numbers equal `sought`: bit i of the result tells it of numbers[i].
inline unsigned int equalOfEight(const int *numbers, int sought) {
#if defined(__SSE2__)
    const auto isEqual = [numbers, wanted = _mm_set1_epi32(sought)](int from) {
        const auto *four = reinterpret_cast<const __m128i *>(numbers + from);
        return _mm_cmpeq_epi32(_mm_loadu_si128(four), wanted);
    };
    const __m128i halves = _mm_packs_epi32(isEqual(0), isEqual(4));
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(halves, halves))) & 0xFFU;
#else
    return equalOneByOne(numbers, 8, sought);
#endif
}

// The same for sixteen bytes.
inline unsigned int equalOfSixteen(const std::uint8_t *bytes, std::uint8_t sought) {
#if defined(__SSE2__)
    const __m128i held = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
    const __m128i wanted = _mm_set1_epi8(static_cast<char>(sought));
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(held, wanted)));
#else
    return equalOneByOne(bytes, 16, sought);
#endif
}

// How many of the eight lowest bits are set, by few steps where the processor has no instruction
// for it that every build may use.
constexpr int countOfEight(unsigned int bits) {
    bits = (bits & 0x55U) + (bits >> 1 & 0x55U);
    bits = (bits & 0x33U) + (bits >> 2 & 0x33U);
    return static_cast<int>((bits + (bits >> 4)) & 0xFU);
}

} // namespace trunnion::detail
