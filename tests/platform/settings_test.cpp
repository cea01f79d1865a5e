// Values of ini files.
#include "trunnion/platform/settings.h"

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"

namespace {

using trunnion::detail::iniValue;

TEST(Settings, IniValueIsFoundAsTheFormatAllows) {
    const test::TempDrive drive;
    test::writeBytes(
        drive.path("a.ini"),
        "key=before any section\r\n"
        "[other]\r\nkey=other\r\n"
        " [ Near ] \nn=blanks around names\n[a]b]\nn=the last bracket\n[Main] ; a remark\n"
        ";key=remark\n"
        "no entry\n"
        "\t KEY \t=  the value ; and more=x\t \r\n"
        "key=second\n"
        "empty=\n"
        "quoted=\" in quotes \"\n"
        "apostrophe='x'\n"
        "one=\"\n"
        "cr=one line\rnext=and another\n"
        "[none\nbehind=no heading\n"
        "[main]\nlate=second section\n"
        "[open\n[last]\nkey=at the end" +
            std::string("\0cut", 4));
    const char *const cases[][3] = {
        {"main", "key", "the value ; and more=x"},
        {"MAIN", "empty", ""},
        {"Main", "quoted", " in quotes "},
        {"Main", "apostrophe", "x"},
        {"Main", "one", "\""},
        {"last", "key", "at the end"},
        {"", "key", "before any section"},
        {"Main", ";key", "remark"},
        {" near", " n ", "blanks around names"},
        {"a]b", "n", "the last bracket"},
        {"Main", "cr", "one line"},
        {"Main", "next", "and another"},
        {"main", "behind", "no heading"},
        {"Main", "late", "default"}, // only the first section of a name counts
        {"Main", "no entry", "default"},
        {"Mai", "key", "default"},
        {"open", "key", "default"}};
    for (const auto &[section, key, value] : cases) {
        EXPECT_EQ(iniValue(section, key, "default", "E:\\a.ini"), value) << section << " " << key;
    }
    EXPECT_EQ(iniValue("Main", "key", "default", "E:\\missing.ini"), "default");
    EXPECT_EQ(iniValue("Main", "key", "default", "E:\\"), "default");
}

} // namespace
