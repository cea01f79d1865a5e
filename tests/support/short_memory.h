// A heap that has nothing to give, for tests of what goes on without memory. A test program that
// includes this has short_memory.cpp among its sources.
#pragma once

#include <atomic>

namespace test {

// So many operator new of the program, in the library's code too, succeed before the rest fails;
// below 0 none fails.
extern std::atomic<int> allocationsLeft;

} // namespace test
