// Text scanning and number formatting for text readers and dialogs, on byte strings in buffers of
// the caller's.
//
// Commas count as separators, unless the letter C or R follows. A number must be a number and
// nothing else, with blanks around it at most. Results are 1 for success and 0 for failure; a value
// is left alone on failure unless a function says otherwise. Numbers beyond the range of their type
// become the nearest value in it. Nothing is thrown.
#pragma once

#include "trunnion/export.h"

// Advances *position past blanks, tabs and commas, but stops at a comma whose next character is "C"
// or "R". Always 1.
TRUNNION_API int slSkipSpace(const char *text, int *position);

// Advances *position past every `c` that stands there. Always 1.
TRUNNION_API int slSkipChar(const char *text, int *position, char c);

// The first `length` characters, 1 to 51 of them, as a decimal number with an optional sign. 0 if
// any behind the sign is no digit. A sign alone is 0.
TRUNNION_API int slStrToInt(int length, const char *text, int *value);

// An integer with blanks and tabs around it. A zero must begin with the digit: "-0" is refused.
TRUNNION_API int slSimpleIntParse(const char *text, int &value);

// A real number with blanks and tabs around it. A minus sign may follow it ("12-" is 12), and one
// by itself is 0. The value is stored whatever the result is.
TRUNNION_API int slSimpleFloatParse(const char *text, double &value);

// The same as a float; 0 is stored on failure.
TRUNNION_API int slSimpleFloatParseF(const char *text, float &value);

// Copies the first, or the last, `n` characters and terminates. 0, with `out` untouched, for n
// below 1 or above the length of the text.
TRUNNION_API int slLeft(const char *text, int n, char *out);
TRUNNION_API int slRight(const char *text, int n, char *out);

// Fills `out` with `n` blanks and terminates; n below 1 gives an empty text. Returns `out`.
TRUNNION_API char *slSpace(int n, char *out);

// Puts `front` in front of the text, in place; the buffer has room for both, and `front` is no part
// of it. Returns `text`.
TRUNNION_API char *slInsertStr(char *text, const char *front);

// Puts `insert` behind every `seed` in the text, in a buffer of `capacity` characters; what is
// inserted is not searched. 0 where an insertion would not leave a character free: those made
// before stay. `insert` is no part of the text.
TRUNNION_API int slInsStrBySeed(char *text, int capacity, const char *insert, char seed);

// Writes `value`, rounded half away from zero to `digits` places, in fixed form and always with the
// point: "3.14", "3.". A value that rounds to 0 keeps its sign. Returns the rounded value. The
// value times 10 to the power of `digits` is limited to 32 bits.
TRUNNION_API float slChangeRealToStr(char *out, float value, int digits);
