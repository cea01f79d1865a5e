// Planes and local coordinate systems: built from points, turned into matrices, and bounds of point
// lists.
//
// A plane in equation form is a unit normal n and a float D with n dot p + D = 0 for its points; it
// is passed as two arguments. The sign of n dot p + D tells on which side p lies. Unless a function
// says in place, outputs must not overlap inputs.
#pragma once

#include "trunnion/export.h"

// A plane as a point and a normal. The normal is not always of unit length.
struct PlaneD {
    float point[3];
    float normal[3];
};

// A local frame in world coordinates: origin and three unit axes, right-handed; zAxis is the normal
// of the local XY plane.
struct XYCoordSysD {
    float origin[3];
    float xAxis[3];
    float yAxis[3];
    float zAxis[3];
};

// Planes.

// Unit normal (b - a) cross (c - a). Result 1, or 0 if the points span no plane:
// - a squared side at a, rounded to float, is at most SL_ZERO_SQR: n is not written;
// - the squared sine of the angle at a is at most SL_ZERO_SQR: n holds the unnormalised cross
// product;
// - the cross product is too short for slNormalize: n is (1, 0, 0).
TRUNNION_API int slPlaneNormal(const float *a, const float *b, const float *c, float *n);

// The same with the D of the plane; D is not written where the result is 0.
TRUNNION_API int slGetPlaneEquation(const float *a, const float *b, const float *c, float *n,
                                    float *D);

// D of the plane through p with the normal n: -(p dot n).
TRUNNION_API float slGetPlaneEquation(const float *p, const float *n);

// Normal of four points that should lie in a plane: that of a, b, c, or where these span none the
// slPlaneNormal of a, b, d with its result. Otherwise 1 if d lies in the plane or coincides with a,
// 0 if the sine of the slope from a to d is above SL_ZERO; n is the normal of a, b, c in both
// cases.
TRUNNION_API int slGetPlaneFourPnt(const float *a, const float *b, const float *c, const float *d,
                                   float *n);

// The plane of all points that are as far from p as from q: its point is (p + q)/2, its normal p -
// q, not normalised. Always 1.
TRUNNION_API int slGetAveragePlane(const float *p, const float *q, PlaneD *out);

// Frames.

// Frame with origin o, x axis toward px, and py in the local XY plane on the +Y side. Result 1, or
// 0 with cs not written if o, px, py span no plane by the bounds of slPlaneNormal on sides and
// sine. The axes are normalised by slNormalize: sides so short that the length of their cross
// product snaps to 0 (0.005 at right angles) pass, but give axes along +X.
TRUNNION_API int slGenXYCoordSys(const float *o, const float *px, const float *py, XYCoordSysD *cs);

// Local to world: the columns are the axes and the origin.
TRUNNION_API void slGenMatrixToWorld(const XYCoordSysD &cs, float *M);

// World to local, the inverse: from a frame, or from its origin o and axes x, y, z.
TRUNNION_API void slGenMatrixToLocal(const XYCoordSysD &cs, float *M);
TRUNNION_API void slGenMatrixToLocal(const float *o, const float *x, const float *y, const float *z,
                                     float *M);

// A direction from local to world: out = p[0] x + p[1] y + p[2] z.
TRUNNION_API void slTransToWorld(const float *x, const float *y, const float *z, const float *p,
                                 float *out);

// A point to the local XY plane of cs, in place: its local x and y, and 0.
TRUNNION_API void slTransPntToPlane(float *p, const XYCoordSysD &cs);

// A vector to the XY plane of the axes x and y, in place: v dot x, v dot y, and 0.
TRUNNION_API void slTransVectToPlane(float *v, const float *x, const float *y);

// Matrix from two rays, each a point and a unit direction, made of the factors of slGetAnglesRotToZ
// of both directions, with the translation p1 - p2.
TRUNNION_API void slGenMatrixToSpRadials(const float *p1, const float *d1, const float *p2,
                                         const float *d2, float *M);

// The same from the rays a1 to b1 and a2 to b2. Result 1, or 0 with M not written if
// slGetNormalVectBtPnts finds either segment degenerate.
TRUNNION_API int slGenMatrixToSpLines(const float *a1, const float *b1, const float *a2,
                                      const float *b2, float *M);

// Bounds: the least and the greatest x, y and z of two point lists, written to out[0..2]. A list
// with a count of 0 or less is skipped; two empty lists give SL_BIG, respectively -SL_BIG. Cost:
// one pass.
TRUNNION_API void slGetMinXYZ(int n1, const float (*pts1)[3], int n2, const float (*pts2)[3],
                              float *out);
TRUNNION_API void slGetMaxXYZ(int n1, const float (*pts1)[3], int n2, const float (*pts2)[3],
                              float *out);
