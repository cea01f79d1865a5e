// The head of a compressed block, for those who look at a block without decoding it.
#pragma once

#include <cstdint>

namespace trunnion::detail {

// Bytes of a head.
inline constexpr std::uint32_t lzwHeadSize = 12;
// The most bytes that one block decodes to.
inline constexpr std::uint32_t lzwDecodedMaximum = 0x7FFFFFFF;

struct LzwHead {
    std::uint32_t decodedLength;
    std::uint32_t packedLength; // head and codes
    std::uint32_t checksum;     // CRC-32 of the decoded bytes
};

LzwHead readLzwHead(const unsigned char bytes[lzwHeadSize]);
void writeLzwHead(const LzwHead &head, unsigned char bytes[lzwHeadSize]);

// True if a block of `packedLength` bytes can have this head: the lengths agree, and so many codes
// can expand to so many bytes.
bool isPossibleLzwHead(const LzwHead &head, std::uint64_t packedLength);

} // namespace trunnion::detail
