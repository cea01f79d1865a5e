// Lists of points and of integers under scripts of operations: what is searched for is found where
// a plain scan finds it, also after writes through pointers that were handed out.
#include <algorithm>
#include <cmath>
#include <limits>

#include "fuzz/support/entry.h"
#include "fuzz/support/script.h"
#include "trunnion/trunnion.h"

namespace {

using namespace fuzz;

// Mostly near multiples of the tolerance, about the origin or far away; now and then any float.
void takePoint(Script &script, float (&point)[3]) {
    for (float &value : point) {
        const int kind = script.take();
        const float step = static_cast<float>(kind % 16 - 8) * 0.25F * SL_ZERO;
        value = kind >= 245 ? script.take<float>() : (kind < 160 ? 0.0F : 30.0F) + step;
    }
}

int scanForPoint(const Point3DArr &points, const float *p) {
    for (int i = 0; i < points.GetBoundM(); ++i) {
        const float *held = points.GetItemPM(i);
        const auto isNear = [&](int axis) {
            return slFabs(static_cast<double>(held[axis]) - p[axis]) < SL_ZERO_D;
        };
        if (isNear(0) && isNear(1) && isNear(2)) {
            return i;
        }
    }
    return points.GetBoundM();
}

void requireFarthest(const Point3DArr &points) {
    double best = 0;
    int expected[2] = {SL_DELETED_INT, SL_DELETED_INT};
    for (int i = 0; i < points.GetBoundM(); ++i) {
        for (int j = i + 1; j < points.GetBoundM(); ++j) {
            if (points.IsPntAvailableM(i) == TAG_AVAILABLE &&
                points.IsPntAvailableM(j) == TAG_AVAILABLE) {
                const double square = slSquareDistance3(points.GetItemPM(i), points.GetItemPM(j));
                if (square > best) {
                    best = square;
                    expected[0] = i;
                    expected[1] = j;
                }
            }
        }
    }
    int found[2] = {};
    const float square = points.GetFarthestTwoPointsM(0, -1, &found[0], &found[1]);
    require(std::equal(found, found + 2, expected), "the earliest of the farthest pairs");
    require(square == static_cast<float>(std::min<double>(best, std::numeric_limits<float>::max())),
            "their distance");
}

class Lists {
public:
    explicit Lists(Script &source) : script(source) {}

    void step() {
        float point[3];
        takePoint(script, point);
        const int slot = script.slot(points.GetBoundM());
        const bool isInside = slot >= 0 && slot < points.GetBoundM();
        switch (script.integer(0, 11)) {
        case 0:
            points.DelItemM(slot);
            break;
        case 1:
            points.InsertItemM(point, std::min(slot, points.GetBoundM()));
            break;
        case 2:
            points.SetItemM(point, std::min(slot, points.GetBoundM() + 5));
            break;
        case 3:
            points.SetItemZValueM(slot, point[2]);
            break;
        case 4:
            points = Point3DArr(points);
            writer = nullptr;
            break;
        case 5:
            points.CancelLastItemM();
            break;
        case 6:
            writer = points.getCurrentItemPrtM();
            room = points.GetLengthM();
            break;
        default:
            addPoint(point);
            addInteger(slot);
        }
        if (writer != nullptr && room == points.GetLengthM() && isInside && script.oneIn(3)) {
            std::copy_n(point, 3, writer + 3 * static_cast<std::ptrdiff_t>(slot));
        }
    }

    void finish() {
        requireFarthest(points);
        IntArr merged(integers);
        merged.MergeByCompareM(IntArr(integers));
        require(merged.GetBoundM() == integers.GetBoundM(), "nothing new is merged");
    }

private:
    void addPoint(float (&point)[3]) {
        const int expected = scanForPoint(points, point);
        require(points.AddPointM(point) == expected, "the lowest slot near the point");
    }

    void addInteger(int value) {
        int expected = 0;
        if (integers.FindItemM(value, &expected) == 0) {
            expected = integers.GetBoundM();
        }
        require(integers.AddItemByCompare2M(value) == expected, "the lowest equal integer");
    }

    Script &script;
    Point3DArr points;
    IntArr integers;
    float *writer = nullptr;
    int room = 0;
};

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    Lists lists(script);
    for (int steps = 0; steps < 300 && !script.isAtEnd(); ++steps) {
        lists.step();
    }
    lists.finish();
}

std::vector<std::string> fuzz::seeds() {
    std::vector<std::string> all;
    for (int number = 1; number < 4; ++number) {
        std::string script;
        for (int i = 0; i < 1500; ++i) {
            script += static_cast<char>((i * i * number / 3 + i) % 251);
        }
        all.push_back(script);
    }
    return all;
}
