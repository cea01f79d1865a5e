// Clock and sound on Windows.
#include "trunnion/platform/user_interface.h"

#include <atomic>

#include <windows.h>
// Needs the definitions above.
#include <mmsystem.h>

#include "trunnion/platform/system.h"

namespace {

std::atomic<int (*)(const char *, unsigned int)> soundHandler{nullptr};

} // namespace

namespace trunnion {

void SetSoundHandler(int (*handler)(const char *file, unsigned int flags)) {
    soundHandler = handler;
}

namespace detail {

unsigned int tickCount() {
    return GetTickCount();
}

bool playSound(const char *file, unsigned int flags) {
    if (auto *handler = soundHandler.load()) {
        return handler(file, flags) != 0;
    }
    return sndPlaySoundA(file, flags) != FALSE;
}

} // namespace detail
} // namespace trunnion
