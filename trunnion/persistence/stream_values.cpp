// The typed operations of a stream on up to nine values and on tuples.
#include "trunnion/persistence/stream.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "trunnion/persistence/detail/stream_transfer.h"

using namespace trunnion::detail;

namespace {

// One value as the default formats print it.
void printDefault(LinePrinter &printer, char value) {
    printer.integer(value, 5);
}
void printDefault(LinePrinter &printer, unsigned char value) {
    printer.integer(value, 5);
}
void printDefault(LinePrinter &printer, int value) {
    printer.integer(value, 10);
}
void printDefault(LinePrinter &printer, float value) {
    printer.real(value);
}

// One value as an argument of printf.
int promoted(char value) {
    return value;
}
unsigned int promoted(unsigned char value) {
    return value;
}
int promoted(int value) {
    return value;
}
double promoted(float value) {
    return value;
}

bool scanValue(std::FILE *file, char &value) {
    int number = 0;
    const bool scanned = scanNumber(file, number);
    if (scanned) {
        value = static_cast<char>(number);
    }
    return scanned;
}
bool scanValue(std::FILE *file, int &value) {
    return scanNumber(file, value);
}
bool scanValue(std::FILE *file, float &value) {
    return scanNumber(file, value);
}

} // namespace

// The operations written once for all types: on a list of places, some of which may be null, and on
// a tuple, whose members stand one behind the other.
struct TqIOCL::Values {
    template <class T>
    static int write(TqIOCL &stream, StreamFormat format, const std::array<const T *, 9> &values) {
        if (Transfer::isText(stream)) {
            return print(stream, format, values);
        }
        for (const T *value : values) {
            if (value != nullptr) {
                stream.writeOneItemBinaryM(value, sizeof(T));
            }
        }
        return 1;
    }

    template <class T>
    static int print(TqIOCL &stream, StreamFormat format, const std::array<const T *, 9> &values) {
        required(values[0], writeFailed);
        LinePrinter printer(required(stream.fileDescript, writeFailed));
        const bool byDefault = Transfer::isDefault(stream, format);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (values[i] == nullptr) {
                continue;
            }
            if (i > 0) {
                printer.separator(stream.separator);
            }
            if (byDefault) {
                printDefault(printer, *values[i]);
            } else {
                printer.formatted(stream.fmt[format], promoted(*values[i]));
            }
        }
        return Transfer::finish(stream, printer);
    }

    template <std::size_t count, class T>
    static int writeTuple(TqIOCL &stream, StreamFormat format, const T *value) {
        if (Transfer::isText(stream)) {
            return printTuple<count>(stream, format, required(value, writeFailed));
        }
        stream.writeOneItemBinaryM(value, sizeof(T) * count);
        return 1;
    }

    template <std::size_t count, class T>
    static int printTuple(TqIOCL &stream, StreamFormat format, const T *value) {
        LinePrinter printer(required(stream.fileDescript, writeFailed));
        if (!Transfer::isDefault(stream, format)) {
            T member[4] = {};
            std::copy_n(value, count, member);
            // printf passes over the members that the format of a shorter tuple does not name.
            printer.formatted(stream.fmt[format], promoted(member[0]), promoted(member[1]),
                              promoted(member[2]), promoted(member[3]));
            return Transfer::finish(stream, printer);
        }
        printDefault(printer, value[0]);
        for (std::size_t i = 1; i < count; ++i) {
            printer.separator(", ");
            printDefault(printer, value[i]);
        }
        return Transfer::finish(stream, printer);
    }

    template <class T>
    static int read(TqIOCL &stream, const std::array<T *, 9> &values) {
        if (Transfer::isText(stream)) {
            return scan<T>(stream, values);
        }
        for (T *value : values) {
            if (value != nullptr) {
                stream.readOneItemBinaryM(value, sizeof(T));
            }
        }
        return 1;
    }

    template <std::size_t count, class T>
    static int readTuple(TqIOCL &stream, T *value) {
        if (Transfer::isText(stream)) {
            return scanTuple<count>(stream, required(value, readFailed));
        }
        stream.readOneItemBinaryM(value, sizeof(T) * count);
        return 1;
    }

    template <std::size_t count, class T>
    static int scanTuple(TqIOCL &stream, T *value) {
        std::array<T *, count> members;
        for (std::size_t i = 0; i < count; ++i) {
            members[i] = value + i;
        }
        return scan<T>(stream, members);
    }

    template <class T>
    static int scan(TqIOCL &stream, std::span<T *const> values) {
        required(values[0], readFailed);
        std::FILE *file = required(stream.fileDescript, readFailed);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (values[i] == nullptr) {
                continue;
            }
            if (i > 0 && !scanSeparator(file, stream.separator)) {
                throw readFailed;
            }
            if (!scanValue(file, *values[i])) {
                throw readFailed;
            }
        }
        return Transfer::dropRestOfLine(stream);
    }
};

// Up to nine values.

int TqIOCL::InputDM(int *value0, int *value1, int *value2, int *value3, int *value4, int *value5,
                    int *value6, int *value7, int *value8) {
    return Values::read<int>(
        *this, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::InputRM(float *value0, float *value1, float *value2, float *value3, float *value4,
                    float *value5, float *value6, float *value7, float *value8) {
    return Values::read<float>(
        *this, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::InputCM(char *value0, char *value1, char *value2, char *value3, char *value4,
                    char *value5, char *value6, char *value7, char *value8) {
    return Values::read<char>(
        *this, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::InputDM(int *value, const char *format) {
    if (!Transfer::isText(*this)) {
        readOneItemBinaryM(value, sizeof *value);
        return 1;
    }
    std::FILE *file = required(fileDescript, readFailed);
    if (std::fscanf(file, required(format, readFailed), required(value, readFailed)) != 1) {
        throw readFailed;
    }
    return Transfer::dropRestOfLine(*this);
}

int TqIOCL::OutputDM(const int *value0, const int *value1, const int *value2, const int *value3,
                     const int *value4, const int *value5, const int *value6, const int *value7,
                     const int *value8) {
    return Values::write<int>(
        *this, formatInt, {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::OutputRM(const float *value0, const float *value1, const float *value2,
                     const float *value3, const float *value4, const float *value5,
                     const float *value6, const float *value7, const float *value8) {
    return Values::write<float>(
        *this, formatReal,
        {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

int TqIOCL::OutputCM(const char *value0, const char *value1, const char *value2, const char *value3,
                     const char *value4, const char *value5, const char *value6, const char *value7,
                     const char *value8) {
    return Values::write<char>(
        *this, formatChar,
        {value0, value1, value2, value3, value4, value5, value6, value7, value8});
}

// Tuples.

int TqIOCL::InputInt2DM(int value[2]) {
    return Values::readTuple<2>(*this, value);
}

int TqIOCL::InputInt3DM(int value[3]) {
    return Values::readTuple<3>(*this, value);
}

int TqIOCL::InputInt4DM(int value[4]) {
    return Values::readTuple<4>(*this, value);
}

int TqIOCL::InputPoint2DM(float value[2]) {
    return Values::readTuple<2>(*this, value);
}

int TqIOCL::InputPoint3DM(float value[3]) {
    return Values::readTuple<3>(*this, value);
}

int TqIOCL::InputPoint4DM(float value[4]) {
    return Values::readTuple<4>(*this, value);
}

int TqIOCL::InputPixel4DM(float value[4]) {
    return Values::readTuple<4>(*this, value);
}

int TqIOCL::InputTexPixel4DM(unsigned char value[4]) {
    if (!Transfer::isText(*this)) {
        readOneItemBinaryM(value, 4);
        return 1;
    }
    required(value, readFailed);
    int numbers[4];
    Values::scanTuple<4>(*this, numbers);
    std::transform(numbers, numbers + 4, value,
                   [](int number) { return static_cast<unsigned char>(number); });
    return 1;
}

int TqIOCL::OutputInt2DM(const int value[2]) {
    return Values::writeTuple<2>(*this, formatInt2, value);
}

int TqIOCL::OutputInt3DM(const int value[3]) {
    return Values::writeTuple<3>(*this, formatInt3, value);
}

int TqIOCL::OutputInt4DM(const int value[4]) {
    return Values::writeTuple<4>(*this, formatInt4, value);
}

int TqIOCL::OutputPoint2DM(const float value[2]) {
    return Values::writeTuple<2>(*this, formatPoint2, value);
}

int TqIOCL::OutputPoint3DM(const float value[3]) {
    return Values::writeTuple<3>(*this, formatPoint3, value);
}

int TqIOCL::OutputPoint4DM(const float value[4]) {
    return Values::writeTuple<4>(*this, formatPoint4, value);
}

int TqIOCL::OutputPixel4DM(const float value[4]) {
    return Values::writeTuple<4>(*this, formatPixel4, value);
}

int TqIOCL::OutputTexPixel4DM(const unsigned char value[4]) {
    return Values::writeTuple<4>(*this, formatTexPixel4, value);
}
