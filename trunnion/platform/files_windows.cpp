// Files on Windows: the system itself knows drives, both separators, and names without regard to
// case.
#include "trunnion/platform/files.h"
#include "trunnion/platform/system.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include <io.h>
#include <windows.h>

namespace trunnion {

void MapDrive(char /*letter*/, const char * /*directory*/) {}

namespace detail {

std::string systemPath(const char *path) {
    return path;
}

std::FILE *openFile(const char *path, const char *mode) {
    std::string binaryMode = mode;
    if (std::strchr(mode, 'b') == nullptr) {
        binaryMode += 'b';
    }
    return std::fopen(path, binaryMode.c_str());
}

std::int64_t remainingBytes(std::FILE *file) {
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    if (GetFileType(handle) != FILE_TYPE_DISK) {
        return INT64_MAX;
    }
    const std::int64_t position = _ftelli64(file);
    const std::int64_t length = _filelengthi64(_fileno(file));
    if (length < 0) {
        return INT64_MAX;
    }
    const bool hasShrunk = position < 0; // below what is buffered of it
    return hasShrunk ? 0 : std::max<std::int64_t>(0, length - position);
}

std::int64_t filePosition(std::FILE *file) {
    return _ftelli64(file);
}

bool seekFile(std::FILE *file, std::int64_t offset, int origin) {
    if (_fseeki64(file, offset, origin) != 0) {
        return false;
    }
    std::clearerr(file); // not every C library there does so by itself
    return true;
}

// The C library's own fprintf reports the length of a text that it could not write.
int printTo(std::FILE *file, const char *format, ...) {
    std::va_list values;
    va_start(values, format);
    std::va_list again;
    va_copy(again, values);
    const int length = std::vsnprintf(nullptr, 0, format, values);
    va_end(values);
    std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    text.pop_back();
    return length >= 0 && std::fwrite(text.data(), 1, text.size(), file) == text.size() ? length
                                                                                        : -1;
}

std::size_t readBytes(std::FILE *file, void *out, std::size_t size) {
    return std::fread(out, 1, size, file);
}

std::size_t writeBytes(std::FILE *file, const void *bytes, std::size_t size) {
    return std::fwrite(bytes, 1, size, file);
}

// The count of a file without a buffer would fall below 0 here, and the next byte that is put back
// be lost.
int nextByteUnlocked(std::FILE *file) {
    return file->_cnt > 0 ? _getc_nolock(file) : std::fgetc(file);
}

int fileAttributes(const char *path) {
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return -1;
    }
    return static_cast<int>(attributes);
}

bool setFileAttributes(const char *path, int attributes) {
    return SetFileAttributesA(path, static_cast<DWORD>(attributes)) != 0;
}

} // namespace detail
} // namespace trunnion
