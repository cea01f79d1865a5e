// A matrix applied to many points at once.
#pragma once

#include "trunnion/export.h"

namespace trunnion::detail {

// The ways that there are: what every processor that the library is built for can do and, where the
// compiler and the processor have them, vectors of 256 and of 512 bits. All give the same bits.
enum class VectorWidth { plain, bits256, bits512 };

// The widest way of this processor.
TRUNNION_API VectorWidth widestVectors();

// Replaces each of `count` points, float[3], whose x is above the live limit of Point3DArr, by
// slMatrix16MultiPoint3 of it, or slMatrix16MultiVector3 where `moves` is false. `width` must not
// be beyond widestVectors().
TRUNNION_API void transformPoints(const float *m, bool moves, float *points, int count,
                                  VectorWidth width = widestVectors());

} // namespace trunnion::detail
