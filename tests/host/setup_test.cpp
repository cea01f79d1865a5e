// The user's ini file is found and follows the installation, with both special folders on a drive
// of the test.
#include "trunnion/host/setup.h"

#include <chrono>
#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"
#include "trunnion/platform/system.h"

namespace {

namespace fs = std::filesystem;

constexpr const char *copy = "docs/Mervane/4.8/Pallodin.ini";

class Setup : public testing::Test {
protected:
    Setup() {
        trunnion::SetWindowsDirectory("E:\\windows");
        trunnion::SetDocumentsDirectory("E:\\docs\\");
        for (const char *folder : {"windows", "here", "docs/Mervane/4.8"}) {
            fs::create_directories(drive.path(folder));
        }
        fs::current_path(drive.path("here"));
    }
    ~Setup() override {
        fs::current_path(start);
        trunnion::SetWindowsDirectory(nullptr);
        trunnion::SetDocumentsDirectory(nullptr);
    }

    void write(const char *name, const std::string &text) const {
        test::writeBytes(drive.path(name), text);
    }
    std::string read(const char *name) const { return test::readBytes(drive.path(name)); }

    // The path that a host gets; `waited` tells whether a copy was tried.
    std::string find() {
        char out[260];
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(slGetInitFilePathS(out, sizeof out), 1);
        waited = std::chrono::steady_clock::now() - begin >= std::chrono::seconds(1);
        return out;
    }

    test::TempDrive drive;
    fs::path start = fs::current_path();
    bool waited = false;
};

TEST_F(Setup, WithoutAnyFileThePathIsMadeOfDefaults) {
    fs::remove_all(drive.path("docs"));
    EXPECT_EQ(find(), "E:\\docs\\Mervane\\4.8\\Pallodin.ini");
    EXPECT_TRUE(waited);
    EXPECT_TRUE(fs::is_empty(drive.path("docs/Mervane/4.8"))) << "the folder, but no file";
    write("windows/Pallodin.ini", "master");
    find();
    EXPECT_EQ(read(copy), "master");
    write(copy, "the user's own");
    find();
    EXPECT_FALSE(waited);
    EXPECT_EQ(read(copy), "the user's own") << "both are without a stamp";
}

TEST_F(Setup, NameComesFromTheCurrentDirectoryAndVersionFromTheMasterCopy) {
    fs::create_directory(drive.path("docs/Mervane/5.0"));
    write("docs/Mervane/5.0/ab", "");
    write(copy, "");
    write("windows/ab", "[system]\nversion = 5.0\n");
    write("here/MSysVer.ini", "[SystemVer]\r\nVer=a\r\n");
    EXPECT_EQ(find(), "E:\\docs\\Mervane\\4.8\\Pallodin.ini") << "one character is no name";
    write("here/MSysVer.ini", "[SystemVer]\r\nVer=ab\r\n");
    EXPECT_EQ(find(), "E:\\docs\\Mervane\\5.0\\ab");
    EXPECT_FALSE(waited);
}

TEST_F(Setup, CopyIsReplacedWhenTheInstallationIsAnother) {
    const std::string own = "[AccessDb]\nInstallId=abc\n[Own]\nx=1\n";
    write("windows/Pallodin.ini", "[AccessDb]\nInstallId=ABC\n");
    write(copy, own);
    find();
    EXPECT_FALSE(waited) << "stamps that differ in case are equal";
    EXPECT_EQ(read(copy), own);

    const std::string master = "[AccessDb]\nInstallId=abd\n";
    write("windows/Pallodin.ini", master);
    find();
    EXPECT_TRUE(waited);
    EXPECT_EQ(read(copy), master);

    write(copy, own);
    fs::permissions(drive.path(copy), fs::perms::owner_read);
    EXPECT_EQ(find(), "E:\\docs\\Mervane\\4.8\\Pallodin.ini");
    EXPECT_EQ(read(copy), own) << "a read-only copy stays";
}

TEST_F(Setup, PathThatDoesNotFitIsRefusedBeforeAnythingIsCopied) {
    write("windows/Pallodin.ini", "master");
    const int length = static_cast<int>(std::strlen("E:\\docs\\Mervane\\4.8\\Pallodin.ini"));
    for (const int size : {length, 8, 7, 1, 0, -1}) {
        std::string out(static_cast<std::size_t>(length) + 1, '\x5A');
        EXPECT_EQ(slGetInitFilePathS(out.data(), size), 0);
        const char *left = size >= 8 ? "E:\\docs" : "";
        EXPECT_EQ(size < 1 ? "" : out.c_str(), std::string(left));
        EXPECT_EQ(out.back(), '\x5A');
    }
    EXPECT_FALSE(fs::exists(drive.path(copy)));
}

} // namespace
