#include "trunnion/persistence/detail/text_io.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <system_error>

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
    int character = std::getc(file);
    while (isSpace(character)) {
        character = std::getc(file);
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

    const char *begin() const { return text; }
    const char *end() const { return text + length; }
    bool isTooLong() const { return length > capacity; }

    // from_chars knows no plus sign, so that one is dropped.
    void takeSign() {
        if (next == '-') {
            take();
        } else if (next == '+') {
            next = std::getc(file);
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
        next = std::getc(file);
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

// True if the number, which no float can hold, is a tiny one and not a huge one: its first digit
// other than 0 stands behind the decimal point once the exponent has moved it.
bool isTiny(const char *at, const char *end) {
    int place = 0; // digits from the first one other than 0 to the point
    bool behindPoint = false;
    bool started = false;
    for (; at != end && *at != 'e' && *at != 'E'; ++at) {
        if (*at == '.') {
            behindPoint = true;
        } else if (isDigit(*at)) {
            started |= *at != '0';
            place += started && !behindPoint ? 1 : 0;
            place -= !started && behindPoint ? 1 : 0;
        }
    }
    if (at == end) {
        return place <= 0;
    }
    int exponent = 0;
    const bool negative = *(at + 1) == '-';
    if (std::from_chars(at + 1, end, exponent).ec != std::errc()) {
        return negative;
    }
    return static_cast<long long>(exponent) + place <= 0;
}

} // namespace

bool scanNumber(std::FILE *file, int &value) {
    NumberText text(file);
    text.takeSign();
    if (!text.takeDigits() || text.isTooLong()) {
        return false;
    }
    return std::from_chars(text.begin(), text.end(), value).ec == std::errc();
}

bool scanNumber(std::FILE *file, float &value) {
    NumberText text(file);
    if (!takeRealText(text)) {
        return false;
    }
    float number = 0.0F;
    const std::errc result = std::from_chars(text.begin(), text.end(), number).ec;
    if (result == std::errc::result_out_of_range) {
        if (!isTiny(text.begin(), text.end())) {
            return false;
        }
        number = *text.begin() == '-' ? -0.0F : 0.0F;
    } else if (result != std::errc()) {
        return false;
    }
    value = number;
    return true;
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
        const int character = std::getc(file);
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
    for (; character != EOF && !isSpace(character); character = std::getc(file)) {
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
    int character = std::getc(file);
    while (character != EOF && character != '\n') {
        const int following = std::getc(file);
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
