// The integers that the library throws.
#pragma once

#include <functional>

namespace test {

// The code that `action` throws, 0 if it throws none.
inline int thrown(const std::function<void()> &action) {
    try {
        action();
    } catch (int code) {
        return code;
    }
    return 0;
}

} // namespace test
