// Building, combining, applying, inverting and cleaning 4 by 4 matrices.
#include "trunnion/geometry/matrices.h"

#include <algorithm>
#include <cmath>

#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

constexpr int SIZE = 16;

struct Vec4 {
    double x, y, z, w;
};

// Component `row` of M v.
double rowTimes(const float *M, int row, const Vec4 &v) {
    return M[row] * v.x + M[row + 4] * v.y + M[row + 8] * v.z + M[row + 12] * v.w;
}

// Component `col` of (transpose of M) v.
double columnTimes(const float *M, int col, const Vec4 &v) {
    const float *column = M + 4 * col;
    return column[0] * v.x + column[1] * v.y + column[2] * v.z + column[3] * v.w;
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
    float move[SIZE];
    float moved[SIZE];
    slGenerateMoveMatrix(p, 1.0F, move);
    slMultiMatrix(move, R, moved);
    slGenerateMoveMatrix(p, -1.0F, move);
    slMultiMatrix(moved, move, M);
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
    for (int i = 0; i < SIZE; ++i) {
        M[i] = i % 5 == 0 ? 1.0F : 0.0F;
    }
}

void slGenerateMoveMatrix(const float *v, float s, float *M) {
    slSetIdentity(M);
    store(s * load3(v), M + 12);
}

void slGenerateRotateMatrix(const float *axis, float angle, float *M) {
    const auto [x, y, z] = load3(axis);
    const double c = std::cos(static_cast<double>(angle));
    const double s = std::sin(static_cast<double>(angle));
    const double t = 1.0 - c;
    slSetIdentity(M);
    store(Vec3{t * x * x + c, t * x * y + s * z, t * x * z - s * y}, M);
    store(Vec3{t * x * y - s * z, t * y * y + c, t * y * z + s * x}, M + 4);
    store(Vec3{t * x * z + s * y, t * y * z - s * x, t * z * z + c}, M + 8);
}

void slGetRotateMatrix(const float *p, const float *axis, float angle, float *M) {
    if (isAtOrigin(p)) {
        slGenerateRotateMatrix(axis, angle, M);
        return;
    }
    float rotation[SIZE];
    slGenerateRotateMatrix(axis, angle, rotation);
    turnAbout(p, rotation, M);
}

void slRotateByX(float angle, float *M) {
    const double wide = angle;
    slRotateByXExt(toFloat(std::cos(wide)), toFloat(std::sin(wide)), M);
}

void slRotateByY(float angle, float *M) {
    const double wide = angle;
    slRotateByY(toFloat(std::cos(wide)), toFloat(std::sin(wide)), M);
}

void slRotateByZ(float angle, float *M) {
    const double wide = angle;
    slRotateByZExt(toFloat(std::cos(wide)), toFloat(std::sin(wide)), M);
}

void slRotateByXExt(float c, float s, float *M) {
    slSetIdentity(M);
    M[5] = c;
    M[6] = s;
    M[9] = -s;
    M[10] = c;
}

void slRotateByY(float c, float s, float *M) {
    slSetIdentity(M);
    M[0] = c;
    M[2] = -s;
    M[8] = s;
    M[10] = c;
}

void slRotateByZExt(float c, float s, float *M) {
    slSetIdentity(M);
    M[0] = c;
    M[1] = s;
    M[4] = -s;
    M[5] = c;
}

void slGenScaleMatrix(const float *center, const float *scale, float *M) {
    slSetIdentity(M);
    for (int i = 0; i < 3; ++i) {
        M[5 * i] = scale[i];
        M[12 + i] = toFloat((1.0 - scale[i]) * center[i]);
    }
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
    float rotation[SIZE];
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
    float copy[SIZE];
    std::copy_n(M, SIZE, copy);
    slMultiMatrix(A, copy, M);
}

void slSetMatrixByRightMulti(const float *A, float *M) {
    float copy[SIZE];
    std::copy_n(M, SIZE, copy);
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
        std::copy_n(M + 4 * col, 3, R + 4 * col);
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
    slGenerateMoveMatrix(M + 12, 1.0F, T);
}

void slGetInvMvMatrixFromMotion(const float *M, float *T) {
    slGenerateMoveMatrix(M + 12, -1.0F, T);
}

void slGetInverseMotionMatrix(const float *M, float *Inv) {
    float turnBack[SIZE];
    float moveBack[SIZE];
    slGetRotTransMatrixFromMotion(M, turnBack);
    slGenerateMoveMatrix(M + 12, -1.0F, moveBack);
    slMultiMatrix(turnBack, moveBack, Inv);
}

void slSetMatrixByMvToOri(float *M) {
    std::fill_n(M + 12, 3, 0.0F);
}

int slGetTwoMatrixSign(const float *A, const float *B) {
    float first[3] = {0.0F, 0.0F, 1.0F};
    float second[3] = {0.0F, 0.0F, 1.0F};
    float rotation[SIZE];
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
    for (int k = 0; k < SIZE; ++k) {
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
    float from[SIZE];
    float to[SIZE];
    for (int k = 0; k < 4; ++k) {
        std::copy_n(P[k], 3, from + 4 * k);
        std::copy_n(Q[k], 3, to + 4 * k);
        from[4 * k + 3] = to[4 * k + 3] = 1.0F;
    }
    float fromInverse[SIZE] = {};
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
    for (int i = 0; i < SIZE; ++i) {
        sum += magnitude(M[i] - (i % 5 == 0 ? 1.0 : 0.0));
    }
    return sum <= SL_IDENTITY_SUM ? 1 : 0;
}

void slNormalizeMatrix(float *M) {
    slNormalize(M);
    slNormalize(M + 4);
    store(cross(load3(M), load3(M + 4)), M + 8);
    slNormalize(M + 8);
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
