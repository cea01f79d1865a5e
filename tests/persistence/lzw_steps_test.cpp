// The steps of the codec one by one, and what its blocks are taken for before they are decoded.
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
    std::vector<unsigned short> encodeTable = std::vector<unsigned short>(lzw::encodePlaces);
    std::vector<std::uint32_t> encodeStrings = std::vector<std::uint32_t>(lzw::codeLimit);

    LzwAccess() {
        codec.decodeTable = decodeTable.data();
        codec.encodeTable = encodeTable.data();
        codec.encodeStrings = encodeStrings.data();
    }

    unsigned nextCode() const { return codec.nextCode; }
    unsigned codeWidth() const { return codec.codeWidth; }

    void startDecoding() { codec.Decode_InitStringTable(); }
    void addDecoded(unsigned short prefix, unsigned short suffix) {
        codec.Decode_AddStringToTable(prefix, suffix);
    }
    bool isDecoded(unsigned short code) const { return codec.Decode_IsInTable(code); }
    char firstChar(unsigned short code) const {
        return static_cast<char>(codec.Decode_GetFirstChar(code));
    }

    void startEncoding() { codec.Encode_InitStringTable(); }
    bool isEncoded(unsigned short prefix, unsigned short symbol) {
        return codec.Encode_IsInTable(prefix, symbol);
    }
    unsigned foundCode() const { return codec.encodeFound; }
    void addEncoded(unsigned short prefix, unsigned short symbol) {
        ASSERT_FALSE(codec.Encode_IsInTable(prefix, symbol));
        codec.Encode_AddStringToTable(prefix, symbol);
    }
    void writeCode(unsigned char *at, unsigned bit, unsigned width, unsigned code) {
        codec.outputPos = at;
        codec.bitPos = static_cast<unsigned char>(bit);
        codec.codeWidth = static_cast<unsigned char>(width);
        codec.Encode_WriteIndex(code);
    }
    const unsigned char *writtenTo() const { return codec.outputPos; }
    unsigned writtenBit() const { return codec.bitPos; }

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

TEST(LzwSteps, EncoderWidensOneEntryBehindTheDecoder) {
    LzwAccess encoder;
    LzwAccess decoder;
    encoder.startEncoding();
    decoder.startDecoding();
    EXPECT_EQ(encoder.nextCode(), 258U);
    EXPECT_EQ(encoder.codeWidth(), 9U);
    for (unsigned made = 0; encoder.nextCode() < 4096; ++made) {
        encoder.addEncoded(static_cast<unsigned short>(made / 256), made % 256);
        decoder.addDecoded('a', 'b');
        const unsigned next = encoder.nextCode();
        ASSERT_EQ(encoder.codeWidth(), 9U + (next > 512) + (next > 1024) + (next > 2048)) << next;
        ASSERT_EQ(decoder.codeWidth(), 9U + (next >= 512) + (next >= 1024) + (next >= 2048));
    }
    EXPECT_EQ(decoder.codeWidth(), 12U);
}

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

TEST(LzwSteps, TablesKnowWhatWasAdded) {
    LzwAccess codec;
    codec.decodeTable['a'] = {0xFFFF, 'a'};
    codec.startDecoding();
    EXPECT_TRUE(codec.isDecoded(255));
    EXPECT_FALSE(codec.isDecoded(258));
    codec.addDecoded('a', 'b');
    codec.addDecoded(258, 'c');
    EXPECT_TRUE(codec.isDecoded(259));
    EXPECT_FALSE(codec.isDecoded(260));
    EXPECT_EQ(codec.firstChar('a'), 'a');
    EXPECT_EQ(codec.firstChar(259), 'a');

    codec.startEncoding();
    codec.addEncoded('a', 'b');
    codec.addEncoded('b', 'a');
    EXPECT_TRUE(codec.isEncoded('a', 'b'));
    EXPECT_EQ(codec.foundCode(), 258U);
    EXPECT_TRUE(codec.isEncoded('b', 'a'));
    EXPECT_EQ(codec.foundCode(), 259U);
    EXPECT_FALSE(codec.isEncoded(258, 'a'));
    codec.startEncoding();
    EXPECT_FALSE(codec.isEncoded('a', 'b'));
}

TEST(LzwSteps, CodesSpillIntoTheNextBytes) {
    unsigned char bytes[8] = {0x15};
    LzwAccess codec;
    codec.writeCode(bytes, 5, 9, 0x1FF);
    EXPECT_EQ(codec.writtenTo(), bytes + 1);
    EXPECT_EQ(codec.writtenBit(), 6U);
    EXPECT_EQ(bytes[0], 0xF5); // the five bits in front stay
    EXPECT_EQ(bytes[1], 0x3F);
    EXPECT_EQ(bytes[2], 0x00);
    codec.writeCode(bytes + 1, 7, 12, 0xABC);
    EXPECT_EQ(codec.writtenTo(), bytes + 3);
    EXPECT_EQ(codec.writtenBit(), 3U);
    EXPECT_EQ(bytes[1], 0x3F);
    EXPECT_EQ(bytes[2], 0x5E);
    EXPECT_EQ(bytes[3], 0x05);
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
