// Point3DArr: the list of points in space, and the measures of the cloud that it holds.
//
// What it shares with the other slot arrays, and the comment of every operation named by `using`,
// stands in detail/slot_storage.h. x alone decides whether a point is live; a deleted point keeps
// its y and z. Lengths are the caller's.
#pragma once

#include <cstdio>

#include "trunnion/containers/detail/point_cells.h"
#include "trunnion/containers/detail/slot_finder.h"
#include "trunnion/containers/detail/slot_kinds.h"

struct XYCoordSysD;

class TRUNNION_API Point3DArr
    : private trunnion::detail::ListedSlots<trunnion::detail::Point3DSlots> {
    using Base = trunnion::detail::ListedSlots<trunnion::detail::Point3DSlots>;

public:
    Point3DArr() = default;
    // Room for `size` points; below 5 the list stays inline.
    explicit Point3DArr(int size) : Base(size) {}
    Point3DArr(const Point3DArr &) = default;
    Point3DArr &operator=(const Point3DArr &) = default;
    virtual ~Point3DArr();

    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::getCurrentItemPrtM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // InitialSizeM by its second name.
    int IntialSizeM(int n) { return InitialSizeM(n); }

    // TAG_AVAILABLE if x of slot `idx` is above SL_LIVE_REAL_LIMIT, else TAG_UNUSED; `idx` must lie
    // below the capacity.
    int IsPntAvailableM(int idx) const;
    // Appends a point if no slot holds it. Returns the lowest slot whose x, y and z each differ
    // from those of `p` by less than 0.0001 (a box, not a sphere), or the new slot. Constant time
    // on the average while nothing but appending happens in between, with an index of 10 to 24
    // bytes a point, 80 at most; linear otherwise, and as long as a writable pointer may be in use.
    int AddPointM(float *const p);
    // Gathers points: slot idx[i] goes to out[i] for i below `n`; a number outside the list gives
    // the marker in x and y of that row.
    int GetVertexM(int n, int *idx, float (*out)[3]) const;
    // Last live point: GetPreviousM(out, idx, bound).
    int GetLastM(float *const out, int *idx) const;
    // Nearest live point below slot `before`: stores it and its slot and returns 1. If there is
    // none, three markers and SL_DELETED_INT are stored and the result is -1.
    int GetPreviousM(float *const out, int *idx, int before) const;
    // Deletes the last slot. Returns the new bound, 0 on an empty list.
    int CancelLastItemM();
    // Writes z of a slot inside 0 to bound - 1; outside nothing happens. No count changes.
    void SetItemZValueM(int idx, float z);
    // Puts the slots of `other` behind this list, slot k into slot bound + k; a slot of `other`
    // that is not live leaves its place unwritten. All new slots count as available, so `other`
    // should have no holes.
    int AppendPntsM(const Point3DArr &other);
    // Writes the slots below the bound as raw floats, 12 bytes each, with no count.
    void FmOutputLstM(std::FILE *f) const;
    // Replaces the list by `n` points read raw; both counts become n. A file that holds fewer
    // points gives as many as it holds; n below 1 gives none.
    void FmInputLstM(std::FILE *f, int n);
    // Moves every live point by the matrix `m` (float[16], column by column); as directions,
    // without the translation, if `isVector` is not 0.
    void TransByMatrixM(const float *m, int isVector);

    // Measures of the cloud of live points (x above SL_LIVE_REAL_LIMIT). Points and directions are
    // float[3], lengths the caller's; n is the number of live points. Without one the measures are
    // 0. Linear unless they say otherwise.

    // The two points farthest from each other among the first `count` live points at or behind slot
    // `start`; a negative `count` stands for the bound. Gives the square of their distance and
    // their slots, the lower one first; of equal pairs the earliest. 0, and SL_DELETED_INT in both,
    // where no two points differ. Quadratic at worst, where most points are as far from the centre
    // as can be; otherwise the time of a sort.
    float GetFarthestTwoPointsM(int start, int count, int *i1, int *i2) const;
    // The same choice of points: the square of the largest distance from the line through the
    // points `a` and `b`, and the first slot that has it; SL_DELETED_INT where all points lie on
    // the line.
    float GetFarthestPntToLineM(const float *a, const float *b, int start, int count,
                                int *idx) const;
    // The same with the unsigned distance, not squared, from the plane with the unit normal
    // `normal` and the number `d`.
    float GetFarthestPntToPlaneM(const float *normal, float d, int start, int count,
                                 int *idx) const;

    // How unevenly the points deviate: the root of the sum of the squared differences between
    // deviation and mean deviation, divided by n. (No standard deviation: the division stands
    // outside the root.) The deviation is the distance from a line through two points, the unsigned
    // distance from a plane, or the signed distance from a circle's line as the distance from its
    // centre less the radius.
    float GetShapeErrorToLineM(const float *a, const float *b) const;
    float GetShapeErrorToPlaneM(const float *normal, float d) const;
    float GetShapeErrorToCircleM(const float *center, float radius) const;

    // The plane of least squares, measured along the dominant axis of `dir`, an approximate normal.
    // Gives the unit normal, positive along that axis whatever the sign of `dir`, and the plane's
    // number. 0, and nothing written, where the points determine no plane over that axis.
    int GenPlaneByLeastSquareM(const float *dir, float *normal, float *d) const;
    // The normal equations of that fit, for the axes u and v over w, a permutation of 0, 1, 2:
    // `matrix` has 9 entries and is symmetric, `rhs` has 3.
    void GenEquationGroupM(int u, int v, int w, double *matrix, double *rhs) const;

    // Mean of the points.
    void GetBaryCenterM(float *const out) const;
    // Mean distance from the line through `a` along the unit vector `dir`, and from a point.
    float GetAverageDistToLineM(const float *a, const float *dir) const;
    float GetAverageDistToPntM(const float *pnt) const;
    // Largest distance from a point.
    float GetMaxLenToGivenPntM(const float *pnt) const;
    // Least and greatest dot product of the points with each of three directions. Without a live
    // point the ranges are those of the marker triple and mean nothing.
    void GetMaxMinM(const float *dirX, const float *dirY, const float *dirZ, float *rangeX,
                    float *rangeY, float *rangeZ) const;

    // Moving all live points.

    // To their feet on the plane through `pnt` with the unit normal `normal`.
    void ProjectPntsToPlaneM(const float *pnt, const float *normal);
    // To their coordinates in the frame `cs`.
    void TransToLocalCoordSysM(const XYCoordSysD &cs);

protected:
    using Base::getCurrentItemPrtConstM;

private:
    // Calls `visit(slot, point)` for every live point, or for the first `count` at or behind
    // `start`; the count of a measure.
    template <class Visit>
    void forLivePoints(Visit visit) const;
    template <class Visit>
    void forLivePoints(int start, int count, Visit visit) const;
    template <class Deviation>
    float shapeError(Deviation deviation) const;

    trunnion::detail::SlotFinder<trunnion::detail::PointCells> finder;
};
