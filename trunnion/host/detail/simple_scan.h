// The scan of one integer by a format, for dialog fields.
#pragma once

namespace trunnion::detail {

// Reads `text`, one integer with blanks and tabs around it, by a format of "%", an optional letter
// and "d" (signed) or "u" (unsigned). The letter "s" makes it a short of 16 bits, "l" changes
// nothing. `value` points to an int, unsigned int or short as the format says. 0, with nothing
// stored, for anything else than such a number, for a format of another form, and for a value that
// does not fit a signed short where one is wanted.
int slSimpleScanf(const char *text, const char *format, void *value);

} // namespace trunnion::detail
