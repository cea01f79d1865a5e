// Numbers, words and lines of text files, read from and written to a FILE without the library's
// scanf and printf: bounded, in the same form whatever the locale is, and fast.
#pragma once

#include <cstddef>
#include <cstdio>

#include "trunnion/platform/file_buffer.h"

namespace trunnion::detail {

// The scanners skip leading white space and take the longest number, as scanf does, and leave what
// follows unread. False if there is no number, or if it does not fit: an int outside its range, a
// float beyond the largest one, a number of more than 255 characters. `value` is then unchanged. A
// float too small for its type becomes 0; "inf" and "nan", with a sign or without, are read because
// they are what the printers write.
bool scanNumber(std::FILE *file, int &value);
bool scanNumber(std::FILE *file, float &value);

// Passes over `separator` as a scanf format would: white space matches any run of white space, none
// included, another character itself, and "%%" one percent sign. False at the first difference,
// which stays unread.
bool scanSeparator(std::FILE *file, const char *separator);

// Skips white space and reads the word behind it; what follows the word stays unread. At most
// room - 1 characters are stored and terminated; a room of 0 stores nothing. The whole length of
// the word, 0 if there is none.
std::size_t scanWord(std::FILE *file, char *word, std::size_t room);

// Skips white space.
void skipSpace(std::FILE *file);

// Reads up to and with the line end, "\n" or "\r\n", which is not stored; a carriage return
// elsewhere is an ordinary character. At most size - 1 characters are stored and terminated; a size
// below 1 stores nothing. False if the file ended, or could not be read, before a line end.
bool scanLine(std::FILE *file, char *line, int size);

// A printed line on its way to the file: printed into the buffer of the file where that has room
// for the longest line, else collected and handed over at once.
class LinePrinter {
public:
    explicit LinePrinter(std::FILE *destination) : file(destination) { start(); }
    LinePrinter(const LinePrinter &) = delete;
    LinePrinter &operator=(const LinePrinter &) = delete;

    // As "%*d" prints with `width`, which is at most 11.
    void integer(int value, int width);
    // As "%16.8e" prints, in the C locale.
    void real(float value);
    // As a printf format without conversions prints; at most 49 characters.
    void separator(const char *text);
    // Any text, as it stands.
    void text(const char *text);
    // Prints by the caller's format.
    template <class... Values>
    void formatted(const char *format, Values... values) {
        flush();
        failed |= printTo(file, format, values...) < 0;
        start();
    }
    // Hands over what is left. False if any value could not be written; whether the new line could
    // is not asked.
    bool finish(bool newLine);

private:
    // Nine numbers of at most 16 characters, eight separators of at most 49 and a new line fit,
    // with a rest for text.
    static constexpr std::size_t capacity = 640;

    void start();
    void flush();

    std::FILE *file;
    bool failed = false;
    char *begin; // of what was printed since the last flush: in the file's buffer, or `line`
    char *end;
    char line[capacity];
};

} // namespace trunnion::detail
