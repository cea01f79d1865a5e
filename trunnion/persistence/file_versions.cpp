#include "trunnion/persistence/file_versions.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

#include "trunnion/platform/files.h"
#include "trunnion/platform/framework.h"
#include "trunnion/platform/settings.h"

namespace {

constexpr int codeUnknownVersion = 111;

struct Version {
    const char *name;
    int number;
};

constexpr Version versions[] = {
    {"ozk1.0", 10},     {"ozk1.1", 11},     {"ozk1.2", 12},     {"ozk1.3", 13},
    {"ozk1.4", 14},     {"ozk3.0", 30},     {"ozk3.1", 31},     {"ozk3.2", 32},
    {"ozk3.3", 33},     {"ozk3.4", 34},     {"ozk3.5", 35},     {"ozk3.6", 36},
    {"ozk3.7", 37},     {"ozk3.8", 38},     {"ozk3.9", 39},     {"ozk4.0", 40},
    {"ozk4.1", 41},     {"ozk4.2", 42},     {"ozk4.3", 43},     {"ozk4.4", 44},
    {"ozk4.5", 45},     {"ozk4.6", 46},     {"ozk4.7", 47},     {"ozk4.008", 4008},
    {"ozk4.010", 4010}, {"ozk4.011", 4011}, {"ozk4.012", 4012}, {"ozk4.013", 4013},
    {"ozk4.014", 4014}, {"ozk5.001", 5001}, {"ozk5.002", 5002}, {"MAC1.00", 100},
    {"MAC1.01", 101},   {"MAC1.02", 102},
};

struct Message {
    int code;
    const char *text; // GBK
};

constexpr Message messages[] = {
    {107, "\xCE\xC4\xBC\xFE\xB6\xC1\xC8\xA1\xCA\xA7\xB0\xDC"},                 // file read failed
    {108, "\xCE\xC4\xBC\xFE\xB1\xA3\xB4\xE6\xCA\xA7\xB0\xDC"},                 // file save failed
    {109, "\xCE\xC4\xBC\xFE\xB4\xF2\xBF\xAA\xCA\xA7\xB0\xDC"},                 // file open failed
    {110, "\xCE\xC4\xBC\xFE\xC0\xE0\xD0\xCD\xB2\xBB\xB6\xD4"},                 // wrong file type
    {111, "\xCE\xC4\xBC\xFE\xB0\xE6\xB1\xBE\xB2\xBB\xB6\xD4"},                 // wrong file version
    {112, "\xCE\xC6\xC0\xED\xCE\xC4\xBC\xFE\xB4\xF2\xBF\xAA\xCA\xA7\xB0\xDC"}, // texture file open
                                                                               // failed
    {113,
     "\xCE\xC6\xC0\xED\xCE\xC4\xBC\xFE\xC0\xE0\xD0\xCD\xB2\xBB\xB6\xD4"}, // wrong texture file type
    {114, "\xCE\xC6\xC0\xED\xCE\xC4\xBC\xFE\xB0\xE6\xB1\xBE\xB2\xBB\xB6\xD4"}, // wrong texture file
                                                                               // version
    {142, "\xCA\xFD\xBE\xDD\xB4\xED\xCE\xF3"},                                 // data error
};

constexpr const char *unknownError = "\xCE\xB4\xD6\xAA\xB4\xED\xCE\xF3";

constexpr std::size_t longestText = 259;

} // namespace

int slGetFileVersion(const char *name) {
    const auto *found =
        std::find_if(std::begin(versions), std::end(versions), [name](const Version &version) {
            return std::strcmp(version.name, name) == 0;
        });
    return found != std::end(versions) ? found->number : throw codeUnknownVersion;
}

int slFileMessage(int code, const char *fileName) {
    const auto *found =
        std::find_if(std::begin(messages), std::end(messages),
                     [code](const Message &message) { return message.code == code; });
    std::string text = found != std::end(messages) ? found->text : unknownError;
    if (fileName != nullptr) {
        text += ": ";
        text += fileName;
    }
    text.resize(std::min(text.size(), longestText));
    AfxMessageBox(text.c_str(), 0, 0);
    return 1;
}

void slAssert(int number, char *text, int condition) {
    std::FILE *log = condition == 0 ? trunnion::detail::openFile("E:\\machine.log", "a") : nullptr;
    if (log == nullptr) {
        return;
    }
    const trunnion::detail::UtcTime now = trunnion::detail::systemTime();
    std::fprintf(log, "%d%d%d  %d:%d\n", now.year, now.month, now.day, now.hour, now.minute);
    std::fprintf(log, "%d   %s\n", number, text);
    std::fclose(log);
}
