// Vectors for the tables beside lists.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "trunnion/export.h"

namespace trunnion::detail {

// Asks the system for large pages for the fresh memory of a table, if it is several megabytes.
TRUNNION_API void preferLargeTable(void *block, std::size_t size);

// The memory of a Table. A table of several megabytes is touched all over: it stands in large pages
// where the system has them.
template <class T>
class TableMemory : public std::allocator<T> {
public:
    template <class Other>
    struct rebind { // NOLINT(readability-identifier-naming): the standard's name
        using other = TableMemory<Other>;
    };

    TableMemory() = default;
    template <class Other>
    TableMemory(const TableMemory<Other> & /*other*/) {} // NOLINT(google-explicit-constructor)

    T *allocate(std::size_t count) {
        T *block = std::allocator<T>::allocate(count);
        preferLargeTable(block, count * sizeof(T));
        return block;
    }
    // An entry that is given no value gets none that its type does not ask for: memory that the
    // owner is about to fill is not filled before.
    template <class Entry>
    void construct(Entry *place) {
        ::new (static_cast<void *>(place)) Entry;
    }
    template <class Entry, class... Arguments>
    void construct(Entry *place, Arguments &&...arguments) {
        ::new (static_cast<void *>(place)) Entry(std::forward<Arguments>(arguments)...);
    }
};

// A vector whose plain numbers hold anything until they are given.
template <class T>
using Table = std::vector<T, TableMemory<T>>;

} // namespace trunnion::detail
