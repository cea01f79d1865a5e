#include "trunnion/persistence/lzw.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "trunnion/persistence/detail/crc32.h"
#include "trunnion/persistence/detail/lzw_block.h"
#include "trunnion/persistence/detail/lzw_steps.h"
#include "trunnion/persistence/detail/owned.h"

using trunnion::detail::allocateOwned;
using trunnion::detail::frameworkAllocateCleared;
using trunnion::detail::frameworkFree;
using trunnion::detail::isPossibleLzwHead;
using trunnion::detail::LzwHead;
using trunnion::detail::lzwHeadSize;
using trunnion::detail::Owned;

namespace {

bool isSpecial(unsigned code) {
    return code == byteClearCode || code == byteEndCode;
}

// copyWidth bytes; both places may overlap.
void copyPiece(unsigned char *to, const unsigned char *from) {
    unsigned char piece[copyWidth];
    std::memcpy(piece, from, copyWidth);
    std::memcpy(to, piece, copyWidth);
}

// Both places have copyWidth bytes of room; a longer string may overlap its copy.
void copyString(unsigned char *to, const unsigned char *from, std::uint32_t length) {
    if (length <= copyWidth) {
        copyPiece(to, from);
    } else {
        std::memmove(to, from, length);
    }
}

// Room for a block of `length` bytes: in the worst case every byte is a code of the greatest width,
// with a clear code for each full table, and the last code is written as a word.
std::size_t blockRoom(std::size_t length) {
    constexpr std::size_t entriesPerTable = codeLimit - byteEndCode - 1;
    const std::size_t codes = length + length / entriesPerTable + 3;
    return lzwHeadSize + (codes * widestCode + byteBits - 1) / byteBits + sizeof(std::uint32_t);
}

} // namespace

// Takes codes from packed bytes.
struct FCLzw::CodeReader {
    const unsigned char *bytes;
    std::size_t size;
    std::size_t bit = 0;

    // The next `width` bits, noCode where there are no more so many.
    unsigned short read(unsigned width) {
        const std::size_t at = bit / byteBits;
        std::uint32_t word = 0;
        if (at + sizeof word <= size) {
            std::memcpy(&word, bytes + at, sizeof word);
        } else if (bit + width <= size * byteBits) {
            std::memcpy(&word, bytes + at, size - at);
        } else {
            return noCode;
        }
        const unsigned code = (word >> (bit % byteBits)) & ((1U << width) - 1);
        bit += width;
        return static_cast<unsigned short>(code);
    }

    // True if nothing follows but the zero bits that fill up the last byte.
    bool isAtEnd() const {
        const std::size_t left = size * byteBits - bit;
        return left < byteBits && (left == 0 || bytes[size - 1] >> (byteBits - left) == 0);
    }
};

// The decoded bytes, with room behind them for the last string to be written in one piece.
struct FCLzw::Output {
    std::uint32_t size;
    Owned<unsigned char> bytes;
    std::uint32_t used = 0;

    explicit Output(std::uint32_t length)
        : size(length), bytes(allocateOwned<unsigned char>(length + std::size_t{copyWidth})) {}
};

FCLzw::FCLzw()
    : decodeTable(nullptr),
      encodeTable(nullptr),
      endCode(byteEndCode),
      sourceBase(nullptr),
      sourceRow(nullptr),
      outputPos(nullptr),
      bitPos(0),
      minCodeSize(byteBits),
      codeWidth(byteBits + 1),
      nextCode(0),
      sourceHeight(0),
      sourceWidth(0),
      sourceX(0),
      sourceY(0),
      sourcePitch(0),
      decodePrefix(0),
      decodePosition(0),
      encodePlace(0),
      encodeFound(0) {}

void FCLzw::FreeBufferM(unsigned char **buffer) {
    frameworkFree(*buffer);
    *buffer = nullptr;
}

// The loops of both directions work on a copy of the object: a byte that is written through a
// pointer could otherwise be one of the object's own counters, which would have to be fetched again
// after every byte.

// Encoding.

unsigned long FCLzw::LZW_Encode(unsigned char *source, unsigned long length, unsigned char **out) {
    *out = nullptr;
    if (length > trunnion::detail::lzwDecodedMaximum) {
        return 0;
    }
    const Owned<std::uint32_t> table(static_cast<std::uint32_t *>(
        frameworkAllocateCleared(encodePlaces * sizeof(std::uint32_t))));
    Owned<unsigned char> block = allocateOwned<unsigned char>(blockRoom(length));
    encodeTable = table.get();
    nextCode = 0; // nothing was entered yet
    const std::uint32_t count = static_cast<std::uint32_t>(length);
    setSource(source, count, count > 0 ? 1 : 0, count, byteBits);
    outputPos = block.get() + lzwHeadSize;
    *outputPos = 0;
    bitPos = 0;
    encodeSource();
    encodeTable = nullptr;
    const auto packed = static_cast<std::uint32_t>(outputPos - block.get() + (bitPos > 0 ? 1 : 0));
    trunnion::detail::writeLzwHead({count, packed, trunnion::detail::crc32(source, count)},
                                   block.get());
    *out = block.release();
    return packed;
}

void FCLzw::encodeSource() {
    FCLzw work = *this;
    work.Encode_InitStringTable();
    work.Encode_WriteIndex(clearCode());
    if (work.hasSource()) {
        const unsigned char *const end = sourceRow + sourceWidth; // the bytes are one row
        std::uint32_t prefix = work.Encode_GetNextPixel();
        for (const unsigned char *at = sourceRow + 1; at != end; ++at) {
            if (work.Encode_IsInTable(static_cast<unsigned short>(prefix), *at)) {
                prefix = work.encodeFound;
                continue;
            }
            work.Encode_WriteIndex(prefix);
            work.Encode_AddStringToTable(static_cast<unsigned short>(prefix), *at);
            prefix = *at;
            if (work.nextCode == codeLimit) {
                work.Encode_WriteIndex(clearCode());
                work.Encode_InitStringTable();
            }
        }
        work.Encode_WriteIndex(prefix);
        // The decoder makes an entry of the last code too, before it reads the end code.
        work.countEncodedString();
    }
    work.Encode_WriteIndex(endCode);
    *this = work;
}

// Decoding.

unsigned long FCLzw::LZW_Decode(unsigned char *packed, unsigned char **out) {
    const unsigned long length =
        packed != nullptr ? trunnion::detail::readLzwHead(packed).packedLength : 0;
    return LZW_Decode(packed, length, out);
}

unsigned long FCLzw::LZW_Decode(unsigned char *packed, unsigned long packedLength,
                                unsigned char **out) {
    *out = nullptr;
    if (packed == nullptr || packedLength < lzwHeadSize) {
        return 0;
    }
    const LzwHead head = trunnion::detail::readLzwHead(packed);
    if (!isPossibleLzwHead(head, packedLength)) {
        return 0;
    }
    CodeReader codes{packed + lzwHeadSize, packedLength - lzwHeadSize};
    Output output(head.decodedLength);
    if (!decodeBlock(codes, output) ||
        trunnion::detail::crc32(output.bytes.get(), output.size) != head.checksum) {
        return 0;
    }
    *out = output.bytes.release();
    return output.size;
}

// True if the codes fill the output exactly.
bool FCLzw::decodeBlock(CodeReader &codes, Output &output) {
    const Owned<DecodeEntry> table = allocateOwned<DecodeEntry>(decodeLimit * sizeof(DecodeEntry));
    decodeTable = table.get();
    endCode = byteEndCode;
    minCodeSize = byteBits;
    for (unsigned symbol = 0; symbol < symbolCount; ++symbol) {
        decodeTable[symbol] = DecodeEntry::ofSymbol(static_cast<unsigned char>(symbol));
    }
    unsigned ended = noCode;
    try {
        do {
            ended = decodeRun(codes, output);
        } while (ended == byteClearCode);
    } catch (int) {
        ended = noCode; // the table is full: an encoder would have sent a clear code
    }
    decodeTable = nullptr;
    return ended == byteEndCode && output.used == output.size && codes.isAtEnd();
}

// Decodes up to the next clear code or end code and returns it; noCode if the codes are damaged.
unsigned FCLzw::decodeRun(CodeReader &codes, Output &output) {
    Decode_InitStringTable();
    const unsigned short first = codes.read(codeWidth);
    if (isSpecial(first)) {
        return first;
    }
    if (!Decode_IsInTable(first) || output.used == output.size) {
        return noCode;
    }
    decodePrefix = first;
    decodePosition = output.used;
    output.bytes.get()[output.used++] = Decode_GetFirstChar(first);
    unsigned short code = 0;
    do {
        decodeShortStrings(codes, output);
        code = decodeOne(codes, output);
    } while (code != noCode && !isSpecial(code));
    return code;
}

// Decodes any one code and returns it; noCode if it is damaged.
unsigned short FCLzw::decodeOne(CodeReader &codes, Output &output) {
    const unsigned short code = codes.read(codeWidth);
    if (isSpecial(code)) {
        return code;
    }
    unsigned char *const to = output.bytes.get() + output.used;
    if (Decode_IsInTable(code)) {
        Decode_AddStringToTable(decodePrefix, Decode_GetFirstChar(code));
    } else if (code == nextCode) { // the entry that this code makes
        *to = Decode_GetFirstChar(decodePrefix);
        Decode_AddStringToTable(decodePrefix, *to);
    } else {
        return noCode;
    }
    const DecodeEntry string = decodeTable[code];
    const std::uint32_t length = string.length();
    if (length > output.size - output.used) {
        return noCode;
    }
    if (string.isShort()) {
        string.copyShort(to);
    } else {
        copyString(to, output.bytes.get() + string.position(), length);
    }
    decodePrefix = code;
    decodePosition = output.used;
    output.used += length;
    return code;
}

// Decodes codes of short strings, four from one word, as long as nothing else can happen to them:
// nothing where the width may change, the codes or the room come to an end, or another code stands.
void FCLzw::decodeShortStrings(CodeReader &codes, Output &output) {
    constexpr std::uint32_t atOnce = 4;
    const unsigned width = codeWidth;
    const std::uint64_t mask = (1U << width) - 1;
    const std::uint32_t nextWidthStep = std::min(1U << width, codeLimit);
    DecodeEntry *const table = decodeTable;
    unsigned char *const bytes = output.bytes.get();
    std::uint32_t next = nextCode;
    std::uint32_t used = output.used;
    std::size_t bit = codes.bit;
    unsigned short prefix = decodePrefix;
    std::uint32_t position = decodePosition;
    DecodeEntry before = table[prefix];
    std::uint32_t done = atOnce;
    while (done == atOnce && next + atOnce < nextWidthStep &&
           bit / byteBits + sizeof(std::uint64_t) <= codes.size &&
           output.size - used >= atOnce * copyWidth) {
        std::uint64_t word = 0;
        std::memcpy(&word, codes.bytes + bit / byteBits, sizeof word);
        word >>= bit % byteBits;
#pragma GCC unroll 4
        for (done = 0; done < atOnce; ++done) {
            const std::uint64_t code = word & mask;
            const DecodeEntry string = table[code];
            std::uint32_t length = string.shortLength();
            if (string.isShort()) {
                string.copyShort(bytes + used);
            } else {
                length = string.longLength();
                if (length > copyWidth) {
                    break;
                }
                copyPiece(bytes + used, bytes + string.position());
            }
            table[next + done] = before.extended(position, string.first());
            before = string;
            prefix = static_cast<unsigned short>(code);
            position = used;
            used += length;
            word >>= width;
        }
        next += done;
        bit += std::size_t{done} * width;
    }
    nextCode = static_cast<unsigned short>(next);
    output.used = used;
    codes.bit = bit;
    decodePrefix = prefix;
    decodePosition = position;
}
