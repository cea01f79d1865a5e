// Typed values, lines and words of plain text files.
#include "trunnion/persistence/line_io.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

class LineIoTest : public testing::Test {
protected:
    File reading(const std::string &bytes) {
        test::writeBytes(path, bytes);
        return {std::fopen(path.c_str(), "rb"), &std::fclose};
    }

    test::TempDir dir;
    const std::string path = dir.path("file.txt");
};

TEST_F(LineIoTest, ScannersCountTheirConversions) {
    const File file = reading("300 -7 2.5 word 1,2 1 2 3 4 5 6 7 8 9 10 11 12 13\r\n");
    char byte = 0;
    EXPECT_EQ(slFscanfC(file.get(), "%d", &byte), 1);
    EXPECT_EQ(byte, 44);
    int number = 0;
    EXPECT_EQ(slFscanfD(file.get(), "%d", &number), 1);
    EXPECT_EQ(number, -7);
    float real[4] = {};
    EXPECT_EQ(slFscanfR(file.get(), "%f", real), 1);
    EXPECT_EQ(real[0], 2.5F);
    char word[8];
    EXPECT_EQ(slFscanfS(file.get(), "%s", word), 1);
    EXPECT_STREQ(word, "word");
    int pair[2] = {};
    EXPECT_EQ(slFscanfInt2D(file.get(), "%d,%d", pair), 1);
    EXPECT_EQ(pair[1], 2);
    EXPECT_EQ(slFscanfPoint2D(file.get(), "%f %f", real), 1);
    EXPECT_EQ(real[1], 2.0F);
    EXPECT_EQ(slFscanfPoint3D(file.get(), "%f %f %f", real), 1);
    EXPECT_EQ(real[2], 5.0F);
    EXPECT_EQ(slFscanfPoint4D(file.get(), "%f %f %f %f", real), 1);
    EXPECT_EQ(real[3], 9.0F);
    EXPECT_EQ(slFscanfPixel4D(file.get(), "%f %f %f %f\n", real), 1);
    EXPECT_EQ(real[3], 13.0F);
    EXPECT_EQ(slFscanfD(file.get(), "%d", &number), 0);
}

TEST_F(LineIoTest, ScannersKeepWhatWasConvertedBeforeAFailure) {
    float point[3] = {9.0F, 9.0F, 9.0F};
    EXPECT_EQ(slFscanfPoint3D(reading("1 2 x").get(), "%f %f %f", point), 0);
    EXPECT_EQ(point[1], 2.0F);
    EXPECT_EQ(point[2], 9.0F);
    char byte = 5;
    EXPECT_EQ(slFscanfC(reading("x").get(), "%d", &byte), 0);
    EXPECT_EQ(byte, 5);
    unsigned char pixel[4] = {9, 9, 9, 9};
    EXPECT_EQ(slFscanfTexPixel4D(reading("1, 2, x").get(), "%d, %d, %d", pixel), 0);
    EXPECT_EQ(pixel[0], 9);
    EXPECT_EQ(slFscanfTexPixel4D(reading("1, 258, 3").get(), "%d, %d, %d", pixel), 1);
    EXPECT_EQ(pixel[1], 2);
    EXPECT_EQ(pixel[3], 255);
}

TEST_F(LineIoTest, PrintersFollowTheFormatAndReportAFailure) {
    const int pair[2] = {1, -2};
    const float point[4] = {0.5F, 1.5F, 2.5F, 3.5F};
    const unsigned char pixel[4] = {255, 0, 1, 2};
    File file(std::fopen(path.c_str(), "wb"), &std::fclose);
    int results = 0;
    for (int pass = 0; pass < 2; ++pass) {
        results += slFprintfC(file.get(), "%d ", -1);
        results += slFprintfD(file.get(), "%3d\n", 5);
        results += slFprintfS(file.get(), "<%s>", "text");
        results += slFprintfR(file.get(), "%.1f\n", 0.5F);
        results += slFprintfInt2D(file.get(), "%d %d\n", pair);
        results += slFprintfPoint2D(file.get(), "%.1f %.1f\n", point);
        results += slFprintfPoint3D(file.get(), "%.1f %.1f %.1f\n", point);
        results += slFprintfPoint4D(file.get(), "%.1f %.1f %.1f %.1f\n", point);
        results += slFprintfPixel4D(file.get(), "%.1f %.1f %.1f %.1f\n", point);
        results += slFprintfTexPixel4D(file.get(), "%u %u %u %u\n", pixel);
        EXPECT_EQ(results, 10) << "ten written, then none into a file open for reading";
        file.reset(std::fopen(path.c_str(), "rb"));
    }
    EXPECT_EQ(test::readBytes(path), "-1   5\n<text>0.5\n1 -2\n0.5 1.5\n0.5 1.5 2.5\n"
                                     "0.5 1.5 2.5 3.5\n0.5 1.5 2.5 3.5\n255 0 1 2\n");
}

TEST_F(LineIoTest, LinesAreCutAtTheBufferAndEndAtEitherLineEnd) {
    const File file = reading("0123456789\nabcd\r\n\r\na\rb");
    for (const char *expected : {"0123", "abcd", "", "a\rb", ""}) {
        char line[5] = "xxxx";
        EXPECT_EQ(slFgets(file.get(), line, sizeof line), 1);
        EXPECT_STREQ(line, expected);
    }
}

TEST_F(LineIoTest, SkippingTellsANewLineFromTheEndOfTheFile) {
    const File file = reading("one\r\n\ntwo");
    EXPECT_EQ(slSkipLine(file.get()), 1);
    EXPECT_EQ(std::ftell(file.get()), 5);
    EXPECT_EQ(slSkipLine(file.get()), 1);
    EXPECT_EQ(slSkipLine(file.get()), 0);
    EXPECT_EQ(slSkipLine(file.get()), 0);
}

TEST_F(LineIoTest, SearchFindsAWordInTheMiddleOfALine) {
    const std::string longWord(255, 'w');
    const File file =
        reading("x TAGS tag\n" + longWord + "w\n" + longWord + "\n1 TAG\r\n  7\nlast\n");
    EXPECT_EQ(slSearchStrM(file.get(), longWord.c_str()), 1);
    EXPECT_EQ(slSearchStrM(file.get(), "TAG"), 1);
    EXPECT_EQ(std::getc(file.get()), '7') << "behind the white space";
    EXPECT_EQ(slSearchStrM(file.get(), "last"), 1);
    EXPECT_NE(std::feof(file.get()), 0);
    EXPECT_EQ(slSearchStrM(file.get(), "last"), 0);
    std::rewind(file.get());
    EXPECT_EQ(slSearchStrM(file.get(), "w"), 0) << "nor the tail of a long word";
    EXPECT_EQ(slSearchStrM(reading("").get(), ""), 0);
}

} // namespace
