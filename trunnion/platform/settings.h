// What the system knows of itself: the clock.
//
// Internal: the library's own code calls these, hosts do not.
#pragma once

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

} // namespace trunnion::detail
