// A picture of a mesh, drawn off screen.
#pragma once

#include <stdexcept>
#include <string>

#include "mesh_file.h"

struct PictureError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Draws the mesh standing on its axis, seen from a little above, and writes a PNG file whose longer
// side has `size` pixels. Only facets whose corners turn counter-clockwise towards the eye are
// drawn, and each is lit by its own normal: a hole or a facet turned inwards shows. Throws
// PictureError.
void drawPicture(const Mesh &mesh, int size, const std::string &path);
