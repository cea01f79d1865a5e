#include "tests/support/short_memory.h"

#include <cstdlib>
#include <new>

bool test::memoryIsShort = false;

void *operator new(std::size_t size) {
    void *block = test::memoryIsShort ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void operator delete(void *block) noexcept {
    std::free(block);
}
void operator delete(void *block, std::size_t /*size*/) noexcept {
    std::free(block);
}
