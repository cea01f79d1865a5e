// The panels of the gallery. Each draws into a box whose upper left corner is given.
#pragma once

#include "svg.h"

constexpr int PANEL_WIDTH = 400;
constexpr int PANEL_HEIGHT = 340;

// arc_panels.cpp: what the construction functions answer.
void drawEndsAndRadius(Svg &svg, Pnt box);
void drawEndsAndSweep(Svg &svg, Pnt box);
void drawCentreAndSweep(Svg &svg, Pnt box);
void drawKindsOfArcs(Svg &svg, Pnt box);

// circle_panels.cpp: the geometry kernel around circles and rectangles.
void drawFillets(Svg &svg, Pnt box);
void drawTangency(Svg &svg, Pnt box);
void drawPan(Svg &svg, Pnt box);

// contour_panel.cpp: a chain of curve records; two panels wide.
void drawContour(Svg &svg, Pnt box);

// Frame, title and a line of explanation.
void drawBox(Svg &svg, Pnt box, int panelsWide, const char *title, const char *note);

// One of the four quarters of a panel: a view whose origin is the middle of the quarter, and two
// lines of label under it.
View quarterOf(Svg &svg, Pnt box, int index, double scale);
void labelQuarter(Svg &svg, Pnt box, int index, const std::string &first,
                  const std::string &second);

// The points of an arc about a centre, from one angle to another, in radians.
std::vector<Pnt> arcPoints(Pnt centre, double radius, double from, double to);
// Draws them with an arrow in the middle.
void drawArc(const View &view, Pnt centre, double radius, double from, double to, Style style);
