// Reads mesh files (STL, OBJ, PLY) through assimp.
#pragma once

#include <string>

#include "file_check.h"
#include "soup.h"

// All facets of the file, corner by corner as they stand there; polygons are cut into triangles,
// points and lines are passed over. Throws ImportError for a file that is missing, empty, cut short
// or no mesh.
Soup importMesh(const std::string &path);
