// Finds the lowest slot that holds a value: a hash beside an array of integers.
//
// Memory: a table of 4 bytes for each place, between a quarter and a half of them in use: 8 to 16
// bytes for each value.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace trunnion::detail {

// The lowest slot of each value, in an open table with linear probing. An index for SlotFinder
// whose keys are integers.
class ValueSlots {
public:
    int seen() const { return seenSlots; }
    static bool isComplete() { return false; }

    template <class ValueAt>
    void enter(int bound, ValueAt valueAt) {
        for (; seenSlots < bound; ++seenSlots) {
            if (2 * (used + 1) > table.size()) {
                spread(valueAt);
            }
            place(seenSlots, valueAt);
        }
    }

    template <class Matches>
    int lowest(int value, Matches matches) const {
        std::size_t at = home(value);
        while (table[at] != freePlace && !matches(table[at])) {
            at = next(at);
        }
        return table[at];
    }

private:
    static constexpr int freePlace = -1;

    std::size_t home(int value) const {
        return static_cast<std::size_t>(static_cast<std::uint32_t>(value) * 0x9E3779B97F4A7C15U >>
                                        shift);
    }
    std::size_t next(std::size_t place) const { return (place + 1) & (table.size() - 1); }

    template <class ValueAt>
    void place(int slot, ValueAt valueAt) {
        const int value = valueAt(slot);
        std::size_t at = home(value);
        for (; table[at] != freePlace; at = next(at)) {
            if (valueAt(table[at]) == value) {
                return;
            }
        }
        table[at] = slot;
        ++used;
    }

    template <class ValueAt>
    void spread(ValueAt valueAt) {
        const std::vector<int> entries = std::exchange(
            table, std::vector<int>(table.empty() ? 64 : 2 * table.size(), freePlace));
        shift = 64 - std::countr_zero(table.size());
        used = 0;
        for (const int slot : entries) {
            if (slot != freePlace) {
                place(slot, valueAt);
            }
        }
    }

    std::vector<int> table; // slots
    std::size_t used = 0;
    int shift = 64;
    int seenSlots = 0;
};

} // namespace trunnion::detail
