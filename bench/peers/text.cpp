// Lines of three floats as text, in the default formats: through the C library, and by the
// conversions of the standard library and fast_float into a buffer of the caller's.
#include <charconv>
#include <cstring>
#include <memory>

#include <fast_float/fast_float.h>

#include "bench/peers/contest.h"
#include "tests/support/temp_dir.h"
#include "trunnion/persistence/stream.h"

namespace {

using bench::Point;

constexpr double bytesPerLine = 12 + 53; // three floats in memory, and their line in the file
constexpr const char *separator = ", ";

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::vector<Point> randomPoints(int count) {
    bench::Random random;
    std::vector<Point> points(static_cast<std::size_t>(count));
    for (Point &p : points) {
        p = random.point(500.0F);
    }
    return points;
}

void saveByStream(const std::vector<Point> &points, const std::string &path) {
    TqIOCL stream;
    stream.OpenM(path.c_str(), "w");
    for (const Point &p : points) {
        stream.OutputPoint3DM(p.data());
    }
    stream.CloseM();
}

void loadByStream(std::vector<Point> &points, const std::string &path) {
    TqIOCL stream;
    stream.OpenM(path.c_str(), "r");
    for (Point &p : points) {
        stream.InputPoint3DM(p.data());
    }
    stream.CloseM();
}

void saveByPrintf(const std::vector<Point> &points, const std::string &path) {
    const File file(std::fopen(path.c_str(), "w"));
    for (const Point &p : points) {
        std::fprintf(file.get(), "%16.8e, %16.8e, %16.8e\n", static_cast<double>(p[0]),
                     static_cast<double>(p[1]), static_cast<double>(p[2]));
    }
}

void loadByScanf(std::vector<Point> &points, const std::string &path) {
    const File file(std::fopen(path.c_str(), "r"));
    for (Point &p : points) {
        bench::require(std::fscanf(file.get(), "%f, %f, %f", &p[0], &p[1], &p[2]) == 3,
                       "a line of text");
    }
}

// Right-aligned in 16 characters, as "%16.8e" prints.
char *printNumber(char *out, float value) {
    constexpr std::ptrdiff_t width = 16;
    char digits[32];
    const char *end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific, 8).ptr;
    const std::ptrdiff_t blanks = width - (end - digits);
    std::memset(out, ' ', static_cast<std::size_t>(blanks));
    std::memcpy(out + blanks, digits, static_cast<std::size_t>(end - digits));
    return out + width;
}

void saveByToChars(const std::vector<Point> &points, const std::string &path) {
    const File file(std::fopen(path.c_str(), "w"));
    for (const Point &p : points) {
        char line[64];
        char *end = line;
        for (std::size_t i = 0; i < 3; ++i) {
            end = printNumber(i == 0 ? end : std::copy_n(separator, 2, end), p[i]);
        }
        *end++ = '\n';
        std::fwrite(line, 1, static_cast<std::size_t>(end - line), file.get());
    }
}

void loadByFastFloat(std::vector<Point> &points, const std::string &path) {
    const File file(std::fopen(path.c_str(), "r"));
    char line[128];
    for (Point &p : points) {
        bench::require(std::fgets(line, sizeof line, file.get()) != nullptr, "a line of text");
        const char *at = line;
        const char *end = line + std::strlen(line);
        for (float &x : p) {
            at += std::strspn(at, separator);
            at = fast_float::from_chars(at, end, x).ptr;
        }
    }
}

void saveLines(bench::Contest &contest) {
    const test::TempDir dir;
    const std::vector<Point> points = randomPoints(contest.size());
    contest.items(contest.size(), "lines", bytesPerLine);
    contest.ours([&] { saveByStream(points, dir.path("ours")); });
    contest.peer("fprintf", 3.0, [&] { saveByPrintf(points, dir.path("printf")); });
    contest.peer("std::to_chars", 0.95, [&] { saveByToChars(points, dir.path("chars")); });
    contest.measure([&] {
        const std::string expected = test::readBytes(dir.path("printf"));
        bench::require(test::readBytes(dir.path("ours")) == expected &&
                           test::readBytes(dir.path("chars")) == expected,
                       "lines of floats written");
    });
}

void loadLines(bench::Contest &contest) {
    const test::TempDir dir;
    const std::string path = dir.path("lines");
    saveByPrintf(randomPoints(contest.size()), path);
    std::vector<Point> points[3];
    for (std::vector<Point> &list : points) {
        list.resize(static_cast<std::size_t>(contest.size()));
    }
    contest.items(contest.size(), "lines", bytesPerLine);
    contest.ours([&] { loadByStream(points[0], path); });
    contest.peer("fscanf", 2.8, [&] { loadByScanf(points[1], path); });
    contest.peer("fast_float", 0.7, [&] { loadByFastFloat(points[2], path); });
    contest.measure([&] {
        bench::require(points[0] == points[1] && points[0] == points[2], "lines of floats read");
    });
}

const bench::Row rows[] = {
    {"text lines", "three floats saved", 250000, saveLines},
    {"text lines", "three floats loaded", 250000, loadLines},
};

} // namespace
