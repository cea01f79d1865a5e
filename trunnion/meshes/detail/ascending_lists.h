// Ascending lists of slot numbers: very many short ones, few long ones.
//
// Most lists of a mesh hold half a dozen slots and seldom change. They stand side by side in one
// block, each with some room to grow; a list that outgrows its room moves to the end of the block
// and leaves the old room unused. A long list is a run of the block too, as long as it changes at
// its end only; the first change further in makes it a tree, so that no change costs more than the
// logarithm of its length.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <set>
#include <vector>

namespace trunnion::detail {

class AscendingLists {
public:
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

    // Room for `room` slots in an empty list. Throws std::bad_alloc, as insert and erase do; the
    // list is then as it was.
    void makeRoom(List &list, int room) { moveToEnd(list, room); }
    // Adds a slot, unless the list has it.
    void insert(List &list, int slot) {
        if (list.room != inTree && (list.count == 0 || back(list) < slot)) {
            append(list, slot);
        } else if (!has(list, slot)) {
            insertWithin(list, slot);
        } else {
            return;
        }
        ++held;
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

    // Takes the memory for so many slots at once. Throws std::bad_alloc.
    void reserve(std::size_t slots) { block.reserve(slots); }
    // Slots in all lists together.
    std::size_t size() const { return held; }
    // True when most of the memory is room that is not in use.
    bool isWasteful() const { return block.size() > 4 * held + 4096; }

private:
    static constexpr int inTree = -1;

    const int *begin(const List &list) const { return block.data() + list.first; }
    int *begin(const List &list) { return block.data() + list.first; }
    int back(const List &list) const { return begin(list)[list.count - 1]; }
    const std::set<int> &treeOf(const List &list) const { return trees[list.first]; }

    bool has(const List &list, int slot) const {
        return list.room == inTree
                   ? treeOf(list).contains(slot)
                   : std::binary_search(begin(list), begin(list) + list.count, slot);
    }
    void append(List &list, int slot) {
        if (list.count == list.room) {
            moveToEnd(list, std::max(4, 2 * list.count));
        }
        begin(list)[list.count++] = slot;
    }
    void insertWithin(List &list, int slot) {
        if (makeTreeIfLong(list)) {
            trees[list.first].insert(slot);
            ++list.count;
            return;
        }
        append(list, slot);
        int *end = begin(list) + list.count;
        std::rotate(std::lower_bound(begin(list), end - 1, slot), end - 1, end);
    }
    void eraseWithin(List &list, int slot) {
        if (makeTreeIfLong(list)) {
            trees[list.first].erase(slot);
        } else {
            int *end = begin(list) + list.count;
            int *at = std::lower_bound(begin(list), end, slot);
            std::copy(at + 1, end, at);
        }
        --list.count;
    }
    void moveToEnd(List &list, int room) {
        const std::size_t end = block.size();
        if (end > UINT32_MAX - static_cast<std::uint32_t>(room)) {
            throw std::bad_alloc();
        }
        block.resize(end + static_cast<std::size_t>(room));
        std::copy_n(begin(list), list.count, block.begin() + static_cast<std::ptrdiff_t>(end));
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

    std::vector<int> block;
    std::vector<std::set<int>> trees;
    std::size_t held = 0;
};

} // namespace trunnion::detail
