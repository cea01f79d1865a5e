// Where the application's ini file is.
//
// An installation keeps the master copy of the ini file in the Windows directory; each user works
// on a copy of his own below the documents folder.
#pragma once

#include "trunnion/export.h"

// Stores the path of the user's ini file, "<documents>\Mervane\<version>\<name>", in `out`, a
// buffer of `size` bytes. 1, or 0 if the path does not fit: nothing is copied then.
//
//   name     "Ver" of [SystemVer] in "MSysVer.ini" of the current directory, if it has two
//            characters or more, or "Pallodin.ini"
//   version  "Version" of [System] in the master copy, or "4.8"
//
// Where there is no such file, or "InstallId" of [AccessDb] differs from the master's (without
// regard to case; "0" where it is missing), an installation has been made since: after a second,
// which leaves an installer that is still at work the time to finish, the master copy replaces the
// user's file with all its settings. Whether that succeeds does not change the result.
TRUNNION_API int slGetInitFilePathS(char *out, int size);
