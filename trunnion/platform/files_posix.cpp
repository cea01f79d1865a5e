// Files on POSIX: drive paths through the drive map, names without regard to case where the exact
// name is missing.
#include "trunnion/platform/drive_map.h"
#include "trunnion/platform/files.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <strings.h>
#include <sys/stat.h>

namespace trunnion::detail {

namespace {

bool exists(const std::string &path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0;
}

// The entry of `directory` that equals `name` but for case, or `name` itself where there is none.
// Of several the one that sorts first, so that the answer does not depend on the order in which the
// file system lists them.
std::string entryIgnoringCase(const std::string &directory, const std::string &name) {
    const std::unique_ptr<DIR, int (*)(DIR *)> listing(
        opendir(directory.empty() ? "." : directory.c_str()), &closedir);
    std::string best;
    if (listing) {
        while (const dirent *entry = readdir(listing.get())) {
            if (strcasecmp(entry->d_name, name.c_str()) == 0 &&
                (best.empty() || best > entry->d_name)) {
                best = entry->d_name;
            }
        }
    }
    return best.empty() ? name : best;
}

// `path` with every missing component replaced by the name that differs from it in case only.
std::string withExistingSpelling(const std::string &path) {
    if (exists(path)) {
        return path;
    }
    std::string found;
    std::size_t at = 0;
    while (at < path.size()) {
        if (path[at] == '/') {
            found += '/';
            ++at;
            continue;
        }
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string name = path.substr(at, end - at);
        found += exists(found + name) ? name : entryIgnoringCase(found, name);
        at = end;
    }
    return found;
}

// A name as drives have them: without the dots and blanks at its end, unless they belong to a
// pattern. In front of a separator only one dot goes.
std::string_view driveName(std::string_view name, bool isLast) {
    if (name.find_first_of("*?") != std::string_view::npos) {
        return name;
    }
    if (isLast) {
        return name.substr(0, name.find_last_not_of(". ") + 1);
    }
    const bool losesDot = name.ends_with('.') && name != "..."; // which would lead to the parent
    return name.substr(0, name.size() - (losesDot ? 1 : 0));
}

// What stands behind the colon of a drive path, below the directory `root`. A drive resolves "."
// and ".." as text, whatever is there, and ".." never leads out of it. It has no current directory,
// so that "C:name" counts from the root.
std::string belowDrive(const std::string &root, std::string_view rest) {
    std::string path = root;
    for (std::size_t at = 0; at <= rest.size();) {
        const std::size_t end = std::min(rest.find_first_of("\\/", at), rest.size());
        const std::string_view name = rest.substr(at, end - at);
        const bool isLast = end == rest.size();
        at = end + 1;
        if (name == "..") {
            path.resize(path.size() > root.size() ? path.rfind('/') : root.size());
        } else if (name != ".") {
            const std::string_view kept = driveName(name, isLast);
            path += kept.empty() && !isLast ? "" : "/"; // of no last name the separator stays
            path += kept;
        }
    }
    return path.size() == root.size() ? path + '/' : path;
}

bool writes(const char *mode) {
    return std::strpbrk(mode, "wa+") != nullptr;
}

} // namespace

std::string systemPath(const char *path) {
    if (!isDrivePath(path)) {
        return *path != '\0' ? withExistingSpelling(path) : std::string();
    }
    std::string root;
    return driveRoot(path[0], root) ? withExistingSpelling(belowDrive(root, path + 2))
                                    : std::string();
}

std::FILE *openFile(const char *path, const char *mode) {
    const std::string name = systemPath(path);
    struct stat info {};
    if (name.empty() || (stat(name.c_str(), &info) == 0 && S_ISDIR(info.st_mode))) {
        return nullptr;
    }
    const int attributes = writes(mode) ? fileAttributes(path) : -1;
    if (attributes >= 0 && (attributes & attributeReadOnly) != 0) {
        return nullptr; // the system itself would let a privileged user write to it
    }
    return std::fopen(name.c_str(), mode);
}

std::int64_t remainingBytes(std::FILE *file) {
    struct stat info {};
    if (fstat(fileno(file), &info) != 0 || !S_ISREG(info.st_mode)) {
        return INT64_MAX;
    }
    const off_t position = ftello(file);
    if (position < 0) {
        return INT64_MAX;
    }
    return std::max<std::int64_t>(0, info.st_size - position);
}

std::int64_t filePosition(std::FILE *file) {
    return ftello(file);
}

bool seekFile(std::FILE *file, std::int64_t offset, int origin) {
    return fseeko(file, offset, origin) == 0;
}

int printTo(std::FILE *file, const char *format, ...) {
    std::va_list values;
    va_start(values, format);
    const int printed = std::vfprintf(file, format, values);
    va_end(values);
    return printed;
}

#ifdef __GLIBC__

std::size_t readBytes(std::FILE *file, void *out, std::size_t size) {
    return fread_unlocked(out, 1, size, file);
}

std::size_t writeBytes(std::FILE *file, const void *bytes, std::size_t size) {
    return fwrite_unlocked(bytes, 1, size, file);
}

#else

std::size_t readBytes(std::FILE *file, void *out, std::size_t size) {
    return std::fread(out, 1, size, file);
}

std::size_t writeBytes(std::FILE *file, const void *bytes, std::size_t size) {
    return std::fwrite(bytes, 1, size, file);
}

#endif

int nextByteUnlocked(std::FILE *file) {
    return getc_unlocked(file);
}

// A file is read-only when its owner may not write to it.
int fileAttributes(const char *path) {
    const std::string name = systemPath(path);
    struct stat info {};
    if (name.empty() || stat(name.c_str(), &info) != 0) {
        return -1;
    }
    const int attributes = (S_ISDIR(info.st_mode) ? attributeDirectory : 0) |
                           ((info.st_mode & S_IWUSR) == 0 ? attributeReadOnly : 0);
    return attributes != 0 ? attributes : attributeNormal;
}

bool setFileAttributes(const char *path, int attributes) {
    const std::string name = systemPath(path);
    struct stat info {};
    if (name.empty() || stat(name.c_str(), &info) != 0) {
        return false;
    }
    constexpr mode_t everyWriter = S_IWUSR | S_IWGRP | S_IWOTH;
    const bool readOnly = (attributes & attributeReadOnly) != 0;
    const mode_t mode = readOnly ? info.st_mode & ~everyWriter : info.st_mode | S_IWUSR;
    return mode == info.st_mode || chmod(name.c_str(), mode) == 0;
}

} // namespace trunnion::detail
