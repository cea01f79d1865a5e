// CRC-32 sixteen bytes at a time, after "slicing" (M. Kounavis, F. Berry: A systematic approach to
// building high performance, software-based, CRC generators, 2005).
#include "trunnion/persistence/detail/crc32.h"

#include <array>
#include <utility>

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

std::uint32_t crc32(const unsigned char *bytes, std::size_t length) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (; length >= sliceCount; length -= sliceCount, bytes += sliceCount) {
        crc = nextSlice(crc, bytes, std::make_index_sequence<sliceCount - 4>());
    }
    for (; length > 0; --length, ++bytes) {
        crc = nextByte(crc, *bytes);
    }
    return crc ^ 0xFFFFFFFFU;
}

} // namespace trunnion::detail
