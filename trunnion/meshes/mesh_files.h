// Mesh lists as text files and in database form. The readers, writers and exports are members of
// NodeArr, TriangleArr and QuadArr and declared there.
#pragma once

#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/quad_arr.h"
#include "trunnion/meshes/triangle_arr.h"
