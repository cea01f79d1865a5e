// Any bytes as an ini file: single values, and the search for the user's ini file.
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "fuzz/support/entry.h"
#include "fuzz/support/scratch.h"
#include "fuzz/support/script.h"
#include "trunnion/host/setup.h"
#include "trunnion/platform/settings.h"
#include "trunnion/platform/system.h"

namespace {

using namespace fuzz;
using trunnion::detail::iniValue;

// True for a version that makes a folder below the user's documents, and none elsewhere.
bool isHarmless(const std::string &version) {
    return !version.empty() && std::isalnum(static_cast<unsigned char>(version[0])) != 0 &&
           version.find_first_of("\\/:") == std::string::npos;
}

// The same file stands as the user's copy, so that the stamps agree and nothing is waited for.
void findUsersFile(const std::string &ini) {
    const std::string version = iniValue("System", "Version", "4.8", "Pallodin.ini");
    if (!isHarmless(version)) {
        return;
    }
    const std::string folder = scratch().path("Mervane/" + version);
    std::error_code refused;
    std::filesystem::create_directories(folder, refused);
    test::writeBytes(folder + "/Pallodin.ini", ini);
    if (refused || test::readBytes(folder + "/Pallodin.ini") != ini) {
        return;
    }
    const std::string expected = "E:\\Mervane\\" + version + "\\Pallodin.ini";
    for (const int size : {0, 1, 30, static_cast<int>(expected.size()), 260, 400}) {
        std::string out(static_cast<std::size_t>(size) + 1, '#');
        const int found = slGetInitFilePathS(out.data(), size);
        require(found == (static_cast<int>(expected.size()) < size ? 1 : 0), "found if it fits");
        require(found == 0 || out.starts_with(expected + '\0'), "documents, version and name");
        require(out.back() == '#', "nothing is stored behind the buffer");
    }
    std::filesystem::remove_all(scratch().path("Mervane"), refused);
}

} // namespace

void fuzz::run(const std::string &input) {
    trunnion::SetWindowsDirectory("E:\\");
    trunnion::SetDocumentsDirectory("E:\\");
    std::filesystem::current_path(scratch().path(""));
    Script script(input);
    const std::string section = script.text(8);
    const std::string key = script.text(8);
    const std::string ini = script.rest();
    const std::string path = fileOf(ini, "Pallodin.ini");
    const std::string value = iniValue(section.c_str(), key.c_str(), "(none)", path.c_str());
    require(value.size() <= 259, "a value of at most 259 bytes");
    require(value.find_first_of(std::string("\n\0", 2)) == std::string::npos, "one line of text");
    require(value == "(none)" || ini.find(value) != std::string::npos, "a value of the file");
    require(iniValue(section.c_str(), key.c_str(), "(none)", "Pallodin.ini") == value,
            "a bare name is one of the Windows directory");
    findUsersFile(ini);
}

std::vector<std::string> fuzz::seeds() {
    const std::string ini = "; x=y\r\n[System]\r\nVersion = \"5.1\"\r\n[AccessDb]\nInstallId=7\n";
    return {"\6System\7Version" + ini,
            "\x8"
            "AccessDb\x8InstallI" +
                ini,
            std::string("\0\0", 2) + ini};
}
