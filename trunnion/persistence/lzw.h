// The compressor of the library: LZW with the codes of the GIF format, packed into blocks that
// check themselves.
#pragma once

#include <cstdint>

#include "trunnion/export.h"

namespace trunnion::detail {
struct LzwAccess;
}

// Compresses a run of bytes into a block and restores it.
//
// A block, all numbers little-endian:
//
//   offset  size  content
//        0     4  number of decoded bytes, n, at most 0x7FFFFFFF
//        4     4  length of the whole block in bytes, these 12 and the codes
//        8     4  CRC-32 of the decoded bytes (polynomial 0xEDB88320, as in zip and PNG)
//       12        the codes
//
// The codes are packed from the least significant bit of the first byte upward, one directly behind
// the other; the last byte is filled up with zero bits. Their width is 9 bits at the start and
// after each clear code, at most 12:
//
//   0 to 255   that byte
//   256        clear code: forget all entries; the first code of a block
//   257        end code: the last code of a block
//   from 258   the entry of that number
//
// Every code behind the first one after a clear code, other than the clear code and the end code,
// makes an entry, numbered from 258 on: the string of the code before it and the first byte of its
// own. A code may name the very entry that it makes: then its string is the one before it with its
// first byte repeated at the end. When the decoder has made entry 511 the width becomes 10, with
// 1023 it becomes 11, with 2047 12; there it stays. The encoder, which makes an entry right after
// the code that ends its prefix, is one entry ahead and sends a clear code, 12 bits wide, when it
// has made entry 4095.
//
// A damaged block is refused: a head that contradicts the block's length or claims more than its
// codes can expand to, a code without an entry, codes that end early or late, bits behind the end
// code, a wrong checksum. Nothing is allocated before the claimed length is found possible.
//
// A block may hold no bytes at all; it decodes to an empty buffer, which is not null. Exhausted
// memory raises CMemoryException *. An object holds nothing between two calls, so that copies of it
// share nothing; one thread uses an object at a time.
class TRUNNION_API FCLzw {
public:
    FCLzw();
    ~FCLzw() = default;
    FCLzw(const FCLzw &) = default;
    FCLzw &operator=(const FCLzw &) = default;

    // Compresses `length` bytes into a block that FreeBufferM gives back. Returns the length of the
    // block; for more than 0x7FFFFFFF bytes 0, and `*out` is null. Bytes without repetition grow,
    // at most by half.
    unsigned long LZW_Encode(unsigned char *source, unsigned long length, unsigned char **out);

    // Restores the bytes of the block of `packedLength` bytes at `packed`, reading none behind
    // them, into a buffer that FreeBufferM gives back. Returns how many there are. A damaged block
    // gives 0, and `*out` is null.
    unsigned long LZW_Decode(unsigned char *packed, unsigned long packedLength,
                             unsigned char **out);

    // The same for a block whose head is trusted to tell its length: at least 12 bytes are read. Of
    // bytes from a file only the form above is safe.
    unsigned long LZW_Decode(unsigned char *packed, unsigned char **out);

    // Frees a buffer of LZW_Encode or LZW_Decode, made by this object or another, and makes the
    // pointer null.
    void FreeBufferM(unsigned char **buffer);

private:
    friend struct trunnion::detail::LzwAccess;
    struct CodeReader;
    struct Output;

    class DecodeEntry;

    // Empties the decoder's table but for the single symbols.
    void Decode_InitStringTable();
    // True if the code has an entry.
    bool Decode_IsInTable(unsigned short code) const;
    // The first symbol of the code's string.
    unsigned char Decode_GetFirstChar(unsigned short code) const;
    // Makes the next entry, the string of `prefix`, which was written last, and one symbol more,
    // and widens the codes where the encoder did. Throws the integer 0 when the table is full.
    void Decode_AddStringToTable(unsigned short prefix, unsigned short suffix);

    // Empties the encoder's table.
    void Encode_InitStringTable();
    // The next symbol of the source. Symbols of 1 and 4 bits start at the most significant bits of
    // a byte; rows are taken downward through memory, as a bottom-up bitmap holds them.
    unsigned char Encode_GetNextPixel();
    // True if the string of `prefix` followed by `symbol` has a code; `encodeFound` is the code.
    bool Encode_IsInTable(unsigned short prefix, unsigned short symbol);
    // Gives the string that Encode_IsInTable has just not found the next code, and widens the codes
    // where the decoder will.
    void Encode_AddStringToTable(unsigned short prefix, unsigned short symbol);
    // Packs a code behind the last one. Bits of the current byte above `bitPos` must be 0; the
    // three bytes behind it are overwritten.
    void Encode_WriteIndex(unsigned long code);

    void setSource(unsigned char *base, std::uint32_t width, std::uint32_t height,
                   std::uint32_t pitch, unsigned char symbolBits);
    bool hasSource() const { return sourceY < sourceHeight; }
    void encodeSource();
    void countEncodedString();
    bool decodeBlock(CodeReader &codes, Output &output);
    unsigned decodeRun(CodeReader &codes, Output &output);
    unsigned short decodeOne(CodeReader &codes, Output &output);
    void decodeShortStrings(CodeReader &codes, Output &output);

    unsigned short clearCode() const { return static_cast<unsigned short>(endCode - 1); }

    DecodeEntry *decodeTable;   // strings by code
    std::uint32_t *encodeTable; // strings with their codes, scattered; 0 is a free place
    unsigned short endCode;
    unsigned char *sourceBase; // first row
    unsigned char *sourceRow;  // current row
    unsigned char *outputPos;  // the byte into which the next code is packed
    unsigned char bitPos;      // the bit in it
    unsigned char minCodeSize; // bits in a symbol
    unsigned char codeWidth;   // bits in the next code
    unsigned short nextCode;   // the next free entry
    std::uint32_t sourceHeight;
    std::uint32_t sourceWidth; // symbols in a row
    std::uint32_t sourceX;
    std::uint32_t sourceY;
    std::uint32_t sourcePitch;    // bytes from one row to the next
    unsigned short decodePrefix;  // code of the last string decoded
    std::uint32_t decodePosition; // where that stands in the output
    std::uint32_t encodePlace;    // of the last string looked for
    std::uint32_t encodeFound;    // code of that string, 0 for none
};
