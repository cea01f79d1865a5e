// Names and directories of the system, reached by drive path or by system path.
//
// Internal: the library's own code calls these, hosts do not.
#pragma once

#include <string>
#include <vector>

namespace trunnion::detail {

enum class Found { nothing, file, directory };

// What `path` names; a link counts as what it leads to, and as a file where it leads nowhere. Where
// nothing has exactly that name, wild cards in the last component are tried without regard to case
// ("*" any characters, "?" one; a name without a dot also counts as one that ends in a dot, so that
// "*.*" is every name), and the first name that matches, the dot entries included, answers. A drive
// path that ends in a separator names nothing, nor does the root of a drive, which has no dot
// entries either.
Found findName(const char *path);

struct DirectoryEntry {
    std::string name;
    std::string path; // system path: stays what it is when the drives are mapped anew
    bool isDirectory; // also for a link to a directory
    bool isLink;
};

// The entries of a directory other than the two dot entries, in the order in which the system lists
// them. False, and no entries, if it is no directory or cannot be read.
bool listDirectory(const char *path, std::vector<DirectoryEntry> &entries);

// True for a name that is itself a link, wherever it leads.
bool isLink(const char *path);

// True for the directory that holds everything on this system, or the root of the drive that holds
// the system itself.
bool isSystemRoot(const char *path);

// Makes one directory, or removes an empty one, which the root of a drive never is. False if the
// system refuses.
bool makeDirectory(const char *path);
bool removeDirectory(const char *path);

// Removes a file, or a link but not what it leads to. False if the system refuses.
bool removeFile(const char *path);

// Copies the bytes, the attributes and the time of a file over what may already be at `target`.
// False if the system refuses or the target is read-only; a target that was not there before is
// then not there afterwards either.
bool copyFile(const char *source, const char *target);

// Path of `name` in the current directory; empty if there is no such directory any more.
std::string inCurrentDirectory(const char *name);

// A set bit for every drive there is, bit 0 for A.
unsigned int logicalDrives();

} // namespace trunnion::detail
