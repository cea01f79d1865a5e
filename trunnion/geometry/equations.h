// Equation solvers and determinants of the geometry kernel. Included by scalars.h, which defines
// the tolerances named here and says what holds for all functions.
#pragma once

#include "trunnion/export.h"

// Real roots of a x^2 + b x + c = 0. Result and what x1 and x2 hold:
//   0  no root: both SL_BIG_D (0 if the equation is linear)
//   1  one root, in both
//   2  two roots, x1 the smaller
//   3  every x solves it: both 0
// The equation counts as linear if a lies from -SL_ZERO_D to SL_ZERO_D; b and c then count as 0 up
// to SL_TINY. Otherwise a discriminant from -SL_TINY to SL_TINY gives one root.
TRUNNION_API int slSolveEquationQuad(double a, double b, double c, double *x1, double *x2);

// Three linear equations by Cramer's rule. a holds nine values column by column: equation r reads
// a[r] x[0] + a[r+3] x[1] + a[r+6] x[2] = b[r]. Result 1, or 0 with x not written if slFabs of the
// determinant is at most SL_ZERO_D.
TRUNNION_API int slSolveEquationGroup3(const double *a, const double *b, double *x);

// A train is a square array of n by n floats; element (row r, column c) has the index r n + c.

// Copies the n by n train src without column col and row row to dst, which has room for
// (n - 1) * (n - 1) floats and must not overlap src.
TRUNNION_API void slNewTrainM(float *src, int col, int row, int n, float *dst);

// Determinant of an n by n train by expansion along row 0; 0 where n is 0 or less, the element
// itself where n is 1. The cost grows with n factorial: it is meant for n up to 4. The determinants
// of the minors are rounded to float. The train is only read.
TRUNNION_API float slValueOfTrainM(float *train, int n);
