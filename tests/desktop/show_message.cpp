// Tells of a file that could not be read, as an application does, once the desktop is installed,
// and ends when the person has answered.
#include "trunnion/persistence/file_versions.h"
#include "trunnion_desktop/desktop.h"

int main() {
    trunnion::InstallDesktop("Spindle");
    const int result = slFileMessage(107, "part.nc");
    trunnion::RemoveDesktop();
    return result == 1 ? 0 : 1;
}
