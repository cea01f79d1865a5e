// The mesh of a turned part.
#pragma once

#include <vector>

#include "mesh_file.h"
#include "profile.h"
#include "trunnion/containers/slot_array.h"

// The closed surface that a profile sweeps about the Z axis; normals point outwards. The triangles
// stand gore by gore, from the first point of the profile to the last.
struct Part {
    Mesh mesh;
    std::vector<int> elements; // of each triangle: what Profile::elements gives for its chord
    int gores = 0;             // strips from pole to pole in one turn
};

// Throws ProgramError if the part would have more triangles than can be handled.
Part sweep(const Profile &profile, int steps);

// The surface laid flat: three corners for each triangle, and how many triangles got theirs.
struct Unfolding {
    Point2DArr corners;
    int reached = 0;
};

Unfolding unfold(const Mesh &mesh);
