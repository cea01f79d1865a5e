// A directory of its own for a test, which is also the drive E.
#pragma once

#include "tests/support/temp_dir.h"

namespace test {

// On a system that has drives of its own, E must be there and empty; it is emptied again.
class TempDrive : public TempDir {
public:
    TempDrive();
    ~TempDrive();
    TempDrive(const TempDrive &) = delete;
    TempDrive &operator=(const TempDrive &) = delete;
};

} // namespace test
