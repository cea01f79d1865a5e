#include "trunnion/host/text_scan.h"

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "trunnion/host/detail/simple_scan.h"

namespace {

const char *skipBlanks(const char *text) {
    return text + std::strspn(text, " \t");
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isSign(char c) {
    return c == '+' || c == '-';
}

// True if nothing but blanks and tabs is left.
bool isEnd(const char *text) {
    return *skipBlanks(text) == '\0';
}

// A decimal number as far as it goes; `end` receives where it ends. Wider than any type that is
// asked for, so that its limits are told apart from its values.
long long scanInteger(const char *text, const char *&end) {
    char *behind = nullptr;
    const long long number = std::strtoll(text, &behind, 10);
    end = behind;
    return number;
}

int nearestInt(long long number) {
    return static_cast<int>(std::clamp<long long>(number, INT_MIN, INT_MAX));
}

} // namespace

int slSkipSpace(const char *text, int *position) {
    for (;; ++*position) {
        const char c = text[*position];
        const bool isComma = c == ',';
        const char next = isComma ? text[*position + 1] : '\0';
        if ((c != ' ' && c != '\t' && !isComma) || next == 'C' || next == 'R') {
            return 1;
        }
    }
}

int slSkipChar(const char *text, int *position, char c) {
    while (text[*position] != '\0' && text[*position] == c) {
        ++*position;
    }
    return 1;
}

int slStrToInt(int length, const char *text, int *value) {
    constexpr int longest = 51;
    if (length < 1 || length > longest) {
        return 0;
    }
    char digits[longest + 1] = {};
    for (int i = 0; i < length; ++i) {
        digits[i] = text[i];
        if (!isDigit(digits[i]) && !(i == 0 && isSign(digits[i]))) {
            return 0;
        }
    }
    const char *end = nullptr;
    *value = nearestInt(scanInteger(digits, end));
    return 1;
}

int slSimpleIntParse(const char *text, int &value) {
    const char *first = skipBlanks(text);
    const char *end = nullptr;
    const long long number = scanInteger(first, end);
    if ((number == 0 && *first != '0') || !isEnd(end)) {
        return 0;
    }
    value = nearestInt(number);
    return 1;
}

int slSimpleFloatParse(const char *text, double &value) {
    const char *first = skipBlanks(text);
    char *end = nullptr;
    // The words for infinity and not-a-number are no numbers here.
    const char letter = first[isSign(*first) ? 1 : 0];
    const bool isWord = letter == 'i' || letter == 'I' || letter == 'n' || letter == 'N';
    value = isWord ? 0.0 : std::clamp(std::strtod(first, &end), -DBL_MAX, DBL_MAX);
    if (isWord) {
        return 0;
    }
    if (value == 0.0 && *first != '0' && *first != '-') {
        return 0;
    }
    return isEnd(*end == '-' ? end + 1 : end) ? 1 : 0;
}

int slSimpleFloatParseF(const char *text, float &value) {
    double number = 0.0;
    const int result = slSimpleFloatParse(text, number);
    constexpr double greatest = FLT_MAX;
    value = result == 1 ? static_cast<float>(std::clamp(number, -greatest, greatest)) : 0.0F;
    return result;
}

int slLeft(const char *text, int n, char *out) {
    if (n < 1 || static_cast<std::size_t>(n) > std::strlen(text)) {
        return 0;
    }
    std::memmove(out, text, static_cast<std::size_t>(n));
    out[n] = '\0';
    return 1;
}

int slRight(const char *text, int n, char *out) {
    const std::size_t length = std::strlen(text);
    if (n < 1 || static_cast<std::size_t>(n) > length) {
        return 0;
    }
    return slLeft(text + (length - static_cast<std::size_t>(n)), n, out);
}

char *slSpace(int n, char *out) {
    *std::fill_n(out, std::max(n, 0), ' ') = '\0';
    return out;
}

char *slInsertStr(char *text, const char *front) {
    const std::size_t length = std::strlen(front);
    std::memmove(text + length, text, std::strlen(text) + 1);
    std::copy_n(front, length, text);
    return text;
}

int slInsStrBySeed(char *text, int capacity, const char *insert, char seed) {
    const std::size_t added = std::strlen(insert);
    if (seed == '\0') {
        return 1; // it stands nowhere in a text
    }
    for (char *found = std::strchr(text, seed); found != nullptr;
         found = std::strchr(found, seed)) {
        ++found;
        if (capacity < 0 || !(added + std::strlen(text) + 1 < static_cast<std::size_t>(capacity))) {
            return 0;
        }
        slInsertStr(found, insert);
        found += added;
    }
    return 1;
}

float slChangeRealToStr(char *out, float value, int digits) {
    const int places = std::max(digits, 0);
    const double scale = std::pow(10.0, places);
    const double rounded = value * scale + (value >= 0.0F ? 0.5 : -0.5);
    const long long n = std::isnan(rounded)
                            ? 0
                            : static_cast<long long>(std::clamp<double>(rounded, INT_MIN, INT_MAX));

    // The digits of |n| with at least one in front of the point.
    std::string text = std::to_string(std::abs(n));
    const std::size_t behind = static_cast<std::size_t>(places);
    if (text.size() <= behind) {
        text.insert(0, behind + 1 - text.size(), '0');
    }
    text.insert(text.size() - behind, 1, '.');
    if (value < 0.0F) {
        text.insert(0, 1, '-');
    }
    std::memcpy(out, text.c_str(), text.size() + 1);
    return static_cast<float>(static_cast<double>(n) / scale);
}

namespace trunnion::detail {

bool parseIntegerFormat(const char *format, IntegerFormat &parsed) {
    if (*format++ != '%') {
        return false;
    }
    parsed.isShort = *format == 's';
    format += *format == 's' || *format == 'l' ? 1 : 0;
    parsed.isUnsigned = *format == 'u';
    return (*format == 'd' || *format == 'u') && format[1] == '\0';
}

namespace {

void storeInteger(long long number, bool isUnsigned, void *value) {
    if (isUnsigned) {
        const auto nearest = static_cast<unsigned int>(std::min<long long>(number, UINT_MAX));
        std::memcpy(value, &nearest, sizeof nearest);
    } else {
        const int nearest = nearestInt(number);
        std::memcpy(value, &nearest, sizeof nearest);
    }
}

} // namespace

int slSimpleScanf(const char *text, const char *format, void *value) {
    IntegerFormat wanted{};
    const char *first = skipBlanks(text);
    if (!parseIntegerFormat(format, wanted) || (wanted.isUnsigned && *first == '-')) {
        return 0;
    }
    const char *end = nullptr;
    const long long number = scanInteger(first, end);
    if ((number == 0 && *first != '0') || !isEnd(end)) {
        return 0;
    }
    if (!wanted.isShort) {
        storeInteger(number, wanted.isUnsigned, value);
        return 1;
    }
    if (number < SHRT_MIN || number > SHRT_MAX) {
        return 0;
    }
    const auto narrow = static_cast<short>(number);
    std::memcpy(value, &narrow, sizeof narrow);
    return 1;
}

} // namespace trunnion::detail
