// Markers, heap functions, and the tag of an item in memory and in a text file.
#include "trunnion/containers/item_base.h"

#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

struct Item : TqBaseCL {
    using TqBaseCL::DelItemM;
    using TqBaseCL::TqBaseCL;
};

TEST(ItemBase, MarkersHaveTheirBits) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(SL_DELETED_INT), 0x80000001U);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(SL_DELETED_REAL), 0xDD5E0B6BU);
    EXPECT_EQ(SL_DELETED_REAL, -1e18F);
    EXPECT_EQ(SL_LIVE_REAL_LIMIT, -9.999e17F);
}

TEST(ItemBase, HeapFunctionsKeepContentAndGiveNullWhenExhausted) {
    auto *block = static_cast<char *>(slMalloc(4));
    std::memcpy(block, "abc", 4);
    block = static_cast<char *>(slRealloc(block, 100000));
    EXPECT_STREQ(block, "abc");
    slFree(block);
    slFree(nullptr);
    EXPECT_EQ(tqErrorMessage(40), 0);
}

TEST(ItemBase, TagTravelsWithCopyAndAssignmentWhateverItIs) {
    Item item;
    EXPECT_EQ(item.IsAvailableM(), 30);
    Item live(31);
    EXPECT_EQ(live.IsAvailableM(), 31);
    live.DelItemM();
    const Item copy = live;
    item = copy;
    EXPECT_EQ(item.IsAvailableM(), 32);
    item.SetDeleteTagM(37);
    EXPECT_EQ(item.IsAvailableM(), 37);
}

TEST(ItemBase, TagLineInATextFile) {
    const test::TempDir dir;
    const std::string path = dir.path("tag.txt");
    std::FILE *file = std::fopen(path.c_str(), "wb");
    EXPECT_EQ(TqBaseCL(31).FmWriteOzkFileM(file), 1);
    std::fputs("   32 and more than five\r\nnone\n287\nend", file);
    std::fclose(file);
    EXPECT_EQ(test::readBytes(path).substr(0, 6), "   31\n");

    file = std::fopen(path.c_str(), "rb");
    TqBaseCL item;
    item.FmReadOzkFileM(file);
    EXPECT_EQ(item.IsAvailableM(), 31);
    EXPECT_EQ(std::ftell(file), 6) << "at the start of the next line";
    item.FmReadOzkFileM(file);
    EXPECT_EQ(item.IsAvailableM(), 32);
    EXPECT_EQ(item.FmReadOzkFileM(file), 1);
    EXPECT_EQ(item.IsAvailableM(), 32) << "a line without a number leaves the tag";
    item.FmReadOzkFileM(file);
    EXPECT_EQ(item.IsAvailableM(), 287 - 256) << "the low byte is taken";
    item.FmReadOzkFileM(file);
    EXPECT_EQ(item.FmReadOzkFileM(file), 1) << "also at the end of the file";
    std::fclose(file);
}

} // namespace
