// A bore from three probed points, and where a cut at y = 7 enters and leaves it.
#include <cstdio>

#include "trunnion/trunnion.h"

int main() {
    const float probed[3][3] = {{25, 0, 5}, {0, 25, 5}, {-25, 0, 5}};
    const float from[3] = {-50, 7, 5}, to[3] = {50, 7, 5};
    float center[3], axis[3], hit[2][3], radius = 0;
    if (slGenCircle(probed[0], probed[1], probed[2], center, axis, &radius) == 1 &&
        slIntersectLineCircle(center, radius, from, to, hit) == SL_LINE_TWO_POINTS) {
        std::printf("bore: radius %.3f at (%.3f, %.3f)\n", radius, center[0], center[1]);
        std::printf("cut: from x = %.3f to x = %.3f\n", hit[1][0], hit[0][0]);
    }
}
