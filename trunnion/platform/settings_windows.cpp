// The clock, the special folders and the ini files on Windows.
#include "trunnion/platform/settings.h"
#include "trunnion/platform/system.h"

#include <windows.h>
// Needs the definitions above.
#include <shlobj.h>

namespace trunnion {

void SetWindowsDirectory(const char * /*path*/) {}

void SetDocumentsDirectory(const char * /*path*/) {}

namespace detail {

UtcTime systemTime() {
    SYSTEMTIME now{};
    GetSystemTime(&now);
    return {now.wYear,   now.wMonth,  now.wDay,         now.wHour,
            now.wMinute, now.wSecond, now.wMilliseconds};
}

std::string windowsDirectory() {
    char directory[MAX_PATH] = "";
    GetWindowsDirectoryA(directory, MAX_PATH);
    return directory;
}

std::string documentsDirectory() {
    char directory[MAX_PATH] = "";
    SHGetSpecialFolderPathA(nullptr, directory, CSIDL_PERSONAL, FALSE);
    return directory;
}

std::string iniValue(const char *section, const char *key, const char *fallback, const char *file) {
    char value[260] = "";
    GetPrivateProfileStringA(section, key, fallback, value, sizeof value, file);
    return value;
}

} // namespace detail
} // namespace trunnion
