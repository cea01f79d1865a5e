#include "trunnion_desktop/desktop.h"

#include "handlers.h"
#include "trunnion/platform/system.h"

namespace trunnion {

void InstallDesktop(const char *title) {
    detail::messageBoxTitle() = title != nullptr ? title : "Trunnion";
    SetMessageBoxHandler(&detail::showMessageBox);
    SetSoundHandler(&detail::playSoundFile);
}

void RemoveDesktop() {
    detail::playSoundFile(nullptr, 0);
    SetMessageBoxHandler(nullptr);
    SetSoundHandler(nullptr);
}

} // namespace trunnion
