// The plain model of a slot array: the behaviour that all nine classes share, told with a vector
// and no thought of speed.
#pragma once

#include <algorithm>
#include <array>
#include <vector>

namespace test {

// `Rules` gives: Value, width, marker, live(v) (deletion and walks), isNew(held) (a store counts).
template <class Rules>
class SlotModel {
public:
    using Value = typename Rules::Value;
    using Slot = std::array<Value, Rules::width>;

    SlotModel() { slots.assign(4, empty()); }

    int capacity() const { return static_cast<int>(slots.size()); }
    int bound = 0;
    int available = 0;
    int increment = 10;

    static Slot empty() {
        Slot slot{};
        slot[0] = Rules::marker;
        return slot;
    }
    const Slot &at(int idx) const { return slots[static_cast<std::size_t>(idx)]; }

    void grow(int n) { slots.resize(slots.size() + static_cast<std::size_t>(n), empty()); }

    void set(const Slot &value, int idx) {
        if (idx >= capacity()) {
            grow(std::max(capacity(), increment + idx + 1 - capacity()));
        }
        Slot &slot = slots[static_cast<std::size_t>(idx)];
        available += Rules::isNew(slot[0]) ? 1 : 0;
        bound = std::max(bound, idx + 1);
        slot = value;
    }

    void insert(const Slot &value, int idx) {
        if (idx >= bound) {
            set(value, idx);
            return;
        }
        if (bound == capacity()) {
            set(value, bound);
        } else {
            ++bound;
            ++available;
        }
        for (int i = bound - 1; i > idx; --i) {
            slots[static_cast<std::size_t>(i)] = at(i - 1);
        }
        slots[static_cast<std::size_t>(idx)] = value;
    }

    void remove(int idx) {
        if (idx >= bound) {
            return;
        }
        if (Rules::live(at(idx)[0])) {
            slots[static_cast<std::size_t>(idx)][0] = Rules::marker;
            --available;
        }
        bound -= idx == bound - 1 ? 1 : 0;
    }

    void clear(bool keepBlock) {
        slots.assign(keepBlock ? slots.size() : 4, empty());
        bound = 0;
        available = 0;
    }

private:
    std::vector<Slot> slots;
};

} // namespace test
