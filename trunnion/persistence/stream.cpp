#include "trunnion/persistence/stream.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <span>

#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/detail/text_io.h"
#include "trunnion/platform/files.h"

using trunnion::detail::LinePrinter;
using trunnion::detail::openFailed;
using trunnion::detail::readFailed;
using trunnion::detail::scanNumber;
using trunnion::detail::writeFailed;

namespace {

// The formats by the operation that uses them.
enum Format {
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

constexpr const char *defaultFormats[] = {
    "%5d",
    "%10d",
    "%16.8e",
    "%s",
    "%10d, %10d",
    "%16.8e, %16.8e",
    "%16.8e, %16.8e, %16.8e",
    "%16.8e, %16.8e, %16.8e, %16.8e",
    "%16.8e, %16.8e, %16.8e, %16.8e",
    "%5d, %5d, %5d, %5d",
    "%10d, %10d, %10d, %10d",
    "%10d, %10d, %10d",
};

constexpr int noVersion = -2147483647;

// Copies what fits of `text`, which may be a part of `out`; null counts as empty.
template <std::size_t size>
void copyText(char (&out)[size], const char *text) {
    const std::size_t length = text != nullptr ? std::min(std::strlen(text), size - 1) : 0;
    if (length > 0) {
        std::memmove(out, text, length);
    }
    out[length] = '\0';
}

template <class T>
T *required(T *pointer, int code) {
    if (pointer == nullptr) {
        throw code;
    }
    return pointer;
}

// strlen of a required text; a stored length has 31 bits.
int lengthOf(const char *text) {
    const std::size_t length = std::strlen(required(text, writeFailed));
    return length <= INT_MAX ? static_cast<int>(length) : throw writeFailed;
}

// One value as the default formats print it.
void printDefault(LinePrinter &printer, char value) {
    printer.integer(value, 5);
}
void printDefault(LinePrinter &printer, unsigned char value) {
    printer.integer(value, 5);
}
void printDefault(LinePrinter &printer, int value) {
    printer.integer(value, 10);
}
void printDefault(LinePrinter &printer, float value) {
    printer.real(value);
}

// One value as an argument of printf.
int promoted(char value) {
    return value;
}
unsigned int promoted(unsigned char value) {
    return value;
}
int promoted(int value) {
    return value;
}
double promoted(float value) {
    return value;
}

bool scanValue(std::FILE *file, char &value) {
    int number = 0;
    const bool scanned = scanNumber(file, number);
    if (scanned) {
        value = static_cast<char>(number);
    }
    return scanned;
}
bool scanValue(std::FILE *file, int &value) {
    return scanNumber(file, value);
}
bool scanValue(std::FILE *file, float &value) {
    return scanNumber(file, value);
}

} // namespace

// The typed operations, written once for all types: a list of places, some of which may be null,
// and a tuple of members that stand one behind the other.
struct TqIOCL::Transfer {
    static bool isText(const TqIOCL &stream) { return stream.ioType == 0; }

    static bool isDefault(const TqIOCL &stream, Format format) {
        return std::strcmp(stream.fmt[format], stream.defaultFmt[format]) == 0;
    }

    static int finish(TqIOCL &stream, LinePrinter &printer) {
        return printer.finish(stream.autoNewLine == 1) ? 1 : throw writeFailed;
    }

    static int dropRestOfLine(TqIOCL &stream) {
        if (stream.autoNewLine == 1) {
            stream.SkipLineM();
        }
        return 1;
    }

    template <class T>
    static int write(TqIOCL &stream, Format format, const std::array<const T *, 9> &values) {
        if (isText(stream)) {
            return print(stream, format, values);
        }
        for (const T *value : values) {
            stream.writeOneItemBinaryM(value, sizeof(T));
        }
        return 1;
    }

    template <class T>
    static int print(TqIOCL &stream, Format format, const std::array<const T *, 9> &values) {
        required(values[0], writeFailed);
        LinePrinter printer(required(stream.fileDescript, writeFailed));
        const bool byDefault = isDefault(stream, format);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (values[i] == nullptr) {
                continue;
            }
            if (i > 0) {
                printer.separator(stream.separator);
            }
            if (byDefault) {
                printDefault(printer, *values[i]);
            } else {
                printer.formatted(stream.fmt[format], promoted(*values[i]));
            }
        }
        return finish(stream, printer);
    }

    template <std::size_t count, class T>
    static int writeTuple(TqIOCL &stream, Format format, const T *value) {
        if (isText(stream)) {
            return printTuple<count>(stream, format, required(value, writeFailed));
        }
        stream.writeOneItemBinaryM(value, sizeof(T) * count);
        return 1;
    }

    template <std::size_t count, class T>
    static int printTuple(TqIOCL &stream, Format format, const T *value) {
        LinePrinter printer(required(stream.fileDescript, writeFailed));
        if (!isDefault(stream, format)) {
            T member[4] = {};
            std::copy_n(value, count, member);
            // printf passes over the members that the format of a shorter tuple does not name.
            printer.formatted(stream.fmt[format], promoted(member[0]), promoted(member[1]),
                              promoted(member[2]), promoted(member[3]));
            return finish(stream, printer);
        }
        printDefault(printer, value[0]);
        for (std::size_t i = 1; i < count; ++i) {
            printer.separator(", ");
            printDefault(printer, value[i]);
        }
        return finish(stream, printer);
    }

    template <class T>
    static int read(TqIOCL &stream, const std::array<T *, 9> &values) {
        if (isText(stream)) {
            return scan<T>(stream, values);
        }
        for (T *value : values) {
            stream.readOneItemBinaryM(value, sizeof(T));
        }
        return 1;
    }

    template <std::size_t count, class T>
    static int readTuple(TqIOCL &stream, T *value) {
        if (isText(stream)) {
            return scanTuple<count>(stream, required(value, readFailed));
        }
        stream.readOneItemBinaryM(value, sizeof(T) * count);
        return 1;
    }

    template <std::size_t count, class T>
    static int scanTuple(TqIOCL &stream, T *value) {
        std::array<T *, count> members;
        for (std::size_t i = 0; i < count; ++i) {
            members[i] = value + i;
        }
        return scan<T>(stream, members);
    }

    template <class T>
    static int scan(TqIOCL &stream, std::span<T *const> values) {
        required(values[0], readFailed);
        std::FILE *file = required(stream.fileDescript, readFailed);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (values[i] == nullptr) {
                continue;
            }
            if (i > 0 && !trunnion::detail::scanSeparator(file, stream.separator)) {
                throw readFailed;
            }
            if (!scanValue(file, *values[i])) {
                throw readFailed;
            }
        }
        return dropRestOfLine(stream);
    }

    // `length` bytes from the file, which must be able to hold them.
    static void readBytes(TqIOCL &stream, char *bytes, int length) {
        if (length > 0) {
            stream.readOneItemBinaryM(required(bytes, readFailed), length);
        }
    }

    // The length of a counted string, which the rest of the file must be able to hold. Asks this
    // class for what is left, since a stream that keeps its values in memory knows only of those.
    static int readLength(TqIOCL &stream) {
        int length = 0;
        stream.readOneItemBinaryM(&length, sizeof length);
        if (length < 0 || length > stream.TqIOCL::remainingM()) {
            throw readFailed;
        }
        return length;
    }

    static void writeCounted(TqIOCL &stream, const char *bytes, int length) {
        stream.writeOneItemBinaryM(&length, sizeof length);
        writeBytes(stream, bytes, length);
    }

    static void writeBytes(TqIOCL &stream, const char *bytes, int length) {
        if (length > 0) {
            stream.writeOneItemBinaryM(required(bytes, writeFailed), length);
        }
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

TqIOCL::TqIOCL()
    : defaultFmt{},
      fmt{},
      ioType(0),
      autoNewLine(1),
      separator{", "},
      fileDescript(nullptr),
      fileName{},
      versionStr{},
      versionNum(noVersion),
      fileLength(0) {
    for (std::size_t i = 0; i < std::size(defaultFormats); ++i) {
        copyText(defaultFmt[i], defaultFormats[i]);
    }
    TqIOCL::LoadDefaultFmtM(-1);
}

TqIOCL::~TqIOCL() {
    TqIOCL::CloseM();
}

// The file and the position in it.

void TqIOCL::OpenM(const char *name, const char *mode) {
    if (fileDescript != nullptr) {
        CloseM();
    }
    const bool hasRoom = name != nullptr && std::strlen(name) < sizeof fileName;
    fileDescript = hasRoom && mode != nullptr ? trunnion::detail::openFile(name, mode) : nullptr;
    if (fileDescript == nullptr) {
        throw openFailed;
    }
    copyText(fileName, name);
    ioType = std::strchr(mode, 'b') != nullptr ? 1 : 0;
    std::rewind(fileDescript);
    const std::int64_t length = trunnion::detail::remainingBytes(fileDescript);
    const bool isKnown = length != INT64_MAX;
    fileLength = isKnown ? static_cast<int>(std::min<std::int64_t>(length, INT_MAX)) : 0;
}

void TqIOCL::CreateIndirectlyM(std::FILE *file, const char *name, const char *version,
                               int versionNumber) {
    CloseM();
    fileDescript = file;
    copyText(fileName, name);
    copyText(versionStr, version);
    versionNum = versionNumber;
}

void TqIOCL::CloseM() {
    if (fileDescript != nullptr) {
        std::fclose(fileDescript);
        fileDescript = nullptr;
    }
}

int TqIOCL::TellM() {
    if (fileDescript == nullptr) {
        return 0;
    }
    return static_cast<int>(std::min<long>(std::ftell(fileDescript), INT_MAX));
}

void TqIOCL::SeekM(int offset, int origin) {
    if (fileDescript != nullptr) {
        std::fseek(fileDescript, offset, origin);
    }
}

void TqIOCL::RewindM() {
    if (fileDescript != nullptr) {
        std::rewind(fileDescript);
    }
}

int TqIOCL::EofM() {
    if (fileDescript == nullptr || std::feof(fileDescript) != 0) {
        return 1;
    }
    // A length of INT_MAX may stand for a longer file.
    const bool atEnd =
        fileLength < INT_MAX ? std::ftell(fileDescript) >= fileLength : TqIOCL::remainingM() <= 0;
    return atEnd ? 1 : 0;
}

int TqIOCL::FinishedReadM() {
    const int atEnd = EofM();
    if (atEnd != 0) {
        return atEnd;
    }
    return TqIOCL::remainingM() <= 0 ? 1 : 0;
}

long long TqIOCL::remainingM() {
    return fileDescript != nullptr ? trunnion::detail::remainingBytes(fileDescript) : INT64_MAX;
}

void TqIOCL::FinishSaveM() {}

std::FILE *TqIOCL::GetFileDescriptM() {
    return fileDescript;
}

int TqIOCL::GetIoTypeM() const {
    return ioType;
}

// Name, version, separator and formats.

const char *TqIOCL::GetFileNameM() const {
    return fileName;
}

void TqIOCL::SetFileNameM(const char *name) {
    copyText(fileName, name);
}

void TqIOCL::GetFilePathM(char *out) {
    const char *last = std::strrchr(fileName, '\\');
    const std::size_t length = last != nullptr ? static_cast<std::size_t>(last - fileName) + 1 : 0;
    std::memcpy(out, fileName, length);
    out[length] = '\0';
}

const char *TqIOCL::GetVersionStrM() const {
    return versionStr;
}

void TqIOCL::SetVersionStringM(const char *version) {
    copyText(versionStr, version);
}

int TqIOCL::GetVersionNumM(int *version) {
    *version = versionNum;
    return 1;
}

void TqIOCL::SetVersionNumM(int version) {
    versionNum = version;
}

void TqIOCL::SetSeparatorM(const char *text) {
    if (text != nullptr && std::strlen(text) < sizeof separator - 1) {
        copyText(separator, text);
    }
}

void TqIOCL::SetAutoNewLineM(int mode) {
    autoNewLine = mode;
}

int TqIOCL::GetAutoNewLineM() {
    return autoNewLine;
}

int TqIOCL::SetFmtM(int index, const char *format) {
    if (index >= 0 && index < formatCount && format != nullptr &&
        std::strlen(format) < formatSize) {
        copyText(fmt[index], format);
    }
    return 1;
}

int TqIOCL::LoadDefaultFmtM(int index) {
    if (index == -1) {
        std::memcpy(fmt, defaultFmt, sizeof fmt);
    } else if (index >= 0 && index < formatCount) {
        copyText(fmt[index], defaultFmt[index]);
    }
    return 1;
}

void TqIOCL::GetFmtStrM(char *out) const {
    std::strcpy(out, defaultFmt[formatInt]);
    std::strcat(out, separator);
    std::strcat(out, "%s");
}

// Lines and strings.

int TqIOCL::SkipSomeLinesM(int count) {
    for (; count > 0; --count) {
        SkipLineM();
    }
    return 1;
}

int TqIOCL::SkipLineM() {
    char dropped[5];
    InputGetsM(dropped, sizeof dropped);
    return 1;
}

int TqIOCL::InputSeparatorM() {
    std::FILE *file = required(fileDescript, readFailed);
    const int character = std::getc(file);
    if (character == EOF) {
        throw readFailed;
    }
    if (Transfer::isText(*this) && character == '\r') {
        const int following = std::getc(file);
        if (following != '\n') {
            std::ungetc(following, file);
        }
    }
    return 1;
}

int TqIOCL::SearchStrM(const char *line) {
    char found[255];
    while (EofM() == 0) {
        InputGetsM(found, sizeof found);
        if (std::strcmp(found, line) == 0) {
            return 1;
        }
    }
    return 0;
}

int TqIOCL::InputGetsM(char *buffer, int size) {
    if (Transfer::isText(*this)) {
        std::FILE *file = required(fileDescript, readFailed);
        if (!trunnion::detail::scanLine(file, buffer, size) && std::feof(file) == 0) {
            throw readFailed;
        }
        return 1;
    }
    const int length = Transfer::readLength(*this);
    const int kept = std::min(length, std::max(size, 1) - 1);
    Transfer::readBytes(*this, buffer, kept);
    if (size > 0) {
        buffer[kept] = '\0';
    }
    Transfer::dropBytes(*this, length - kept);
    return 1;
}

int TqIOCL::OutputsM(const char *line) {
    const int length = lengthOf(line);
    if (!Transfer::isText(*this)) {
        Transfer::writeCounted(*this, line, length);
        return 1;
    }
    std::FILE *file = required(fileDescript, writeFailed);
    if (std::fputs(line, file) < 0) {
        throw writeFailed;
    }
    LinePrinter end(file);
    return Transfer::finish(*this, end);
}

int TqIOCL::InputSM(char *text, int length, int counted) {
    if (Transfer::isText(*this)) {
        std::FILE *file = required(fileDescript, readFailed);
        if (trunnion::detail::scanWord(file, required(text, readFailed), SIZE_MAX) == 0) {
            throw readFailed;
        }
        return Transfer::dropRestOfLine(*this);
    }
    const bool isRaw = length >= 1 && counted == 0;
    const int stored = isRaw ? length : Transfer::readLength(*this);
    Transfer::readBytes(*this, text, stored);
    if (!isRaw) {
        required(text, readFailed)[stored] = '\0';
    }
    return 1;
}

int TqIOCL::OutputSM(const char *text, int length, int counted) {
    if (Transfer::isText(*this)) {
        LinePrinter printer(required(fileDescript, writeFailed));
        printer.formatted(fmt[formatText], required(text, writeFailed));
        return Transfer::finish(*this, printer);
    }
    const int stored = length >= 1 ? length : lengthOf(text);
    if (length < 1 || counted != 0) {
        Transfer::writeCounted(*this, text, stored);
    } else {
        Transfer::writeBytes(*this, text, stored);
    }
    return 1;
}

// Raw values.

void TqIOCL::readOneItemBinaryM(void *item, int size) {
    if (item == nullptr) {
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(size);
    if (std::fread(item, 1, bytes, required(fileDescript, readFailed)) != bytes) {
        throw readFailed;
    }
}

void TqIOCL::writeOneItemBinaryM(const void *item, int size) {
    if (item == nullptr) {
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(size);
    if (std::fwrite(item, 1, bytes, required(fileDescript, writeFailed)) != bytes) {
        throw writeFailed;
    }
}

void TqIOCL::InputRsM(float *values, int count) {
    if (Transfer::isText(*this)) {
        throw writeFailed; // the reader reports the code of the writer
    }
    const std::size_t wanted = static_cast<std::size_t>(std::max(count, 0));
    std::FILE *file = required(fileDescript, readFailed);
    if (wanted > 0 &&
        std::fread(required(values, readFailed), sizeof(float), wanted, file) != wanted) {
        throw readFailed;
    }
}

void TqIOCL::OutputRsM(const float *values, int count) {
    if (Transfer::isText(*this)) {
        throw writeFailed;
    }
    const std::size_t wanted = static_cast<std::size_t>(std::max(count, 0));
    std::FILE *file = required(fileDescript, writeFailed);
    if (wanted > 0 &&
        std::fwrite(required(values, writeFailed), sizeof(float), wanted, file) != wanted) {
        throw writeFailed;
    }
}

// Up to nine values.

int TqIOCL::InputDM(int *value0, int *value1, int *value2, int *value3, int *value4, int *value5,
                    int *value6, int *value7, int *value8) {
    return Transfer::read<int>(
        *this, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::InputRM(float *value0, float *value1, float *value2, float *value3, float *value4,
                    float *value5, float *value6, float *value7, float *value8) {
    return Transfer::read<float>(
        *this, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::InputCM(char *value0, char *value1, char *value2, char *value3, char *value4,
                    char *value5, char *value6, char *value7, char *value8) {
    return Transfer::read<char>(
        *this, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::InputDM(int *value, const char *format) {
    if (!Transfer::isText(*this)) {
        readOneItemBinaryM(value, sizeof *value);
        return 1;
    }
    std::FILE *file = required(fileDescript, readFailed);
    if (std::fscanf(file, required(format, readFailed), required(value, readFailed)) != 1) {
        throw readFailed;
    }
    return Transfer::dropRestOfLine(*this);
}

int TqIOCL::OutputDM(const int *value0, const int *value1, const int *value2, const int *value3,
                     const int *value4, const int *value5, const int *value6, const int *value7,
                     const int *value8) {
    return Transfer::write<int>(
        *this, formatInt, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::OutputRM(const float *value0, const float *value1, const float *value2,
                     const float *value3, const float *value4, const float *value5,
                     const float *value6, const float *value7, const float *value8) {
    return Transfer::write<float>(
        *this, formatReal,
        {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::OutputCM(const char *value0, const char *value1, const char *value2, const char *value3,
                     const char *value4, const char *value5, const char *value6, const char *value7,
                     const char *value8) {
    return Transfer::write<char>(
        *this, formatChar,
        {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

// Tuples.

int TqIOCL::InputInt2DM(int value[2]) {
    return Transfer::readTuple<2>(*this, value);
}

int TqIOCL::InputInt3DM(int value[3]) {
    return Transfer::readTuple<3>(*this, value);
}

int TqIOCL::InputInt4DM(int value[4]) {
    return Transfer::readTuple<4>(*this, value);
}

int TqIOCL::InputPoint2DM(float value[2]) {
    return Transfer::readTuple<2>(*this, value);
}

int TqIOCL::InputPoint3DM(float value[3]) {
    return Transfer::readTuple<3>(*this, value);
}

int TqIOCL::InputPoint4DM(float value[4]) {
    return Transfer::readTuple<4>(*this, value);
}

int TqIOCL::InputPixel4DM(float value[4]) {
    return Transfer::readTuple<4>(*this, value);
}

int TqIOCL::InputTexPixel4DM(unsigned char value[4]) {
    if (!Transfer::isText(*this)) {
        readOneItemBinaryM(value, 4);
        return 1;
    }
    int numbers[4];
    Transfer::scanTuple<4>(*this, numbers);
    std::transform(numbers, numbers + 4, required(value, readFailed),
                   [](int number) { return static_cast<unsigned char>(number); });
    return 1;
}

int TqIOCL::OutputInt2DM(const int value[2]) {
    return Transfer::writeTuple<2>(*this, formatInt2, value);
}

int TqIOCL::OutputInt3DM(const int value[3]) {
    return Transfer::writeTuple<3>(*this, formatInt3, value);
}

int TqIOCL::OutputInt4DM(const int value[4]) {
    return Transfer::writeTuple<4>(*this, formatInt4, value);
}

int TqIOCL::OutputPoint2DM(const float value[2]) {
    return Transfer::writeTuple<2>(*this, formatPoint2, value);
}

int TqIOCL::OutputPoint3DM(const float value[3]) {
    return Transfer::writeTuple<3>(*this, formatPoint3, value);
}

int TqIOCL::OutputPoint4DM(const float value[4]) {
    return Transfer::writeTuple<4>(*this, formatPoint4, value);
}

int TqIOCL::OutputPixel4DM(const float value[4]) {
    return Transfer::writeTuple<4>(*this, formatPixel4, value);
}

int TqIOCL::OutputTexPixel4DM(const unsigned char value[4]) {
    return Transfer::writeTuple<4>(*this, formatTexPixel4, value);
}

namespace trunnion::detail {

long long StreamAccess::remaining(TqIOCL &stream) {
    return stream.remainingM();
}

void StreamAccess::require(TqIOCL &stream, long long count, long long bytesEach) {
    if (count < 0 || (bytesEach > 0 && count > remaining(stream) / bytesEach)) {
        throw readFailed;
    }
}

void StreamAccess::skipWord(TqIOCL &stream) {
    if (!TqIOCL::Transfer::isText(stream)) {
        stream.SkipLineM();
        return;
    }
    if (scanWord(required(stream.fileDescript, readFailed), nullptr, 0) == 0) {
        throw readFailed;
    }
    TqIOCL::Transfer::dropRestOfLine(stream);
}

} // namespace trunnion::detail
