// The kernel on several threads at once. The thread sanitizer watches this test.
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/geometry/kernel_calls.h"

namespace {

// What the functions of the kernel give in some rounds of its own.
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
    constexpr std::uint32_t count = 4;
    std::vector<std::vector<std::string>> found(count);
    std::vector<std::jthread> threads;
    std::latch start(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            found[i] = results(1000 * i);
        });
    }
    threads.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
        EXPECT_EQ(found[i], results(1000 * i));
    }
}

} // namespace
