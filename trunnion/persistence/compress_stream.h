// The compressed stream: values in memory, compressed blocks in the file.
#pragma once

#include <cstddef>
#include <initializer_list>

#include "trunnion/persistence/stream.h"
#include "trunnion/platform/framework.h"

// A stream that appends every value raw to a memory buffer and writes the buffer as one compressed
// block when the caller finishes, or when it has outgrown 64 MiB. On reading a block is restored at
// once, and the next one when its values are used up. Record and list code cannot tell it from a
// binary TqIOCL: a value has the same bytes, and the same calls read what they wrote.
//
//   saving:  OpenM(name, "wb"), SetVersionNumM, the values, FinishSaveM(1), CloseM
//   reading: OpenM(name, "rb"), the values, CloseM
//
// The file: the version number in 4 bytes, then for each block its length in 4 bytes and the block
// (see lzw.h), all little-endian. Block borders fall between two values; the version text is the
// caller's to store. Formats, separator and automatic new line have no effect here. The mode given
// to OpenM holds a "b".
//
// Failures beside those of TqIOCL: 107 for a file or block that is cut short, for a block length
// that the file cannot hold, and for a value that runs over the end of the data; 109 for a damaged
// block; 108 where a block cannot be written. OpenM throws those of the first block, a reader those
// of the block that it moves on to. Where no memory can be had, a writer tells the user and stores
// nothing, and a reader lets CMemoryException * pass.
class TRUNNION_API TqCompressIOCL : public TqIOCL {
public:
    TqCompressIOCL();
    ~TqCompressIOCL() override;

    using TqIOCL::FinishSaveM;
    // Writes the buffer as a block, behind the version number if it is the first one, and empties
    // it. Nothing at all for an empty buffer. Called once, last; with 0 the memory is kept.
    void FinishSaveM(int freeBuffer);
    // Writes what the buffer holds as a block of its own; saving goes on behind it. Called only
    // after values were written.
    void FlushMemoryM();

    // Opens as TqIOCL does. For reading, the version number and the first block are read at once.
    void OpenM(const char *name, const char *mode) override;
    // Closes without saving: values that were not saved are lost.
    void CloseM() override;

    // The cursor in the current block; the file is not touched. RewindM and SeekM do nothing while
    // the block is empty. SeekM takes the sum of origin and offset as unsigned and stops at the
    // last byte, so that a negative position lands there; origin 2 counts from the start as 0 does.
    int TellM() override;
    void RewindM() override;
    void SeekM(int offset, int origin) override;
    // 1 when all values were read, else 0; moves on to the next block where the current one is used
    // up.
    int EofM() override;
    int FinishedReadM() override;

    void InputRsM(float *values, int count) override;
    void OutputRsM(const float *values, int count) override;

    int InputDM(int *value0, int *value1 = nullptr, int *value2 = nullptr, int *value3 = nullptr,
                int *value4 = nullptr, int *value5 = nullptr, int *value6 = nullptr,
                int *value7 = nullptr, int *value8 = nullptr) override;
    int InputDM(int *value, const char *format) override;
    int InputRM(float *value0, float *value1 = nullptr, float *value2 = nullptr,
                float *value3 = nullptr, float *value4 = nullptr, float *value5 = nullptr,
                float *value6 = nullptr, float *value7 = nullptr, float *value8 = nullptr) override;
    int InputCM(char *value0, char *value1 = nullptr, char *value2 = nullptr,
                char *value3 = nullptr, char *value4 = nullptr, char *value5 = nullptr,
                char *value6 = nullptr, char *value7 = nullptr, char *value8 = nullptr) override;
    int InputSM(char *text, int length, int counted) override;
    int InputGetsM(char *buffer, int size) override;
    int InputTexPixel4DM(unsigned char value[4]) override;
    int InputPixel4DM(float value[4]) override;
    int InputPoint4DM(float value[4]) override;
    int InputPoint3DM(float value[3]) override;
    int InputPoint2DM(float value[2]) override;
    int InputInt2DM(int value[2]) override;
    int InputInt3DM(int value[3]) override;
    int InputInt4DM(int value[4]) override;

    // The writers give 1, and not 1 where memory could not be had (OutputCM and OutputRM 1 then as
    // well).
    int OutputDM(const int *value0, const int *value1 = nullptr, const int *value2 = nullptr,
                 const int *value3 = nullptr, const int *value4 = nullptr,
                 const int *value5 = nullptr, const int *value6 = nullptr,
                 const int *value7 = nullptr, const int *value8 = nullptr) override;
    int OutputRM(const float *value0, const float *value1 = nullptr, const float *value2 = nullptr,
                 const float *value3 = nullptr, const float *value4 = nullptr,
                 const float *value5 = nullptr, const float *value6 = nullptr,
                 const float *value7 = nullptr, const float *value8 = nullptr) override;
    int OutputCM(const char *value0, const char *value1 = nullptr, const char *value2 = nullptr,
                 const char *value3 = nullptr, const char *value4 = nullptr,
                 const char *value5 = nullptr, const char *value6 = nullptr,
                 const char *value7 = nullptr, const char *value8 = nullptr) override;
    int OutputSM(const char *text, int length, int counted) override;
    int OutputsM(const char *line) override;
    int OutputTexPixel4DM(const unsigned char value[4]) override;
    int OutputPixel4DM(const float value[4]) override;
    int OutputPoint4DM(const float value[4]) override;
    int OutputPoint3DM(const float value[3]) override;
    int OutputPoint2DM(const float value[2]) override;
    int OutputInt2DM(const int value[2]) override;
    int OutputInt3DM(const int value[3]) override;
    int OutputInt4DM(const int value[4]) override;

private:
    // Makes room for `more` bytes and keeps one byte free; a buffer of 64 MiB or more is written as
    // a block first. 1, or 0 after telling the user that there is no memory: the buffer then stays
    // as it was.
    int addSizeM(unsigned long more);
    // Empties the buffer; with a number other than 0, and always for one of the codec's, it is
    // given back as well.
    void clearBufferM(int freeBuffer);
    // Reads the version number, if `withVersion` is not 0, and one block.
    void readM(int withVersion);
    // Reads the next block if the file has one.
    void TryToReadRestDataM();

    // One value at the cursor, `size` bytes. Taking throws 107 where the data ends before the value
    // does.
    int put(const void *value, std::size_t size);
    int take(void *value, std::size_t size);
    // The values of a nine-pointer operation but those whose pointers are null; putting stops at
    // the first failure.
    template <class Value>
    int putAll(std::initializer_list<const Value *> values);
    template <class Value>
    int takeAll(std::initializer_list<Value *> values);
    // Cursor behind `size` bytes that the data must hold; returns where they start.
    const unsigned char *skip(std::size_t size);
    int takeLength();

    long long remainingM() override;
    long long remainingInFile();

    unsigned int memSize;     // bytes of values in the buffer
    unsigned int memCapacity; // bytes allocated
    unsigned char *memBuffer;
    unsigned int memPos; // where the next value is stored or taken
    int bufferFromCodec; // 1 when the buffer is given back through the codec
    CString openMode; // of the last OpenM; "+wb" after a flush, so that the version is written once
};
