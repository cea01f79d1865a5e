#include "trunnion/host/setup.h"

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "trunnion/host/paths.h"
#include "trunnion/platform/directories.h"
#include "trunnion/platform/framework.h"
#include "trunnion/platform/settings.h"

namespace {

using trunnion::detail::iniValue;

std::string mainIniName() {
    constexpr const char *defaultName = "Pallodin.ini";
    const std::string file = trunnion::detail::inCurrentDirectory("MSysVer.ini");
    if (file.empty()) {
        return defaultName;
    }
    const std::string name = iniValue("SystemVer", "Ver", "", file.c_str());
    return name.size() < 2 ? defaultName : name;
}

std::string installationOf(const char *iniFile) {
    return iniValue("AccessDb", "InstallId", "0", iniFile);
}

bool isUpToDate(const char *iniName, const char *userPath) {
    return slIsExistentPath(userPath) &&
           CString(installationOf(iniName).c_str())
                   .CompareNoCase(installationOf(userPath).c_str()) == 0;
}

// Makes the user's copy anew from the master copy if it is missing or of another installation.
void slRefreshInitFile(const char *iniName, const char *userPath) {
    if (isUpToDate(iniName, userPath)) {
        return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1000));
    char directory[260];
    slGetPathAndName(userPath, directory, nullptr);
    slCreateDirRecursively(directory);
    const std::string master = trunnion::detail::windowsDirectory() + '\\' + iniName;
    trunnion::detail::copyFile(master.c_str(), userPath);
}

} // namespace

int slGetInitFilePathS(char *out, int size) {
    if (size < 1) {
        return 0;
    }
    const std::string name = mainIniName();
    const std::string version = iniValue("System", "Version", "4.8", name.c_str());
    const std::string tail = "\\Mervane\\" + version + '\\' + name;
    const std::string documents = trunnion::detail::documentsDirectory();
    const auto room = static_cast<std::size_t>(size);
    std::memset(out, 0, room);
    if (documents.size() < room) {
        documents.copy(out, documents.size());
    }
    if (documents.size() + tail.size() >= room) {
        return 0;
    }
    tail.copy(out + documents.size(), tail.size());
    slRefreshInitFile(name.c_str(), out);
    return 1;
}
