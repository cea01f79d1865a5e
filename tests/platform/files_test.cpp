// Drive paths, names that differ in case, and files that are no files.
#include "trunnion/platform/files.h"

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"

namespace {

using trunnion::detail::openFile;

bool canRead(const std::string &path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(openFile(path.c_str(), "rb"),
                                                                &std::fclose);
    return file != nullptr;
}

TEST(Files, DrivePathGoesThroughTheMapWithBackslashesAsSeparators) {
    const test::TempDrive dir;
    std::filesystem::create_directory(dir.path("sub"));
    test::writeBytes(dir.path("sub/part.nc"), "G0");
    EXPECT_TRUE(canRead("E:\\sub\\part.nc"));
    EXPECT_TRUE(canRead("e:/sub\\part.nc"));
    EXPECT_FALSE(canRead("Q:\\sub\\part.nc"));
}

TEST(Files, NameIsFoundWithoutRegardToCase) {
    const test::TempDrive dir;
    std::filesystem::create_directory(dir.path("Sub"));
    test::writeBytes(dir.path("Sub/Part.NC"), "first");
    EXPECT_TRUE(canRead("E:\\SUB\\part.nc"));
    EXPECT_TRUE(canRead(dir.path("sub/PART.nc")));
    EXPECT_FALSE(canRead("E:\\sub\\other.nc"));
}

TEST(Files, NewFileGetsTheSpellingOfTheCaller) {
    const test::TempDrive dir;
    std::fclose(openFile("E:\\New.Dat", "wb"));
    EXPECT_TRUE(std::filesystem::exists(dir.path("New.Dat")));
}

TEST(Files, DirectoryOrEmptyNameDoesNotOpen) {
    const test::TempDir dir;
    EXPECT_EQ(openFile(dir.path("").c_str(), "rb"), nullptr);
    EXPECT_EQ(openFile("", "rb"), nullptr);
}

TEST(Files, RemainingBytesCountFromThePosition) {
    const test::TempDir dir;
    test::writeBytes(dir.path("a"), "0123456789");
    std::FILE *file = openFile(dir.path("a").c_str(), "rb");
    std::fseek(file, 4, SEEK_SET);
    EXPECT_EQ(trunnion::detail::remainingBytes(file), 6);
    std::fseek(file, 40, SEEK_SET);
    EXPECT_EQ(trunnion::detail::remainingBytes(file), 0);
    std::fclose(file);
}

} // namespace
