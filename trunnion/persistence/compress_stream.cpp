#include "trunnion/persistence/compress_stream.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <typeinfo>

#include "trunnion/persistence/detail/lzw_block.h"
#include "trunnion/persistence/detail/owned.h"
#include "trunnion/persistence/detail/stream_transfer.h"
#include "trunnion/persistence/lzw.h"
#include "trunnion/platform/files.h"

using namespace trunnion::detail;

namespace {

// A buffer that has to grow beyond this is written as a block first.
constexpr std::uint32_t flushSize = 0x4000000;

struct CodecRelease {
    void operator()(unsigned char *buffer) const { FCLzw().FreeBufferM(&buffer); }
};

} // namespace

TqCompressIOCL::TqCompressIOCL()
    : memSize(0),
      memCapacity(0),
      memBuffer(nullptr),
      memPos(0),
      bufferFromCodec(0),
      laterBytes(-1) {}

TqCompressIOCL::~TqCompressIOCL() {
    clearBufferM(1);
}

// The file.

void TqCompressIOCL::OpenM(const char *name, const char *mode) {
    TqIOCL::OpenM(name, mode);
    laterBytes = -1;
    if (std::strchr(mode, 'r') != nullptr) {
        clearBufferM(1);
        readM(1);
        openMode = mode;
        return;
    }
    if (memCapacity == 0) {
        addSizeM(4);
    }
    memPos = 0;
    openMode = mode;
}

void TqCompressIOCL::CloseM() {
    clearBufferM(1);
    laterBytes = -1;
    TqIOCL::CloseM();
}

void TqCompressIOCL::FinishSaveM(int freeBuffer) {
    if (memSize == 0) {
        return;
    }
    // In a text stream the writers of the base would write text. The block is made before the
    // version is written: a block for which there is no memory leaves the file as it was.
    unsigned char *out = nullptr;
    const unsigned long length =
        ioType == binaryStream ? FCLzw().LZW_Encode(memBuffer, memSize, &out) : 0;
    const std::unique_ptr<unsigned char, CodecRelease> block(out);
    if (block == nullptr || length > INT_MAX) {
        throw writeFailed;
    }
    if (openMode.CompareNoCase("wb") == 0) {
        TqIOCL::OutputDM(&versionNum);
    }
    TqIOCL::OutputSM(reinterpret_cast<const char *>(block.get()), static_cast<int>(length), 1);
    // A full disk shows itself only when the bytes leave the buffer of the FILE.
    if (std::fflush(fileDescript) != 0) {
        throw writeFailed;
    }
    clearBufferM(freeBuffer);
}

void TqCompressIOCL::FlushMemoryM() {
    FinishSaveM(0);
    openMode = "+wb";
}

void TqCompressIOCL::readM(int withVersion) {
    std::FILE *file = required(fileDescript, readFailed);
    if (ioType != binaryStream) {
        throw readFailed;
    }
    if (withVersion != 0) {
        int version = 0;
        TqIOCL::InputDM(&version);
        versionNum = version;
    }
    const std::int64_t start = filePosition(file);
    try {
        readBlock();
    } catch (...) {
        if (start >= 0) {
            seekFile(file, start, SEEK_SET);
        }
        throw;
    }
}

void TqCompressIOCL::readBlock() {
    int length = 0;
    TqIOCL::InputDM(&length);
    if (length < 0 || length > remainingBytes(fileDescript)) {
        throw readFailed;
    }
    const std::uint32_t packedLength = static_cast<std::uint32_t>(length);
    const Owned<unsigned char> block = allocateOwned<unsigned char>(packedLength);
    if (length > 0) {
        TqIOCL::InputSM(reinterpret_cast<char *>(block.get()), length, 0);
    }
    memSize = static_cast<std::uint32_t>(FCLzw().LZW_Decode(block.get(), packedLength, &memBuffer));
    memCapacity = memSize;
    memPos = 0;
    if (memBuffer == nullptr) {
        throw openFailed;
    }
    bufferFromCodec = 1;
    if (laterBytes >= 0) {
        laterBytes -= memSize;
    }
}

bool TqCompressIOCL::isReading() const {
    return std::strchr(openMode, 'r') != nullptr;
}

void TqCompressIOCL::TryToReadRestDataM() {
    // The values of a stream that appends to a file are not given up for what is in the file.
    if (isReading() && TqIOCL::EofM() == 0) {
        clearBufferM(1);
        readM(0);
    }
}

int TqCompressIOCL::EofM() {
    if (memPos == memSize) {
        TryToReadRestDataM();
    }
    return memPos == memSize ? 1 : 0;
}

int TqCompressIOCL::FinishedReadM() {
    return EofM();
}

long long TqCompressIOCL::remainingM() {
    if (laterBytes < 0) {
        laterBytes = isReading() && TqIOCL::EofM() == 0 ? countLaterBytes() : 0;
    }
    return memSize - memPos + laterBytes;
}

long long TqCompressIOCL::countLaterBytes() {
    const std::int64_t start = filePosition(fileDescript);
    if (start < 0) {
        return LLONG_MAX / 2; // as much as the system cannot tell
    }
    long long count = 0;
    for (;;) {
        int length = 0;
        unsigned char bytes[lzwHeadSize];
        if (std::fread(&length, sizeof length, 1, fileDescript) != 1 ||
            length > remainingBytes(fileDescript) ||
            std::fread(bytes, sizeof bytes, 1, fileDescript) != 1) {
            break;
        }
        const LzwHead head = readLzwHead(bytes);
        if (length < 0 || !isPossibleLzwHead(head, static_cast<std::uint32_t>(length)) ||
            !seekFile(fileDescript, length - static_cast<int>(lzwHeadSize), SEEK_CUR)) {
            break;
        }
        count += head.decodedLength;
    }
    seekFile(fileDescript, start, SEEK_SET);
    return count;
}

// The memory.

int TqCompressIOCL::addSizeM(unsigned long more) {
    try {
        const bool isTooLong = static_cast<std::uint64_t>(memSize) + more > lzwDecodedMaximum;
        if (memSize >= flushSize || (isTooLong && memSize > 0)) {
            FlushMemoryM();
        }
        if (static_cast<std::uint64_t>(memSize) + more < memCapacity) {
            return 1;
        }
        const std::uint64_t wanted = memCapacity + std::max<std::uint64_t>(memCapacity, more);
        const std::uint32_t capacity =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(wanted, UINT32_MAX));
        Owned<unsigned char> buffer = allocateOwned<unsigned char>(capacity);
        if (memSize > 0) {
            std::memcpy(buffer.get(), memBuffer, memSize);
        }
        freeMemory();
        memBuffer = buffer.release();
        memCapacity = capacity;
        return 1;
    } catch (CMemoryException *exhausted) {
        exhausted->ReportError();
        exhausted->Delete();
        return 0;
    }
}

void TqCompressIOCL::clearBufferM(int freeBuffer) {
    if (memBuffer == nullptr) {
        return;
    }
    if (bufferFromCodec != 0 || freeBuffer != 0) {
        freeMemory();
    }
    memSize = 0;
    memPos = 0;
}

void TqCompressIOCL::freeMemory() {
    if (bufferFromCodec != 0) {
        FCLzw().FreeBufferM(&memBuffer);
    } else {
        frameworkFree(memBuffer);
    }
    memBuffer = nullptr;
    memCapacity = 0;
    bufferFromCodec = 0;
}

inline int TqCompressIOCL::store(const void *bytes, std::uint32_t size) {
    if (bytes == nullptr) {
        return 1;
    }
    if (static_cast<std::uint64_t>(memSize) + size >= memCapacity) {
        const int result = addSizeM(size);
        if (result != 1) {
            return result;
        }
    }
    if (memPos != memSize) {
        std::memset(memBuffer + memSize, 0, size);
    }
    std::memcpy(memBuffer + memPos, bytes, size);
    memPos += size;
    memSize += size;
    return 1;
}

inline const unsigned char *TqCompressIOCL::pass(std::uint32_t size) {
    if (size > memSize - memPos && (EofM() != 0 || size > memSize - memPos)) {
        throw readFailed;
    }
    const unsigned char *bytes = memBuffer + memPos;
    memPos += size;
    return bytes;
}

inline int TqCompressIOCL::take(void *bytes, std::uint32_t size) {
    if (bytes != nullptr) {
        std::memcpy(bytes, pass(size), size);
    }
    return 1;
}

std::span<const unsigned char> TqCompressIOCL::takeReadyM(std::size_t recordBytes, int most) {
    if (typeid(*this) != typeid(TqCompressIOCL)) {
        return {};
    }
    const std::size_t size = StreamAccess::wholeRecords(memSize - memPos, recordBytes, most);
    const std::span<const unsigned char> records(memBuffer + memPos, size);
    memPos += static_cast<std::uint32_t>(size);
    return records;
}

// What does not fit is left to store, which alone makes the buffer grow or writes it as a block: so
// a block ends where it would without this.
std::span<unsigned char> TqCompressIOCL::claimRoomM(std::size_t recordBytes, int most) {
    if (typeid(*this) != typeid(TqCompressIOCL) || memPos != memSize || memSize >= memCapacity) {
        return {};
    }
    const std::size_t size =
        StreamAccess::wholeRecords(memCapacity - 1 - memSize, recordBytes, most);
    const std::span<unsigned char> room(memBuffer + memSize, size);
    memSize += static_cast<std::uint32_t>(size);
    memPos = memSize;
    return room;
}

int TqCompressIOCL::TellM() {
    return static_cast<int>(memPos);
}

void TqCompressIOCL::RewindM() {
    if (memSize != 0) {
        memPos = 0;
    }
}

void TqCompressIOCL::SeekM(int offset, int origin) {
    if (memSize == 0 || origin < SEEK_SET || origin > SEEK_END) {
        return;
    }
    const std::uint32_t from = origin == SEEK_CUR ? memPos : 0;
    memPos = std::min(from + static_cast<std::uint32_t>(offset), memSize - 1);
}

// Strings and runs.

int TqCompressIOCL::takeLength() {
    int length = 0;
    InputDM(&length);
    return length >= 0 ? length : throw readFailed;
}

int TqCompressIOCL::InputSM(char *text, int length, int counted) {
    required(text, readFailed);
    const bool isRaw = length >= 1 && counted == 0;
    const int stored = isRaw ? length : takeLength();
    if (stored > 0) {
        take(text, static_cast<std::uint32_t>(stored));
    }
    if (!isRaw) {
        text[stored] = '\0';
    }
    return 1;
}

int TqCompressIOCL::InputGetsM(char *buffer, int size) {
    if (size > 0) {
        required(buffer, readFailed);
    }
    const int length = takeLength();
    const int kept = std::min(length, std::max(size, 1) - 1);
    if (length > 0) {
        const unsigned char *bytes = pass(static_cast<std::uint32_t>(length));
        std::copy_n(bytes, kept, buffer);
    }
    if (size > 0) {
        buffer[kept] = '\0';
    }
    return 1;
}

int TqCompressIOCL::OutputSM(const char *text, int length, int counted) {
    required(text, writeFailed);
    const int stored = length >= 1 ? length : lengthOf(text);
    if (length < 1 || counted != 0) {
        const int result = OutputDM(&stored);
        if (result != 1) {
            return result;
        }
    }
    return stored > 0 ? store(text, static_cast<std::uint32_t>(stored)) : 1;
}

int TqCompressIOCL::OutputsM(const char *line) {
    return OutputSM(line, -1, 1);
}

void TqCompressIOCL::InputRsM(float *values, int count) {
    if (count < 1) {
        return;
    }
    const std::uint64_t size = static_cast<std::uint64_t>(count) * sizeof *values;
    if (size > lzwDecodedMaximum) {
        throw readFailed;
    }
    take(required(values, readFailed), static_cast<std::uint32_t>(size));
}

void TqCompressIOCL::OutputRsM(const float *values, int count) {
    if (count < 1) {
        return;
    }
    const std::uint64_t size = static_cast<std::uint64_t>(count) * sizeof *values;
    if (size > lzwDecodedMaximum) {
        throw writeFailed;
    }
    store(required(values, writeFailed), static_cast<std::uint32_t>(size));
}

// Up to nine values.

int TqCompressIOCL::inputOneCM(char *value) {
    return take(value, sizeof *value);
}
int TqCompressIOCL::inputOneDM(int *value) {
    return take(value, sizeof *value);
}
int TqCompressIOCL::inputOneRM(float *value) {
    return take(value, sizeof *value);
}
int TqCompressIOCL::outputOneCM(const char *value) {
    return store(value, sizeof *value);
}
int TqCompressIOCL::outputOneDM(const int *value) {
    return store(value, sizeof *value);
}
int TqCompressIOCL::outputOneRM(const float *value) {
    return store(value, sizeof *value);
}

int TqCompressIOCL::InputCM(char *value0, char *value1, char *value2, char *value3, char *value4,
                            char *value5, char *value6, char *value7, char *value8) {
    for (char *value : {value0, value1, value2, value3, value4, value5, value6, value7, value8}) {
        inputOneCM(value);
    }
    return 1;
}

int TqCompressIOCL::InputDM(int *value0, int *value1, int *value2, int *value3, int *value4,
                            int *value5, int *value6, int *value7, int *value8) {
    for (int *value : {value0, value1, value2, value3, value4, value5, value6, value7, value8}) {
        inputOneDM(value);
    }
    return 1;
}

int TqCompressIOCL::InputRM(float *value0, float *value1, float *value2, float *value3,
                            float *value4, float *value5, float *value6, float *value7,
                            float *value8) {
    for (float *value : {value0, value1, value2, value3, value4, value5, value6, value7, value8}) {
        inputOneRM(value);
    }
    return 1;
}

int TqCompressIOCL::InputDM(int *value, const char * /*format*/) {
    return inputOneDM(value);
}

int TqCompressIOCL::OutputCM(const char *value0, const char *value1, const char *value2,
                             const char *value3, const char *value4, const char *value5,
                             const char *value6, const char *value7, const char *value8) {
    for (const char *value :
         {value0, value1, value2, value3, value4, value5, value6, value7, value8}) {
        outputOneCM(value);
    }
    return 1;
}

int TqCompressIOCL::OutputDM(const int *value0, const int *value1, const int *value2,
                             const int *value3, const int *value4, const int *value5,
                             const int *value6, const int *value7, const int *value8) {
    for (const int *value :
         {value0, value1, value2, value3, value4, value5, value6, value7, value8}) {
        const int result = outputOneDM(value);
        if (result != 1) {
            return result;
        }
    }
    return 1;
}

int TqCompressIOCL::OutputRM(const float *value0, const float *value1, const float *value2,
                             const float *value3, const float *value4, const float *value5,
                             const float *value6, const float *value7, const float *value8) {
    for (const float *value :
         {value0, value1, value2, value3, value4, value5, value6, value7, value8}) {
        outputOneRM(value);
    }
    return 1;
}

// Tuples.

int TqCompressIOCL::InputInt2DM(int value[2]) {
    return take(value, sizeof(int[2]));
}

int TqCompressIOCL::InputInt3DM(int value[3]) {
    return take(value, sizeof(int[3]));
}

int TqCompressIOCL::InputInt4DM(int value[4]) {
    return take(value, sizeof(int[4]));
}

int TqCompressIOCL::InputPoint2DM(float value[2]) {
    return take(value, sizeof(float[2]));
}

int TqCompressIOCL::InputPoint3DM(float value[3]) {
    return take(value, sizeof(float[3]));
}

int TqCompressIOCL::InputPoint4DM(float value[4]) {
    return take(value, sizeof(float[4]));
}

int TqCompressIOCL::InputPixel4DM(float value[4]) {
    return take(value, sizeof(float[4]));
}

int TqCompressIOCL::InputTexPixel4DM(unsigned char value[4]) {
    return take(value, sizeof(unsigned char[4]));
}

int TqCompressIOCL::OutputInt2DM(const int value[2]) {
    return store(value, sizeof(int[2]));
}

int TqCompressIOCL::OutputInt3DM(const int value[3]) {
    return store(value, sizeof(int[3]));
}

int TqCompressIOCL::OutputInt4DM(const int value[4]) {
    return store(value, sizeof(int[4]));
}

int TqCompressIOCL::OutputPoint2DM(const float value[2]) {
    return store(value, sizeof(float[2]));
}

int TqCompressIOCL::OutputPoint3DM(const float value[3]) {
    return store(value, sizeof(float[3]));
}

int TqCompressIOCL::OutputPoint4DM(const float value[4]) {
    return store(value, sizeof(float[4]));
}

int TqCompressIOCL::OutputPixel4DM(const float value[4]) {
    return store(value, sizeof(float[4]));
}

int TqCompressIOCL::OutputTexPixel4DM(const unsigned char value[4]) {
    return store(value, sizeof(unsigned char[4]));
}
