#include "profile.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "program.h"
#include "trunnion/containers/item_base.h"
#include "trunnion/geometry/scalars.h"

namespace {

// More are refused: the part would take too long.
constexpr std::size_t mostPoints = 1'000'000;

struct Station {
    PlanePoint point;
    int element; // of the chord that ends here
};

using Chain = std::vector<Station>;

bool isOff(const Station &station) {
    return station.point.x > SL_ZERO;
}

void refuseTooMany(const Chain &chain) {
    if (chain.size() > mostPoints) {
        throw ProgramError("the contour takes more than " + std::to_string(mostPoints) +
                           " points at this tolerance");
    }
}

Chain stationsOf(const std::vector<Element> &contour, const Fineness &fineness) {
    Chain chain{{startOf(contour.front().curve), Profile::cap}};
    for (std::size_t i = 0; i < contour.size(); ++i) {
        for (const PlanePoint &p : pointsAlong(contour[i].curve, fineness)) {
            const PlanePoint &last = chain.back().point;
            if (std::hypot(p.z - last.z, p.x - last.x) > SL_ZERO) {
                chain.push_back({p, static_cast<int>(i)});
            }
        }
        refuseTooMany(chain);
    }
    return chain;
}

// Where the chord between two points meets the axis; `off` lies off it.
PlanePoint onAxis(const PlanePoint &beyond, const PlanePoint &off) {
    const double part = beyond.x < 0.0 ? beyond.x / (beyond.x - off.x) : 0.0;
    return {beyond.z + part * (off.z - beyond.z), 0.0};
}

// Leaves of the chain what lies off the axis, and a point on the axis at either end.
Chain closedAtAxis(const Chain &chain) {
    const auto first = std::find_if(chain.begin(), chain.end(), isOff);
    if (first == chain.end()) {
        return {};
    }
    const auto end = std::find_if(chain.rbegin(), chain.rend(), isOff).base();
    Chain closed;
    closed.push_back(first == chain.begin()
                         ? Station{{first->point.z, 0.0}, Profile::cap}
                         : Station{onAxis((first - 1)->point, first->point), Profile::cap});
    closed.insert(closed.end(), first, end);
    const Station &last = closed.back();
    closed.push_back(end == chain.end() ? Station{{last.point.z, 0.0}, Profile::cap}
                                        : Station{onAxis(end->point, last.point), end->element});
    return closed;
}

double largestRadius(const Chain &chain) {
    double radius = 0.0;
    for (const Station &station : chain) {
        radius = std::max(radius, station.point.x);
    }
    return radius;
}

double signedArea(const Chain &chain) {
    double twice = 0.0;
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const PlanePoint &a = chain[i - 1].point;
        const PlanePoint &b = chain[i].point;
        twice += a.z * b.x - b.z * a.x;
    }
    return 0.5 * twice;
}

Profile oriented(const Chain &chain, bool reverse) {
    Profile profile;
    for (const Station &station : chain) {
        profile.points.push_back(station.point);
        profile.elements.push_back(station.element);
    }
    profile.elements.erase(profile.elements.begin()); // no chord ends at the first point
    if (reverse) {
        std::reverse(profile.points.begin(), profile.points.end());
        std::reverse(profile.elements.begin(), profile.elements.end());
    }
    return profile;
}

// How many pieces a chord needs that is long against the width of its facets: the library reads an
// angle below 0.0141 radian as 0, and long facets would have such a corner.
int piecesOf(const PlanePoint &from, const PlanePoint &to, double stepAngle) {
    constexpr double longest = 20.0; // widths
    constexpr double most = 1000.0;
    const double width = stepAngle * std::min(from.x, to.x);
    const double length = std::hypot(to.z - from.z, to.x - from.x);
    return static_cast<int>(std::clamp(std::ceil(length / (longest * width)), 1.0, most));
}

// The chords at the poles stay whole: their facets have the angle of a step there.
Chain split(const Chain &chain, double stepAngle) {
    Chain pieces{chain.front()};
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const PlanePoint from = chain[i - 1].point;
        const PlanePoint &to = chain[i].point;
        const bool atPole = i == 1 || i + 1 == chain.size();
        const int count = atPole ? 1 : piecesOf(from, to, stepAngle);
        for (int k = 1; k < count; ++k) {
            const double part = static_cast<double>(k) / count;
            pieces.push_back({{from.z + part * (to.z - from.z), from.x + part * (to.x - from.x)},
                              chain[i].element});
        }
        pieces.push_back(chain[i]);
        refuseTooMany(pieces);
    }
    return pieces;
}

void refuseTouch(const Chain &chain, const std::vector<Element> &contour) {
    const auto inner = std::find_if_not(chain.begin() + 1, chain.end() - 1, isOff);
    if (inner != chain.end() - 1) {
        throw ProgramError(contour[static_cast<std::size_t>(inner->element)].line,
                           "the contour meets the axis between its ends");
    }
}

} // namespace

double Profile::length() const {
    const auto [low, high] =
        std::minmax_element(points.begin(), points.end(),
                            [](const PlanePoint &a, const PlanePoint &b) { return a.z < b.z; });
    return high->z - low->z;
}

double Profile::largestRadius() const {
    return std::max_element(points.begin(), points.end(),
                            [](const PlanePoint &a, const PlanePoint &b) { return a.x < b.x; })
        ->x;
}

int Profile::steps(const Fineness &fineness) const {
    return static_cast<int>(std::ceil(2.0 * std::numbers::pi / fineness.turnAt(largestRadius())));
}

NodeArr Profile::row() const {
    NodeArr nodes;
    nodes.AddSizeM(static_cast<int>(points.size()));
    for (const PlanePoint &p : points) {
        float point[3] = {static_cast<float>(p.x), 0.0F, static_cast<float>(p.z)};
        NodeCL node(TAG_AVAILABLE);
        node.SetPntM(point);
        nodes.AddItemM(node);
    }
    return nodes;
}

Profile profileOf(const std::vector<Element> &contour, const Fineness &fineness) {
    const Chain chain = closedAtAxis(stationsOf(contour, fineness));
    if (chain.empty()) {
        throw ProgramError(contour.back().line, "no part of the contour lies at X above 0");
    }
    refuseTouch(chain, contour);
    const double area = signedArea(chain);
    if (std::fabs(area) < SL_ZERO) {
        throw ProgramError(contour.back().line, "the contour encloses nothing");
    }
    return oriented(split(chain, fineness.turnAt(largestRadius(chain))), area < 0.0);
}
