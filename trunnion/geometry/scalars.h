// The bottom of the geometry kernel: its tolerances, guarded scalar functions and small scalars.
// The vector primitives and the equation solvers are included with it.
//
// Three decisions run through the kernel:
// - Values close to a special value are snapped to it. A magnitude of at most 1e-8 is 0, a length
//   below 0.0001 is 0, an arc cosine beyond 0.9999 is 0 or pi.
// - Nothing fails: an argument outside a function's domain gives a defined number, and a vector
//   without direction normalises to (1, 0, 0).
// - One tolerance, SL_ZERO, serves lengths, sines, determinants, parameters and radians alike.
//
// Points and vectors are float[3], plane points and plane vectors float[2] (or the start of a
// float[3]), passed as pointers. Lengths are in the caller's units, angles in radians unless a
// function says degrees. Products, sums and quotients are formed in double and rounded to float
// once, where a value is stored in a float or returned as one; a comparison with a tolerance takes
// the unrounded value. A result beyond the range of float becomes the greatest float. Unless a
// function works in place, outputs must not overlap inputs. Nothing keeps state: all functions may
// run on any thread at once.
#pragma once

#include <bit>
#include <cstdint>

#include "trunnion/export.h"
#include "trunnion/geometry/equations.h"
#include "trunnion/geometry/vectors.h"

// Constants. Those of float are given by their bits, because some differ in the last place from the
// float nearest to their decimal value and a guard must take the same branch everywhere. A constant
// with the suffix _D is the float widened, or computed from the widened float: SL_ZERO_D is not the
// double nearest to 0.0001. A greater tolerance lets more inputs count as equal, parallel or
// degenerate; which comparison a guard uses, strict or not, belongs to each function.

// 0.0001: the base tolerance of all float geometry. A length or distance in the caller's units; a
// sine, as length of a cross product against product of lengths times SL_ZERO; a determinant; the
// residue of a plane equation; the slack of a line parameter; an angle in radians.
inline constexpr float SL_ZERO = std::bit_cast<float>(std::uint32_t{0x38D1B717});

// SL_ZERO for functions on doubles: slTan, slAtan, slNormalize and slNormalize2D on doubles,
// slGetRatio, the leading coefficient in slSolveEquationQuad, slSolveEquationGroup3,
// slGetTangentCircle.
inline constexpr double SL_ZERO_D = SL_ZERO;

// 1e-8: the floor of a magnitude (slFabs), of an argument (slSqrt, slLog), of the lower
// coefficients and the discriminant in slSolveEquationQuad, of an angle in
// slMirrorAngleAboutVerticalAxis.
inline constexpr double SL_TINY = 1e-8;

// About 1e-8, one unit in the last place below the nearest float: a squared length or distance, or
// a squared sine, in slIsEqualPoint3D, slPlaneNormal, slGenXYCoordSys, slIntersectLineCircle.
inline constexpr float SL_ZERO_SQR = std::bit_cast<float>(std::uint32_t{0x322BCC76});

// Square of SL_ZERO_D: a squared sine in slIntersectLines3D, a squared distance in
// slComparWithCoordAxis.
inline constexpr double SL_ZERO_SQR_D = SL_ZERO_D * SL_ZERO_D;

// Half of SL_ZERO_D: the squared length of a plane segment in slGetLineFoot.
inline constexpr double SL_ZERO_HALF_D = SL_ZERO_D / 2;

// 0.9999: an element of a rotation in slCheckMatrixError, a sine in slFindIntPnt.
inline constexpr float SL_NEAR_ONE = std::bit_cast<float>(std::uint32_t{0x3F7FF972});

// 1 - SL_ZERO_D: the cosine or sine from which slAcos and slAsin answer the end of their range.
inline constexpr double SL_NEAR_ONE_D = 1.0 - SL_ZERO_D;

// 1.0001: the upper slack of a line parameter in 0 to 1 in slIntersecLines, slGetCoPlaneLineDist,
// slGetDifPlaneLineDist, slProjToLineAlongZOnXZ and slFindIntPnt; an element in slCheckMatrixError.
inline constexpr float SL_PAST_ONE = std::bit_cast<float>(std::uint32_t{0x3F800347});

// 1 + SL_ZERO_D: the upper slack of a line parameter in slIntersectLines2D.
inline constexpr double SL_PAST_ONE_D = 1.0 + SL_ZERO_D;

// 1.0002: the upper slack of a line parameter in the first bound of slGetCoPlaneLineDist.
inline constexpr float SL_PAST_ONE2 = std::bit_cast<float>(std::uint32_t{0x3F80068E});

// 0.0016, a sixteenth of it for each element: the sum of element errors in slCheckIndentity.
inline constexpr float SL_IDENTITY_SUM = std::bit_cast<float>(std::uint32_t{0x3AD1B717});

// 1e18: stands for infinity or for no value. Start value of searches; slProjectPntToLine,
// slGetTangentCircle. Its negative marks deleted float slots.
inline constexpr float SL_BIG = std::bit_cast<float>(std::uint32_t{0x5D5E0B6B});

// SL_BIG for functions on doubles: slTan, slLog (negated), slSolveEquationQuad.
inline constexpr double SL_BIG_D = SL_BIG;

// Result of an intersection whose objects coincide or overlap along a stretch, so that they have
// infinitely many common points.
inline constexpr int SL_COINCIDENT = 0x7FFFFFFF;

// Pi in radians, one unit in the last place below the nearest float, in all angle code; the doubles
// in slTan, slAcos, slAsin and slAtan.
inline constexpr float SL_PI = std::bit_cast<float>(std::uint32_t{0x40490FDA});
inline constexpr double SL_PI_D = SL_PI;
inline constexpr float SL_HALF_PI = std::bit_cast<float>(std::uint32_t{0x3FC90FDA});
inline constexpr double SL_HALF_PI_D = SL_HALF_PI;
inline constexpr float SL_TWO_PI = std::bit_cast<float>(std::uint32_t{0x40C90FDA});

// Conversion between radians and degrees. slAngleToRadian takes SL_PI and 1/180, slRadianToAngle
// and slGetVectorAngle take 180 and 1/pi; slComputeAngle takes degrees per radian alone. The two
// ways to degrees differ in the seventh digit, and each function keeps its own.
inline constexpr float SL_HALF_TURN_DEGREES = 180.0F;
inline constexpr float SL_ONE_OVER_180 = std::bit_cast<float>(std::uint32_t{0x3BB60B61});
inline constexpr float SL_ONE_OVER_PI = std::bit_cast<float>(std::uint32_t{0x3EA2F984});
inline constexpr float SL_DEGREES_PER_RADIAN = std::bit_cast<float>(std::uint32_t{0x42652EE2});

// Guarded scalar functions.

// Magnitude of x, and 0 where it is at most SL_TINY (or x is a NaN).
TRUNNION_API float slFabs(float x);
TRUNNION_API double slFabs(double x);

// Square root of x, and 0 where x is below SL_TINY, negative x included. Every length below 0.0001
// that the kernel computes is 0 for that reason.
TRUNNION_API double slSqrt(double x);

// Tangent of x radians. 0 where slFabs(x) is below SL_ZERO_D. x is brought within SL_PI_D of 0 by
// whole multiples of SL_PI_D; nearer than SL_ZERO_D to SL_HALF_PI_D the result is then SL_BIG_D.
// The pole at -pi/2 is not caught. An infinite x gives 0.
TRUNNION_API double slTan(double x);

// Arc cosine: 0 above SL_NEAR_ONE_D, SL_PI_D below -SL_NEAR_ONE_D. Angles below about 0.0141 radian
// thus read as 0.
TRUNNION_API double slAcos(double x);

// Arc sine: SL_HALF_PI_D above SL_NEAR_ONE_D, its negative below -SL_NEAR_ONE_D.
TRUNNION_API double slAsin(double x);

// Natural logarithm, and minus SL_BIG_D where x is below SL_TINY.
TRUNNION_API double slLog(double x);

// Arc tangent of y/x, from -pi/2 to pi/2. The FIRST argument is the denominator: where slFabs of it
// is below SL_ZERO_D the result is SL_HALF_PI_D, whatever the sign of y.
TRUNNION_API double slAtan(double x, double y);

// Cosine and sine of an angle in radians. The value, rounded to float, becomes 0 where slFabs of it
// is below SL_ZERO, and 1 or -1 where its magnitude is nearer to 1 than SL_ZERO.
TRUNNION_API float slCos(float x);
TRUNNION_API float slSin(float x);

// Small scalars.

// 1 where x is above SL_ZERO, -1 where it is below -SL_ZERO, otherwise 0.
TRUNNION_API int slSign(float x);

// The nearest integer, halves away from 0; 0 for every x within SL_ZERO of 0. Values beyond the
// range of int give its greatest or least value.
TRUNNION_API int slRound(float x);

// Cuts x to two decimals toward 0. x is lifted by a hundredth of SL_ZERO away from 0 first, so that
// 1.2299999 counts as 1.23. Values beyond the range of int are kept, up to the rounding of 0.01.
TRUNNION_API float slKeepTwoDecimal(float x);

// Positive remainder of a/b, told by the fraction f of a/b: f times b, and (1 + f) times b where f
// is below SL_ZERO. A whole multiple of b other than 0 thus gives b and not 0. Where slFabs(a/b) is
// at most SL_ZERO the result is a. b must not be 0.
TRUNNION_API float slMod(float a, float b);

// The lesser and the greater of two values.
TRUNNION_API float slMinF2(float a, float b);
TRUNNION_API float slMaxF2(float a, float b);
TRUNNION_API int slMinI2(int a, int b);
TRUNNION_API int slMaxI2(int a, int b);

// Clamps *v in place: above high becomes high, otherwise below low becomes low. Returns the new
// value.
TRUNNION_API int slFitI(int *v, int low, int high);

// a where b is not 0, otherwise 0.
TRUNNION_API int slCheck(int a, int b);

// Degrees to radians, and back.
TRUNNION_API float slAngleToRadian(float degrees);
TRUNNION_API float slRadianToAngle(float radians);

// Where x lies from a (0) to b (1): (x - a)/(b - a). 1 where slFabs(b - a) is at most SL_ZERO_D.
TRUNNION_API double slGetRatio(double a, double b, double x);
