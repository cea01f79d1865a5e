// The one directory of a program for the files that it hands to the library, on the drive E as
// well.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "tests/support/temp_drive.h"

namespace fuzz {

inline const test::TempDrive &scratch() {
    static const test::TempDrive drive;
    return drive;
}

// Path of a file of the system with these bytes, overwritten by the next call with that name.
inline std::string fileOf(const std::string &bytes, const char *name = "input") {
    std::string path = scratch().path(name);
    test::writeBytes(path, bytes);
    return path;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

inline File openAs(const std::string &path, const char *mode) {
    return {std::fopen(path.c_str(), mode), &std::fclose};
}

} // namespace fuzz
