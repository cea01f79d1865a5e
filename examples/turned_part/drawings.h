// The drawings of a turned part, as SVG.
#pragma once

#include <string>
#include <vector>

#include "part.h"

// The contour with its lines and arcs, each kind in a colour, above the axis; the section below.
// Returns the text of the file.
std::string drawContour(const std::vector<Element> &contour, const Profile &profile,
                        const std::string &title);

// The surface laid flat, each part of it in the colour of its element.
std::string drawUnfolded(const Part &part, const Unfolding &flat,
                         const std::vector<Element> &contour, const std::string &title);
