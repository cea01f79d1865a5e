// The bytes that a FILE holds in memory, for readers and writers that work on many of them at once.
//
// Internal: the library's own code calls these, hosts do not.
//
// The C library's own macros for single characters reach into the same memory: what is passed over
// or appended here is so for every function of the C library, and a file stays usable by both in
// turns. Where the memory cannot be reached it counts as empty, and callers fall back to the
// functions of the C library. A file belongs to one thread at a time: none of these takes its lock.
#pragma once

#include <cstddef>
#include <cstdio>
#include <span>

#include "trunnion/platform/files.h"

namespace trunnion::detail {

#ifdef __GLIBC__

// Bytes that were fetched from the file and not read yet; none before the first read.
inline std::span<const char> fetchedBytes(std::FILE *file) {
    const std::ptrdiff_t size = file->_IO_read_end - file->_IO_read_ptr;
    return {file->_IO_read_ptr, size > 0 ? static_cast<std::size_t>(size) : 0};
}
// Passes over `count` of them.
inline void passFetched(std::FILE *file, std::size_t count) {
    file->_IO_read_ptr += count;
}

// Room for bytes that follow those written last; none before the first write, nor in a file that is
// not fully buffered.
inline std::span<char> writableRoom(std::FILE *file) {
    const std::ptrdiff_t size = file->_IO_write_end - file->_IO_write_ptr;
    return {file->_IO_write_ptr, size > 0 ? static_cast<std::size_t>(size) : 0};
}
// Makes the first `count` bytes of the room written ones.
inline void passWritten(std::FILE *file, std::size_t count) {
    file->_IO_write_ptr += count;
}

// fgetc without the lock.
inline int nextByte(std::FILE *file) {
    return getc_unlocked(file);
}

#else

inline std::span<const char> fetchedBytes(std::FILE * /*file*/) {
    return {};
}
inline void passFetched(std::FILE * /*file*/, std::size_t /*count*/) {}
inline std::span<char> writableRoom(std::FILE * /*file*/) {
    return {};
}
inline void passWritten(std::FILE * /*file*/, std::size_t /*count*/) {}
inline int nextByte(std::FILE *file) {
    return nextByteUnlocked(file);
}

#endif

} // namespace trunnion::detail
