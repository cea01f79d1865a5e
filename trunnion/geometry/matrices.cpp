// Building, combining, applying, inverting and cleaning 4 by 4 matrices.
#include "trunnion/geometry/matrices.h"

#include <algorithm>
#include <cmath>

#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/matrix.h"

using namespace trunnion::detail;

namespace {

struct Vec4 {
    double x, y, z, w;
};

// Component `row` of M v.
double rowTimes(const float *M, int row, const Vec4 &v) {
    return M[row] * v.x + M[row + 4] * v.y + M[row + 8] * v.z + M[row + 12] * v.w;
}

// Component `col` of (transpose of M) v.
double columnTimes(const float *M, int col, const Vec4 &v) {
    const float *elements = column(M, col);
    return elements[0] * v.x + elements[1] * v.y + elements[2] * v.z + elements[3] * v.w;
}

// Writes the first `count` components of M v. v is a copy, so that out may be where it came from.
int applyTo(const float *M, const Vec4 &v, int count, float *out) {
    for (int row = 0; row < count; ++row) {
        out[row] = toFloat(rowTimes(M, row, v));
    }
    return 1;
}

int applyTransposedTo(const float *M, const Vec4 &v, int count, float *out) {
    for (int col = 0; col < count; ++col) {
        out[col] = toFloat(columnTimes(M, col, v));
    }
    return 1;
}

Vec4 direction(const float *v) {
    return {v[0], v[1], v[2], 0.0};
}

Vec4 point(const float *p) {
    return {p[0], p[1], p[2], 1.0};
}

// A point this near to the origin needs no move there and back.
bool isAtOrigin(const float *p) {
    return magnitude(p[0]) + magnitude(p[1]) + magnitude(p[2]) <= SL_ZERO;
}

// M = T(p) R T(-p): R acts about p instead of the origin.
void turnAbout(const float *p, const float *R, float *M) {
    float move[MATRIX_SIZE];
    float moved[MATRIX_SIZE];
    slGenerateMoveMatrix(p, 1.0F, move);
    slMultiMatrix(move, R, moved);
    slGenerateMoveMatrix(p, -1.0F, move);
    slMultiMatrix(moved, move, M);
}

enum Axis { X_AXIS, Y_AXIS, Z_AXIS };

// Rotation that takes one coordinate axis toward the next, from a cosine c and a sine s.
void rotateFromTo(Axis from, Axis to, float c, float s, float *M) {
    slSetIdentity(M);
    M[from + 4 * from] = c;
    M[to + 4 * from] = s;
    M[from + 4 * to] = -s;
    M[to + 4 * to] = c;
}

void rotateFromTo(Axis from, Axis to, float angle, float *M) {
    const double wide = angle;
    rotateFromTo(from, to, toFloat(std::cos(wide)), toFloat(std::sin(wide)), M);
}

// Rotation block of slGenVectToZMatrix for a direction with the length `planar` in the XY plane.
void setRowsToZ(const Vec3 &v, double planar, float *M) {
    const double cosine = v.y / planar;
    const double sine = v.x / planar;
    slSetIdentity(M);
    M[0] = toFloat(cosine);
    M[4] = toFloat(-sine);
    M[8] = 0.0F;
    M[1] = toFloat(v.z * v.x / planar);
    M[5] = toFloat(v.z * v.y / planar);
    M[9] = toFloat(-planar);
    M[2] = toFloat(sine * planar);
    M[6] = toFloat(planar * cosine);
    M[10] = toFloat(v.z);
}

} // namespace

void slSetIdentity(float *M) {
    for (int i = 0; i < MATRIX_SIZE; ++i) {
        M[i] = i % 5 == 0 ? 1.0F : 0.0F;
    }
}

void slGenerateMoveMatrix(const float *v, float s, float *M) {
    slSetIdentity(M);
    store(s * load3(v), column(M, 3));
}

void slGenerateRotateMatrix(const float *axis, float angle, float *M) {
    const auto [x, y, z] = load3(axis);
    const double c = std::cos(static_cast<double>(angle));
    const double s = std::sin(static_cast<double>(angle));
    const double t = 1.0 - c;
    slSetIdentity(M);
    store(Vec3{t * x * x + c, t * x * y + s * z, t * x * z - s * y}, M);
    store(Vec3{t * x * y - s * z, t * y * y + c, t * y * z + s * x}, column(M, 1));
    store(Vec3{t * x * z + s * y, t * y * z - s * x, t * z * z + c}, column(M, 2));
}

void slGetRotateMatrix(const float *p, const float *axis, float angle, float *M) {
    if (isAtOrigin(p)) {
        slGenerateRotateMatrix(axis, angle, M);
        return;
    }
    float rotation[MATRIX_SIZE];
    slGenerateRotateMatrix(axis, angle, rotation);
    turnAbout(p, rotation, M);
}

void slRotateByX(float angle, float *M) {
    rotateFromTo(Y_AXIS, Z_AXIS, angle, M);
}

void slRotateByY(float angle, float *M) {
    rotateFromTo(Z_AXIS, X_AXIS, angle, M);
}

void slRotateByZ(float angle, float *M) {
    rotateFromTo(X_AXIS, Y_AXIS, angle, M);
}

void slRotateByXExt(float c, float s, float *M) {
    rotateFromTo(Y_AXIS, Z_AXIS, c, s, M);
}

void slRotateByY(float c, float s, float *M) {
    rotateFromTo(Z_AXIS, X_AXIS, c, s, M);
}

void slRotateByZExt(float c, float s, float *M) {
    rotateFromTo(X_AXIS, Y_AXIS, c, s, M);
}

void slGenScaleMatrix(const float *center, const float *scale, float *M) {
    const Vec3 fixed = load3(center);
    slSetIdentity(M);
    M[0] = scale[0];
    M[5] = scale[1];
    M[10] = scale[2];
    store(Vec3{(1.0 - scale[0]) * fixed.x, (1.0 - scale[1]) * fixed.y, (1.0 - scale[2]) * fixed.z},
          column(M, 3));
}

void slGenVectToZMatrix(const float *p, const float *v, float *M) {
    const Vec3 target = load3(v);
    const double planar = length(Vec2{target.x, target.y});
    if (planar > SL_ZERO) {
        setRowsToZ(target, planar, M);
        for (int row = 0; row < 3; ++row) {
            M[12 + row] = toFloat(p[row] - rowTimes(M, row, direction(p)));
        }
        return;
    }
    slSetIdentity(M);
    if (target.z < -SL_ZERO) {
        M[5] = M[10] = -1.0F;
        M[13] = toFloat(2.0 * p[1]);
        M[14] = toFloat(2.0 * p[2]);
    }
}

void slGenVectToXMatrix(const float *p, const float *v, float *M) {
    if (isAtOrigin(p)) {
        slRotateByZExt(v[0], -v[1], M);
        return;
    }
    float rotation[MATRIX_SIZE];
    slRotateByZExt(v[0], -v[1], rotation);
    turnAbout(p, rotation, M);
}

void slMultiMatrix(const float *A, const float *B, float *out) {
    for (int col = 0; col < 4; ++col) {
        for (int row = 0; row < 4; ++row) {
            float sum = 0.0F;
            for (int k = 0; k < 4; ++k) {
                sum = toFloat(sum + static_cast<double>(A[row + 4 * k]) * B[k + 4 * col]);
            }
            out[row + 4 * col] = sum;
        }
    }
}

void slSetMatrixByMulti(const float *A, float *M) {
    float copy[MATRIX_SIZE];
    std::copy_n(M, MATRIX_SIZE, copy);
    slMultiMatrix(A, copy, M);
}

void slSetMatrixByRightMulti(const float *A, float *M) {
    float copy[MATRIX_SIZE];
    std::copy_n(M, MATRIX_SIZE, copy);
    slMultiMatrix(copy, A, M);
}

int slMatrix16MultiVector4(const float *M, float *v) {
    return applyTo(M, {v[0], v[1], v[2], v[3]}, 4, v);
}

int slMatrix16MultiVector3(const float *M, float *v) {
    return slMatrix16MultiVector3(M, v, v);
}

int slMatrix16MultiVector3(const float *M, const float *v, float *out) {
    return applyTo(M, direction(v), 3, out);
}

int slMatrix16MultiPoint3(const float *M, float *p) {
    return slMatrix16MultiPoint3(M, p, p);
}

int slMatrix16MultiPoint3(const float *M, const float *p, float *out) {
    return applyTo(M, point(p), 3, out);
}

int slMatrix16MultiPoint2(const float *M, float *p) {
    return applyTo(M, {p[0], p[1], 0.0, 1.0}, 2, p);
}

int slMatrixTrans16MultiVector4(const float *M, float *v) {
    return applyTransposedTo(M, {v[0], v[1], v[2], v[3]}, 4, v);
}

int slMatrixTrans16MultiVector3(const float *M, float *v) {
    return applyTransposedTo(M, direction(v), 3, v);
}

void slGetRotMatrixFromMotion(const float *M, float *R) {
    slSetIdentity(R);
    for (int col = 0; col < 3; ++col) {
        std::copy_n(column(M, col), 3, column(R, col));
    }
}

void slGetRotTransMatrixFromMotion(const float *M, float *R) {
    slSetIdentity(R);
    for (int col = 0; col < 3; ++col) {
        for (int row = 0; row < 3; ++row) {
            R[row + 4 * col] = M[col + 4 * row];
        }
    }
}

void slGetMoveMatrixFromMotion(const float *M, float *T) {
    slGenerateMoveMatrix(column(M, 3), 1.0F, T);
}

void slGetInvMvMatrixFromMotion(const float *M, float *T) {
    slGenerateMoveMatrix(column(M, 3), -1.0F, T);
}

void slGetInverseMotionMatrix(const float *M, float *Inv) {
    float turnBack[MATRIX_SIZE];
    float moveBack[MATRIX_SIZE];
    slGetRotTransMatrixFromMotion(M, turnBack);
    slGenerateMoveMatrix(column(M, 3), -1.0F, moveBack);
    slMultiMatrix(turnBack, moveBack, Inv);
}

void slSetMatrixByMvToOri(float *M) {
    std::fill_n(column(M, 3), 3, 0.0F);
}

int slGetTwoMatrixSign(const float *A, const float *B) {
    float first[3] = {0.0F, 0.0F, 1.0F};
    float second[3] = {0.0F, 0.0F, 1.0F};
    float rotation[MATRIX_SIZE];
    slGetRotMatrixFromMotion(A, rotation);
    slMatrix16MultiVector3(rotation, first);
    slGetRotMatrixFromMotion(B, rotation);
    slMatrix16MultiVector3(rotation, second);
    return slSign(toFloat(dot(load3(first), load3(second))));
}

int slInverseMatrixM(float *M, float *Inv) {
    const float determinant = slValueOfTrainM(M, 4);
    if (belowTolerance(determinant, SL_ZERO)) {
        return 0;
    }
    float minor[9];
    for (int k = 0; k < MATRIX_SIZE; ++k) {
        const int i = k % 4;
        const int j = k / 4;
        slNewTrainM(M, i, j, 4, minor);
        const double cofactor =
            (i + j) % 2 == 0 ? slValueOfTrainM(minor, 3) : -slValueOfTrainM(minor, 3);
        Inv[j + 4 * i] = toFloat(cofactor / determinant);
    }
    return 1;
}

int slChangeFourPntMatrixM(const float (*P)[3], const float (*Q)[3], float *M) {
    float from[MATRIX_SIZE];
    float to[MATRIX_SIZE];
    for (int k = 0; k < 4; ++k) {
        std::copy_n(P[k], 3, column(from, k));
        std::copy_n(Q[k], 3, column(to, k));
        from[4 * k + 3] = to[4 * k + 3] = 1.0F;
    }
    float fromInverse[MATRIX_SIZE] = {};
    const int done = slInverseMatrixM(from, fromInverse);
    slMultiMatrix(to, fromInverse, M);
    return done;
}

void slCheckMatrixError(float *M) {
    for (int col = 0; col < 3; ++col) {
        for (int row = 0; row < 3; ++row) {
            float &element = M[row + 4 * col];
            const double size = magnitude(element);
            if (size < SL_ZERO) {
                element = 0.0F;
            } else if (size > SL_NEAR_ONE && size < SL_PAST_ONE) {
                element = static_cast<float>(slSign(element));
            }
        }
    }
}

int slCheckIndentity(const float *M) {
    double sum = 0.0;
    for (int i = 0; i < MATRIX_SIZE; ++i) {
        sum += magnitude(M[i] - (i % 5 == 0 ? 1.0 : 0.0));
    }
    return sum <= SL_IDENTITY_SUM ? 1 : 0;
}

void slNormalizeMatrix(float *M) {
    slNormalize(M);
    slNormalize(column(M, 1));
    store(cross(load3(M), load3(column(M, 1))), column(M, 2));
    slNormalize(column(M, 2));
}

void slGetAnglesRotToZ(const float *v, float *cosZ, float *sinZ, float *cosX, float *sinX) {
    const Vec3 target = load3(v);
    const double planar = length(Vec2{target.x, target.y});
    const bool leaning = planar > SL_ZERO;
    *cosZ = leaning ? toFloat(target.y / planar) : 1.0F;
    *sinZ = leaning ? toFloat(target.x / planar) : 0.0F;
    *cosX = leaning ? v[2] : static_cast<float>(slSign(v[2]));
    *sinX = leaning ? toFloat(planar) : 0.0F;
}

void slGetAxes(float a, float b, float *X, float *Y, float *Z) {
    const double cosA = std::cos(static_cast<double>(a));
    const double sinA = std::sin(static_cast<double>(a));
    const double cosB = std::cos(static_cast<double>(b));
    const double sinB = std::sin(static_cast<double>(b));
    store(Vec3{cosB * cosA, -cosB * sinA, -sinB}, X);
    store(Vec3{sinA, cosA, 0.0}, Y);
    store(Vec3{sinB * cosA, -sinB * sinA, cosB}, Z);
}
