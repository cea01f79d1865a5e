// Builds the mesh of the road from facets.
#pragma once

#include "mesh_file.h"
#include "soup.h"

struct MergeCount {
    int degenerate = 0; // two corners are one node
    int duplicate = 0;  // a facet with the same three nodes is there already
};

// Adds every facet to `mesh`, one node for all corners at one place.
MergeCount mergeFacets(const Soup &soup, Mesh &mesh);
