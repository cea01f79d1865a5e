// A heap that has nothing to give, for tests of what goes on without memory. A test program that
// includes this has short_memory.cpp among its sources.
#pragma once

namespace test {

// While this is set every operator new of the program fails, in the library's code too.
extern bool memoryIsShort;
// So many operator new succeed before the rest fails; below 0 none fails for that.
extern int allocationsLeft;

} // namespace test
