// Sound, as far as it needs no operating system: the handler of the host's.
#include "trunnion/platform/user_interface.h"

#include <atomic>

#include "trunnion/platform/system.h"

namespace {

std::atomic<int (*)(const char *, unsigned int)> soundHandler{nullptr};

} // namespace

namespace trunnion {

void SetSoundHandler(int (*handler)(const char *file, unsigned int flags)) {
    soundHandler = handler;
}

namespace detail {

bool playSound(const char *file, unsigned int flags) {
    auto *const handler = soundHandler.load();
    return handler != nullptr ? handler(file, flags) != 0 : playSystemSound(file, flags);
}

} // namespace detail
} // namespace trunnion
