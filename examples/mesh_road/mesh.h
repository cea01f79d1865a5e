// The mesh of the road: built from facets, stored compressed, read back, compared.
#pragma once

#include <string>

#include "soup.h"
#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/triangle_arr.h"

struct Mesh {
    NodeArr nodes;
    TriangleArr triangles;
    int version = 1;
};

struct MergeCount {
    int degenerate = 0; // two corners are one node
    int duplicate = 0;  // a facet with the same three nodes is there already
};

// Adds every facet to `mesh`, one node for all corners at one place.
MergeCount mergeFacets(const Soup &soup, Mesh &mesh);

// Writes both lists to a compressed file, and reads them from one. Throw the codes of the streams.
void save(const Mesh &mesh, const std::string &path);
// Returns the size of the file in bytes.
int load(Mesh &mesh, const std::string &path);

// Bytes of the lists in a binary stream without compression.
long long rawSize(const Mesh &mesh);

// Empty if both meshes are the same in every bit of every slot; otherwise the first difference.
std::string difference(const Mesh &a, const Mesh &b);
