// What an entry point gives: each program of this folder has one source that defines these two.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

// Runs the library on one input, whatever its bytes are. Returns if all is well; what must never
// happen ends in require, in a sanitizer, or in an exception that nobody catches.
void run(const std::string &input);

// Well-formed inputs, made by the library itself, from which the search sets out.
std::vector<std::string> seeds();

// Stops the program, which the fuzzer takes for a fault of the library, unless `holds`.
void require(bool holds, const char *rule);

} // namespace fuzz
