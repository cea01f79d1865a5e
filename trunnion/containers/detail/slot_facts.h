// The differences between the nine slot arrays, as data: one record for each class, read by
// detail::SlotArray.
#pragma once

#include <bit>
#include <cstdint>

#include "trunnion/containers/item_base.h"

namespace trunnion::detail {

// When storing into a slot adds a live item: judged by what the slot held before.
enum class NewItemRule {
    heldMarker,     // exactly the marker
    heldBelowLimit, // below the limit
    heldNotAbove,   // not above the limit, not-a-number included
    always          // every store counts, also over a slot in use
};

// Which text form a list has.
enum class ListForm {
    indexed, // a line with its slot number before each slot; empty slots are recognised and passed
             // over on reading
    plain,   // the number of live items, then a line for each slot, empty ones included
    none
};

// -5e17 (bits 0xDCDE0B6B), the limit of the point lists.
inline constexpr float pointLiveLimit = std::bit_cast<float>(std::uint32_t{0xDCDE0B6B});

// What the records below have in common; each overrides what is different.
template <class ValueType, int valuesPerSlot>
struct SlotDefaults {
    using Value = ValueType;
    static constexpr int width =
        valuesPerSlot; // values in a slot; the first decides whether it is live

    static constexpr int outsideFill =
        valuesPerSlot; // values that GetItemM outside the range fills with the marker
    static constexpr int endFill =
        valuesPerSlot;                      // values that a finished walk fills with the marker
    static constexpr int outsideResult = 1; // result of GetItemM outside the range
    static constexpr bool checkedPointer = false; // GetItemPM gives null outside the range
    static constexpr bool walkSkipsEmpty =
        true; // false: every slot below the bound counts as live in a walk
    static constexpr bool purgeDropsMarkerOnly = false; // false: purge drops whatever is not live
    static constexpr bool purgeReturnsInline =
        false; // purge gives the block back when the rest fits inline
    static constexpr bool lastGivesSlot = false; // GetLastM returns the slot, not 1
    static constexpr bool clearsWholeBlock =
        false; // DelAllVirtualM marks all slots, not those below the bound
    static constexpr bool marksLate = true; // a fresh block stays raw until somebody can see it
    static constexpr int sizeMultiple = 1;  // InitialSizeM rounds up to it
    static constexpr ListForm listForm = ListForm::indexed;
    static constexpr int readEmptyTest =
        2; // leading values of which one marker makes a slot empty when read as text
    static constexpr bool isSearched = false; // some searches use an index beside the array
    using ClearResult = int;                  // of DelAllVirtualM
};

template <int valuesPerSlot>
struct IntegerSlots : SlotDefaults<int, valuesPerSlot> {
    static constexpr int marker = SL_DELETED_INT;
    static constexpr int liveAbove = SL_DELETED_INT;
    static constexpr NewItemRule newItemRule = NewItemRule::heldMarker;
    static constexpr int newItemLimit = SL_DELETED_INT;
};

template <int valuesPerSlot>
struct FloatSlots : SlotDefaults<float, valuesPerSlot> {
    static constexpr float marker = SL_DELETED_REAL;
    static constexpr float liveAbove = SL_LIVE_REAL_LIMIT;
    static constexpr NewItemRule newItemRule = NewItemRule::heldBelowLimit;
    static constexpr float newItemLimit = SL_LIVE_REAL_LIMIT;
};

struct TRUNNION_API IntSlots : IntegerSlots<1> {
    static constexpr bool isSearched = true;
    static constexpr bool checkedPointer = true;
    static constexpr bool purgeDropsMarkerOnly = true;
    static constexpr bool lastGivesSlot = true;
    static constexpr int readEmptyTest = 1;
};

struct TRUNNION_API RealSlots : FloatSlots<1> {
    static constexpr float liveAbove = SL_DELETED_REAL;
    static constexpr bool purgeReturnsInline = true;
    static constexpr bool lastGivesSlot = true;
    static constexpr bool clearsWholeBlock = true;
    static constexpr ListForm listForm = ListForm::plain;
};

struct TRUNNION_API CharSlots : SlotDefaults<char, 1> {
    static constexpr char marker = 0;
    static constexpr char liveAbove = 0; // bytes from 0x80 up are negative and so not live either
    static constexpr NewItemRule newItemRule = NewItemRule::always;
    static constexpr char newItemLimit = 0;
    static constexpr int sizeMultiple = 8;
    static constexpr bool walkSkipsEmpty = false;
    static constexpr bool purgeReturnsInline = true;
    static constexpr bool lastGivesSlot = true;
    static constexpr bool clearsWholeBlock = true;
    static constexpr bool marksLate = false; // its texts rely on the zero behind their end
    static constexpr ListForm listForm = ListForm::plain;
};

struct TRUNNION_API Int2DSlots : IntegerSlots<2> {
    static constexpr int outsideResult = 0;
    static constexpr bool checkedPointer = true;
    using ClearResult = void;
};

struct TRUNNION_API Int3DSlots : IntegerSlots<3> {
    static constexpr int outsideFill = 2;
    static constexpr int endFill = 2;
    using ClearResult = void;
};

struct TRUNNION_API Int4DSlots : IntegerSlots<4> {
    static constexpr int outsideFill = 2;
    static constexpr int endFill = 2;
    static constexpr int readEmptyTest = 4;
    using ClearResult = void;
};

struct TRUNNION_API Point2DSlots : FloatSlots<2> {
    static constexpr bool checkedPointer = true;
};

struct TRUNNION_API Point3DSlots : FloatSlots<3> {
    static constexpr bool isSearched = true;
    static constexpr float liveAbove = pointLiveLimit;
    static constexpr NewItemRule newItemRule = NewItemRule::heldNotAbove;
    static constexpr float newItemLimit = pointLiveLimit;
    static constexpr int outsideFill = 2;
};

struct TRUNNION_API PixelSlots : FloatSlots<4> {
    static constexpr ListForm listForm = ListForm::none;
};

} // namespace trunnion::detail
