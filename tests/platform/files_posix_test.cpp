// Names that differ in case only, which a system can tell apart that has no drives of its own.
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

} // namespace
