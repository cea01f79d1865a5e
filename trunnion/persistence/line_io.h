// Typed, line-oriented reading and writing of text files through a plain FILE, for the mesh text
// files. The file is opened and closed by the caller; nothing is thrown.
#pragma once

#include <cstdio>

#include "trunnion/export.h"

// Scanners: fscanf with the caller's format. 1 if every value was converted, else 0. What was
// converted before the failure is stored, except in slFscanfC and slFscanfTexPixel4D, which store
// nothing unless all succeeded. The format has one conversion for each value: "%d" for the
// integers, "%f" for the floats, "%s" for the string, whose buffer must hold the longest word of
// the file. Both line ends read alike as long as the format matches them by white space.

// One integer; its low byte is stored.
TRUNNION_API int slFscanfC(std::FILE *file, const char *format, char *value);
TRUNNION_API int slFscanfD(std::FILE *file, const char *format, int *value);
TRUNNION_API int slFscanfR(std::FILE *file, const char *format, float *value);
TRUNNION_API int slFscanfS(std::FILE *file, const char *format, char *value);
TRUNNION_API int slFscanfInt2D(std::FILE *file, const char *format, int value[2]);
TRUNNION_API int slFscanfPoint2D(std::FILE *file, const char *format, float value[2]);
TRUNNION_API int slFscanfPoint3D(std::FILE *file, const char *format, float value[3]);
TRUNNION_API int slFscanfPoint4D(std::FILE *file, const char *format, float value[4]);
TRUNNION_API int slFscanfPixel4D(std::FILE *file, const char *format, float value[4]);
// Three integers, whose low bytes fill the first three members; the fourth becomes 255.
TRUNNION_API int slFscanfTexPixel4D(std::FILE *file, const char *format, unsigned char value[4]);

// Printers: fprintf with the caller's format, one conversion for each value. 1, or 0 if fprintf
// fails. Floats are given as doubles, bytes as integers.

TRUNNION_API int slFprintfC(std::FILE *file, const char *format, char value);
TRUNNION_API int slFprintfD(std::FILE *file, const char *format, int value);
TRUNNION_API int slFprintfS(std::FILE *file, const char *format, const char *value);
TRUNNION_API int slFprintfR(std::FILE *file, const char *format, float value);
TRUNNION_API int slFprintfInt2D(std::FILE *file, const char *format, const int value[2]);
TRUNNION_API int slFprintfPoint2D(std::FILE *file, const char *format, const float value[2]);
TRUNNION_API int slFprintfPoint3D(std::FILE *file, const char *format, const float value[3]);
TRUNNION_API int slFprintfPoint4D(std::FILE *file, const char *format, const float value[4]);
TRUNNION_API int slFprintfPixel4D(std::FILE *file, const char *format, const float value[4]);
// Four conversions, to unsigned integers; slFscanfTexPixel4D takes three.
TRUNNION_API int slFprintfTexPixel4D(std::FILE *file, const char *format,
                                     const unsigned char value[4]);

// Reads up to and with the line end ("\n" or "\r\n", not stored) or the end of the file. At most
// size - 1 characters are kept and terminated, the rest of the line is read and dropped; a size
// below 1 keeps nothing. Always 1: at the end of the file the buffer is empty.
TRUNNION_API int slFgets(std::FILE *file, char *buffer, int size);

// Drops the rest of the line. 1 if a new line was reached, 0 at the end of the file.
TRUNNION_API int slSkipLine(std::FILE *file);

// Reads words, divided by white space, until one equals `word`, case-sensitive: 1, with the
// position behind the white space that follows it, or 0 at the end of the file, at once if the
// end-of-file indicator is set. A word of more than 255 characters equals nothing.
TRUNNION_API int slSearchStrM(std::FILE *file, const char *word);
