// The drives of a system that has none: which directory stands behind which letter.
//
// Internal: hosts call MapDrive (system.h).
#pragma once

#include <string>

namespace trunnion::detail {

// True for a path that begins with a letter and a colon.
bool isDrivePath(const char *path);

// Directory of the system behind the drive of `path`, without a trailing slash (so "/" is "").
// False if the drive is not mapped.
bool driveRoot(char letter, std::string &root);

} // namespace trunnion::detail
