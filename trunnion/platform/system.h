// What a host may configure on a system without drive letters. On Windows the system itself knows
// all of this, and these functions change nothing there.
#pragma once

#include "trunnion/export.h"

namespace trunnion {

// Makes `directory`, a directory of the system, the root of the drive `letter` (either case). Null
// takes the drive away. At start C is "/" and there is no other drive. A path that begins with a
// letter and a colon goes through this map in every function of the library that opens, makes,
// finds or removes something; any other path goes to the system as it stands. A letter outside A to
// Z is ignored.
TRUNNION_API void MapDrive(char letter, const char *directory);

// The directory of the installed ini files (at start "C:\etc") and the user's documents folder (at
// start "Documents" in the user's home), both as drive paths; a separator at the end is dropped.
// Null restores what stood at start. Neither directory is made.
TRUNNION_API void SetWindowsDirectory(const char *path);
TRUNNION_API void SetDocumentsDirectory(const char *path);

// Shows message boxes: receives the text and the type flags of the box, returns the button's
// number. Null restores the default.
TRUNNION_API void SetMessageBoxHandler(int (*handler)(const char *text, unsigned int type));

// Plays sounds: receives the file, or null to end the one that plays, and the flags 1 (return while
// it plays) and 8 (play it again and again); returns 0 if it cannot. Null restores the default,
// under which nothing plays on a system without a call for it.
TRUNNION_API void SetSoundHandler(int (*handler)(const char *file, unsigned int flags));

} // namespace trunnion
