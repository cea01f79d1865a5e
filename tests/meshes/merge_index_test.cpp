// Merging finds through an index what the plain scan finds, whatever happens to the list between
// merges and when memory is short.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/list_files.h"
#include "tests/support/random.h"
#include "tests/support/short_memory.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/node_arr.h"

namespace {

int scanForNode(const NodeArr &list, const NodeCL &node) {
    for (int i = 0; i < list.GetBoundM(); ++i) {
        const NodeCL &held = *list.GetItemPM(i);
        if (held.IsAvailableM() == TAG_AVAILABLE && held.CompareM(node) == 1) {
            return i;
        }
    }
    return list.GetBoundM();
}

int scanForNearest(const NodeArr &list, const float *point) {
    float best = SL_BIG;
    int nearest = SL_DELETED_INT;
    for (int i = 0; i < list.GetBoundM(); ++i) {
        const NodeCL &held = *list.GetItemPM(i);
        const float distance = slDistance3(held.GetPntPM(), point);
        if (held.IsAvailableM() == TAG_AVAILABLE && distance < best) {
            best = distance;
            nearest = i;
        }
    }
    return nearest;
}

// Points crowd about the corners of the index's cells, where the tolerance decides, near the origin
// and far away; some are no points at all.
NodeCL nodeNearCorner(test::Random &random) {
    float point[3];
    const float far = random.oneIn(8) ? 3e37F : 0.0F;
    for (float &coordinate : point) {
        const int corner = random.integer(-1, 1);
        const float offset = SL_ZERO * 0.25F * static_cast<float>(random.integer(-4, 4));
        coordinate = far + 64.0F * SL_ZERO * static_cast<float>(corner) + offset;
    }
    if (random.oneIn(50)) {
        point[random.integer(0, 2)] = random.oneIn(2) ? std::numeric_limits<float>::infinity()
                                                      : std::numeric_limits<float>::quiet_NaN();
    }
    NodeCL node(random.oneIn(20) ? TAG_UNUSED : TAG_AVAILABLE);
    node.SetPntM(point);
    return node;
}

TEST(MergeIndex, FindsTheNodeThatTheScanFinds) {
    test::Random random(3);
    const float quarterTurn[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (int round = 0; round < 40; ++round) {
        NodeArr list;
        NodeCL *writer = nullptr; // from an earlier call, as long as the list has that length
        int writerLength = 0;
        for (int step = 0; step < 500; ++step) {
            const int idx = random.integer(0, list.GetBoundM());
            switch (random.integer(0, 60)) {
            case 0:
                list.DelItemM(idx);
                break;
            case 1:
                list.InsertItemM(nodeNearCorner(random), idx);
                break;
            case 2:
                writer = list.getCurrentItemPrtM();
                writerLength = list.GetLengthM();
                break;
            case 3:
                list = NodeArr(list);
                writer = nullptr;
                break;
            case 4:
                list.PurgeMultiSamePntsToOneM(1);
                break;
            case 5:
                test::allocationsLeft = random.integer(0, 3);
                break;
            case 6:
                list.SetItemM(nodeNearCorner(random), idx);
                break;
            case 7:
                list.TransByMatrixM(quarterTurn);
                break;
            case 8:
                ASSERT_EQ(test::readInto(list, test::written(list, "NODE", true), true), 0);
                break;
            default:
                list.AddItemM(nodeNearCorner(random)); // also such as merging would not keep
                break;
            }
            writer = list.GetLengthM() == writerLength ? writer : nullptr;
            if (writer != nullptr && random.oneIn(4)) { // a point, or a tag that no count knows of
                writer[random.integer(0, writerLength - 1)] = nodeNearCorner(random);
            }
            const NodeCL node = nodeNearCorner(random);
            const int expected = scanForNode(list, node);
            int slot = -1;
            list.MergeNodeLstM(node, &slot);
            test::allocationsLeft = -1;
            ASSERT_EQ(slot, expected) << "round " << round << " step " << step;
        }
    }
}

// What the index adapts itself to: how far points lie apart, and in which order they come.
enum Scene { dense, loose, farApart, huge, denseThenSparse, sparseThenDense, mixed, repeated };
constexpr int sceneSize = 2000;

// Half the edge of the cube from which a scene draws its `number`th point.
float extentOf(Scene scene, int number, test::Random &random) {
    const bool isEarly = number < sceneSize / 8;
    switch (scene) {
    case dense:
        return 0.003F;
    case loose:
        return 1.0F;
    case farApart:
        return 1e5F;
    case huge:
        return 1e30F;
    case denseThenSparse:
        return isEarly ? 0.05F : 1e6F;
    case sparseThenDense:
        return isEarly ? 1e6F : 0.05F;
    case mixed:
        return std::pow(10.0F, static_cast<float>(random.integer(-5, 8)));
    case repeated:
        return isEarly || random.oneIn(20) ? 50.0F : 0.0F;
    }
    return 0.0F;
}

// Draws each point anew, or about as far from an earlier one as the tolerance reaches.
std::vector<NodeCL> nodesOf(Scene scene) {
    test::Random random(static_cast<std::uint32_t>(scene));
    std::vector<NodeCL> nodes;
    for (int number = 0; number < sceneSize; ++number) {
        float point[3];
        if (number == 0 || !random.oneIn(4)) {
            const float extent = extentOf(scene, number, random);
            for (float &coordinate : point) {
                coordinate = extent * random.real(-1.0F, 1.0F);
            }
        } else {
            const int earlier = random.oneIn(2) ? number - 1 : random.integer(0, number - 1);
            std::copy_n(nodes[static_cast<std::size_t>(earlier)].GetPntPM(), 3, point);
            for (float &coordinate : point) {
                coordinate += random.oneIn(3) ? 0.0F : SL_ZERO * random.real(-1.2F, 1.2F);
            }
        }
        nodes.emplace_back(TAG_AVAILABLE).SetPntM(point);
    }
    return nodes;
}

TEST(MergeIndex, FindsTheNodeInScenesOfAnyDensity) {
    for (int scene = dense; scene <= repeated; ++scene) {
        NodeArr list;
        for (const NodeCL &node : nodesOf(static_cast<Scene>(scene))) {
            if (list.GetBoundM() % 3 == 0) {
                list.AddItemM(node); // such as merging would not keep
                continue;
            }
            const int expected = scanForNode(list, node);
            int slot = -1;
            list.MergeNodeLstM(node, &slot);
            ASSERT_EQ(slot, expected) << "scene " << scene << " of " << list.GetBoundM();
        }
    }
}

// Nodes stand on a coarse lattice, so that many are equally far away, or in a crowd nearer to each
// other than a distance can tell.
TEST(MergeIndex, TheNearestNodeIsThatOfTheScan) {
    test::Random random(9);
    const auto latticeNode = [&random] {
        NodeCL node = nodeNearCorner(random);
        if (!random.oneIn(4)) {
            float point[3];
            for (float &coordinate : point) {
                coordinate = static_cast<float>(random.integer(-4, 4));
            }
            node.SetPntM(point);
        }
        return node;
    };
    for (int round = 0; round < 4; ++round) {
        NodeArr list;
        for (int step = 0; step < 1500; ++step) {
            const int idx = random.integer(0, list.GetBoundM());
            switch (random.integer(0, 600)) {
            case 0:
                list.InsertItemM(latticeNode(), idx);
                break;
            case 1:
                list.getCurrentItemPrtM()[0] = latticeNode();
                break;
            case 2:
                list = NodeArr(list);
                break;
            case 3:
                list.SetItemM(latticeNode(), idx);
                break;
            default:
                test::allocationsLeft = random.oneIn(30) ? random.integer(0, 4) : -1;
                break;
            }
            if (random.oneIn(3)) {
                list.DelItemM(idx);
            } else if (random.oneIn(4)) {
                for (int i = 0; i < 5; ++i) {
                    list.AddItemM(latticeNode());
                }
            }
            const NodeCL sought = latticeNode();
            NodeCL nearest;
            const int slot = list.GetNearestNodeM(nearest, sought.GetPntPM());
            test::allocationsLeft = -1;
            ASSERT_EQ(slot, scanForNearest(list, sought.GetPntPM())) << round << ' ' << step;
        }
    }
}

// Const searches may run at once, also the first ones, of which one builds the index.
TEST(MergeIndex, ThreadsFindTheNearestNodeTogether) {
    NodeArr list;
    for (int i = 0; i < 4096; ++i) {
        const int steps[3] = {i % 16, i / 16 % 16, i / 256};
        float point[3];
        std::copy_n(steps, 3, point);
        NodeCL node(31);
        node.SetPntM(point);
        list.AddItemM(node);
    }
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&list, &wrong, t] {
            for (int i = t; i < 4096; i += 7) {
                NodeCL nearest;
                wrong += list.GetNearestNodeM(nearest, list.GetItemPM(i)->GetPntPM()) != i ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(MergeIndex, AWritablePointerIsNeverOutrun) {
    NodeArr list;
    int slot;
    for (int i = 0; i < 100; ++i) {
        float point[3] = {static_cast<float>(i), 0, 0};
        NodeCL node(31);
        node.SetPntM(point);
        list.MergeNodeLstM(node, &slot);
    }
    NodeCL *nodes = list.getCurrentItemPrtM();
    float moved[3] = {5000, 0, 0};
    NodeCL node(31);
    node.SetPntM(moved);
    for (int i = 0; i < 10; ++i) { // merges that only find, while the host goes on writing
        nodes[90 - i].SetPntM(moved);
        list.MergeNodeLstM(node, &slot);
        ASSERT_EQ(slot, 90 - i);
    }
}

} // namespace
