// The clock, the special folders and the ini files on POSIX.
#include "trunnion/platform/files.h"
#include "trunnion/platform/settings.h"
#include "trunnion/platform/system.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include <pwd.h>
#include <strings.h>
#include <unistd.h>

namespace {

// A folder that the host may have set.
class Folder {
public:
    void set(const char *path) {
        const std::lock_guard<std::mutex> lock(mutex);
        if (path == nullptr) {
            chosen.reset();
            return;
        }
        chosen = path;
        chosen->erase(chosen->find_last_not_of("\\/") + 1);
    }

    std::optional<std::string> get() {
        const std::lock_guard<std::mutex> lock(mutex);
        return chosen;
    }

private:
    std::mutex mutex;
    std::optional<std::string> chosen;
};

Folder &windowsFolder() {
    static Folder folder;
    return folder;
}

Folder &documentsFolder() {
    static Folder folder;
    return folder;
}

// Of the user that this process works for, from the user database; empty, which is the root, for a
// user without one.
std::string homeDirectory() {
    char space[4096];
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(getuid(), &entry, space, sizeof space, &found) != 0 || found == nullptr) {
        return {};
    }
    return found->pw_dir;
}

std::string_view trimmed(std::string_view text) {
    constexpr const char *blanks = " \t\v\f\x1A";
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

// Blanks around names do not count.
bool isSameName(std::string_view text, const char *name) {
    const std::string_view a = trimmed(text);
    const std::string_view b = trimmed(name);
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

std::string_view withoutQuotes(std::string_view text) {
    const bool quoted = text.size() > 1 && (text.front() == '"' || text.front() == '\'') &&
                        text.front() == text.back();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

// The next line without its end; false at the end of the file. What stands behind a zero byte is
// dropped, since the values are zero-terminated texts to their users.
bool readLine(std::FILE *file, std::string &line) {
    line.clear();
    int c = trunnion::detail::nextByteUnlocked(file);
    const bool any = c != EOF;
    for (; c != EOF && c != '\n' && c != '\r'; c = trunnion::detail::nextByteUnlocked(file)) {
        line += static_cast<char>(c);
    }
    line.resize(std::strlen(line.c_str()));
    return any;
}

// The name in a heading, or null for a line that is none.
std::optional<std::string_view> sectionName(std::string_view line) {
    const std::string_view text = trimmed(line);
    const std::size_t end = text.rfind(']');
    if (!text.starts_with('[') || end == std::string_view::npos) {
        return std::nullopt;
    }
    return text.substr(1, end - 1);
}

// Passes over the lines up to and with the section's heading; false if there is none. The lines in
// front of the first heading are the section without a name.
bool findSection(std::FILE *file, const char *section) {
    if (isSameName("", section)) {
        return true;
    }
    std::string line;
    while (readLine(file, line)) {
        const auto name = sectionName(line);
        if (name && isSameName(*name, section)) {
            return true;
        }
    }
    return false;
}

// Stores the value of `key` if it stands in front of the next heading.
void readKey(std::FILE *file, const char *key, std::string &value) {
    std::string line;
    while (readLine(file, line)) {
        if (sectionName(line)) {
            return;
        }
        const std::string_view text = line;
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos && isSameName(text.substr(0, equals), key)) {
            value = withoutQuotes(trimmed(text.substr(equals + 1)));
            return;
        }
    }
}

} // namespace

namespace trunnion {

void SetWindowsDirectory(const char *path) {
    windowsFolder().set(path);
}

void SetDocumentsDirectory(const char *path) {
    documentsFolder().set(path);
}

namespace detail {

UtcTime systemTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts{};
    gmtime_r(&now.tv_sec, &parts);
    return {parts.tm_year + 1900,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec,
            static_cast<int>(now.tv_nsec / 1000000)};
}

std::string windowsDirectory() {
    return windowsFolder().get().value_or("C:\\etc");
}

std::string documentsDirectory() {
    if (const auto chosen = documentsFolder().get()) {
        return *chosen;
    }
    std::string home = homeDirectory();
    std::replace(home.begin(), home.end(), '/', '\\');
    home.erase(home.find_last_not_of('\\') + 1);
    return "C:" + home + "\\Documents";
}

std::string iniValue(const char *section, const char *key, const char *fallback, const char *file) {
    const bool isBare = std::strpbrk(file, "\\/:") == nullptr;
    const std::string path = isBare ? windowsDirectory() + '\\' + file : file;
    std::string value = fallback;
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> ini(openFile(path.c_str(), "rb"),
                                                               &std::fclose);
    if (ini && findSection(ini.get(), section)) {
        readKey(ini.get(), key, value);
    }
    constexpr std::size_t longestValue = 259;
    value.resize(std::min(value.size(), longestValue));
    return value;
}

} // namespace detail
} // namespace trunnion
