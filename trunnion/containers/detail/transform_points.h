// A matrix applied to many points at once.
#pragma once

#include "trunnion/containers/detail/vector_width.h"
#include "trunnion/export.h"

namespace trunnion::detail {

// Replaces each of `count` points, float[3], whose x is above the live limit of Point3DArr, by
// slMatrix16MultiPoint3 of it, or slMatrix16MultiVector3 where `moves` is false. `width` must not
// be beyond widestVectors().
TRUNNION_API void transformPoints(const float *m, bool moves, float *points, int count,
                                  VectorWidth width = widestVectors());

} // namespace trunnion::detail
