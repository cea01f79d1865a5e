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

inline constexpr unsigned short noPrefix = 0xFFFF;
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
// processor's cache.
inline constexpr unsigned encodePlaceBits = 16;
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

// Takes back what was entered, the last first: each string is then still found where it was put. A
// table that was used a good deal is cleared as a whole, which takes less time for each string.
inline void FCLzw::Encode_InitStringTable() {
    constexpr unsigned fewStrings = 512;
    const unsigned first = endCode + 1U;
    const unsigned used = nextCode > first ? nextCode - first : 0;
    if (used > fewStrings) {
        std::memset(encodeTable, 0, encodePlaces * sizeof *encodeTable);
    } else {
        for (unsigned code = first + used; code-- > first;) {
            std::uint32_t place = placeOfString(encodeStrings[code]);
            while (encodeTable[place] != code && encodeTable[place] != 0) {
                place = (place + 1) % encodePlaces;
            }
            encodeTable[place] = 0;
        }
    }
    nextCode = static_cast<unsigned short>(first);
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
    std::uint32_t found = encodeTable[place];
    while (found != 0 && encodeStrings[found] != string) {
        place = (place + 1) % encodePlaces;
        found = encodeTable[place];
    }
    encodePlace = place;
    encodeFound = found;
    return found != 0;
}

inline void FCLzw::Encode_AddStringToTable(unsigned short prefix, unsigned short symbol) {
    encodeTable[encodePlace] = nextCode;
    encodeStrings[nextCode] = prefix * symbolCount + symbol;
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

inline void FCLzw::Decode_InitStringTable() {
    nextCode = static_cast<unsigned short>(endCode + 1);
    codeWidth = static_cast<unsigned char>(minCodeSize + 1);
}

inline bool FCLzw::Decode_IsInTable(unsigned short code) const {
    return code < nextCode;
}

inline unsigned char FCLzw::Decode_GetFirstChar(unsigned short code) const {
    while (decodeTable[code].prefix != noPrefix) {
        code = decodeTable[code].prefix;
    }
    return static_cast<unsigned char>(decodeTable[code].suffix);
}

inline void FCLzw::Decode_AddStringToTable(unsigned short prefix, unsigned short suffix) {
    if (nextCode + 1U >= decodeLimit) {
        throw 0;
    }
    decodeTable[nextCode] = {prefix, suffix};
    ++nextCode;
    if (isWidthStep(nextCode)) {
        ++codeWidth;
    }
}
