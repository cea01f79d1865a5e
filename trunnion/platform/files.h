// Files and directories of the system, reached by drive path or by system path.
//
// Internal: the library's own code calls these, hosts do not.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace trunnion::detail {

// The system's own name for `path`: a drive path ("C:\dir\file") goes through the drive map, any
// other path stays as it is. Where nothing has exactly the resulting name, every component is
// looked up again without regard to case; what is still not found keeps the spelling that was
// given, so that a new file gets the name that the caller chose. The result is empty for a drive
// that is not mapped. On a drive "." and ".." are resolved as text and never lead out of it, and
// dots and blanks at the end of a name do not count.
std::string systemPath(const char *path);

// fopen by drive path or system path. Files are always opened in binary mode underneath: what is
// written is the same bytes on every system, and the readers of text accept both line ends
// themselves. Null on failure, for a directory, and where `mode` writes to a file that is
// read-only.
std::FILE *openFile(const char *path, const char *mode);

// Bytes between the position of `file` and its end, or INT64_MAX where the system cannot tell (a
// pipe, a terminal). Does not move the position.
std::int64_t remainingBytes(std::FILE *file);

// ftell and fseek for files of any length. A position below 0 is one that the system cannot tell; a
// move forgets that the end was met, and is false if it is refused.
std::int64_t filePosition(std::FILE *file);
bool seekFile(std::FILE *file, std::int64_t offset, int origin);

// fprintf, which on every system tells by a result below 0 that it could not hand the text over.
int printTo(std::FILE *file, const char *format, ...);

// fread, fwrite and fgetc without the lock that a file takes in a program with threads, where the
// system has them: a file belongs to one thread at a time.
std::size_t readBytes(std::FILE *file, void *out, std::size_t size);
std::size_t writeBytes(std::FILE *file, const void *bytes, std::size_t size);
int nextByteUnlocked(std::FILE *file);

inline constexpr int attributeReadOnly = 1;
inline constexpr int attributeDirectory = 16;
inline constexpr int attributeNormal = 128;

// Attributes of a file or directory, as bits: read-only 1, directory 16, those that only some
// systems have, and normal 128 where nothing else is set. -1 if there is no such thing.
int fileAttributes(const char *path);

// Sets the attributes, of which a system takes those that it has and lets change. False if there is
// no such file, or the system refuses.
bool setFileAttributes(const char *path, int attributes);

// Takes the attributes off a file for its own life, so that it can be overwritten.
class WritableWhile {
public:
    explicit WritableWhile(const char *path) : name(path), attributes(fileAttributes(path)) {
        setFileAttributes(path, attributeNormal);
    }
    ~WritableWhile() {
        if (attributes >= 0) {
            setFileAttributes(name.c_str(), attributes);
        }
    }
    WritableWhile(const WritableWhile &) = delete;
    WritableWhile &operator=(const WritableWhile &) = delete;

private:
    std::string name;
    int attributes;
};

} // namespace trunnion::detail
