// Names and directories on Windows.
#include "trunnion/platform/directories.h"

#include <cstring>
#include <memory>

#include <windows.h>

namespace trunnion::detail {

namespace {

// A search of names, closed when it is dropped.
class Search {
public:
    explicit Search(const std::string &pattern) : handle(FindFirstFileA(pattern.c_str(), &entry)) {}
    ~Search() {
        if (handle != INVALID_HANDLE_VALUE) {
            FindClose(handle);
        }
    }
    Search(const Search &) = delete;
    Search &operator=(const Search &) = delete;

    bool hasFound() const { return handle != INVALID_HANDLE_VALUE; }
    bool next() { return FindNextFileA(handle, &entry) != 0; }
    const char *name() const { return entry.cFileName; }
    bool isDirectory() const { return has(FILE_ATTRIBUTE_DIRECTORY); }
    // Other reparse points, like the files of a cloud, hold what they name.
    bool isLink() const {
        return has(FILE_ATTRIBUTE_REPARSE_POINT) &&
               (entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
                entry.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
    }

private:
    bool has(DWORD attribute) const { return (entry.dwFileAttributes & attribute) != 0; }

    WIN32_FIND_DATAA entry{};
    HANDLE handle;
};

bool isDots(const char *name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

bool isDirectory(const char *path) {
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// The letter of the drive whose root `path` names, in upper case, or 0 for any other path.
char rootLetter(const char *path) {
    char full[MAX_PATH] = "";
    const DWORD length = GetFullPathNameA(path, MAX_PATH, full, nullptr);
    constexpr DWORD rootLength = 3; // "C:\"
    return length == rootLength ? CharUpperA(full)[0] : '\0';
}

} // namespace

Found findName(const char *path) {
    const Search search(path);
    if (!search.hasFound()) {
        return Found::nothing;
    }
    return search.isDirectory() ? Found::directory : Found::file;
}

bool listDirectory(const char *path, std::vector<DirectoryEntry> &entries) {
    entries.clear();
    if (!isDirectory(path)) {
        return false; // an empty path or a pattern must not list the current directory
    }
    std::string prefix = path;
    if (std::strchr("\\/", prefix.back()) == nullptr) {
        prefix += '\\';
    }
    Search search(prefix + '*');
    if (!search.hasFound()) {
        return GetLastError() == ERROR_FILE_NOT_FOUND; // the root of an empty drive
    }
    do {
        if (!isDots(search.name())) {
            entries.push_back(
                {search.name(), prefix + search.name(), search.isDirectory(), search.isLink()});
        }
    } while (search.next());
    return true;
}

bool isLink(const char *path) {
    const Search search(path);
    return search.hasFound() && search.isLink();
}

bool isSystemRoot(const char *path) {
    char system[MAX_PATH] = "";
    GetWindowsDirectoryA(system, MAX_PATH);
    return rootLetter(path) != '\0' && rootLetter(path) == CharUpperA(system)[0];
}

bool makeDirectory(const char *path) {
    return CreateDirectoryA(path, nullptr) != 0;
}

bool removeDirectory(const char *path) {
    return rootLetter(path) == '\0' && RemoveDirectoryA(path) != 0;
}

bool removeFile(const char *path) {
    // A link to a directory is removed as one.
    return DeleteFileA(path) != 0 || (isLink(path) && RemoveDirectoryA(path) != 0);
}

bool copyFile(const char *source, const char *target) {
    return CopyFileA(source, target, FALSE) != 0;
}

std::string inCurrentDirectory(const char *name) {
    char directory[MAX_PATH];
    const DWORD length = GetCurrentDirectoryA(MAX_PATH, directory);
    if (length == 0 || length >= MAX_PATH) {
        return {};
    }
    const bool isRoot = directory[length - 1] == '\\';
    return std::string(directory) + (isRoot ? "" : "\\") + name;
}

unsigned int logicalDrives() {
    return GetLogicalDrives();
}

} // namespace trunnion::detail
