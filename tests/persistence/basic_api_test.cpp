// The flat interface: files and directories without objects.
#include "trunnion/persistence/basic_api.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"
#include "tests/support/thrown.h"
#include "trunnion/host/paths.h"
#include "trunnion/persistence/compress_stream.h"

using test::thrown;

namespace {

// Closes the file that a test may have left open: an open one cannot be removed on every system.
class Drive : public test::TempDrive {
public:
    ~Drive() { CloseFileVB(); }
};

char writing[] = "wb", reading[] = "rb", text[] = "w";

// Saves the values in a data file.
void write(const char *path, const std::function<void()> &values) {
    ASSERT_EQ(OpenFileVB(path, writing), 1);
    values();
    ASSERT_EQ(FinishSaveVB(), 1);
    ASSERT_EQ(CloseFileVB(), 1);
}

std::string readString(int size) {
    std::string buffer(static_cast<std::size_t>(size) + 1, '~');
    EXPECT_EQ(InputSVB(buffer.data(), size), 1);
    EXPECT_EQ(buffer.back(), '~') << "written behind the buffer";
    buffer.pop_back();
    return buffer;
}

template <class Value, class Input>
Value read(Input input, Value &value) {
    EXPECT_EQ(input(&value), 1);
    return value;
}

// Runs first: no other test has opened a file then.
TEST(BasicApi, FailsBeforeAnyFileWasOpened) {
    int value = 5;
    short narrow = 5;
    float real = 5;
    char buffer[4] = "abc";
    EXPECT_EQ(GetVersionNumVB(&value) + SetVersionNumVB(1) + OutputSVB("a", 1) +
                  InputSVB(buffer, 4) + OutputDVB(1) + InputDVB(&value) + OutputShortDVB(1) +
                  InputShortDVB(&narrow) + OutputFloatVB(1) + InputFloatVB(&real) + FinishSaveVB() +
                  CloseFileVB() + OutputSTxtVB("a") + CloseFileTxtVB(),
              0);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(narrow, 5);
    EXPECT_EQ(real, 5.0F);
    EXPECT_STREQ(buffer, "abc");
}

TEST(BasicApi, ReadsWhatItWroteInADirectoryThatItMade) {
    const Drive drive;
    write("E:\\new\\deep\\a.dat", [] {
        const std::vector<int> results = {SetVersionNumVB(305),  OutputDVB(-70000),
                                          OutputShortDVB(-1),    OutputShortDVB(-1),
                                          OutputDVB(0x12345),    OutputFloatVB(0.1F),
                                          OutputSVB("abc", -1),  OutputSVB("abcdef", 2),
                                          OutputSVB(nullptr, 0), OutputSVB("ten  chars", -1)};
        EXPECT_EQ(results, std::vector<int>(results.size(), 1));
    });

    int value = 0;
    short narrow = 0;
    float real = 0;
    ASSERT_EQ(OpenFileVB("E:\\new\\deep\\a.dat", reading), 1);
    EXPECT_EQ(read(GetVersionNumVB, value), 305);
    EXPECT_EQ(read(InputDVB, value), -70000);
    EXPECT_EQ(read(InputShortDVB, narrow), -1);
    EXPECT_EQ(read(InputDVB, value), -1);
    EXPECT_EQ(read(InputShortDVB, narrow), 0x2345);
    EXPECT_EQ(read(InputFloatVB, real), 0.1F);
    EXPECT_EQ(readString(10), "abc       ");
    EXPECT_EQ(readString(3), "ab ");
    EXPECT_EQ(readString(2), "  ");
    EXPECT_EQ(readString(10), "ten  chars");

    EXPECT_EQ(InputDVB(&value), 0);
    EXPECT_EQ(InputShortDVB(&narrow), 0);
    EXPECT_EQ(narrow, 0x2345);
    char buffer[1];
    EXPECT_EQ(InputSVB(buffer, 1), 0);
    EXPECT_EQ(thrown([&] { InputFloatVB(&real); }), 107);
    EXPECT_EQ(CloseFileVB(), 1);
}

TEST(BasicApi, AStringThatDoesNotFitWaitsForALargerBuffer) {
    const Drive drive;
    const std::string path = drive.path("blocks");
    TqCompressIOCL stream;
    stream.OpenM(path.c_str(), "wb");
    const int value = 7;
    stream.OutputDM(&value);
    stream.FlushMemoryM(); // the string begins the second block
    stream.OutputSM("abcdef", -1, 1);
    stream.OutputDM(&value);
    stream.FinishSaveM(1);
    stream.CloseM();

    ASSERT_EQ(OpenFileVB(path.c_str(), reading), 1);
    int found = 0;
    EXPECT_EQ(read(InputDVB, found), 7);
    char buffer[6] = "12345";
    for (const int size : {5, 0, -1}) {
        EXPECT_EQ(InputSVB(buffer, size), 0) << size;
        EXPECT_STREQ(buffer, "12345");
    }
    EXPECT_EQ(readString(6), "abcdef");
    EXPECT_EQ(read(InputDVB, found), 7);
}

TEST(BasicApi, RefusesStringsWhoseLengthIsDamaged) {
    const Drive drive;
    for (const int length : {-1, 5, 0x7FFFFFFF}) {
        write("E:\\a", [&] {
            OutputDVB(length);
            OutputDVB(0); // the four bytes that there are
        });
        ASSERT_EQ(OpenFileVB("E:\\a", reading), 1);
        char buffer[8] = "1234567";
        EXPECT_EQ(InputSVB(buffer, 8), 0) << length;
        EXPECT_STREQ(buffer, "1234567");
    }
}

TEST(BasicApi, OpeningTellsWhetherThereIsAFileThatCanBeRead) {
    const Drive drive;
    EXPECT_EQ(OpenFileVB("E:\\none", reading), 0);
    EXPECT_EQ(FinishSaveVB(), 1) << "a stream is there, closed and without values";
    test::writeBytes(drive.path("short"), std::string("\1\0\0\0\2", 5));
    EXPECT_EQ(OpenFileVB("E:\\short", reading), 0);
    EXPECT_EQ(OpenFileVB("Q:\\none\\a", writing), 0);
    EXPECT_EQ(OpenFileVB(nullptr, writing), 0);
    EXPECT_EQ(OpenFileVB("E:\\a", nullptr), 0);
    EXPECT_EQ(OpenFileTxtVB("E:\\none", reading), 0);
}

TEST(BasicApi, WhatWasNotSavedIsLost) {
    const Drive drive;
    ASSERT_EQ(OpenFileVB("E:\\closed", writing), 1);
    OutputDVB(1);
    EXPECT_EQ(CloseFileVB(), 1);
    EXPECT_EQ(CloseFileVB(), 1);
    ASSERT_EQ(OpenFileVB("E:\\reopened", writing), 1);
    OutputDVB(1);
    write("E:\\other", [] { OutputDVB(2); });
    for (const char *name : {"closed", "reopened"}) {
        EXPECT_TRUE(std::filesystem::exists(drive.path(name)));
        EXPECT_EQ(test::readBytes(drive.path(name)), "") << name;
    }
    // Values that were written to no file cannot be saved.
    OutputDVB(1);
    EXPECT_EQ(FinishSaveVB(), 0);
}

TEST(BasicApi, WritesLinesOfTextBesideTheDataFile) {
    const Drive drive;
    write("E:\\data", [] {
        ASSERT_EQ(OpenFileTxtVB("E:\\texts\\a.txt", text), 1);
        OutputDVB(1);
        EXPECT_EQ(OutputSTxtVB("100% sure"), 1);
        EXPECT_EQ(OutputSTxtVB(nullptr), 1);
        EXPECT_EQ(OutputSTxtVB("end"), 1);
        EXPECT_EQ(CloseFileTxtVB(), 1);
    });
    EXPECT_EQ(test::readBytes(drive.path("texts/a.txt")), "100% sure\n\nend\n");
    EXPECT_EQ(thrown([] { OutputSTxtVB("closed"); }), 108);
}

TEST(BasicApi, NullPointersAreRefused) {
    const Drive drive;
    write("E:\\a", [] { OutputDVB(9); });
    ASSERT_EQ(OpenFileVB("E:\\a", reading), 1);
    EXPECT_EQ(GetVersionNumVB(nullptr) + InputDVB(nullptr) + InputShortDVB(nullptr) +
                  InputFloatVB(nullptr) + InputSVB(nullptr, 5),
              0);
    int value = 0;
    EXPECT_EQ(read(InputDVB, value), 9);
}

TEST(BasicApi, MakesListsAndRemovesDirectories) {
    const Drive drive;
    EXPECT_EQ(slCreateDirRecursivelyVB("E:\\top\\a\\b"), 1);
    EXPECT_EQ(slCreateDirRecursivelyVB("top\\a"), 0);
    char names[6];
    EXPECT_EQ(slFindSubFoldersVB("E:\\top", names, 6), 1);
    EXPECT_EQ(std::string(names, 6), "a;    ");
    EXPECT_EQ(slRemoveDirRecursivelyVB("E:\\top"), 1);
    EXPECT_FALSE(std::filesystem::exists(drive.path("top")));
}

} // namespace
