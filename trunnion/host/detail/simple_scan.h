// The scan of one integer by a format, for dialog fields.
//
// A format is "%", an optional letter and "d" (signed) or "u" (unsigned). The letter "s" makes it a
// short of 16 bits, "l" changes nothing: the integer has 32 bits.
#pragma once

namespace trunnion::detail {

struct IntegerFormat {
    bool isShort;
    bool isUnsigned;
};

// False for any other format.
bool parseIntegerFormat(const char *format, IntegerFormat &parsed);

// Reads `text`, one integer with blanks and tabs around it, by `format`, and stores it in the int,
// unsigned int or short that `value` points to. 0, with nothing stored, for anything else than such
// a number, for a format of another form, and for a value that does not fit a signed short where
// one is wanted.
int slSimpleScanf(const char *text, const char *format, void *value);

} // namespace trunnion::detail
