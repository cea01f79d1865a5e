// The codec against a plain decoder written from the description of the block, and with every kind
// of damage.
#include "trunnion/persistence/lzw.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"

namespace {

using namespace std::string_literals;

constexpr std::size_t headSize = 12;
constexpr unsigned clearCode = 256, endCode = 257;

std::string encoded(const std::string &text) {
    std::string source = text; // the operation takes bytes that it could change
    unsigned char *out = nullptr;
    const unsigned long length =
        FCLzw().LZW_Encode(reinterpret_cast<unsigned char *>(source.data()), source.size(), &out);
    const std::string block(reinterpret_cast<const char *>(out), length);
    FCLzw().FreeBufferM(&out);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(source, text);
    return block;
}

// Decodes from heap memory of exactly the block's size, so that a sanitizer sees the first byte too
// far. Nothing if the block is refused.
std::optional<std::string> decoded(const std::string &block) {
    const std::unique_ptr<unsigned char[]> exact(new unsigned char[block.size()]);
    std::memcpy(exact.get(), block.data(), block.size());
    unsigned char marker = 0;
    unsigned char *out = &marker;
    const unsigned long length = FCLzw().LZW_Decode(exact.get(), block.size(), &out);
    if (out == nullptr) {
        EXPECT_EQ(length, 0U);
        return std::nullopt;
    }
    std::string text(reinterpret_cast<const char *>(out), length);
    FCLzw().FreeBufferM(&out);
    return text;
}

std::uint32_t number(const std::string &bytes, std::size_t at) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

std::uint32_t plainCrc(const std::string &bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~crc;
}

// The text of a valid block, decoded with strings and single bits.
std::string plainlyDecoded(const std::string &block) {
    std::vector<std::string> table;
    std::string text, before;
    unsigned width = 9;
    for (std::size_t bit = headSize * 8;;) {
        unsigned code = 0;
        for (unsigned i = 0; i < width; ++i, ++bit) {
            code |= ((static_cast<unsigned char>(block.at(bit / 8)) >> (bit % 8)) & 1U) << i;
        }
        if (code == endCode) {
            return text;
        }
        if (code == clearCode) {
            table.resize(258);
            for (unsigned symbol = 0; symbol < 256; ++symbol) {
                table[symbol] = std::string(1, static_cast<char>(symbol));
            }
            before.clear();
            width = 9;
            continue;
        }
        if (!before.empty()) {
            table.push_back(before + (code < table.size() ? table[code][0] : before[0]));
        }
        before = table.at(code);
        text += before;
        if (table.size() == 512 || table.size() == 1024 || table.size() == 2048) {
            ++width;
        }
    }
}

// A block made of the given codes, in the widths that a decoder expects, with a right head.
std::string blockOf(const std::vector<unsigned> &codes, const std::string &text) {
    std::string packed;
    std::size_t bit = 0;
    unsigned width = 9;
    int made = 257; // the first code behind a clear code makes no entry
    for (const unsigned code : codes) {
        packed.resize((bit + width + 7) / 8);
        for (unsigned i = 0; i < width; ++i, ++bit) {
            packed[bit / 8] |= static_cast<char>(((code >> i) & 1U) << (bit % 8));
        }
        made = code == clearCode ? 257 : made + 1;
        width = made < 512 ? 9 : made < 1024 ? 10 : made < 2048 ? 11 : 12;
    }
    std::string head(headSize, '\0');
    const std::uint32_t fields[] = {static_cast<std::uint32_t>(text.size()),
                                    static_cast<std::uint32_t>(headSize + packed.size()),
                                    plainCrc(text)};
    std::memcpy(head.data(), fields, headSize);
    return head + packed;
}

// Bytes of `alphabet` different values.
std::string randomText(test::Random &random, std::size_t length, int alphabet) {
    std::string text(length, '\0');
    for (char &byte : text) {
        byte = static_cast<char>(random.integer(0, alphabet - 1));
    }
    return text;
}

std::string numberedLines(test::Random &random, std::size_t length) {
    std::string text;
    while (text.size() < length) {
        text += "N" + std::to_string(text.size()) + " G1 X" +
                std::to_string(random.real(-9.0F, 9.0F)) + " Y0.5\n";
    }
    return text.substr(0, length);
}

void expectRoundTrip(const std::string &text) {
    const std::string block = encoded(text);
    ASSERT_EQ(number(block, 0), text.size());
    ASSERT_EQ(number(block, 4), block.size());
    ASSERT_EQ(number(block, 8), plainCrc(text));
    ASSERT_LE(block.size(), headSize + 5 + text.size() + text.size() / 2);
    ASSERT_EQ(decoded(block), text);
    ASSERT_EQ(plainlyDecoded(block), text);
}

TEST(Lzw, EmptyBlockIsTheHeadAndTwoCodes) {
    const std::string block = encoded("");
    EXPECT_EQ(block, "\0\0\0\0\x0F\0\0\0\0\0\0\0\x00\x03\x02"s);
    EXPECT_EQ(decoded(block), "");
}

TEST(Lzw, RestoresBytesOfAllKinds) {
    test::Random random(11);
    for (const std::string &text :
         {"a"s, "\0"s, "ab"s, "aa"s, "aaa"s, "\xFF\0\xFF\0\xFF\0\xFF"s, "abababababa"s}) {
        expectRoundTrip(text);
    }
    for (const int alphabet : {1, 2, 3, 16, 256}) {
        for (const std::size_t length : {17U, 300U, 5000U, 300000U}) {
            expectRoundTrip(randomText(random, length, alphabet));
        }
    }
    expectRoundTrip(numberedLines(random, 300000));
}

// Random bytes make an entry with nearly every byte, so that the last code, which decides the width
// of the end code, falls around each step of the width and around the full table.
TEST(Lzw, RestoresLengthsAroundEveryStepOfTheCodes) {
    test::Random random(12);
    const std::string text = randomText(random, 4300, 256);
    for (const auto &[from, to] : {std::pair(0, 40), std::pair(250, 262), std::pair(762, 785),
                                   std::pair(1800, 1830), std::pair(3930, 3990)}) {
        for (int length = from; length <= to; ++length) {
            ASSERT_NO_FATAL_FAILURE(
                expectRoundTrip(text.substr(0, static_cast<std::size_t>(length))));
        }
    }
    for (int length = 0; length < 400; ++length) {
        ASSERT_NO_FATAL_FAILURE(
            expectRoundTrip(std::string(static_cast<std::size_t>(length * 31), 'x')));
    }
}

TEST(Lzw, TrustsTheHeadWhereNoLengthIsGiven) {
    std::string block = encoded("one two one two") + "what follows is not read";
    unsigned char *out = nullptr;
    FCLzw codec;
    const unsigned long length =
        codec.LZW_Decode(reinterpret_cast<unsigned char *>(block.data()), &out);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(out), length), "one two one two");
    codec.FreeBufferM(&out);
    EXPECT_EQ(out, nullptr);
}

TEST(Lzw, RefusesWhatIsTooLongToCount) {
    unsigned char byte = 0;
    unsigned char *out = &byte;
    EXPECT_EQ(FCLzw().LZW_Encode(&byte, 0x80000000UL, &out), 0U);
    EXPECT_EQ(out, nullptr);
}

TEST(Lzw, RefusesEveryPrefixAndEveryBlockWithBytesBehindIt) {
    test::Random random(13);
    for (const std::string &text :
         {""s, "abcabcabcabc"s, std::string(3000, '\0'), randomText(random, 700, 256)}) {
        const std::string block = encoded(text);
        for (std::size_t length = 0; length < block.size(); ++length) {
            std::string prefix = block.substr(0, length);
            ASSERT_FALSE(decoded(prefix)) << length;
            if (length >= headSize) { // with a head that fits what is left
                const auto claimed = static_cast<std::uint32_t>(length);
                std::memcpy(prefix.data() + 4, &claimed, sizeof claimed);
                ASSERT_FALSE(decoded(prefix)) << length;
            }
        }
        std::string longer = block + '\0';
        ASSERT_FALSE(decoded(longer));
        ++longer[4];
        ASSERT_FALSE(decoded(longer));
    }
}

TEST(Lzw, RefusesEveryChangedBit) {
    test::Random random(14);
    for (const std::string &text : {"abcabcabcabc"s, std::string(900, 'z'),
                                    randomText(random, 400, 4), numberedLines(random, 500)}) {
        const std::string block = encoded(text);
        for (std::size_t bit = 0; bit < block.size() * 8; ++bit) {
            std::string damaged = block;
            damaged[bit / 8] ^= static_cast<char>(1U << (bit % 8));
            ASSERT_FALSE(decoded(damaged)) << "bit " << bit;
        }
    }
}

// Whatever the bytes are, decoding ends and reads only them.
TEST(Lzw, SurvivesRandomCodesBehindAPlausibleHead) {
    test::Random random(15);
    for (int round = 0; round < 2000; ++round) {
        std::string block = blockOf({clearCode}, "");
        block += randomText(random, static_cast<std::size_t>(random.integer(0, 200)), 256);
        const std::uint32_t head[] = {static_cast<std::uint32_t>(random.integer(0, 400)),
                                      static_cast<std::uint32_t>(block.size())};
        std::memcpy(block.data(), head, sizeof head);
        ASSERT_FALSE(decoded(block));
    }
}

TEST(Lzw, RefusesCodesThatNoEncoderSends) {
    // Codes that each repeat the string before them and add its first byte.
    const auto growing = [](unsigned count) {
        std::vector<unsigned> codes = {clearCode, 'a'};
        for (unsigned code = 258; codes.size() <= count; ++code) {
            codes.push_back(code);
        }
        codes.push_back(endCode);
        return codes;
    };
    const auto ofGrowing = [](std::size_t count) {
        return std::string(count * (count + 1) / 2, 'a');
    };
    const std::tuple<const char *, std::vector<unsigned>, std::string, bool> cases[] = {
        {"valid", {clearCode, 'a', 'b', 258, endCode}, "abab", true},
        {"without the first clear code", {'a', 'b', endCode}, "ab", true},
        {"clear codes in a row", {clearCode, clearCode, 'a', clearCode, endCode}, "a", true},
        {"the entry being made", {clearCode, 'a', 258, 259, endCode}, "aaaaaa", true},
        {"no end code", {clearCode, 'a', 'b'}, "ab", false},
        {"a code behind the end code", {clearCode, 'a', endCode, 'b'}, "a", false},
        {"an entry first", {clearCode, 258, endCode}, "a", false},
        {"an entry of before the clear code", {'a', 'b', clearCode, 258, endCode}, "abab", false},
        {"an entry too early", {clearCode, 'a', 259, endCode}, "aaa", false},
        {"more bytes than claimed", {clearCode, 'a', 'b', endCode}, "a", false},
        {"a string over the claimed end", {clearCode, 'a', 'b', 258, endCode}, "aba", false},
        {"fewer bytes than claimed", {clearCode, 'a', endCode}, "ab", false},
        {"other bytes than claimed", {clearCode, 'a', 'b', endCode}, "ac", false},
        {"long strings", growing(300), ofGrowing(300), true},
        {"a table that runs over", std::vector<unsigned>(5000, 'a'), std::string(5000, 'a'), false},
    };
    for (const auto &[what, codes, wantedText, isValid] : cases) {
        const std::optional<std::string> text = decoded(blockOf(codes, wantedText));
        EXPECT_EQ(text.has_value(), isValid) << what;
        EXPECT_EQ(text.value_or(wantedText), wantedText) << what;
    }
}

} // namespace
