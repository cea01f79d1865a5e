// The log of failed assertions where its drive is missing.
#include "trunnion/persistence/file_versions.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace {

TEST(AssertPosix, WithoutTheDriveNothingIsWritten) {
    char text[] = "spindle";
    slAssert(7, text, 0); // there is no drive E
    EXPECT_FALSE(std::filesystem::exists("E:\\machine.log"));
}

} // namespace
