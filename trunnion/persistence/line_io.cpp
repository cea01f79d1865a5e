#include "trunnion/persistence/line_io.h"

#include <cstring>

#include "trunnion/persistence/detail/text_io.h"

namespace {

template <class... Values>
int scan(std::FILE *file, const char *format, Values *...values) {
    return std::fscanf(file, format, values...) == static_cast<int>(sizeof...(values)) ? 1 : 0;
}

template <class... Values>
int print(std::FILE *file, const char *format, Values... values) {
    return trunnion::detail::printTo(file, format, values...) >= 0 ? 1 : 0;
}

} // namespace

int slFscanfC(std::FILE *file, const char *format, char *value) {
    int number = 0;
    if (scan(file, format, &number) == 0) {
        return 0;
    }
    *value = static_cast<char>(number);
    return 1;
}

int slFscanfD(std::FILE *file, const char *format, int *value) {
    return scan(file, format, value);
}

int slFscanfR(std::FILE *file, const char *format, float *value) {
    return scan(file, format, value);
}

int slFscanfS(std::FILE *file, const char *format, char *value) {
    return scan(file, format, value);
}

int slFscanfInt2D(std::FILE *file, const char *format, int value[2]) {
    return scan(file, format, value, value + 1);
}

int slFscanfPoint2D(std::FILE *file, const char *format, float value[2]) {
    return scan(file, format, value, value + 1);
}

int slFscanfPoint3D(std::FILE *file, const char *format, float value[3]) {
    return scan(file, format, value, value + 1, value + 2);
}

int slFscanfPoint4D(std::FILE *file, const char *format, float value[4]) {
    return scan(file, format, value, value + 1, value + 2, value + 3);
}

int slFscanfPixel4D(std::FILE *file, const char *format, float value[4]) {
    return slFscanfPoint4D(file, format, value);
}

int slFscanfTexPixel4D(std::FILE *file, const char *format, unsigned char value[4]) {
    int numbers[3] = {};
    if (scan(file, format, numbers, numbers + 1, numbers + 2) == 0) {
        return 0;
    }
    for (int i = 0; i < 3; ++i) {
        value[i] = static_cast<unsigned char>(numbers[i]);
    }
    value[3] = 255;
    return 1;
}

int slFprintfC(std::FILE *file, const char *format, char value) {
    return print(file, format, static_cast<int>(value));
}

int slFprintfD(std::FILE *file, const char *format, int value) {
    return print(file, format, value);
}

int slFprintfS(std::FILE *file, const char *format, const char *value) {
    return print(file, format, value);
}

int slFprintfR(std::FILE *file, const char *format, float value) {
    return print(file, format, static_cast<double>(value));
}

int slFprintfInt2D(std::FILE *file, const char *format, const int value[2]) {
    return print(file, format, value[0], value[1]);
}

int slFprintfPoint2D(std::FILE *file, const char *format, const float value[2]) {
    return print(file, format, static_cast<double>(value[0]), static_cast<double>(value[1]));
}

int slFprintfPoint3D(std::FILE *file, const char *format, const float value[3]) {
    return print(file, format, static_cast<double>(value[0]), static_cast<double>(value[1]),
                 static_cast<double>(value[2]));
}

int slFprintfPoint4D(std::FILE *file, const char *format, const float value[4]) {
    return print(file, format, static_cast<double>(value[0]), static_cast<double>(value[1]),
                 static_cast<double>(value[2]), static_cast<double>(value[3]));
}

int slFprintfPixel4D(std::FILE *file, const char *format, const float value[4]) {
    return slFprintfPoint4D(file, format, value);
}

int slFprintfTexPixel4D(std::FILE *file, const char *format, const unsigned char value[4]) {
    return print(file, format, static_cast<unsigned int>(value[0]),
                 static_cast<unsigned int>(value[1]), static_cast<unsigned int>(value[2]),
                 static_cast<unsigned int>(value[3]));
}

int slFgets(std::FILE *file, char *buffer, int size) {
    trunnion::detail::scanLine(file, buffer, size);
    return 1;
}

int slSkipLine(std::FILE *file) {
    return trunnion::detail::scanLine(file, nullptr, 0) ? 1 : 0;
}

int slSearchStrM(std::FILE *file, const char *word) {
    constexpr std::size_t longest = 255;
    char found[longest + 1];
    while (std::feof(file) == 0) {
        const std::size_t length = trunnion::detail::scanWord(file, found, sizeof found);
        if (length == 0) {
            return 0;
        }
        trunnion::detail::skipSpace(file);
        if (length <= longest && std::strcmp(found, word) == 0) {
            return 1;
        }
    }
    return 0;
}
