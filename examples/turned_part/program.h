// A part program on disk.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "toolpath.h"

// Why a file is no program that the example can turn; the text begins with the line if there is
// one: "line 7: ...".
struct ProgramError : std::runtime_error {
    explicit ProgramError(const std::string &what) : std::runtime_error(what) {}
    ProgramError(int line, const std::string &what)
        : std::runtime_error("line " + std::to_string(line) + ": " + what) {}
};

struct Program {
    int number = 0;
    int lines = 0;            // read, up to the end of the program
    std::vector<Move> finish; // the last unbroken run of cutting moves; never empty
};

// Reads a program and gives it the number `number`. Throws ProgramError.
Program readProgram(const std::string &path, int number);
