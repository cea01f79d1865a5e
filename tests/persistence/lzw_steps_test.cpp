// Steps of the codec that no block reaches, and what its blocks are taken for before they are
// decoded.
#include "trunnion/persistence/detail/lzw_steps.h"

#include <vector>

#include <gtest/gtest.h>

#include "trunnion/persistence/detail/crc32.h"
#include "trunnion/persistence/detail/lzw_block.h"

namespace trunnion::detail {

// A codec with tables of its own, whose private steps the tests take.
struct LzwAccess {
    FCLzw codec;
    std::vector<FCLzw::DecodeEntry> decodeTable = std::vector<FCLzw::DecodeEntry>(lzw::decodeLimit);

    LzwAccess() { codec.decodeTable = decodeTable.data(); }

    unsigned nextCode() const { return codec.nextCode; }
    unsigned codeWidth() const { return codec.codeWidth; }

    void startDecoding() { codec.Decode_InitStringTable(); }
    void addDecoded(unsigned short prefix, unsigned short suffix) {
        codec.Decode_AddStringToTable(prefix, suffix);
    }

    std::vector<int> pixels(unsigned char *base, std::uint32_t width, std::uint32_t height,
                            std::uint32_t pitch, unsigned char symbolBits) {
        std::vector<int> symbols;
        codec.setSource(base, width, height, pitch, symbolBits);
        while (codec.hasSource()) {
            symbols.push_back(codec.Encode_GetNextPixel());
        }
        EXPECT_EQ(codec.sourceRow, base - static_cast<std::ptrdiff_t>((height - 1) * pitch));
        return symbols;
    }
};

} // namespace trunnion::detail

namespace {

using trunnion::detail::isPossibleLzwHead;
using trunnion::detail::LzwAccess;

TEST(LzwSteps, DecoderThrowsWhenItsTableIsFull) {
    LzwAccess decoder;
    decoder.startDecoding();
    while (decoder.nextCode() + 1 < 4128) {
        ASSERT_NO_THROW(decoder.addDecoded('a', 'b'));
    }
    EXPECT_EQ(decoder.codeWidth(), 12U);
    try {
        decoder.addDecoded('a', 'b');
        FAIL();
    } catch (int code) {
        EXPECT_EQ(code, 0);
    }
    EXPECT_EQ(decoder.nextCode(), 4127U);
}

TEST(LzwSteps, PixelsAreTakenRowByRowDownwardThroughMemory) {
    unsigned char rows[] = {0x01, 0x23, 0xFF, 0x45, 0x67, 0xFF, 0xA9, 0x80, 0xFF};
    unsigned char *const top = rows + 6;
    LzwAccess codec;
    EXPECT_EQ(codec.pixels(top, 9, 2, 3, 1),
              (std::vector<int>{1, 0, 1, 0, 1, 0, 0, 1, 1, /**/ 0, 1, 0, 0, 0, 1, 0, 1, 0}));
    EXPECT_EQ(codec.pixels(top, 3, 3, 3, 4),
              (std::vector<int>{0xA, 0x9, 0x8, /**/ 4, 5, 6, /**/ 0, 1, 2}));
    EXPECT_EQ(codec.pixels(top, 2, 3, 3, 8),
              (std::vector<int>{0xA9, 0x80, /**/ 0x45, 0x67, /**/ 0x01, 0x23}));
}

TEST(LzwBlock, ChecksumIsTheCommonOne) {
    EXPECT_EQ(trunnion::detail::crc32(reinterpret_cast<const unsigned char *>("123456789"), 9),
              0xCBF43926U);
}

// Without this a head of 12 bytes could have 2 GB allocated.
TEST(LzwBlock, HeadMayClaimNoMoreThanItsCodesExpandTo) {
    // Two codes of 9 bits take 18 bits: one byte, then two.
    EXPECT_TRUE(isPossibleLzwHead({3, 15, 0}, 15));
    EXPECT_FALSE(isPossibleLzwHead({4, 15, 0}, 15));
    EXPECT_FALSE(isPossibleLzwHead({3, 15, 0}, 16));
    EXPECT_FALSE(isPossibleLzwHead({0, 11, 0}, 11));
    EXPECT_FALSE(isPossibleLzwHead({0x7FFFFFFF, 1U << 20, 0}, 1U << 20));
    EXPECT_TRUE(isPossibleLzwHead({0x7FFFFFFF, 1U << 28, 0}, 1U << 28));
    EXPECT_FALSE(isPossibleLzwHead({0x80000000, 1U << 28, 0}, 1U << 28));
}

} // namespace
