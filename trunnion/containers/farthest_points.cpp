// The two points of a cloud that are farthest from each other.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <vector>

#include "trunnion/containers/point3d_arr.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/vectors.h"

using trunnion::detail::isFinitePoint;
using trunnion::detail::load3;
using trunnion::detail::squaredLength;
using trunnion::detail::toFloat;
using trunnion::detail::Vec3;

namespace {

struct Member {
    float at[3];
    int slot;
    double fromCentre;
};

// The pair found so far. A wider one wins; of equal ones that which the scan over all pairs, in
// ascending slots, meets first. Pairs that do not differ never win.
struct WidestPair {
    double square = 0.0;
    int lower = SL_DELETED_INT;
    int higher = SL_DELETED_INT;

    void offer(const float *a, int slotOfA, const float *b, int slotOfB) {
        const double candidate = slSquareDistance3(a, b);
        if (!(candidate >= square) || candidate == 0.0) {
            return;
        }
        const auto [first, second] = std::minmax(slotOfA, slotOfB);
        if (candidate > square || first < lower || (first == lower && second < higher)) {
            square = candidate;
            lower = first;
            higher = second;
        }
    }
};

// All pairs of the first `count` live points at or behind slot `start`, in the order of the scan.
// Nothing is wider than an infinite pair.
WidestPair scanPairs(const Point3DArr &points, int start, int count) {
    WidestPair widest;
    for (int a = start; a < points.GetBoundM() && count > 0; ++a) {
        if (points.IsPntAvailableM(a) != TAG_AVAILABLE) {
            continue;
        }
        --count;
        int left = count;
        for (int b = a + 1; b < points.GetBoundM() && left > 0 && !std::isinf(widest.square); ++b) {
            if (points.IsPntAvailableM(b) == TAG_AVAILABLE) {
                widest.offer(points.GetItemPM(a), a, points.GetItemPM(b), b);
                --left;
            }
        }
    }
    return widest;
}

// The same of some finite points. No two points are farther apart than their distances from the
// centre together: taken from the outermost inward, most pairs need no look.
WidestPair searchPairs(std::vector<Member> &members) {
    constexpr double slack = 1.0 + 1e-12; // more than the rounding of a bound
    if (members.empty()) {
        return {};
    }
    Vec3 low = load3(members.front().at);
    Vec3 high = low;
    for (const Member &member : members) {
        const auto [x, y, z] = load3(member.at);
        low = {std::min(low.x, x), std::min(low.y, y), std::min(low.z, z)};
        high = {std::max(high.x, x), std::max(high.y, y), std::max(high.z, z)};
    }
    const Vec3 centre = 0.5 * (low + high);
    for (Member &member : members) {
        member.fromCentre = slack * std::sqrt(squaredLength(load3(member.at) - centre));
    }
    std::sort(members.begin(), members.end(),
              [](const Member &a, const Member &b) { return a.fromCentre > b.fromCentre; });
    WidestPair widest;
    double reached = 0.0;
    for (auto a = members.begin(); a != members.end() && 2.0 * a->fromCentre >= reached; ++a) {
        for (auto b = a + 1; b != members.end() && a->fromCentre + b->fromCentre >= reached; ++b) {
            widest.offer(a->at, a->slot, b->at, b->slot);
        }
        reached = std::sqrt(widest.square);
    }
    return widest;
}

} // namespace

float Point3DArr::GetFarthestTwoPointsM(int start, int count, int *i1, int *i2) const {
    const int first = std::max(start, 0);
    const int limit = count < 0 ? bound : count;
    WidestPair widest;
    try {
        std::vector<Member> members;
        bool allFinite = true;
        for (int i = first; i < bound && static_cast<int>(members.size()) < limit; ++i) {
            if (IsPntAvailableM(i) == TAG_AVAILABLE) {
                const float *at = slotAt(i);
                members.push_back({{at[0], at[1], at[2]}, i, 0.0});
                allFinite = allFinite && isFinitePoint(at);
            }
        }
        widest = allFinite ? searchPairs(members) : scanPairs(*this, first, limit);
    } catch (const std::bad_alloc &) {
        widest = scanPairs(*this, first, limit);
    }
    *i1 = widest.lower;
    *i2 = widest.higher;
    return toFloat(widest.square);
}
