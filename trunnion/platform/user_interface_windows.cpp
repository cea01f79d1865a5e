// Clock and sound on Windows.
#include "trunnion/platform/user_interface.h"

#include <windows.h>
// Needs the definitions above.
#include <mmsystem.h>

namespace trunnion::detail {

unsigned int tickCount() {
    return GetTickCount();
}

bool playSystemSound(const char *file, unsigned int flags) {
    return sndPlaySoundA(file, flags) != FALSE;
}

} // namespace trunnion::detail
