#include "tests/support/short_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

std::atomic<int> test::allocationsLeft = -1;

void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept {
    if (test::allocationsLeft == 0) {
        return nullptr;
    }
    test::allocationsLeft -= test::allocationsLeft > 0 ? 1 : 0;
    return std::malloc(size);
}
void *operator new[](std::size_t size, const std::nothrow_t &tag) noexcept {
    return operator new(size, tag);
}
void *operator new(std::size_t size) {
    void *block = operator new(size, std::nothrow);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void *operator new[](std::size_t size) {
    return operator new(size);
}
// With the block that it stands in remembered in front of it.
void *operator new(std::size_t size, std::align_val_t alignment) {
    const std::size_t front = std::max(static_cast<std::size_t>(alignment), sizeof(void *));
    auto *block = static_cast<char *>(operator new(size + 2 * front));
    char *aligned = block + 2 * front - reinterpret_cast<std::uintptr_t>(block) % front;
    reinterpret_cast<void **>(aligned)[-1] = block;
    return aligned;
}
void operator delete(void *block) noexcept {
    std::free(block);
}
void operator delete(void *block, std::size_t /*size*/) noexcept {
    std::free(block);
}
void operator delete[](void *block) noexcept {
    std::free(block);
}
void operator delete[](void *block, std::size_t /*size*/) noexcept {
    std::free(block);
}
void operator delete(void *block, std::align_val_t /*alignment*/) noexcept {
    if (block != nullptr) {
        std::free(static_cast<void **>(block)[-1]);
    }
}
void operator delete(void *block, std::size_t /*size*/, std::align_val_t alignment) noexcept {
    operator delete(block, alignment);
}
