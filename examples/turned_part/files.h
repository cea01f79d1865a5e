// The files of a mesh beside the compressed one: plain text and the form for databases.
#pragma once

#include <string>

#include "mesh_file.h"

// Both lists as text, and back from it. Throw the codes of the streams, 108 and 109, where the file
// cannot be written or opened.
void saveText(const Mesh &mesh, const std::string &path);
void loadText(Mesh &mesh, const std::string &path);

// The live triangles as text for a database. Throws 108.
void exportDatabase(const Mesh &mesh, const std::string &path);
