// A mesh and its compressed file: stored, read back, compared.
#pragma once

#include <string>

#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/triangle_arr.h"

struct Mesh {
    NodeArr nodes;
    TriangleArr triangles;
    int version = 1;
};

// Writes both lists to a compressed file, and reads them from one. Throw the codes of the streams.
void save(const Mesh &mesh, const std::string &path);
// Returns the size of the file in bytes.
int load(Mesh &mesh, const std::string &path);

// Bytes of the lists in a binary stream without compression.
long long rawSize(const Mesh &mesh);

// Empty if both meshes are the same in every bit of every slot; otherwise the first difference.
std::string difference(const Mesh &a, const Mesh &b);
