// What the library's own readers need of a stream beyond its public operations.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

class TqIOCL;

namespace trunnion::detail {

// The codes that streams throw, as plain ints.
inline constexpr int readFailed = 107;
inline constexpr int writeFailed = 108;
inline constexpr int openFailed = 109;

// What GetIoTypeM answers for a binary stream; any other answer is a text stream.
inline constexpr int binaryStream = 1;

struct StreamAccess {
    // Upper bound of the bytes of values that can still be read; INT64_MAX when that cannot be
    // told.
    static long long remaining(TqIOCL &stream);

    // The gate for every count that comes from a file, to be passed before anything is allocated
    // for it: throws 107 if `count` is negative or if `count` values of at least `bytesEach` bytes
    // cannot be left. In a text stream a value takes at least 2 bytes, a digit and a separator or
    // line end, but the last line of a file may lack its end: ask for one value less, or for one
    // byte each.
    static void require(TqIOCL &stream, long long count, long long bytesEach);

    // Records of `recordBytes` bytes each, at most `most` of them, that stand in the memory of a
    // binary stream as a whole; the stream has then passed over them. Nothing where the next one
    // does not, and always in a class that a host has derived: such a record goes through the
    // operations of the stream. Valid until the next call on the stream.
    static std::span<const unsigned char> takeReady(TqIOCL &stream, std::size_t recordBytes,
                                                    int most);
    // The same for writing: room for records, which count as written and are the caller's to fill.
    static std::span<unsigned char> claimRoom(TqIOCL &stream, std::size_t recordBytes, int most);
    // How many of `most` records of `recordBytes` bytes there are in `bytes` bytes, in bytes.
    static std::size_t wholeRecords(std::size_t bytes, std::size_t recordBytes, int most) {
        return std::min(bytes / recordBytes, static_cast<std::size_t>(most)) * recordBytes;
    }

    // What InputSM(buffer, -1, 1) does, without a buffer that could be too small: drops one word
    // and, if automatic new line is on, the rest of the line (text), or one counted string
    // (binary). 107 if there is none. A stream of the host's own that has no file is asked itself,
    // for a word of at most 259 characters.
    static void skipWord(TqIOCL &stream);
};

} // namespace trunnion::detail
