// Paths: the functions on texts with buffers of exactly the size that they are promised, and those
// that look for files or make them below a drive of the program.
#include "trunnion/host/paths.h"

#include <cstring>
#include <filesystem>
#include <memory>

#include "fuzz/support/entry.h"
#include "fuzz/support/scratch.h"
#include "fuzz/support/script.h"

namespace {

using namespace fuzz;

constexpr std::size_t pathRoom = 260;

// A path buffer on the heap; a text that does not fit one is none.
struct Buffer {
    std::unique_ptr<char[]> chars = std::make_unique<char[]>(pathRoom);
    explicit Buffer(const std::string &text = "") {
        std::memcpy(chars.get(), text.c_str(), text.size() < pathRoom ? text.size() + 1 : 1);
    }
    operator char *() const { return chars.get(); }
    std::string text() const { return chars.get(); }
};

void takeApart(const std::string &full, int level) {
    const Buffer path;
    const Buffer name;
    const Buffer out;
    slGetPathAndName(full.c_str(), path, name);
    require(full.size() >= pathRoom || path.text() + name.text() == full, "path and name");
    slGetFileExtension(full.c_str(), out);
    require(full.ends_with(out.text()), "an extension stands at the end");
    slGetFileMainName(full.c_str(), out);
    require(full.size() >= pathRoom || name.text().starts_with(out.text()),
            "a main name begins the name");
    slGetMipMapFileName(full.c_str(), out, level);
    if (full.size() < pathRoom) {
        // Input and output may be one buffer.
        const Buffer same(full);
        slGetPathAndName(same, same, nullptr);
        require(same.text() == path.text(), "in place");
    }
}

void combine(const std::string &first, const std::string &second) {
    const Buffer path(first);
    const std::string before = path.text();
    const int done = slCombFileName(path, second.c_str());
    require(done == 1 || path.text() == before, "kept where it does not fit");
    const Buffer name(second);
    slCatFileNameWithPath(name, first.c_str());
    require(name.text().size() < pathRoom, "within the buffer");
}

void look(const std::string &path, int size) {
    const bool exists = slIsExistentPath(path.c_str());
    const int found = slFindSingleFile(path.c_str());
    require(found == 0 || found == 1, "1 or 0");
    require(!exists || found == 1 || path.size() >= pathRoom || path.empty() || path.back() == '\\',
            "what exists is found");
    const auto out = std::make_unique<char[]>(static_cast<std::size_t>(size > 0 ? size : 0));
    const int all = slFindSubFoldersVB(path.c_str(), out.get(), size);
    require(all == 1 || all == -1, "all or not");
}

// Nothing outside the drive is made or removed: names that lead upward are left out.
void makeAndRemove(const std::string &name) {
    const std::string path = "E:\\made\\" + name;
    if (name.find("..") != std::string::npos || name.find('\0') != std::string::npos) {
        return;
    }
    const int made = slCreateDirRecursively(path.c_str());
    // Nothing is found by a path that ends in a separator; dots and blanks behind it do not count.
    const char last = path[path.find_last_not_of(". ")];
    require(made == 0 || slFindSingleFile(path.c_str()) == 1 || last == '\\' || last == '/',
            "what was made is there");
    slCopyFile("E:\\file.txt", path.c_str());
    slRemoveDirRecursively("E:\\made");
    require(!slIsExistentPath("E:\\made"), "all of it is removed");
}

void prepare() {
    std::filesystem::create_directories(scratch().path("Folder/sub one"));
    std::filesystem::create_directories(scratch().path("Folder/two"));
    fileOf("text", "file.txt");
    fileOf("text", "Folder/A.B.C");
}

} // namespace

void fuzz::run(const std::string &input) {
    static const bool once = (prepare(), true);
    static_cast<void>(once);
    Script script(input);
    const int level = script.oneIn(5) ? script.take<int>() : script.integer(0, 12);
    const int size = script.integer(-2, 40);
    const std::string first = script.text(200);
    const std::string second = script.restAsText();
    takeApart(second, level);
    combine(first, second);
    look("E:\\" + second, size);
    look("E:\\Folder\\" + first, size);
    makeAndRemove(first);
}

std::vector<std::string> fuzz::seeds() {
    std::vector<std::string> all;
    for (const char *path :
         {"C:\\tex\\wood.bmp", "a.b\\c", "*.*", "Folder", "F?lder\\*", "folder\\a.b.c"}) {
        all.push_back(std::string("\2\5\x1e\4a\\b", 7) + path);
        all.push_back(std::string("\2\5\x1e\4a\\b", 7) + path + std::string(260, 'x'));
    }
    return all;
}
