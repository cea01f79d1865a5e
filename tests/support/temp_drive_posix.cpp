#include "tests/support/temp_drive.h"

#include "trunnion/platform/system.h"

test::TempDrive::TempDrive() {
    trunnion::MapDrive('E', path("").c_str());
}

test::TempDrive::~TempDrive() {
    trunnion::MapDrive('E', nullptr);
}
