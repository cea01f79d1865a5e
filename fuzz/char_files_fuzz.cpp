// Any bytes as the content of a CharArr: read from a file, edited as a text, and read as a message.
// An input is a script of operations and the file.
#include <algorithm>
#include <memory>

#include "fuzz/support/lists.h"
#include "fuzz/support/script.h"

namespace {

using namespace fuzz;

std::string contentOf(const CharArr &text) {
    return {text.GetContentConstPtrM(), static_cast<std::size_t>(text.GetBoundM())};
}

// All lines of a text, as a host walks them. `out` has exactly the room that the line needs.
void walkLines(const CharArr &text) {
    const std::string content = contentOf(text);
    std::string lines;
    while (static_cast<int>(lines.size()) < text.GetBoundM()) {
        const int start = static_cast<int>(lines.size());
        const std::size_t end = content.find_first_of("\r\n", lines.size());
        const std::size_t length = (end == std::string::npos ? content.size() : end) - lines.size();
        const auto out = std::make_unique<char[]>(length + 3);
        require(text.GetOneLineM(start, 0, out.get(), 1) == 1, "a line starts in the content");
        std::string line = out.get();
        if (line.size() < length || line.empty()) {
            return; // a zero byte: the copied text ends there
        }
        lines += line;
    }
    require(lines == content, "the lines are the text");
}

void takeMessage(const CharArr &content, Script &script) {
    const int bound = content.GetBoundM();
    for (int calls = 0, at = 0; calls < 20 && !script.isAtEnd(); ++calls) {
        const int from = script.oneIn(4) ? script.slot(bound) : at;
        char byte = 0;
        short two = 0;
        int four = 0;
        float real = 0;
        double wide = 0;
        char block[16];
        CString text;
        CharArr other;
        switch (script.integer(0, 7)) {
        case 0:
            at = content.GetContentM(&byte, from);
            break;
        case 1:
            at = content.GetContentM(&two, from);
            break;
        case 2:
            at = content.GetContentM(&four, from);
            break;
        case 3:
            at = content.GetContentM(&real, from);
            break;
        case 4:
            at = content.GetContentM(&wide, from);
            break;
        case 5:
            at = content.GetContentM(text, from);
            break;
        case 6:
            at = content.GetContentvcM(block, sizeof block, from);
            break;
        default:
            at = content.GetContentvcM(other, from, script.integer(0, 1));
            requireCounts(other);
        }
        require(at == -1 || (at > from && at <= bound), "an offset in the content, or -1");
        at = std::max(at, 0);
    }
}

void edit(CharArr &text, Script &script) {
    const std::string inserted = script.text(9);
    const int place = script.slot(text.GetBoundM());
    const int count = script.integer(-1, 12);
    int found = 0;
    switch (script.integer(0, 14)) {
    case 0:
        text.AddProgNoM(script.take<int>());
        break;
    case 1:
        text.TrimL();
        break;
    case 2:
        text.TrimR();
        break;
    case 3:
        text.InsertStringM(place, inserted.data(), static_cast<int>(inserted.size()));
        break;
    case 4:
        require(test::thrown([&] { text.DelStringM(place, count); }) == 0 || count < 0, "removes");
        break;
    case 5:
        text.AddContentvcM(inserted.data(), static_cast<int>(inserted.size()), count);
        break;
    case 6:
        text.InsertContentM(count, place);
        break;
    case 7:
        text.PurgeDeletedItemM();
        break;
    case 8:
        text.InsertItemM('x', std::min(place, text.GetBoundM() + 9));
        break;
    case 9:
        text.DelItemM(place);
        break;
    case 10:
        text.ImportArrM(CharArr(text));
        break;
    case 11:
        text.SetNewStrM(inserted.c_str());
        break;
    case 12:
        text.CopyM(CharArr(text));
        break;
    case 13:
        require(text.FindItemM('G', &found, place) == 0 || (found >= 0 && found < text.GetBoundM()),
                "a place in the content");
        break;
    default:
        text.DelContentM();
    }
    require(text.GetBoundM() >= 0 && text.GetBoundM() <= text.GetLengthM(), "bound in capacity");
}

void useAsString(const CharArr &text) {
    const std::string content = contentOf(text);
    const auto out = std::make_unique<char[]>(static_cast<std::size_t>(text.GetLengthM()) + 1);
    require(text.GetCurStrM(out.get()) == 1, "a string of its own length");
    require(std::equal(content.begin(), content.end(), out.get()), "the content");
    TqStringCL string(TAG_AVAILABLE);
    string.SetValueM(static_cast<int>(content.size()), content.data());
    require(string.CompareStrM(static_cast<int>(content.size()), content.data()) == 0, "equal");
    if (string.GetLengthM() > 0) {
        const auto copy = std::make_unique<char[]>(content.size() + 1);
        require(string.GetStringM(copy.get()) == 1, "a string");
    }
}

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    const std::string calls = script.take(script.take());
    const std::string file = script.rest();
    Script callScript(calls);
    const int offset = callScript.integer(-2, 9);
    CharArr text;
    if (text.ReadFileM(fileOf(file).c_str(), offset) == 0) {
        require(offset < 0, "the file is there");
        return;
    }
    require(contentOf(text).substr(static_cast<std::size_t>(offset)) == file, "the file's bytes");
    walkLines(text);
    takeMessage(text, callScript);
    while (!callScript.isAtEnd() && text.GetBoundM() < 100000) {
        edit(text, callScript);
        useAsString(text);
    }
    const std::string path = scratch().path("output");
    text.SaveFileM(path.c_str());
    require(test::readBytes(path) == contentOf(text), "a saved text is the content");
}

std::vector<std::string> fuzz::seeds() {
    CharArr message;
    message.AddContentM(5);
    message.AddContentM(2.5);
    message.AddContentvcM("block", 5, 1);
    const std::string calls = "\2\1\2\1\4\1\5\1\6\1\7";
    std::vector<std::string> all;
    for (const std::string &text :
         {std::string("O7777 (X)\r\nG0 X1\nM30  "), std::string("  G1\r\n"), contentOf(message)}) {
        all.push_back(static_cast<char>(calls.size()) + calls);
        all.back() += text;
    }
    return all;
}
