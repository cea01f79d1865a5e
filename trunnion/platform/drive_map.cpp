#include "trunnion/platform/drive_map.h"
#include "trunnion/platform/directories.h"
#include "trunnion/platform/system.h"

#include <array>
#include <mutex>
#include <optional>

namespace {

constexpr int letterCount = 26;

struct DriveMap {
    std::mutex mutex;
    std::array<std::optional<std::string>, letterCount> roots;

    DriveMap() { roots['C' - 'A'] = std::string(); }
};

DriveMap &driveMap() {
    static DriveMap map;
    return map;
}

// 0 to 25 for a letter of either case, -1 for anything else.
int letterIndex(char letter) {
    if (letter >= 'A' && letter <= 'Z') {
        return letter - 'A';
    }
    if (letter >= 'a' && letter <= 'z') {
        return letter - 'a';
    }
    return -1;
}

} // namespace

namespace trunnion {

void MapDrive(char letter, const char *directory) {
    const int index = letterIndex(letter);
    if (index < 0) {
        return;
    }
    DriveMap &map = driveMap();
    const std::lock_guard<std::mutex> lock(map.mutex);
    auto &root = map.roots[static_cast<std::size_t>(index)];
    if (directory == nullptr) {
        root.reset();
        return;
    }
    std::string text = directory;
    while (!text.empty() && text.back() == '/') {
        text.pop_back();
    }
    root = std::move(text);
}

namespace detail {

bool isDrivePath(const char *path) {
    return letterIndex(path[0]) >= 0 && path[1] == ':';
}

bool driveRoot(char letter, std::string &root) {
    DriveMap &map = driveMap();
    const std::lock_guard<std::mutex> lock(map.mutex);
    const int index = letterIndex(letter);
    if (index < 0 || !map.roots[static_cast<std::size_t>(index)]) {
        return false;
    }
    root = *map.roots[static_cast<std::size_t>(index)];
    return true;
}

unsigned int logicalDrives() {
    DriveMap &map = driveMap();
    const std::lock_guard<std::mutex> lock(map.mutex);
    unsigned int bits = 0;
    for (unsigned int index = 0; index < letterCount; ++index) {
        bits |= map.roots[index] ? 1U << index : 0U;
    }
    return bits;
}

} // namespace detail
} // namespace trunnion
