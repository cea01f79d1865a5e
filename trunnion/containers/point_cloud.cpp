// What a list of points measures of the cloud that it holds.
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/distances.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/scalars.h"

using trunnion::detail::dot;
using trunnion::detail::load3;
using trunnion::detail::store;
using trunnion::detail::toFloat;
using trunnion::detail::Vec3;

namespace {

// The largest of the values offered and the slot that it came with; of equal ones the first.
// Nothing that is not above 0 is taken.
struct Largest {
    float value = 0;
    int slot = SL_DELETED_INT;

    void offer(float candidate, int from) {
        if (candidate > value) {
            value = candidate;
            slot = from;
        }
    }
};

} // namespace

template <class Visit>
void Point3DArr::forLivePoints(int start, int count, Visit visit) const {
    const int end = bound; // a visit does not change it, which the compiler cannot know
    int left = count < 0 ? end : count;
    for (int i = std::max(start, 0); i < end && left > 0; ++i) {
        const float *point = slotAt(i);
        if (*point > SL_LIVE_REAL_LIMIT) {
            visit(i, point);
            --left;
        }
    }
}

template <class Visit>
void Point3DArr::forLivePoints(Visit visit) const {
    forLivePoints(0, -1, visit);
}

// Farthest points

float Point3DArr::GetFarthestPntToLineM(const float *a, const float *b, int start, int count,
                                        int *idx) const {
    Largest best;
    forLivePoints(start, count, [&](int slot, const float *point) {
        float t;
        best.offer(slGetPntLineSquareDist(a, b, point, &t), slot);
    });
    *idx = best.slot;
    return best.value;
}

float Point3DArr::GetFarthestPntToPlaneM(const float *normal, float d, int start, int count,
                                         int *idx) const {
    Largest best;
    forLivePoints(start, count, [&](int slot, const float *point) {
        best.offer(slGetPntPlaneDist(normal, d, point), slot);
    });
    *idx = best.slot;
    return best.value;
}

// Shape errors

template <class Deviation>
float Point3DArr::shapeError(Deviation deviation) const {
    if (available < 1) {
        return 0.0F;
    }
    // The deviations are computed twice instead of kept: a measure needs no memory of its own.
    float sum = 0.0F;
    forLivePoints([&](int, const float *point) {
        sum = toFloat(static_cast<double>(sum) + deviation(point));
    });
    const double mean = static_cast<double>(sum) / available;
    double squares = 0.0;
    forLivePoints([&](int, const float *point) {
        const double difference = deviation(point) - mean;
        squares += difference * difference;
    });
    return toFloat(slSqrt(squares) / available);
}

float Point3DArr::GetShapeErrorToLineM(const float *a, const float *b) const {
    return shapeError([=](const float *point) {
        float t;
        return slGetPntLineDist(a, b, point, &t);
    });
}

float Point3DArr::GetShapeErrorToPlaneM(const float *normal, float d) const {
    return shapeError([=](const float *point) { return slGetPntPlaneDist(normal, d, point); });
}

float Point3DArr::GetShapeErrorToCircleM(const float *center, float radius) const {
    return shapeError([=](const float *point) {
        return toFloat(static_cast<double>(slDistance3(point, center)) - radius);
    });
}

// Least squares

int Point3DArr::GenPlaneByLeastSquareM(const float *dir, float *normal, float *d) const {
    const int w = slGetVectMaxDir(dir);
    const int u = (w + 1) % 3;
    const int v = (w + 2) % 3;
    double matrix[9];
    double rhs[3];
    double x[3];
    GenEquationGroupM(u, v, w, matrix, rhs);
    const int solved = slSolveEquationGroup3(matrix, rhs, x);
    if (solved != 1) {
        return solved;
    }
    normal[u] = toFloat(x[0]);
    normal[v] = toFloat(x[1]);
    normal[w] = 1.0F;
    const float length = slLength(normal);
    slSetPnt3DValueByDiv(length, normal);
    *d = toFloat(x[2] / length);
    return 1;
}

void Point3DArr::GenEquationGroupM(int u, int v, int w, double *matrix, double *rhs) const {
    // Sums of their own instead of those of the caller: they stay in registers.
    double uu = 0.0;
    double uv = 0.0;
    double vv = 0.0;
    Vec3 sum{0.0, 0.0, 0.0};
    double uw = 0.0;
    double vw = 0.0;
    forLivePoints([&](int, const float *point) {
        const Vec3 p{point[u], point[v], point[w]};
        uu += p.x * p.x;
        uv += p.y * p.x;
        vv += p.y * p.y;
        uw -= p.x * p.z;
        vw -= p.y * p.z;
        sum.x += p.x;
        sum.y += p.y;
        sum.z -= p.z;
    });
    const double equations[9] = {
        uu, uv, sum.x, uv, vv, sum.y, sum.x, sum.y, static_cast<double>(available)};
    std::copy_n(equations, 9, matrix);
    rhs[0] = uw;
    rhs[1] = vw;
    rhs[2] = sum.z;
}

// Centre, averages, extents

void Point3DArr::GetBaryCenterM(float *const out) const {
    Vec3 sum{0.0, 0.0, 0.0};
    if (available >= 1) {
        forLivePoints([&](int, const float *point) { sum = sum + load3(point); });
    }
    store(sum, out);
    if (available >= 1) {
        slSetPnt3DValueByDiv(static_cast<float>(available), out);
    }
}

float Point3DArr::GetAverageDistToLineM(const float *a, const float *dir) const {
    double sum = 0.0;
    forLivePoints([&](int, const float *point) {
        float t;
        sum += slGetPntLineDistByVect(a, dir, point, &t);
    });
    return available < 1 ? 0.0F : toFloat(sum / available);
}

float Point3DArr::GetAverageDistToPntM(const float *pnt) const {
    double sum = 0.0;
    forLivePoints([&](int, const float *point) { sum += slDistance3(point, pnt); });
    return available < 1 ? 0.0F : toFloat(sum / available);
}

float Point3DArr::GetMaxLenToGivenPntM(const float *pnt) const {
    Largest best;
    forLivePoints([&](int slot, const float *point) { best.offer(slDistance3(point, pnt), slot); });
    return best.value;
}

void Point3DArr::GetMaxMinM(const float *dirX, const float *dirY, const float *dirZ, float *rangeX,
                            float *rangeY, float *rangeZ) const {
    const Vec3 directions[3] = {load3(dirX), load3(dirY), load3(dirZ)};
    float *const ranges[3] = {rangeX, rangeY, rangeZ};
    float first[3];
    int idx;
    GetFirstM(first, &idx);
    for (int axis = 0; axis < 3; ++axis) {
        ranges[axis][0] = ranges[axis][1] = toFloat(dot(load3(first), directions[axis]));
    }
    forLivePoints([&](int, const float *point) {
        for (int axis = 0; axis < 3; ++axis) {
            const float along = toFloat(dot(load3(point), directions[axis]));
            float *range = ranges[axis];
            if (along > range[1]) {
                range[1] = along;
            } else if (along < range[0]) {
                range[0] = along;
            }
        }
    });
}

// Moving all points

void Point3DArr::ProjectPntsToPlaneM(const float *pnt, const float *normal) {
    const float d = slGetPlaneEquation(pnt, normal);
    forLivePoints([=, this](int slot, const float *point) {
        float foot[3];
        slProjectPntToPlane(normal, d, point, foot);
        std::copy_n(foot, 3, slotAt(slot));
    });
}

void Point3DArr::TransToLocalCoordSysM(const XYCoordSysD &cs) {
    forLivePoints([&, this](int slot, const float *point) {
        const Vec3 arm = load3(point) - load3(cs.origin);
        store(Vec3{dot(arm, load3(cs.xAxis)), dot(arm, load3(cs.yAxis)), dot(arm, load3(cs.zAxis))},
              slotAt(slot));
    });
}
