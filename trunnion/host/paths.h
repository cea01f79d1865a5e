// Paths, file names and directories.
//
// Paths are byte strings; the separator is the backslash, and a forward slash is an ordinary
// character in everything that only takes text apart. Every buffer that a function fills has room
// for a path of 260 bytes with its terminator (slFindSubFoldersVB is told how much). A result that
// does not fit is not cut but refused: the buffers become empty, or keep what they held where the
// function extends them, and the result is 0. Inputs may lie in the buffers.
#pragma once

#include "trunnion/export.h"
#include "trunnion/platform/calling_convention.h"

// Text.

// Splits a path behind its last backslash: `path` keeps the backslash. Either output may be null.
// 1, or 0 without a backslash: then `path` is empty and `name` is the whole text.
TRUNNION_API int slGetPathAndName(const char *full, char *path, char *name);

// What stands behind the last dot of the name; here a forward slash separates, too. 1, also for the
// empty extension of a name that ends in its dot, or 0 and an empty text for a name without a dot.
TRUNNION_API int slGetFileExtension(const char *full, char *extension);

// The name in front of its last dot, or the whole name without one. 1.
TRUNNION_API int slGetFileMainName(const char *full, char *main);

// File name of a texture's smaller picture, without a directory: main name, "-", level, ".",
// extension ("C:\tex\wood.bmp" at level 2 gives "wood-2.bmp"). 1.
TRUNNION_API int slGetMipMapFileName(const char *full, char *out, int level);

// Appends `name` to `path` with exactly one backslash between them; an empty path becomes the name.
// 1, or 0 if an argument is null.
TRUNNION_API int slCombFileName(char *path, const char *name);

// Puts `path` in front of `name` with nothing between them, so the path should end in a backslash.
// The name "NULL", in capitals, stands for none and becomes empty.
TRUNNION_API void slCatFileNameWithPath(char *name, const char *path);

// Files and directories. A path that begins with a letter and a colon goes through the map of
// drives (trunnion::MapDrive), any other goes to the system as it stands. A null path names
// nothing.

// True if the path, whose last component may hold wild cards ("*", "?"), finds anything. A drive
// path with a separator at its end finds nothing.
TRUNNION_API bool slIsExistentPath(const char *path);

// 1 if the path finds a file or directory, also with one backslash behind it; 0 if not, and for a
// path of 260 bytes or more.
TRUNNION_API int slFindSingleFile(const char *path);

// Makes every directory of a drive path that is missing, the last component included; leading
// blanks are passed over. 1, or 0 for a path of 260 bytes or more or without a drive, for a drive
// that does not exist, and where a component is a file or cannot be made. What was made before a
// failure stays.
TRUNNION_API int slCreateDirRecursively(const char *path);

// Removes a directory with all that it holds, read-only files too. Links are removed and never
// followed, also as the path itself; the root of the whole system is left alone. 1 whatever
// happened: what cannot be removed stays, and so do the directories above it.
TRUNNION_API int slRemoveDirRecursively(const char *path);

// Copies a file, or does nothing where the target exists. A target that ends in a backslash gets
// the name of the source. 1 whatever happened.
TRUNNION_API int slCopyFile(const char *source, const char *target);

// Fills `out`, a fixed-length string of `size` bytes, with the names of the directories in `root`,
// each followed by ";" ("a;b;"; none gives ";"), in the order of the file system, and with blanks
// behind them; there is no terminator. 1, or -1 if not all fit: the names that do are then there,
// without the last ";".
extern "C" TRUNNION_API int TRUNNION_BASIC_CALL slFindSubFoldersVB(const char *root, char *out,
                                                                   int size);
