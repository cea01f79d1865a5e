// Vector primitives of the geometry kernel: lengths and distances, directions, angles. Included by
// scalars.h, which defines the tolerances named here and says what holds for all functions.
#pragma once

#include "trunnion/export.h"

// Lengths and distances. Every root is taken by slSqrt: a length or distance below 0.0001 is 0.

// Length of a vector.
TRUNNION_API float slLength(const float *v);
TRUNNION_API double slLength(const double *v);
// The same with a double result, not rounded to float.
TRUNNION_API double slLengthD(const float *v);
// The same as slLength: three components, in spite of the digit in its name.
TRUNNION_API float slNorm2(const float *v);

// Length of a plane vector.
TRUNNION_API float slLength2(const float *v);
TRUNNION_API double slLength2(const double *v);
// Squared length of a plane vector; not snapped.
TRUNNION_API double slSquareLength2(const float *v);
TRUNNION_API double slSquareLength2(const double *v);

// Distance of two points in space.
TRUNNION_API float slDistance(float x1, float y1, float z1, float x2, float y2, float z2);
TRUNNION_API float slDistance3(const float *a, const float *b);
// Its square; not snapped.
TRUNNION_API double slSquareDistance3(const float *a, const float *b);

// Distance of two plane points.
TRUNNION_API float slDistance2(const float *a, const float *b);
TRUNNION_API double slDistanceD2(const double *a, const double *b);
// Its square; not snapped.
TRUNNION_API float slDistSquare2(float x1, float y1, float x2, float y2);
TRUNNION_API double slPlaneDistSqr(const float *a, const float *b);

// Dot product of two plane vectors.
TRUNNION_API float slDot2D(const float *a, const float *b);

// Normalising and direction. A vector has no direction where its length is at most SL_ZERO
// (SL_ZERO_D for doubles, the same value): it becomes +X, and the result is 0 where there is an int
// result, otherwise 1.

// Divides v by its length, in place.
TRUNNION_API int slNormalize(float *v);
TRUNNION_API int slNormalize(double *v);

// The same for a plane vector; without direction it becomes (1, 0).
TRUNNION_API int slNormalize2D(double *v);
TRUNNION_API int slNormalize2D(float *v);

// Returns the length of v and writes its direction to dir, (1, 0, 0) where there is none.
TRUNNION_API float slLenAndDir(const float *v, float *dir);

// Unit vector from a to b; (1, 0, 0) and 0 for a pair of equal points. The float form rounds b - a
// to float before it normalises.
TRUNNION_API int slGetNormalVectBtPnts(const float *a, const float *b, float *out);
TRUNNION_API int slGetNormalVectBtPnts(const float *a, const float *b, double *out);

// The two arms at the middle point b: u = a - b, w = c - b. Always 1.
TRUNNION_API int slVect(const float *a, const float *b, const float *c, float *u, float *w);

// A unit vector at right angles to v, whatever the length of v: the first coordinate axis whose
// component of v is nearer to 0 than SL_ZERO, otherwise (-y, x, 0) normalised. The zero vector
// gives (1, 0, 0).
TRUNNION_API void slOthVect(const float *v, float *out);

// Two axes u and w of the plane with normal n: u by slOthVect, w = n cross u, normalised.
TRUNNION_API void slOthPlane(const float *n, float *u, float *w);

// Divides the three components of v by d, in place. There is no guard: d must not be 0.
TRUNNION_API void slSetPnt3DValueByDiv(float d, float *v);

// 1 if a and b have the same or opposite directions: the length of a cross b is below
// length(a) length(b) SL_ZERO. 0 if not, or if either length is at most SL_ZERO. The length of the
// cross product snaps to 0 like any other, so that two vectors as short as 0.005 are parallel at
// any angle.
TRUNNION_API int slVectParallel(const float *a, const float *b);

// Index 0, 1 or 2 of the component of greatest slFabs; the lower index wins a tie.
TRUNNION_API int slGetVectMaxDir(const float *v);

// The coordinate axis along which v lies: 0 for X, 1 for Y, 2 for Z, -1 for none. v lies along an
// axis when the sum of squares of the two other components is below SL_ZERO_SQR_D; it is not
// normalised first. The axes are tried in that order: the zero vector gives 0.
TRUNNION_API int slComparWithCoordAxis(const float *v);

// 1 if the squared distance of a and b is below SL_ZERO_SQR, else 0.
TRUNNION_API int slIsEqualPoint3D(const float *a, const float *b);

// Angles. All arc cosines are taken by slAcos and snap as it does.

// Angle between a and b in radians, 0 to pi; result 1. If either length is at most SL_ZERO the
// result is 0 and *angle holds the dot product of a and b.
TRUNNION_API int slGetVectAngle(const float *a, const float *b, float *angle);

// Angle from a to b in radians, negative where (a cross b) dot ref is below 0: counter-clockwise
// seen from the tip of ref counts as positive. Works on normalised copies, so that a vector without
// direction counts as +X.
TRUNNION_API float slCalAngleTwoVects(const float *a, const float *b, const float *ref);
TRUNNION_API double slCalAngleTwoVects(const double *a, const double *b, const double *ref);

// Direction of a plane vector in DEGREES, 0 to 360, counter-clockwise from +X. 0 if slSign of both
// components is 0.
TRUNNION_API float slGetVectorAngle(const float *v);

// Angle at vertex between the directions to p1 and p2 in DEGREES, 0 to 180. 0 if either arm has a
// length of at most SL_ZERO. Reads its arguments only.
TRUNNION_API float slComputeAngle(float *p1, float *p2, float *vertex);

// Angle of q - p from the Z axis in radians, 0 to SL_TWO_PI, positive about +Y if axis is 1 and
// about +X otherwise.
TRUNNION_API float slGetDirectAngleToZ(int axis, const float *p, const float *q);

// Mirrors an angle in radians about the Y axis, in place: pi - a, or 3 pi - a for an angle above
// pi. An angle below 0 or from 2 pi on is moved by one turn first; the result then lies in 0 to 2
// pi. Always 1.
TRUNNION_API int slMirrorAngleAboutVerticalAxis(float *angle);
