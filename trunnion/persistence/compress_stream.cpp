#include "trunnion/persistence/compress_stream.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>

#include "trunnion/persistence/detail/lzw_block.h"
#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/lzw.h"
#include "trunnion/platform/files.h"

using namespace trunnion::detail;

namespace {

// A buffer of this size is written as a block before it grows.
constexpr unsigned int flushSize = 0x4000000;

struct FreeBlock {
    void operator()(unsigned char *block) const { frameworkFree(block); }
};
using Block = std::unique_ptr<unsigned char, FreeBlock>;

Block allocateBlock(std::size_t size) {
    return Block(static_cast<unsigned char *>(frameworkAllocate(size)));
}

struct FreePacked {
    void operator()(unsigned char *packed) const { FCLzw().FreeBufferM(&packed); }
};
using Packed = std::unique_ptr<unsigned char, FreePacked>;

} // namespace

TqCompressIOCL::TqCompressIOCL()
    : memSize(0), memCapacity(0), memBuffer(nullptr), memPos(0), bufferFromCodec(0) {}

TqCompressIOCL::~TqCompressIOCL() {
    clearBufferM(1);
}

// The buffer and the blocks.

int TqCompressIOCL::addSizeM(unsigned long more) {
    if (memSize >= flushSize) {
        FlushMemoryM();
    }
    const std::uint64_t wanted = static_cast<std::uint64_t>(memSize) + more;
    if (wanted < memCapacity) {
        return 1;
    }
    const std::uint64_t grown = memCapacity + std::max<std::uint64_t>(memCapacity, more);
    try {
        // The buffer is counted in 32 bits: more than that is more than there is.
        Block larger =
            allocateBlock(grown <= UINT_MAX ? static_cast<std::size_t>(grown) : SIZE_MAX);
        const unsigned int kept = memSize;
        const unsigned int position = memPos;
        if (kept > 0) {
            std::memcpy(larger.get(), memBuffer, kept);
        }
        clearBufferM(1);
        memBuffer = larger.release();
        memCapacity = static_cast<unsigned int>(grown);
        memSize = kept;
        memPos = position;
        return 1;
    } catch (CMemoryException *exhausted) {
        exhausted->ReportError();
        exhausted->Delete();
        return 0;
    }
}

void TqCompressIOCL::clearBufferM(int freeBuffer) {
    if (bufferFromCodec != 0) {
        FCLzw().FreeBufferM(&memBuffer);
        bufferFromCodec = 0;
        memCapacity = 0;
    } else if (freeBuffer != 0) {
        frameworkFree(memBuffer);
        memBuffer = nullptr;
        memCapacity = 0;
    }
    memSize = 0;
    memPos = 0;
}

void TqCompressIOCL::FinishSaveM(int freeBuffer) {
    if (memSize == 0) {
        return;
    }
    if (openMode.CompareNoCase("wb") == 0) {
        TqIOCL::OutputDM(&versionNum);
    }
    unsigned char *out = nullptr;
    const unsigned long length = FCLzw().LZW_Encode(memBuffer, memSize, &out);
    const Packed packed(out);
    if (length == 0 || length > INT_MAX) {
        throw writeFailed;
    }
    TqIOCL::OutputSM(reinterpret_cast<const char *>(out), static_cast<int>(length), 1);
    clearBufferM(freeBuffer);
}

void TqCompressIOCL::FlushMemoryM() {
    FinishSaveM(0);
    openMode = "+wb";
}

void TqCompressIOCL::readM(int withVersion) {
    if (withVersion != 0) {
        TqIOCL::InputDM(&versionNum);
    }
    int length = 0;
    TqIOCL::InputDM(&length);
    if (length < 0 || length > remainingBytes(fileDescript)) {
        throw readFailed;
    }
    const Block block = allocateBlock(static_cast<std::size_t>(length));
    if (length > 0) {
        TqIOCL::InputSM(reinterpret_cast<char *>(block.get()), length, 0);
    }
    unsigned char *decoded = nullptr;
    const unsigned long size =
        FCLzw().LZW_Decode(block.get(), static_cast<unsigned long>(length), &decoded);
    if (decoded == nullptr) {
        throw openFailed;
    }
    memBuffer = decoded;
    bufferFromCodec = 1;
    memSize = static_cast<unsigned int>(size);
    memCapacity = memSize;
    memPos = 0;
}

void TqCompressIOCL::TryToReadRestDataM() {
    if (TqIOCL::EofM() == 0) {
        clearBufferM(1);
        readM(0);
    }
}

void TqCompressIOCL::OpenM(const char *name, const char *mode) {
    TqIOCL::OpenM(name, mode);
    if (std::strchr(mode, 'r') != nullptr) {
        clearBufferM(1);
        readM(1);
        openMode = mode;
        return;
    }
    clearBufferM(0);
    if (memCapacity == 0) {
        addSizeM(4);
    }
    openMode = mode;
}

void TqCompressIOCL::CloseM() {
    clearBufferM(1);
    TqIOCL::CloseM();
}

// The cursor.

int TqCompressIOCL::TellM() {
    return static_cast<int>(memPos);
}

void TqCompressIOCL::RewindM() {
    memPos = 0;
}

void TqCompressIOCL::SeekM(int offset, int origin) {
    if (memSize == 0) {
        return;
    }
    const unsigned int from = origin == SEEK_CUR ? memPos : 0;
    memPos = std::min(from + static_cast<unsigned int>(offset), memSize - 1);
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
    return static_cast<long long>(memSize) - memPos + remainingInFile();
}

// What the blocks that the file still holds claim to decode to, as far as they can.
long long TqCompressIOCL::remainingInFile() {
    if (TqIOCL::EofM() != 0) {
        return 0;
    }
    const long position = std::ftell(fileDescript);
    long long sum = 0;
    unsigned char bytes[lzwHeadSize];
    std::uint32_t length = 0;
    while (std::fread(&length, 1, sizeof length, fileDescript) == sizeof length &&
           length >= lzwHeadSize && length <= remainingBytes(fileDescript) &&
           std::fread(bytes, 1, sizeof bytes, fileDescript) == sizeof bytes) {
        const LzwHead head = readLzwHead(bytes);
        if (!isPossibleLzwHead(head, length)) {
            break;
        }
        sum += head.decodedLength;
        std::fseek(fileDescript, static_cast<long>(length - lzwHeadSize), SEEK_CUR);
    }
    std::fseek(fileDescript, position, SEEK_SET);
    return sum;
}

// Writing.

int TqCompressIOCL::put(const void *value, std::size_t size) {
    if (value == nullptr) {
        throw writeFailed;
    }
    if (static_cast<std::uint64_t>(memSize) + size >= memCapacity && addSizeM(size) != 1) {
        return 0;
    }
    std::memcpy(memBuffer + memPos, value, size);
    memPos += static_cast<unsigned int>(size);
    memSize += static_cast<unsigned int>(size);
    return 1;
}

template <class Value>
int TqCompressIOCL::putAll(std::initializer_list<const Value *> values) {
    for (const Value *value : values) {
        if (value != nullptr && put(value, sizeof *value) != 1) {
            return 0;
        }
    }
    return 1;
}

int TqCompressIOCL::OutputDM(const int *value0, const int *value1, const int *value2,
                             const int *value3, const int *value4, const int *value5,
                             const int *value6, const int *value7, const int *value8) {
    return putAll({value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqCompressIOCL::OutputRM(const float *value0, const float *value1, const float *value2,
                             const float *value3, const float *value4, const float *value5,
                             const float *value6, const float *value7, const float *value8) {
    putAll({value0, value1, value2, value3, value4, value5, value6, value7, value8});
    return 1;
}

int TqCompressIOCL::OutputCM(const char *value0, const char *value1, const char *value2,
                             const char *value3, const char *value4, const char *value5,
                             const char *value6, const char *value7, const char *value8) {
    putAll({value0, value1, value2, value3, value4, value5, value6, value7, value8});
    return 1;
}

void TqCompressIOCL::OutputRsM(const float *values, int count) {
    if (count > 0) {
        put(values, static_cast<std::size_t>(count) * sizeof *values);
    }
}

int TqCompressIOCL::OutputSM(const char *text, int length, int counted) {
    if (text == nullptr) {
        throw writeFailed;
    }
    const std::size_t size = length >= 1 ? static_cast<std::size_t>(length) : std::strlen(text);
    const int stored = size <= INT_MAX ? static_cast<int>(size) : throw writeFailed;
    if (length < 1 || counted != 0) {
        const int result = OutputDM(&stored);
        if (result != 1) {
            return result;
        }
    }
    return size > 0 ? put(text, size) : 1;
}

int TqCompressIOCL::OutputsM(const char *line) {
    return OutputSM(line, -1, 1);
}

int TqCompressIOCL::OutputTexPixel4DM(const unsigned char value[4]) {
    return put(value, 4 * sizeof *value);
}

int TqCompressIOCL::OutputPixel4DM(const float value[4]) {
    return put(value, 4 * sizeof *value);
}

int TqCompressIOCL::OutputPoint4DM(const float value[4]) {
    return put(value, 4 * sizeof *value);
}

int TqCompressIOCL::OutputPoint3DM(const float value[3]) {
    return put(value, 3 * sizeof *value);
}

int TqCompressIOCL::OutputPoint2DM(const float value[2]) {
    return put(value, 2 * sizeof *value);
}

int TqCompressIOCL::OutputInt2DM(const int value[2]) {
    return put(value, 2 * sizeof *value);
}

int TqCompressIOCL::OutputInt3DM(const int value[3]) {
    return put(value, 3 * sizeof *value);
}

int TqCompressIOCL::OutputInt4DM(const int value[4]) {
    return put(value, 4 * sizeof *value);
}

// Reading.

const unsigned char *TqCompressIOCL::skip(std::size_t size) {
    if (memPos == memSize) {
        TryToReadRestDataM();
    }
    if (size > memSize - memPos) {
        throw readFailed;
    }
    const unsigned char *first = memBuffer + memPos;
    memPos += static_cast<unsigned int>(size);
    return first;
}

int TqCompressIOCL::take(void *value, std::size_t size) {
    if (value == nullptr) {
        throw readFailed;
    }
    std::memcpy(value, skip(size), size);
    return 1;
}

template <class Value>
int TqCompressIOCL::takeAll(std::initializer_list<Value *> values) {
    for (Value *value : values) {
        if (value != nullptr) {
            take(value, sizeof *value);
        }
    }
    return 1;
}

int TqCompressIOCL::InputDM(int *value0, int *value1, int *value2, int *value3, int *value4,
                            int *value5, int *value6, int *value7, int *value8) {
    return takeAll({value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqCompressIOCL::InputDM(int *value, const char * /*format*/) {
    return take(value, sizeof *value);
}

int TqCompressIOCL::InputRM(float *value0, float *value1, float *value2, float *value3,
                            float *value4, float *value5, float *value6, float *value7,
                            float *value8) {
    return takeAll({value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqCompressIOCL::InputCM(char *value0, char *value1, char *value2, char *value3, char *value4,
                            char *value5, char *value6, char *value7, char *value8) {
    return takeAll({value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

void TqCompressIOCL::InputRsM(float *values, int count) {
    if (count > 0) {
        take(values, static_cast<std::size_t>(count) * sizeof *values);
    }
}

// The length of a counted string. A negative one is damage.
int TqCompressIOCL::takeLength() {
    int length = 0;
    InputDM(&length);
    return length >= 0 ? length : throw readFailed;
}

int TqCompressIOCL::InputSM(char *text, int length, int counted) {
    const bool isRaw = length >= 1 && counted == 0;
    const int size = isRaw ? length : takeLength();
    if (size > 0) {
        take(text, static_cast<std::size_t>(size));
    }
    if (!isRaw) {
        text[size] = '\0';
    }
    return 1;
}

int TqCompressIOCL::InputGetsM(char *buffer, int size) {
    const int length = takeLength();
    const unsigned char *bytes = length > 0 ? skip(static_cast<std::size_t>(length)) : nullptr;
    if (size > 0) {
        *std::copy_n(bytes, std::min(length, size - 1), buffer) = '\0';
    }
    return 1;
}

int TqCompressIOCL::InputTexPixel4DM(unsigned char value[4]) {
    return take(value, 4 * sizeof *value);
}

int TqCompressIOCL::InputPixel4DM(float value[4]) {
    return take(value, 4 * sizeof *value);
}

int TqCompressIOCL::InputPoint4DM(float value[4]) {
    return take(value, 4 * sizeof *value);
}

int TqCompressIOCL::InputPoint3DM(float value[3]) {
    return take(value, 3 * sizeof *value);
}

int TqCompressIOCL::InputPoint2DM(float value[2]) {
    return take(value, 2 * sizeof *value);
}

int TqCompressIOCL::InputInt2DM(int value[2]) {
    return take(value, 2 * sizeof *value);
}

int TqCompressIOCL::InputInt3DM(int value[3]) {
    return take(value, 3 * sizeof *value);
}

int TqCompressIOCL::InputInt4DM(int value[4]) {
    return take(value, 4 * sizeof *value);
}
