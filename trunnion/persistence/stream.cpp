#include "trunnion/persistence/stream.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <typeinfo>

#include "trunnion/containers/item_base.h"
#include "trunnion/persistence/detail/stream_transfer.h"
#include "trunnion/platform/files.h"

using namespace trunnion::detail;

namespace {

// In the order of StreamFormat; the formats behind them are empty.
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

// Copies what fits of `text`, which may be a part of `out`; null counts as empty.
template <std::size_t size>
void copyText(char (&out)[size], const char *text) {
    const std::size_t length = text != nullptr ? std::min(std::strlen(text), size - 1) : 0;
    if (length > 0) {
        std::memmove(out, text, length);
    }
    out[length] = '\0';
}

} // namespace

TqIOCL::TqIOCL()
    : defaultFmt{},
      fmt{},
      ioType(0),
      autoNewLine(1),
      separator{", "},
      fileDescript(nullptr),
      fileName{},
      versionStr{},
      versionNum(SL_DELETED_INT),
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
    fileDescript = hasRoom && mode != nullptr ? openFile(name, mode) : nullptr;
    if (fileDescript == nullptr) {
        throw openFailed;
    }
    constexpr std::size_t bufferSize = 1U << 14;
    if (fileBuffer == nullptr) {
        fileBuffer.reset(new (std::nothrow) char[bufferSize]);
    }
    if (fileBuffer != nullptr) {
        std::setvbuf(fileDescript, fileBuffer.get(), _IOFBF, bufferSize);
    }
    copyText(fileName, name);
    ioType = std::strchr(mode, 'b') != nullptr ? 1 : 0;
    std::rewind(fileDescript);
    const std::int64_t length = remainingBytes(fileDescript);
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
    return static_cast<int>(std::min<std::int64_t>(filePosition(fileDescript), INT_MAX));
}

void TqIOCL::SeekM(int offset, int origin) {
    if (fileDescript != nullptr) {
        seekFile(fileDescript, offset, origin);
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
        fileLength < INT_MAX ? filePosition(fileDescript) >= fileLength : TqIOCL::remainingM() <= 0;
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
    return fileDescript != nullptr ? remainingBytes(fileDescript) : INT64_MAX;
}

std::span<const unsigned char> TqIOCL::takeReadyM(std::size_t recordBytes, int most) {
    if (typeid(*this) != typeid(TqIOCL) || fileDescript == nullptr) {
        return {};
    }
    const std::span<const char> fetched = fetchedBytes(fileDescript);
    const std::size_t size = StreamAccess::wholeRecords(fetched.size(), recordBytes, most);
    passFetched(fileDescript, size);
    return {reinterpret_cast<const unsigned char *>(fetched.data()), size};
}

std::span<unsigned char> TqIOCL::claimRoomM(std::size_t recordBytes, int most) {
    if (typeid(*this) != typeid(TqIOCL) || fileDescript == nullptr) {
        return {};
    }
    const std::span<char> room = writableRoom(fileDescript);
    const std::size_t size = StreamAccess::wholeRecords(room.size(), recordBytes, most);
    passWritten(fileDescript, size);
    return {reinterpret_cast<unsigned char *>(room.data()), size};
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
    *required(version, readFailed) = versionNum;
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
    const int character = nextByte(file);
    if (character == EOF) {
        throw readFailed;
    }
    if (Transfer::isText(*this) && character == '\r') {
        const int following = nextByte(file);
        if (following != '\n') {
            std::ungetc(following, file);
        }
    }
    return 1;
}

int TqIOCL::SearchStrM(const char *line) {
    required(line, readFailed);
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
    if (size > 0) {
        required(buffer, readFailed);
    }
    if (Transfer::isText(*this)) {
        std::FILE *file = required(fileDescript, readFailed);
        if (!scanLine(file, buffer, size) && std::feof(file) == 0) {
            throw readFailed;
        }
        return 1;
    }
    const int length = Transfer::readLength(*this);
    const int kept = std::min(length, std::max(size, 1) - 1);
    readOneItemBinaryM(buffer, kept);
    if (size > 0) {
        buffer[kept] = '\0';
    }
    Transfer::dropBytes(*this, length - kept);
    return 1;
}

int TqIOCL::OutputsM(const char *line) {
    const int length = lengthOf(line);
    if (!Transfer::isText(*this)) {
        return Transfer::writeCounted(*this, line, length);
    }
    LinePrinter printer(required(fileDescript, writeFailed));
    printer.text(line);
    return Transfer::finish(*this, printer);
}

int TqIOCL::InputSM(char *text, int length, int counted) {
    required(text, readFailed);
    if (Transfer::isText(*this)) {
        if (scanWord(required(fileDescript, readFailed), text, SIZE_MAX) == 0) {
            throw readFailed;
        }
        return Transfer::dropRestOfLine(*this);
    }
    if (length >= 1 && counted == 0) {
        readOneItemBinaryM(text, length);
        return 1;
    }
    const int stored = Transfer::readLength(*this);
    readOneItemBinaryM(text, stored);
    text[stored] = '\0';
    return 1;
}

int TqIOCL::OutputSM(const char *text, int length, int counted) {
    required(text, writeFailed);
    if (Transfer::isText(*this)) {
        LinePrinter printer(required(fileDescript, writeFailed));
        if (Transfer::isDefault(*this, formatText)) {
            printer.text(text);
        } else {
            printer.formatted(fmt[formatText], text);
        }
        return Transfer::finish(*this, printer);
    }
    if (length >= 1 && counted == 0) {
        writeOneItemBinaryM(text, length);
        return 1;
    }
    return Transfer::writeCounted(*this, text, length >= 1 ? length : lengthOf(text));
}

// Raw values.

void TqIOCL::readOneItemBinaryM(void *item, int size) {
    if (item == nullptr) {
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(size);
    if (readBytes(required(fileDescript, readFailed), item, bytes) != bytes) {
        throw readFailed;
    }
}

void TqIOCL::writeOneItemBinaryM(const void *item, int size) {
    if (item == nullptr) {
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(size);
    if (writeBytes(required(fileDescript, writeFailed), item, bytes) != bytes) {
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

namespace trunnion::detail {

long long StreamAccess::remaining(TqIOCL &stream) {
    return stream.remainingM();
}

void StreamAccess::require(TqIOCL &stream, long long count, long long bytesEach) {
    if (count < 0 || (bytesEach > 0 && count > remaining(stream) / bytesEach)) {
        throw readFailed;
    }
}

std::span<const unsigned char> StreamAccess::takeReady(TqIOCL &stream, std::size_t recordBytes,
                                                       int most) {
    return stream.takeReadyM(recordBytes, most);
}

std::span<unsigned char> StreamAccess::claimRoom(TqIOCL &stream, std::size_t recordBytes,
                                                 int most) {
    return stream.claimRoomM(recordBytes, most);
}

void StreamAccess::skipWord(TqIOCL &stream) {
    if (!TqIOCL::Transfer::isText(stream)) {
        stream.SkipLineM();
        return;
    }
    if (stream.fileDescript == nullptr) {
        char word[260];
        stream.InputSM(word, -1, 1);
        return;
    }
    if (scanWord(stream.fileDescript, nullptr, 0) == 0) {
        throw readFailed;
    }
    TqIOCL::Transfer::dropRestOfLine(stream);
}

} // namespace trunnion::detail
