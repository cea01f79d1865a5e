// Version names, the messages of failure codes, and the log.
#include "trunnion/persistence/file_versions.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"
#include "trunnion/platform/system.h"

namespace {

TEST(FileVersion, NamesAreComparedWholeAndWithRegardToCase) {
    const struct {
        const char *name;
        int number;
    } known[] = {{"ozk1.0", 10},     {"ozk3.9", 39},     {"ozk4.7", 47},   {"ozk4.008", 4008},
                 {"ozk4.014", 4014}, {"ozk5.002", 5002}, {"MAC1.00", 100}, {"MAC1.02", 102}};
    for (const auto &version : known) {
        EXPECT_EQ(slGetFileVersion(version.name), version.number) << version.name;
    }
    for (const char *unknown :
         {"ozk4.009", "ozk5.000", "OZK5.002", "ozk1.5", "ozk2.0", "ozk1.0 ", "ozk", ""}) {
        try {
            slGetFileVersion(unknown);
            ADD_FAILURE() << unknown;
        } catch (int code) {
            EXPECT_EQ(code, 111);
        }
    }
}

std::string shownText;
unsigned int shownType = 99;

int note(const char *text, unsigned int type) {
    shownText = text;
    shownType = type;
    return 1;
}

TEST(FileMessage, ShowsTheTextOfTheCodeAndTheFileBehindIt) {
    trunnion::SetMessageBoxHandler(&note);
    EXPECT_EQ(slFileMessage(107, nullptr), 1);
    EXPECT_EQ(shownText, "\xCE\xC4\xBC\xFE\xB6\xC1\xC8\xA1\xCA\xA7\xB0\xDC");
    EXPECT_EQ(shownType, 0U);
    slFileMessage(142, "C:\\part.ozk");
    EXPECT_EQ(shownText, "\xCA\xFD\xBE\xDD\xB4\xED\xCE\xF3: C:\\part.ozk");
    for (const int unknown : {115, 0, -1}) {
        slFileMessage(unknown, nullptr);
        EXPECT_EQ(shownText, "\xCE\xB4\xD6\xAA\xB4\xED\xCE\xF3");
    }
    slFileMessage(109, std::string(5000, 'x').c_str());
    EXPECT_EQ(shownText.size(), 259U);
    trunnion::SetMessageBoxHandler(nullptr);
}

TEST(Assert, WritesTwoLinesForAConditionThatFailsOnly) {
    const test::TempDrive dir;
    char text[] = "spindle";
    slAssert(7, text, 1);
    EXPECT_FALSE(std::filesystem::exists(dir.path("machine.log")));
    slAssert(7, text, 0);
    slAssert(-8, text, 0);
    const std::string log = test::readBytes(dir.path("machine.log"));
    int year = 0, hour = -1, minute = -1, number = 0;
    char word[20];
    ASSERT_EQ(
        std::sscanf(log.c_str(), "%4d%*d %d:%d %d %19s", &year, &hour, &minute, &number, word), 5)
        << log;
    EXPECT_GE(year, 2024);
    EXPECT_TRUE(hour >= 0 && hour < 24 && minute >= 0 && minute < 60);
    EXPECT_EQ(number, 7);
    EXPECT_NE(log.find("\n7   spindle\n"), std::string::npos);
    EXPECT_EQ(log.substr(log.size() - 14), "\n-8   spindle\n");
}

TEST(Assert, WithoutItsDriveNothingIsWritten) {
    if (std::filesystem::exists("E:\\")) {
        GTEST_SKIP() << "this system has a drive E";
    }
    char text[] = "spindle";
    slAssert(7, text, 0);
    EXPECT_FALSE(std::filesystem::exists("E:\\machine.log"));
}

} // namespace
