#include "trunnion/persistence/detail/text_io.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <system_error>

#include "trunnion/platform/files.h"

namespace trunnion::detail {

namespace {

// The white space of the C locale, whatever the locale of the host is: a byte above 127 is a part
// of a GBK character.
bool isSpace(int character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isDigit(int character) {
    return character >= '0' && character <= '9';
}

// Skips white space and reads the character behind it; EOF at the end of the file.
int firstBehindSpace(std::FILE *file) {
    int character = nextByte(file);
    while (isSpace(character)) {
        character = nextByte(file);
    }
    return character;
}

// The characters of one number, taken from the file as long as they can belong to it.
class NumberText {
public:
    explicit NumberText(std::FILE *source) : file(source), next(firstBehindSpace(source)) {}
    ~NumberText() { std::ungetc(next, file); } // ignores EOF
    NumberText(const NumberText &) = delete;
    NumberText &operator=(const NumberText &) = delete;

    std::string_view view() const { return {text, length}; }
    bool isTooLong() const { return length > capacity; }

    // from_chars knows no plus sign, so that one is dropped.
    void takeSign() {
        if (next == '-') {
            take();
        } else if (next == '+') {
            next = nextByte(file);
        }
    }
    bool takeDigits() {
        const std::size_t before = length;
        while (isDigit(next) && !isTooLong()) {
            take();
        }
        return length > before;
    }
    // Takes the next character if it is `lowerCase` in either case.
    bool takeIf(char lowerCase) {
        const bool isUpper = next >= 'A' && next <= 'Z';
        if ((isUpper ? next - 'A' + 'a' : next) != lowerCase) {
            return false;
        }
        take();
        return true;
    }
    bool takeWord(const char *lowerCase) {
        while (*lowerCase != '\0' && takeIf(*lowerCase)) {
            ++lowerCase;
        }
        return *lowerCase == '\0';
    }

private:
    static constexpr std::size_t capacity = 255;

    void take() {
        if (length < capacity) {
            text[length] = static_cast<char>(next);
        }
        length = std::min(length + 1, capacity + 1);
        next = nextByte(file);
    }

    std::FILE *file;
    int next;
    std::size_t length = 0;
    char text[capacity + 1];
};

// [digits] [. digits] [e [sign] digits], with at least one digit in front of the exponent, or one
// of the two words.
bool takeRealText(NumberText &text) {
    text.takeSign();
    if (text.takeIf('i')) {
        return text.takeWord("nf");
    }
    if (text.takeIf('n')) {
        return text.takeWord("an");
    }
    bool hasDigits = text.takeDigits();
    if (text.takeIf('.')) {
        hasDigits |= text.takeDigits();
    }
    if (hasDigits && text.takeIf('e')) {
        text.takeSign();
        hasDigits = text.takeDigits();
    }
    return hasDigits && !text.isTooLong();
}

// `text`, a whole number text, as a value; false, with `value` unchanged, if it does not fit.
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

bool scanNumber(std::FILE *file, int &value) {
    NumberText text(file);
    text.takeSign();
    return text.takeDigits() && !text.isTooLong() && parse(text.view(), value);
}

bool scanNumber(std::FILE *file, float &value) {
    NumberText text(file);
    if (!takeRealText(text)) {
        return false;
    }
    if (parse(text.view(), value)) {
        return true;
    }
    if (isTiny(text.view())) {
        value = text.view().front() == '-' ? -0.0F : 0.0F;
        return true;
    }
    return false;
}

bool scanSeparator(std::FILE *file, const char *separator) {
    for (; *separator != '\0'; ++separator) {
        if (isSpace(*separator)) {
            skipSpace(file);
            continue;
        }
        if (separator[0] == '%' && separator[1] == '%') {
            ++separator;
        }
        const int character = nextByte(file);
        if (character != static_cast<unsigned char>(*separator)) {
            std::ungetc(character, file);
            return false;
        }
    }
    return true;
}

std::size_t scanWord(std::FILE *file, char *word, std::size_t room) {
    std::size_t length = 0;
    int character = firstBehindSpace(file);
    for (; character != EOF && !isSpace(character); character = nextByte(file)) {
        if (length + 1 < room) {
            word[length] = static_cast<char>(character);
        }
        ++length;
    }
    std::ungetc(character, file);
    if (room > 0) {
        word[std::min(length, room - 1)] = '\0';
    }
    return length;
}

void skipSpace(std::FILE *file) {
    std::ungetc(firstBehindSpace(file), file);
}

bool scanLine(std::FILE *file, char *line, int size) {
    int length = 0;
    int character = nextByte(file);
    while (character != EOF && character != '\n') {
        const int following = nextByte(file);
        if (length + 1 < size && !(character == '\r' && following == '\n')) {
            line[length++] = static_cast<char>(character);
        }
        character = following;
    }
    if (size > 0) {
        line[length] = '\0';
    }
    return character == '\n';
}

void LinePrinter::integer(int value, int width) {
    char digits[16];
    const char *end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    padded(digits, static_cast<std::size_t>(end - digits), static_cast<std::size_t>(width));
}

void LinePrinter::real(float value) {
    char digits[32];
    const char *end = std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                    std::chars_format::scientific, 8)
                          .ptr;
    padded(digits, static_cast<std::size_t>(end - digits), 16);
}

void LinePrinter::separator(const char *text) {
    for (; *text != '\0'; ++text) {
        if (text[0] == '%' && text[1] == '%') {
            ++text;
        }
        line[used++] = *text;
    }
}

void LinePrinter::text(const char *text) {
    const std::size_t length = std::strlen(text);
    if (length < capacity - used) { // leaves room for the new line
        std::memcpy(line + used, text, length);
        used += length;
        return;
    }
    flush();
    failed |= std::fwrite(text, 1, length, file) != length;
}

bool LinePrinter::finish(bool newLine) {
    if (newLine) {
        line[used++] = '\n';
    }
    flush();
    return !failed;
}

void LinePrinter::padded(const char *digits, std::size_t length, std::size_t width) {
    const std::size_t blanks = width > length ? width - length : 0;
    std::memset(line + used, ' ', blanks);
    std::memcpy(line + used + blanks, digits, length);
    used += blanks + length;
}

void LinePrinter::flush() {
    failed |= used > 0 && std::fwrite(line, 1, used, file) != used;
    used = 0;
}

} // namespace trunnion::detail
