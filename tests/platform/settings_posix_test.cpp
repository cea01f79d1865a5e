// Special folders that a host sets, which it can on a system without folders of its own only.
#include "trunnion/platform/settings.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"
#include "trunnion/platform/system.h"

namespace {

using trunnion::detail::iniValue;

TEST(SettingsPosix, BareFileNameIsLookedUpInTheWindowsDirectory) {
    const test::TempDrive drive;
    trunnion::SetWindowsDirectory("E:\\");
    test::writeBytes(drive.path("a.ini"), "[s]\nk=" + std::string(300, 'v'));
    EXPECT_EQ(iniValue("s", "k", "", "A.INI"), std::string(259, 'v'));
    EXPECT_EQ(iniValue("s", "k", "d", ".\\a.ini"), "d");
    trunnion::SetWindowsDirectory(nullptr);
    EXPECT_EQ(iniValue("s", "k", "d", "a.ini"), "d");
}

TEST(SettingsPosix, FoldersAreDrivePathsAlsoByDefault) {
    trunnion::SetDocumentsDirectory("E:\\docs\\/");
    EXPECT_EQ(trunnion::detail::documentsDirectory(), "E:\\docs");
    trunnion::SetDocumentsDirectory(nullptr);
    const std::string documents = trunnion::detail::documentsDirectory();
    EXPECT_TRUE(documents.starts_with("C:\\") && documents.ends_with("\\Documents")) << documents;
    EXPECT_EQ(documents.find('/'), std::string::npos);
    EXPECT_EQ(trunnion::detail::windowsDirectory(), "C:\\etc");
}

} // namespace
