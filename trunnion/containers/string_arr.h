// TqStringCL, a string that can live in an item array, and TqStringArr, the array of them.
//
// A string is a counted run of bytes and may hold zero bytes. Text that came in through AddStringM
// has its terminator in it, counted; text that came in through SetValueM has none unless the caller
// gave one, and the two are not equal. Strings have no record of their own: a list of them on a
// stream carries the tags and the count, not the text.
#pragma once

#include "trunnion/containers/char_arr.h"
#include "trunnion/containers/item_array.h"

// One string.
class TRUNNION_API TqStringCL : public TqBaseCL {
public:
    TqStringCL() = default;
    TqStringCL(char tag) : TqBaseCL(tag) {} // NOLINT(google-explicit-constructor): as TqBaseCL
    TqStringCL(const TqStringCL &) = default;
    TqStringCL &operator=(const TqStringCL &) = default;
    ~TqStringCL() override;

    // Replaces the content by `len` raw bytes. The tag stays.
    void SetValueM(int len, const char *bytes);
    // Gives the length and copies that many raw bytes to `out`, which needs room for them; no
    // terminator is added.
    void GetValueM(int *len, char *out) const;
    // Replaces the content, in spite of the name, by the text with its terminator. Returns 1.
    int AddStringM(const char *s);
    // Copies the content up to and with its first zero byte to `out` and returns 1. 0, and `out`
    // untouched, for an empty content. A content without a zero byte is copied whole and
    // terminated.
    int GetStringM(char *out) const;
    // The content, or null if it is empty; it ends with a terminator only if one was stored.
    operator const char *()
        const; // NOLINT(google-explicit-constructor): a string where one is wanted
    // Bytes, the terminator included if there is one.
    int GetLengthM() const { return content.GetBoundM(); }
    // Where the `len` bytes at `s` stand against this string: -1 in front of it, 0 equal, 1 behind
    // it. Bytes compare as unsigned; of two strings that agree as far as the shorter one goes the
    // shorter one comes first.
    int CompareStrM(int len, const char *s) const;
    // Makes the tag TAG_DELETED; the content stays.
    void DelItemM() { TqBaseCL::DelItemM(); }

private:
    CharArr content;
};

// 1 or 0. Strings are compared over their full length, terminators included.
TRUNNION_API int operator<(const TqStringCL &a, const TqStringCL &b);
TRUNNION_API int operator<=(const TqStringCL &a, const TqStringCL &b);
TRUNNION_API int operator==(const TqStringCL &a, const TqStringCL &b);
TRUNNION_API int operator>(const TqStringCL &a, const TqStringCL &b);
TRUNNION_API int operator>=(const TqStringCL &a, const TqStringCL &b);

TRUNNION_EXTERN_TEMPLATE(class ItemArr<TqStringCL>);

class TRUNNION_API TqStringArr : public ItemArr<TqStringCL> {
public:
    TqStringArr() = default;
    TqStringArr(const TqStringArr &) = default;
    TqStringArr &operator=(const TqStringArr &) = default;
    ~TqStringArr() override;

    using ItemArr<TqStringCL>::GetLengthM;

    // Appends a live string of `len` raw bytes; returns the slot.
    int AddStringM(int len, const char *bytes);
    // Appends the text with its terminator unless FindStrM finds it; returns the slot of the one or
    // the other.
    int AddByCompM(const char *s);
    // Gives slot `idx` a content and makes it live. Past the bound the array grows, with holes
    // between; a negative `idx` does nothing.
    void SetValueM(int idx, int len, const char *bytes);
    // Length and raw bytes of a live slot. Otherwise the length is 0 and `out` gets one zero byte.
    void GetValueM(int idx, int *len, char *out) const;
    // First of the slots 0 to available - 1 that equals the text with its terminator, or -1. Tags
    // are not looked at: with holes the last strings are out of reach, and a deleted one is found.
    int FindStrM(const char *s);
    // Length of the string in slot `idx`, deleted or not; 0 where there is no such slot.
    int GetLengthM(int idx) const;
    // 1 if slot `idx` exists and equals the `len` bytes at `s`, else 0. Tags are not looked at.
    int StrCmpM(int idx, int len, const char *s) const;
};
