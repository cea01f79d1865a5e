// The steps of the codec, one for each code or symbol: inline, because the loops of lzw.cpp are
// made of them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "trunnion/persistence/lzw.h"

namespace trunnion::detail::lzw {

static_assert(std::endian::native == std::endian::little, "codes are packed by whole words");

inline constexpr unsigned byteBits = 8;
// With symbols of 8 bits: how many there are, and the codes that follow them.
inline constexpr unsigned symbolCount = 256;
inline constexpr unsigned byteClearCode = symbolCount;
inline constexpr unsigned byteEndCode = symbolCount + 1;
// Codes of 12 bits: when the encoder has used up all of them it starts anew.
inline constexpr unsigned codeLimit = 4096;
inline constexpr unsigned widestCode = 12;
// Places in the encoder's table: a power of two, large against the number of codes, so that a
// string is nearly always found at the first look, and still small enough to stay in the
// processor's cache. A place holds a string, prefix * 256 + symbol, above the bits of its code.
inline constexpr unsigned encodePlaceBits = 15;
inline constexpr unsigned encodePlaces = 1U << encodePlaceBits;
// Entries of the decoder's table.
inline constexpr unsigned decodeLimit = 4128;
// Stands for a code that is not there: never an entry.
inline constexpr unsigned short noCode = 0xFFFF;
// Bytes that a short string is copied with at once.
inline constexpr std::uint32_t copyWidth = 16;

// 8, 16, 32 ... 2048: the counts at which codes become one bit wider.
inline bool isWidthStep(unsigned count) {
    return count >= 8 && count < codeLimit && (count & (count - 1)) == 0;
}

} // namespace trunnion::detail::lzw

// For the members below; nothing but lzw.cpp and the tests of the steps includes this file.
using namespace trunnion::detail::lzw;

// A decoded string as one number. Up to 7 bytes stand in it themselves, the first one lowest, below
// their count: they are written without a look at the output, which could be had only once the last
// writes to it are through. Of a longer one it tells the first byte, where the string was last
// written and its length.
class FCLzw::DecodeEntry {
public:
    DecodeEntry() = default;
    static DecodeEntry ofSymbol(unsigned char symbol) { return DecodeEntry(symbol | oneByte); }

    bool isShort() const { return bits < oneByte * (longestShort + 1); }
    std::uint32_t shortLength() const { return static_cast<std::uint32_t>(bits >> countBit); }
    std::uint32_t longLength() const {
        return static_cast<std::uint32_t>(bits >> lengthBit & 0xFFFF);
    }
    std::uint32_t length() const { return isShort() ? shortLength() : longLength(); }
    std::uint32_t position() const { return static_cast<std::uint32_t>(bits >> positionBit); }
    unsigned char first() const { return static_cast<unsigned char>(bits); }

    // Writes a short string; eight bytes from `to` on are overwritten.
    void copyShort(unsigned char *to) const { std::memcpy(to, &bits, sizeof bits); }

    // This string, which was last written at `position`, and one byte more.
    DecodeEntry extended(std::uint32_t position, unsigned char byte) const {
        if (bits < oneByte * longestShort) {
            return DecodeEntry((bits + oneByte) | std::uint64_t{byte}
                                                      << (byteBits * shortLength()));
        }
        return DecodeEntry(longMark | std::uint64_t{length() + 1} << lengthBit |
                           std::uint64_t{position} << positionBit | first());
    }

private:
    explicit DecodeEntry(std::uint64_t number) : bits(number) {}

    static constexpr std::uint64_t longestShort = 7;
    static constexpr unsigned countBit = 56;
    static constexpr unsigned lengthBit = 40;
    static constexpr unsigned positionBit = 8;
    static constexpr std::uint64_t oneByte = std::uint64_t{1} << countBit;
    static constexpr std::uint64_t longMark = std::uint64_t{1} << 63;

    std::uint64_t bits = 0;
};

inline void FCLzw::setSource(unsigned char *base, std::uint32_t width, std::uint32_t height,
                             std::uint32_t pitch, unsigned char symbolBits) {
    sourceBase = base;
    sourceRow = base;
    sourceWidth = width;
    sourceHeight = height;
    sourceX = 0;
    sourceY = 0;
    sourcePitch = pitch;
    minCodeSize = symbolBits;
    endCode = static_cast<unsigned short>((1U << symbolBits) + 1);
}

// Where a string's number is scattered to by a multiplication (D. Knuth, The Art of Computer
// Programming, volume 3, 6.4).
inline std::uint32_t placeOfString(std::uint32_t string) {
    return (string * 2654435769U) >> (32 - encodePlaceBits);
}

inline void FCLzw::Encode_InitStringTable() {
    const auto first = static_cast<unsigned short>(endCode + 1);
    if (nextCode > first) {
        std::memset(encodeTable, 0, encodePlaces * sizeof *encodeTable);
    }
    nextCode = first;
    codeWidth = static_cast<unsigned char>(minCodeSize + 1);
}

// Symbols of 8 bits come first, since a stream has no others.
inline unsigned char FCLzw::Encode_GetNextPixel() {
    unsigned char symbol = 0;
    if (minCodeSize == 8) {
        symbol = sourceRow[sourceX];
    } else if (minCodeSize == 4) {
        symbol = (sourceRow[sourceX / 2] >> (sourceX % 2 == 0 ? 4 : 0)) & 0xF;
    } else {
        symbol = (sourceRow[sourceX / 8] >> (7 - sourceX % 8)) & 0x1;
    }
    if (++sourceX == sourceWidth) {
        sourceX = 0;
        if (++sourceY < sourceHeight) {
            sourceRow = sourceBase - static_cast<std::ptrdiff_t>(sourcePitch) * sourceY;
        }
    }
    return symbol;
}

// Looks from the string's place upward, to the string or a free place.
inline bool FCLzw::Encode_IsInTable(unsigned short prefix, unsigned short symbol) {
    const std::uint32_t string = prefix * symbolCount + symbol;
    std::uint32_t place = placeOfString(string);
    std::uint32_t held = encodeTable[place];
    while (held != 0 && held >> widestCode != string) {
        place = (place + 1) % encodePlaces;
        held = encodeTable[place];
    }
    encodePlace = place;
    encodeFound = held % codeLimit;
    return held != 0;
}

inline void FCLzw::Encode_AddStringToTable(unsigned short prefix, unsigned short symbol) {
    encodeTable[encodePlace] = (prefix * symbolCount + symbol) << widestCode | nextCode;
    countEncodedString();
}

inline void FCLzw::countEncodedString() {
    ++nextCode;
    if (isWidthStep(nextCode - 1U)) {
        ++codeWidth;
    }
}

inline void FCLzw::Encode_WriteIndex(unsigned long code) {
    const std::uint32_t word = *outputPos | static_cast<std::uint32_t>(code) << bitPos;
    std::memcpy(outputPos, &word, sizeof word);
    const unsigned total = bitPos + codeWidth;
    bitPos = total % byteBits;
    outputPos += total / byteBits;
}

// Codes without an entry look like long strings, so that one question tells a short one.
inline void FCLzw::Decode_InitStringTable() {
    nextCode = static_cast<unsigned short>(endCode + 1);
    codeWidth = static_cast<unsigned char>(minCodeSize + 1);
    std::memset(static_cast<void *>(decodeTable + clearCode()), 0xFF,
                (codeLimit - clearCode()) * sizeof *decodeTable);
}

inline bool FCLzw::Decode_IsInTable(unsigned short code) const {
    return code < nextCode;
}

inline unsigned char FCLzw::Decode_GetFirstChar(unsigned short code) const {
    return decodeTable[code].first();
}

inline void FCLzw::Decode_AddStringToTable(unsigned short prefix, unsigned short suffix) {
    if (nextCode + 1U >= decodeLimit) {
        throw 0;
    }
    decodeTable[nextCode] =
        decodeTable[prefix].extended(decodePosition, static_cast<unsigned char>(suffix));
    ++nextCode;
    if (isWidthStep(nextCode)) {
        ++codeWidth;
    }
}
