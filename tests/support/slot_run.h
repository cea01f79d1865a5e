// The nine slot arrays under any operations, each held against the plain model. A source of
// numbers, test::Random or the bytes of an input, decides what is done.
#pragma once

#include "tests/support/slot_model.h"
#include "trunnion/containers/char_arr.h"
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/containers/slot_array.h"

namespace test {

// The rules of each class, written anew for the model.

template <class ArrayType, class ValueType, int valuesPerSlot>
struct RulesOf {
    using Array = ArrayType;
    using Value = ValueType;
    static constexpr int width = valuesPerSlot;
    static constexpr bool walksAll = false;
};

template <class Array, int width>
struct IntRules : RulesOf<Array, int, width> {
    static constexpr int marker = SL_DELETED_INT;
    static bool live(int v) { return v > SL_DELETED_INT; }
    static bool isNew(int held) { return held == SL_DELETED_INT; }
};

template <class Array, int width>
struct FloatRules : RulesOf<Array, float, width> {
    static constexpr float marker = -1e18F;
    static bool live(float v) { return v > -9.999e17F; }
    static bool isNew(float held) { return held < -9.999e17F; }
};

struct CharRules : RulesOf<CharArr, char, 1> {
    static constexpr char marker = 0;
    static constexpr bool walksAll = true;
    static bool live(char v) { return v > 0; }
    static bool isNew(char /*held*/) { return true; }
};

template <class... Types>
struct TypeList {};
using AllSlotRules =
    TypeList<IntRules<IntArr, 1>, FloatRules<RealArr, 1>, CharRules, IntRules<Int2DArr, 2>,
             IntRules<Int3DArr, 3>, IntRules<Int4DArr, 4>, FloatRules<Point2DArr, 2>,
             FloatRules<Point3DArr, 3>, FloatRules<PixelArr, 4>>;

// An array and its model, which take the same steps.
template <class Rules>
class SlotRun {
public:
    using Slot = typename SlotModel<Rules>::Slot;

    static auto argument(const Slot &slot) {
        if constexpr (Rules::width == 1) {
            return slot[0];
        } else {
            return slot.data();
        }
    }

    // Does one operation to both. Null, or what differs afterwards.
    template <class Source>
    const char *step(Source &source) {
        const bool agrees = operate(source);
        return agrees ? difference() : "result of the operation";
    }

private:
    using Array = typename Rules::Array;
    using Value = typename Rules::Value;

    template <class Source>
    bool operate(Source &source) {
        Slot slot;
        for (Value &value : slot) {
            value = static_cast<Value>(source.integer(-3, 120));
        }
        const int idx = source.integer(0, std::min(model.bound + (source.oneIn(8) ? 30 : 1), 250));
        switch (source.integer(0, 8)) {
        case 0:
        case 1: {
            const int expected = model.bound;
            model.set(slot, model.bound);
            return array.AddItemM(argument(slot)) == expected;
        }
        case 2:
            model.set(slot, idx);
            return array.SetItemM(argument(slot), idx) == 1;
        case 3:
            model.insert(slot, idx);
            return array.InsertItemM(argument(slot), idx) == 1;
        case 4:
        case 5:
            model.remove(idx);
            return array.DelItemM(idx) == 1;
        case 6:
            model.increment = source.integer(-2, 40) > 0 ? 7 : model.increment;
            array.SetIncrementM(model.increment);
            return array.SetIncrementM(0) == 1;
        case 7: {
            // A copy is independent and has everything, the increment too.
            Array copy = array;
            array.AddItemM(argument(slot));
            array = copy;
            return true;
        }
        default:
            if (source.oneIn(6)) {
                array.DelAllM();
                model.clear(false);
            } else if (source.oneIn(3)) {
                array.AddSizeM(3);
                model.grow(3);
            }
            return source.oneIn(2) || isAsLeftBehindBound(array);
        }
    }

    // Looked at through a pointer to the storage, in the classes that let a host have one.
    bool isAsLeftBehindBound(const Array &looked) const {
        const auto isAsLeft = [this](const Value *slots) {
            for (int i = model.bound; i < model.capacity(); ++i) {
                // Deleting leaves a byte that is no text, which a CharArr may hold.
                if (slots[i * Rules::width] != model.at(i)[0]) {
                    return false;
                }
            }
            return true;
        };
        if constexpr (requires { looked.getCurrentItemPrtConstM(); }) {
            return isAsLeft(looked.getCurrentItemPrtConstM());
        } else if constexpr (requires { looked.getCurrentItemPrtM(); }) {
            Array copy = looked;
            return isAsLeft(copy.getCurrentItemPrtM());
        } else if constexpr (requires { looked.IsAvailableM(0); } || Rules::walksAll ||
                             std::is_same_v<Array, RealArr>) {
            return isAsLeft(looked.GetItemPM(model.capacity() - 1) -
                            static_cast<std::ptrdiff_t>(model.capacity() - 1) * Rules::width);
        }
        return true;
    }

    const char *difference() {
        if (!isAsLeftBehindBound(Array(array))) {
            return "slots behind the bound";
        }
        if (array.GetLengthM() != model.capacity() || array.GetBoundM() != model.bound ||
            array.GetAvailableNumM() != model.available) {
            return "capacity, bound or number of live items";
        }
        Value out[Rules::width];
        int idx = 0;
        int walked = -1;
        int live = 0;
        for (int i = 0; i < model.bound; ++i) {
            array.GetItemM(out, i);
            const Slot &expected = model.at(i);
            const bool isSeen = Rules::walksAll || Rules::live(expected[0]);
            if (!std::equal(out, out + (isSeen ? Rules::width : 1), expected.begin())) {
                return "values of a slot";
            }
            if (!isSeen) {
                continue;
            }
            ++live;
            if (array.GetNextM(out, &idx, walked) != 1 || idx != i || out[0] != expected[0]) {
                return "the walk";
            }
            walked = i;
        }
        if (array.GetAvailableNumM(-1) != live) {
            return "live items counted";
        }
        const bool ends = array.GetNextM(out, &idx, walked) == -1 && idx == SL_DELETED_INT &&
                          out[0] == Rules::marker;
        return ends ? nullptr : "the end of the walk";
    }

    Array array;
    SlotModel<Rules> model;
};

} // namespace test
