// The clock on POSIX.
#include "trunnion/platform/settings.h"

#include <ctime>

namespace trunnion::detail {

UtcTime systemTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts{};
    gmtime_r(&now.tv_sec, &parts);
    return {parts.tm_year + 1900,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec,
            static_cast<int>(now.tv_nsec / 1000000)};
}

} // namespace trunnion::detail
