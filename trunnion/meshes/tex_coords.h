// Texture coordinates: a triangle mesh unfolded into the plane. The operations are members of the
// list and of its triangles, TriangleArr::GetTexCoordM and TriangleCL::SetTexCoordM, and declared
// there.
#pragma once

#include "trunnion/meshes/triangle_arr.h"
