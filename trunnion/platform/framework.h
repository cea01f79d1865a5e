// The classes of the application framework that stand in the library's signatures, and the
// framework's heap.
#pragma once

#include <cstddef>
#include <string>

#include "trunnion/export.h"

// A byte string that owns its text.
class TRUNNION_API CString {
public:
    CString() = default;
    // A copy of the zero-terminated `other`; null gives an empty string.
    CString(const char
                *text); // NOLINT(google-explicit-constructor): converts silently, as callers expect
    // A copy of `length` bytes, zero bytes included. A negative length counts as 0.
    CString(const char *bytes, int length);

    CString &operator=(const char *other);

    // The text with its terminator; valid until the string changes.
    operator const char *() const { return text.c_str(); } // NOLINT(google-explicit-constructor)
    // Bytes before the terminator.
    int GetLength() const { return static_cast<int>(text.size()); }
    bool IsEmpty() const { return text.empty(); }
    void Empty() { text.clear(); }

    // Append; null appends nothing.
    CString &operator+=(const char *more);
    CString &operator+=(char more);

    // Below 0, 0 or above 0 as this string sorts before, with or behind `other`. NoCase compares
    // ASCII letters alike.
    int Compare(const char *other) const;
    int CompareNoCase(const char *other) const;

private:
    std::string text;
};

// Join and compare byte for byte.
TRUNNION_API CString operator+(const CString &a, const char *b);
TRUNNION_API bool operator==(const CString &a, const char *b);
TRUNNION_API bool operator!=(const CString &a, const char *b);

// Raised, as a pointer, when the framework's heap is exhausted. Whoever catches it calls Delete.
class TRUNNION_API CMemoryException {
public:
    virtual ~CMemoryException() = default;
    // Tells the user that memory is exhausted, in a message box. Returns the number of the button
    // pressed.
    int ReportError() const;
    // Gives the exception back.
    void Delete();
};

// Shows `text`, bytes of code page GBK, in a modal box and returns the number of the button
// pressed. Goes to the handler of trunnion::SetMessageBoxHandler if there is one.
TRUNNION_API int AfxMessageBox(const char *text, unsigned int type = 0, unsigned int help = 0);

namespace trunnion::detail {

// The framework's operator new as a function: `size` bytes of the heap, or CMemoryException * is
// thrown.
TRUNNION_API void *frameworkAllocate(std::size_t size);
// The same with every byte 0. Of a big block only the part that is used costs time.
TRUNNION_API void *frameworkAllocateCleared(std::size_t size);
// A block of `size` bytes in place of `block`, which may be null, with the first `held` bytes of
// it, no more than `size`; where it was if there is room behind it. Where the exception is thrown
// the old block still stands.
TRUNNION_API void *frameworkReallocate(void *block, std::size_t held, std::size_t size);
// The framework's operator delete; null is allowed.
TRUNNION_API void frameworkFree(void *block);

} // namespace trunnion::detail
