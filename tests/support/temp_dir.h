// A directory of its own for a test, removed with all it holds when the test ends.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace test {

class TempDir {
public:
    TempDir() {
        static std::atomic<int> count{0};
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        directory = std::filesystem::temp_directory_path() /
                    ("trunnion-" + std::to_string(now) + "-" + std::to_string(++count));
        std::filesystem::create_directories(directory);
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;

    // Path of `name` in this directory; nothing is made.
    std::string path(const std::string &name) const { return (directory / name).string(); }

protected:
    // Stands for a directory that is there already.
    explicit TempDir(const char *existing) : directory(existing) {}

    std::filesystem::path directory;
};

// All bytes of a file; empty where there is none.
inline std::string readBytes(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::string &path, const std::string &bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace test
