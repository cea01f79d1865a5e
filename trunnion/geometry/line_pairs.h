// Two lines or two segments in space: whether they lie in one plane, where they cross, how far
// apart they are and where the feet of their common perpendicular fall.
//
// The points a and b span the first line, with the parameter t1 (0 at a, 1 at b); c and d span the
// second, with t2. Lines are infinite; a segment is the part with its parameter from 0 to 1.
// What a result leaves unmentioned is not written. No output may overlap an input.
#pragma once

#include "trunnion/export.h"
#include "trunnion/geometry/scalars.h"

// Crossing.

// Cuts two infinite lines of which the caller knows that they lie in one plane.
//   SL_LINES_APART  parallel and apart, or too short to tell
//   SL_LINES_CROSS  not parallel: t1 and t2 are the crossing
//   SL_COINCIDENT   on one line
// Parallel means that the squared sine of their angle is below SL_ZERO_SQR_D; they are apart where
// slGetPntLineDist(a, b, c) is not below SL_ZERO. Too short means that the projections of b - a and
// d - c on every coordinate plane have a determinant within SL_ZERO: two vectors of length 0.005 at
// right angles are. The parameters are those of the crossing in the coordinate plane with the
// greatest determinant: lines that lie in no common plane get SL_LINES_CROSS and that crossing too.
inline constexpr int SL_LINES_APART = 0;
inline constexpr int SL_LINES_CROSS = 1;
TRUNNION_API int slIntersectLines3D(const float *a, const float *b, const float *c, const float *d,
                                    float *t1, float *t2);

// Whether the lines lie in one plane.
//   SL_LINES_COPLANAR  they do: n dot d + D is below SL_ZERO in magnitude, with the plane of a, b,
//   c SL_LINES_SKEW      they do not
// n is the unit normal of that plane. Where a, b and c lie on one line, or two of them are equal,
// there is no such plane, but the lines share a point: the result is SL_LINES_COPLANAR, and n is
// what slPlaneNormal leaves there.
inline constexpr int SL_LINES_COPLANAR = 2;
inline constexpr int SL_LINES_SKEW = 3;
TRUNNION_API int slJudgeLineCoPlane(const float *a, const float *b, const float *c, const float *d,
                                    float *n);

// Cuts the infinite lines through a along da and through c along dc; t1 and t2 count in units of da
// and dc. Each line is spanned by its point and the point 10 vectors further on, so that a pair of
// unit vectors is not too short; slJudgeLineCoPlane then decides.
//   SL_LINES_NOT_COPLANAR  t1 and t2 are the feet of the common perpendicular
//   SL_LINES_CROSS         t1 and t2 are the crossing
//   SL_LINES_APART         as for slIntersectLines3D; t1 and t2 become 10 times what they held
//   SL_COINCIDENT          before, so they must hold numbers
inline constexpr int SL_LINES_NOT_COPLANAR = -1;
TRUNNION_API int slIntersectInfLines(const float *a, const float *da, const float *c,
                                     const float *dc, float *t1, float *t2);

// Distances of infinite lines.

// Distance of the lines in any position. Where slNormalize finds no direction in (b - a) cross (d -
// c), the lines count as parallel and it is that of c from the first line.
TRUNNION_API float slGetLineDist(const float *a, const float *b, const float *c, const float *d);

// For lines in one plane. Where slIntersectLines3D gives SL_LINES_CROSS, *dist is 0 and t1 and t2
// are the crossing; otherwise *dist is the distance of c from the first line, t1 the foot of c, and
// t2 0.
TRUNNION_API void slGetCoPlaneInfLineDist(const float *a, const float *b, const float *c,
                                          const float *d, float *t1, float *t2, float *dist);

// For lines that do not lie in one plane: their distance, and the feet of their common
// perpendicular. The lines must not be parallel.
TRUNNION_API void slGetDifPlaneInfLineDist(const float *a, const float *b, const float *c,
                                           const float *d, float *t1, float *t2, float *dist);

// For all lines: judges by slJudgeLineCoPlane, goes on with the one or the other of the two above,
// and gives the judgement, SL_LINES_COPLANAR or SL_LINES_SKEW.
TRUNNION_API int slGetInfLinesCoPerpenticular(const float *a, const float *b, const float *c,
                                              const float *d, float *t1, float *t2, float *dist);

// Distances of segments. A parameter counts as on its segment strictly between -SL_ZERO and
// SL_PAST_ONE.

// For segments in one plane.
// - They cross: *dist is 0 and t1 and t2 are the crossing. Here t1 counts up to SL_PAST_ONE2.
// - Otherwise the least of the distances of c and d from the first line, and of a and b from the
//   second, among those with the foot on the other segment; of equal ones the first in that order.
//   One parameter is the foot, the other that of the end point, 0 or 1.
// - No foot lies on a segment, since the nearest points are two end points: *dist, t1 and t2 are
//   SL_BIG.
TRUNNION_API void slGetCoPlaneLineDist(const float *a, const float *b, const float *c,
                                       const float *d, float *t1, float *t2, float *dist);

// For segments that do not lie in one plane; they must not be parallel. The second segment is moved
// along the common perpendicular into the plane of the first. t1 and t2 are what
// slGetCoPlaneLineDist gives there. *dist is the length of that move where both lie on their
// segments, otherwise what slGetCoPlaneLineDist gave.
//
// Where t1 and t2 are a foot and an end point, the distance within the plane is NOT part of *dist:
// form the distance of the points at t1 and t2 where that matters.
TRUNNION_API void slGetDifPlaneLineDist(const float *a, const float *b, const float *c,
                                        const float *d, float *t1, float *t2, float *dist);

// For all segments: judges by slJudgeLineCoPlane, goes on with the one or the other of the two
// above, and gives the judgement, SL_LINES_COPLANAR or SL_LINES_SKEW.
TRUNNION_API int slGetLinesCoPerpenticular(const float *a, const float *b, const float *c,
                                           const float *d, float *t1, float *t2, float *dist);
