#include "trunnion/persistence/lzw.h"

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

// Both places have copyWidth bytes of room; a longer string may overlap its copy.
void copyString(unsigned char *to, const unsigned char *from, std::uint32_t length) {
    if (length <= copyWidth) {
        unsigned char piece[copyWidth]; // both places may overlap
        std::memcpy(piece, from, copyWidth);
        std::memcpy(to, piece, copyWidth);
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

struct FCLzw::DecodeTables {
    DecodeEntry entries[decodeLimit];
    DecodeString strings[decodeLimit];
};

struct FCLzw::EncodeTables {
    unsigned short codes[encodePlaces];
    std::uint32_t strings[codeLimit];
};

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

// The decoded bytes. Behind them stands room for the last string to be copied in one piece, and
// behind that each byte by itself: so the string of a single symbol is copied like any other.
struct FCLzw::Output {
    std::uint32_t size;
    Owned<unsigned char> bytes;
    std::uint32_t used = 0;

    explicit Output(std::uint32_t length)
        : size(length),
          bytes(allocateOwned<unsigned char>(length + std::size_t{2} * copyWidth + symbolCount)) {
        for (unsigned symbol = 0; symbol < symbolCount; ++symbol) {
            bytes.get()[symbolAt(symbol)] = static_cast<unsigned char>(symbol);
        }
    }

    std::uint32_t symbolAt(unsigned symbol) const { return size + copyWidth + symbol; }
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
      decodeStrings(nullptr),
      encodeStrings(nullptr),
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
    const Owned<EncodeTables> tables(
        static_cast<EncodeTables *>(frameworkAllocateCleared(sizeof(EncodeTables))));
    Owned<unsigned char> block = allocateOwned<unsigned char>(blockRoom(length));
    encodeTable = tables->codes;
    encodeStrings = tables->strings;
    nextCode = 0; // nothing was entered yet
    const std::uint32_t count = static_cast<std::uint32_t>(length);
    setSource(source, count, count > 0 ? 1 : 0, count, byteBits);
    outputPos = block.get() + lzwHeadSize;
    *outputPos = 0;
    bitPos = 0;
    encodeSource();
    encodeTable = nullptr;
    encodeStrings = nullptr;
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
        std::uint32_t prefix = work.Encode_GetNextPixel();
        while (work.hasSource()) {
            const unsigned char symbol = work.Encode_GetNextPixel();
            if (work.Encode_IsInTable(prefix, symbol)) {
                prefix = work.encodeFound;
                continue;
            }
            work.Encode_WriteIndex(prefix);
            work.Encode_AddStringToTable(prefix, symbol);
            prefix = symbol;
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
    const Owned<DecodeTables> tables = allocateOwned<DecodeTables>();
    decodeTable = tables->entries;
    decodeStrings = tables->strings;
    endCode = byteEndCode;
    minCodeSize = byteBits;
    for (unsigned symbol = 0; symbol < symbolCount; ++symbol) {
        decodeTable[symbol] = {noPrefix, static_cast<unsigned short>(symbol)};
        decodeStrings[symbol] = {output.symbolAt(symbol), output.symbolAt(symbol) + 1};
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
    decodeStrings = nullptr;
    return ended == byteEndCode && output.used == output.size && codes.isAtEnd();
}

// Decodes up to the next clear code or end code and returns it; noCode if the codes are damaged.
unsigned FCLzw::decodeRun(CodeReader &codes, Output &output) {
    FCLzw work = *this;
    CodeReader reader = codes;
    unsigned char *const bytes = output.bytes.get();
    std::uint32_t used = output.used;
    const auto finish = [&](unsigned code) {
        codes = reader;
        output.used = used;
        return code;
    };
    work.Decode_InitStringTable();
    unsigned short prefix = reader.read(work.codeWidth);
    if (isSpecial(prefix)) {
        return finish(prefix);
    }
    if (!work.Decode_IsInTable(prefix) || used == output.size) {
        return noCode;
    }
    std::uint32_t begin = used;
    bytes[used++] = work.Decode_GetFirstChar(prefix);
    for (;;) {
        const unsigned short code = reader.read(work.codeWidth);
        if (isSpecial(code)) {
            return finish(code);
        }
        // The entry that this code makes: the string before it and the first byte of its own.
        work.decodeStrings[work.nextCode] = {begin, used + 1};
        if (!work.Decode_IsInTable(code)) {
            if (code != work.nextCode) {
                return noCode;
            }
            bytes[used] = bytes[begin];
        }
        const DecodeString string = work.decodeStrings[code];
        const std::uint32_t length = string.end - string.begin;
        if (length > output.size - used) {
            return noCode;
        }
        work.Decode_AddStringToTable(prefix, bytes[string.begin]);
        copyString(bytes + used, bytes + string.begin, length);
        prefix = code;
        begin = used;
        used += length;
    }
}
