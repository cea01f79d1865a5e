#include "block.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace {

constexpr std::string_view blanks = " \t\r\v\f";

// A character for people: a control character stands there as its code.
std::string shown(char c) {
    const auto code = static_cast<unsigned char>(c);
    return std::isprint(code) != 0 ? "\"" + std::string(1, c) + "\""
                                   : "the character " + std::to_string(code);
}

void skipBlanks(std::string_view &text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

void skipComment(std::string_view &text) {
    const std::size_t end = text.find(')');
    if (end == std::string_view::npos) {
        throw BlockError("the comment does not end");
    }
    text.remove_prefix(end + 1);
}

// Moves to the next word. False if the line holds no more.
bool findWord(std::string_view &text) {
    skipBlanks(text);
    while (!text.empty() && text.front() == '(') {
        skipComment(text);
        skipBlanks(text);
    }
    return !text.empty() && text.front() != ';';
}

// The value of all of `text`: an optional sign, digits, at most one point.
std::optional<double> numberIn(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative || text.starts_with('+') ? 1 : 0);
    double value = 0.0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (error != std::errc() || stop != end || text.find_first_of("+-") != text.npos) {
        return std::nullopt;
    }
    return isNegative ? -value : value;
}

// Takes the number of the word that `letter` begins.
double takeNumber(char letter, std::string_view &text) {
    skipBlanks(text);
    const std::size_t length = std::min(text.find_first_not_of("+-.0123456789"), text.size());
    const std::string digits(text.substr(0, length));
    text.remove_prefix(length);
    if (digits.empty()) {
        throw BlockError(std::string(1, letter) + " stands without a number");
    }
    if (const std::optional<double> value = numberIn(digits)) {
        return *value;
    }
    throw BlockError("\"" + digits + "\" behind " + letter + " is no number");
}

// The number of a G or M word in `parts` of one.
int codeOf(char letter, double value, int parts) {
    const double code = std::round(value * parts);
    if (value < 0.0 || value >= 1000.0 || std::fabs(value * parts - code) > 1e-6) {
        throw BlockError(std::string("unknown ") + letter + " word");
    }
    return static_cast<int>(code);
}

void addWord(char letter, double value, Block &block) {
    if (letter == 'G') {
        block.gCodes.push_back(codeOf('G', value, 10));
    } else if (letter == 'M') {
        block.mCodes.push_back(codeOf('M', value, 1));
    } else {
        std::optional<double> &slot = block.values[static_cast<std::size_t>(letter - 'A')];
        if (slot) {
            throw BlockError(std::string(1, letter) + " stands twice");
        }
        slot = value;
    }
}

// Takes the letter that begins a word. A colon is the N of a main block.
char takeLetter(std::string_view &text) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c == ':') {
        return 'N';
    }
    const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (!isLetter) {
        throw BlockError("unexpected " + shown(c));
    }
    return static_cast<char>(std::toupper(c));
}

} // namespace

char Block::firstOf(std::string_view letters) const {
    const auto found =
        std::find_if(letters.begin(), letters.end(), [this](char c) { return has(c); });
    return found == letters.end() ? '\0' : *found;
}

Block readBlock(std::string_view line) {
    Block block;
    skipBlanks(line);
    if (line.starts_with('%')) {
        return block;
    }
    // A slash marks a block that can be skipped; it is read like any other.
    line.remove_prefix(line.starts_with('/') ? 1 : 0);
    while (findWord(line)) {
        const char letter = takeLetter(line);
        addWord(letter, takeNumber(letter, line), block);
    }
    return block;
}

std::string nameOfG(int tenths) {
    const std::string whole = "G" + std::to_string(tenths / 10);
    return tenths % 10 == 0 ? whole : whole + "." + std::to_string(tenths % 10);
}
