// Two segments that are skew beyond doubt, measured fast: the common case of
// slGetLinesCoPerpenticular.
#pragma once

namespace trunnion::detail {

// What slGetLinesCoPerpenticular gives for the segments from a to b and from c to d. False, with
// nothing written, where they are not skew for sure, or lie so near to a bound that only the
// described steps can tell, and always on a processor without vectors of two doubles.
bool measureSkewSegments(const float *a, const float *b, const float *c, const float *d, float *t1,
                         float *t2, float *dist);

} // namespace trunnion::detail
