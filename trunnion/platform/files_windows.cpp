// Files on Windows: the system itself knows drives, both separators, and names without regard to
// case.
#include "trunnion/platform/files.h"
#include "trunnion/platform/system.h"

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
    if (position < 0 || length < 0) {
        return INT64_MAX;
    }
    return length > position ? length - position : 0;
}

int nextByte(std::FILE *file) {
    return _getc_nolock(file);
}

int fileAttributes(const char *path) {
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return -1;
    }
    const int known = static_cast<int>(attributes & (attributeReadOnly | attributeDirectory));
    return known != 0 ? known : attributeNormal;
}

bool setFileAttributes(const char *path, int attributes) {
    return SetFileAttributesA(path, static_cast<DWORD>(attributes)) != 0;
}

} // namespace detail
} // namespace trunnion
