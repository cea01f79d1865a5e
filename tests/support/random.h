// The one random source of the tests. Its seed is printed with every test that uses it, so that a
// failure can be run again: set TRUNNION_TEST_SEED to the number printed.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace test {

class Random {
public:
    // `fallback` is the seed used when TRUNNION_TEST_SEED is not set: every run then repeats the
    // last.
    explicit Random(std::uint32_t fallback) {
        const char *chosen = std::getenv("TRUNNION_TEST_SEED");
        const std::uint32_t seed =
            chosen != nullptr ? static_cast<std::uint32_t>(std::strtoul(chosen, nullptr, 10))
                              : fallback;
        ::testing::Test::RecordProperty("seed", std::to_string(seed));
        engine.seed(seed);
    }

    // From low to high, both included.
    int integer(int low, int high) {
        return low + static_cast<int>(engine() % (static_cast<std::uint32_t>(high - low) + 1U));
    }
    // From low up to high.
    float real(float low, float high) {
        const double unit = engine() / 4294967296.0;
        return static_cast<float>(low + (static_cast<double>(high) - low) * unit);
    }
    bool oneIn(int n) { return integer(1, n) == 1; }

private:
    std::mt19937 engine;
};

} // namespace test
