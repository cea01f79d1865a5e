// Streams in their text and binary form: the bytes of every typed operation, both line ends,
// damaged files, and the state around them.
#include "trunnion/persistence/stream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/persistence/stream_operations.h"
#include "tests/support/random.h"
#include "tests/support/temp_dir.h"
#include "tests/support/thrown.h"

namespace {

using namespace std::string_literals;
using namespace test;

class StreamTest : public testing::Test {
protected:
    // The bytes that `write` leaves in a new file.
    std::string written(const char *mode, const std::function<void(TqIOCL &)> &write) {
        TqIOCL stream;
        stream.OpenM(path.c_str(), mode);
        write(stream);
        stream.CloseM();
        return test::readBytes(path);
    }
    // Makes `stream` read `bytes`.
    void open(TqIOCL &stream, const std::string &bytes, const char *mode = "r") {
        std::error_code stillOpen;
        std::filesystem::remove(path, stillOpen); // replacing a file's content waits for the disk
        test::writeBytes(path, bytes);
        stream.OpenM(path.c_str(), mode);
    }

    test::TempDir dir;
    const std::string path = dir.path("file.txt");
};

std::string withWindowsLineEnds(const std::string &text) {
    std::string result;
    for (const char character : text) {
        result += character == '\n' ? "\r\n"s : std::string(1, character);
    }
    return result;
}

TEST_F(StreamTest, EveryTypedOperationWritesItsBytesAndReadsThemBack) {
    for (const Operation &operation : operations()) {
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(written("w", operation.write), operation.text);
        EXPECT_EQ(written("wb", operation.write), operation.binary);
        const std::pair<std::string, const char *> files[] = {
            {operation.text, "r"},
            {withWindowsLineEnds(operation.text), "r"},
            {operation.text.substr(0, operation.text.size() - 1), "r"}, // no line end at all
            {operation.binary, "rb"}};
        for (const auto &[bytes, mode] : files) {
            TqIOCL stream;
            open(stream, bytes, mode);
            EXPECT_EQ(stream.EofM(), 0);
            EXPECT_EQ(operation.read(stream), operation.values);
            EXPECT_EQ(stream.EofM(), 1);
            EXPECT_EQ(stream.FinishedReadM(), 1);
        }
    }
}

// Reads the values of all operations one behind the other; 0, or the code thrown.
int readAll(TqIOCL &stream) {
    return thrown([&] {
        for (const Operation &operation : operations()) {
            operation.read(stream);
        }
    });
}

// A reader of a part of a file meets its end in any value: all it may do then is throw 107. In text
// the last two strings may be cut without notice.
TEST_F(StreamTest, EveryPrefixAndEveryFlippedByteReadsOrThrows107) {
    // The last bytes that may be missing come third.
    const std::tuple<const char *, std::string Operation::*, std::size_t> forms[] = {
        {"r", &Operation::text, 14}, {"rb", &Operation::binary, 0}};
    for (const auto &[mode, form, soft] : forms) {
        std::string bytes;
        for (const Operation &operation : operations()) {
            bytes += operation.*form;
        }
        for (std::size_t i = 0; i <= bytes.size(); ++i) {
            TqIOCL stream;
            open(stream, bytes.substr(0, i), mode);
            EXPECT_EQ(readAll(stream), i + soft < bytes.size() ? 107 : 0) << i;
            std::string damaged = bytes;
            damaged[i % bytes.size()] = static_cast<char>(damaged[i % bytes.size()] ^ 0x85);
            open(stream, damaged, mode);
            const int code = readAll(stream);
            EXPECT_TRUE(code == 0 || code == 107) << i;
        }
    }
}

TEST_F(StreamTest, FloatsOfEveryBitPatternComeBackFromTextUnchanged) {
    test::Random random(21);
    std::vector<float> values = {std::numeric_limits<float>::infinity(),
                                 -std::numeric_limits<float>::infinity(), -0.0F};
    for (int power = -149; power < 128; ++power) { // among them halves of the ninth digit
        values.push_back(std::ldexp(1.0F, power));
    }
    for (int i = 0; i < 20000; ++i) {
        const int high = random.integer(0, 0xFFFF);
        const float value = std::bit_cast<float>(high << 16 | random.integer(0, 0xFFFF));
        if (!std::isnan(value)) {
            values.push_back(value);
        }
    }
    const std::string text = written("w", [&](TqIOCL &stream) {
        for (const float value : values) {
            stream.OutputRM(&value);
        }
    });
    std::string expected;
    TqIOCL stream;
    open(stream, text);
    for (const float value : values) {
        char line[32];
        std::snprintf(line, sizeof line, "%16.8e\n", static_cast<double>(value));
        expected += line;
        float back = 1.0F;
        stream.InputRM(&back);
        EXPECT_EQ(std::bit_cast<int>(back), std::bit_cast<int>(value)) << value;
    }
    EXPECT_EQ(text, expected);
}

TEST_F(StreamTest, NumbersAreScannedAsFarAsTheyGo) {
    const std::string zeros(60, '0');
    const std::tuple<std::string, float> numbers[] = {{"  \r\n\t+1.5e+2x", 150.0F},
                                                      {".5", 0.5F},
                                                      {"5.", 5.0F},
                                                      {"-7E1", -70.0F},
                                                      {"1e-400", 0.0F},
                                                      {"0." + zeros + "1", 0.0F},
                                                      {"1e-99999999999999999999", 0.0F},
                                                      {"0e99999999999999999999", 0.0F}};
    for (const auto &[text, expected] : numbers) {
        TqIOCL stream;
        open(stream, text);
        float value = 9.0F;
        stream.InputRM(&value);
        EXPECT_EQ(value, expected) << text;
    }
    for (const std::string &text :
         {"1" + zeros, "1e39"s, "1e99999999999999999999"s, "1" + std::string(300, '0'), "1e"s, "-"s,
          "."s, "in"s, ""s, " \n "s}) {
        TqIOCL stream;
        open(stream, text);
        float value = 9.0F;
        EXPECT_EQ(thrown([&] { stream.InputRM(&value); }), 107) << text;
        EXPECT_EQ(value, 9.0F) << text;
    }
}

// Numbers as a damaged or foreign file may hold them, and numbers around the middle of two floats.
std::string randomNumber(test::Random &random) {
    const std::string odd[] = {"1e",
                               "-",
                               ".",
                               "5.",
                               "+.5",
                               "-0",
                               "inf",
                               "-nan",
                               "1e400",
                               "1e-400",
                               "1e+5",
                               "0x10",
                               "1e1e1",
                               "--1",
                               "1,5",
                               "+-1",
                               "1e-7",
                               "",
                               "1.2.3",
                               "0e999",
                               "1" + std::string(260, '0'),
                               "0." + std::string(100, '3')};
    if (random.oneIn(4)) {
        return odd[random.integer(0, static_cast<int>(std::size(odd)) - 1)];
    }
    const auto bits = static_cast<std::uint32_t>(random.integer(0, 0x7F7F)) << 16 |
                      static_cast<std::uint32_t>(random.integer(0, 0xFFFF));
    const double value = static_cast<double>(std::bit_cast<float>(bits));
    const double next = static_cast<double>(std::bit_cast<float>(bits + 1));
    const char *const formats[] = {"%16.8e", "%.14e", "%+.3f", "%g", "%.0f", "%.60g", "%.15g"};
    char text[400];
    std::snprintf(text, sizeof text, formats[random.integer(0, 6)],
                  random.oneIn(3) ? value + (next - value) / 2 : value);
    return text;
}

// What the stream reads from lines of three floats, line by line: code, position, values as bits.
std::vector<std::array<int, 5>> readPoints(TqIOCL &stream) {
    std::vector<std::array<int, 5>> lines;
    while (stream.EofM() == 0) {
        std::array<float, 3> point{};
        const int code = thrown([&] { stream.InputPoint3DM(point.data()); });
        lines.push_back({code, stream.TellM()});
        std::memcpy(&lines.back()[2], point.data(), sizeof point);
        if (code != 0) {
            stream.SkipLineM();
        }
    }
    return lines;
}

// A file without a buffer is read character by character: nothing that is read from the buffer
// may come out differently, wherever the buffer ends.
// Not every system knows the position of a file without a buffer that was given a byte back.
bool tellsPosition(std::FILE *file) {
    std::ungetc(std::fgetc(file), file);
    const bool isTold = std::ftell(file) == 0;
    std::rewind(file);
    return isTold;
}

TEST_F(StreamTest, ValuesDoNotDependOnTheBuffer) {
    test::Random random(23);
    std::string text;
    for (int i = 0; i < 6000; ++i) {
        text += randomNumber(random) + (i % 3 == 2 ? random.oneIn(2) ? "\r\n" : " rest\n" : ", ");
    }
    TqIOCL stream;
    open(stream, text);
    const auto buffered = readPoints(stream);
    for (const int mode : {_IONBF, _IOFBF}) {
        open(stream, text);
        char buffer[61]; // shorter than a line
        std::setvbuf(stream.GetFileDescriptM(), buffer, mode, sizeof buffer);
        const bool comparesPositions = tellsPosition(stream.GetFileDescriptM());
        auto read = readPoints(stream);
        for (std::size_t i = 0; i < read.size() && !comparesPositions; ++i) {
            read[i][1] = buffered.at(i)[1];
        }
        EXPECT_EQ(read, buffered);
        stream.CloseM();
    }
    EXPECT_GT(buffered.size(), 1900U);
    EXPECT_GT(
        std::count_if(buffered.begin(), buffered.end(), [](auto &line) { return line[0] == 0; }),
        300);
}

TEST_F(StreamTest, FileItselfMayBeUsedBetweenTheCalls) {
    const float point[3] = {1.0F, -2.0F, 3.0F};
    for (const int mode : {_IOFBF, _IOLBF, _IONBF}) {
        std::string expected;
        const std::string text = written("w", [&](TqIOCL &stream) {
            std::setvbuf(stream.GetFileDescriptM(), nullptr, mode, 4096);
            for (int i = 0; i < 200; ++i) {
                stream.OutputPoint3DM(point);
                expected += "  1.00000000e+00,  -2.00000000e+00,   3.00000000e+00\n";
                EXPECT_EQ(std::fprintf(stream.GetFileDescriptM(), "%d\n", i), i < 10    ? 2
                                                                              : i < 100 ? 3
                                                                                        : 4);
                expected += std::to_string(i) + "\n";
                EXPECT_EQ(stream.TellM(), static_cast<int>(expected.size()));
            }
        });
        EXPECT_EQ(text, expected);
    }
    TqIOCL stream;
    stream.OpenM(path.c_str(), "r+");
    for (int i = 0; i < 200; ++i) {
        float back[3] = {};
        int number = -1;
        stream.InputPoint3DM(back);
        EXPECT_EQ(back[1], -2.0F);
        std::ungetc(std::getc(stream.GetFileDescriptM()), stream.GetFileDescriptM());
        EXPECT_EQ(std::fscanf(stream.GetFileDescriptM(), "%d\n", &number), 1);
        EXPECT_EQ(number, i);
    }
    stream.SeekM(0, SEEK_SET); // from reading to writing, and back
    stream.OutputPoint2DM(point + 1);
    stream.SeekM(0, SEEK_SET);
    float back = 0.0F;
    stream.InputRM(&back);
    EXPECT_EQ(back, -2.0F);
}

TEST_F(StreamTest, IntegersOutOfRangeAreRefusedAndBytesTakeTheLowOne) {
    TqIOCL stream;
    open(stream, "2147483648\n-2147483648\n300, -1\n1, 2, x\n");
    int value = 0;
    EXPECT_EQ(thrown([&] { stream.InputDM(&value); }), 107);
    stream.SkipLineM();
    EXPECT_EQ(readInt(stream), INT_MIN);
    char bytes[2];
    stream.InputCM(bytes, bytes + 1);
    EXPECT_EQ(bytes[0], 44);
    EXPECT_EQ(bytes[1], -1);
    int triple[3] = {};
    EXPECT_EQ(thrown([&] { stream.InputInt3DM(triple); }), 107);
    EXPECT_EQ(triple[1], 2) << "what was read before the failure is stored";
}

TEST_F(StreamTest, SeparatorHoldsUpTo48CharactersAndIsExpectedInReading) {
    const std::string longest(48, ';');
    for (const std::string &separator : {""s, ";"s, " : "s, "%%"s, longest}) {
        const auto separated = [&](TqIOCL &stream) {
            stream.SetSeparatorM(separator.c_str());
            stream.SetSeparatorM((longest + ';').c_str()); // too long: ignored
        };
        const int one = 1, two = 2;
        const std::string text = written("w", [&](TqIOCL &stream) {
            separated(stream);
            stream.OutputDM(&one, &two);
        });
        const std::string shown = separator == "%%" ? "%" : separator;
        EXPECT_EQ(text, "         1" + shown + "         2\n");
        TqIOCL stream;
        separated(stream);
        open(stream, text);
        int back[2] = {};
        stream.InputInt2DM(back);
        EXPECT_EQ(back[1], 2);
    }
    TqIOCL stream;
    char format[60];
    stream.SetFmtM(1, "%d"); // the tag line follows the separator alone
    stream.GetFmtStrM(format);
    EXPECT_STREQ(format, "%10d, %s");
    stream.SetSeparatorM(";");
    stream.GetFmtStrM(format);
    EXPECT_STREQ(format, "%10d;%s");
    stream.SetSeparatorM(", ");
    open(stream, "1 ,2\n");
    int first = 0, second = 0;
    EXPECT_EQ(thrown([&] { stream.InputDM(&first, &second); }), 107) << "a blank before the comma";
}

TEST_F(StreamTest, AutoNewLineIsOnForOneOnly) {
    const int value = 5;
    const std::string text = written("w", [&](TqIOCL &stream) {
        stream.SetAutoNewLineM(2);
        stream.OutputDM(&value);
        stream.OutputsM("s");
        stream.OutputSM("t", 1, 1);
        stream.SetAutoNewLineM(1);
        stream.OutputDM(&value);
    });
    EXPECT_EQ(text, "         5st         5\n");
    TqIOCL stream;
    open(stream, "1 2 rest\r\n3\n");
    stream.SetAutoNewLineM(0);
    EXPECT_EQ(readInt(stream), 1);
    stream.SetAutoNewLineM(1);
    EXPECT_EQ(readInt(stream), 2);
    EXPECT_EQ(readInt(stream), 3);
}

TEST_F(StreamTest, FormatsAreSetRestoredAndBounded) {
    const auto lines = [this](const std::function<void(TqIOCL &)> &prepare) {
        return written("w", [&](TqIOCL &stream) {
            prepare(stream);
            const int pair[2] = {1, 2};
            const float real = 0.5F;
            const char byte = -1;
            const unsigned char pixel[4] = {200, 1, 2, 3};
            stream.OutputInt2DM(pair);
            stream.OutputRM(&real, &real);
            stream.OutputCM(&byte, &byte);
            stream.OutputTexPixel4DM(pixel);
            stream.OutputSM("text", -1, 1);
        });
    };
    const std::string byDefault = lines([](TqIOCL &) {});
    const auto custom = [](TqIOCL &stream) {
        stream.SetFmtM(4, "%d;%700d");
        stream.SetFmtM(2, "%.2f");
        stream.SetFmtM(0, "%d");
        stream.SetFmtM(9, "%u-%u-%u-%u");
        stream.SetFmtM(3, "<%s>");
    };
    EXPECT_EQ(lines(custom),
              "1;" + std::string(699, ' ') + "2\n0.50, 0.50\n-1, -1\n200-1-2-3\n<text>\n");
    EXPECT_EQ(lines([&](TqIOCL &stream) {
                  custom(stream);
                  EXPECT_EQ(stream.LoadDefaultFmtM(-1), 1);
              }),
              byDefault);
    EXPECT_TRUE(lines([](TqIOCL &stream) {
                    stream.SetFmtM(0, "%d");
                    stream.SetFmtM(3, "<%s>");
                    stream.LoadDefaultFmtM(3);
                    stream.LoadDefaultFmtM(20);
                    stream.LoadDefaultFmtM(-2);
                }).ends_with("\n-1, -1\n  200,     1,     2,     3\ntext\n"));
    EXPECT_EQ(lines([](TqIOCL &stream) {
                  EXPECT_EQ(stream.SetFmtM(20, "x"), 1);
                  stream.SetFmtM(-1, "x");
                  stream.SetFmtM(0, std::string(50, '5').c_str());
              }),
              byDefault);
}

TEST_F(StreamTest, LinesAreCutAtTheBufferAndEndAtEitherLineEnd) {
    TqIOCL stream;
    open(stream, "0123456789\nabc\r\nabcd\r\n\r\na\rb\r");
    for (const char *expected : {"012", "abc", "abc", "", "a\rb", ""}) {
        char line[4] = "xxx";
        EXPECT_EQ(stream.InputGetsM(line, sizeof line), 1);
        EXPECT_STREQ(line, expected);
    }
    EXPECT_EQ(stream.EofM(), 1);
    stream.RewindM();
    stream.InputGetsM(nullptr, 0);
    EXPECT_EQ(stream.TellM(), 11);
    EXPECT_EQ(stream.SkipSomeLinesM(0), 1);
    stream.SkipSomeLinesM(-1);
    EXPECT_EQ(stream.TellM(), 11);
    stream.SkipSomeLinesM(2);
    EXPECT_EQ(stream.TellM(), 22);
    stream.InputSeparatorM(); // the whole line end
    EXPECT_EQ(stream.TellM(), 24);
    stream.InputSeparatorM();
    stream.InputSeparatorM(); // a carriage return of its own
    EXPECT_EQ(stream.TellM(), 26);
    stream.SeekM(0, SEEK_END);
    EXPECT_EQ(thrown([&] { stream.InputSeparatorM(); }), 107);
}

TEST_F(StreamTest, SearchFindsAWholeLine) {
    TqIOCL stream;
    open(stream, "LISTS\nlist\r\n LIST\n" + std::string(300, 'x') + "\nLIST\r\nnext\n");
    EXPECT_EQ(stream.SearchStrM("LIST"), 1);
    char word[8];
    stream.InputSM(word, -1, 1);
    EXPECT_STREQ(word, "next");
    EXPECT_EQ(stream.SearchStrM("LIST"), 0);
    stream.RewindM();
    EXPECT_EQ(stream.SearchStrM(std::string(300, 'x').c_str()), 0);
    stream.RewindM();
    EXPECT_EQ(stream.SearchStrM(std::string(254, 'x').c_str()), 1);
}

TEST_F(StreamTest, BinaryStringsHaveThreeForms) {
    const std::string bytes = written("wb", [](TqIOCL &stream) {
        stream.OutputSM("", -1, 0);
        stream.OutputSM("abcdef", 2, 0);
        stream.OutputSM("abcdef", 3, 1);
        stream.OutputsM("0123");
    });
    EXPECT_EQ(bytes, "\0\0\0\0ab\3\0\0\0abc\4\0\0\0"s + "0123");
    TqIOCL stream;
    open(stream, bytes, "rb");
    char text[8] = "xxxxxxx";
    stream.InputSM(text, -1, 0);
    EXPECT_STREQ(text, "");
    stream.InputSM(text, 2, 0);
    EXPECT_STREQ(text, "abxxxxx");
    stream.InputSM(text, 1, 1);
    EXPECT_STREQ(text, "abc");
    stream.InputGetsM(text, 4);
    EXPECT_STREQ(text, "012");
    EXPECT_EQ(stream.EofM(), 1) << "what did not fit is consumed";
    stream.SeekM(-8, SEEK_END);
    stream.SkipLineM();
    EXPECT_EQ(stream.EofM(), 1);
}

TEST_F(StreamTest, StoredLengthThatTheFileCannotHoldIsRefusedUntouched) {
    for (const int length : {-1, 4, INT_MAX, INT_MIN}) {
        TqIOCL stream;
        open(stream, raw(std::vector<int>{length}) + "abc", "rb");
        char text[8] = "xxxxxxx";
        EXPECT_EQ(thrown([&] { stream.InputSM(text, -1, 1); }), 107);
        stream.RewindM();
        EXPECT_EQ(thrown([&] { stream.InputGetsM(text, sizeof text); }), 107);
        EXPECT_STREQ(text, "xxxxxxx");
    }
}

TEST_F(StreamTest, RawFloatsAreForBinaryStreamsOnly) {
    const std::vector<float> values = {1.0F, -2.0F};
    const std::string text = written("w", [&](TqIOCL &stream) {
        EXPECT_EQ(thrown([&] { stream.OutputRsM(values.data(), 2); }), 108);
    });
    EXPECT_EQ(text, "");
    const std::string bytes = written("wb", [&](TqIOCL &stream) {
        stream.OutputRsM(values.data(), 2);
        stream.OutputRsM(values.data(), -1);
    });
    EXPECT_EQ(bytes, raw(values));
    float back[3] = {};
    TqIOCL stream;
    open(stream, bytes, "rb");
    stream.InputRsM(back, 2);
    EXPECT_EQ(back[1], -2.0F);
    EXPECT_EQ(thrown([&] { stream.InputRsM(back, 1); }), 107);
    open(stream, "1.0\n");
    EXPECT_EQ(thrown([&] { stream.InputRsM(back, 1); }), 108);
    EXPECT_EQ(stream.TellM(), 0);
}

TEST_F(StreamTest, CallersScanFormatCountsInTextOnly) {
    TqIOCL stream;
    int value = 0;
    open(stream, "no 17 rest\n4\n");
    stream.InputDM(&value, "no %d");
    EXPECT_EQ(value, 17);
    EXPECT_EQ(thrown([&] { stream.InputDM(&value, "no %d"); }), 107);
    open(stream, "\1\0\0\0"s, "rb");
    stream.InputDM(&value, "no %d");
    EXPECT_EQ(value, 1);
}

TEST_F(StreamTest, OpeningSetsTypeLengthAndNameAndFailsWith109) {
    TqIOCL stream;
    open(stream, "12345", "r+b");
    EXPECT_EQ(stream.GetIoTypeM(), 1);
    EXPECT_EQ(stream.GetFileLengthM(), 5);
    EXPECT_EQ(stream.GetFileNameM(), path);
    stream.OpenM(stream.GetFileNameM(), "rt");
    EXPECT_EQ(stream.GetIoTypeM(), 0);
    EXPECT_EQ(stream.GetFileNameM(), path);
    const std::string longest(260, 'n');
    for (const std::string &name : {dir.path("missing"), dir.path(""), longest, ""s}) {
        EXPECT_EQ(thrown([&] { stream.OpenM(name.c_str(), "r"); }), 109) << name;
        EXPECT_EQ(stream.GetFileDescriptM(), nullptr);
    }
    EXPECT_EQ(stream.GetFileLengthM(), 5) << "length and type outlive the file";
}

TEST_F(StreamTest, EndFollowsTheLengthAtOpeningAndFinishedTheLengthNow) {
    TqIOCL stream;
    open(stream, "1\n2\n");
    EXPECT_EQ(readInt(stream), 1);
    EXPECT_EQ(stream.EofM() + stream.FinishedReadM(), 0);
    EXPECT_EQ(stream.TellM(), 2);
    std::filesystem::resize_file(path, 2);
    EXPECT_EQ(stream.EofM(), 0);
    EXPECT_EQ(stream.FinishedReadM(), 1);
    stream.SeekM(1, SEEK_CUR);
    stream.SeekM(1, SEEK_CUR);
    EXPECT_EQ(stream.EofM(), 1);
}

TEST_F(StreamTest, FileLongerThanAnIntCanTellEndsAtItsRealEnd) {
    test::writeBytes(path, "");
    std::filesystem::resize_file(path, (1LL << 31) + 10); // sparse
    TqIOCL stream;
    stream.OpenM(path.c_str(), "rb");
    EXPECT_EQ(stream.GetFileLengthM(), INT_MAX);
    stream.SeekM(INT_MAX, SEEK_SET);
    EXPECT_EQ(stream.EofM(), 0);
    EXPECT_EQ(stream.FinishedReadM(), 0);
    stream.SeekM(11, SEEK_CUR);
    EXPECT_EQ(stream.EofM(), 1);
    EXPECT_EQ(stream.TellM(), INT_MAX);
}

TEST_F(StreamTest, AdoptedFileKeepsTheTypeAndLengthOfTheStream) {
    test::writeBytes(path, "5\n");
    TqIOCL stream;
    stream.CreateIndirectlyM(std::fopen(path.c_str(), "rb"), "C:\\dir\\name.txt", "ozk1.0", 3);
    EXPECT_EQ(stream.EofM(), 1);
    EXPECT_EQ(readInt(stream), 5);
    char folder[260];
    stream.GetFilePathM(folder);
    EXPECT_STREQ(folder, "C:\\dir\\");
    EXPECT_STREQ(stream.GetVersionStrM(), "ozk1.0");
    int version = 0;
    stream.GetVersionNumM(&version);
    EXPECT_EQ(version, 3);
    stream.CreateIndirectlyM(nullptr, std::string(300, 'n').c_str(), nullptr, 0);
    EXPECT_EQ(std::strlen(stream.GetFileNameM()), 259U);
    stream.GetFilePathM(folder);
    EXPECT_STREQ(folder, "");
    stream.SetVersionStringM(std::string(300, 'v').c_str());
    EXPECT_EQ(std::strlen(stream.GetVersionStrM()), 99U);
}

template <class Action>
void expectRefused(TqIOCL &stream, Action Operation::*action, int code) {
    for (const Operation &operation : operations()) {
        EXPECT_EQ(thrown([&] { (operation.*action)(stream); }), code) << operation.name;
    }
}

TEST_F(StreamTest, RefusesWhileClosedAndInTheWrongDirection) {
    test::writeBytes(path, "");
    for (const char *mode : {"r", "rb"}) {
        TqIOCL stream;
        stream.OpenM(path.c_str(), mode);
        stream.CloseM();
        stream.CloseM();
        stream.SeekM(1, SEEK_SET);
        stream.RewindM();
        EXPECT_EQ(stream.TellM(), 0);
        EXPECT_EQ(stream.EofM(), 1);
        EXPECT_EQ(stream.SearchStrM(""), 0);
        EXPECT_EQ(thrown([&] { stream.SkipLineM(); }), 107);
        EXPECT_EQ(thrown([&] { stream.InputSeparatorM(); }), 107);
        expectRefused(stream, &Operation::read, 107);
        expectRefused(stream, &Operation::write, 108);
        open(stream, "5\n", mode); // the wrong direction
        expectRefused(stream, &Operation::write, 108);
        stream.OpenM(path.c_str(), ("w"s + (mode + 1)).c_str());
        expectRefused(stream, &Operation::read, 107);
    }
}

} // namespace
