// The contour as a chain of points that the axis closes: the section of the part.
#pragma once

#include <vector>

#include "contour.h"
#include "trunnion/meshes/node_arr.h"

// Begins and ends on the axis, and turns counter-clockwise about the section, as seen with Z to the
// right and X upwards: material lies on its left.
struct Profile {
    std::vector<PlanePoint> points;
    std::vector<int> elements;     // of each chord: its place in the contour, or `cap`
    static constexpr int cap = -1; // a straight chord to the axis

    double length() const; // along the axis
    double largestRadius() const;
    int steps(const Fineness &fineness) const; // of a turn, so that rows lie within the tolerance
    NodeArr row() const;                       // as nodes in the half plane y = 0, x above 0
};

// What goes beyond the axis at either end of the contour is cut off, and so is a way along the
// axis. Throws ProgramError where the contour meets the axis between its ends or encloses nothing.
Profile profileOf(const std::vector<Element> &contour, const Fineness &fineness);
