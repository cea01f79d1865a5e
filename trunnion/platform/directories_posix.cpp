// Names and directories on POSIX.
#include "trunnion/platform/directories.h"
#include "trunnion/platform/files.h"

#include <cctype>
#include <climits>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include "trunnion/platform/drive_map.h"

namespace trunnion::detail {

namespace {

bool sameLetter(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

// Both run from left to right; after a mismatch the last "*" takes one character more. No earlier
// "*" has to be tried again: the last one can take whatever an earlier one could have taken.
bool matchesAll(std::string_view pattern, std::string_view name) {
    std::size_t inPattern = 0;
    std::size_t inName = 0;
    std::size_t star = std::string_view::npos;
    std::size_t starEnd = 0;
    while (inName < name.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = inPattern++;
            starEnd = inName;
        } else if (inPattern < pattern.size() &&
                   (pattern[inPattern] == '?' || sameLetter(pattern[inPattern], name[inName]))) {
            ++inPattern;
            ++inName;
        } else if (star != std::string_view::npos) {
            inPattern = star + 1;
            inName = ++starEnd;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', inPattern) == std::string_view::npos;
}

bool matches(std::string_view pattern, const std::string &name) {
    return matchesAll(pattern, name) ||
           (name.find('.') == std::string::npos && matchesAll(pattern, name + '.'));
}

Found kindOf(const std::string &path) {
    struct stat info {};
    if (stat(path.c_str(), &info) == 0) {
        return S_ISDIR(info.st_mode) ? Found::directory : Found::file;
    }
    return lstat(path.c_str(), &info) == 0 ? Found::file : Found::nothing;
}

bool isDots(const char *name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

using Listing = std::unique_ptr<DIR, int (*)(DIR *)>;

Listing openListing(const std::string &path) {
    return {opendir(path.c_str()), &closedir};
}

// True for the directory behind a drive, which for the drive is no entry of any directory and has
// no dot entries.
bool isDriveRoot(const char *path, const std::string &systemName) {
    std::string root;
    return isDrivePath(path) && driveRoot(path[0], root) && systemName == root + '/';
}

Found findMatching(const char *drivePath, const std::string &path) {
    const std::size_t nameAt = path.rfind('/') + 1; // 0 where there is no slash
    const std::string_view pattern = std::string_view(path).substr(nameAt);
    if (pattern.find_first_of("*?") == std::string_view::npos) {
        return Found::nothing;
    }
    const std::string directory = path.substr(0, nameAt);
    const bool isRoot = isDriveRoot(drivePath, directory);
    const Listing listing = openListing(directory.empty() ? "." : directory);
    while (const dirent *entry = listing ? readdir(listing.get()) : nullptr) {
        if (matches(pattern, entry->d_name) && !(isRoot && isDots(entry->d_name))) {
            return kindOf(directory + entry->d_name);
        }
    }
    return Found::nothing;
}

bool isLinkAt(const std::string &path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

} // namespace

Found findName(const char *path) {
    const std::string name = systemPath(path);
    if (isDrivePath(path) && name.ends_with('/')) {
        return Found::nothing;
    }
    const Found exact = kindOf(name);
    return exact != Found::nothing ? exact : findMatching(path, name);
}

bool listDirectory(const char *path, std::vector<DirectoryEntry> &entries) {
    entries.clear();
    const std::string directory = systemPath(path);
    const Listing listing = openListing(directory);
    if (!listing) {
        return false;
    }
    const std::string prefix = directory.back() == '/' ? directory : directory + '/';
    while (const dirent *entry = readdir(listing.get())) {
        if (!isDots(entry->d_name)) {
            const std::string full = prefix + entry->d_name;
            entries.push_back(
                {entry->d_name, full, kindOf(full) == Found::directory, isLinkAt(full)});
        }
    }
    return true;
}

bool isLink(const char *path) {
    return isLinkAt(systemPath(path));
}

bool isSystemRoot(const char *path) {
    struct stat info {};
    struct stat root {};
    return stat(systemPath(path).c_str(), &info) == 0 && stat("/", &root) == 0 &&
           info.st_dev == root.st_dev && info.st_ino == root.st_ino;
}

bool makeDirectory(const char *path) {
    constexpr mode_t everything = S_IRWXU | S_IRWXG | S_IRWXO; // less what the process masks
    return mkdir(systemPath(path).c_str(), everything) == 0;
}

bool removeDirectory(const char *path) {
    const std::string name = systemPath(path);
    return !isDriveRoot(path, name) && rmdir(name.c_str()) == 0;
}

bool removeFile(const char *path) {
    return unlink(systemPath(path).c_str()) == 0;
}

bool copyFile(const char *source, const char *target) {
    const int attributes = fileAttributes(target);
    if (attributes >= 0 && (attributes & attributeReadOnly) != 0) {
        return false; // the system itself would let a privileged user overwrite it
    }
    const std::string original = systemPath(source);
    const std::string copy = systemPath(target);
    const bool isNew = kindOf(copy) == Found::nothing;
    std::error_code failure;
    std::filesystem::copy_file(original, copy, std::filesystem::copy_options::overwrite_existing,
                               failure);
    if (failure) {
        if (isNew) {
            unlink(copy.c_str());
        }
        return false;
    }
    const auto written = std::filesystem::last_write_time(original, failure);
    std::filesystem::last_write_time(copy, written, failure);
    return true;
}

std::string inCurrentDirectory(const char *name) {
    char directory[PATH_MAX];
    if (getcwd(directory, sizeof directory) == nullptr) {
        return {};
    }
    return std::string(directory) + '/' + name;
}

} // namespace trunnion::detail
