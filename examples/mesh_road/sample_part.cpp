// The part is its section swept once around the z axis. Where the section runs through the teeth,
// its radius follows the angle.
#include "sample_part.h"

#include <cmath>
#include <numbers>

namespace {

constexpr int toothCount = 24;
constexpr int stepsPerTooth = 20;
constexpr int angleCount = toothCount * stepsPerTooth;
constexpr double rootRadius = 36.0;
constexpr double toothHeight = 6.0;
constexpr double gearWidth = 20.0;
constexpr int gearRows = 9;
constexpr double twistPerLength = 0.012; // radians for each millimetre

struct SectionPoint {
    double radius;
    double z;
    bool toothed; // the radius is that of the root and grows where a tooth stands
};

// Counter-clockwise in the plane of radius and z: flange, teeth, hub, bore.
std::vector<SectionPoint> section() {
    std::vector<SectionPoint> points{{16.0, -8.0, false}, {32.0, -8.0, false}, {47.0, -8.0, false},
                                     {48.0, -7.0, false}, {48.0, -1.0, false}, {47.0, 0.0, false}};
    for (int row = 0; row < gearRows; ++row) {
        points.push_back({rootRadius, gearWidth * row / (gearRows - 1), true});
    }
    const SectionPoint hub[] = {{26.0, 20.0, false}, {25.0, 21.0, false}, {25.0, 25.0, false},
                                {24.0, 26.0, false}, {16.0, 26.0, false}, {15.0, 25.0, false},
                                {15.0, 9.0, false},  {15.0, -7.0, false}};
    points.insert(points.end(), std::begin(hub), std::end(hub));
    return points;
}

// How much of a tooth stands at `phase`, from 0 to 1 over one tooth: gap, rising flank, tip,
// falling flank.
double toothProfile(double phase) {
    const double fromTip = std::fabs(phase - 0.5);
    const double flank = (0.36 - fromTip) / (0.36 - 0.12);
    const double t = flank < 0.0 ? 0.0 : (flank > 1.0 ? 1.0 : flank);
    return t * t * (3.0 - 2.0 * t);
}

Corner surfacePoint(const SectionPoint &point, int step) {
    const double angle = 2.0 * std::numbers::pi * (step % angleCount) / angleCount;
    double radius = point.radius;
    double turned = angle;
    if (point.toothed) {
        const double phase = static_cast<double>(step % stepsPerTooth) / stepsPerTooth;
        radius += toothHeight * toothProfile(phase);
        turned += twistPerLength * point.z;
    }
    return {static_cast<float>(radius * std::cos(turned)),
            static_cast<float>(radius * std::sin(turned)), static_cast<float>(point.z)};
}

} // namespace

Soup samplePart() {
    const std::vector<SectionPoint> points = section();
    Soup soup;
    soup.reserve(2 * points.size() * angleCount);
    for (int step = 0; step < angleCount; ++step) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const SectionPoint &here = points[i];
            const SectionPoint &next = points[(i + 1) % points.size()];
            const Corner a = surfacePoint(here, step);
            const Corner b = surfacePoint(here, step + 1);
            const Corner c = surfacePoint(next, step + 1);
            const Corner d = surfacePoint(next, step);
            soup.push_back({a, b, c});
            soup.push_back({a, c, d});
        }
    }
    return soup;
}
