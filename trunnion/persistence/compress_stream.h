// The stream of the compressed data files: values go through memory, and the file holds blocks.
#pragma once

#include <cstdint>

#include "trunnion/export.h"
#include "trunnion/persistence/stream.h"
#include "trunnion/platform/framework.h"

// A stream whose values stand in memory, in the binary form of TqIOCL. Saving compresses them into
// a block of the file; reading decompresses a block at a time and passes from one to the next
// unnoticed. Formats, separator and automatic new line have no effect.
//
// Saving is SetVersionNumM, OpenM(name, "wb"), the values, FinishSaveM(1), CloseM; reading is
// OpenM(name, "rb"), the values, CloseM. The mode holds a "b": what has none can be neither read
// nor saved.
//
// The file, all numbers 32-bit little-endian:
//
//   offset  size  content
//        0     4  version number (SetVersionNumM)
//        4     4  length L of the first block
//        8     L  the first block, as FCLzw makes it
//
// and a length and a block for each further one, up to the end of the file. Every value stands in
// one block as a whole; a counted string is two values, its length and its bytes.
//
// Failures are thrown as a plain int:
//
//   107  a read failed: the file ends inside the version, a length or a block; a block's length is
//        negative or more than what is left of the file; a value runs over the end of its block; a
//        counted string has a negative length
//   108  a block could not be written, is longer than 2^31 - 1 bytes, or no file is open for it
//   109  the file could not be opened, or a block is damaged
//
// A block that cannot be read stays the next one: every further read fails in the same way, and
// what stands behind it is never taken for it. When the heap is exhausted while a block is read or
// by FinishSaveM, CMemoryException * passes through; when it is by a writer, the user is told and
// the writer returns 0 without having stored the value (OutputCM, OutputRM: 1).
class TRUNNION_API TqCompressIOCL : public TqIOCL {
public:
    // A closed stream without values.
    TqCompressIOCL();
    // Closes the file; values that were not saved are lost.
    ~TqCompressIOCL() override;

    using TqIOCL::FinishSaveM;
    // Writes the values in memory to the file as a block and empties the memory, which is given
    // back unless `freeBuffer` is 0. The first block of a file that is open with the mode "wb" goes
    // behind the version number. Nothing at all is written when there are no values. Call it once,
    // last: only FlushMemoryM may come before it.
    void FinishSaveM(int freeBuffer);
    // Writes the values so far as a block, for a caller that does not want to wait until the stream
    // does so by itself, with 64 MiB and more. Only after values were written: without any, the
    // file would lack its version number.
    void FlushMemoryM();

    // The position in the current block and how it moves. SeekM counts from the start of the block
    // for SEEK_SET and SEEK_END alike, takes its target as unsigned and goes at most to the last
    // byte; in an empty block nothing moves. What is written after a move replaces the values
    // there, and as many zero bytes are added at the end.
    int TellM() override;
    void SeekM(int offset, int origin) override;
    void RewindM() override;

    // 1 when no value is left, in memory or in the file, else 0. Reads the next block where one is
    // used up, and fails as a reader does.
    int EofM() override;
    // EofM.
    int FinishedReadM() override;

    // Gives the values up and closes the file.
    void CloseM() override;
    // Opens `name` as TqIOCL does. A mode with an "r" reads version and first block at once; with
    // any other mode the stream writes.
    void OpenM(const char *name, const char *mode) override;

    // The typed operations move the values that TqIOCL moves in a binary stream, with the same
    // results but for those told above. A null pointer among up to nine values is passed over.
    // Writers of one tuple return 1, or 0 when the memory is exhausted.
    void InputRsM(float *values, int count) override;
    void OutputRsM(const float *values, int count) override;
    int InputDM(int *value0, int *value1 = nullptr, int *value2 = nullptr, int *value3 = nullptr,
                int *value4 = nullptr, int *value5 = nullptr, int *value6 = nullptr,
                int *value7 = nullptr, int *value8 = nullptr) override;
    int InputDM(int *value, const char *format) override;
    int OutputsM(const char *line) override;
    int OutputTexPixel4DM(const unsigned char value[4]) override;
    int OutputPixel4DM(const float value[4]) override;
    int OutputPoint4DM(const float value[4]) override;
    int OutputPoint3DM(const float value[3]) override;
    int OutputPoint2DM(const float value[2]) override;
    int OutputInt2DM(const int value[2]) override;
    int OutputInt3DM(const int value[3]) override;
    int OutputInt4DM(const int value[4]) override;
    int OutputSM(const char *text, int length, int counted) override;
    int OutputRM(const float *value0, const float *value1 = nullptr, const float *value2 = nullptr,
                 const float *value3 = nullptr, const float *value4 = nullptr,
                 const float *value5 = nullptr, const float *value6 = nullptr,
                 const float *value7 = nullptr, const float *value8 = nullptr) override;
    int OutputDM(const int *value0, const int *value1 = nullptr, const int *value2 = nullptr,
                 const int *value3 = nullptr, const int *value4 = nullptr,
                 const int *value5 = nullptr, const int *value6 = nullptr,
                 const int *value7 = nullptr, const int *value8 = nullptr) override;
    int OutputCM(const char *value0, const char *value1 = nullptr, const char *value2 = nullptr,
                 const char *value3 = nullptr, const char *value4 = nullptr,
                 const char *value5 = nullptr, const char *value6 = nullptr,
                 const char *value7 = nullptr, const char *value8 = nullptr) override;
    int InputGetsM(char *buffer, int size) override;
    int InputTexPixel4DM(unsigned char value[4]) override;
    int InputPixel4DM(float value[4]) override;
    int InputPoint4DM(float value[4]) override;
    int InputPoint3DM(float value[3]) override;
    int InputPoint2DM(float value[2]) override;
    int InputInt2DM(int value[2]) override;
    int InputInt3DM(int value[3]) override;
    int InputInt4DM(int value[4]) override;
    int InputSM(char *text, int length, int counted) override;
    int InputRM(float *value0, float *value1 = nullptr, float *value2 = nullptr,
                float *value3 = nullptr, float *value4 = nullptr, float *value5 = nullptr,
                float *value6 = nullptr, float *value7 = nullptr, float *value8 = nullptr) override;
    int InputCM(char *value0, char *value1 = nullptr, char *value2 = nullptr,
                char *value3 = nullptr, char *value4 = nullptr, char *value5 = nullptr,
                char *value6 = nullptr, char *value7 = nullptr, char *value8 = nullptr) override;

private:
    // Makes room for `more` bytes, with one to spare, by a larger buffer or by writing a block. 0
    // if the memory is exhausted.
    int addSizeM(unsigned long more);
    // Reads a block, behind the version number if `withVersion` is not 0.
    void readM(int withVersion);
    void readBlock();
    // Reads the next block if the file has one.
    void TryToReadRestDataM();
    // Empties the buffer. Its memory stays for the next values if it is the stream's own and
    // `freeBuffer` is 0.
    void clearBufferM(int freeBuffer);
    void freeMemory();

    // One value of the operations on up to nine; nothing for a null pointer.
    int inputOneCM(char *value);
    int inputOneDM(int *value);
    int inputOneRM(float *value);
    int outputOneCM(const char *value);
    int outputOneDM(const int *value);
    int outputOneRM(const float *value);

    // `size` bytes to the position and from it; null is passed over.
    int store(const void *bytes, std::uint32_t size);
    int take(void *bytes, std::uint32_t size);
    // Passes over `size` bytes and returns where they stand.
    const unsigned char *pass(std::uint32_t size);
    // The length of a counted string.
    int takeLength();

    bool isReading() const;
    // Bytes of values in the blocks that were not read yet, as far as their heads can be believed.
    long long countLaterBytes();
    long long remainingM() override;
    std::span<const unsigned char> takeReadyM(std::size_t recordBytes, int most) override;
    std::span<unsigned char> claimRoomM(std::size_t recordBytes, int most) override;

    std::uint32_t memSize;     // bytes of values
    std::uint32_t memCapacity; // bytes allocated
    unsigned char *memBuffer;
    std::uint32_t memPos;         // where the next value is stored or taken
    std::int32_t bufferFromCodec; // 1 when FCLzw has allocated the buffer
    CString openMode;             // of the last OpenM; "+wb" once FlushMemoryM was called
    long long laterBytes;         // what countLaterBytes has found, -1 before
};
