// Frames that only the library itself builds.
#include "trunnion/geometry/detail/frames.h"

#include <tuple>

#include "tests/geometry/support.h"
#include "trunnion/geometry/scalars.h"

using namespace test;

namespace {

TEST(FrameByNormal, TurnsTheNormalIntoTheZAxis) {
    const Triple p = {1, 2, 3};
    const std::tuple<const char *, Triple, Triple, int, Triple, Triple> cases[] = {
        {"at right angles", {0, 4, 0}, {0, 0, 1}, 1, {0, 1, 0}, {-1, 0, 0}},
        {"equal points", {0, 0, 0}, {0, 0, 1}, 1, {1, 0, 0}, {0, 1, 0}},
        {"just at right angles", {100, 0, 0.0099F}, {0, 0, 1}, 1, {1, 0, 0.000099F}, {0, 1, 0}},
        {"slanted", {100, 0, -0.0101F}, {0, 0, 1}, 3, {}, {}},
        {"along the normal", {0, 0, 5}, {0, 0, 1}, 3, {}, {}},
    };
    for (const auto &[name, step, n, result, x, y] : cases) {
        XYCoordSysD cs{};
        cs.origin[0] = SENTINEL;
        const Triple q = {p[0] + step[0], p[1] + step[1], p[2] + step[2]};
        EXPECT_EQ(trunnion::detail::slGenXYCoordSysByNorm(p.data(), q.data(), n.data(), &cs),
                  result)
            << name;
        EXPECT_EQ(cs.origin[0], result == 1 ? p[0] : SENTINEL) << name;
        EXPECT_EQ(cs.zAxis[2], result == 1 ? 1.0F : 0.0F) << name;
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(cs.xAxis[i], x[i], 1e-6) << name;
            EXPECT_NEAR(cs.yAxis[i], y[i], 1e-6) << name;
        }
    }
}

} // namespace
