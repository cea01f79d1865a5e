// The flat interface, file versions and the log. An input is a script of calls and the values of a
// file; the calls go on after a failure, as those of a Basic program do.
#include "trunnion/persistence/basic_api.h"

#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/support/lists.h"
#include "fuzz/support/script.h"

namespace {

using namespace fuzz;

char readMode[] = "rb";
char writeMode[] = "wb";

void requireTruth(int result) {
    require(result == 0 || result == 1, "1 or 0");
}

void readOne(Script &script) {
    int wide = 77;
    short narrow = 77;
    float real = 77;
    switch (script.integer(0, 5)) {
    case 0:
        require(InputDVB(&wide) == 1 || wide == 77, "untouched on failure");
        break;
    case 1:
        require(InputShortDVB(&narrow) == 1 || narrow == 77, "untouched on failure");
        break;
    case 2: {
        const int code = test::thrown([&] { requireTruth(InputFloatVB(&real)); });
        require(code == 0 || code == 107, "a known code");
        break;
    }
    case 3:
    case 4: {
        const int size = script.integer(-1, 30);
        const std::unique_ptr<char[]> buffer(
            new char[static_cast<std::size_t>(size > 0 ? size : 0)]);
        requireTruth(InputSVB(buffer.get(), size));
        break;
    }
    default:
        requireTruth(GetVersionNumVB(&wide));
    }
}

void readFile(const std::string &bytes, Script script) {
    const std::string path = fileOf(bytes);
    requireTruth(OpenFileVB(path.c_str(), readMode));
    while (!script.isAtEnd()) {
        readOne(script);
    }
    require(CloseFileVB() == 1, "closes");
}

// Strings of the script come back, with blanks behind them.
void writeAndRead(Script script) {
    const std::string path = scratch().path("basic");
    std::vector<std::string> texts;
    require(OpenFileVB(path.c_str(), writeMode) == 1, "opens");
    do {
        texts.push_back(script.text(20));
        require(OutputSVB(texts.back().c_str(), -1) == 1, "writes");
        require(OutputShortDVB(static_cast<short>(texts.size() * 999)) == 1, "writes");
    } while (!script.isAtEnd());
    require(FinishSaveVB() == 1 && CloseFileVB() == 1, "saves");
    require(OpenFileVB(path.c_str(), readMode) == 1, "opens again");
    short number = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        char buffer[24];
        require(InputSVB(buffer, sizeof buffer) == 1, "reads");
        texts[i].resize(sizeof buffer, ' ');
        require(std::memcmp(buffer, texts[i].data(), sizeof buffer) == 0, "text and blanks");
        require(InputShortDVB(&number) == 1 && number == static_cast<short>((i + 1) * 999),
                "number");
    }
    require(InputShortDVB(&number) == 0 && CloseFileVB() == 1, "and no more");
}

void nameVersions(const std::string &name) {
    int number = 0;
    const int code = test::thrown([&] { number = slGetFileVersion(name.c_str()); });
    require(code == 111 || (code == 0 && number >= 10 && number <= 5002), "a number or 111");
    trunnion::SetMessageBoxHandler([](const char *text, unsigned int /*type*/) {
        require(std::strlen(text) < 260, "a message of at most 259 bytes");
        return 1;
    });
    require(slFileMessage(100 + static_cast<int>(name.size() % 50), name.c_str()) == 1, "shown");
    std::string text = name;
    slAssert(7, text.data(), 0);
    std::filesystem::remove(scratch().path("machine.log"));
}

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    const std::string calls = script.take(script.take());
    const std::string file = script.rest();
    readFile(file, Script(calls));
    if (!file.empty()) {
        readFile(fileWrittenBy(Form::compressed,
                               [&](TqIOCL &stream) {
                                   stream.OutputSM(file.data(), static_cast<int>(file.size()), 0);
                               }),
                 Script(calls));
    }
    writeAndRead(Script(calls));
    nameVersions(Script(file).restAsText());
}

std::vector<std::string> fuzz::seeds() {
    const std::string calls = std::string("\0\1\2\3\x1f\5", 6);
    const std::string values("\1\0\0\0\2\0\0\0\0\0\0@\5\0\0\0hello", 21);
    const std::string head = static_cast<char>(calls.size()) + calls;
    return {head + values,
            head + fileWrittenBy(Form::compressed,
                                 [&](TqIOCL &stream) { stream.OutputSM(values.data(), 21, 0); }),
            head + "ozk4.008"};
}
