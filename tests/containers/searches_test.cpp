// Searches and measures that are made fast find what the plain scan finds, whatever happens to the
// list in between and when memory is short.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/short_memory.h"
#include "trunnion/containers/detail/transform_points.h"
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/scalars.h"

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float noNumber = std::numeric_limits<float>::quiet_NaN();

TEST(Searches, AnIntegerIsFoundWhereTheScanFindsIt) {
    test::Random random(5);
    for (int round = 0; round < 30; ++round) {
        IntArr array;
        int *pointer = array.getCurrentItemPrtM();
        int pointerBlock = array.GetLengthM(); // the pointer lives as long as this is the capacity
        const auto anyValue = [&] {
            return random.oneIn(40) ? SL_DELETED_INT : random.integer(-99, 99);
        };
        for (int step = 0; step < 600; ++step) {
            const int slot = random.integer(0, std::max(0, array.GetBoundM() - 1));
            switch (random.integer(0, 90)) {
            case 0:
                array.DelItemM(slot);
                break;
            case 1:
                array.InsertItemM(anyValue(), slot);
                break;
            case 2:
                array[slot] = anyValue();
                break;
            case 3:
                array = IntArr(array);
                pointerBlock = -1;
                break;
            case 4:
                array.PurgeDeletedItemM();
                break;
            case 5:
                array.SetItemM(anyValue(), slot);
                break;
            case 6:
                pointer = array.getCurrentItemPrtM();
                pointerBlock = array.GetLengthM();
                break;
            case 7:
                array.ChangeNodeIdxM(anyValue(), anyValue());
                break;
            case 8:
                array.AddSizeM(random.integer(0, 3));
                break;
            case 9:
                array.ChangeArrangeM(slot, 0);
                pointerBlock = -1;
                break;
            case 10:
                test::allocationsLeft = random.integer(0, 2);
                break;
            case 11:
                array.DelAllVirtualM();
                break;
            default:
                array.AddItemM(anyValue());
                break;
            }
            if (array.GetLengthM() == pointerBlock && random.oneIn(3)) {
                pointer[slot] = anyValue();
            }
            const int value = anyValue();
            int expected;
            if (array.FindItemM(value, &expected) == 0) {
                expected = array.GetBoundM();
            }
            ASSERT_EQ(array.AddItemByCompare2M(value), expected) << round << ' ' << step;
            test::allocationsLeft = -1;
        }
    }
}

TEST(Searches, MergingManyIntegersIsNotQuadratic) {
    constexpr int count = 300000; // by scans this takes minutes
    IntArr other;
    for (int i = 0; i < 2 * count; ++i) {
        other.AddItemM(i % count * 7);
    }
    IntArr merged;
    merged.AddItemM(-1);
    merged.MergeByCompareM(other);
    EXPECT_EQ(merged.GetBoundM(), count + 1);
}

// Coordinates crowd where the tolerance decides; some are markers, some no numbers.
void nastyPoint(test::Random &random, float *point) {
    for (int axis = 0; axis < 3; ++axis) {
        const auto steps = static_cast<float>(random.integer(-8, 8));
        point[axis] = 0.0256F * static_cast<float>(random.integer(-1, 1)) + SL_ZERO * 0.25F * steps;
    }
    if (random.oneIn(60)) {
        const float odd[] = {infinity, -infinity, noNumber, SL_DELETED_REAL, 3e38F};
        point[random.integer(0, 2)] = odd[random.integer(0, 4)];
    }
}

int scanForPoint(const Point3DArr &points, const float *p) {
    for (int i = 0; i < points.GetBoundM(); ++i) {
        bool isSame = true;
        for (int axis = 0; axis < 3; ++axis) {
            const double difference = static_cast<double>(points.GetItemPM(i)[axis]) - p[axis];
            isSame = isSame && slFabs(difference) < SL_ZERO_D;
        }
        if (isSame) {
            return i;
        }
    }
    return points.GetBoundM();
}

TEST(Searches, APointIsFoundWhereTheScanFindsIt) {
    test::Random random(6);
    for (int round = 0; round < 30; ++round) {
        Point3DArr points;
        float *pointer = points.getCurrentItemPrtM();
        int pointerBlock = 4;
        float p[3];
        for (int step = 0; step < 600; ++step) {
            nastyPoint(random, p);
            const int slot = random.integer(0, std::max(0, points.GetBoundM() - 1));
            switch (random.integer(0, 90)) {
            case 0:
                points.DelItemM(slot);
                break;
            case 1:
                points.InsertItemM(p, slot);
                break;
            case 2:
                points.SetItemZValueM(slot, 0.0F);
                break;
            case 3:
                points = Point3DArr(points);
                pointerBlock = -1;
                break;
            case 4: {
                float m[16];
                slSetIdentity(m);
                m[12] = SL_ZERO;
                points.TransByMatrixM(m, 0);
                break;
            }
            case 5:
                points.SetItemM(p, slot);
                break;
            case 6:
                pointer = points.getCurrentItemPrtM();
                pointerBlock = points.GetLengthM();
                break;
            case 7:
                points.CancelLastItemM();
                break;
            case 8:
                points.AppendPntsM(Point3DArr(points));
                break;
            case 9:
                test::allocationsLeft = random.integer(0, 2);
                break;
            case 10:
                points.DelAllVirtualM();
                break;
            default:
                points.AddItemM(p);
                break;
            }
            if (points.GetLengthM() == pointerBlock && random.oneIn(3)) {
                std::copy_n(p, 3, pointer + std::ptrdiff_t{3} * slot);
            }
            nastyPoint(random, p);
            const int expected = scanForPoint(points, p);
            ASSERT_EQ(points.AddPointM(p), expected) << round << ' ' << step;
            test::allocationsLeft = -1;
        }
    }
}

TEST(Searches, AddingManyPointsIsNotQuadratic) {
    Point3DArr points;
    for (int i = 0; i < 300000; ++i) { // a dense cloud: thousands in one cell of the first size
        const int steps[3] = {i % 64, i / 64 % 64, i / 4096};
        float p[3];
        std::transform(steps, steps + 3, p,
                       [](int step) { return 0.0005F * static_cast<float>(step); });
        ASSERT_EQ(points.AddPointM(p), i);
    }
}

TEST(Searches, TheFarthestPairIsThatOfTheScan) {
    test::Random random(7);
    for (int round = 0; round < 2000; ++round) {
        Point3DArr points;
        const int count = random.integer(0, 40);
        const int grain = random.integer(1, 30); // coarse grains make ties
        for (int i = 0; i < count; ++i) {
            float p[3];
            for (float &coordinate : p) {
                coordinate = static_cast<float>(random.integer(-grain, grain));
            }
            if (round % 10 == 0 && random.oneIn(20)) {
                p[random.integer(0, 2)] = random.oneIn(2) ? infinity : noNumber;
            }
            points.AddItemM(p);
        }
        for (int i = 0; i < count / 5; ++i) {
            points.DelItemM(random.integer(0, count));
        }
        const int start = random.integer(-1, 5);
        const int limit = random.integer(-1, 45);
        double best = 0.0;
        int expected[2] = {SL_DELETED_INT, SL_DELETED_INT};
        std::vector<int> slots;
        for (int i = std::max(start, 0); i < points.GetBoundM(); ++i) {
            if (points.IsPntAvailableM(i) == TAG_AVAILABLE &&
                (limit < 0 || static_cast<int>(slots.size()) < limit)) {
                slots.push_back(i);
            }
        }
        for (std::size_t a = 0; a < slots.size(); ++a) {
            for (std::size_t b = a + 1; b < slots.size(); ++b) {
                const double square =
                    slSquareDistance3(points.GetItemPM(slots[a]), points.GetItemPM(slots[b]));
                if (square > best) {
                    best = square;
                    expected[0] = slots[a];
                    expected[1] = slots[b];
                }
            }
        }
        test::allocationsLeft = random.oneIn(5) ? random.integer(0, 2) : -1;
        int found[2];
        const float square = points.GetFarthestTwoPointsM(start, limit, &found[0], &found[1]);
        test::allocationsLeft = -1;
        ASSERT_EQ(found[0], expected[0]) << round;
        ASSERT_EQ(found[1], expected[1]) << round;
        ASSERT_EQ(square,
                  static_cast<float>(std::min<double>(best, std::numeric_limits<float>::max())))
            << round;
    }
}

// Every width of vectors moves every point to the bits of the kernel's function.
TEST(Searches, AllVectorsMovePointsToTheSameBits) {
    using trunnion::detail::VectorWidth;
    test::Random random(8);
    for (int round = 0; round < 400; ++round) {
        const int count = random.integer(0, 100);
        float m[16];
        for (float &element : m) {
            element = random.oneIn(50) ? infinity : random.real(-2.0F, 2.0F);
        }
        std::vector<float> points(static_cast<std::size_t>(3 * count));
        for (float &coordinate : points) {
            const float odd[] = {infinity, noNumber, SL_DELETED_REAL, -3e38F, 3e38F, -5e17F};
            coordinate = random.oneIn(9) ? odd[random.integer(0, 5)] : random.real(-1e4F, 1e4F);
        }
        const bool moves = random.oneIn(2);
        std::vector<float> expected = points;
        for (int i = 0; i < count; ++i) {
            float *p = expected.data() + std::ptrdiff_t{3} * i;
            if (p[0] > -5e17F) {
                moves ? slMatrix16MultiPoint3(m, p) : slMatrix16MultiVector3(m, p);
            }
        }
        for (const VectorWidth width :
             {VectorWidth::plain, VectorWidth::bits256, VectorWidth::bits512}) {
            if (width <= trunnion::detail::widestVectors()) {
                std::vector<float> moved = points;
                trunnion::detail::transformPoints(m, moves, moved.data(), count, width);
                for (std::size_t i = 0; i < moved.size(); ++i) {
                    const bool sameNaN = std::isnan(moved[i]) && std::isnan(expected[i]);
                    ASSERT_TRUE(sameNaN || std::bit_cast<std::uint32_t>(moved[i]) ==
                                               std::bit_cast<std::uint32_t>(expected[i]))
                        << moved[i] << ' ' << expected[i];
                }
            }
        }
    }
}

} // namespace
