// Compressed files: their layout, values across blocks, what damage is reported as, and the state
// of a stream after it.
#include "trunnion/persistence/compress_stream.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/persistence/stream_operations.h"
#include "tests/support/temp_dir.h"
#include "tests/support/thrown.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/persistence/lzw.h"

namespace {

using namespace std::string_literals;
using namespace test;

class CompressStreamTest : public testing::Test {
protected:
    // The file that `write` and a last FinishSaveM leave.
    std::string saved(const std::function<void(TqCompressIOCL &)> &write) {
        TqCompressIOCL stream;
        stream.SetVersionNumM(5002);
        stream.OpenM(path.c_str(), "wb");
        write(stream);
        stream.FinishSaveM(1);
        stream.CloseM();
        return readBytes(path);
    }
    // Makes `stream` read `bytes`.
    void open(TqCompressIOCL &stream, const std::string &bytes) {
        std::error_code stillOpen;
        std::filesystem::remove(path, stillOpen);
        test::writeBytes(path, bytes);
        stream.OpenM(path.c_str(), "rb");
    }

    test::TempDir dir;
    const std::string path = dir.path("file.ozk");
};

std::string bytesOf(int value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

// A block as it stands in the file, its length in front.
std::string blockOf(std::string values) {
    unsigned char *out = nullptr;
    FCLzw codec;
    const unsigned long length =
        codec.LZW_Encode(reinterpret_cast<unsigned char *>(values.data()), values.size(), &out);
    const std::string block(reinterpret_cast<const char *>(out), length);
    codec.FreeBufferM(&out);
    return bytesOf(static_cast<int>(length)) + block;
}

TEST_F(CompressStreamTest, FileIsTheVersionAndItsBlocks) {
    EXPECT_EQ(saved([](TqCompressIOCL &stream) {
                  const int a = 1, b = -2;
                  stream.OutputDM(&a, nullptr, &b);
                  stream.OutputsM("text");
              }),
              bytesOf(5002) + blockOf(bytesOf(1) + bytesOf(-2) + bytesOf(4) + "text"));
    EXPECT_EQ(saved([](TqCompressIOCL &stream) {
                  for (const int value : {1, 2, 3}) {
                      stream.OutputDM(&value);
                      stream.FlushMemoryM();
                  }
              }),
              bytesOf(5002) + blockOf(bytesOf(1)) + blockOf(bytesOf(2)) + blockOf(bytesOf(3)));
}

TEST_F(CompressStreamTest, SavingNothingLeavesAnEmptyFileThatDoesNotOpen) {
    EXPECT_EQ(saved([](TqCompressIOCL &) {}), "");
    TqCompressIOCL stream;
    EXPECT_EQ(thrown([&] { stream.OpenM(path.c_str(), "rb"); }), 107);

    stream.OpenM(path.c_str(), "wb");
    stream.OutputsM("lost");
    stream.CloseM();
    EXPECT_EQ(readBytes(path), "");
    EXPECT_EQ(stream.TellM(), 0);
}

// Writes every kind of value behind each other, or reads it as texts.
void writeAll(TqIOCL &stream) {
    const float reals[] = {1.5F, -0.0F, 1e-42F, 1e18F};
    for (const Operation &operation : operations()) {
        operation.write(stream);
    }
    stream.OutputRsM(reals, 4);
    EXPECT_EQ(stream.OutputSM("raw\0bytes", 9, 0) + stream.OutputSM("", -1, 0), 2);
    EXPECT_EQ(stream.OutputSM("counted", 5, 1), 1);
    for (const char *line : {"a line that is too long", "skipped", "found"}) {
        EXPECT_EQ(stream.OutputsM(line), 1);
    }
    stream.OutputTexPixel4DM(reinterpret_cast<const unsigned char *>("last"));
}
std::vector<std::string> readAll(TqIOCL &stream) {
    std::vector<std::string> found;
    for (const Operation &operation : operations()) {
        found.push_back(operation.read(stream));
        EXPECT_EQ(found.back(), operation.values);
    }
    float reals[4] = {};
    stream.InputRsM(reals, 4);
    found.push_back(listed(reals, 4));
    char text[32] = {};
    const auto add = [&] { found.emplace_back(text, sizeof text); };
    stream.InputSM(text, 9, 0);
    add();
    stream.InputSM(text, -1, 0);
    add();
    stream.InputSM(text, 3, 1);
    add();
    stream.InputGetsM(text, 7);
    add();
    found.push_back(std::to_string(stream.SearchStrM("found")));
    int last = 0;
    found.push_back(std::to_string(stream.InputDM(&last, "ignored") * last));
    found.push_back(std::to_string(stream.EofM()) + std::to_string(stream.FinishedReadM()));
    return found;
}

// A binary stream is the model: the same calls give the same values.
TEST_F(CompressStreamTest, MovesTheValuesOfABinaryStream) {
    TqIOCL plain;
    plain.OpenM(path.c_str(), "wb");
    writeAll(plain);
    plain.CloseM();
    const std::string values = readBytes(path);
    plain.OpenM(path.c_str(), "rb");
    const std::vector<std::string> expected = readAll(plain);
    plain.CloseM();

    EXPECT_EQ(saved(writeAll), bytesOf(5002) + blockOf(values));
    TqCompressIOCL stream;
    stream.OpenM(path.c_str(), "rb");
    int version = 0;
    stream.GetVersionNumM(&version);
    EXPECT_EQ(version, 5002);
    EXPECT_EQ(stream.GetIoTypeM(), 1);
    EXPECT_EQ(readAll(stream), expected);
    EXPECT_EQ(thrown([&] { readInt(stream); }), 107);
}

TEST_F(CompressStreamTest, BlockBordersGoUnnoticed) {
    constexpr int listCount = 40;
    saved([](TqCompressIOCL &stream) {
        for (int i = 0; i < listCount; ++i) {
            IntArr list;
            for (int k = 0; k < i * 10; ++k) {
                list.AddItemM(k - i);
            }
            list.FmOutputOzkLstM(&stream, "LIST");
            if (i % 3 == 0) {
                stream.FlushMemoryM();
            }
        }
    });
    TqCompressIOCL stream;
    for (int round = 0; round < 2; ++round) { // opened again, it starts afresh
        stream.OpenM(path.c_str(), "rb");
        for (int i = 0; i < listCount; ++i) {
            ASSERT_EQ(stream.EofM(), 0);
            IntArr list;
            list.FmInputOzkLstM(&stream);
            ASSERT_EQ(list.GetBoundM(), i * 10);
            ASSERT_TRUE(i == 0 || list[i * 10 - 1] == i * 9 - 1);
        }
        ASSERT_EQ(stream.EofM(), 1);
    }
}

TEST_F(CompressStreamTest, LargeBufferIsWrittenOnTheWay) {
    const std::string zeros(0x4000000 + 8, '\0');
    const int last = 77;
    const std::string file = saved([&](TqCompressIOCL &stream) {
        stream.OutputSM(zeros.data(), static_cast<int>(zeros.size()), 0);
        EXPECT_EQ(stream.TellM(), static_cast<int>(zeros.size()));
        stream.OutputDM(&last);
        EXPECT_EQ(stream.TellM(), 4);
    });
    const std::string end = blockOf(bytesOf(last));
    ASSERT_GT(file.size(), 8 + end.size());
    EXPECT_EQ(file.substr(0, 8),
              bytesOf(5002) + bytesOf(static_cast<int>(file.size() - 8 - end.size())));
    EXPECT_EQ(file.substr(file.size() - end.size()), end);
    TqCompressIOCL stream;
    stream.OpenM(path.c_str(), "rb");
    std::string found(zeros.size(), 'x');
    stream.InputSM(found.data(), static_cast<int>(found.size()), 0);
    EXPECT_EQ(found, zeros);
    EXPECT_EQ(readInt(stream), last);
}

TEST_F(CompressStreamTest, CursorMovesInTheBlock) {
    TqCompressIOCL stream;
    stream.SeekM(0, SEEK_SET);
    stream.SeekM(5, SEEK_SET);
    EXPECT_EQ(stream.TellM(), 0);
    open(stream, bytesOf(1) + blockOf("0123456789") + blockOf("abc"));
    struct Case {
        int offset, origin, position;
    };
    for (const Case &c :
         {Case{4, SEEK_SET, 4}, Case{3, SEEK_CUR, 7}, Case{-2, SEEK_CUR, 5}, Case{9, SEEK_SET, 9},
          Case{10, SEEK_SET, 9}, Case{-1, SEEK_SET, 9}, Case{2, SEEK_END, 2}, Case{-3, SEEK_CUR, 9},
          Case{INT_MAX, SEEK_END, 9}, Case{INT_MIN, SEEK_CUR, 9}, Case{0, 3, 9}}) {
        stream.SeekM(c.offset, c.origin);
        EXPECT_EQ(stream.TellM(), c.position) << c.offset << " from " << c.origin;
    }
    char byte = 0;
    stream.InputCM(&byte);
    EXPECT_EQ(byte, '9');
    stream.RewindM();
    stream.InputCM(&byte);
    EXPECT_EQ(byte, '0');

    // Values over others: the block grows all the same, by zeros.
    EXPECT_EQ(saved([](TqCompressIOCL &writer) {
                  writer.OutputSM("0123456789", 10, 0);
                  writer.SeekM(2, SEEK_SET);
                  writer.OutputSM("ab", 2, 0);
              }),
              bytesOf(5002) + blockOf("01ab456789\0\0"s));
}

TEST_F(CompressStreamTest, StringsKeepTheirBounds) {
    TqCompressIOCL stream;
    open(stream, bytesOf(1) +
                     blockOf(bytesOf(5) + "12345" + bytesOf(0) + bytesOf(3) + "abc" + bytesOf(4)) +
                     blockOf("next" + bytesOf(-1)));
    char text[8] = "xxxxxxx";
    stream.InputGetsM(text, 5);
    EXPECT_EQ(std::string(text, 8), "1234\0xx\0"s);
    stream.InputGetsM(text, 1);
    EXPECT_EQ(std::string(text, 2), "\0002"s);
    stream.InputGetsM(nullptr, 0);
    stream.InputSM(text, 1, 1); // its length is the last value of the block
    EXPECT_STREQ(text, "next");
    EXPECT_EQ(thrown([&] { stream.InputSM(text, -1, 0); }), 107);
    EXPECT_EQ(thrown([&] { stream.InputGetsM(text, 8); }), 107);
}

TEST_F(CompressStreamTest, EveryPrefixIsReportedAsCut) {
    const std::string file = bytesOf(1) + blockOf("abcabc") + blockOf("defdefdef");
    const std::size_t second = file.size() - blockOf("defdefdef").size();
    for (std::size_t length = 0; length < file.size(); ++length) {
        TqCompressIOCL stream;
        char text[16] = {};
        if (length < second) {
            ASSERT_EQ(thrown([&] { open(stream, file.substr(0, length)); }), 107) << length;
            ASSERT_EQ(stream.EofM(), 1);
        } else {
            open(stream, file.substr(0, length));
            stream.InputSM(text, 6, 0);
            ASSERT_STREQ(text, "abcabc");
        }
        ASSERT_EQ(thrown([&] { stream.InputSM(text, 1, 0); }), 107) << length;
        open(stream, file); // still usable
        stream.InputSM(text, 6, 0);
        stream.InputSM(text, 9, 0);
        ASSERT_STREQ(text, "defdefdef");
        ASSERT_EQ(stream.EofM(), 1);
    }
}

TEST_F(CompressStreamTest, EveryChangedByteIsReported) {
    const std::string file = bytesOf(1) + blockOf("abcabc") + blockOf("defdefdef");
    for (std::size_t at = 4; at < file.size(); ++at) {
        std::string damaged = file;
        damaged[at] ^= 0x41;
        TqCompressIOCL stream;
        const int code = thrown([&] {
            open(stream, damaged);
            char text[16] = {};
            stream.InputSM(text, 6, 0);
            stream.InputSM(text, 9, 0);
        });
        ASSERT_TRUE(code == 107 || code == 109) << "byte " << at << ": " << code;
    }
}

TEST_F(CompressStreamTest, LengthsAreHeldAgainstTheFileBeforeAnythingIsAllocated) {
    const std::string rest(12, 'x');
    TqCompressIOCL stream;
    for (const int length : {INT_MAX, INT_MIN, -1, 13}) {
        EXPECT_EQ(thrown([&] { open(stream, bytesOf(1) + bytesOf(length) + rest); }), 107);
    }
    EXPECT_EQ(thrown([&] { open(stream, bytesOf(1) + bytesOf(12) + rest); }), 109);
    EXPECT_EQ(thrown([&] { open(stream, bytesOf(1) + bytesOf(0) + rest); }), 109);
    // A list cannot have more items than the blocks can hold values.
    const std::string values = bytesOf(100) + bytesOf(100);
    open(stream, bytesOf(1) + blockOf(values) + blockOf(std::string(396, 'x')));
    IntArr list;
    EXPECT_EQ(thrown([&] { list.FmInputOzkLstM(&stream); }), 107);
    EXPECT_EQ(list.GetBoundM(), 0);
}

TEST_F(CompressStreamTest, DamagedBlockStaysTheNextOne) {
    std::string file = bytesOf(1) + blockOf("first") + blockOf("second") + blockOf("third");
    file[4 + blockOf("first").size() + 14] ^= 1; // the checksum
    TqCompressIOCL stream;
    open(stream, file);
    char text[8] = {};
    stream.InputSM(text, 5, 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(thrown([&] { stream.EofM(); }), 109);
        EXPECT_EQ(thrown([&] { stream.InputSM(text, 5, 0); }), 109);
    }
    EXPECT_STREQ(text, "first");
    // A value over a border, and one too many, leave the position.
    open(stream, bytesOf(1) + blockOf("abc") + blockOf("defg"));
    EXPECT_EQ(thrown([&] { readInt(stream); }), 107);
    stream.InputSM(text, 3, 0);
    EXPECT_STREQ(text, "abcst");
}

TEST_F(CompressStreamTest, WhatCannotBeWrittenIsReported) {
    const int value = 1;
    TqCompressIOCL stream;
    stream.OutputDM(&value);
    EXPECT_EQ(thrown([&] { stream.FinishSaveM(1); }), 108); // no file
    stream.CloseM();
    stream.OpenM(path.c_str(), "w"); // not binary
    stream.OutputDM(&value);
    EXPECT_EQ(thrown([&] { stream.FinishSaveM(1); }), 108);
    EXPECT_EQ(thrown([&] { stream.OutputSM(nullptr, 3, 0); }), 108);
    EXPECT_EQ(thrown([&] { stream.OpenM(dir.path("no/such/file").c_str(), "wb"); }), 109);
    EXPECT_EQ(stream.TellM(), 0);
    if (std::filesystem::exists("/dev/full")) {
        stream.OpenM("/dev/full", "wb");
        stream.OutputDM(&value);
        EXPECT_EQ(thrown([&] { stream.FinishSaveM(1); }), 108);
        EXPECT_EQ(stream.TellM(), 4);
    }
}

TEST_F(CompressStreamTest, StreamIsUsedAgain) {
    TqCompressIOCL stream;
    for (int round = 0; round < 3; ++round) {
        stream.OpenM(path.c_str(), "wb");
        stream.OutputDM(&round);
        stream.FinishSaveM(round % 2);
        stream.OpenM(path.c_str(), "rb");
        EXPECT_EQ(readInt(stream), round);
        // Values behind those that were read go to memory; the file is not open for them.
        stream.OutputDM(&round);
        EXPECT_EQ(stream.TellM(), 8);
        EXPECT_EQ(thrown([&] { stream.FinishSaveM(1); }), 108);
    }
    stream.FinishSaveM(); // the operation of the base does nothing
}

} // namespace
