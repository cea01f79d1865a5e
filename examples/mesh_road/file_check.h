// Is a mesh file whole? The importer reads some files that break off as if they ended there, and on
// others it works on for ever; so a file is looked through before it is imported.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

// What is wrong with a mesh file, in one line without the name of the file.
struct ImportError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Each looks through the bytes of a file and returns the number of its faces. Throws ImportError
// for a file that ends before it holds what it announces, or that has anything but numbers where
// numbers belong.
std::size_t checkStl(std::string_view bytes);
// An OBJ file announces nothing: one that was cut between two lines looks whole.
std::size_t checkObj(std::string_view bytes);
std::size_t checkPly(std::string_view bytes);
