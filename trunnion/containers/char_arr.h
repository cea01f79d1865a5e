// CharArr: the slot array of bytes.
//
// What it shares with the other slot arrays, and the comment of every operation named by `using`,
// stands in detail/slot_storage.h. Two things are its own: every store counts as a new live item,
// also over a slot in use; and a walk sees every byte below the bound, zero bytes too, while
// deletion and purging take only the bytes 1 to 127 for live.
#pragma once

#include "trunnion/containers/detail/slot_kinds.h"

class TRUNNION_API CharArr : private trunnion::detail::SingleSlots<trunnion::detail::CharSlots> {
    using Base = trunnion::detail::SingleSlots<trunnion::detail::CharSlots>;

public:
    CharArr() = default;
    // Room for `size` bytes; below 5 the array stays inline.
    explicit CharArr(int size) : Base(size) {}
    CharArr(const CharArr &) = default;
    CharArr &operator=(const CharArr &) = default;
    virtual ~CharArr();

    using Base::AddItemM;
    using Base::AddSizeM;
    using Base::DelAllM;
    using Base::DelAllVirtualM;
    using Base::DelItemM;
    using Base::FmInputOzkLstM;
    using Base::FmOutputOzkLstM;
    using Base::GetAvailableNumM;
    using Base::GetBoundM;
    using Base::GetFirstM;
    using Base::GetItemM;
    using Base::GetItemPM;
    using Base::GetItemPosiM;
    using Base::GetLastM;
    using Base::GetLengthM;
    using Base::GetNextM;
    using Base::InitialSizeM;
    using Base::InsertItemM;
    using Base::PurgeDeletedItemM;
    using Base::SetIncrementM;
    using Base::SetItemM;

    // First byte equal to `c` from slot `from` up to the last: 1 and its slot, or 0 and
    // SL_DELETED_INT.
    int FindItemM(char c, int *idx, int from) const;
    int ImportArrM(const CharArr &other) { return Base::ImportArrM(other); }

protected:
    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;
};
