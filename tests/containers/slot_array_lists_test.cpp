// Slot arrays on streams: the text and binary form byte for byte, and what damaged files lead to.
#include "trunnion/containers/char_arr.h"
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/persistence/list_tags.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/list_files.h"
#include "tests/support/thrown.h"

namespace {

using test::raw;
using test::readInto;
using test::written;

IntArr angles() {
    IntArr array;
    array.AddItemM(5);
    array.AddItemM(6);
    array.AddItemM(7);
    array.DelItemM(1);
    return array;
}

TEST(SlotLists, TagsAreBuiltFromTheName) {
    char out[100];
    EXPECT_EQ(slGetArrBeginStr(out, "A"), 1);
    EXPECT_STREQ(out, "A_LIST_BEGIN");
    slGetArrIndexStr(out, "A");
    EXPECT_STREQ(out, "INDEX_OF_A_LIST");
    slGetArrEndStr(out, "A");
    EXPECT_STREQ(out, "A_LIST_END");
}

TEST(SlotLists, TextFormsByteForByte) {
    EXPECT_EQ(written(angles(), "ANGLES", false, 0), "         3, ANGLES_LIST_BEGIN\n"
                                                     "         0, INDEX_OF_ANGLES_LIST\n"
                                                     "         5\n"
                                                     "         1, INDEX_OF_ANGLES_LIST\n"
                                                     "-2147483647\n"
                                                     "         2, INDEX_OF_ANGLES_LIST\n"
                                                     "         7\n"
                                                     "ANGLES_LIST_END\n");
    EXPECT_EQ(written(IntArr(), "A", false), "         0, A_LIST_BEGIN\nA_LIST_END\n");
    EXPECT_EQ(written(RealArr(), "R", false), "         0, R_LIST_BEGIN\n         0\nR_LIST_END\n");
    CharArr flags;
    flags.SetItemM(1, 0);
    EXPECT_EQ(written(flags, "FLAGS", false), "         1, FLAGS_LIST_BEGIN\n"
                                              "         1\n"
                                              "    1\n"
                                              "FLAGS_LIST_END\n");
    Int3DArr triples;
    const int triple[3] = {1, -2, 3};
    triples.AddItemM(triple);
    EXPECT_EQ(written(triples, "T", false), "         1, T_LIST_BEGIN\n"
                                            "         0, INDEX_OF_T_LIST\n"
                                            "         1,         -2,          3\n"
                                            "T_LIST_END\n");
    Point2DArr points;
    const float point[2] = {0.5F, -1.0F};
    points.AddItemM(point);
    EXPECT_EQ(written(points, "P", false), "         1, P_LIST_BEGIN\n"
                                           "         0, INDEX_OF_P_LIST\n"
                                           "  5.00000000e-01,  -1.00000000e+00\n"
                                           "P_LIST_END\n");
}

TEST(SlotLists, BinaryFormIsBothCountsAndTheRawSlots) {
    EXPECT_EQ(written(angles(), "ANGLES", true), raw(3, 2, 5, SL_DELETED_INT, 7));
    EXPECT_EQ(written(RealArr(), "R", true), raw(0, 0));
    CharArr bytes;
    bytes.AddItemM('x');
    EXPECT_EQ(written(bytes, "B", true), raw(1, 1) + "x");
    Point3DArr points;
    const float point[3] = {1, 2, 3};
    points.AddItemM(point);
    EXPECT_EQ(written(points, "P", true), raw(1, 1, 1.0F, 2.0F, 3.0F));
}

// The live slots of an array, each behind its number.
template <class Array, class Value>
std::vector<double> liveSlots(const Array &array) {
    std::vector<double> all;
    Value slot[4] = {};
    int idx;
    for (int r = array.GetFirstM(slot, &idx); r != -1; r = array.GetNextM(slot, &idx, idx)) {
        all.push_back(idx);
        all.insert(all.end(), slot, slot + 4);
    }
    return all;
}

// An array with a hole in the middle, and one with holes at its end as well.
template <class Array, class Value>
void expectRoundTrips(Array (*make)()) {
    for (const bool deletedEnd : {false, true}) {
        Array array = make();
        array.DelItemM(1);
        if (deletedEnd) {
            array.DelItemM(array.GetBoundM() - 2);
            array.DelItemM(array.GetBoundM() - 1);
        }
        for (const bool binary : {false, true}) {
            const std::string bytes = written(array, "NAME", binary);
            Array back;
            ASSERT_EQ(readInto(back, bytes, binary), 0);
            EXPECT_EQ(back.GetAvailableNumM(), array.GetAvailableNumM());
            EXPECT_EQ((liveSlots<Array, Value>(back)), (liveSlots<Array, Value>(array)));
            // A text cut inside its last number is still a list: the end tag carries no data.
            const std::size_t lastLine =
                binary ? bytes.size() : bytes.rfind('\n', bytes.size() - 16);
            const std::size_t lastNumber =
                binary ? bytes.size() : bytes.find_first_not_of(" \n", lastLine);
            for (std::size_t length = 0; length < bytes.size() && !deletedEnd; ++length) {
                Array cut;
                const int code = readInto(cut, bytes.substr(0, length), binary);
                EXPECT_TRUE(code == 107 || (code == 0 && length > lastNumber))
                    << code << " at " << length << " of " << bytes.size();
            }
        }
    }
}

template <class Array, int width, class Value>
Array filled() {
    Array array;
    for (int i = 0; i < 5; ++i) {
        Value slot[4];
        for (int v = 0; v < 4; ++v) {
            slot[v] = static_cast<Value>(10 * i + v + 1);
        }
        if constexpr (width == 1) {
            array.AddItemM(slot[0]);
        } else {
            array.AddItemM(slot);
        }
    }
    return array;
}

TEST(SlotLists, EveryClassComesBackAndEveryPrefixIsRefused) {
    expectRoundTrips<IntArr, int>(filled<IntArr, 1, int>);
    expectRoundTrips<RealArr, float>(filled<RealArr, 1, float>);
    expectRoundTrips<CharArr, char>(filled<CharArr, 1, char>);
    expectRoundTrips<Int2DArr, int>(filled<Int2DArr, 2, int>);
    expectRoundTrips<Int3DArr, int>(filled<Int3DArr, 3, int>);
    expectRoundTrips<Int4DArr, int>(filled<Int4DArr, 4, int>);
    expectRoundTrips<Point2DArr, float>(filled<Point2DArr, 2, float>);
    expectRoundTrips<Point3DArr, float>(filled<Point3DArr, 3, float>);
}

TEST(SlotLists, DeletedSlotsAtTheEndCountInTheBinaryFormOnly) {
    IntArr array = angles();
    array.SetItemM(8, 3);
    array.DelItemM(2);
    array.DelItemM(3);
    IntArr text;
    readInto(text, written(array, "A", false), false);
    EXPECT_EQ(text.GetBoundM(), 1);
    IntArr binary;
    readInto(binary, written(array, "A", true), true);
    EXPECT_EQ(binary.GetBoundM(), 3);
    EXPECT_EQ(binary.GetAvailableNumM(), 1);
}

TEST(SlotLists, CountsThatTheFileCannotHoldAreRefusedBeforeMemoryIsTaken) {
    const std::string hostile[] = {raw(2000000000, 5, 1, 2, 3), raw(-1, 0), raw(3, -7, 1, 2, 3),
                                   raw(4, 4, 1, 2, 3)};
    for (const std::string &bytes : hostile) {
        IntArr array;
        array.AddItemM(42);
        EXPECT_EQ(readInto(array, bytes, true), 107);
        EXPECT_EQ(array.GetBoundM(), 1);
        EXPECT_EQ(array.GetLengthM(), 4);
    }
    const char *texts[] = {"2000000000, X\n0, Y\n1\nE\n", "1, X\n1999999999, Y\n1\nE\n",
                           "1, X\n-4, Y\n1\nE\n", "-3, X\nE\n", "nothing"};
    for (const char *text : texts) {
        Int4DArr wide;
        EXPECT_EQ(readInto(wide, text, false), 107) << text;
        IntArr array;
        EXPECT_EQ(readInto(array, text, false), 107) << text;
        EXPECT_EQ(array.GetLengthM(), 4);
        RealArr plain;
        readInto(plain, text, false);
        EXPECT_LE(plain.GetLengthM(), 10);
    }
}

TEST(SlotLists, ALiveCountThatIsDamagedCostsLittleMemoryLater) {
    CharArr bytes;
    CharArr imported;
    EXPECT_EQ(readInto(bytes, raw(1, 2147483647) + "x", true), 0);
    EXPECT_EQ(imported.ImportArrM(bytes), 2147483647);
    EXPECT_EQ(imported.GetBoundM(), 1);
    EXPECT_LE(imported.GetLengthM(), 20000000);
}

TEST(SlotLists, TagsAreNeverComparedWhateverTheirLength) {
    const std::string tag(5000, 'x');
    IntArr array;
    EXPECT_EQ(readInto(array, "1, " + tag + "\r\n0, wrong\r\n7\r\n" + tag + "\r\n", false), 0);
    EXPECT_EQ(*array.GetItemPM(0), 7);
}

TEST(SlotLists, SlotsMayBeLeftOutOfATextAndStandInAnyOrder) {
    const std::string sparse = "3, X\n9, Y\n7\n-1, Y\n-2147483647\n2, Y\n5\nE\n";
    IntArr array;
    EXPECT_EQ(readInto(array, sparse, false), 0);
    const test::TempDir dir;
    test::writeBytes(dir.path("list"), sparse);
    std::FILE *file = std::fopen(dir.path("list").c_str(), "rb");
    IntArr fromFile;
    fromFile.FmInputOzkLstM(file);
    std::fclose(file);
    for (const IntArr &read : {array, fromFile}) {
        EXPECT_EQ(read.GetBoundM(), 10);
        EXPECT_EQ((liveSlots<IntArr, int>(read)),
                  (std::vector<double>{2, 5, 0, 0, 0, 9, 7, 0, 0, 0}));
    }
}

// A stream of a host, which has its values from elsewhere than a file.
struct HostStream : TqIOCL {
    std::vector<int> numbers;
    int words = 0;

    int InputDM(int *value0, int *, int *, int *, int *, int *, int *, int *, int *) override {
        *value0 = numbers.front();
        numbers.erase(numbers.begin());
        return 1;
    }
    int InputSM(char *text, int length, int) override {
        ++words;
        if (GetIoTypeM() == 1) {
            std::fill_n(text, length / 2, '\0');
            throw 107;
        }
        *text = '\0';
        return 1;
    }
    int GetIoTypeM() const override { return isBinary ? 1 : TqIOCL::GetIoTypeM(); }
    bool isBinary = false;
};

TEST(SlotLists, AListThatBreaksOffHoldsWhatWasReadSoFar) {
    constexpr int count = 100000;
    HostStream stream;
    stream.isBinary = true;
    stream.numbers = {count, count};
    IntArr array;
    EXPECT_EQ(test::thrown([&] { array.FmInputOzkLstM(&stream); }), 107);
    EXPECT_EQ(stream.words, 1) << "the slots in one call";
    EXPECT_EQ(array.GetBoundM(), count);
    EXPECT_EQ(array.GetAvailableNumM(-1), count / 2);
    EXPECT_EQ(*array.GetItemPM(count - 1), SL_DELETED_INT);
}

TEST(SlotLists, AStreamWithoutAFileIsReadThroughItsOwnOperations) {
    HostStream stream;
    stream.numbers = {2, 0, 5, 1, 7};
    IntArr array;
    array.FmInputOzkLstM(&stream);
    EXPECT_EQ(array.GetBoundM(), 2);
    EXPECT_EQ(*array.GetItemPM(1), 7);
    EXPECT_EQ(stream.words, 1) << "the end line";
}

TEST(SlotLists, ShorterListOverALongerArrayReplacesTheCounts) {
    RealArr array = filled<RealArr, 1, float>();
    RealArr shorter;
    shorter.AddItemM(3.5F);
    EXPECT_EQ(readInto(array, written(shorter, "R", false), false), 0);
    EXPECT_EQ(array.GetBoundM(), 1);
    array.AddItemM(1.0F);
    EXPECT_EQ(array.GetAvailableNumM(), 2);
}

TEST(SlotLists, IntArrReadsItsTextFormFromAPlainFile) {
    const test::TempDir dir;
    const auto read = [&dir](const std::string &text) {
        test::writeBytes(dir.path("list"), text);
        std::FILE *file = std::fopen(dir.path("list").c_str(), "rb");
        IntArr array;
        array.FmInputOzkLstM(file);
        std::fclose(file);
        return array;
    };
    const std::string text = written(angles(), "ANGLES", false);
    const IntArr array = read(text);
    EXPECT_EQ(array.GetBoundM(), 3);
    EXPECT_EQ(array.GetAvailableNumM(), 2);
    EXPECT_EQ(*array.GetItemPM(2), 7);
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_LE(read(text.substr(0, length)).GetBoundM(), 3);
    }
    EXPECT_EQ(read("2000000000, X\n0, Y\n1\n").GetLengthM(), 4);
    EXPECT_EQ(read("1, X\n1999999999, Y\n1\n").GetBoundM(), 0);
}

} // namespace
