// A line of a part program, as a machine's control reads it: words of a letter and a number.
#pragma once

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What is wrong with a line of the program.
struct BlockError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The words of a line. G and M may stand several times, every other letter once.
struct Block {
    std::vector<int> gCodes; // in tenths: 900 and 901 for G90 and G90.1
    std::vector<int> mCodes;
    std::array<std::optional<double>, 26> values; // of the letters A to Z

    const std::optional<double> &operator[](char letter) const {
        return values[static_cast<std::size_t>(letter - 'A')];
    }
    bool has(char letter) const { return (*this)[letter].has_value(); }
    // The first of `letters` that stands in the block, or 0.
    char firstOf(std::string_view letters) const;
    // The value of a letter, or 0.
    double valueOr0(char letter) const { return (*this)[letter].value_or(0.0); }
};

// Reads a line without its end. Comments, in parentheses or behind a semicolon, are passed over,
// and so are lines that begin with a percent sign. Throws BlockError.
Block readBlock(std::string_view line);

// A G code for people: "G90", "G90.1".
std::string nameOfG(int tenths);
