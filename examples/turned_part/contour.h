// The finished contour of a turned part as curves of the library.
#pragma once

#include <vector>

#include "toolpath.h"
#include "trunnion/curves/touch_cur.h"

// How fine a part is made.
struct Fineness {
    double tolerance;    // how far a chord may lie off its arc, in millimetres
    double largestTurn;  // of a chord, in radians
    double longestChord; // of an arc

    // The turn of the longest chord of an arc.
    double turnAt(double radius) const;
};

// An element of the contour: a CUR_LINE or a CUR_ARC_ZX in the plane y = 0, x being the radius.
struct Element {
    TouchCurD curve;
    int line; // of the program
};

// The elements in the order of the cut. An arc that the library takes for flat becomes a line, but
// only as long as it bulges by less than `tolerance`.
std::vector<Element> contourOf(const std::vector<Move> &moves, double tolerance);

// Number of elements of a type of curve.
int countOf(int type, const std::vector<Element> &contour);

// Points along an element, its start left out and its end included.
std::vector<PlanePoint> pointsAlong(const TouchCurD &curve, const Fineness &fineness);

PlanePoint startOf(const TouchCurD &curve);
PlanePoint endOf(const TouchCurD &curve);
