// Paths as text, and directories made, walked, copied and removed on a real drive.
#include "trunnion/host/paths.h"

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"

namespace {

namespace fs = std::filesystem;

constexpr char guard = '\x5A';

// A buffer of exactly the documented room, so that a sanitizer sees the first byte too far.
struct Buffer {
    Buffer() { std::memset(text.get(), guard, 260); }
    explicit Buffer(const std::string &start) : Buffer() { std::strcpy(text.get(), start.c_str()); }
    operator char *() { return text.get(); }
    std::string str() const { return text.get(); }
    std::unique_ptr<char[]> text{new char[260]};
};

const std::string longest(259, 'x');
const std::string tooLong(260, 'x');

TEST(Paths, PathAndNameSplitBehindTheLastBackslash) {
    const std::string cases[][3] = {{"C:\\a\\b.txt", "C:\\a\\", "b.txt"},
                                    {"b.txt", "", "b.txt"},
                                    {"C:/a/b.txt", "", "C:/a/b.txt"},
                                    {"\\", "\\", ""},
                                    {longest, "", longest},
                                    {tooLong, "", ""},
                                    {"C:\\" + longest, "C:\\", longest},
                                    {"C:\\" + tooLong, "", ""},
                                    {tooLong + "\\a", "", ""}};
    for (const auto &[full, path, name] : cases) {
        Buffer pathOut;
        Buffer nameOut;
        EXPECT_EQ(slGetPathAndName(full.c_str(), pathOut, nameOut), path.empty() ? 0 : 1) << full;
        EXPECT_EQ(pathOut.str(), path);
        EXPECT_EQ(nameOut.str(), name);
    }
    Buffer inAndOut("C:\\dir\\file");
    Buffer name;
    EXPECT_EQ(slGetPathAndName(inAndOut, inAndOut, name), 1);
    EXPECT_EQ(inAndOut.str() + "|" + name.str(), "C:\\dir\\|file");
    EXPECT_EQ(slGetPathAndName((tooLong + "\\a").c_str(), nullptr, name), 1);
    EXPECT_EQ(name.str(), "a");
}

TEST(Paths, ExtensionAndMainNameStandAroundTheLastDot) {
    const std::string cases[][4] = {
        // full, extension ("-" for none), main name, name of level 2
        {"C:\\a.b\\c", "-", "c", "c-2."},
        {"c.tar.gz", "gz", "c.tar", "c.tar-2.gz"},
        {"c/d.e\\f", "-", "f", "f-2."},
        {"c.d/f", "-", "c", "c-2."}, // only the extension knows the forward slash
        {".hidden", "hidden", "", "-2.hidden"},
        {"C:\\tex\\wood.", "", "wood", "wood-2."},
        {"C:\\tex\\wood.bmp", "bmp", "wood", "wood-2.bmp"},
        {"", "-", "", "-2."},
    };
    for (const auto &[full, extension, main, level] : cases) {
        Buffer out;
        const bool none = extension == "-";
        EXPECT_EQ(slGetFileExtension(full.c_str(), out), none ? 0 : 1) << full;
        EXPECT_EQ(out.str(), none ? "" : extension);
        EXPECT_EQ(slGetFileMainName(full.c_str(), out), 1);
        EXPECT_EQ(out.str(), main);
        EXPECT_EQ(slGetMipMapFileName(full.c_str(), out, 2), 1);
        EXPECT_EQ(out.str(), level);
    }
    Buffer out;
    EXPECT_EQ(slGetFileExtension(("a." + longest).c_str(), out), 1);
    EXPECT_EQ(slGetFileExtension(("a." + tooLong).c_str(), out), 0);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(slGetFileMainName(tooLong.c_str(), out), 0);
    EXPECT_EQ(slGetMipMapFileName((longest.substr(8) + ".bmp").c_str(), out, 100), 1);
    EXPECT_EQ(slGetMipMapFileName((longest.substr(8) + ".bmp").c_str(), out, -100), 0);
    EXPECT_EQ(out.str(), "");
}

TEST(Paths, CombiningPutsExactlyOneBackslashBetween) {
    const std::string most(257, 'p');
    const std::string cases[][3] = {
        {"C:\\a\\", "\\b", "C:\\a\\b"}, {"C:\\a", "b", "C:\\a\\b"}, {"C:\\a\\", "b", "C:\\a\\b"},
        {"C:\\a", "\\b", "C:\\a\\b"},   {"", "\\b", "\\b"},         {"C:\\a", "", "C:\\a\\"},
        {most, "n", most + "\\n"},
    };
    for (const auto &[start, name, combined] : cases) {
        Buffer path(start);
        EXPECT_EQ(slCombFileName(path, name.c_str()), 1);
        EXPECT_EQ(path.str(), combined);
    }
    Buffer path(most + "p");
    EXPECT_EQ(slCombFileName(path, "n"), 0);
    EXPECT_EQ(slCombFileName(path, nullptr), 0);
    EXPECT_EQ(slCombFileName(nullptr, "b"), 0);
    EXPECT_EQ(path.str(), most + "p");
}

TEST(Paths, PathGoesInFrontOfAnyNameButNULL) {
    const std::string most(254, 'n');
    const std::string cases[][2] = {
        {"NULL", ""}, {"null", "C:\\d\\null"}, {most, "C:\\d\\" + most}, {most + "n", most + "n"}};
    for (const auto &[start, result] : cases) {
        Buffer name(start);
        slCatFileNameWithPath(name, "C:\\d\\");
        EXPECT_EQ(name.str(), result);
    }
}

TEST(Paths, NamesAndWildCardsAreFound) {
    const test::TempDrive drive;
    for (const char *root : {"E:", "E:\\", "E:\\.", "E:\\Sub\\..", "E:\\*.*"}) {
        EXPECT_EQ(slFindSingleFile(root), 0) << root << ": a drive is no name in a directory";
    }
    fs::create_directories(drive.path("Sub/empty"));
    test::writeBytes(drive.path("Sub/Part.NC"), "G0");
    test::writeBytes(drive.path("Sub/plain"), "");
    const std::string onDisk = drive.path("Sub/P*");
    for (const char *path :
         {"E:\\Sub\\Part.NC", "e:\\SUB\\part.nc", "E:\\Sub", "E:\\Sub\\*.nc", "E:\\sub\\p*t.??",
          "E:\\Sub\\plain.*", "E:\\Sub\\*a*t*c", "E:\\Sub\\empty\\*.*", "E:\\..\\Sub\\.",
          "E:\\no\\..\\Sub\\plain. .", "E:\\Sub.\\plain", onDisk.c_str()}) {
        EXPECT_TRUE(slIsExistentPath(path)) << path;
        EXPECT_EQ(slFindSingleFile(path), 1) << path;
    }
    for (const char *path : {"E:\\Sub\\\\", "E:\\Sub\\Part.NC\\x", "E:\\Sub\\*.txt",
                             "E:\\Sub\\Part.N", "E:\\Sub\\P?.*", "E:\\Sub\\*a*a*",
                             "E:\\Sub\\empty\\*.x", "E:\\missing\\*.*", "Q:\\Sub", "", "\\"}) {
        EXPECT_FALSE(slIsExistentPath(path)) << path;
        EXPECT_EQ(slFindSingleFile(path), 0) << path;
    }
    EXPECT_FALSE(slIsExistentPath("E:\\Sub\\")) << "a separator at the end";
    EXPECT_EQ(slFindSingleFile("E:\\Sub\\"), 1) << "but one is dropped here";
    EXPECT_FALSE(slIsExistentPath(nullptr));
    const std::string longWay = "E:" + std::string(254, '\\') + "Sub"; // 259 bytes
    EXPECT_EQ(slFindSingleFile(longWay.c_str()), 1);
    EXPECT_EQ(slFindSingleFile((longWay + '\\').c_str()), 0);
}

TEST(Paths, EveryMissingDirectoryOfADrivePathIsMade) {
    const test::TempDrive drive;
    test::writeBytes(drive.path("file"), "");
    const char *const made[][2] = {{"E:\\a\\b\\c", "a/b/c"},
                                   {"  e:\\d", "d"},
                                   {"E:\\A\\B\\new", "a/b/new"},
                                   {"E:\\e\\\\\\with blank\\", "e/with blank"},
                                   {"E:", ""},
                                   {"E:\\", ""}};
    for (const auto &[path, directory] : made) {
        EXPECT_EQ(slCreateDirRecursively(path), 1) << path;
        EXPECT_TRUE(fs::is_directory(drive.path(directory))) << directory;
    }
    for (const char *path : {"E: \\z", "E:\\file", "E:\\stays\\..\\file\\x", "a\\b",
                             "\\\\server\\x", "1:\\x", "Q:\\x", "  E", "   ", ""}) {
        EXPECT_EQ(slCreateDirRecursively(path), 0) << path;
    }
    EXPECT_TRUE(fs::exists(drive.path("stays"))) << "what was made before a failure";
    const std::string longPath = "E:\\long\\" + std::string(250, 'y') + "\\z";
    EXPECT_EQ(slCreateDirRecursively(longPath.c_str()), 0);
    EXPECT_FALSE(fs::exists(drive.path("long"))) << "a path too long makes nothing";
    EXPECT_EQ(slCreateDirRecursively(longPath.substr(0, 259).c_str()), 1);
    EXPECT_EQ(slCreateDirRecursively(nullptr), 0);
}

TEST(Paths, TreeIsRemovedWithReadOnlyFiles) {
    const test::TempDrive drive;
    fs::create_directories(drive.path("tree/a/b"));
    fs::create_directories(drive.path("tree/empty"));
    for (const char *name : {"tree/1", "tree/a/2", "tree/a/b/.3"}) {
        test::writeBytes(drive.path(name), "x");
        fs::permissions(drive.path(name), fs::perms::owner_read);
    }
    EXPECT_EQ(slRemoveDirRecursively("E:\\Tree\\"), 1);
    EXPECT_FALSE(fs::exists(drive.path("tree")));
}

TEST(Paths, DriveIsEmptiedAndStays) {
    const test::TempDrive drive;
    fs::create_directory(drive.path("a"));
    test::writeBytes(drive.path("a/b"), "x");
    EXPECT_EQ(slRemoveDirRecursively("E:\\"), 1);
    EXPECT_FALSE(fs::exists(drive.path("a")));
    EXPECT_EQ(slCreateDirRecursively("E:\\a"), 1);
}

TEST(Paths, NamesLoseTheDotsAndBlanksAtTheirEnd) {
    const test::TempDrive drive;
    test::writeBytes(drive.path("source"), "x");
    EXPECT_EQ(slCopyFile("E:\\source.", "E:\\missing\\..\\copy. ."), 1);
    EXPECT_EQ(slCreateDirRecursively("E:\\folder. "), 1);
    EXPECT_EQ(test::readBytes(drive.path("copy")), "x");
    EXPECT_EQ(fs::last_write_time(drive.path("copy")), fs::last_write_time(drive.path("source")));
    EXPECT_TRUE(fs::exists(drive.path("folder")));
}

TEST(Paths, RemovingWhatIsNoDirectoryChangesNothing) {
    const test::TempDrive drive;
    test::writeBytes(drive.path("file"), "x");
    for (const char *path : {"E:\\file", "E:\\missing", "", "\\", "Q:\\", "*", "E:\\f*"}) {
        EXPECT_EQ(slRemoveDirRecursively(path), 1);
    }
    EXPECT_EQ(slRemoveDirRecursively(nullptr), 1);
    EXPECT_EQ(test::readBytes(drive.path("file")), "x");
}

TEST(Paths, CopyNeverOverwrites) {
    const test::TempDrive drive;
    fs::create_directory(drive.path("to"));
    test::writeBytes(drive.path("Part.nc"), "new");
    test::writeBytes(drive.path("old"), "old");
    for (const char *target :
         {"E:\\copy", "E:\\to\\", "E:\\old", "E:\\OLD", "E:\\to", "E:\\missing\\", "E:\\Part.nc"}) {
        EXPECT_EQ(slCopyFile("E:\\Part.nc", target), 1);
    }
    EXPECT_EQ(test::readBytes(drive.path("copy")), "new");
    EXPECT_EQ(test::readBytes(drive.path("to/Part.nc")), "new");
    EXPECT_EQ(test::readBytes(drive.path("old")), "old");
    EXPECT_EQ(test::readBytes(drive.path("Part.nc")), "new");
    EXPECT_FALSE(fs::exists(drive.path("missing")));
    EXPECT_EQ(slCopyFile("E:\\absent", "E:\\none"), 1);
    EXPECT_EQ(slCopyFile("E:\\to", "E:\\none"), 1);
    EXPECT_FALSE(fs::exists(drive.path("none")));
}

TEST(Paths, SubFoldersFillAFixedLengthString) {
    const test::TempDrive drive;
    const auto subFolders = [](const char *root, int size, int result) {
        std::string out(static_cast<std::size_t>(size) + 1, guard);
        EXPECT_EQ(slFindSubFoldersVB(root, out.data(), size), result);
        EXPECT_EQ(out.back(), guard);
        return out.substr(0, out.size() - 1);
    };
    EXPECT_EQ(subFolders("E:\\", 20, 1), ";" + std::string(19, ' '));
    EXPECT_EQ(subFolders("E:\\missing", 1, 1), ";");
    EXPECT_EQ(subFolders("E:\\", 0, -1), "");
    fs::create_directories(drive.path("long-name/below"));
    test::writeBytes(drive.path("file"), "");
    EXPECT_EQ(subFolders("E:\\", 12, 1), "long-name;  ");
    fs::create_directory(drive.path("s"));
    EXPECT_EQ(subFolders("E:", 11, -1), "s          ") << "9 and 2 are not below 11";
    const std::string both = subFolders("E:", 15, 1);
    EXPECT_TRUE(both == "s;long-name;   " || both == "long-name;s;   ") << both;
}

} // namespace
