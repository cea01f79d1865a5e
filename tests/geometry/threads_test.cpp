// The kernel on several threads at once. The thread sanitizer watches this test.
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/geometry/kernel_calls.h"
#include "tests/support/random.h"

namespace {

// What every function of the kernel gives in some rounds of its own.
std::vector<std::string> results(std::uint32_t firstRound) {
    std::vector<std::string> all;
    for (std::uint32_t round = firstRound; round < firstRound + 5; ++round) {
        for (const test::KernelCall &call : test::kernelCalls()) {
            test::KernelInput input(call.name, round);
            all.push_back(call.name + call.run(input));
        }
    }
    return all;
}

TEST(KernelThreads, GetTheBitsThatOneThreadGets) {
    constexpr int count = 4;
    test::Random random(20);
    std::vector<std::uint32_t> firstRounds;
    std::vector<std::vector<std::string>> found(count);
    std::vector<std::thread> threads;
    std::latch start(count);
    for (std::vector<std::string> &own : found) {
        firstRounds.push_back(static_cast<std::uint32_t>(random.integer(0, 1 << 20)));
        threads.emplace_back([&own, &start, round = firstRounds.back()] {
            start.arrive_and_wait();
            own = results(round);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(found[i], results(firstRounds[i]));
    }
}

} // namespace
