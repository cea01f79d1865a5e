// A directory of its own for a test, which is also the drive E.
#pragma once

#include "tests/support/temp_dir.h"
#include "trunnion/platform/system.h"

namespace test {

class TempDrive : public TempDir {
public:
    TempDrive() { trunnion::MapDrive('E', path("").c_str()); }
    ~TempDrive() { trunnion::MapDrive('E', nullptr); }
};

} // namespace test
