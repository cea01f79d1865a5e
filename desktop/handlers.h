// What InstallDesktop installs.
#pragma once

#include <string>

namespace trunnion::detail {

// The title of all boxes, UTF-8.
std::string &messageBoxTitle();
// The handler of SetMessageBoxHandler.
int showMessageBox(const char *text, unsigned int type);
// The handler of SetSoundHandler.
int playSoundFile(const char *file, unsigned int flags);

} // namespace trunnion::detail
