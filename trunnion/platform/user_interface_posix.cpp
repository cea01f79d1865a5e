// Clock and sound on POSIX, which knows no sound of its own: without a handler of the host's
// nothing plays, and nothing fails.
#include "trunnion/platform/user_interface.h"

#include <atomic>
#include <cstdint>
#include <ctime>

#include "trunnion/platform/system.h"

namespace {

std::atomic<int (*)(const char *, unsigned int)> soundHandler{nullptr};

} // namespace

namespace trunnion {

void SetSoundHandler(int (*handler)(const char *file, unsigned int flags)) {
    soundHandler = handler;
}

} // namespace trunnion

namespace trunnion::detail {

unsigned int tickCount() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::int64_t milliseconds = std::int64_t{1000} * now.tv_sec + now.tv_nsec / 1000000;
    return static_cast<unsigned int>(milliseconds);
}

bool playSound(const char *file, unsigned int flags) {
    auto *const handler = soundHandler.load();
    return handler == nullptr || handler(file, flags) != 0;
}

} // namespace trunnion::detail
