// Point3DArr: the list of points in space.
//
// What it shares with the other slot arrays, and the comment of every operation named by `using`,
// stands in detail/slot_storage.h. x alone decides whether a point is live; a deleted point keeps
// its y and z. Lengths are the caller's.
#pragma once

#include <cstdio>

#include "trunnion/containers/detail/slot_kinds.h"

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
    // from those of `p` by less than 0.0001 (a box, not a sphere), or the new slot. Linear.
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

protected:
    using Base::getCurrentItemPrtConstM;
};
