// Every typed operation of a stream with the bytes that it writes.
#pragma once

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "trunnion/persistence/stream.h"

namespace test {

using namespace std::string_literals;

inline int readInt(TqIOCL &stream) {
    int value = 0;
    stream.InputDM(&value);
    return value;
}

template <class T>
std::string raw(const std::vector<T> &values) {
    return {reinterpret_cast<const char *>(values.data()), values.size() * sizeof(T)};
}

// One typed operation: what it writes in either form, and the values that come back as one text.
struct Operation {
    const char *name;
    std::function<void(TqIOCL &)> write;
    std::string text, binary;
    std::function<std::string(TqIOCL &)> read;
    std::string values;
};

template <class T>
std::string listed(const T *values, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += std::to_string(values[i]) + ' ';
    }
    return result;
}

template <class T, int count>
Operation tuple(const char *name, int (TqIOCL::*write)(const T *), int (TqIOCL::*read)(T *),
                const std::vector<T> &value, const std::string &text) {
    return {name,
            [=](TqIOCL &stream) { EXPECT_EQ((stream.*write)(value.data()), 1); },
            text,
            raw(value),
            [=](TqIOCL &stream) {
                T members[count] = {};
                EXPECT_EQ((stream.*read)(members), 1);
                return listed(members, count);
            },
            listed(value.data(), count)};
}

template <class T>
std::function<std::string(TqIOCL &)>
readNine(int (TqIOCL::*read)(T *, T *, T *, T *, T *, T *, T *, T *, T *), int count) {
    return [=](TqIOCL &stream) {
        T v[9] = {};
        (stream.*read)(v, nullptr, v + 1, v + 2, nullptr, nullptr, nullptr, nullptr,
                       count > 3 ? v + 3 : nullptr);
        return listed(v, count);
    };
}

inline std::vector<Operation> makeOperations() {
    const std::vector<int> ints = {1, 22, -3, INT_MIN};
    const std::vector<float> reals = {0.1F, -1e18F, 1e-45F, 3.40282347e38F};
    const std::vector<char> bytes = {-128, 127, -1};
    return {
        {"D", [=](TqIOCL &s) { s.OutputDM(&ints[0], nullptr, &ints[1], &ints[2]); },
         "         1,         22,         -3\n", raw(std::vector<int>{1, 22, -3}),
         readNine<int>(&TqIOCL::InputDM, 3), "1 22 -3 "},
        {"R",
         [=](TqIOCL &s) {
             s.OutputRM(&reals[0], &reals[1], nullptr, &reals[2], nullptr, nullptr, nullptr,
                        nullptr, &reals[3]);
         },
         "  1.00000001e-01,  -9.99999984e+17,   1.40129846e-45,   3.40282347e+38\n", raw(reals),
         readNine<float>(&TqIOCL::InputRM, 4), listed(reals.data(), 4)},
        {"C", [=](TqIOCL &s) { s.OutputCM(&bytes[0], &bytes[1], nullptr, &bytes[2]); },
         " -128,   127,    -1\n", raw(bytes), readNine<char>(&TqIOCL::InputCM, 3), "-128 127 -1 "},
        tuple<int, 2>("Int2D", &TqIOCL::OutputInt2DM, &TqIOCL::InputInt2DM, {INT_MAX, -5},
                      "2147483647,         -5\n"),
        tuple<int, 3>("Int3D", &TqIOCL::OutputInt3DM, &TqIOCL::InputInt3DM, {7, 8, 9},
                      "         7,          8,          9\n"),
        tuple<int, 4>("Int4D", &TqIOCL::OutputInt4DM, &TqIOCL::InputInt4DM, ints,
                      "         1,         22,         -3, -2147483648\n"),
        tuple<float, 2>("Point2D", &TqIOCL::OutputPoint2DM, &TqIOCL::InputPoint2DM, {0.0F, -0.5F},
                        "  0.00000000e+00,  -5.00000000e-01\n"),
        tuple<float, 3>("Point3D", &TqIOCL::OutputPoint3DM, &TqIOCL::InputPoint3DM,
                        {1.0F, 2.0F, 3.0F},
                        "  1.00000000e+00,   2.00000000e+00,   3.00000000e+00\n"),
        tuple<float, 4>("Point4D", &TqIOCL::OutputPoint4DM, &TqIOCL::InputPoint4DM, reals,
                        "  1.00000001e-01,  -9.99999984e+17,   1.40129846e-45,   3.40282347e+38\n"),
        tuple<float, 4>("Pixel4D", &TqIOCL::OutputPixel4DM, &TqIOCL::InputPixel4DM,
                        {1.0F, 2.0F, 3.0F, 4.0F},
                        "  1.00000000e+00,   2.00000000e+00,   3.00000000e+00,   4.00000000e+00\n"),
        tuple<unsigned char, 4>("TexPixel4D", &TqIOCL::OutputTexPixel4DM, &TqIOCL::InputTexPixel4DM,
                                {0, 128, 255, 7}, "    0,   128,   255,     7\n"),
        {"S", [](TqIOCL &s) { s.OutputSM("word", -1, 0); }, "word\n", "\4\0\0\0word"s,
         [](TqIOCL &s) {
             char word[1000]; // room for any word of a damaged file
             s.InputSM(word, 0, 0);
             return std::string(word);
         },
         "word"},
        {"s", [](TqIOCL &s) { s.OutputsM("two words"); }, "two words\n", "\11\0\0\0two words"s,
         [](TqIOCL &s) {
             char line[16];
             s.InputGetsM(line, sizeof line);
             return std::string(line);
         },
         "two words"},
    };
}

inline const std::vector<Operation> &operations() {
    static const std::vector<Operation> all = makeOperations();
    return all;
}

} // namespace test
