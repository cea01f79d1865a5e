// What a system does otherwise that has no drives of its own: it can tell apart names that differ
// in case only, and lets a privileged user write to any file.
#include "trunnion/platform/directories.h"
#include "trunnion/platform/files.h"

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"

namespace {

TEST(FilesPosix, ExactNameIsTakenBeforeOneInAnotherCase) {
    const test::TempDrive dir;
    std::filesystem::create_directory(dir.path("Sub"));
    test::writeBytes(dir.path("Sub/Part.NC"), "first");
    test::writeBytes(dir.path("Sub/part.nc"), "exact");
    EXPECT_EQ(trunnion::detail::systemPath("E:\\sub\\part.nc"), dir.path("Sub/part.nc"));
}

// On other systems a privileged user may not write to such a file either.
TEST(FilesPosix, ReadOnlyFileIsNotWrittenTo) {
    const test::TempDrive drive;
    test::writeBytes(drive.path("a"), "x");
    std::filesystem::permissions(drive.path("a"), std::filesystem::perms::owner_read);
    for (const char *mode : {"w", "wb", "ab", "rb+"}) {
        EXPECT_EQ(trunnion::detail::openFile("E:\\a", mode), nullptr) << mode;
    }
    test::writeBytes(drive.path("b"), "y");
    EXPECT_FALSE(trunnion::detail::copyFile("E:\\b", "E:\\a"));
    std::FILE *file = trunnion::detail::openFile("E:\\a", "rb");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_EQ(test::readBytes(drive.path("a")), "x");
}

} // namespace
