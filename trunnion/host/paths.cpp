#include "trunnion/host/paths.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "trunnion/platform/directories.h"
#include "trunnion/platform/files.h"

namespace {

using trunnion::detail::DirectoryEntry;
using trunnion::detail::Found;

constexpr std::size_t pathBytes = 260; // with the terminator

bool fits(std::string_view text) {
    return text.size() < pathBytes;
}

// Stores a text that fits.
void store(std::string_view text, char *out) {
    text.copy(out, text.size());
    out[text.size()] = '\0';
}

// 1, or 0 and an empty text if it does not fit.
int storeIfFits(std::string_view text, char *out) {
    store(fits(text) ? text : std::string_view(), out);
    return fits(text) ? 1 : 0;
}

struct SplitPath {
    std::string_view path; // with the backslash
    std::string_view name;
};

SplitPath split(std::string_view full) {
    const std::size_t nameAt = full.rfind('\\') + 1; // 0 without a backslash
    return {full.substr(0, nameAt), full.substr(nameAt)};
}

std::string_view extensionOf(std::string_view full, bool &hasDot) {
    const std::size_t stop = full.find_last_of(".\\/");
    hasDot = stop != std::string_view::npos && full[stop] == '.';
    return hasDot ? full.substr(stop + 1) : std::string_view();
}

std::string_view mainNameOf(std::string_view full) {
    const std::string_view name = split(full).name;
    return name.substr(0, name.rfind('.'));
}

bool isDriveLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool driveExists(char letter) {
    const int index = (letter >= 'a' ? letter - 'a' : letter - 'A');
    return (trunnion::detail::logicalDrives() >> index & 1U) != 0;
}

bool isDirectoryOrMade(const std::string &path) {
    const Found found = trunnion::detail::findName(path.c_str());
    return found == Found::directory ||
           (found == Found::nothing && trunnion::detail::makeDirectory(path.c_str()));
}

// Makes the components of `path` behind its first `done` characters.
bool makeComponents(std::string_view path, std::size_t done) {
    for (std::size_t end = done + 1; end <= path.size(); ++end) {
        const bool endsComponent =
            path[end - 1] != '\\' && (end == path.size() || path[end] == '\\');
        if (endsComponent && !isDirectoryOrMade(std::string(path.substr(0, end)))) {
            return false;
        }
    }
    return true;
}

// Behind a separator the system would look through a link; but a drive keeps one, for without it
// some systems take it for the current directory of the drive.
std::string withoutTrailingSeparators(const char *path) {
    std::string text = path != nullptr ? path : "";
    text.erase(text.find_last_not_of("\\/") + 1);
    return text.ends_with(':') ? text + '\\' : text;
}

// The files below `dir` in the order of the file system, and the directories, each behind all that
// it holds. A link counts as a file, so that nothing outside the tree is reached.
void slListDirTree(const std::string &dir, std::vector<std::string> &directories,
                   std::vector<std::string> &files) {
    std::vector<DirectoryEntry> entries;
    if (!trunnion::detail::listDirectory(dir.c_str(), entries)) {
        return;
    }
    for (const DirectoryEntry &entry : entries) {
        if (entry.isDirectory && !entry.isLink) {
            slListDirTree(entry.path, directories, files);
        } else {
            files.push_back(entry.path);
        }
    }
    directories.push_back(dir);
}

// Removes a file, read-only or not. 1, also where the system refuses, or 0 if there is no such
// file. Attributes set through a link would be those of what it leads to, so a link keeps its own.
int slForceDeleteFile(const std::string &file) {
    if (!trunnion::detail::isLink(file.c_str())) {
        if (trunnion::detail::fileAttributes(file.c_str()) < 0) {
            return 0;
        }
        trunnion::detail::setFileAttributes(file.c_str(), trunnion::detail::attributeNormal);
    }
    trunnion::detail::removeFile(file.c_str());
    return 1;
}

} // namespace

int slGetPathAndName(const char *full, char *path, char *name) {
    const std::string copy = full;
    const SplitPath parts = split(copy);
    const bool refused =
        (path != nullptr && !fits(parts.path)) || (name != nullptr && !fits(parts.name));
    if (path != nullptr) {
        store(refused ? std::string_view() : parts.path, path);
    }
    if (name != nullptr) {
        store(refused ? std::string_view() : parts.name, name);
    }
    return refused || parts.path.empty() ? 0 : 1;
}

int slGetFileExtension(const char *full, char *extension) {
    const std::string copy = full;
    bool hasDot = false;
    const std::string_view text = extensionOf(copy, hasDot);
    return storeIfFits(text, extension) != 0 && hasDot ? 1 : 0;
}

int slGetFileMainName(const char *full, char *main) {
    const std::string copy = full;
    return storeIfFits(mainNameOf(copy), main);
}

int slGetMipMapFileName(const char *full, char *out, int level) {
    bool hasDot = false;
    const std::string_view extension = extensionOf(full, hasDot);
    std::string text(mainNameOf(full));
    text += '-' + std::to_string(level) + '.';
    text += extension;
    return storeIfFits(text, out);
}

int slCombFileName(char *path, const char *name) {
    if (path == nullptr || name == nullptr) {
        return 0;
    }
    std::string text = path;
    if (!text.empty()) {
        const bool pathEnds = text.back() == '\\';
        const bool nameBegins = name[0] == '\\';
        if (pathEnds && nameBegins) {
            text.pop_back();
        } else if (!pathEnds && !nameBegins) {
            text += '\\';
        }
    }
    text += name;
    if (!fits(text)) {
        return 0;
    }
    store(text, path);
    return 1;
}

void slCatFileNameWithPath(char *name, const char *path) {
    if (std::strcmp(name, "NULL") == 0) {
        name[0] = '\0';
        return;
    }
    const std::string text = std::string(path) + name;
    if (fits(text)) {
        store(text, name);
    }
}

bool slIsExistentPath(const char *path) {
    return path != nullptr && trunnion::detail::findName(path) != Found::nothing;
}

int slFindSingleFile(const char *path) {
    std::string copy = path != nullptr ? path : "";
    if (copy.empty() || !fits(copy)) {
        return 0;
    }
    if (copy.back() == '\\') {
        copy.pop_back();
    }
    return slIsExistentPath(copy.c_str()) ? 1 : 0;
}

int slCreateDirRecursively(const char *path) {
    std::string_view text = path != nullptr ? path : "";
    if (!fits(text)) {
        return 0;
    }
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.size() < 2 || !isDriveLetter(text[0]) || text[1] != ':' || !driveExists(text[0])) {
        return 0;
    }
    const std::string_view drive = text.substr(0, text.find('\\'));
    if (drive.find(' ') != std::string_view::npos) {
        return 0;
    }
    return makeComponents(text, drive.size()) ? 1 : 0;
}

int slRemoveDirRecursively(const char *path) {
    const std::string root = withoutTrailingSeparators(path);
    if (root.empty() || trunnion::detail::isSystemRoot(root.c_str())) {
        return 1;
    }
    if (trunnion::detail::isLink(root.c_str())) {
        slForceDeleteFile(root);
        return 1;
    }
    std::vector<std::string> directories;
    std::vector<std::string> files;
    slListDirTree(root, directories, files);
    for (const std::string &file : files) {
        slForceDeleteFile(file);
    }
    for (const std::string &directory : directories) {
        trunnion::detail::removeDirectory(directory.c_str());
    }
    return 1;
}

int slCopyFile(const char *source, const char *target) {
    if (source == nullptr || target == nullptr) {
        return 1;
    }
    std::string file = target;
    if (file.ends_with('\\')) {
        file += split(source).name;
    }
    if (fits(file) && !slIsExistentPath(file.c_str())) {
        trunnion::detail::copyFile(source, file.c_str());
    }
    return 1;
}

int TRUNNION_BASIC_CALL slFindSubFoldersVB(const char *root, char *out, int size) {
    if (size < 1) {
        return -1;
    }
    const auto room = static_cast<std::size_t>(size);
    std::vector<DirectoryEntry> entries;
    trunnion::detail::listDirectory(withoutTrailingSeparators(root).c_str(), entries);
    std::string text;
    int result = 1;
    for (const DirectoryEntry &entry : entries) {
        if (!entry.isDirectory) {
            continue;
        }
        if (text.size() + entry.name.size() + 2 >= room) {
            result = -1;
            continue;
        }
        text += (text.empty() ? "" : ";") + entry.name;
    }
    if (result == 1) {
        text += ';';
    }
    text.resize(room, ' ');
    std::memcpy(out, text.data(), room);
    return result;
}
