// What every container rests on: the heap functions of the slot arrays, the markers of empty slots,
// and TqBaseCL, the root of the items that live in item arrays.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>

#include "trunnion/export.h"

class TqIOCL;

// Markers. A slot array has no flag for each slot: a slot is empty because the value in it says so.
// Real data never comes near the float marker or the limits below.

// Empty slot of an integer array; also the value of every output that reports a slot where there is
// none (bits 0x80000001).
inline constexpr int SL_DELETED_INT = -2147483647;
// Empty slot of a float array: -1e18 (bits 0xDD5E0B6B).
inline constexpr float SL_DELETED_REAL = std::bit_cast<float>(std::uint32_t{0xDD5E0B6B});
// -9.999e17 (bits 0xDD5E05BC): above it a float is a value, at or below it a marker.
inline constexpr float SL_LIVE_REAL_LIMIT = std::bit_cast<float>(std::uint32_t{0xDD5E05BC});

// Tags of items. The same numbers answer the availability queries of the slot arrays: 31 for a live
// slot, 30 otherwise.
inline constexpr char TAG_UNUSED = 30;    // built by default or destroyed: holds nothing
inline constexpr char TAG_AVAILABLE = 31; // in use: the only tag that any array counts as live
inline constexpr char TAG_DELETED = 32;   // deleted by DelItemM

// The heap functions of the slot arrays and of the blocks that cross the library's boundary. When
// the heap has no block to give, slMalloc and slRealloc call tqErrorMessage(40) once and return
// null.
TRUNNION_API void *slMalloc(unsigned int size);
// Keeps the contents up to the smaller of both sizes. After a null result the old block still
// stands.
TRUNNION_API void *slRealloc(void *ptr, unsigned int size);
// Gives a block back; null is allowed.
TRUNNION_API void slFree(void *ptr);

// The library's error hook: ignores the code, shows nothing and returns 0. The heap functions pass
// it code 40.
TRUNNION_API int tqErrorMessage(int code);

// Root of the items: holds the tag that says whether an item is live.
class TRUNNION_API TqBaseCL {
public:
    // Bytes of the record in a binary stream; an item class with more fields says how many.
    static constexpr int recordBytes = 1;

    TqBaseCL() : deleteTag(TAG_UNUSED) {}
    // Any tag value is taken as it stands; 31 builds a live item.
    TqBaseCL(char tag)
        : deleteTag(tag) {} // NOLINT(google-explicit-constructor): NodeCL(31) and the like
    TqBaseCL(const TqBaseCL &) = default;
    TqBaseCL &operator=(const TqBaseCL &) = default;

    // Reads or writes the item's record through a stream; the tag is its first field. Throws the
    // stream's codes.
    virtual void FmInputOzkFileM(TqIOCL *stream);
    virtual void FmOutputOzkFileM(TqIOCL *stream) const;
    // Reads the tag from a line of a text file and passes over the rest of the line; a line without
    // a number leaves the tag as it was. Returns 1 whatever the file holds.
    virtual int FmReadOzkFileM(std::FILE *file);
    // Writes the tag as a line, "%5d\n". Returns 1 whatever the file did.
    virtual int FmWriteOzkFileM(std::FILE *file) const;
    // Does nothing; returns 1.
    virtual int InitialM();
    virtual ~TqBaseCL() { deleteTag = TAG_UNUSED; }

    // The tag itself and no truth value: compare it with TAG_AVAILABLE.
    char IsAvailableM() const { return deleteTag; }
    // Stores any tag value.
    void SetDeleteTagM(char tag) { deleteTag = tag; }

protected:
    // Makes the tag TAG_DELETED and touches nothing else.
    void DelItemM() { deleteTag = TAG_DELETED; }

    char deleteTag;
};
