// Strings as items, their order, and the array of them.
#include "trunnion/containers/string_arr.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "trunnion/persistence/stream.h"

namespace {

using namespace std::string_literals;

TqStringCL stringOf(const std::string &bytes) {
    TqStringCL item(31);
    item.SetValueM(static_cast<int>(bytes.size()), bytes.data());
    return item;
}

TEST(TqString, TextIsStoredWithItsTerminatorAndRawBytesWithout) {
    TqStringCL text;
    EXPECT_EQ(text.IsAvailableM(), 30);
    char out[16] = "kept";
    EXPECT_EQ(text.GetStringM(out), 0);
    EXPECT_STREQ(out, "kept");
    EXPECT_EQ(static_cast<const char *>(text), nullptr);
    EXPECT_EQ(text.AddStringM("ab"), 1);
    EXPECT_EQ(text.GetLengthM(), 3);
    EXPECT_STREQ(text, "ab");
    EXPECT_EQ(text.GetStringM(out), 1);
    EXPECT_STREQ(out, "ab");
    const TqStringCL raw = stringOf("ab\0cd"s);
    int length = 0;
    raw.GetValueM(&length, out);
    EXPECT_EQ(std::string(out, 5), "ab\0cd"s);
    raw.GetStringM(out);
    EXPECT_STREQ(out, "ab");
    TqStringCL copy = raw;
    copy.AddStringM("x");
    copy.DelItemM();
    EXPECT_EQ(copy.IsAvailableM(), 32);
    EXPECT_EQ(copy.GetLengthM(), 2) << "the content of a deleted string stays";
    EXPECT_EQ(raw.GetLengthM(), 5) << "a copy is independent";
}

TEST(TqString, OrderIsThatOfUnsignedBytesAndThenOfLength) {
    const std::vector<std::string> ascending = {"",      "a", "a\0"s, "ab",
                                                "ab\0"s, "b", "\x80", "\xFF"};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t k = 0; k < ascending.size(); ++k) {
            const TqStringCL a = stringOf(ascending[i]);
            const TqStringCL b = stringOf(ascending[k]);
            EXPECT_EQ(a < b, i < k ? 1 : 0) << i << ' ' << k;
            EXPECT_EQ(a <= b, i <= k ? 1 : 0);
            EXPECT_EQ(a == b, i == k ? 1 : 0);
            EXPECT_EQ(a > b, i > k ? 1 : 0);
            EXPECT_EQ(a >= b, i >= k ? 1 : 0);
        }
    }
}

TEST(TqStringArr, AddsByContentAndFindsOverTheNumberOfLiveSlots) {
    TqStringArr list;
    EXPECT_EQ(list.AddByCompM("one"), 0);
    EXPECT_EQ(list.AddByCompM("two"), 1);
    EXPECT_EQ(list.AddByCompM("one"), 0);
    EXPECT_EQ(list.AddStringM(3, "one"), 2) << "without its terminator it is another string";
    EXPECT_EQ(list.GetBoundM(), 3);
    EXPECT_EQ(list.GetLengthM(), 4) << "the capacity";
    EXPECT_EQ(list.GetLengthM(2), 3);
    EXPECT_EQ(list.StrCmpM(1, 4, "two"), 1);
    EXPECT_EQ(list.StrCmpM(1, 3, "two"), 0);
    EXPECT_EQ(list.StrCmpM(3, 4, "two"), 0);
    list.DelItemM(0);
    EXPECT_EQ(list.FindStrM("one"), 0) << "a deleted string in reach";
    EXPECT_EQ(list.FindStrM("none"), -1);
    list.DelItemM(1);
    EXPECT_EQ(list.FindStrM("two"), -1) << "out of reach: one slot is live";
}

TEST(TqStringArr, ValuesMakeSlotsLiveAndGrowTheArray) {
    TqStringArr list;
    char out[32] = "x";
    int length = 9;
    list.GetValueM(0, &length, out);
    EXPECT_EQ(length, 0);
    EXPECT_STREQ(out, "");
    list.SetValueM(-1, 3, "abc");
    EXPECT_EQ(list.GetBoundM(), 0);
    list.SetValueM(6, 3, "abc");
    EXPECT_EQ(list.GetBoundM(), 7);
    EXPECT_EQ(list.GetAvailableNumM(), 1);
    list.SetValueM(2, 20, "a string on the heap");
    list.SetValueM(2, 4, "once");
    EXPECT_EQ(list.GetAvailableNumM(), 2);
    list.DelItemM(2);
    list.GetValueM(2, &length, out);
    EXPECT_EQ(length, 0);
    list.SetValueM(2, 5, "again");
    list.InsertItemM(list.getCurrentItemPrtConstM()[6], 0);
    list.GetValueM(3, &length, out);
    EXPECT_EQ(std::string(out, static_cast<std::size_t>(length)), "again")
        << "strings bear being moved";
    list.GetValueM(0, &length, out);
    EXPECT_EQ(std::string(out, static_cast<std::size_t>(length)), "abc");
}

TEST(TqStringArr, ListOnAStreamCarriesTagsAndCountOnly) {
    const test::TempDir dir;
    TqStringArr titles;
    titles.AddByCompM("a");
    titles.AddByCompM("b");
    TqIOCL stream;
    stream.OpenM(dir.path("titles").c_str(), "w");
    titles.FmOutputOzkLstM(&stream, "TITLES");
    stream.CloseM();
    EXPECT_EQ(test::readBytes(dir.path("titles")), "2, TITLES_LIST_BEGIN\n"
                                                   "0, INDEX_OF_TITLES_LIST\n"
                                                   "   31\n"
                                                   "1, INDEX_OF_TITLES_LIST\n"
                                                   "   31\n"
                                                   "TITLES_LIST_END\n");
    TqStringArr back;
    stream.OpenM(dir.path("titles").c_str(), "r");
    back.FmInputOzkLstM(&stream);
    EXPECT_EQ(back.GetAvailableNumM(), 2);
    EXPECT_EQ(back.GetLengthM(1), 0);
}

} // namespace
