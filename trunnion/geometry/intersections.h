// Intersections: rays with segments, lines with planes, planes with planes, and lines, circles,
// spheres, planes and cones with each other; circles and spheres through points.
//
// Every function answers with a small code of its own, told in its comment together with what it
// writes; outputs not named there are left as they were. Codes with more than two outcomes have
// names, those with two are 1 for done and 0 for degenerate input.
//
// The order of the branches decides what a nearly tangent or nearly parallel case counts as, and
// every bound is taken strictly or not as its comment says. A distance that is compared is the
// kernel's own and thus 0 below 0.0001. A plane is a unit normal n and a float D with
// n dot p + D = 0, or a point and a normal; unit vectors are not checked. Lengths are in the
// caller's units, angles in radians. Nothing allocates. Outputs must not overlap inputs.
#pragma once

#include "trunnion/containers/item_base.h"
#include "trunnion/export.h"
#include "trunnion/geometry/arc_directions.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/scalars.h"

// Lines.

// Solves the system A x = b, row by row, by Cramer's rule. Result 1, or 0 with x not written if
// slFabs of the determinant is below SL_ZERO; the bound does not scale with the coefficients.
TRUNNION_API int slLineEquation2(float (*A)[2], float *b, float *x);

// A ray against a segment in the plane: from p along the unit vector dir, against c to d. t is a
// length along the ray, s a fraction of the segment.
//   SL_RAY_MISSES   no common point. t and s are the crossing of the lines; 0 if a segment shorter
//                   than 0.0001 runs exactly along dir or is a point; not written if the segment is
//                   parallel and wholly behind p, by SL_ZERO or more
//   SL_RAY_CROSSES  t above -SL_ZERO, s above -SL_ZERO and below SL_PAST_ONE_D. t has no upper
//                   limit
//   SL_COINCIDENT   parallel and not wholly behind p: s = 0 and t = length to c, or 0, if c is not
//                   behind p; otherwise s = 1 and t = 0
// They are parallel if the sine of their angle is below SL_ZERO and the segment not shorter than
// 0.0001. Their distance is not asked: a parallel segment BESIDE the ray counts as coincident.
inline constexpr int SL_RAY_MISSES = 0;
inline constexpr int SL_RAY_CROSSES = 1;
TRUNNION_API int slIntersectLines2D(const float *p, const float *dir, const float *c,
                                    const float *d, float *t, float *s);

// The infinite line through a along dir (of any length) against the segment c to d, in space. s is
// the fraction of the segment at their crossing; for lines that do not meet, at the point of c to d
// that is nearest to the line. For a pair that slVectParallel calls parallel, and where c = d or
// dir is 0, s is s0. Result 1 with out = (1 - s) c + s d if s lies strictly between -SL_ZERO and
// SL_PAST_ONE, otherwise 0 with out not written.
TRUNNION_API int slIntersecLines(const float *a, const float *dir, const float *c, const float *d,
                                 float *out, float s0);

// Lines and planes.

// Codes of slLineIntersectPlane and slRadialIntersectPlane. A line is parallel if slFabs of
// dir dot n is below SL_ZERO; it then lies in the plane if slFabs of a dot n + D is below SL_ZERO.
inline constexpr int SL_LINE_HITS_BEHIND = -1;
inline constexpr int SL_LINE_HITS = 1;
inline constexpr int SL_LINE_OFF_PLANE = 2;
inline constexpr int SL_LINE_IN_PLANE = 3;

// The infinite line through a along dir against the plane n, D.
//   SL_LINE_HITS       out is the point
//   SL_LINE_OFF_PLANE  parallel, off the plane
//   SL_LINE_IN_PLANE   in the plane
TRUNNION_API int slLineIntersectPlane(const float *a, const float *dir, const float *n, float D,
                                      float *out);

// A ray from a along dir against the plane n, D.
//   SL_LINE_HITS         out is the point ahead of a, or a copy of a if slFabs of a dot n + D is
//                        below SL_ZERO
//   SL_LINE_HITS_BEHIND  out is the point, which lies behind a
//   SL_LINE_OFF_PLANE    parallel, off the plane
//   SL_LINE_IN_PLANE     in the plane
TRUNNION_API int slRadialIntersectPlane(const float *a, const float *dir, const float *n, float D,
                                        float *out);

// Two planes, each a point and a unit normal. Mind that 1 is no success here.
//   SL_PLANES_CROSS     pnt and the unit vector dir along n1 cross n2 span the common line; pnt is
//                       where the line through p1, in the first plane and at right angles to the
//                       cut, meets the second plane
//   SL_PLANES_EQUAL     the same plane: p2 is nearer to the first plane than SL_ZERO; dir = (1, 0,
//                       0)
//   SL_PLANES_PARALLEL  parallel and apart; dir = (1, 0, 0)
// Planes are parallel if the length of n1 cross n2 is at most SL_ZERO. At that very bound rounding
// can make slLineIntersectPlane see no crossing: pnt is then left alone.
inline constexpr int SL_PLANES_PARALLEL = 1;
inline constexpr int SL_PLANES_EQUAL = 2;
inline constexpr int SL_PLANES_CROSS = 3;
TRUNNION_API int slGetPlaneIntersectM(const float *p1, const float *n1, const float *p2,
                                      const float *n2, float *pnt, float *dir);

// One point of the line that two planes share, their normals being of any length: the one with
// x = 0, or else with y = 0, or else with z = 0, whichever slLineEquation2 solves first. Result 1,
// or 0 with out not written if it solves none (parallel planes).
TRUNNION_API int slGetPointOnIntersectLine(const PlaneD &P, const PlaneD &Q, float *out);

// Circles in the plane: points have two components.

// Circumcentre of three plane points. Result 1, or 0 with center not written if slLineEquation2
// does not solve it: eight times the area of the triangle is below SL_ZERO. The arguments are only
// read.
TRUNNION_API int slCircumcenter(float *p1, float *p2, float *p3, float *center);

// Radius of the circle about center through p, points in SPACE: their slDistance3.
TRUNNION_API float slGetCircleRadius(const float *center, const float *p);

// Angle of the plane point p on the circle about center, 0 to SL_TWO_PI, counter-clockwise from +X,
// by slAcos of the offset in x over r. A circle with r = 0 gives 0.
TRUNNION_API float slGetCircleAng(const float *center, const float *p, float r);

// Angle of a vector in the XY plane, 0 to SL_TWO_PI, counter-clockwise from +X, by slAcos of
// x over slLength(v): three components are read. A vector without length gives 0.
TRUNNION_API float slGetCentralAngle(const float *v);

// The plane segment p0 to p1 against a circle. A crossing is a plane point pt, its parameter t (0
// at p0, 1 at p1) and its slGetCircleAng ang. Result 0 if the infinite line misses the circle,
// otherwise 1; *count is the number of crossings in both cases:
//   0  both ends inside, or both outside with the foot of the center beyond the segment, or p0 and
//      p1 are equal: nothing else is written
//   1  one end inside: pt1, t1, ang1
//   2  both ends outside, the foot between them: the crossing nearer to p1 in pt1, t1, ang1, that
//      nearer to p0 in pt2, t2, ang2
// An end on the circle counts as inside; but if the foot lies beyond the segment, the farther end
// on the circle counts as outside. slGetLineFoot takes a segment shorter than about 0.00707 as a
// point at p0 with the parameter 1: crossings of so short a segment are not to be relied on.
TRUNNION_API int slLineIntCircle(const float *p0, const float *p1, const float *center, float r,
                                 float *pt1, float *t1, float *ang1, float *pt2, float *t2,
                                 float *ang2, int *count);

// Lines and circles in space.

// The infinite line through p and q against a sphere, or against a circle whose plane holds the
// line.
//   SL_LINE_NO_DIRECTION  p and q coincide (slNormalize of q - p fails)
//   SL_LINE_ONE_POINT     out[0] is the point of the line nearest to the center: the line touches,
//                         or it MISSES. There is no code for a miss
//   SL_LINE_TWO_POINTS    out[0] lies further along p to q than out[1]
// The line has two points if the squared distance of the center from it is below r^2 -
// SL_ZERO_SQR, and if it passes through the center: slGenXYCoordSys of center, p and q fails.
inline constexpr int SL_LINE_NO_DIRECTION = 0;
inline constexpr int SL_LINE_ONE_POINT = 1;
inline constexpr int SL_LINE_TWO_POINTS = 2;
TRUNNION_API int slIntersectLineCircle(const float *center, float r, const float *p, const float *q,
                                       float (*out)[3]);

// The same function under the name of its use on spheres.
TRUNNION_API int slIntersectLineSphere(const float *center, float r, const float *p, const float *q,
                                       float (*out)[3]);

// Two circles in the plane with the unit normal norm.
//   SL_CIRCLES_TILTED  the line of centers is not at right angles to norm: the sine is SL_ZERO or
//                      more
//   SL_CIRCLES_APART   no common point
//   SL_CIRCLES_TOUCH   out[0]: the distance of the centers is nearer than SL_ZERO to the sum of the
//                      radii, or to their difference
//   SL_CIRCLES_CROSS   out[0] is the point on the left of c1 to c2, seen from the tip of norm,
//                      out[1] the one on the right
//   SL_COINCIDENT      the same circle
// Two circles with one center whose radii sum up to less than SL_ZERO touch.
inline constexpr int SL_CIRCLES_TILTED = -1;
inline constexpr int SL_CIRCLES_APART = 0;
inline constexpr int SL_CIRCLES_TOUCH = 1;
inline constexpr int SL_CIRCLES_CROSS = 2;
TRUNNION_API int slIntersectCircle(const float *c1, float r1, const float *c2, float r2,
                                   const float *norm, float (*out)[3]);

// The fillet of radius r in the corner at o between the rays toward p1 and p2: its center, and the
// points t1 and t2 where it touches the rays. Opposite rays give a center in +X from o, and o for
// both points.
//   CUR_DIR_CW      the turn from the first ray to the second is positive about norm
//   CUR_DIR_CCW     it is not
//   SL_DELETED_INT  p1 or p2 coincides with o, or the rays run the same way: the sine of half the
//                   corner angle is at most SL_ZERO_D. center[0] = SL_BIG, nothing else is written
TRUNNION_API int slGetTangentCircle(const float *o, const float *p1, const float *p2,
                                    const float *norm, float r, float *center, float *t1,
                                    float *t2);

// The circle through three points in space: center, unit normal and radius. Result 1, or 0 with
// nothing written if the points lie on one line by slGenXYCoordSys, or so close together that
// slCircumcenter has no answer. Where twice the area of the triangle is not above SL_ZERO, the
// frame of slGenXYCoordSys and with it the normal can be wrong.
TRUNNION_API int slGenCircle(const float *p0, const float *p1, const float *p2, float *center,
                             float *normal, float *radius);

// The same by way of a rotation of the plane, without the normal. Result 1, or 0 with nothing
// written if slPlaneNormal or slCircumcenter gives 0.
TRUNNION_API int slCircumCenter3D(const float *a, const float *b, const float *c, float *center,
                                  float *radius);

// Spheres, planes and cones.

// The sphere through four points. Result 1, or 0 with nothing written if p0, p1, p2 or p0, p1, p3
// span no circle by slGenCircle, or if all four lie in one plane: the normals of the two circles
// are parallel by slVectParallel.
TRUNNION_API int slGenSphere(const float *p0, const float *p1, const float *p2, const float *p3,
                             float *center, float *radius);

// Codes of the functions that cut a sphere or a cone.
//   SL_SECTION_NONE    no common point: nothing is written
//   SL_SECTION_POINT   a single point, in center; nothing else is written
//   SL_SECTION_CIRCLE  a circle: all outputs are written
inline constexpr int SL_SECTION_NONE = 0;
inline constexpr int SL_SECTION_POINT = 1;
inline constexpr int SL_SECTION_CIRCLE = 3;

// Two spheres; normal runs from c1 to c2. They share a point if their distance is not above r1 + r2
// and nearer to it than SL_ZERO. A sphere WHOLLY INSIDE the other gives a circle of radius 0. Two
// spheres with one center give SL_SECTION_NONE, the same sphere too.
TRUNNION_API int slGetShereIntersect(const float *c1, float r1, const float *c2, float r2,
                                     float *center, float *normal, float *radius);

// A plane, given by the point p and the unit normal n, against the sphere about c. Nothing is
// shared if the distance of c from the plane is above r, a point if it is nearer to r than SL_ZERO.
TRUNNION_API int slIntersectPlaneSphereM(const float *p, const float *n, const float *c, float r,
                                         float *center, float *radius);

// A plane, given by the point p and the unit normal n at right angles to the axis, against a cone
// that opens from apex toward MINUS the unit vector axis with the half angle angle. With w = apex -
// p: the plane passes through the apex (SL_SECTION_POINT) if slFabs of w dot axis is below the
// length of w times SL_ZERO, and lies on the far side of it (SL_SECTION_NONE) if w dot axis is
// below -SL_ZERO. center is the foot of the apex on the plane. Where p and apex coincide, the
// section is a circle of radius 0.
TRUNNION_API int slIntersectPlaneCone(const float *p, const float *n, const float *apex,
                                      const float *axis, float angle, float *center, float *radius);
