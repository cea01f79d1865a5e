// CRC-32 sixteen bytes at a time, after "slicing" (M. Kounavis, F. Berry: A systematic approach to
// building high performance, software-based, CRC generators, 2005), and where the processor can,
// sixty-four by its own product of polynomials.
#include "trunnion/persistence/detail/crc32.h"

#include <array>
#include <cstring>
#include <utility>

#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h>
#endif

namespace trunnion::detail {

namespace {

constexpr std::size_t sliceCount = 16;

using Table = std::array<std::uint32_t, 256>;

// tables[k][b] is what the byte b does to the checksum when k bytes follow it.
constexpr std::array<Table, sliceCount> makeTables() {
    std::array<Table, sliceCount> made{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1U) != 0 ? 0xEDB88320U ^ (crc >> 1) : crc >> 1;
        }
        made[0][byte] = crc;
    }
    for (std::size_t k = 1; k < sliceCount; ++k) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = made[k - 1][byte];
            made[k][byte] = made[0][before & 0xFFU] ^ (before >> 8);
        }
    }
    return made;
}

constexpr std::array<Table, sliceCount> tables = makeTables();

std::uint32_t nextByte(std::uint32_t crc, unsigned char byte) {
    return tables[0][(crc ^ byte) & 0xFFU] ^ (crc >> 8);
}

// The checksum so far meets the first four bytes; the others are looked up beside it.
template <std::size_t... i>
std::uint32_t nextSlice(std::uint32_t crc, const unsigned char *bytes, std::index_sequence<i...>) {
    const std::uint32_t behind = (tables[sliceCount - 5 - i][bytes[4 + i]] ^ ...);
    return behind ^ tables[15][(crc ^ bytes[0]) & 0xFFU] ^
           tables[14][((crc >> 8) ^ bytes[1]) & 0xFFU] ^
           tables[13][((crc >> 16) ^ bytes[2]) & 0xFFU] ^ tables[12][(crc >> 24) ^ bytes[3]];
}

} // namespace

namespace {

// `crc` carried on over bytes.
std::uint32_t sliced(std::uint32_t crc, const unsigned char *bytes, std::size_t length) {
    for (; length >= sliceCount; length -= sliceCount, bytes += sliceCount) {
        crc = nextSlice(crc, bytes, std::make_index_sequence<sliceCount - 4>());
    }
    for (; length > 0; --length, ++bytes) {
        crc = nextByte(crc, *bytes);
    }
    return crc;
}

#if defined(__GNUC__) && defined(__x86_64__)

// By the processor's product of polynomials (V. Gopal et al.: Fast CRC computation for generic
// polynomials using PCLMULQDQ instruction, 2009): a part of 16 bytes may be replaced by one some
// distance behind it that leaves the same remainder. Four of them run side by side, and at the end
// stands one, whose checksum is that of the whole.

// x to the power of `power` modulo the polynomial, in the order of bits of the products.
constexpr std::uint64_t powerOfX(int power) {
    std::uint32_t remainder = 0x80000000U;
    for (; power > 0; --power) {
        remainder = (remainder & 1U) != 0 ? 0xEDB88320U ^ (remainder >> 1) : remainder >> 1;
    }
    return std::uint64_t{remainder} << 1;
}

constexpr std::size_t partBytes = 16;
constexpr std::size_t parts = 4;
constexpr std::size_t stepBytes = parts * partBytes;

__attribute__((target("pclmul,sse2"))) __m128i load(const unsigned char *bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
}

// `next` and what `part`, `distance` bytes before it, comes to there.
template <int distance>
__attribute__((target("pclmul,sse2"))) __m128i folded(__m128i part, __m128i next) {
    constexpr auto low = static_cast<long long>(powerOfX(8 * distance + 32));
    constexpr auto high = static_cast<long long>(powerOfX(8 * distance - 32));
    const __m128i factors = _mm_set_epi64x(high, low);
    const __m128i lowProduct = _mm_clmulepi64_si128(part, factors, 0x00);
    const __m128i highProduct = _mm_clmulepi64_si128(part, factors, 0x11);
    return _mm_xor_si128(_mm_xor_si128(lowProduct, highProduct), next);
}

// `crc` carried on over whole steps, at least one.
__attribute__((target("pclmul,sse2"))) std::uint32_t
multiplied(std::uint32_t crc, const unsigned char *bytes, std::size_t length) {
    __m128i part[parts];
    for (std::size_t i = 0; i < parts; ++i) {
        part[i] = load(bytes + i * partBytes);
    }
    part[0] = _mm_xor_si128(part[0], _mm_cvtsi32_si128(static_cast<int>(crc)));
    for (const unsigned char *at = bytes + stepBytes; at != bytes + length; at += stepBytes) {
        for (std::size_t i = 0; i < parts; ++i) {
            part[i] = folded<stepBytes>(part[i], load(at + i * partBytes));
        }
    }
    for (std::size_t i = 1; i < parts; ++i) {
        part[i] = folded<partBytes>(part[i - 1], part[i]);
    }
    unsigned char last[partBytes];
    std::memcpy(last, &part[parts - 1], partBytes);
    return sliced(0, last, partBytes);
}

bool canMultiply() {
    static const bool can = __builtin_cpu_supports("pclmul") != 0;
    return can;
}

#else

constexpr std::size_t stepBytes = 1;

std::uint32_t multiplied(std::uint32_t crc, const unsigned char * /*bytes*/,
                         std::size_t /*length*/) {
    return crc;
}

bool canMultiply() {
    return false;
}

#endif

} // namespace

std::uint32_t crc32(const unsigned char *bytes, std::size_t length) {
    std::uint32_t crc = 0xFFFFFFFFU;
    const std::size_t inSteps = length - length % stepBytes;
    if (inSteps > 0 && canMultiply()) {
        crc = multiplied(crc, bytes, inSteps);
        bytes += inSteps;
        length -= inSteps;
    }
    return sliced(crc, bytes, length) ^ 0xFFFFFFFFU;
}

} // namespace trunnion::detail
