// Building, combining, applying, inverting and cleaning 4 by 4 matrices.
//
// A matrix is a float[16]; M[r + 4 c] is row r, column c, the layout that OpenGL takes. It acts on
// column vectors from the left, p' = M p: the columns M[0..2], M[4..6] and M[8..10] are the images
// of the axes, M[12..14] is the translation, and in a product A B the transformation B acts first.
// A motion is a matrix with an orthonormal 3 by 3 block and M[3], M[7], M[11], M[15] = 0, 0, 0, 1.
//
// Angles are radians; a positive angle turns counter-clockwise seen from the tip of the axis, so
// that a positive rotation about Z takes +X toward +Y. A vector has w = 0 and a point w = 1;
// nothing divides by w. Sines and cosines are the plain ones, not slSin and slCos. Axes and
// directions that are to be of unit length are not checked: another length gives a matrix that is
// no motion.
#pragma once

#include "trunnion/export.h"

// Building. Each overwrites all 16 elements of M, which must not overlap the inputs.

// Identity.
TRUNNION_API void slSetIdentity(float *M);

// Translation by s times v.
TRUNNION_API void slGenerateMoveMatrix(const float *v, float s, float *M);

// Rotation about the line through the origin with the unit direction axis, by Rodrigues' formula.
TRUNNION_API void slGenerateRotateMatrix(const float *axis, float angle, float *M);

// Rotation about the line through p with the unit direction axis: T(p) R T(-p), or R alone where
// the sum of the slFabs of p's components is at most SL_ZERO.
TRUNNION_API void slGetRotateMatrix(const float *p, const float *axis, float angle, float *M);

// Rotation about a coordinate axis through the origin.
TRUNNION_API void slRotateByX(float angle, float *M);
TRUNNION_API void slRotateByY(float angle, float *M);
TRUNNION_API void slRotateByZ(float angle, float *M);

// The same from a ready cosine c and sine s.
TRUNNION_API void slRotateByXExt(float c, float s, float *M);
TRUNNION_API void slRotateByY(float c, float s, float *M);
TRUNNION_API void slRotateByZExt(float c, float s, float *M);

// Scaling by the three factors of scale about the fixed point center.
TRUNNION_API void slGenScaleMatrix(const float *center, const float *scale, float *M);

// Rotation about p that takes the unit vector v to +Z. Where v's length in the XY plane is at most
// SL_ZERO: the half turn about the line through p parallel to X if z is below -SL_ZERO, otherwise
// (the zero vector too) the identity.
TRUNNION_API void slGenVectToZMatrix(const float *p, const float *v, float *M);

// Rotation about the line through p parallel to Z that takes the unit plane vector v to +X. p
// counts as the origin where the sum of the slFabs of its components is at most SL_ZERO.
TRUNNION_API void slGenVectToXMatrix(const float *p, const float *v, float *M);

// Combining.

// out = A B. out must be a third array. The running sum of each element is rounded to float after
// each of its four products.
TRUNNION_API void slMultiMatrix(const float *A, const float *B, float *out);

// M = A M. M must not be A.
TRUNNION_API void slSetMatrixByMulti(const float *A, float *M);

// M = M A. M must not be A.
TRUNNION_API void slSetMatrixByRightMulti(const float *A, float *M);

// Applying. Each component is rounded to float once. The result is always 1. Outputs may be the
// inputs.

// v = M v on four components, in place.
TRUNNION_API int slMatrix16MultiVector4(const float *M, float *v);

// A direction (w = 0): the translation does not enter. In place, or from v to out.
TRUNNION_API int slMatrix16MultiVector3(const float *M, float *v);
TRUNNION_API int slMatrix16MultiVector3(const float *M, const float *v, float *out);

// A point (w = 1). In place, or from p to out.
TRUNNION_API int slMatrix16MultiPoint3(const float *M, float *p);
TRUNNION_API int slMatrix16MultiPoint3(const float *M, const float *p, float *out);

// A plane point, taken as (x, y, 0, 1), in place; x and y are stored.
TRUNNION_API int slMatrix16MultiPoint2(const float *M, float *p);

// v = (transpose of M) v, in place: on four components, and on three with w = 0.
TRUNNION_API int slMatrixTrans16MultiVector4(const float *M, float *v);
TRUNNION_API int slMatrixTrans16MultiVector3(const float *M, float *v);

// Motions. The 3 by 3 block is taken to be orthonormal; that is not checked. All 16 elements of an
// output are written; an output must not be the input.

// R = the rotation of M, without its translation.
TRUNNION_API void slGetRotMatrixFromMotion(const float *M, float *R);

// R = the inverse rotation of M: its 3 by 3 block transposed.
TRUNNION_API void slGetRotTransMatrixFromMotion(const float *M, float *R);

// T = the translation of M, without its rotation.
TRUNNION_API void slGetMoveMatrixFromMotion(const float *M, float *T);

// T = the translation of M negated.
TRUNNION_API void slGetInvMvMatrixFromMotion(const float *M, float *T);

// Inv = the inverse of the motion M: the point q goes to transpose(R) (q - t).
TRUNNION_API void slGetInverseMotionMatrix(const float *M, float *Inv);

// Takes the translation out of M, in place.
TRUNNION_API void slSetMatrixByMvToOri(float *M);

// slSign of the dot product of the two rotated Z axes: 1 if they point the same way, -1 if they
// point opposite ways, 0 if they are at right angles.
TRUNNION_API int slGetTwoMatrixSign(const float *A, const float *B);

// Inverse, cleaning and checks.

// Inv = the general inverse of M by cofactors; Inv must not be M. Result 1, or 0 with Inv not
// written if slFabs of the determinant is below SL_ZERO. The bound does not scale with the
// elements: a scaling by 0.04 counts as singular. M is only read.
TRUNNION_API int slInverseMatrixM(float *M, float *Inv);

// M = the matrix that maps the four points P[k] to Q[k]. Result 1, or 0 if slInverseMatrixM finds
// the matrix of P singular (the points lie nearly in a plane); M then has no meaning.
TRUNNION_API int slChangeFourPntMatrixM(const float (*P)[3], const float (*Q)[3], float *M);

// Cleans the 3 by 3 block in place: an element becomes 0 where slFabs of it is below SL_ZERO, and
// its slSign where slFabs of it lies strictly between SL_NEAR_ONE and SL_PAST_ONE.
TRUNNION_API void slCheckMatrixError(float *M);

// 1 if the slFabs of the differences from the identity sum up to at most SL_IDENTITY_SUM, else 0.
TRUNNION_API int slCheckIndentity(const float *M);

// Normalises columns 0 and 1 and sets column 2 to their cross product, normalised, by slNormalize
// each. Column 1 is not made orthogonal to column 0.
TRUNNION_API void slNormalizeMatrix(float *M);

// Factors of rotations.

// Cosine and sine of the two coordinate rotations that take the unit vector v to +Z, first about Z
// and then about X. Where v's length in the XY plane is at most SL_ZERO: 1, 0, slSign(z), 0.
TRUNNION_API void slGetAnglesRotToZ(const float *v, float *cosZ, float *sinZ, float *cosX,
                                    float *sinX);

// Three orthonormal axes from two angles: X = (cos b cos a, -cos b sin a, -sin b), Y = (sin a, cos
// a, 0), Z = (sin b cos a, -sin b sin a, cos b).
TRUNNION_API void slGetAxes(float a, float b, float *X, float *Y, float *Z);
