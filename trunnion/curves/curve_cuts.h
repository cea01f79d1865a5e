// Cutting a contour of lines and arcs in the z-x plane, and moving its elements to a new start.
// TouchCurD::OffsetM has its source here too.
//
// An angle t of a CUR_ARC_ZX stands for the point z = centre z + radius cos t, x = centre x +
// radius sin t, at the centre's y; the arc runs from its first angle up to its second.
#pragma once

#include "trunnion/curves/touch_cur.h"
#include "trunnion/export.h"

// Where a CUR_LINE or CUR_ARC_ZX meets the plane of constant x (four arguments) or of constant z
// (five; the last integer only selects the overload). Always 1; `count` is the number of points
// found, 0 to 2, and 0 on any other type.
//
// Row 0 and 1 of `hits` take the points, row 2 their parameters in its elements 0 and 1; what is
// not found is not written, and neither is element 2 of row 2.
//
// A line gives at most one point: its first end if that lies nearer to the plane than SL_ZERO
// (parameter 0), else its second (parameter 1), both moved onto the plane, else the crossing
// between the ends. For that the product of the signed distances of the ends must be below -1e-8
// for a constant x, below -SL_ZERO for a constant z; y is that of the first point and NO parameter
// is written.
//
// An arc gives its angles as parameters, in the range of its two angles with a slack of SL_ZERO;
// the points stand in the order of their angles within 0 to SL_TWO_PI, not in the run of the arc,
// so that the first parameter may exceed the second by up to a turn. A second angle that is more
// than SL_ZERO below the first rises by SL_TWO_PI, IN THE RECORD. With s = the distance of the
// plane from the centre by the radius, rounded to float: |s| between SL_NEAR_ONE and SL_PAST_ONE
// touches, which is one point; from SL_NEAR_ONE on there is none otherwise. A radius of 0 changes
// and finds nothing.
TRUNNION_API int slFindIntPnt(TouchCurD *curve, float x, float (*hits)[3], int *count);
TRUNNION_API int slFindIntPnt(TouchCurD *curve, float z, float (*hits)[3], int *count,
                              int constantZ);

// Cuts a line (CUR_LINE or type 164) at the station x and keeps its part from there to its second
// point, if it meets the station beyond z: (z there - z) times `sign` (1 or -1) above SL_ZERO. It
// meets the station where the product of the signed distances of its ends is below -SL_ZERO, or at
// its first end where that is nearer than SL_ZERO. `out` then takes the type, and x and z of both
// points; its y and all other fields stay. In all other cases `out` stays. The result is 0 always,
// so that only `out` tells. `out` may be `curve`.
TRUNNION_API int slZxIntCur(TouchCurD *curve, float x, float z, int sign, TouchCurD *out);

// Moves a curve so that it begins at `start`, where the element before it in a contour ended, and
// writes to `end` where it ends then; x, y, z throughout. `unused` is not read. `end` may be
// `start`.
//
//   1    CUR_LINE: its first point becomes `start`. With the mode LINE_MOVES_AS_A_WHOLE the second
//        moves along, otherwise it stays. Where the second point, moved or not, then lies at the
//        old first one (|dx| + |dy| + |dz| below SL_ZERO), the line becomes the point `start`: a
//        point does, and also a line that moves back as a whole by just its own length
//   1    154 to 159: moves as a whole, centre and both points, whatever the mode
//   0    another type: stays; `end` becomes `start`
inline constexpr int LINE_MOVES_AS_A_WHOLE = 55;
TRUNNION_API int slTouchCurTransCoord(TouchCurD *curve, int mode, const float *const unused,
                                      float *const start, float *const end);
