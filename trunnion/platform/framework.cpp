// The part of the framework that needs no operating system.
#include "trunnion/platform/framework.h"
#include "trunnion/platform/large_pages.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

CString::CString(const char *other) : text(other != nullptr ? other : "") {}

CString::CString(const char *bytes, int length) {
    if (bytes != nullptr && length > 0) {
        text.assign(bytes, static_cast<std::size_t>(length));
    }
}

CString &CString::operator=(const char *other) {
    // Built first: the argument may point into this very string.
    text = std::string(other != nullptr ? other : "");
    return *this;
}

CString &CString::operator+=(const char *more) {
    if (more != nullptr) {
        text += std::string(more);
    }
    return *this;
}

CString &CString::operator+=(char more) {
    text += more;
    return *this;
}

int CString::Compare(const char *other) const {
    return std::strcmp(text.c_str(), other);
}

int CString::CompareNoCase(const char *other) const {
    const char *own = text.c_str();
    while (*own != '\0' && lowerAscii(*own) == lowerAscii(*other)) {
        ++own;
        ++other;
    }
    return static_cast<unsigned char>(lowerAscii(*own)) -
           static_cast<unsigned char>(lowerAscii(*other));
}

CString operator+(const CString &a, const char *b) {
    CString sum = a;
    sum += b;
    return sum;
}

bool operator==(const CString &a, const char *b) {
    return a.Compare(b) == 0;
}

bool operator!=(const CString &a, const char *b) {
    return a.Compare(b) != 0;
}

int CMemoryException::ReportError() const {
    return AfxMessageBox("Out of memory.");
}

void CMemoryException::Delete() {
    // The one exception object is static: an exhausted heap could not give another.
}

namespace trunnion::detail {

namespace {

void *orThrow(void *block) {
    if (block == nullptr) {
        static CMemoryException exhausted;
        throw &exhausted;
    }
    return block;
}

// No heap gives a block beyond PTRDIFF_MAX, and some checkers stop a process that asks for one.
bool isPossibleSize(std::size_t size) {
    return size < PTRDIFF_MAX;
}

} // namespace

void *frameworkAllocate(std::size_t size) {
    void *const block = orThrow(isPossibleSize(size) ? std::malloc(size != 0 ? size : 1) : nullptr);
    preferLargePages(block, size);
    return block;
}

void *frameworkAllocateCleared(std::size_t size) {
    return orThrow(isPossibleSize(size) ? std::calloc(size != 0 ? size : 1, 1) : nullptr);
}

void *frameworkReallocate(void *block, std::size_t held, std::size_t size) {
    if (size != 0 && size < fewestInLargePages) {
        return orThrow(std::realloc(block, size));
    }
    // The system has to know before the content is copied which pages to take.
    void *const resized = frameworkAllocate(size);
    if (block != nullptr) {
        std::memcpy(resized, block, held);
        frameworkFree(block);
    }
    return resized;
}

void frameworkFree(void *block) {
    std::free(block);
}

} // namespace trunnion::detail
