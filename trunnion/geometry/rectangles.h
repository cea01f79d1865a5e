// Rectangles in space: brought to a standard position, built around circles, arcs, spheres and
// cylinders, and used as frames. A shape inside a frame is panned by a vector, and the pan is cut
// short so that the shape stays inside.
//
// A plane rectangle lies in z = 0 of the coordinates of its arguments: only x and y of those count,
// and the z of all four corners is 0. One along the axes has c0 at the least and c2 at the greatest
// x and y. Lengths are in the caller's units, angles in radians; points are float[3], plane points
// float[2] or the start of a float[3]. Every bound is strict. Nothing allocates or keeps state.
#pragma once

#include "trunnion/export.h"

// Four corners, counter-clockwise seen from the side of the normal: c0 to c1 is the local +X
// direction, c0 to c3 the local +Y direction, and c2 lies opposite c0.
//
// A STANDARD rectangle has c0 at the origin, c1 on the +X axis and c3 on the +Y axis: its width is
// c1[0] and its height c3[1].
struct RectangleD {
    float c0[3];
    float c1[3];
    float c2[3];
    float c3[3];
};

// Standard position.

// M = the motion into the frame slGenXYCoordSys(c0, c1, c3) of R, and S = R moved by M: a standard
// rectangle. Result 1, or 0 with nothing written if the corners span no plane.
TRUNNION_API int slTransToStdRect(const RectangleD &R, RectangleD *S, float *M);

// out = R with each corner moved by M (slMatrix16MultiPoint3). out may be R.
TRUNNION_API void slTransRectangleByMatrix(const RectangleD &R, const float *M, RectangleD *out);

// Moves Q, in place, so that it no longer sticks out of R by rounding; both lie along the axes. In
// this order: if c0 of Q lies to the left of c0 of R, Q moves right until it ends SL_ZERO inside;
// the same at the lower side; then the same for c2 at the right and at the upper side. Of a Q that
// is too large the last move stands.
TRUNNION_API void slCorrectRectContainError(const RectangleD &R, RectangleD *Q);

// Point in rectangle: 1 inside, 0 outside.

// For a standard rectangle, with the tolerance: x is above -SL_ZERO and below the width + SL_ZERO,
// and y likewise.
TRUNNION_API int slJudgePntInRectM(const RectangleD &S, const float *p);

// For the plane rectangle along the axes with the lower left corner o and the extents size, without
// a tolerance: a point on an edge is outside.
TRUNNION_API int slJudgePntInRectM(const float *o, const float *size, const float *p);

// Bounding rectangles, in the plane.

// Along the axes around the circle about center through p. Its radius is the distance in SPACE
// (slGetCircleRadius).
TRUNNION_API void slGetCircleRectangle(const float *center, const float *p, RectangleD *R);

// Along the axes around the arc about center from p1 to p2, with the radius of p1:
// counter-clockwise if dir is SL_RECT_ARC_CCW, clockwise for ANY OTHER value, CUR_DIR_CCW included.
// Ends nearer than SL_ZERO in angle to an axis count as on it; equal ends give the rectangle of
// that one point.
inline constexpr short SL_RECT_ARC_CCW = 147;
TRUNNION_API void slGetArcRectangle(short dir, const float *p1, const float *p2,
                                    const float *center, RectangleD *R);

// The least x and y (lo) and the greatest (hi) of an arc of radius r about the origin from u at the
// angle a1 to v at the angle a2, angles from 0 to SL_TWO_PI, counter-clockwise or clockwise. A side
// lies at the radius where its axis angle is on the arc, with SL_ZERO of slack at both ends, and
// otherwise at the further of u and v.
TRUNNION_API void slGetCCWArcRectangle(const float *u, const float *v, float a1, float a2, float r,
                                       float *lo, float *hi);
TRUNNION_API void slGetCWArcRectangle(const float *u, const float *v, float a1, float a2, float r,
                                      float *lo, float *hi);

// Around a sphere seen from above, with c0 to c1 along the plane direction of d; along the axes if
// d has none (the slFabs of its x and y sum up to less than SL_ZERO).
TRUNNION_API void slGetSphereProjRect(const float *c, float r, const float *d, RectangleD *R);

// Around a cylinder seen from above: base centre c, unit axis v, radius r, length h (below 0 it
// extends against v). c0 to c1 runs along the plane direction of v, and no rectangle with its sides
// in that direction is smaller: across it reaches r to both sides, along it the ellipse of a base
// reaches r |v.z| beyond its centre. If v has no plane direction (as for slGetSphereProjRect), it
// is the square along the axes about c, and h plays no part.
TRUNNION_API void slGetCylinderProjRect(const float *c, const float *v, float r, float h,
                                        RectangleD *R);

// Joins two rectangles of one direction, B ahead of A along it: the near side (c0, c3) is that of
// A, brought to the width of B about its middle, the far side (c1, c2) that of B. out may be A or
// B.
TRUNNION_API void slMergeRectWithSameDir(const RectangleD &A, const RectangleD &B, RectangleD *out);

// Pan limits. Each writes out = k v with the greatest allowed k from 0 to 1, and gives
//   1  the pan is not cut: k is 1
//   0  it is cut short
// The rule, for each point g of the shape in order: if g + v lies outside the frame S by
// slJudgePntInRectM, the pan is not longer than the distance from g to where
// slGetLineSegIntersectRect finds the boundary, and is nothing where that finds none (g lies
// outside already, or v is parallel to the edge within SL_ZERO). A v shorter than 0.0001 is not
// cut. out may be v.

// Frame S standard, Q and v in its coordinates; Q must lie inside.
TRUNNION_API int slGetStdRectMinPanDisplace(const RectangleD &S, const RectangleD &Q,
                                            const float *v, float *out);

// Frame R in any position. Q and v are moved into its standard position, where v loses its z; out
// comes back as a vector and thus lies in the plane of R. If R is no rectangle (slTransToStdRect
// gives 0), out is (0, 0, 0) and the result 0.
TRUNNION_API int slGetRectMinPanDisplace(const RectangleD &R, const RectangleD &Q, const float *v,
                                         float *out);

// The same with the frame S already standard and the motion M that took it there. Q, moved by M, is
// brought inside by slCorrectRectContainError before it is panned.
TRUNNION_API int slGetStdRectMinPanDisp(const RectangleD &S, const float *M, const RectangleD &Q,
                                        const float *v, float *out);

// A plane segment from p to q in the standard frame S.
TRUNNION_API int slCheckLineInRect(const RectangleD &S, const float *p, const float *q,
                                   const float *v, float *out);

// An arc in the standard frame S, by its slGetArcRectangle; the whole circle, by its
// slGetCircleRectangle, if slDistance3 of p1 and p2 is below SL_ZERO.
TRUNNION_API int slCheckArcInRect(short dir, const RectangleD &S, const float *p1, const float *p2,
                                  const float *center, const float *v, float *out);

// Where the plane segment from a to b crosses the boundary of S, which may lie in any direction.
// Result 1 with the crossing in out (x and y), or 0 with out not written. The edges c0 to c1, c1 to
// c2, c2 to c3, c3 to c0 are tried in that order, with the slack of slIntersectLines2D and SL_ZERO
// beyond the edge's end; the first that is crossed decides, also where another lies nearer to a. A
// parallel edge is not crossed.
TRUNNION_API int slGetLineSegIntersectRect(const RectangleD &S, const float *a, const float *b,
                                           float *out);
