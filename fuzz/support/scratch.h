// The one directory of a program for the files that it hands to the library, on the drive E as
// well.
#pragma once

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

} // namespace fuzz
