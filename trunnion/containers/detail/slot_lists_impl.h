// Slot arrays on streams: the binary run of raw slots and the two text forms. Included by
// slot_array.cpp alone.
#pragma once

#include <algorithm>
#include <climits>
#include <typeinfo>

#include "trunnion/containers/detail/slot_kinds.h"
#include "trunnion/persistence/compress_stream.h"
#include "trunnion/persistence/detail/list_frame.h"
#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/stream.h"

namespace trunnion::detail {

// One slot as a line of text.
template <class Slots>
struct TextSlot;

template <>
struct TextSlot<IntSlots> {
    static void write(TqIOCL &stream, const int *slot) { stream.OutputDM(slot); }
    static void read(TqIOCL &stream, int *slot) { stream.InputDM(slot); }
};

template <>
struct TextSlot<RealSlots> {
    static void write(TqIOCL &stream, const float *slot) { stream.OutputRM(slot); }
    static void read(TqIOCL &stream, float *slot) { stream.InputRM(slot); }
};

template <>
struct TextSlot<CharSlots> {
    static void write(TqIOCL &stream, const char *slot) { stream.OutputCM(slot); }
    static void read(TqIOCL &stream, char *slot) { stream.InputCM(slot); }
};

template <>
struct TextSlot<Int2DSlots> {
    static void write(TqIOCL &stream, const int *slot) { stream.OutputInt2DM(slot); }
    static void read(TqIOCL &stream, int *slot) { stream.InputDM(slot, slot + 1); }
};

template <>
struct TextSlot<Int3DSlots> {
    static void write(TqIOCL &stream, const int *slot) { stream.OutputInt3DM(slot); }
    static void read(TqIOCL &stream, int *slot) { stream.InputInt3DM(slot); }
};

template <>
struct TextSlot<Int4DSlots> {
    static void write(TqIOCL &stream, const int *slot) { stream.OutputInt4DM(slot); }
    static void read(TqIOCL &stream, int *slot) { stream.InputInt4DM(slot); }
};

// Points go through the nine-value operations: they follow the format of single floats.
template <>
struct TextSlot<Point2DSlots> {
    static void write(TqIOCL &stream, const float *slot) { stream.OutputRM(slot, slot + 1); }
    static void read(TqIOCL &stream, float *slot) { stream.InputRM(slot, slot + 1); }
};

template <>
struct TextSlot<Point3DSlots> {
    static void write(TqIOCL &stream, const float *slot) {
        stream.OutputRM(slot, slot + 1, slot + 2);
    }
    static void read(TqIOCL &stream, float *slot) { stream.InputRM(slot, slot + 1, slot + 2); }
};

// True for a slot that a text list shows as empty: one of its leading values holds the marker.
template <class Slots>
bool readAsEmpty(const typename Slots::Value *slot) {
    return std::any_of(slot, slot + std::min(Slots::readEmptyTest, Slots::width),
                       [](typename Slots::Value value) {
                           if constexpr (std::is_same_v<typename Slots::Value, float>) {
                               return value <= Slots::marker;
                           } else {
                               return value == Slots::marker;
                           }
                       });
}

// The slot numbers of a list of `count` slots lie below this. A list written by hand may leave
// empty slots out, so that it names others behind its count; but a damaged number must not cost
// more memory than anybody would miss.
constexpr int slotNumberLimit(int count) {
    return std::max(count, 65536);
}

inline int readCount(TqIOCL &stream) {
    int count = 0;
    stream.InputDM(&count);
    return count;
}

template <class Slots>
void ListedSlots<Slots>::FmOutputOzkLstM(TqIOCL *stream, const char *name) const {
    if (stream->GetIoTypeM() != binaryStream) {
        writeText(*stream, name);
        return;
    }
    stream->OutputDM(&bound);
    stream->OutputDM(&this->available);
    const long long bytes =
        static_cast<long long>(bound) * Base::width * static_cast<int>(sizeof(Value));
    if (bytes > INT_MAX) {
        throw writeFailed; // the stream counts a run of bytes in 32 bits
    }
    if (bytes > 0) {
        stream->OutputSM(reinterpret_cast<const char *>(this->data()), static_cast<int>(bytes), 0);
    }
}

template <class Slots>
void ListedSlots<Slots>::FmInputOzkLstM(TqIOCL *stream) {
    if (stream->GetIoTypeM() == binaryStream) {
        readBinary(*stream);
    } else {
        readText(*stream);
    }
}

// A stream class of the host's own gets the slots of a list in one call.
inline bool takesPieces(const TqIOCL &stream) {
    return typeid(stream) == typeid(TqIOCL) || typeid(stream) == typeid(TqCompressIOCL);
}

template <class Slots>
void ListedSlots<Slots>::readBinary(TqIOCL &stream) {
    const int newBound = readCount(stream);
    const int newAvailable = readCount(stream);
    constexpr int slotBytes = Base::width * static_cast<int>(sizeof(Value));
    StreamAccess::require(stream, newBound, slotBytes);
    StreamAccess::require(stream, newAvailable, 0);
    this->InitialSizeM(newBound);
    // Slots are marked, in case the reading breaks off, a piece at a time: the processor then has
    // the piece still at hand when it is read.
    const int most = takesPieces(stream) ? (128 << 10) / slotBytes : newBound;
    try {
        for (int from = 0, slots = 0; from < newBound; from += slots) {
            slots = std::min(most, newBound - from);
            this->markUpTo(from + slots);
            stream.InputSM(reinterpret_cast<char *>(slotAt(from)), slots * slotBytes, 0);
        }
    } catch (...) {
        this->setCounts(newBound, newAvailable);
        throw;
    }
    this->setCounts(newBound, newAvailable);
}

template <class Slots>
void ListedSlots<Slots>::writeText(TqIOCL &stream, const char *name) const {
    const int noted = forceAutoNewLine(stream);
    ListFrameWriter frame(stream, streamHeadFormat(stream), name);
    frame.begin(bound);
    if (Slots::listForm == ListForm::plain) {
        stream.OutputDM(&this->available);
    }
    for (int i = 0; i < bound; ++i) {
        if (Slots::listForm == ListForm::indexed) {
            frame.index(i);
        }
        TextSlot<Slots>::write(stream, slotAt(i));
    }
    frame.end();
    stream.SetAutoNewLineM(noted);
}

template <class Slots>
void ListedSlots<Slots>::readText(TqIOCL &stream) {
    const int noted = forceAutoNewLine(stream);
    const int count = readCount(stream);
    if (Slots::listForm == ListForm::plain) {
        readPlainText(stream, count);
    } else {
        readIndexedText(stream, count);
    }
    stream.SetAutoNewLineM(noted);
}

template <class Slots>
void ListedSlots<Slots>::readPlainText(TqIOCL &stream, int count) {
    const int newAvailable = readCount(stream);
    StreamAccess::require(stream, count, 1);
    StreamAccess::require(stream, newAvailable, 0);
    this->InitialSizeM(count);
    this->setCounts(count, newAvailable);
    for (int i = 0; i < count; ++i) {
        TextSlot<Slots>::read(stream, slotAt(i));
    }
    stream.SkipLineM();
}

template <class Slots>
void ListedSlots<Slots>::readIndexedText(TqIOCL &stream, int count) {
    StreamAccess::require(stream, count, 2);
    for (int i = 0; i < count; ++i) {
        const int slot = readCount(stream);
        Value values[Base::width];
        TextSlot<Slots>::read(stream, values);
        if (!readAsEmpty<Slots>(values)) {
            requireSlot(slot, slotNumberLimit(count));
            this->SetItemM(Base::asArgument(values), slot);
        }
    }
    StreamAccess::skipWord(stream);
}

} // namespace trunnion::detail
