#include "tests/support/short_memory.h"

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
