// How wide the vectors of the processor are.
#pragma once

#include "trunnion/export.h"

namespace trunnion::detail {

// The ways that there are to work with vectors: what every processor that the library is built for
// can do and, where the compiler and the processor have them, vectors of 256 and of 512 bits. What
// has several ways gives the same bits in all of them.
enum class VectorWidth { plain, bits256, bits512 };

// The widest way of this processor.
TRUNNION_API VectorWidth widestVectors();

} // namespace trunnion::detail
