// Frames that only the library itself builds.
#pragma once

#include "trunnion/geometry/planes.h"

namespace trunnion::detail {

// Result of slGenXYCoordSysByNorm where the line from p to q is not at right angles to n.
inline constexpr int FRAME_NOT_PERPENDICULAR = 3;

// Frame with origin p, x axis toward q, z axis n (a unit vector). Where p and q coincide, the x and
// y axes are those of slOthPlane(n). Result 1, or FRAME_NOT_PERPENDICULAR with cs not written where
// slFabs of the sine of q's elevation over the plane is not below SL_ZERO.
int slGenXYCoordSysByNorm(const float *p, const float *q, const float *n, XYCoordSysD *cs);

} // namespace trunnion::detail
