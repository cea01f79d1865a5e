// Ascending lists of slot numbers: very many short ones, few long ones. Beside each slot stand
// `besideCount` numbers that the owner gives with it.
//
// Most lists of a mesh hold half a dozen slots and seldom change. They stand side by side in one
// block, each with some room to grow; a list that outgrows its room moves to the end of the block
// and leaves the old room unused. A long list is a run of the block too, as long as it changes at
// its end only; the first change further in makes it a tree, so that no change costs more than the
// logarithm of its length. A tree holds the slots alone, without what stood beside them.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <numeric>
#include <set>
#include <vector>

#include "trunnion/containers/detail/lanes.h"
#include "trunnion/containers/detail/table.h"

namespace trunnion::detail {

template <int besideCount>
class AscendingLists {
public:
    using Beside = std::array<int, besideCount>;

    // One list; belongs to the AscendingLists that it was filled by. Empty by default.
    class List {
    public:
        int size() const { return count; }

    private:
        friend class AscendingLists;
        std::uint32_t first = 0; // its place in the block, or its tree
        int count = 0;
        int room = 0; // slots that it may take in the block, or inTree
    };

    // Lists with more slots than this count as long: a change within costs as much as one of a
    // tree.
    static constexpr int longest = 64;

    // Room in empty lists, for rooms[i] slots in lists[i], one list behind the other. Throws
    // std::bad_alloc, as insert and erase do; the lists are then as they were.
    void makeRooms(Table<List> &lists, const std::vector<int> &rooms) {
        const auto slots = std::accumulate(rooms.begin(), rooms.end(), std::size_t{0});
        std::size_t end = extend(slots);
        for (std::size_t i = 0; i < rooms.size(); ++i) {
            lists[i].first = static_cast<std::uint32_t>(end);
            lists[i].room = rooms[i];
            end += static_cast<std::size_t>(rooms[i]) * runs;
        }
    }
    // Adds a slot, unless the list has it.
    void insert(List &list, int slot, const Beside &beside) {
        if (list.count < list.room && (list.count == 0 || back(list) < slot)) {
            append(list, slot, beside);
            ++held;
        } else {
            insertElsewhere(list, slot, beside);
        }
    }
    // Takes a slot out, if the list has it.
    void erase(List &list, int slot) {
        if (list.room != inTree && list.count > 0 && back(list) == slot) {
            --list.count;
        } else if (has(list, slot)) {
            eraseWithin(list, slot);
        } else {
            return;
        }
        --held;
    }

    // Puts other numbers beside a slot that the list has, where they are known.
    void setBeside(List &list, int slot, const Beside &beside) {
        if (list.room != inTree) {
            writeBeside(list, placeOf(list, slot), beside);
        }
    }

    // Whether the numbers beside the slots are known; and whether there are so few slots, too, that
    // it takes one look at them.
    bool knowsBeside(const List &list) const { return list.room != inTree; }
    bool isCompact(const List &list) const { return knowsBeside(list) && list.count <= lanes; }
    // How many slots have `number` beside them, where that is known; *highest receives the highest
    // of them and stays when there is none. As how many slots a list has nobody can foresee, always
    // eight are looked at together, without a branch for each.
    int countBeside(const List &list, int number, int *highest) const {
        int found = 0;
        int last = -1;
        for (int from = 0; from < list.count; from += lanes) {
            unsigned int isBeside = 0;
            for (int run = 1; run < runs; ++run) {
                isBeside |= equalOfEight(runOf(list, run) + from, number);
            }
            isBeside &= 0xFFU >> (lanes - std::min(list.count - from, lanes));
            found += countOfEight(isBeside);
            last = isBeside != 0 ? from + std::bit_width(isBeside) - 1 : last;
        }
        if (found > 0) {
            *highest = begin(list)[last];
        }
        return found;
    }

    // Calls visit(slot) in ascending order.
    template <class Visit>
    void each(const List &list, Visit visit) const {
        if (list.room == inTree) {
            std::for_each(treeOf(list).begin(), treeOf(list).end(), visit);
        } else {
            std::for_each_n(begin(list), list.count, visit);
        }
    }
    // The same until visit(slot) returns true. True if it did.
    template <class Visit>
    bool any(const List &list, Visit visit) const {
        if (list.room == inTree) {
            return std::any_of(treeOf(list).begin(), treeOf(list).end(), visit);
        }
        return std::any_of(begin(list), begin(list) + list.count, visit);
    }
    // The same in descending order.
    template <class Visit>
    bool anyDown(const List &list, Visit visit) const {
        if (list.room == inTree) {
            return std::any_of(treeOf(list).rbegin(), treeOf(list).rend(), visit);
        }
        return std::any_of(std::make_reverse_iterator(begin(list) + list.count),
                           std::make_reverse_iterator(begin(list)), visit);
    }
    // The slots of a list that is about to change. Throws std::bad_alloc.
    std::vector<int> copy(const List &list) const {
        std::vector<int> slots;
        slots.reserve(static_cast<std::size_t>(list.count));
        each(list, [&](int slot) { slots.push_back(slot); });
        return slots;
    }

    // Slots in all lists together.
    std::size_t size() const { return held; }
    // True when most of the memory is room that is not in use.
    bool isWasteful() const { return block.size() > (4 * held + 4096) * runs; }

private:
    static constexpr int inTree = -1;
    static constexpr int runs = 1 + besideCount; // of a list: its slots, then each number beside
    static constexpr int lanes = 8;              // looked at together, behind the end too

    const int *begin(const List &list) const { return block.data() + list.first; }
    int *begin(const List &list) { return block.data() + list.first; }
    int back(const List &list) const { return begin(list)[list.count - 1]; }
    // The slots are run 0, and each of the numbers beside a run behind them.
    const int *runOf(const List &list, std::ptrdiff_t run) const {
        return begin(list) + run * list.room;
    }
    int *runOf(const List &list, std::ptrdiff_t run) { return begin(list) + run * list.room; }
    void writeBeside(List &list, std::ptrdiff_t place, const Beside &beside) {
        for (std::size_t which = 0; which < beside.size(); ++which) {
            runOf(list, static_cast<std::ptrdiff_t>(which) + 1)[place] = beside[which];
        }
    }
    // Calls change(begin of the run) for each of them.
    template <class Change>
    void forEachRun(const List &list, Change change) {
        for (int run = 0; run < runs; ++run) {
            change(runOf(list, run));
        }
    }
    const std::set<int> &treeOf(const List &list) const { return trees[list.first]; }

    bool has(const List &list, int slot) const {
        return list.room == inTree
                   ? treeOf(list).contains(slot)
                   : std::binary_search(begin(list), begin(list) + list.count, slot);
    }
    // Where there is no room behind the last slot, or that is not the place.
    void insertElsewhere(List &list, int slot, const Beside &beside) {
        if (has(list, slot)) {
            return;
        }
        const bool isLast = list.room != inTree && (list.count == 0 || back(list) < slot);
        if (!isLast && makeTreeIfLong(list)) {
            trees[list.first].insert(slot);
            ++list.count;
        } else {
            if (list.count == list.room) {
                moveToEnd(list, std::max(4, 2 * list.count));
            }
            const auto place = placeOf(list, slot);
            append(list, slot, beside);
            forEachRun(list, [&](int *run) {
                std::rotate(run + place, run + list.count - 1, run + list.count);
            });
        }
        ++held;
    }
    // Where the slot stands or would stand.
    std::ptrdiff_t placeOf(const List &list, int slot) const {
        return std::lower_bound(begin(list), begin(list) + list.count, slot) - begin(list);
    }
    // Puts the slot behind the last one, where there is room.
    void append(List &list, int slot, const Beside &beside) {
        begin(list)[list.count] = slot;
        writeBeside(list, list.count, beside);
        ++list.count;
    }
    void eraseWithin(List &list, int slot) {
        if (makeTreeIfLong(list)) {
            trees[list.first].erase(slot);
        } else {
            const auto place = placeOf(list, slot);
            forEachRun(
                list, [&](int *run) { std::copy(run + place + 1, run + list.count, run + place); });
        }
        --list.count;
    }
    // Makes the block longer, for so many slots and what stands beside them. Returns where they
    // begin.
    std::size_t extend(std::size_t slots) {
        const std::size_t end = std::max<std::size_t>(block.size(), lanes) - lanes;
        if (slots > (UINT32_MAX - end) / runs) {
            throw std::bad_alloc();
        }
        block.resize(end + slots * runs + lanes);
        return end;
    }
    void moveToEnd(List &list, int room) {
        const std::size_t end = extend(static_cast<std::size_t>(room));
        int *to = block.data() + end;
        forEachRun(list, [&](const int *run) {
            std::copy_n(run, list.count, to);
            to += room;
        });
        list.first = static_cast<std::uint32_t>(end);
        list.room = room;
    }
    // True if the list is a tree now.
    bool makeTreeIfLong(List &list) {
        if (list.room != inTree && list.count > longest) {
            trees.emplace_back(begin(list), begin(list) + list.count);
            list.first = static_cast<std::uint32_t>(trees.size() - 1);
            list.room = inTree;
        }
        return list.room == inTree;
    }

    Table<int> block; // behind the last list lie as many numbers as are looked at together
    std::vector<std::set<int>> trees;
    std::size_t held = 0;
};

} // namespace trunnion::detail
