// What the sources of the stream share.
#pragma once

#include <algorithm>
#include <climits>
#include <cstring>

#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/detail/text_io.h"
#include "trunnion/persistence/stream.h"

namespace trunnion::detail {

// The print formats by what is printed; the numbers are part of the interface of SetFmtM.
enum StreamFormat {
    formatChar,
    formatInt,
    formatReal,
    formatText,
    formatInt2,
    formatPoint2,
    formatPoint3,
    formatPoint4,
    formatPixel4,
    formatTexPixel4,
    formatInt4,
    formatInt3,
};

// `pointer`, unless it is null: then `code` is thrown.
template <class T>
T *required(T *pointer, int code) {
    if (pointer == nullptr) {
        throw code;
    }
    return pointer;
}

// strlen of a required text; a stored length has 31 bits.
inline int lengthOf(const char *text) {
    const std::size_t length = std::strlen(required(text, writeFailed));
    return length <= INT_MAX ? static_cast<int>(length) : throw writeFailed;
}

} // namespace trunnion::detail

// What the text and the binary form of the operations share.
struct TqIOCL::Transfer {
    static bool isText(const TqIOCL &stream) { return stream.ioType == 0; }

    static bool isDefault(const TqIOCL &stream, trunnion::detail::StreamFormat format) {
        return std::strcmp(stream.fmt[format], stream.defaultFmt[format]) == 0;
    }

    static int finish(TqIOCL &stream, trunnion::detail::LinePrinter &printer) {
        return printer.finish(stream.autoNewLine == 1) ? 1 : throw trunnion::detail::writeFailed;
    }

    static int dropRestOfLine(TqIOCL &stream) {
        if (stream.autoNewLine == 1) {
            stream.SkipLineM();
        }
        return 1;
    }

    // The length of a counted string, which the rest of the file must be able to hold. Asks this
    // class for what is left, since a stream that keeps its values in memory knows only of those.
    static int readLength(TqIOCL &stream) {
        int length = 0;
        stream.readOneItemBinaryM(&length, sizeof length);
        if (length < 0 || length > stream.TqIOCL::remainingM()) {
            throw trunnion::detail::readFailed;
        }
        return length;
    }

    static int writeCounted(TqIOCL &stream, const char *bytes, int length) {
        stream.writeOneItemBinaryM(&length, sizeof length);
        stream.writeOneItemBinaryM(bytes, length);
        return 1;
    }

    static void dropBytes(TqIOCL &stream, int length) {
        char dropped[512];
        while (length > 0) {
            const int part = std::min(length, static_cast<int>(sizeof dropped));
            stream.readOneItemBinaryM(dropped, part);
            length -= part;
        }
    }
};
