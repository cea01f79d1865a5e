#include "program.h"

#include <cstring>
#include <filesystem>

#include "progress.h"
#include "trunnion/containers/char_arr.h"

namespace {

constexpr char lineFeed = '\n';
constexpr char carriageReturn = '\r';

// The lines of a text, one after another.
class Lines {
public:
    explicit Lines(const CharArr &content)
        : text(content), buffer(static_cast<std::size_t>(content.GetBoundM()) + 1) {}

    // False behind the last line.
    bool next() {
        if (text.GetOneLineM(start, 0, buffer.data(), 0) == 0) {
            return false;
        }
        start += static_cast<int>(line().size());
        start += at(start) == carriageReturn && at(start + 1) == lineFeed ? 2 : 1;
        return true;
    }
    // Without its end.
    std::string_view line() const { return buffer.data(); }
    // Offset behind the line and its end.
    int position() const { return start; }

private:
    char at(int idx) const { return idx < text.GetBoundM() ? *text.GetItemPM(idx) : '\0'; }

    const CharArr &text;
    std::vector<char> buffer;
    int start = 0;
};

CharArr readText(const std::string &path) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    if (!fs::exists(path, ignored)) {
        throw ProgramError("no such file");
    }
    if (!fs::is_regular_file(path, ignored)) {
        throw ProgramError("not a file");
    }
    CharArr text;
    if (text.ReadFileM(path.c_str(), 0) == 0) {
        throw ProgramError("the file cannot be read");
    }
    if (text.GetBoundM() == 0) {
        throw ProgramError("the file is empty");
    }
    return text;
}

// Follows the numbered program. `lineNumber` is that of the line in front of its first one, and
// comes out as that of its last.
Toolpath follow(const CharArr &text, int &lineNumber) {
    Toolpath path;
    Progress progress("reading the program", static_cast<std::size_t>(text.GetBoundM()));
    for (Lines lines(text); !path.hasEnded() && lines.next(); ++lineNumber) {
        progress.show(static_cast<std::size_t>(lines.position()));
        try {
            path.follow(readBlock(lines.line()), lineNumber + 1);
        } catch (const BlockError &error) {
            throw ProgramError(lineNumber + 1, error.what());
        }
    }
    return path;
}

} // namespace

Program readProgram(const std::string &path, int number) {
    CharArr text = readText(path);
    // The number gets a line of its own unless the text begins with one already.
    int lineNumber = *text.GetItemPM(0) == 'O' ? 0 : -1;
    text.AddProgNoM(number);
    const Toolpath toolpath = follow(text, lineNumber);
    if (toolpath.lastRun().empty()) {
        throw ProgramError(lineNumber, "the program ends without a cutting move");
    }
    return {number, lineNumber, toolpath.lastRun()};
}
