// Clock and sound on POSIX, which knows no sound of its own.
#include "trunnion/platform/user_interface.h"

#include <cstdint>
#include <ctime>

namespace trunnion::detail {

unsigned int tickCount() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::int64_t milliseconds = std::int64_t{1000} * now.tv_sec + now.tv_nsec / 1000000;
    return static_cast<unsigned int>(milliseconds);
}

bool playSystemSound(const char * /*file*/, unsigned int /*flags*/) {
    return true; // silence is no failure
}

} // namespace trunnion::detail
