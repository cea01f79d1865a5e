// Links to files and directories, found, followed and removed.
#include "trunnion/host/paths.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"

namespace {

namespace fs = std::filesystem;

TEST(PathsPosix, LinkIsFoundWhereverItLeadsAndFollowedToMakeADirectory) {
    const test::TempDrive drive;
    fs::create_directory(drive.path("real"));
    fs::create_symlink("nowhere", drive.path("dangling"));
    fs::create_directory_symlink("real", drive.path("link"));
    EXPECT_TRUE(slIsExistentPath("E:\\dangling"));
    EXPECT_EQ(slFindSingleFile("E:\\dangling"), 1);
    EXPECT_EQ(slCreateDirRecursively("E:\\link\\x"), 1);
    EXPECT_TRUE(fs::is_directory(drive.path("real/x")));
}

TEST(PathsPosix, TreeIsRemovedWithoutFollowingLinks) {
    const test::TempDrive drive;
    fs::create_directories(drive.path("tree/a/b"));
    fs::create_directories(drive.path("tree/empty"));
    fs::create_directory(drive.path("outside"));
    for (const char *name : {"tree/1", "tree/a/2", "tree/a/b/.3", "outside/kept"}) {
        test::writeBytes(drive.path(name), "x");
        fs::permissions(drive.path(name), fs::perms::owner_read);
    }
    fs::create_directory_symlink("../outside", drive.path("tree/toDirectory"));
    fs::create_symlink("../outside/kept", drive.path("tree/toFile"));
    fs::create_symlink("nowhere", drive.path("tree/a/dangling"));
    fs::create_directory_symlink("..", drive.path("tree/a/loop"));
    // A name that would lead out of the tree if its backslashes were separators.
    test::writeBytes(drive.path("tree/..\\outside\\kept"), "");

    EXPECT_EQ(slRemoveDirRecursively("E:\\Tree\\"), 1);
    EXPECT_FALSE(fs::exists(drive.path("tree")));
    EXPECT_EQ(fs::status(drive.path("outside/kept")).permissions(), fs::perms::owner_read);

    for (const char *spelling : {"E:\\link", "E:\\link\\", "E:\\link/"}) {
        fs::create_directory_symlink("outside", drive.path("link"));
        EXPECT_EQ(slRemoveDirRecursively(spelling), 1);
        EXPECT_FALSE(fs::is_symlink(drive.path("link")));
        EXPECT_TRUE(fs::exists(drive.path("outside/kept")));
    }
}

} // namespace
