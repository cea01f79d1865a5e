// Lengths and distances, directions, angles.
#include "trunnion/geometry/vectors.h"

#include "trunnion/geometry/detail/guards.h"

using namespace trunnion::detail;

namespace {

// Writes the cosine of the angle between a and b, unless one of them has no direction.
bool cosineBetween(const Vec3 &a, const Vec3 &b, double &cosine) {
    const double firstLength = length(a);
    const double secondLength = length(b);
    if (isDegenerateLength(firstLength) || isDegenerateLength(secondLength)) {
        return false;
    }
    cosine = dot(a, b) / (firstLength * secondLength);
    return true;
}

} // namespace

float slLength(const float *v) {
    return toFloat(slLengthD(v));
}

double slLength(const double *v) {
    return length(load3(v));
}

double slLengthD(const float *v) {
    return length(load3(v));
}

float slNorm2(const float *v) {
    return slLength(v);
}

float slLength2(const float *v) {
    return toFloat(length(load2(v)));
}

double slLength2(const double *v) {
    return length(load2(v));
}

double slSquareLength2(const float *v) {
    return squaredLength(load2(v));
}

double slSquareLength2(const double *v) {
    return clampFinite(squaredLength(load2(v)));
}

float slDistance(float x1, float y1, float z1, float x2, float y2, float z2) {
    return toFloat(length(Vec3{x2, y2, z2} - Vec3{x1, y1, z1}));
}

float slDistance3(const float *a, const float *b) {
    return toFloat(slSqrt(slSquareDistance3(a, b)));
}

double slSquareDistance3(const float *a, const float *b) {
    return squaredLength(load3(b) - load3(a));
}

float slDistance2(const float *a, const float *b) {
    return toFloat(length(load2(b) - load2(a)));
}

double slDistanceD2(const double *a, const double *b) {
    return length(load2(b) - load2(a));
}

float slDistSquare2(float x1, float y1, float x2, float y2) {
    return toFloat(squaredLength(Vec2{x2, y2} - Vec2{x1, y1}));
}

double slPlaneDistSqr(const float *a, const float *b) {
    return squaredLength(load2(b) - load2(a));
}

float slDot2D(const float *a, const float *b) {
    return toFloat(dot(load2(a), load2(b)));
}

int slNormalize(float *v) {
    Vec3 direction = load3(v);
    const int done = normalize(direction);
    store(direction, v);
    return done;
}

int slNormalize(double *v) {
    Vec3 direction = load3(v);
    const int done = normalize(direction);
    store(direction, v);
    return done;
}

int slNormalize2D(double *v) {
    Vec3 direction{v[0], v[1], 0.0};
    const int done = normalize(direction);
    v[0] = direction.x;
    v[1] = direction.y;
    return done;
}

int slNormalize2D(float *v) {
    double wide[2] = {v[0], v[1]};
    const int done = slNormalize2D(wide);
    store(load2(wide), v);
    return done;
}

float slLenAndDir(const float *v, float *dir) {
    const Vec3 vector = load3(v);
    const double len = length(vector);
    store(isDegenerateLength(len) ? Vec3{1.0, 0.0, 0.0} : vector / len, dir);
    return toFloat(len);
}

int slGetNormalVectBtPnts(const float *a, const float *b, float *out) {
    store(load3(b) - load3(a), out);
    return slNormalize(out);
}

int slGetNormalVectBtPnts(const float *a, const float *b, double *out) {
    store(load3(b) - load3(a), out);
    return slNormalize(out);
}

int slVect(const float *a, const float *b, const float *c, float *u, float *w) {
    const Vec3 middle = load3(b);
    const Vec3 end = load3(c);
    store(load3(a) - middle, u);
    store(end - middle, w);
    return 1;
}

void slOthVect(const float *v, float *out) {
    const Vec3 vector = load3(v);
    if (belowTolerance(vector.x, SL_ZERO)) {
        store(Vec3{1.0, 0.0, 0.0}, out);
    } else if (belowTolerance(vector.y, SL_ZERO)) {
        store(Vec3{0.0, 1.0, 0.0}, out);
    } else if (belowTolerance(vector.z, SL_ZERO)) {
        store(Vec3{0.0, 0.0, 1.0}, out);
    } else {
        store(unit({-vector.y, vector.x, 0.0}), out);
    }
}

void slOthPlane(const float *n, float *u, float *w) {
    const Vec3 normal = load3(n);
    slOthVect(n, u);
    store(unit(cross(normal, load3(u))), w);
}

void slSetPnt3DValueByDiv(float d, float *v) {
    store(load3(v) / d, v);
}

int slVectParallel(const float *a, const float *b) {
    const Vec3 first = load3(a);
    const Vec3 second = load3(b);
    const double firstLength = length(first);
    const double secondLength = length(second);
    if (isDegenerateLength(firstLength) || isDegenerateLength(secondLength)) {
        return 0;
    }
    return length(cross(first, second)) < firstLength * secondLength * SL_ZERO ? 1 : 0;
}

int slGetVectMaxDir(const float *v) {
    int greatest = 0;
    for (int i = 1; i < 3; ++i) {
        if (magnitude(v[i]) > magnitude(v[greatest])) {
            greatest = i;
        }
    }
    return greatest;
}

int slComparWithCoordAxis(const float *v) {
    const Vec3 vector = load3(v);
    if (squaredLength(Vec2{vector.y, vector.z}) < SL_ZERO_SQR_D) {
        return 0;
    }
    if (squaredLength(Vec2{vector.x, vector.z}) < SL_ZERO_SQR_D) {
        return 1;
    }
    return squaredLength(Vec2{vector.x, vector.y}) < SL_ZERO_SQR_D ? 2 : -1;
}

int slIsEqualPoint3D(const float *a, const float *b) {
    return slSquareDistance3(a, b) < SL_ZERO_SQR ? 1 : 0;
}

int slGetVectAngle(const float *a, const float *b, float *angle) {
    const Vec3 first = load3(a);
    const Vec3 second = load3(b);
    *angle = toFloat(dot(first, second));
    double cosine = 0.0;
    if (!cosineBetween(first, second, cosine)) {
        return 0;
    }
    *angle = toFloat(slAcos(cosine));
    return 1;
}

float slCalAngleTwoVects(const float *a, const float *b, const float *ref) {
    float first[3] = {a[0], a[1], a[2]};
    float second[3] = {b[0], b[1], b[2]};
    slNormalize(first);
    slNormalize(second);
    return toFloat(signedAngle(load3(first), load3(second), load3(ref)));
}

double slCalAngleTwoVects(const double *a, const double *b, const double *ref) {
    return signedAngle(unit(load3(a)), unit(load3(b)), load3(ref));
}

float slGetVectorAngle(const float *v) {
    if (slSign(v[0]) == 0 && slSign(v[1]) == 0) {
        return 0.0F;
    }
    double angle = slAcos(v[0] / length(load2(v)));
    if (slSign(v[1]) == -1) {
        angle = SL_TWO_PI - angle;
    }
    return toFloat(angle * SL_HALF_TURN_DEGREES * SL_ONE_OVER_PI);
}

float slComputeAngle(float *p1, float *p2, float *vertex) {
    const Vec3 corner = load3(vertex);
    double cosine = 0.0;
    if (!cosineBetween(load3(p1) - corner, load3(p2) - corner, cosine)) {
        return 0.0F;
    }
    return toFloat(slAcos(cosine) * SL_DEGREES_PER_RADIAN);
}

float slGetDirectAngleToZ(int axis, const float *p, const float *q) {
    const float zAxis[3] = {0.0F, 0.0F, 1.0F};
    const float ref[3] = {axis == 1 ? 0.0F : 1.0F, axis == 1 ? 1.0F : 0.0F, 0.0F};
    float direction[3];
    store(load3(q) - load3(p), direction);
    const float angle = slCalAngleTwoVects(zAxis, direction, ref);
    return angle < 0.0F ? toFloat(static_cast<double>(angle) + SL_TWO_PI) : angle;
}

int slMirrorAngleAboutVerticalAxis(float *angle) {
    // The end of the first half turn and of the turn, and three half turns.
    constexpr double halfTurn = SL_PI_D + SL_TINY;
    constexpr double wholeTurn = 2.0 * SL_PI_D - SL_TINY;
    constexpr double threeHalfTurns = std::bit_cast<float>(std::uint32_t{0x4116CBE4});
    if (*angle < 0.0F) {
        *angle = toFloat(static_cast<double>(*angle) + SL_TWO_PI);
    } else if (*angle > wholeTurn) {
        *angle = toFloat(static_cast<double>(*angle) - SL_TWO_PI);
    }
    const bool inFirstHalf = *angle > -SL_TINY && *angle < halfTurn;
    *angle = toFloat((inFirstHalf ? SL_PI : threeHalfTurns) - *angle);
    return 1;
}
