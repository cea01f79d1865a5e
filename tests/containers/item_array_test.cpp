// The item array against a plain model, with items that own memory.
#include "trunnion/containers/item_array.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/list_files.h"
#include "tests/support/random.h"
#include "trunnion/containers/detail/item_array_impl.h"
#include "trunnion/containers/slot_array.h"

namespace {

// An item whose number stands in memory of its own, so that a lost or doubled item shows.
class Item : public TqBaseCL {
public:
    static constexpr int recordBytes = 5;

    Item() = default;
    Item(char tag, int number) : TqBaseCL(tag) {
        for (int i = 0; i < 6; ++i) {
            content.AddItemM(number);
        }
    }
    Item(const Item &) = default;
    Item &operator=(const Item &) = default;
    ~Item() override = default;

    void DelItemM() { TqBaseCL::DelItemM(); }
    int number() const {
        int value = 0;
        content.GetItemM(&value, 5);
        return content.GetBoundM() == 0 ? 0 : value;
    }
    void FmInputOzkFileM(TqIOCL *stream) override {
        TqBaseCL::FmInputOzkFileM(stream);
        int value = 0;
        stream->InputDM(&value);
        *this = Item(deleteTag, value);
    }
    void FmOutputOzkFileM(TqIOCL *stream) const override {
        TqBaseCL::FmOutputOzkFileM(stream);
        const int value = number();
        stream->OutputDM(&value);
    }

private:
    IntArr content;
};

class Items : public ItemArr<Item> {
public:
    bool mayBeWritten() const { return writerMayLive; }
    std::uint64_t changes() const { return changeCount; }
    using ItemArr<Item>::closeGapsOrMoveInline;
};

// What the array is said to hold: two storages, three counts.
struct Model {
    struct Slot {
        int tag = TAG_UNUSED;
        int number = 0;
        bool operator==(const Slot &) const = default;
        bool isLive() const { return tag == TAG_AVAILABLE; }
        void del() { tag = isLive() ? TAG_DELETED : tag; }
    };
    std::vector<Slot> inlineSlots = std::vector<Slot>(4);
    std::vector<Slot> heap;
    int bound = 0;
    int available = 0;

    std::vector<Slot> &slots() { return heap.empty() ? inlineSlots : heap; }
    int capacity() { return static_cast<int>(slots().size()); }
    void grow(int n) {
        if (n > 0) {
            heap = slots();
            heap.resize(heap.size() + n);
        }
    }
    void set(Slot item, int idx) {
        if (idx >= capacity()) {
            grow(std::max(capacity(), idx + 1 - capacity()));
        }
        Slot &slot = slots()[idx];
        bound = std::max(bound, idx + 1);
        available += item.isLive() && !slot.isLive();
        slot = item;
    }
    void insert(Slot item, int idx) {
        if (idx >= bound) {
            set(item, idx);
            return;
        }
        if (bound == capacity()) {
            grow(10);
        }
        slots().erase(slots().begin() + bound);
        slots().insert(slots().begin() + idx, item);
        ++bound;
        available += item.isLive();
    }
    void del(int idx) {
        if (idx < bound) {
            available -= slots()[idx].isLive();
            slots()[idx].del();
            bound -= idx == bound - 1;
        }
    }
    void delAll() {
        heap.clear();
        for (Slot &slot : inlineSlots) {
            slot.del();
        }
        bound = available = 0;
    }
    void assign(Model other) {
        delAll();
        if (!other.heap.empty()) {
            heap.resize(other.heap.size() + 4);
        }
        std::copy_n(other.slots().begin(), other.bound, slots().begin());
        bound = other.bound;
        available = other.available;
    }
    Model copy() {
        Model copied;
        copied.assign(*this);
        return copied;
    }
    void closeGaps() {
        const int oldBound = bound;
        int kept = 0;
        for (int i = 0; i < bound; ++i) {
            if (slots()[i].isLive()) {
                const Slot moved = slots()[i];
                slots()[i].del();
                slots()[kept++] = moved;
            }
        }
        bound = kept;
        if (oldBound > 4 && bound <= 4) {
            std::copy_n(heap.begin(), 4, inlineSlots.begin());
            heap.clear();
        }
    }
};

void expectEqual(const Items &array, Model &model) {
    ASSERT_EQ(array.GetLengthM(), model.capacity());
    ASSERT_EQ(array.GetBoundM(), model.bound);
    ASSERT_EQ(array.GetAvailableNumM(), model.available);
    for (int i = 0; i < model.capacity(); ++i) {
        const Item &item = array.getCurrentItemPrtConstM()[i];
        ASSERT_EQ(item.IsAvailableM(), model.slots()[i].tag) << i;
        ASSERT_EQ(item.number(), model.slots()[i].number) << i;
        ASSERT_EQ(array.GetItemPM(i) != nullptr, i < model.bound) << i;
    }
    ASSERT_EQ(array.GetItemPM(-1), nullptr);
}

using test::readInto;
using test::written;

TEST(ItemArr, EveryOperationAgreesWithThePlainModel) {
    test::Random random(20);
    for (int round = 0; round < 150; ++round) {
        Items array;
        Model model;
        for (int step = 0; step < 40; ++step) {
            const char tag = random.oneIn(6) ? TAG_DELETED : TAG_AVAILABLE;
            const int number = random.integer(1, 1000);
            const Item item(tag, number);
            const int idx = random.integer(0, model.bound + (random.oneIn(9) ? 9 : 0));
            switch (random.integer(0, 9)) {
            case 0:
                array.SetItemM(item, idx);
                model.set({tag, number}, idx);
                break;
            case 1:
                array.InsertItemM(item, idx);
                model.insert({tag, number}, idx);
                break;
            case 2:
                array.DelItemM(idx);
                model.del(idx);
                break;
            case 3: // a copy of a copy: the capacity rises by 8
                array = Items(array);
                model.assign(model.copy());
                break;
            case 4:
                if (random.oneIn(4)) {
                    array.DelAllM();
                    model.delAll();
                }
                break;
            case 5:
                array.AddSizeM(idx - 2);
                model.grow(idx - 2);
                break;
            case 6:
                array.closeGapsOrMoveInline();
                model.closeGaps();
                break;
            default:
                ASSERT_EQ(array.AddItemM(item), model.bound);
                model.set({tag, number}, model.bound);
            }
            ASSERT_NO_FATAL_FAILURE(expectEqual(array, model)) << "round " << round;
        }
    }
}

TEST(ItemArr, TakesItemsOfItselfAndIgnoresNegativeSlots) {
    Items array;
    for (int i = 0; i < 300; ++i) {
        array.AddItemM(i == 0 ? Item(31, 7) : *array.GetItemPM(0));
    }
    array.InsertItemM(*array.GetItemPM(299), 0);
    array.SetItemM(Item(31, 1), -1);
    array.InsertItemM(Item(31, 1), -1);
    array.DelItemM(-1);
    array = static_cast<const Items &>(array);
    EXPECT_EQ(array.GetAvailableNumM(), 301);
    for (int i = 0; i < 301; ++i) {
        EXPECT_EQ(array.GetItemPM(i)->number(), 7);
    }
}

TEST(ItemArr, MoreSlotsThanAnIntCanNumberRaiseTheFrameworksException) {
    Items array;
    array.AddItemM(Item(31, 5));
    EXPECT_THROW(array.SetItemM(Item(31, 6), INT_MAX), CMemoryException *);
    EXPECT_THROW(array.AddSizeM(INT_MAX), CMemoryException *);
    EXPECT_EQ(array.GetBoundM(), 1);
    EXPECT_EQ(array.GetLengthM(), 4);
    EXPECT_EQ(array.GetItemPM(0)->number(), 5);
}

TEST(ItemArr, AWritablePointerCountsAsAChangeUntilTheStorageMoves) {
    Items array;
    const std::uint64_t before = array.changes();
    array.getCurrentItemPrtM();
    EXPECT_GT(array.changes(), before);
    EXPECT_TRUE(array.mayBeWritten());
    array.AddItemM(Item(31, 1));
    EXPECT_TRUE(array.mayBeWritten());
    array.AddSizeM(1);
    EXPECT_FALSE(array.mayBeWritten());
    array.getCurrentItemPrtM();
    array.DelAllM();
    EXPECT_FALSE(array.mayBeWritten());
}

TEST(ItemArr, AListReplacesWhatIsThereAndKeepsTheBlock) {
    for (const bool binary : {false, true}) {
        Items list;
        for (int i = 0; i < 5; ++i) {
            list.AddItemM(Item(31, i + 1));
        }
        list.DelItemM(1);
        Items read;
        for (int i = 0; i < 9; ++i) {
            read.AddItemM(Item(31, 100 + i));
        }
        readInto(read, written(list, "ITEMS", binary), binary);
        EXPECT_EQ(read.GetLengthM(), 16);
        EXPECT_EQ(read.GetBoundM(), 5);
        EXPECT_EQ(read.GetAvailableNumM(), 4);
        EXPECT_EQ(read.GetItemPM(1)->IsAvailableM(), TAG_DELETED);
        EXPECT_EQ(read.GetItemPM(4)->number(), 5);
        EXPECT_EQ(read.getCurrentItemPrtConstM()[7].IsAvailableM(), TAG_DELETED);

        Items fresh;
        readInto(fresh, written(list, "ITEMS", binary), binary);
        EXPECT_EQ(fresh.GetLengthM(), 5); // grown by what was missing, no more

        // An empty list leaves the array as it was.
        readInto(read, written(Items(), "ITEMS", binary), binary);
        EXPECT_EQ(read.GetAvailableNumM(), 4);
    }
}

struct DamagedList {
    const char *text;
    int thrown; // 0 for none
    int bound;
    int live;
};

// Over an array of one item.
const DamagedList damagedLists[] = {
    {"-3, X_LIST_BEGIN\nX_LIST_END\n", 0, 1, 1},
    {"2000000000, X_LIST_BEGIN\n0, I\n31\n1\n", 107, 1, 1},
    {"2, WRONG\n1, I\n31\n8\n0, I\n32\n9\nEND\n", 0, 2, 1},
    {"2, X\n0, I\n31\n8\n2, I\n31\n9\nEND\n", 107, 2, 1},
    {"2, X\n-1, I\n31\n8\n0, I\n31\n9\nEND\n", 107, 2, 0},
    {"2, X\n0, I\n31\n8\n0, I\n31\n9\nEND\n", 0, 2, 1},
    {"2, X\n0, I\n31\n8\n1, I\n31\nx\nEND\n", 107, 2, 1},
};

TEST(ItemArr, DamagedTextListsKeepTheCountsTrue) {
    for (const DamagedList &list : damagedLists) {
        Items array;
        array.AddItemM(Item(31, 1));
        EXPECT_EQ(readInto(array, list.text, false), list.thrown) << list.text;
        EXPECT_EQ(array.GetBoundM(), list.bound) << list.text;
        EXPECT_EQ(array.GetAvailableNumM(), list.live) << list.text;
    }
}

} // namespace
