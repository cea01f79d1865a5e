// Facet lists answer through their index what the plain scans answer, over long sequences of
// changes of every kind, while a host writes to the items and when memory is short.
#include <algorithm>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/facet_model.h"
#include "tests/support/list_files.h"
#include "tests/support/random.h"
#include "tests/support/short_memory.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/meshes/quad_arr.h"
#include "trunnion/meshes/triangle_arr.h"

namespace {

float normal[3] = {0, 0, 1};

// A list and its model, changed and asked together. The node numbers are few, so that facets share
// nodes and edges, duplicate each other and degenerate; some are negative or huge.
template <class List>
class Pair {
public:
    static constexpr bool isTriangles = std::is_same_v<List, TriangleArr>;
    using Item = std::conditional_t<isTriangles, TriangleCL, QuadCL>;
    using Model = test::FacetModel<Item::cornerCount>;
    using Nodes = typename Model::Nodes;

    Pair(test::Random &source, int numbers, int scale)
        : random(source), nodeNumbers(numbers), nodeScale(scale) {}

    void change() {
        const Nodes nodes = anyNodes();
        const int slot = random.integer(0, model.bound());
        const bool isHeld = slot < model.bound();
        allocationsLeft = random.oneIn(60) ? random.integer(0, 6) : -1;
        switch (random.integer(0, 24)) {
        case 0:
            onList([&] { list.ChangeNodeIdxM(nodes[0], nodes[1]); });
            model.change(nodes[0], nodes[1], isTriangles);
            break;
        case 1:
        case 2:
            onList([&] { list.DelItemM(slot); });
            if (isHeld) {
                model.del(slot);
            }
            break;
        case 3:
        case 4: {
            const int target = random.oneIn(20) ? slot + 3 : slot;
            const char tag = random.oneIn(5) ? TAG_UNUSED : TAG_AVAILABLE;
            onList([&] { list.SetItemM(itemOf(nodes, tag), target); });
            for (int between = model.bound(); between < target; ++between) {
                model.slots.push_back(slotOf(*list.GetItemPM(between))); // whatever was there
            }
            model.set({nodes, tag}, target);
            break;
        }
        case 5:
            changeWhole(nodes, slot);
            break;
        case 6:
            writeThroughPointer(nodes);
            break;
        case 7:
            if constexpr (isTriangles) {
                onList([&] { list.DelTriangleByVertexM(nodes[0]); });
                model.delByVertex(nodes[0]);
            }
            break;
        case 8:
        case 9:
        case 10:
            onList([&] { list.AddItemM(itemOf(nodes, TAG_AVAILABLE)); });
            model.add(nodes);
            break;
        default:
            if constexpr (isTriangles) {
                int result = -1;
                onList([&] { result = list.MergeTriangleLstM(itemOf(nodes, TAG_AVAILABLE)); });
                ASSERT_EQ(result, model.merge(nodes));
            }
        }
        if (list.GetLengthM() != writerLength) {
            writer = nullptr; // the list has grown or was cleared
        }
    }

    // So many facets that the lists of few nodes become long.
    void fill() {
        for (int i = 0; i < 150; ++i) {
            const Nodes nodes = anyNodes();
            list.AddItemM(itemOf(nodes, TAG_AVAILABLE));
            model.add(nodes);
        }
        if (list.GetLengthM() != writerLength) {
            writer = nullptr;
        }
    }

    void expectSame() const {
        ASSERT_EQ(list.GetBoundM(), model.bound());
        ASSERT_EQ(list.GetAvailableNumM(), model.available);
        for (int k = 0; k < model.bound(); ++k) {
            ASSERT_EQ(slotOf(*list.GetItemPM(k)), model.slots[k]) << "slot " << k;
        }
    }

    void expectAnswers() {
        const Nodes nodes = anyNodes();
        allocationsLeft = random.oneIn(60) ? random.integer(0, 6) : -1;
        int slot = -5;
        int expectedSlot = -5;
        int count = -5;
        onList([&] { count = list.JudgeBoundM(nodes[0], nodes[1], &slot); });
        ASSERT_EQ(count, model.judge(nodes[0], nodes[1], &expectedSlot));
        ASSERT_EQ(slot, expectedSlot);
        ASSERT_EQ(list.GetOneNeighbourPntM(nodes[0]), model.neighbour(nodes[0]));
        if constexpr (isTriangles) {
            expectTriangles(nodes);
        }
    }

private:
    int anyNode() {
        if (random.oneIn(40)) {
            return random.oneIn(2) ? SL_DELETED_INT : 2147483647 - random.integer(0, 1);
        }
        return random.integer(-2, nodeNumbers) * nodeScale;
    }
    Nodes anyNodes() {
        Nodes nodes;
        for (int &node : nodes) {
            node = anyNode();
        }
        if (model.bound() > 0 && random.oneIn(3)) { // those of a facet, in another order
            nodes = model.slots[random.integer(0, model.bound() - 1)].nodes;
            std::rotate(nodes.begin(), nodes.begin() + random.integer(0, 2), nodes.end());
            std::swap(nodes[0], nodes[random.integer(0, 1)]);
        }
        return nodes;
    }
    // Works on the list while the heap has nothing to give, now and then.
    template <class Action>
    void onList(Action action) {
        test::allocationsLeft = allocationsLeft;
        action();
        test::allocationsLeft = -1;
    }
    static Item itemOf(Nodes nodes, char tag) {
        Item item(tag);
        if constexpr (isTriangles) {
            item.SetTriangleM(nodes.data());
        } else {
            item.SetQuadM(nodes.data());
        }
        return item;
    }
    static typename Model::Slot slotOf(const Item &item) {
        typename Model::Slot slot{{}, item.IsAvailableM()};
        std::copy_n(item.GetNodeIdxPM(), Item::cornerCount, slot.nodes.begin());
        return slot;
    }

    // Changes of the whole list, and of what it holds beside the nodes.
    void changeWhole(Nodes nodes, int slot) {
        switch (random.integer(0, 9)) {
        case 0:
            list = List(list);
            writer = nullptr;
            break;
        case 1: {
            const std::string bytes = test::written(list, "FACET", true);
            ASSERT_EQ(test::readInto(list, bytes, true), 0);
            if (model.bound() > 0) { // an empty list changes nothing
                model.countAgain();
            }
            break;
        }
        case 2: {
            const float quarterTurn[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
            list.TransByMatrixM(quarterTurn);
            list.NegativeNormalVectM();
            break;
        }
        case 3: {
            std::vector<int> map;
            IntArr indexes;
            for (int i = 0; i < 12; ++i) {
                map.push_back(random.oneIn(20) ? 0 : i);
                indexes.AddItemM(map.back());
            }
            const int oldBound = model.bound();
            list.ResetNodeIdxM(indexes);
            model.reset(map);
            ASSERT_TRUE(oldBound <= 4 || model.bound() > 4 || list.GetLengthM() == 4);
            break;
        }
        case 4:
            if (random.oneIn(5)) {
                list.DelAllM();
                model = Model();
                writer = nullptr;
            }
            break;
        case 5:
            list.AddSizeM(random.integer(0, 3));
            break;
        case 6: { // as a plain item array, behind the back of the facet list
            ItemArr<Item> &plain = list;
            plain.SetItemM(itemOf(nodes, TAG_AVAILABLE), slot);
            model.set({nodes, TAG_AVAILABLE}, slot);
            plain.DelItemM(model.bound() - 1);
            model.del(model.bound() - 1);
            break;
        }
        case 7:
            if constexpr (isTriangles) {
                list.PurgeDeletedTrianglesM();
                model.purge();
                writer = nullptr;
            }
            break;
        default:
            if constexpr (isTriangles) {
                list.ModifyM(slot, nodes.data(), normal);
            } else {
                list.ModifyM(slot, nodes.data());
            }
            model.insert(nodes, slot);
        }
    }

    // Through a new pointer or one from an earlier call: nodes, and tags that no count knows of.
    void writeThroughPointer(const Nodes &nodes) {
        if (writer == nullptr) {
            writer = list.getCurrentItemPrtM();
            writerLength = list.GetLengthM();
        }
        if (model.bound() > 0) {
            const int slot = random.integer(0, model.bound() - 1);
            const char tag = random.oneIn(2) ? TAG_DELETED : TAG_AVAILABLE;
            writer[slot] = itemOf(nodes, tag);
            model.slots[slot] = {nodes, tag};
        }
    }

    void expectTriangles(const Nodes &nodes) {
        int pair[2] = {nodes[0], -5};
        int expectedPair[2] = {nodes[0], -5};
        int slot = -5;
        int expectedSlot = -5;
        ASSERT_EQ(list.GetOneBoundWithStIdxM(nodes[1], pair, &slot),
                  model.step(nodes[1], expectedPair, &expectedSlot));
        ASSERT_EQ(pair[1], expectedPair[1]);
        ASSERT_EQ(slot, expectedSlot);

        ASSERT_EQ(list.FindTriangleM(nodes.data()), model.highestWithin(nodes));
        const int lowest = model.lowestEqual(nodes);
        slot = -1;
        ASSERT_EQ(list.FindTriangleM(nodes.data(), &slot), lowest >= 0 ? 1 : 0);
        ASSERT_EQ(slot, lowest);

        Int2DArr found;
        list.FindTriangleM(nodes[0], &found);
        const auto expected = model.at(nodes[0]);
        ASSERT_EQ(found.GetBoundM(), static_cast<int>(expected.size()));
        for (int i = 0; i < found.GetBoundM(); ++i) {
            ASSERT_EQ(found.GetItemPM(i)[0], expected[i].first);
            ASSERT_EQ(found.GetItemPM(i)[1], expected[i].second);
        }
    }

    test::Random &random;
    const int nodeNumbers;
    const int nodeScale;
    List list;
    Model model;
    Item *writer = nullptr;
    int writerLength = 0;
    int allocationsLeft = -1; // of the operations to come
};

template <class List>
class FacetIndex : public testing::Test {};

using Lists = testing::Types<TriangleArr, QuadArr>;
TYPED_TEST_SUITE(FacetIndex, Lists, );

TYPED_TEST(FacetIndex, AnswersAsThePlainScansDo) {
    test::Random random(54);
    // Node numbers: so few that their lists are long, some, and far apart. Lists that are asked
    // seldom have no index but that of merging.
    const struct {
        int rounds, steps, numbers, scale, stepsToAsk;
    } kinds[] = {{6, 1200, 2, 1, 1},         {10, 1200, 9, 1, 1},  {10, 600, 40, 1, 1},
                 {4, 600, 20, 65000003, 1},  {6, 1200, 6, 1, 500}, {6, 1200, 40, 1, 500},
                 {4, 600, 20, 65000003, 500}};
    for (const auto &kind : kinds) {
        for (int round = 0; round < kind.rounds; ++round) {
            Pair<TypeParam> pair(random, kind.numbers, kind.scale);
            for (int step = 0; step < kind.steps; ++step) {
                if (round % 2 == 0 && step % 300 == 0) {
                    pair.fill();
                }
                ASSERT_NO_FATAL_FAILURE(pair.change()) << round << " step " << step;
                ASSERT_NO_FATAL_FAILURE(pair.expectSame()) << round << " step " << step;
                if (step % kind.stepsToAsk == 0) {
                    ASSERT_NO_FATAL_FAILURE(pair.expectAnswers()) << round << " step " << step;
                }
            }
        }
    }
}

// The first of them finds the list without an index and builds it for all.
TEST(FacetIndexThreads, SearchOneListAtOnce) {
    constexpr int edges = 3000;
    TriangleArr list;
    for (int i = 0; i < edges; ++i) { // a strip: each edge (i, i + 2) is a boundary
        const int nodes[3] = {i, i + 1, i + 2};
        list.AddTriangleM(nodes, normal);
    }
    const TriangleArr &shared = list;
    std::vector<int> counts(4);
    std::vector<std::thread> threads;
    threads.reserve(counts.size());
    for (int &count : counts) {
        threads.emplace_back([&count, &shared] {
            int slot;
            for (int i = 0; i < edges; ++i) {
                count += shared.JudgeBoundM(i, i + 2, &slot) == 1 && slot == i ? 1 : 0;
                count += shared.GetOneNeighbourPntM(i) == (i < 2 ? i + 1 : i - 2) ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(counts, std::vector<int>(4, 2 * edges));
}

} // namespace
