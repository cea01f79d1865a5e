// Streams in their text and binary form: the bytes of every typed operation, both line ends,
// damaged files, and the state around them.
#include "trunnion/persistence/stream.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/temp_dir.h"
#include "tests/support/thrown.h"

namespace {

using namespace std::string_literals;
using test::thrown;

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
        std::filesystem::remove(path); // replacing a file's content waits for the disk
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

template <class T>
std::string raw(const std::vector<T> &values) {
    return {reinterpret_cast<const char *>(values.data()), values.size() * sizeof(T)};
}

// One typed operation: what it writes in either form, and the values that come back as one text.
struct Operation {
    const char *name;
    std::function<void(TqIOCL &)> write;
    std::string text;
    std::string binary;
    std::function<std::string(TqIOCL &)> read;
    std::string values;
};

template <class T>
std::string listed(const T *values, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += std::to_string(values[i]) + ' ';
    }
    return result;
}

template <class T, int Count>
Operation tuple(const char *name, int (TqIOCL::*write)(const T *), int (TqIOCL::*read)(T *),
                const std::vector<T> &value, const std::string &text) {
    return {name,
            [=](TqIOCL &stream) { EXPECT_EQ((stream.*write)(value.data()), 1); },
            text,
            raw(value),
            [=](TqIOCL &stream) {
                T members[Count] = {};
                EXPECT_EQ((stream.*read)(members), 1);
                return listed(members, Count);
            },
            listed(value.data(), Count)};
}

template <class T>
std::function<std::string(TqIOCL &)>
readNine(int (TqIOCL::*read)(T *, T *, T *, T *, T *, T *, T *, T *, T *), int count) {
    return [=](TqIOCL &stream) {
        T v[9] = {};
        (stream.*read)(v, nullptr, v + 1, v + 2, nullptr, nullptr, nullptr, nullptr,
                       count > 3 ? v + 3 : nullptr);
        return listed(v, count);
    };
}

std::vector<Operation> makeOperations() {
    const std::vector<int> ints = {1, 22, -3, INT_MIN};
    const std::vector<float> reals = {0.1F, -1e18F, 1e-45F, 3.40282347e38F};
    const std::vector<char> bytes = {-128, 127, -1};
    return {
        {"D", [=](TqIOCL &s) { s.OutputDM(&ints[0], nullptr, &ints[1], &ints[2]); },
         "         1,         22,         -3\n", raw(std::vector<int>{1, 22, -3}),
         readNine<int>(&TqIOCL::InputDM, 3), "1 22 -3 "},
        {"R",
         [=](TqIOCL &s) {
             s.OutputRM(&reals[0], &reals[1], nullptr, &reals[2], nullptr, nullptr, nullptr,
                        nullptr, &reals[3]);
         },
         "  1.00000001e-01,  -9.99999984e+17,   1.40129846e-45,   3.40282347e+38\n", raw(reals),
         readNine<float>(&TqIOCL::InputRM, 4), listed(reals.data(), 4)},
        {"C", [=](TqIOCL &s) { s.OutputCM(&bytes[0], &bytes[1], nullptr, &bytes[2]); },
         " -128,   127,    -1\n", raw(bytes), readNine<char>(&TqIOCL::InputCM, 3), "-128 127 -1 "},
        tuple<int, 2>("Int2D", &TqIOCL::OutputInt2DM, &TqIOCL::InputInt2DM, {INT_MAX, -5},
                      "2147483647,         -5\n"),
        tuple<int, 3>("Int3D", &TqIOCL::OutputInt3DM, &TqIOCL::InputInt3DM, {7, 8, 9},
                      "         7,          8,          9\n"),
        tuple<int, 4>("Int4D", &TqIOCL::OutputInt4DM, &TqIOCL::InputInt4DM, ints,
                      "         1,         22,         -3, -2147483648\n"),
        tuple<float, 2>("Point2D", &TqIOCL::OutputPoint2DM, &TqIOCL::InputPoint2DM, {0.0F, -0.5F},
                        "  0.00000000e+00,  -5.00000000e-01\n"),
        tuple<float, 3>("Point3D", &TqIOCL::OutputPoint3DM, &TqIOCL::InputPoint3DM,
                        {1.0F, 2.0F, 3.0F},
                        "  1.00000000e+00,   2.00000000e+00,   3.00000000e+00\n"),
        tuple<float, 4>("Point4D", &TqIOCL::OutputPoint4DM, &TqIOCL::InputPoint4DM, reals,
                        "  1.00000001e-01,  -9.99999984e+17,   1.40129846e-45,   3.40282347e+38\n"),
        tuple<float, 4>("Pixel4D", &TqIOCL::OutputPixel4DM, &TqIOCL::InputPixel4DM,
                        {1.0F, 2.0F, 3.0F, 4.0F},
                        "  1.00000000e+00,   2.00000000e+00,   3.00000000e+00,   4.00000000e+00\n"),
        tuple<unsigned char, 4>("TexPixel4D", &TqIOCL::OutputTexPixel4DM, &TqIOCL::InputTexPixel4DM,
                                {0, 128, 255, 7}, "    0,   128,   255,     7\n"),
        {"S", [](TqIOCL &s) { s.OutputSM("word", -1, 0); }, "word\n", "\4\0\0\0word"s,
         [](TqIOCL &s) {
             char word[1000]; // room for any word of a damaged file
             s.InputSM(word, 0, 0);
             return std::string(word);
         },
         "word"},
        {"s", [](TqIOCL &s) { s.OutputsM("two words"); }, "two words\n", "\11\0\0\0two words"s,
         [](TqIOCL &s) {
             char line[16];
             s.InputGetsM(line, sizeof line);
             return std::string(line);
         },
         "two words"},
    };
}

const std::vector<Operation> &operations() {
    static const std::vector<Operation> all = makeOperations();
    return all;
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
    const struct {
        const char *mode;
        std::string Operation::*form;
        std::size_t soft; // last bytes that may be missing
    } forms[] = {{"r", &Operation::text, 14}, {"rb", &Operation::binary, 0}};
    for (const auto &form : forms) {
        std::string bytes;
        for (const Operation &operation : operations()) {
            bytes += operation.*form.form;
        }
        for (std::size_t i = 0; i <= bytes.size(); ++i) {
            TqIOCL stream;
            open(stream, bytes.substr(0, i), form.mode);
            EXPECT_EQ(readAll(stream), i + form.soft < bytes.size() ? 107 : 0) << i;
            std::string damaged = bytes;
            damaged[i % bytes.size()] = static_cast<char>(damaged[i % bytes.size()] ^ 0x85);
            open(stream, damaged, form.mode);
            const int code = readAll(stream);
            EXPECT_TRUE(code == 0 || code == 107) << i;
        }
    }
}

TEST_F(StreamTest, FloatsOfEveryBitPatternComeBackFromTextUnchanged) {
    test::Random random(21);
    std::vector<float> values = {std::numeric_limits<float>::infinity(),
                                 -std::numeric_limits<float>::infinity(), -0.0F};
    for (int i = 0; i < 2000; ++i) {
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

// Texts of one float, and whether it is read.
TEST_F(StreamTest, NumbersAreScannedAsFarAsTheyGo) {
    const struct {
        std::string text;
        bool isRead;
        float value;
    } cases[] = {
        {"  \r\n\t+1.5e+2x", true, 150.0F},
        {".5", true, 0.5F},
        {"5.", true, 5.0F},
        {"-7E1", true, -70.0F},
        {"1e-400", true, 0.0F},
        {"0." + std::string(60, '0') + "1", true, 0.0F},
        {"1e-99999999999999999999", true, 0.0F},
        {"0e99999999999999999999", true, 0.0F},
        {"1" + std::string(60, '0'), false, 0.0F},
        {"1e39", false, 0.0F},
        {"1e99999999999999999999", false, 0.0F},
        {"1" + std::string(300, '0'), false, 0.0F},
        {"1e", false, 0.0F},
        {"-", false, 0.0F},
        {".", false, 0.0F},
        {"in", false, 0.0F},
        {"", false, 0.0F},
        {" \n ", false, 0.0F},
    };
    for (const auto &one : cases) {
        TqIOCL stream;
        open(stream, one.text);
        float value = 9.0F;
        EXPECT_EQ(thrown([&] { stream.InputRM(&value); }), one.isRead ? 0 : 107) << one.text;
        EXPECT_EQ(value, one.isRead ? one.value : 9.0F) << one.text;
    }
}

TEST_F(StreamTest, IntegersOutOfRangeAreRefusedAndBytesTakeTheLowOne) {
    TqIOCL stream;
    open(stream, "2147483648\n-2147483648\n300, -1\n1, 2, x\n");
    int value = 0;
    EXPECT_EQ(thrown([&] { stream.InputDM(&value); }), 107);
    stream.SkipLineM();
    stream.InputDM(&value);
    EXPECT_EQ(value, INT_MIN);
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
        const int one = 1;
        const int two = 2;
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
    open(stream, "1 ,2\n");
    int first = 0;
    int second = 0;
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
    int back = 0;
    stream.InputDM(&back);
    stream.SetAutoNewLineM(1);
    stream.InputDM(&back);
    EXPECT_EQ(back, 2);
    stream.InputDM(&back);
    EXPECT_EQ(back, 3);
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

TEST_F(StreamTest, TagLineFormatFollowsTheSeparatorOnly) {
    TqIOCL stream;
    char format[60];
    stream.SetFmtM(1, "%d");
    stream.GetFmtStrM(format);
    EXPECT_STREQ(format, "%10d, %s");
    stream.SetSeparatorM(";");
    stream.GetFmtStrM(format);
    EXPECT_STREQ(format, "%10d;%s");
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
    int value = 0;
    stream.InputDM(&value);
    EXPECT_EQ(stream.EofM(), 0);
    EXPECT_EQ(stream.FinishedReadM(), 0);
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
    int value = 0;
    stream.InputDM(&value);
    EXPECT_EQ(value, 5);
    char folder[260];
    stream.GetFilePathM(folder);
    EXPECT_STREQ(folder, "C:\\dir\\");
    EXPECT_STREQ(stream.GetVersionStrM(), "ozk1.0");
    stream.GetVersionNumM(&value);
    EXPECT_EQ(value, 3);
    stream.CreateIndirectlyM(nullptr, std::string(300, 'n').c_str(), nullptr, 0);
    EXPECT_EQ(std::strlen(stream.GetFileNameM()), 259U);
    stream.GetFilePathM(folder);
    EXPECT_STREQ(folder, "");
    stream.SetVersionStringM(std::string(300, 'v').c_str());
    EXPECT_EQ(std::strlen(stream.GetVersionStrM()), 99U);
}

TEST_F(StreamTest, ClosedStreamRefusesToReadAndToWrite) {
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
        for (const Operation &operation : operations()) {
            EXPECT_EQ(thrown([&] { operation.read(stream); }), 107) << operation.name;
            EXPECT_EQ(thrown([&] { operation.write(stream); }), 108) << operation.name;
        }
    }
}

TEST_F(StreamTest, FileOfTheWrongDirectionGivesTheCode) {
    for (const char *kind : {"", "b"}) {
        TqIOCL stream;
        open(stream, "5\n", ("r"s + kind).c_str());
        for (const Operation &operation : operations()) {
            EXPECT_EQ(thrown([&] { operation.write(stream); }), 108) << operation.name;
        }
        stream.OpenM(path.c_str(), ("w"s + kind).c_str());
        for (const Operation &operation : operations()) {
            EXPECT_EQ(thrown([&] { operation.read(stream); }), 107) << operation.name;
        }
    }
}

TEST_F(StreamTest, NewStreamHasItsDefaults) {
    TqIOCL stream;
    int version = 0;
    stream.GetVersionNumM(&version);
    EXPECT_EQ(version, -2147483647);
    EXPECT_EQ(stream.GetIoTypeM(), 0);
    EXPECT_EQ(stream.GetAutoNewLineM(), 1);
    EXPECT_EQ(stream.GetFileLengthM(), 0);
    EXPECT_STREQ(stream.GetFileNameM(), "");
    EXPECT_STREQ(stream.GetVersionStrM(), "");
}

} // namespace
