// The stream through which every record of the library reaches a file: one set of typed
// operations with a text and a binary form.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <span>

#include "trunnion/export.h"

namespace trunnion::detail {
struct StreamAccess;
}

// One file and the operations that move integers, floats, bytes, strings and tuples to and from it.
//
// A record writes one sequence of calls; the io type of the stream decides what they come to:
// - text: numbers printed by the table of formats, the values of one call on one line, joined by
//   the separator; read with "%d" or "%f" joined by the separator, whatever the print formats are.
//   Lines are written with "\n". Files with "\r\n" read the same: a carriage return directly in
//   front of a line feed belongs to the line end, one anywhere else is an ordinary character.
// - binary: raw values, little-endian, without anything between them. int and float take 4 bytes,
//   char 1, a tuple its members, a counted string a 4-byte length and the bytes.
//
// Failures are thrown as a plain int; an operation that returns an int returns 1 unless it says
// otherwise.
//
//   107  a read failed: fewer values than asked for, a number outside the range of its type, a
//        stored length that is negative or more than what is left of the file, or no file is open
//   108  a write failed, or no file is open; also raw floats (InputRsM, OutputRsM) on a text stream
//   109  OpenM could not open the file
//
// What a call moved before it failed stays moved, and the stream stays open. TellM, SeekM, RewindM
// and CloseM do nothing on a stream without a file, and EofM gives 1.
//
// A null pointer where a value is required is refused with 107 or 108 before the file is touched.
// One thread uses a stream at a time.
class TRUNNION_API TqIOCL {
public:
    // A closed text stream with the default formats, separator ", ", automatic new line on and
    // version number SL_DELETED_INT.
    TqIOCL();
    TqIOCL(const TqIOCL &) = delete;
    TqIOCL &operator=(const TqIOCL &) = delete;

    // Position in bytes from the start of the file (at most INT_MAX); 0 when no file is open.
    virtual int TellM();
    // Does nothing in any stream; what a compressed stream saves with takes an argument.
    virtual void FinishSaveM();
    // Reads `count` raw floats. Binary streams only: a text stream throws 108. Nothing for a count
    // below 1.
    virtual void InputRsM(float *values, int count);
    // Writes `count` raw floats. Binary streams only: a text stream throws 108. Nothing for a count
    // below 1.
    virtual void OutputRsM(const float *values, int count);
    // Moves as fseek does: `origin` is SEEK_SET, SEEK_CUR or SEEK_END. A move that the file refuses
    // leaves the position.
    virtual void SeekM(int offset, int origin);
    // Back to the start of the file.
    virtual void RewindM();
    // The version text; the stream keeps it for its caller and never stores it in the file.
    virtual const char *GetVersionStrM() const;
    // Non-zero when nothing is left to read: EofM, or the file ends at the position although it was
    // longer or shorter when it was opened.
    virtual int FinishedReadM();
    // 0 for a text stream, 1 for a binary one.
    virtual int GetIoTypeM() const;
    // Stores the version number in `*version`.
    virtual int GetVersionNumM(int *version);
    // Calls SkipLineM `count` times; nothing for a count below 1.
    virtual int SkipSomeLinesM(int count);
    // Reads one character and drops it; in a text stream "\r\n" counts as one.
    virtual int InputSeparatorM();
    // Builds the format of the tag lines of a list: the default integer format, the separator and
    // "%s", "%10d, %s" by default. SetFmtM has no effect on it. `out` holds 60 chars.
    virtual void GetFmtStrM(char *out) const;
    // Reads up to nine integers; see InputCM.
    virtual int InputDM(int *value0, int *value1 = nullptr, int *value2 = nullptr,
                        int *value3 = nullptr, int *value4 = nullptr, int *value5 = nullptr,
                        int *value6 = nullptr, int *value7 = nullptr, int *value8 = nullptr);
    // Reads one integer, in a text stream with the caller's scan format, which has one conversion
    // to an int, then the rest of the line if automatic new line is on.
    virtual int InputDM(int *value, const char *format);
    // The open file, or null. It stays the stream's.
    virtual std::FILE *GetFileDescriptM();
    // Reads lines until one equals `line` as a whole, case-sensitive: 1, with the position behind
    // it, or 0 at the end of the file. Of a longer line the first 254 characters are compared.
    virtual int SearchStrM(const char *line);
    // Sets the version text; at most 99 characters are kept.
    virtual void SetVersionStringM(const char *version);
    // Sets the version number.
    virtual void SetVersionNumM(int version);
    // The file name up to and with its last backslash; empty if it has none. `out` holds 260 chars.
    virtual void GetFilePathM(char *out);
    // Closes the stream and adopts `file`, another one, which it owns from now on. Io type and file
    // length stay as they were: a new stream becomes a text stream of length 0, at whose end EofM
    // is from the start. Name and version are cut as SetFileNameM and SetVersionStringM do.
    virtual void CreateIndirectlyM(std::FILE *file, const char *name, const char *version,
                                   int versionNumber);
    // The name of the file; valid until it changes.
    virtual const char *GetFileNameM() const;
    // Sets the name; at most 259 characters are kept.
    virtual void SetFileNameM(const char *name);
    // 1 at the end of the file, else 0: when a read ran into the end, or when the position is at or
    // past the length that the file had when it was opened. So a file that was read up to its last
    // byte is at its end without any failed read, and a file that is written is so always.
    virtual int EofM();
    // Sets the text between the values of one call, written as well as expected. 49 characters or
    // more are ignored, "" is allowed. Reading, white space in it matches any run of white space,
    // none included, and every other character itself. "%%" stands for one percent sign. The
    // formats of the tuples hold separators of their own: set formats 4 to 11 along.
    virtual void SetSeparatorM(const char *text);
    // 1 ends every line by itself when writing, and drops the rest of the line after reading; any
    // other value is off.
    virtual void SetAutoNewLineM(int mode);
    // What SetAutoNewLineM set.
    virtual int GetAutoNewLineM();
    // Drops the rest of the current line (text), or one counted string (binary).
    virtual int SkipLineM();
    // Closes the file if one is open. The name, the io type, the formats and the version stay.
    virtual void CloseM();
    // Opens `name`, a drive path or a system path, with a mode of fopen; a file that is open is
    // closed first. The stream is binary if the mode contains a "b", else text; the file itself is
    // never translated. Throws 109, and stays closed, if the file does not open or the name has
    // more than 259 characters.
    virtual void OpenM(const char *name, const char *mode);
    // Sets the print format `index`, for exactly the values that the default has:
    //
    //   0  OutputCM "%5d"          4  OutputInt2DM     8  OutputPixel4DM
    //   1  OutputDM "%10d"         5  OutputPoint2DM   9  OutputTexPixel4DM
    //   2  OutputRM "%16.8e"       6  OutputPoint3DM  10  OutputInt4DM
    //   3  OutputSM "%s"           7  OutputPoint4DM  11  OutputInt3DM
    //
    // The tuples' defaults are "%10d", "%16.8e", and "%5d" for a texture pixel, joined by ", ". 12
    // to 19 are free. Ignored, with the result 1: an index outside 0 to 19, and a text of more than
    // 49 characters.
    virtual int SetFmtM(int index, const char *format);
    // Restores the print format `index`, all of them for -1. Any other index outside 0 to 19 is
    // ignored.
    virtual int LoadDefaultFmtM(int index);
    // Writes a string as a line (text; the new line only if automatic new line is on) or as a
    // counted string (binary).
    virtual int OutputsM(const char *line);
    // The tuple writers. In a text stream the members are printed by the tuple's format, then a new
    // line if automatic new line is on.
    virtual int OutputTexPixel4DM(const unsigned char value[4]);
    virtual int OutputPixel4DM(const float value[4]);
    virtual int OutputPoint4DM(const float value[4]);
    virtual int OutputPoint3DM(const float value[3]);
    virtual int OutputPoint2DM(const float value[2]);
    virtual int OutputInt2DM(const int value[2]);
    virtual int OutputInt3DM(const int value[3]);
    virtual int OutputInt4DM(const int value[4]);
    // Writes a string. Text: `text` by format 3, and a new line if automatic new line is on.
    // Binary:
    //
    //   length below 1             counted string of strlen(text) bytes
    //   length n, counted 0        n bytes without a length
    //   length n, counted not 0    counted string of n bytes
    virtual int OutputSM(const char *text, int length, int counted);
    // Writes up to nine floats; see OutputCM.
    virtual int OutputRM(const float *value0, const float *value1 = nullptr,
                         const float *value2 = nullptr, const float *value3 = nullptr,
                         const float *value4 = nullptr, const float *value5 = nullptr,
                         const float *value6 = nullptr, const float *value7 = nullptr,
                         const float *value8 = nullptr);
    // Writes up to nine integers; see OutputCM.
    virtual int OutputDM(const int *value0, const int *value1 = nullptr,
                         const int *value2 = nullptr, const int *value3 = nullptr,
                         const int *value4 = nullptr, const int *value5 = nullptr,
                         const int *value6 = nullptr, const int *value7 = nullptr,
                         const int *value8 = nullptr);
    // Writes up to nine bytes; a null pointer skips its place. Text: each as a signed number by the
    // type's format, joined by the separator, then a new line if automatic new line is on; the
    // first value is required. Binary: one byte each.
    virtual int OutputCM(const char *value0, const char *value1 = nullptr,
                         const char *value2 = nullptr, const char *value3 = nullptr,
                         const char *value4 = nullptr, const char *value5 = nullptr,
                         const char *value6 = nullptr, const char *value7 = nullptr,
                         const char *value8 = nullptr);
    // Reads a line (text) or a counted string (binary). At most size - 1 characters are kept and
    // terminated, the rest is read and dropped; a size below 1 keeps nothing. The line end is not
    // stored. At the end of a text file the line is empty.
    virtual int InputGetsM(char *buffer, int size);
    // The tuple readers. In a text stream the members are expected joined by the separator; the
    // rest of the line is dropped if automatic new line is on. A member of a texture pixel is the
    // low byte of the number, and its four bytes are stored only when all of them were read.
    virtual int InputTexPixel4DM(unsigned char value[4]);
    virtual int InputPixel4DM(float value[4]);
    virtual int InputPoint4DM(float value[4]);
    virtual int InputPoint3DM(float value[3]);
    virtual int InputPoint2DM(float value[2]);
    virtual int InputInt2DM(int value[2]);
    virtual int InputInt3DM(int value[3]);
    virtual int InputInt4DM(int value[4]);
    // Reads what OutputSM wrote with the same `length` and `counted`. Text: one word that ends at
    // white space, then the rest of the line is dropped if automatic new line is on; a string with
    // a blank comes back as its first word. Binary: a counted string is terminated, a run of
    // `length` bytes without a stored length is not; the stored length is not limited by `length`.
    // Either way `text` must have room for the longest string of the file and its terminator. A
    // stored length is checked against what is left of the file before `text` is touched.
    virtual int InputSM(char *text, int length, int counted);
    // Reads up to nine floats; see InputCM.
    virtual int InputRM(float *value0, float *value1 = nullptr, float *value2 = nullptr,
                        float *value3 = nullptr, float *value4 = nullptr, float *value5 = nullptr,
                        float *value6 = nullptr, float *value7 = nullptr, float *value8 = nullptr);
    // Reads up to nine bytes; a null pointer skips its place, and nothing is read for it. Text:
    // each is the low byte of a number; numbers are expected joined by the separator, the first is
    // required, and the rest of the line is dropped if automatic new line is on. Binary: one byte
    // each.
    virtual int InputCM(char *value0, char *value1 = nullptr, char *value2 = nullptr,
                        char *value3 = nullptr, char *value4 = nullptr, char *value5 = nullptr,
                        char *value6 = nullptr, char *value7 = nullptr, char *value8 = nullptr);
    // Closes the file.
    virtual ~TqIOCL();

    // Length in bytes that the file had when it was opened; INT_MAX for a longer one.
    int GetFileLengthM() const { return fileLength; }

private:
    static constexpr int formatCount = 20;
    static constexpr int formatSize = 50;

protected:
    // Print formats as the constructor made them, and as they are now.
    char defaultFmt[formatCount][formatSize];
    char fmt[formatCount][formatSize];
    int ioType;      // 0 text, 1 binary
    int autoNewLine; // on for 1 only
    char separator[50];
    std::FILE *fileDescript; // owned; null when closed
    char fileName[260];
    char versionStr[100];
    int versionNum;
    int fileLength; // when the file was opened

private:
    friend struct trunnion::detail::StreamAccess;
    struct Transfer;
    struct Values;

    // One value of `size` bytes from the file; nothing for a null item. 107 on a short transfer.
    void readOneItemBinaryM(void *item, int size);
    // One value of `size` bytes to the file; nothing for a null item. 108 on a short transfer.
    void writeOneItemBinaryM(const void *item, int size);

    // Upper bound of the bytes that can still be read from the position; INT64_MAX when there is no
    // file or the system cannot tell. Stands behind the public operations, whose order is fixed.
    virtual long long remainingM();
    // See StreamAccess::takeReady and StreamAccess::claimRoom. Nothing in a class that a host
    // derives: what it replaces would be passed by.
    virtual std::span<const unsigned char> takeReadyM(std::size_t recordBytes, int most);
    virtual std::span<unsigned char> claimRoomM(std::size_t recordBytes, int most);

    // The buffer of the files that OpenM opens: a larger one than the C library's.
    std::unique_ptr<char[]> fileBuffer;
};
