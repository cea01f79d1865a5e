// Distances of points from lines and planes, feet and projections.
//
// A line is given by two points a and b, or by a point a and a direction. The point at its
// parameter t is a + t (b - a): a at 0, b at 1. Lines are infinite; a segment is the part with t
// from 0 to 1. A plane is a unit normal n and a number D with n dot p + D = 0 for its points; that
// n has unit length is not checked.
//
// The inputs are read before anything is written, so that an output point may be an input point.
#pragma once

#include "trunnion/export.h"

// Point and line.

// Distance of p from the line through a and b, 0 where it is below 0.0001. *t is the parameter of
// the foot of p. a and b should differ: where they are equal the foot is a, at t = 0.
TRUNNION_API float slGetPntLineDist(const float *a, const float *b, const float *p, float *t);

// The same with the square of the distance, which is not snapped to 0.
TRUNNION_API float slGetPntLineSquareDist(const float *a, const float *b, const float *p, float *t);

// The same in the plane and with a sign: positive with p on the left of a to b, negative with p on
// its right.
TRUNNION_API float slGetPntLineDist2D(const float *a, const float *b, const float *p, float *t);

// Distance of p from the line through a with the unit direction dir, 0 where it is below 0.0001. *t
// is the signed LENGTH from a to the foot of p, not a fraction.
TRUNNION_API float slGetPntLineDistByVect(const float *a, const float *dir, const float *p,
                                          float *t);

// In the plane: the foot of p on the line through a and b, and its parameter. Where the SQUARED
// length of the segment is below SL_ZERO_HALF_D (the length below about 0.00707) the foot is a, and
// *t is 1 all the same. Always 1.
TRUNNION_API int slGetLineFoot(const float *a, const float *b, const float *p, float *foot,
                               float *t);

// The foot of p on the line through a and b. The result is the signed LENGTH from a to the foot,
// not a fraction; -SL_BIG with foot not written where slNormalize finds no direction in b - a.
TRUNNION_API float slProjectPntToLine(const float *a, const float *b, const float *p, float *foot);

// Point and plane.

// Distance of p from the plane: slFabs(n dot p + D).
TRUNNION_API float slGetPntPlaneDist(const float *n, float D, const float *p);

// The foot of p on the plane. The result is the distance with a sign, positive with p on the side
// to which n points; it is not snapped to 0.
TRUNNION_API float slProjectPntToPlane(const float *n, float D, const float *p, float *foot);

// Others.

// The closest two of four points: out[0] is the one with the lower number. Of equally close pairs
// the first of (0,1), (0,2), (0,3), (1,2), (1,3), (2,3) counts. A pair counts only where its
// squared distance is below SL_BIG: out is not written where all points are 1e9 or more apart.
TRUNNION_API void slGetNearestPair(const float *p0, const float *p1, const float *p2,
                                   const float *p3, float (*out)[3]);

// In the XZ plane: the point of the line through a and b at the height z of p, with y = 0. Where
// slFabs of b.z - a.z is at most SL_ZERO the line runs along X, and out is a copy of that one of a
// and b whose x is nearer to p's, y included; b where both are as near.
TRUNNION_API void slProjToLineAlongXOnXZ(const float *a, const float *b, const float *p,
                                         float *out);

// In the XZ plane: the point of the segment from a to b at the x of p, with slack beyond its ends.
// Below, the nearer end is a copy of that one of a and b whose z is nearer to p's, y included; b
// where both are as near. Let m = slFabs(b.x - a.x).
//
// m above SL_ZERO: t is the parameter at the x of p. The slack s, in units of t, is tol/m if m is
// above 1, otherwise the lesser of m and tol.
//   0  t is at most -s, or at least 1 + s         out is not written
//   1  t strictly from -SL_ZERO to SL_PAST_ONE    out is the point at t, with y = 0
//   1  otherwise                                  out is the nearer end
// m at most SL_ZERO: the segment runs along Z.
//   0  slFabs(a.x - p.x) is not below tol         out is not written
//   1  p.z less than SL_ZERO beyond the ends      out is a copy of p, y included
//   1  otherwise, however far beyond              out is the nearer end
TRUNNION_API int slProjToLineAlongZOnXZ(const float *a, const float *b, const float *p, float tol,
                                        float *out);
