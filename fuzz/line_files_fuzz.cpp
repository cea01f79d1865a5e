// The helpers of line-oriented text files, and the lists that are read straight from a FILE. An
// input is a script of calls and a file.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "fuzz/support/lists.h"
#include "fuzz/support/script.h"

namespace {

using namespace fuzz;

void requireTruth(int result) {
    require(result == 0 || result == 1, "1 or 0");
}

void scan(std::FILE *file, Script &script) {
    static char text[1 << 16];
    char byte = 7;
    int ints[4];
    float reals[4];
    unsigned char pixel[4] = {1, 2, 3, 4};
    const int size = script.integer(0, 20);
    switch (script.integer(0, 11)) {
    case 0:
        requireTruth(slFscanfC(file, "%d,", &byte));
        break;
    case 1:
        requireTruth(slFscanfD(file, "%d, ", ints));
        break;
    case 2:
        requireTruth(slFscanfR(file, "%f", reals));
        break;
    case 3:
        requireTruth(slFscanfS(file, "%s\n", text));
        break;
    case 4:
        requireTruth(slFscanfInt2D(file, "%d, %d", ints));
        break;
    case 5:
        requireTruth(slFscanfPoint2D(file, "%f, %f", reals));
        break;
    case 6:
        requireTruth(slFscanfPoint3D(file, "%f, %f, %f", reals));
        break;
    case 7:
        requireTruth(slFscanfPoint4D(file, "%f %f %f %f", reals));
        break;
    case 8:
        if (slFscanfTexPixel4D(file, "%d, %d, %d", pixel) == 0) {
            require(pixel[0] == 1 && pixel[3] == 4, "nothing is stored unless all is there");
        }
        break;
    case 9:
        std::memset(text, 'x', 32);
        require(slFgets(file, text, size) == 1, "always 1");
        require(size == 0 || std::memchr(text, 0, static_cast<std::size_t>(size)) != nullptr,
                "a line that ends in its buffer");
        require(text[size] == 'x', "nothing is stored behind the buffer");
        break;
    case 10:
        requireTruth(slSkipLine(file));
        break;
    default:
        requireTruth(slSearchStrM(file, script.text(6).c_str()));
    }
}

// What is read from a FILE is a list that a stream can write and read.
void readIntegers(std::FILE *file) {
    IntArr list;
    list.FmInputOzkLstM(file);
    requireCounts(list);
    if (list.GetBoundM() > longestWrittenBack) {
        return;
    }
    IntArr same;
    require(readInto(same, Form::text, written(Form::text, list)) == 0, "a written list is read");
    require(same.GetBoundM() == list.GetBoundM(), "with its bound");
    require(same.GetAvailableNumM() == list.GetAvailableNumM(), "and its items");
}

void readPoints(std::FILE *file, int count, std::size_t fileSize) {
    Point3DArr points;
    points.FmInputLstM(file, count);
    require(points.GetBoundM() <= std::max(count, 0), "no more points than wanted");
    require(points.GetBoundM() * 12ULL <= fileSize, "no more points than there are");
    require(points.GetLengthM() <= 8 + static_cast<int>(fileSize), "room as the file has it");
    requireCounts(points);
}

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    const int kind = script.integer(0, 2);
    const int count = kind == 2 ? script.take<int>() : 0;
    const std::string calls = kind == 0 ? script.take(script.take()) : std::string();
    const std::string bytes = script.rest();
    const File file = openAs(fileOf(bytes, "lines"), "rb");
    if (kind == 1) {
        readIntegers(file.get());
    } else if (kind == 2) {
        readPoints(file.get(), count, bytes.size());
    } else {
        for (Script callScript(calls); !callScript.isAtEnd();) {
            scan(file.get(), callScript);
        }
    }
}

std::vector<std::string> fuzz::seeds() {
    IntArr list;
    for (const int value : {5, -7, SL_DELETED_INT, 2147483647}) {
        list.AddItemM(value);
    }
    std::string calls;
    for (char kind = 0; kind < 12; ++kind) {
        calls += "\x14";
        calls += kind;
    }
    return {'\0' + (static_cast<char>(calls.size()) + calls) +
                "1, 2, 3, 4, 5, 6.5, 1e9 word inf nan\r\nline\nlast",
            '\1' + written(Form::text, list), std::string("\2\3\0\0\0", 5) + std::string(36, '\1')};
}
