// Scanning and formatting of short texts.
#include "trunnion/host/text_scan.h"

#include <cfloat>
#include <climits>
#include <string>

#include <gtest/gtest.h>

namespace {

TEST(TextScan, CommaSeparatesUnlessCOrRFollows) {
    const struct {
        const char *text;
        int stop;
    } cases[] = {{", ,C1", 2}, {", X", 2}, {",R5", 0}, {" \t,,9", 4}, {"", 0}, {",", 1}, {"\n", 0}};
    for (const auto &c : cases) {
        int position = 0;
        EXPECT_EQ(slSkipSpace(c.text, &position), 1);
        EXPECT_EQ(position, c.stop) << c.text;
    }
    int position = 1;
    slSkipChar("baab", &position, 'a');
    EXPECT_EQ(position, 3);
    position = 1;
    slSkipChar("b", &position, '\0');
    EXPECT_EQ(position, 1) << "the terminator is no character to skip";
}

TEST(TextScan, IntegersAreNumbersAndNothingElse) {
    constexpr int untouched = 77;
    const struct {
        const char *text;
        int result;
        int value;
    } cases[] = {{" 42 ", 1, 42},
                 {"42x", 0, untouched},
                 {"", 0, untouched},
                 {"x", 0, untouched},
                 {"0", 1, 0},
                 {"-0", 0, untouched},
                 {"\t-7\t", 1, -7},
                 {"+5", 1, 5},
                 {"4 2", 0, untouched},
                 {"99999999999", 1, INT_MAX},
                 {"-99999999999999999999", 1, INT_MIN}};
    for (const auto &c : cases) {
        int value = untouched;
        EXPECT_EQ(slSimpleIntParse(c.text, value), c.result) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
    const struct {
        int length;
        const char *text;
        int result;
        int value;
    } counted[] = {{2, "123", 1, 12},        {1, "-", 1, 0},          {3, "-45x", 1, -45},
                   {3, "4-5", 0, untouched}, {4, "12", 0, untouched}, {0, "1", 0, untouched},
                   {52, "1", 0, untouched}};
    for (const auto &c : counted) {
        int value = untouched;
        EXPECT_EQ(slStrToInt(c.length, c.text, &value), c.result) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
}

TEST(TextScan, RealsStoreFirstAndTakeAMinusBehindThem) {
    const struct {
        const char *text;
        int result;
        double value;
    } cases[] = {{"-", 1, 0},    {"", 0, 0},    {"1.5e3", 1, 1500}, {"12-", 1, 12},
                 {" 2 -", 0, 2}, {"3x", 0, 3},  {"abc", 0, 0},      {"0.0", 1, 0},
                 {".0", 0, 0},   {"inf", 0, 0}, {"-nan", 0, 0},     {"-.25 ", 1, -0.25}};
    for (const auto &c : cases) {
        double value = 77;
        EXPECT_EQ(slSimpleFloatParse(c.text, value), c.result) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        float narrow = 77;
        EXPECT_EQ(slSimpleFloatParseF(c.text, narrow), c.result);
        EXPECT_EQ(narrow, c.result == 1 ? static_cast<float>(c.value) : 0.0F) << c.text;
    }
}

TEST(TextScan, RealsBeyondTheirTypeAreItsGreatest) {
    double value = 0;
    EXPECT_EQ(slSimpleFloatParse("-1e999", value), 1);
    EXPECT_EQ(value, -DBL_MAX);
    float narrow = 0;
    EXPECT_EQ(slSimpleFloatParseF("1e99", narrow), 1);
    EXPECT_EQ(narrow, FLT_MAX);
}

TEST(TextScan, PiecesAreCopiedWholeOrNotAtAll) {
    char out[16] = "kept";
    EXPECT_EQ(slLeft("abc", 4, out), 0);
    EXPECT_EQ(slRight("abc", 0, out), 0);
    EXPECT_STREQ(out, "kept");
    EXPECT_EQ(slLeft("abc", 3, out), 1);
    EXPECT_STREQ(out, "abc");
    EXPECT_EQ(slRight("abc", 2, out), 1);
    EXPECT_STREQ(out, "bc");
    EXPECT_STREQ(slSpace(3, out), "   ");
    EXPECT_STREQ(slSpace(-1, out), "");
    char text[16] = "part";
    EXPECT_STREQ(slInsertStr(text, "a "), "a part");
}

TEST(TextScan, InsertionsBehindASeedStopWhereTheBufferEnds) {
    const struct {
        const char *text;
        const char *insert;
        int capacity;
        int result;
        const char *expected;
    } cases[] = {{"a;b;c", "X", 16, 1, "a;Xb;Xc"},
                 {"a;b;c", "X", 8, 0, "a;Xb;c"},
                 {"a;b;c", "X", 9, 1, "a;Xb;Xc"},
                 {";", ";;", 16, 1, ";;;"},
                 {"", "X", 0, 1, ""},
                 {"abc", "X", 0, 1, "abc"},
                 {"a;", "X", 4, 0, "a;"}};
    for (const auto &c : cases) {
        char text[16];
        std::snprintf(text, sizeof text, "%s", c.text);
        EXPECT_EQ(slInsStrBySeed(text, c.capacity, c.insert, ';'), c.result) << c.text;
        EXPECT_STREQ(text, c.expected);
    }
}

TEST(TextScan, RealIsPrintedInFixedFormAndAlwaysWithAPoint) {
    const struct {
        float value;
        int digits;
        const char *text;
        float rounded;
    } cases[] = {{3.14159F, 2, "3.14", 3.14F},
                 {2.5F, 0, "3.", 3},
                 {-1.5F, 1, "-1.5", -1.5F},
                 {-0.004F, 2, "-0.00", 0},
                 {0.05F, 3, "0.050", 0.05F},
                 {-2.5F, -1, "-3.", -3},
                 {1e20F, 0, "2147483647.", 2147483647.0F},
                 {0, 3, "0.000", 0}};
    for (const auto &c : cases) {
        char out[32];
        EXPECT_EQ(slChangeRealToStr(out, c.value, c.digits), c.rounded) << c.text;
        EXPECT_STREQ(out, c.text);
    }
}

} // namespace
