// Memory of the framework's heap that is given back when its owner goes.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

#include "trunnion/platform/framework.h"

namespace trunnion::detail {

struct FrameworkRelease {
    void operator()(void *block) const { frameworkFree(block); }
};

// For types that need no constructor and no destructor.
template <class T>
using Owned = std::unique_ptr<T, FrameworkRelease>;

// `size` bytes for T, or for its elements if T is an array, not cleared; CMemoryException * is
// thrown when the heap is exhausted.
template <class T>
Owned<T> allocateOwned(std::size_t size = sizeof(T)) {
    return Owned<T>(static_cast<std::remove_extent_t<T> *>(frameworkAllocate(size)));
}

} // namespace trunnion::detail
