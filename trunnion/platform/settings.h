// What the system knows of itself: the clock, the special folders, the values of ini files.
//
// Internal: the library's own code calls these, hosts do not.
#pragma once

#include <string>

namespace trunnion::detail {

// A time in Coordinated Universal Time.
struct UtcTime {
    int year;
    int month; // 1 to 12
    int day;   // 1 to 31
    int hour;
    int minute;
    int second;
    int millisecond;
};

UtcTime systemTime();

// The directory of the installed ini files and the user's documents folder, as drive paths without
// a separator at the end. They need not exist.
std::string windowsDirectory();
std::string documentsDirectory();

// The value of `key` in the first section of an ini file that has the name `section`, or `fallback`
// if there is no such file, section or key. A file name without a separator or a drive is looked up
// in the Windows directory. Names of sections and keys are compared without regard to case and to
// blanks around them; the section "" is what stands in front of the first heading. A value loses
// blanks at both ends and then a pair of quotes, and ends after 259 bytes. A remark is a line whose
// key begins with a semicolon.
std::string iniValue(const char *section, const char *key, const char *fallback, const char *file);

} // namespace trunnion::detail
