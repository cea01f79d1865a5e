#include "trunnion/persistence/detail/text_io.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "trunnion/persistence/detail/number_text.h"

namespace trunnion::detail {

namespace {

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

bool scanInGeneral(std::FILE *file, int &value) {
    NumberText text(file);
    text.takeSign();
    return text.takeDigits() && !text.isTooLong() && parseInteger(text.view(), value);
}

bool scanInGeneral(std::FILE *file, float &value) {
    NumberText text(file);
    return takeRealText(text) && parseReal(text.view(), value);
}

// Nearly every number lies as a whole in what the file has fetched already.
template <class Number>
bool scan(std::FILE *file, Number &value) {
    const std::span<const char> fetched = fetchedBytes(file);
    const char *const begin = fetched.data();
    const char *const end = scanUsual(begin, begin + fetched.size(), value);
    if (end == nullptr) {
        return scanInGeneral(file, value);
    }
    passFetched(file, static_cast<std::size_t>(end - begin));
    return true;
}

} // namespace

bool scanNumber(std::FILE *file, int &value) {
    return scan(file, value);
}

bool scanNumber(std::FILE *file, float &value) {
    return scan(file, value);
}

namespace {

// scanSeparator on the characters from `text` to `end`: where the separator or the part of it that
// is there ends, or null where that cannot be told without a look behind `end`.
const char *passSeparator(const char *text, const char *end, const char *separator, bool &isThere) {
    isThere = true;
    for (; *separator != '\0' && isThere; ++separator) {
        if (isSpace(*separator)) {
            while (text != end && isSpace(*text)) {
                ++text;
            }
        } else if (text != end) {
            separator += separator[0] == '%' && separator[1] == '%' ? 1 : 0;
            isThere = *text == *separator;
            text += isThere ? 1 : 0;
        }
        if (text == end) {
            return nullptr;
        }
    }
    return text;
}

bool scanSeparatorInGeneral(std::FILE *file, const char *separator) {
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

} // namespace

bool scanSeparator(std::FILE *file, const char *separator) {
    const std::span<const char> fetched = fetchedBytes(file);
    const char *const begin = fetched.data();
    bool isThere = false;
    const char *const end = passSeparator(begin, begin + fetched.size(), separator, isThere);
    if (end == nullptr) {
        return scanSeparatorInGeneral(file, separator);
    }
    passFetched(file, static_cast<std::size_t>(end - begin));
    return isThere;
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

namespace {

bool scanLineInGeneral(std::FILE *file, char *line, int size) {
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

} // namespace

bool scanLine(std::FILE *file, char *line, int size) {
    const std::span<const char> fetched = fetchedBytes(file);
    const char *const begin = fetched.data();
    const auto *const lineFeed =
        fetched.empty() ? nullptr
                        : static_cast<const char *>(std::memchr(begin, '\n', fetched.size()));
    if (lineFeed == nullptr) {
        return scanLineInGeneral(file, line, size);
    }
    const std::ptrdiff_t length =
        lineFeed - begin - (lineFeed != begin && lineFeed[-1] == '\r' ? 1 : 0);
    if (size > 0) {
        *std::copy_n(begin, std::min<std::ptrdiff_t>(length, size - 1), line) = '\0';
    }
    passFetched(file, static_cast<std::size_t>(lineFeed + 1 - begin));
    return true;
}

void LinePrinter::integer(int value, int width) {
    end = printInteger(end, value, width);
}

void LinePrinter::real(float value) {
    end = printReal(end, value);
}

void LinePrinter::separator(const char *text) {
    for (; *text != '\0'; ++text) {
        if (text[0] == '%' && text[1] == '%') {
            ++text;
        }
        *end++ = *text;
    }
}

void LinePrinter::text(const char *text) {
    const std::size_t length = std::strlen(text);
    if (length < capacity - static_cast<std::size_t>(end - begin)) { // leaves room for the new line
        std::memcpy(end, text, length);
        end += length;
        return;
    }
    flush();
    failed |= writeBytes(file, text, length) != length;
    start();
}

bool LinePrinter::finish(bool newLine) {
    if (newLine) {
        *end++ = '\n';
    }
    flush();
    return !failed;
}

void LinePrinter::start() {
    const std::span<char> room = writableRoom(file);
    begin = room.size() >= capacity ? room.data() : line;
    end = begin;
}

void LinePrinter::flush() {
    const auto used = static_cast<std::size_t>(end - begin);
    if (begin != line) {
        passWritten(file, used);
    } else {
        failed |= used > 0 && writeBytes(file, line, used) != used;
    }
}

} // namespace trunnion::detail
