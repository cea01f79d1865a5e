#include "trunnion/persistence/detail/lzw_block.h"

namespace trunnion::detail {

namespace {

std::uint32_t readNumber(const unsigned char *bytes) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

void writeNumber(std::uint32_t number, unsigned char *bytes) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(number >> (8 * i));
    }
}

// Behind a clear code the first code stands for one byte and each further one for at most one byte
// more than the code before it, until no code can follow because the decoder's table is full.
std::uint64_t longestExpansion(std::uint64_t packedBytes) {
    constexpr std::uint64_t shortestCode = 9; // bits
    constexpr std::uint64_t longestRun = 1 + 4128 - 258;
    const auto inOneRun = [](std::uint64_t codes) { return codes * (codes + 1) / 2; };
    const std::uint64_t codes = packedBytes * 8 / shortestCode;
    return codes / longestRun * inOneRun(longestRun) + inOneRun(codes % longestRun);
}

} // namespace

LzwHead readLzwHead(const unsigned char bytes[lzwHeadSize]) {
    return {readNumber(bytes), readNumber(bytes + 4), readNumber(bytes + 8)};
}

void writeLzwHead(const LzwHead &head, unsigned char bytes[lzwHeadSize]) {
    writeNumber(head.decodedLength, bytes);
    writeNumber(head.packedLength, bytes + 4);
    writeNumber(head.checksum, bytes + 8);
}

bool isPossibleLzwHead(const LzwHead &head, std::uint64_t packedLength) {
    return packedLength >= lzwHeadSize && head.packedLength == packedLength &&
           head.decodedLength <= lzwDecodedMaximum &&
           head.decodedLength <= longestExpansion(packedLength - lzwHeadSize);
}

} // namespace trunnion::detail
