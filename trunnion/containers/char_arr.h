// CharArr: the slot array of bytes, which also holds a text file, a zero-terminated string, or a
// message of typed values.
//
// What it shares with the other slot arrays, and the comment of every operation named by `using`,
// stands in detail/slot_storage.h and slot_kinds.h. Two things are its own: every store counts as a
// new live item, also over a slot in use; and a walk sees every byte below the bound, zero bytes
// too, while deletion and purging take only the bytes 1 to 127 for live.
//
// Offsets are in bytes from the start; the bound is the length of the content. Operations return 1
// unless they say otherwise.
#pragma once

#include "trunnion/containers/detail/slot_kinds.h"
#include "trunnion/platform/framework.h"
#include "trunnion/platform/point.h"

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

    // The storage; a write through it changes no count.
    char *GetContentPtrM() { return data(); }
    const char *GetContentConstPtrM() const { return data(); }

    // Text of a file.

    // Reads a whole file behind `offset` bytes that are left as they are. 0, and the buffer
    // unchanged, if the file cannot be opened, has 2 GiB or more, or `offset` is negative.
    int ReadFileM(const char *path, int offset);
    // Writes the content to a file, also over a read-only one, which stays read-only. Throws 108 if
    // the file cannot be opened or written.
    void SaveFileM(const char *path) const;
    // Copies a line to `out` and terminates it; `out` needs room for it. With `len` above 0 the
    // line has that many bytes, or what is left; otherwise it ends in front of a 13, a 10 or the
    // bound. With `keepEnd` not 0 the line end that follows (13, 10, or either and a 10) is added;
    // a line of given length has one byte between it and its end. 0 if `start` lies outside the
    // content.
    int GetOneLineM(int start, int len, char *out, int keepEnd) const;
    // Gives a part program its number: the letter O and `no` at the very start, on a line of its
    // own (13, 10) if the text had none; the digits of an old number are replaced. Zero bytes and
    // bytes from 0x80 up are dropped from the whole text.
    void AddProgNoM(int no);
    // Removes leading blanks (0x20 only).
    int TrimL();
    // Removes trailing blanks, down to the second byte: the first stays even if it is a blank.
    int TrimR();

    // Strings.

    // The text with its terminator, which counts as content.
    int SetNewStrM(const char *s);
    // Copies the content to `out` and terminates it. `out` needs room for the capacity and one
    // byte.
    int GetCurStrM(char *out) const;
    // Replaces the content by `n` raw bytes.
    void SetValueM(int n, const char *bytes);
    // Inserts `n` bytes at `pos`; at the end of a terminated string they go in front of the
    // terminator. 0, and nothing is done, for n below 1 or a `pos` outside 0 to the bound.
    int InsertStringM(int pos, const char *bytes, int n);
    // Removes `n` bytes at `pos`; a range that is not wholly content is left alone. Throws the
    // integer 0 for a negative `n`.
    int DelStringM(int pos, int n);

    // Messages: values appended one after another, little-endian and with nothing in between, and
    // read back by offset.

    int AddContentM(int value);
    int AddContentUM(unsigned int value);
    int AddContentM(float value);
    int AddContentM(double value);
    int AddContentM(struct tagPOINT value); // x, then y, 4 bytes each
    int AddContent3vfM(const float *value); // three floats
    int AddContentM(char value);
    int AddContentM(short value);
    int AddContentM(const char *s); // the characters alone, neither terminator nor length
    // Appends `n` bytes, behind a 4-byte length if `withLength` is not 0. Nothing for a negative n.
    int AddContentvcM(const char *bytes, int n, int withLength);

    // Reads the value at `pos` and returns the offset behind it; -1, and the output untouched,
    // where the content does not hold it.
    int GetContentM(char *value, int pos) const;
    int GetContentM(short *value, int pos) const;
    int GetContentM(int *value, int pos) const;
    int GetContentM(float *value, int pos) const;
    int GetContentM(double *value, int pos) const;
    // Reads what AddContentvcM wrote with a length and returns the offset behind it, or -1 where
    // the content does not hold it. `out` becomes empty first.
    int GetContentM(CString &out, int pos) const;
    // The same into a buffer of `outSize` bytes, which are set to 0 first. -1 also for a block
    // longer than the buffer.
    int GetContentvcM(char *out, int outSize, int pos) const;
    // The same into another array, with a terminator behind the bytes if `addZero` is not 0. What
    // `out` held stays behind its new bound; a length of 0 at the very end of the content leaves
    // `out` as it is.
    int GetContentvcM(CharArr &out, int pos, int addZero) const;
    // Inserts the 4 bytes of `value` at `pos`. 0, and nothing is done, for a `pos` outside 0 to the
    // bound.
    int InsertContentM(int value, int pos);
    // Both counts become 0; nothing is cleared and no storage given back.
    int DelContentM();
    // All bytes up to the capacity and both counts become 0.
    void ClearWithZeroM();
    // Takes the content of `other` into this array's own block, which grows to the larger of both
    // capacities, rounded up to a multiple of 8, and is filled with zeros behind the content. The
    // increment stays.
    int CopyM(const CharArr &other);

protected:
    // Removes a line end at `pos`: a 13, a 10, or a 13 and a 10. Nothing if there is none.
    int delCarrageReturnM(int pos);

    using Base::getCurrentItemPrtConstM;
    using Base::getCurrentItemPrtM;

private:
    // Puts `n` raw bytes behind the content, growing as SetItemM does.
    int append(const void *bytes, int n);
    int read(void *value, int size, int pos) const;
    // Length of the block whose 4-byte length stands at `pos`, if that length and the block lie
    // within the content; otherwise -1.
    int blockLength(int pos) const;
    void setLength(int length);
};
