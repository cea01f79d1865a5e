// Points against polygons and figures, and points that lie in one plane.
#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/containment.h"
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/height_band.h"
#include "trunnion/geometry/detail/matrix.h"
#include "trunnion/geometry/matrices.h"

using namespace trunnion::detail;

namespace {

// slRightInter for an edge nearly at one height.
int meetHorizontal(float x, float y, const float *a, const float *b) {
    if (!belowTolerance(static_cast<double>(y) - a[1], SL_ZERO)) {
        return SL_EDGE_NOT_MET;
    }
    if (a[0] > x && b[0] > x) {
        return SL_EDGE_ALONG_RAY;
    }
    const bool spans = (a[0] > x && b[0] < x) || (a[0] < x && b[0] > x);
    return spans ? SL_EDGE_HOLDS_POINT : SL_EDGE_NOT_MET;
}

// Whether the ends of an edge lie strictly on either side of a height.
bool spansHeight(float y, const float *a, const float *b) {
    return (a[1] > y && b[1] < y) || (a[1] < y && b[1] > y);
}

// Where an edge that spans the height y crosses it.
struct HeightCut {
    double along; // parameter on the edge
    double x;
};

HeightCut cutAtHeight(float y, const Vec2 &start, const Vec2 &edge) {
    const double along = (y - start.y) / edge.y;
    return {along, start.x + along * edge.x};
}

// Counts the edges that the ray from p toward +X meets.
class RayCount {
public:
    explicit RayCount(const float *point) : p(point), band(point[1]) {}

    // The edges between n points. False if p lies on one of them: nothing more needs to be counted.
    bool add(const float (*pts)[2], int n) {
        constexpr int mostEdges = HeightBand::mostPoints - 1;
        int count = 0;
        for (int first = 0; n - first > 1; first += count) {
            count = std::min(n - first - 1, mostEdges);
            for (std::uint64_t near = band.edgesNear(pts + first, count); near != 0;
                 near &= near - 1) {
                const int i = first + std::countr_zero(near);
                if (!add(pts[i], pts[i + 1])) {
                    return false;
                }
            }
        }
        return true;
    }

    // One edge, judged by the rules of slRightInter.
    bool add(const float *a, const float *b) {
        const Vec2 start = load2(a);
        const Vec2 edge = load2(b) - start;
        if (belowTolerance(edge.y, SL_ZERO)) {
            const int meeting = meetHorizontal(p[0], p[1], a, b);
            crossings += meeting == SL_EDGE_ALONG_RAY ? 1U : 0U;
            return meeting != SL_EDGE_HOLDS_POINT;
        }
        if (!spansHeight(p[1], a, b)) {
            return true;
        }
        const HeightCut cut = cutAtHeight(p[1], start, edge);
        // A crossing at the start of the edge belongs to the edge before it. Neither question is a
        // branch: which way they go is rarely foreseen.
        crossings += static_cast<unsigned int>(cut.x > p[0]) &
                     static_cast<unsigned int>(toFloat(cut.along) > SL_ZERO);
        return !belowTolerance(cut.x - p[0], SL_ZERO);
    }
    int answer() const { return crossings % 2 != 0 ? SL_POLYGON_INSIDE : SL_POLYGON_OUTSIDE; }

private:
    const float *p;
    HeightBand band;
    unsigned int crossings = 0;
};

bool isClosed(const float *first, const float *last) {
    const Vec2 gap = load2(first) - load2(last);
    return !(magnitude(gap.x) > SL_ZERO || magnitude(gap.y) > SL_ZERO);
}

struct Release {
    void operator()(void *block) const { slFree(block); }
};
using PlanePoints = std::unique_ptr<float[][2], Release>;

// Room for n plane points, or null.
PlanePoints allocatePlanePoints(int n) {
    const std::size_t bytes = static_cast<std::size_t>(n) * sizeof(float[2]);
    if (bytes > UINT_MAX) {
        return nullptr;
    }
    return PlanePoints(static_cast<float(*)[2]>(slMalloc(static_cast<unsigned int>(bytes))));
}

// Whether p lies strictly to the left of the line from `from` to `to`.
bool isLeft(const float *from, const float *to, const float *p) {
    const Vec2 start = load2(from);
    return cross(load2(to) - start, load2(p) - start) > 0.0;
}

// Sum of the slFabs of the coordinate differences.
double coordinateDistance(const float *a, const float *b) {
    const Vec3 arm = load3(a) - load3(b);
    return magnitude(arm.x) + magnitude(arm.y) + magnitude(arm.z);
}

// The edges of a polygon as seen from its first point: for each, the vector area of the triangle
// that they form (twice its size) goes to `visit`, with the arms to the ends of the edge.
template <typename Visit>
void forEachTriangle(const float (*pts)[3], int n, Visit visit) {
    const Vec3 first = load3(pts[0]);
    Vec3 arm = load3(pts[0]) - first;
    for (int i = 1; i < n; ++i) {
        const Vec3 next = load3(pts[i]) - first;
        visit(cross(arm, next), arm, next);
        arm = next;
    }
}

// The mean of the points; a last row that repeats the first is not counted twice.
Vec3 meanPoint(const float (*pts)[3], int n) {
    const int count = n > 1 && slIsEqualPoint3D(pts[0], pts[n - 1]) != 0 ? n - 1 : n;
    Vec3 sum{0.0, 0.0, 0.0};
    for (int i = 0; i < count; ++i) {
        sum = sum + load3(pts[i]);
    }
    return sum / count;
}

} // namespace

int slRightInter(float x, float y, const float *a, const float *b, float *pnt, float *t) {
    const Vec2 start = load2(a);
    const Vec2 edge = load2(b) - start;
    if (belowTolerance(edge.y, SL_ZERO)) {
        return meetHorizontal(x, y, a, b);
    }
    if (!spansHeight(y, a, b)) {
        return SL_EDGE_NOT_MET;
    }
    const HeightCut cut = cutAtHeight(y, start, edge);
    *t = toFloat(cut.along);
    store(Vec2{cut.x, y}, pnt);
    if (belowTolerance(cut.x - x, SL_ZERO)) {
        return SL_EDGE_HOLDS_POINT;
    }
    return cut.x > x ? SL_EDGE_CROSSED : SL_EDGE_NOT_MET;
}

int slPointInterFaceM(const float (*pts)[2], int n, const float *p) {
    RayCount count(p);
    if (!count.add(pts, n)) {
        return SL_POLYGON_INSIDE;
    }
    if (n > 1 && !isClosed(pts[0], pts[n - 1]) && !count.add(pts[n - 1], pts[0])) {
        return SL_POLYGON_INSIDE;
    }
    return count.answer();
}

int Point2DArr::JudgePntInBoundM(const float *p) const {
    const int count = GetBoundM();
    if (count < 4) {
        return 0;
    }
    // The storage holds the slots as pairs, one behind the other.
    const auto *points = reinterpret_cast<const float(*)[2]>(data());
    return slPointInterFaceM(points, count, p) == SL_POLYGON_INSIDE ? 1 : 0;
}

int slJudgePntInPolygon(int n, const float (*pts)[3], const float *norm, const float *pnt) {
    if (n < 1) {
        return SL_POLYGON_OUTSIDE;
    }
    const PlanePoints flat = allocatePlanePoints(n);
    if (flat == nullptr) {
        return SL_POLYGON_INSIDE;
    }
    float level[MATRIX_SIZE];
    slGenVectToZMatrix(pnt, norm, level);
    for (int i = 0; i < n; ++i) {
        float turned[3];
        slMatrix16MultiPoint3(level, pts[i], turned);
        std::copy_n(turned, 2, flat[static_cast<std::size_t>(i)]);
    }
    return slPointInterFaceM(flat.get(), n, pnt);
}

int slIsPntInsideOfTriangle(const float *p, const float *a, const float *b, const float *c) {
    const bool first = isLeft(a, b, p);
    return first == isLeft(b, c, p) && first == isLeft(c, a, p) ? 1 : 0;
}

int slIsPntInsideOfTrapezium(const float *p, const float *a, const float *b, const float *c,
                             const float *d) {
    const bool cutsAtC = isLeft(a, c, b) != isLeft(a, c, d);
    const bool inside =
        cutsAtC
            ? slIsPntInsideOfTriangle(p, a, b, c) != 0 || slIsPntInsideOfTriangle(p, c, d, a) != 0
            : slIsPntInsideOfTriangle(p, a, b, d) != 0 || slIsPntInsideOfTriangle(p, b, c, d) != 0;
    return inside ? 1 : 0;
}

int slGetIntersectType(const float *p, int i, int n, const float (*pts)[2], int step) {
    const long long behind = static_cast<long long>(i) + step;
    const int previous = i >= 1 ? i - 1 : n - 2;
    const int next = behind < n ? static_cast<int>(std::max(behind, -1LL)) : 1;
    if (std::min(previous, next) < 0 || std::max(previous, next) >= n) {
        return SL_VERTEX_CROSSES;
    }
    const double before = static_cast<double>(pts[previous][1]) - p[1];
    const double after = static_cast<double>(pts[next][1]) - p[1];
    const double bound = magnitude(before) * magnitude(after) * SL_ZERO;
    return bound < before * after ? SL_VERTEX_TOUCHES : SL_VERTEX_CROSSES;
}

// Each triangle's centroid is weighted with its area along the whole, negative where the boundary
// turns back.
void slPolygenCenterM(float (*pts)[3], int n, float *out) {
    if (n < 1) {
        return;
    }
    Vec3 area{0.0, 0.0, 0.0};
    double reach = 0.0;
    forEachTriangle(pts, n, [&](const Vec3 &part, const Vec3 &, const Vec3 &next) {
        area = area + part;
        reach = std::max(reach, squaredLength(next));
    });
    const double square = squaredLength(area);
    if (std::sqrt(square) <= SL_ZERO * reach) {
        store(meanPoint(pts, n), out);
        return;
    }
    Vec3 moment{0.0, 0.0, 0.0};
    forEachTriangle(pts, n, [&](const Vec3 &part, const Vec3 &arm, const Vec3 &next) {
        moment = moment + dot(part, area) / square * (arm + next);
    });
    store(load3(pts[0]) + moment / 3.0, out);
}

int slJudgeIsTriangle(const float *a, const float *b, const float *c) {
    const bool distinct = !(coordinateDistance(a, b) < SL_ZERO) &&
                          !(coordinateDistance(b, c) < SL_ZERO) &&
                          !(coordinateDistance(c, a) < SL_ZERO);
    return distinct ? 1 : 0;
}

int slGetVectBtPntsNZero(const float *base, int n, const float (*pts)[3], int *idx, float *out) {
    std::fill_n(out, 3, 0.0F);
    while (slLength(out) < SL_ZERO && *idx < n) {
        store(load3(pts[*idx]) - load3(base), out);
        ++*idx;
    }
    if (!(slLength(out) > SL_ZERO)) {
        return 0;
    }
    slNormalize(out);
    return 1;
}

int slGetNormNZero(const float *base, const float *dir, int n, const float (*pts)[3], int *idx,
                   float *out) {
    std::fill_n(out, 3, 0.0F);
    while (slLength(out) < SL_ZERO) {
        float toPoint[3];
        if (slGetVectBtPntsNZero(base, n, pts, idx, toPoint) == 0) {
            return 0;
        }
        store(cross(load3(dir), load3(toPoint)), out);
    }
    slNormalize(out);
    return 1;
}

int slJudgePntCoPlane(int n, const float (*pts)[3], float *normal) {
    if (n < 2) {
        return SL_POINTS_EQUAL;
    }
    const float *base = pts[0];
    int idx = 1;
    float dir[3];
    if (slGetVectBtPntsNZero(base, n, pts, &idx, dir) == 0) {
        return SL_POINTS_EQUAL;
    }
    if (slGetNormNZero(base, dir, n, pts, &idx, normal) == 0) {
        return SL_POINTS_ON_LINE;
    }
    float further[3];
    while (slGetNormNZero(base, dir, n, pts, &idx, further) == 1) {
        if (length(cross(load3(normal), load3(further))) > SL_ZERO) {
            return SL_POINTS_SCATTERED;
        }
    }
    return SL_POINTS_IN_PLANE;
}

int slRadialIntersectFaceM(const float *a, const float *dir, const float (*pts)[3], int n,
                           float *out) {
    float normal[3];
    const int arrangement = slJudgePntCoPlane(n, pts, normal);
    if (arrangement != SL_POINTS_IN_PLANE) {
        return arrangement;
    }
    const int hit = slRadialIntersectPlane(a, dir, normal, slGetPlaneEquation(pts[0], normal), out);
    if (hit != SL_LINE_HITS) {
        return hit;
    }
    return slJudgePntInPolygon(n, pts, normal, out) == SL_POLYGON_OUTSIDE ? 0 : 1;
}
