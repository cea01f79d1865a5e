// Numbers as text in memory, in the form that the text files have: the same in every locale, and
// the same characters and bits as the C library's printf and scanf.
#pragma once

#include <cstddef>
#include <string_view>

namespace trunnion::detail {

// The white space of the C locale, whatever the locale of the host is: a byte above 127 is a part
// of a GBK character.
inline bool isSpace(int character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

inline bool isDigit(int character) {
    return character >= '0' && character <= '9';
}

// Characters that printInteger, with a width of at most 11, and printReal write at most.
inline constexpr std::size_t longestNumber = 16;

// Prints as "%*d" does; returns the end of the text.
char *printInteger(char *to, int value, int width);
// Prints as "%16.8e" does; returns the end of the text.
char *printReal(char *to, float value);

// `text`, a sign or none and digits, as a value; false, with `value` unchanged, if it does not fit.
bool parseInteger(std::string_view text, int &value);
// `text`, a whole number of the form that strtof takes but without a plus sign, hexadecimal digits
// or a word behind "nan", as the nearest float; a number too small becomes 0 of its sign. False,
// with `value` unchanged, if it is too large.
bool parseReal(std::string_view text, float &value);

// The quick scanners take the number at `text`, behind white space, if it can be told without a
// look behind `end`: a usual one, of not too many digits and followed by a character that is none
// of its own. They return where it ends, or null, with `value` unchanged, where the number is to be
// scanned in the general way, or is none at all.
const char *scanUsual(const char *text, const char *end, int &value);
const char *scanUsual(const char *text, const char *end, float &value);

} // namespace trunnion::detail
