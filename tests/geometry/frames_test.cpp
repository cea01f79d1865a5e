// Frames that only the library itself builds.
#include "trunnion/geometry/detail/frames.h"

#include "tests/geometry/support.h"
#include "trunnion/geometry/scalars.h"

using test::SENTINEL;
using test::Triple;

namespace {

TEST(FrameByNormal, TurnsTheNormalIntoTheZAxis) {
    const Triple p = {1, 2, 3};
    const struct {
        const char *name;
        Triple step, n;
        int result;
        Triple x, y;
    } cases[] = {
        {"at right angles", {0, 4, 0}, {0, 0, 1}, 1, {0, 1, 0}, {-1, 0, 0}},
        {"equal points", {0, 0, 0}, {0, 0, 1}, 1, {1, 0, 0}, {0, 1, 0}},
        {"just at right angles", {100, 0, 0.0099F}, {0, 0, 1}, 1, {1, 0, 0.000099F}, {0, 1, 0}},
        {"slanted", {100, 0, -0.0101F}, {0, 0, 1}, 3, {}, {}},
        {"along the normal", {0, 0, 5}, {0, 0, 1}, 3, {}, {}},
    };
    for (const auto &c : cases) {
        XYCoordSysD cs{};
        cs.origin[0] = SENTINEL;
        const Triple q = {p[0] + c.step[0], p[1] + c.step[1], p[2] + c.step[2]};
        EXPECT_EQ(trunnion::detail::slGenXYCoordSysByNorm(p.data(), q.data(), c.n.data(), &cs),
                  c.result)
            << c.name;
        EXPECT_EQ(cs.origin[0], c.result == 1 ? p[0] : SENTINEL) << c.name;
        EXPECT_EQ(cs.zAxis[2], c.result == 1 ? 1.0F : 0.0F) << c.name;
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(cs.xAxis[i], c.x[i], 1e-6) << c.name;
            EXPECT_NEAR(cs.yAxis[i], c.y[i], 1e-6) << c.name;
        }
    }
}

} // namespace
