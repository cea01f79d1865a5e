// The user's ini file is found and follows the installation, with both special folders on a drive
// of the test where a host can set them, and in those of the system where it cannot.
#include "trunnion/host/setup.h"

#include <chrono>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"
#include "trunnion/platform/files.h"
#include "trunnion/platform/settings.h"
#include "trunnion/platform/system.h"

namespace {

namespace fs = std::filesystem;

class Setup : public testing::Test {
protected:
    Setup() {
        trunnion::SetWindowsDirectory("E:\\windows");
        trunnion::SetDocumentsDirectory("E:\\docs\\");
        windows = trunnion::detail::windowsDirectory();
        documents = trunnion::detail::documentsDirectory();
        fs::create_directory(drive.path("here"));
        fs::current_path(drive.path("here"));
    }
    ~Setup() override {
        fs::current_path(start);
        trunnion::SetWindowsDirectory(nullptr);
        trunnion::SetDocumentsDirectory(nullptr);
    }
    void SetUp() override {
        if (fs::exists(at(windows + "\\Pallodin.ini")) || fs::exists(at(documents + "\\Mervane"))) {
            GTEST_SKIP() << "the folders of this system are in use";
        }
        fs::create_directories(at(windows));
        fs::create_directories(at(documents + "\\Mervane\\4.8"));
    }
    void TearDown() override {
        if (!IsSkipped()) {
            fs::remove(at(windows + "\\Pallodin.ini"));
            fs::remove(at(windows + "\\ab.ini"));
            fs::remove_all(at(documents + "\\Mervane"));
        }
    }

    std::string at(const std::string &path) const {
        return trunnion::detail::systemPath(path.c_str());
    }
    std::string copy() const { return documents + "\\Mervane\\4.8\\Pallodin.ini"; }
    void writeMaster(const std::string &text) const {
        test::writeBytes(at(windows + "\\Pallodin.ini"), text);
    }
    void writeCopy(const std::string &text) const { test::writeBytes(at(copy()), text); }
    std::string readCopy() const { return test::readBytes(at(copy())); }

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
    std::string windows;
    std::string documents;
    bool waited = false;
};

TEST_F(Setup, WithoutAnyFileThePathIsMadeOfDefaults) {
    fs::remove_all(at(documents + "\\Mervane"));
    EXPECT_EQ(find(), copy());
    EXPECT_TRUE(waited);
    EXPECT_TRUE(fs::is_empty(at(documents + "\\Mervane\\4.8"))) << "the folder, but no file";
    writeMaster("master");
    find();
    EXPECT_EQ(readCopy(), "master");
    writeCopy("the user's own");
    find();
    EXPECT_FALSE(waited);
    EXPECT_EQ(readCopy(), "the user's own") << "both are without a stamp";
}

TEST_F(Setup, NameComesFromTheCurrentDirectoryAndVersionFromTheMasterCopy) {
    const std::string other = documents + "\\Mervane\\5.0\\ab.ini";
    fs::create_directory(at(documents + "\\Mervane\\5.0"));
    test::writeBytes(at(other), "");
    writeCopy("");
    test::writeBytes(at(windows + "\\ab.ini"), "[system]\nversion = 5.0\n");
    test::writeBytes(drive.path("here/MSysVer.ini"), "[SystemVer]\r\nVer=a\r\n");
    EXPECT_EQ(find(), copy()) << "one character is no name";
    test::writeBytes(drive.path("here/MSysVer.ini"), "[SystemVer]\r\nVer=ab.ini\r\n");
    EXPECT_EQ(find(), other);
    EXPECT_FALSE(waited);
}

TEST_F(Setup, CopyIsReplacedWhenTheInstallationIsAnother) {
    const std::string own = "[AccessDb]\nInstallId=abc\n[Own]\nx=1\n";
    writeMaster("[AccessDb]\nInstallId=ABC\n");
    writeCopy(own);
    find();
    EXPECT_FALSE(waited) << "stamps that differ in case are equal";
    EXPECT_EQ(readCopy(), own);

    const std::string master = "[AccessDb]\nInstallId=abd\n";
    writeMaster(master);
    find();
    EXPECT_TRUE(waited);
    EXPECT_EQ(readCopy(), master);
}

TEST_F(Setup, PathThatDoesNotFitIsRefusedBeforeAnythingIsCopied) {
    writeMaster("master");
    const int length = static_cast<int>(copy().size());
    const int folder = static_cast<int>(documents.size());
    for (const int size : {length, folder + 1, folder, 1, 0, -1}) {
        std::string out(static_cast<std::size_t>(length) + 1, '\x5A');
        EXPECT_EQ(slGetInitFilePathS(out.data(), size), 0);
        EXPECT_EQ(size < 1 ? "" : out.c_str(), size > folder ? documents : "");
        EXPECT_EQ(out.back(), '\x5A');
    }
    EXPECT_FALSE(fs::exists(at(copy())));
}

} // namespace
