// Tables of inputs with the code and the outputs that are expected of a function.
#pragma once

#include <cmath>
#include <vector>

#include "tests/geometry/support.h"

namespace test {

inline const float SOME = std::nanf(""); // expected of an output: written, whatever the value

inline constexpr std::size_t CASE_SIZE = 24;

struct Case {
    const char *name;
    int result;
    std::vector<float> in;  // what is missing to CASE_SIZE is 0
    std::vector<float> out; // the outputs expected; those that follow are to be left alone
};

// Gives `call` the inputs of each case and sentinels to write over. Outputs may be off by a
// relative rounding, and by `slack`.
template <typename Call>
void check(const std::vector<Case> &cases, Call call, double slack = 0.0) {
    for (const Case &c : cases) {
        std::vector<float> in = c.in, out(CASE_SIZE, SENTINEL);
        in.resize(CASE_SIZE);
        EXPECT_EQ(call(in.data(), out.data()), c.result) << c.name;
        for (std::size_t i = 0; i < out.size(); ++i) {
            const float expected = i < c.out.size() ? c.out[i] : SENTINEL;
            if (std::isnan(expected)) {
                EXPECT_NE(out[i], SENTINEL) << c.name << ", output " << i;
            } else {
                EXPECT_NEAR(out[i], expected, 2e-6 * std::fabs(expected) + slack)
                    << c.name << ", output " << i;
            }
        }
    }
}

} // namespace test
