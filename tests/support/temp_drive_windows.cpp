#include "tests/support/temp_drive.h"

#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// Of an empty drive the root cannot be listed.
std::error_code unlisted;

} // namespace

test::TempDrive::TempDrive() : TempDir("E:\\") {
    if (!fs::exists(directory) ||
        fs::directory_iterator(directory, unlisted) != end(fs::directory_iterator())) {
        throw std::runtime_error("the tests need an empty drive E");
    }
}

test::TempDrive::~TempDrive() {
    for (const auto &entry : fs::recursive_directory_iterator(directory, unlisted)) {
        fs::permissions(entry, fs::perms::owner_all, unlisted); // what is read-only would stay
    }
    for (const auto &entry : fs::directory_iterator(directory, unlisted)) {
        fs::remove_all(entry, unlisted);
    }
    directory.clear(); // the drive itself stays
}
