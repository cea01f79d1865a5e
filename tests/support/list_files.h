// Lists and their files: what a list writes, as bytes, and what comes of bytes that a list reads.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"
#include "trunnion/persistence/stream.h"

namespace test {

inline const char *modeOf(bool binary, bool writing) {
    if (binary) {
        return writing ? "wb" : "rb";
    }
    return writing ? "w" : "r";
}

// The list file of `array`. The stream's automatic new line must come back as it was.
template <class Array>
std::string written(const Array &array, const char *name, bool binary, int autoNewLine = 1) {
    const TempDir dir;
    const std::string path = dir.path("list");
    TqIOCL stream;
    stream.OpenM(path.c_str(), modeOf(binary, true));
    stream.SetAutoNewLineM(autoNewLine);
    array.FmOutputOzkLstM(&stream, name);
    EXPECT_EQ(stream.GetAutoNewLineM(), autoNewLine);
    stream.CloseM();
    return readBytes(path);
}

// Reads `bytes` into `array`; the code thrown, or 0.
template <class Array>
int readInto(Array &array, const std::string &bytes, bool binary) {
    static const TempDir dir;
    writeBytes(dir.path("list"), bytes);
    TqIOCL stream;
    stream.OpenM(dir.path("list").c_str(), modeOf(binary, false));
    try {
        array.FmInputOzkLstM(&stream);
    } catch (int code) {
        return code;
    }
    return 0;
}

// The values one behind the other as they lie in memory.
template <class... Values>
std::string raw(Values... values) {
    std::string bytes;
    (bytes.append(reinterpret_cast<const char *>(&values), sizeof values), ...);
    return bytes;
}

} // namespace test
