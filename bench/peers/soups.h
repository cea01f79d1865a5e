// Meshes as loose triangles, the input of what makes and measures meshes.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/peers/contest.h"

namespace bench {

// Three corners for each triangle, one triangle behind the other.
using Soup = std::vector<Point>;

// About this number of triangles: a square patch of a sphere, cut into fields of two. Coordinates
// are up to 50 with steps of 100 over the root of half the count. Each coordinate of each corner is
// moved by up to `jitter` by itself: corners that belong together are exactly equal only if it is
// 0.
Soup gridSoup(int triangles, float jitter = 0.0F);

// The triangles of a binary STL file. Ends the program if the file cannot be read.
Soup readSoup(const std::string &path);

// The mesh that a soup makes by merging its corners and triangles, with the normals of the facets.
Patch meshOf(const Soup &soup);

// Registers a row "work/name of the mesh" for each STL file of the folder that the environment
// variable TRUNNION_MESHES names; without it a single row that tells that it is not measured. Made
// at namespace scope.
class MeshRows {
public:
    MeshRows(const std::string &work, const std::function<void(Contest &, const Soup &)> &declare);
};

} // namespace bench
