// The boundary of a mesh, walked step by step.
#pragma once

#include "trunnion/meshes/triangle_arr.h"

struct BoundaryCount {
    int walked = 0;  // edges that the walks passed
    int counted = 0; // edges that only one triangle has, by counting all edges
};

// Walks along every boundary with the library's steps. On a sound mesh both numbers are the same.
BoundaryCount walkBoundaries(const TriangleArr &triangles);
