// The flat interface for Basic programs, which hold no objects: a compressed data file and a text
// file, one of each at a time, and directories. The names are exported as they stand, with the
// calling convention of TRUNNION_BASIC_CALL.
//
// Saving is OpenFileVB(path, "wb"), SetVersionNumVB, the values, FinishSaveVB, CloseFileVB; reading
// is OpenFileVB(path, "rb"), GetVersionNumVB, the values in the same order, CloseFileVB. The file
// is that of TqCompressIOCL; it holds the values and nothing that tells what they are.
//
// The result is 1 for success and 0 for failure: no file of the kind was ever opened, a null
// pointer where a value is wanted, or what a function tells. Behind each kind stands one stream,
// which stays after it was closed until the next one is opened or the library is unloaded. One
// thread uses this interface.
//
// Where a function says that it throws, the int of TqIOCL goes through to the caller, which a Basic
// program cannot catch: it must stop reading floats in front of the end of the data.
#pragma once

#include "trunnion/export.h"
#include "trunnion/platform/calling_convention.h"

extern "C" {

// The compressed data file.

// Opens a file by a mode of fopen with a "b", and drops the file before, with all that was not
// saved. With a "w" in the mode the directories of a drive path are made first. 0 if it does not
// open, or if the start of a file to read is damaged.
TRUNNION_API int TRUNNION_BASIC_CALL OpenFileVB(const char *path, char *mode);

// The version number: as the file to read has it, or for the file to be saved.
TRUNNION_API int TRUNNION_BASIC_CALL GetVersionNumVB(int *version);
TRUNNION_API int TRUNNION_BASIC_CALL SetVersionNumVB(int version);

// Writes a string with its length in front: `length` bytes of `text`, or as many as stand in front
// of the terminator if `length` is below 1. A null text is an empty string. Throws 108 if memory
// had to be emptied into the file and could not.
TRUNNION_API int TRUNNION_BASIC_CALL OutputSVB(const char *text, int length);

// Reads a string into a buffer of `size` bytes and fills what is left of it with blanks; there is
// no terminator. 0, with the buffer untouched, if there is no whole string, or one of more than
// `size` bytes: that is still the next value, so that a larger buffer can take it.
TRUNNION_API int TRUNNION_BASIC_CALL InputSVB(char *buffer, int size);

// Writes an integer of 32 bits. Throws as OutputSVB does.
TRUNNION_API int TRUNNION_BASIC_CALL OutputDVB(int value);

// Reads an integer of 32 bits. 0, with `value` untouched, if there is none.
TRUNNION_API int TRUNNION_BASIC_CALL InputDVB(int *value);

// A short takes 32 bits of the file, with its sign; of one that is read the low 16 bits count. They
// fail as OutputDVB and InputDVB do.
TRUNNION_API int TRUNNION_BASIC_CALL OutputShortDVB(short value);
TRUNNION_API int TRUNNION_BASIC_CALL InputShortDVB(short *value);

// Writes a float. Throws as OutputSVB does.
TRUNNION_API int TRUNNION_BASIC_CALL OutputFloatVB(float value);

// Reads a float. Throws 107 if there is none.
TRUNNION_API int TRUNNION_BASIC_CALL InputFloatVB(float *value);

// Writes the values to the file. 0 if it does not take them.
TRUNNION_API int TRUNNION_BASIC_CALL FinishSaveVB();

// Closes the file; values that were not saved are lost.
TRUNNION_API int TRUNNION_BASIC_CALL CloseFileVB();

// The text file.

// Opens a file as OpenFileVB does; the mode has no "b".
TRUNNION_API int TRUNNION_BASIC_CALL OpenFileTxtVB(const char *path, char *mode);

// Writes a line; a null text is an empty one. Throws 108 if the file does not take it or is closed.
TRUNNION_API int TRUNNION_BASIC_CALL OutputSTxtVB(const char *text);

// Closes the file.
TRUNNION_API int TRUNNION_BASIC_CALL CloseFileTxtVB();

// Directories.

// slRemoveDirRecursively and slCreateDirRecursively of trunnion/host/paths.h, where
// slFindSubFoldersVB stands, too.
TRUNNION_API int TRUNNION_BASIC_CALL slRemoveDirRecursivelyVB(const char *path);
TRUNNION_API int TRUNNION_BASIC_CALL slCreateDirRecursivelyVB(const char *path);

} // extern "C"
