// Draws what the library answers about arcs and contours, so that a person can check it by eye:
// contour_gallery [file.svg].
#include "panels.h"

#include <cstdio>

int main(int argc, char **argv) {
    const char *path = argc > 1 ? argv[1] : "contour_gallery.svg";
    constexpr double margin = 10;
    constexpr double across = PANEL_WIDTH + margin;
    constexpr double down = PANEL_HEIGHT + margin;

    Svg svg;
    drawEndsAndRadius(svg, {margin, margin});
    drawEndsAndSweep(svg, {margin + across, margin});
    drawCentreAndSweep(svg, {margin + 2 * across, margin});
    drawKindsOfArcs(svg, {margin, margin + down});
    drawFillets(svg, {margin + across, margin + down});
    drawTangency(svg, {margin + 2 * across, margin + down});
    drawPan(svg, {margin, margin + 2 * down});
    drawContour(svg, {margin + across, margin + 2 * down});

    constexpr int width = static_cast<int>(margin + 3 * across);
    constexpr int height = static_cast<int>(margin + 3 * down);
    if (!svg.save(path, width, height)) {
        std::fprintf(stderr, "cannot write %s\n", path);
        return 1;
    }
    std::printf("%s: 8 panels, %d x %d\n", path, width, height);
    return 0;
}
