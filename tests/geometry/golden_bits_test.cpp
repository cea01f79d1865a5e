// The kernel gives the same bits in every build: with any compiler, optimisation or sanitizer.
//
// golden_bits.txt has some calls of functions that do without the system's maths library.
// Where a result changes on purpose, run this test with TRUNNION_WRITE_GOLDEN_BITS set; it writes
// the file anew, and the difference shows what has changed.
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/geometry/kernel_calls.h"
#include "tests/support/temp_dir.h"

namespace {

std::string kernelBits() {
    std::string text;
    for (const test::KernelCall &call : test::kernelCalls()) {
        for (std::uint32_t round = 0; !call.usesMaths && round < 3; ++round) {
            test::KernelInput input(call.name, round);
            text += call.name + call.run(input) + '\n';
        }
    }
    return text;
}

TEST(GoldenBits, AreWhatTheKernelGives) {
    const std::string found = kernelBits();
    if (std::getenv("TRUNNION_WRITE_GOLDEN_BITS") != nullptr) {
        test::writeBytes(TRUNNION_GOLDEN_BITS, found);
        GTEST_SKIP() << "written: " << TRUNNION_GOLDEN_BITS;
    }
    EXPECT_EQ(found, test::readBytes(TRUNNION_GOLDEN_BITS));
}

} // namespace
