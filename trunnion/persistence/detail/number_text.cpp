#include "trunnion/persistence/detail/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <system_error>

namespace trunnion::detail {

namespace {

// Printing a float: its value is m * 2^e with 24 bits in m, and times 10^power it has nine digits
// in front of the point. The power of ten is taken with 64 bits, so that the product is known but
// for a fraction so small that it nearly never decides about the rounding; where it could, and
// where the digits behind are exactly one half, std::to_chars decides. (The method of Grisu, F.
// Loitsch: Printing floating-point numbers quickly and accurately with integers, 2010, with more
// bits than digits to be had.)

constexpr int lowestPower = -30; // for the largest floats
constexpr int highestPower = 53; // for the smallest

// The 64 leading bits of 10^power, the others cut off: 10^power = (bits + something below 1) *
// 2^exponent.
struct PowerOfTen {
    std::uint64_t bits;
    int exponent;
};

// An integer of 256 bits, the lowest 32 first.
using Wide = std::array<std::uint32_t, 8>;

constexpr void multiplyByTen(Wide &number) {
    std::uint64_t carry = 0;
    for (std::uint32_t &part : number) {
        carry += std::uint64_t{part} * 10;
        part = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
}

constexpr void divideByTen(Wide &number) {
    std::uint64_t rest = 0;
    for (std::size_t i = number.size(); i-- > 0;) {
        rest = rest << 32 | number[i];
        number[i] = static_cast<std::uint32_t>(rest / 10);
        rest %= 10;
    }
}

// `number` times 2^exponent, by its leading bits.
constexpr PowerOfTen leadingBits(const Wide &number, int exponent) {
    int top = 255;
    while ((number[static_cast<std::size_t>(top / 32)] >> (top % 32) & 1U) == 0) {
        --top;
    }
    std::uint64_t bits = 0;
    for (int bit = top; bit > top - 64; --bit) {
        const std::uint32_t part = bit >= 0 ? number[static_cast<std::size_t>(bit / 32)] : 0;
        bits = bits << 1 | (bit >= 0 ? part >> (bit % 32) & 1U : 0);
    }
    return {bits, exponent + top - 63};
}

constexpr auto powersOfTen = [] {
    std::array<PowerOfTen, highestPower - lowestPower + 1> powers{};
    Wide number{1};
    for (int power = 0; power <= highestPower; ++power, multiplyByTen(number)) {
        powers[static_cast<std::size_t>(power - lowestPower)] = leadingBits(number, 0);
    }
    number = {};
    number.back() = 1U << 31; // 2^255: cutting digits off one by one cuts the same off as at once
    for (int power = 0; power >= lowestPower; --power, divideByTen(number)) {
        powers[static_cast<std::size_t>(power - lowestPower)] = leadingBits(number, -255);
    }
    return powers;
}();

// "00" to "99".
constexpr auto digitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

void putPair(char *to, std::uint32_t number) {
    std::memcpy(to, &digitPairs[2 * static_cast<std::size_t>(number)], 2);
}

// A product as its whole part and a fraction of `bits` bits.
struct Product {
    std::uint64_t whole;
    std::uint64_t fraction;
    int bits;
};

// m * 2^exponent * 10^power, cut off, for an m of 24 bits and a product of 26 to 34.
Product timesPowerOfTen(std::uint32_t m, int exponent, int power) {
    const PowerOfTen &ten = powersOfTen[static_cast<std::size_t>(power - lowestPower)];
    const std::uint64_t low = m * (ten.bits & 0xFFFFFFFFU);
    const std::uint64_t high = m * (ten.bits >> 32) + (low >> 32); // counts 2^32
    const int bits = -(exponent + ten.exponent);
    const std::uint64_t highFraction = high & ((std::uint64_t{1} << (bits - 32)) - 1);
    return {high >> (bits - 32), highFraction << 32 | (low & 0xFFFFFFFFU), bits};
}

// Nine digits and the decimal exponent of the first one.
struct Decimal {
    std::uint32_t digits;
    int exponent;
};

// False if the bits that were cut off could decide about the rounding.
bool toDecimal(float magnitude, Decimal &decimal) {
    constexpr std::uint32_t tenDigits = 1000000000;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(magnitude);
    std::uint32_t m = bits & 0x7FFFFF;
    int exponent = static_cast<int>(bits >> 23) - 150;
    if (exponent == -150) { // a denormal number
        const int missing = std::countl_zero(m) - 8;
        m <<= missing;
        exponent = -149 - missing;
    } else {
        m |= 0x800000;
    }
    // The exponent of 10 in 2^(exponent + 23): that of the number, or one less.
    decimal.exponent = (exponent + 23) * 1233 >> 12;
    Product product = timesPowerOfTen(m, exponent, 8 - decimal.exponent);
    if (product.whole >= tenDigits) {
        ++decimal.exponent;
        product = timesPowerOfTen(m, exponent, 8 - decimal.exponent);
    }
    const std::uint64_t half = std::uint64_t{1} << (product.bits - 1);
    constexpr std::uint64_t cutOff = 1U << 24; // at most
    if (product.fraction <= half && product.fraction + cutOff >= half) {
        return false;
    }
    decimal.digits = static_cast<std::uint32_t>(product.whole) + (product.fraction > half ? 1 : 0);
    if (decimal.digits == tenDigits) {
        decimal.digits /= 10;
        ++decimal.exponent;
    }
    return true;
}

char *padded(char *to, const char *digits, std::size_t length, std::size_t width) {
    const std::size_t blanks = width > length ? width - length : 0;
    std::memset(to, ' ', blanks);
    std::memcpy(to + blanks, digits, length);
    return to + blanks + length;
}

char *printRealSlowly(char *to, float value) {
    char digits[32];
    const char *end = std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                    std::chars_format::scientific, 8)
                          .ptr;
    return padded(to, digits, static_cast<std::size_t>(end - digits), longestNumber);
}

} // namespace

char *printInteger(char *to, int value, int width) {
    char digits[16];
    const char *end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return padded(to, digits, static_cast<std::size_t>(end - digits),
                  static_cast<std::size_t>(width));
}

char *printReal(char *to, float value) {
    const bool isNegative = std::bit_cast<std::int32_t>(value) < 0;
    const float magnitude = isNegative ? -value : value;
    Decimal decimal{0, 0};
    if (!(magnitude <= std::numeric_limits<float>::max()) ||
        (magnitude != 0.0F && !toDecimal(magnitude, decimal))) {
        return printRealSlowly(to, value);
    }
    const std::uint32_t exponent = static_cast<std::uint32_t>(std::abs(decimal.exponent));
    const std::uint32_t high = decimal.digits / 10000;
    const std::uint32_t low = decimal.digits % 10000;
    to[0] = ' ';
    to[1] = isNegative ? '-' : ' ';
    to[2] = static_cast<char>('0' + high / 10000);
    to[3] = '.';
    putPair(to + 4, high / 100 % 100);
    putPair(to + 6, high % 100);
    putPair(to + 8, low / 100);
    putPair(to + 10, low % 100);
    to[12] = 'e';
    to[13] = decimal.exponent < 0 ? '-' : '+';
    putPair(to + 14, exponent);
    return to + longestNumber;
}

namespace {

template <class Number>
bool parse(std::string_view text, Number &value) {
    return std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc();
}

// True if the number, which no float can hold, is a tiny one and not a huge one: its first digit
// other than 0, if it has one, stands behind the decimal point once the exponent has moved it.
bool isTiny(std::string_view text) {
    const std::size_t end = std::min(text.find_first_of("eE"), text.size());
    const std::size_t point = std::min(text.find('.'), end);
    const std::size_t first = text.find_first_of("123456789");
    if (first >= end) {
        return true;
    }
    const long long place =
        static_cast<long long>(point) - static_cast<long long>(first) + (first > point ? 1 : 0);
    int exponent = 0;
    if (end < text.size() && !parse(text.substr(end + 1), exponent)) {
        return text[end + 1] == '-';
    }
    return place + exponent <= 0;
}

} // namespace

bool parseInteger(std::string_view text, int &value) {
    return parse(text, value);
}

bool parseReal(std::string_view text, float &value) {
    if (parse(text, value)) {
        return true;
    }
    if (isTiny(text)) {
        value = text.front() == '-' ? -0.0F : 0.0F;
        return true;
    }
    return false;
}

namespace {

// The powers of ten that a double holds exactly.
constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int highestExactPower = 22;

// digits * 10^exponent as the nearest float, for at most 15 digits. Of two numbers that a double
// holds exactly, product and quotient are the nearest double to the true value (W. Clinger: How to
// read floating point numbers accurately, 1990), and the float nearest to that is the one nearest
// to the true value too, unless the double lies exactly between two floats. False then, and where
// the power is not exact.
bool toFloat(std::uint64_t digits, int exponent, float &value) {
    if (exponent < -highestExactPower || exponent > highestExactPower) {
        return false;
    }
    const double number = static_cast<double>(digits);
    const double wide =
        exponent < 0 ? number / exactPowers[-exponent] : number * exactPowers[exponent];
    constexpr std::uint64_t behindFloat = (std::uint64_t{1} << 29) - 1; // bits of a double alone
    if ((std::bit_cast<std::uint64_t>(wide) & behindFloat) == std::uint64_t{1} << 28) {
        return false;
    }
    value = static_cast<float>(wide);
    return true;
}

// Reads a text character by character, up to its end.
struct Cursor {
    const char *at;
    const char *end;

    bool isAtEnd() const { return at == end; }
    // Takes the character if it is one of the two.
    bool takeEither(char first, char second) {
        const bool takes = at != end && (*at == first || *at == second);
        at += takes ? 1 : 0;
        return takes;
    }
    // Passes over white space and takes a sign; true if it is a minus.
    bool takeSign() {
        while (at != end && isSpace(*at)) {
            ++at;
        }
        return takeEither('-', '+') && at[-1] == '-';
    }
    // Takes digits and appends them to `number`, which wraps around where they are too many.
    // Returns how many there are.
    std::ptrdiff_t takeDigits(std::uint64_t &number) {
        const char *const first = at;
        for (; at != end && isDigit(*at); ++at) {
            number = 10 * number + static_cast<std::uint64_t>(*at - '0');
        }
        return at - first;
    }
};

} // namespace

const char *scanUsual(const char *text, const char *end, int &value) {
    Cursor cursor{text, end};
    const bool isNegative = cursor.takeSign();
    std::uint64_t magnitude = 0;
    const std::ptrdiff_t digits = cursor.takeDigits(magnitude);
    const std::uint64_t largest = std::uint64_t{INT_MAX} + (isNegative ? 1 : 0);
    if (digits < 1 || digits > 18 || magnitude > largest || cursor.isAtEnd()) {
        return nullptr;
    }
    const auto number = static_cast<std::int64_t>(magnitude);
    value = static_cast<int>(isNegative ? -number : number);
    return cursor.at;
}

const char *scanUsual(const char *text, const char *end, float &value) {
    Cursor cursor{text, end};
    const bool isNegative = cursor.takeSign();
    const char *const first = cursor.at - (isNegative ? 1 : 0);
    std::uint64_t number = 0;
    std::ptrdiff_t digits = cursor.takeDigits(number);
    std::ptrdiff_t behindPoint = 0;
    if (cursor.takeEither('.', '.')) {
        behindPoint = cursor.takeDigits(number);
        digits += behindPoint;
    }
    std::uint64_t exponent = 0;
    std::ptrdiff_t exponentDigits = 1; // if there is none, it is a 0
    bool isSmall = false;
    if (digits > 0 && cursor.takeEither('e', 'E')) {
        isSmall = cursor.takeEither('-', '+') && cursor.at[-1] == '-';
        exponentDigits = cursor.takeDigits(exponent);
    }
    constexpr std::ptrdiff_t most = 15;
    if (digits < 1 || digits > most || exponentDigits < 1 || exponentDigits > 3 ||
        cursor.isAtEnd()) {
        return nullptr;
    }
    const int power = isSmall ? -static_cast<int>(exponent) : static_cast<int>(exponent);
    float magnitude = 0.0F;
    if (toFloat(number, power - static_cast<int>(behindPoint), magnitude)) {
        value = isNegative ? -magnitude : magnitude;
        return cursor.at;
    }
    const std::string_view whole(first, static_cast<std::size_t>(cursor.at - first));
    return parse(whole, value) ? cursor.at : nullptr;
}

} // namespace trunnion::detail
