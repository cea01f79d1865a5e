// Inputs that are read as a script: values are taken from the front, and what is left is a file.
#pragma once

#include <cstring>
#include <string>
#include <type_traits>

namespace fuzz {

class Script {
public:
    explicit Script(const std::string &input) : bytes(input) {}

    bool isAtEnd() const { return at >= bytes.size(); }

    // The next bytes as a plain value; zero bytes behind the end.
    template <class T = unsigned char>
    T take() {
        static_assert(std::is_trivially_copyable_v<T>);
        T value{};
        const std::size_t left = bytes.size() - at;
        const std::size_t size = sizeof value < left ? sizeof value : left;
        std::memcpy(&value, bytes.data() + at, size);
        at += size;
        return value;
    }

    // From low to high, both included and at most 255 apart, by one byte.
    int integer(int low, int high) { return low + take() % (high - low + 1); }
    bool oneIn(int n) { return integer(1, n) == 1; }

    // A slot number that is mostly near 0 to bound, and now and then anything at all.
    int slot(int bound) {
        const int kind = take();
        return kind == 255 ? take<int>() : kind % (bound < 250 ? bound + 4 : 250) - 2;
    }

    // A text of at most `longest` characters: a length and the characters up to a zero byte.
    std::string text(unsigned longest) { return upToZero(take(take() % (longest + 1))); }
    // The rest of the input up to a zero byte.
    std::string restAsText() { return upToZero(rest()); }

    std::string take(std::size_t size) {
        std::string taken = bytes.substr(at, size);
        at += taken.size();
        return taken;
    }
    std::string rest() { return take(bytes.size()); }

private:
    static std::string upToZero(std::string text) {
        text.resize(std::strlen(text.c_str()));
        return text;
    }

    const std::string &bytes;
    std::size_t at = 0;
};

} // namespace fuzz
