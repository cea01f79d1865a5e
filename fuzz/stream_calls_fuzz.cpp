// The typed operations of the streams in any order. An input is a script of calls and a file.
//
// Two readings of the same values give the same results up to the first failure: those of a
// compressed stream and of a binary one, and those of a text at the start of a file and behind so
// long a line that the file is fetched in other pieces. And what is written by a script is read
// back by it, in all three forms.
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>

#include "fuzz/support/lists.h"
#include "fuzz/support/script.h"

namespace {

using namespace fuzz;

constexpr std::size_t roomForText = 1 << 16;

union Values {
    char bytes[16];
    unsigned char pixel[4];
    int ints[4];
    float reals[4];
};

// A typed operation in both directions, and the bytes of its values.
struct Operation {
    std::size_t size;
    void (*write)(TqIOCL &stream, const Values &values);
    void (*read)(TqIOCL &stream, Values &values);
};

const Operation operations[] = {
    {3, [](auto &s, auto &v) { s.OutputCM(v.bytes, v.bytes + 1, nullptr, v.bytes + 2); },
     [](auto &s, auto &v) { s.InputCM(v.bytes, v.bytes + 1, nullptr, v.bytes + 2); }},
    {8, [](auto &s, auto &v) { s.OutputDM(v.ints, nullptr, v.ints + 1); },
     [](auto &s, auto &v) { s.InputDM(v.ints, nullptr, v.ints + 1); }},
    {4, [](auto &s, auto &v) { s.OutputDM(v.ints); },
     [](auto &s, auto &v) { s.InputDM(v.ints, "%d"); }},
    {8, [](auto &s, auto &v) { s.OutputInt2DM(v.ints); },
     [](auto &s, auto &v) { s.InputInt2DM(v.ints); }},
    {12, [](auto &s, auto &v) { s.OutputInt3DM(v.ints); },
     [](auto &s, auto &v) { s.InputInt3DM(v.ints); }},
    {16, [](auto &s, auto &v) { s.OutputInt4DM(v.ints); },
     [](auto &s, auto &v) { s.InputInt4DM(v.ints); }},
    {4, [](auto &s, auto &v) { s.OutputTexPixel4DM(v.pixel); },
     [](auto &s, auto &v) { s.InputTexPixel4DM(v.pixel); }},
    // From here on floats.
    {12, [](auto &s, auto &v) { s.OutputRM(v.reals, v.reals + 1, nullptr, v.reals + 2); },
     [](auto &s, auto &v) { s.InputRM(v.reals, v.reals + 1, nullptr, v.reals + 2); }},
    {8, [](auto &s, auto &v) { s.OutputPoint2DM(v.reals); },
     [](auto &s, auto &v) { s.InputPoint2DM(v.reals); }},
    {12, [](auto &s, auto &v) { s.OutputPoint3DM(v.reals); },
     [](auto &s, auto &v) { s.InputPoint3DM(v.reals); }},
    {16, [](auto &s, auto &v) { s.OutputPoint4DM(v.reals); },
     [](auto &s, auto &v) { s.InputPixel4DM(v.reals); }},
};
constexpr int firstOfFloats = 7;
constexpr int operationCount = std::size(operations);

// One of the readers, chosen by the script. What it stored, and its result where that tells more.
std::string readOne(TqIOCL &stream, Script &script) {
    static char text[roomForText];
    const int kind = script.integer(0, operationCount + 5);
    if (kind < operationCount) {
        Values values{};
        operations[kind].read(stream, values);
        return {values.bytes, sizeof values};
    }
    std::memset(text, 0, 64); // a run of raw bytes is not terminated
    switch (kind - operationCount) {
    case 0:
        stream.InputGetsM(text, script.integer(0, 40));
        return text;
    case 1:
        stream.InputSM(text, -1, 1);
        return text;
    case 2:
        stream.InputSM(text, script.integer(1, 40), script.integer(0, 1));
        return text;
    case 3:
        stream.SkipSomeLinesM(script.integer(-1, 3));
        return "skipped";
    case 4:
        return stream.SearchStrM(script.text(6).c_str()) == 1 ? "found" : "none";
    default:
        float reals[4] = {};
        stream.InputRsM(reals, script.integer(-1, 4));
        return {reinterpret_cast<const char *>(reals), sizeof reals};
    }
}

// Everything else that moves or configures a stream.
void disturb(TqIOCL &stream, Script &script) {
    switch (script.integer(0, 6)) {
    case 0:
        stream.SeekM(script.take<int>() >> script.integer(0, 31), script.integer(-1, 3));
        break;
    case 1:
        stream.RewindM();
        break;
    case 2:
        stream.SetAutoNewLineM(script.integer(0, 2));
        break;
    case 3:
        stream.SetSeparatorM(script.text(60).c_str());
        break;
    case 4:
        stream.InputSeparatorM();
        break;
    case 5:
        stream.FinishedReadM();
        break;
    default:
        TouchCurD().FmInputOzkFileM(&stream);
    }
    require(stream.TellM() >= 0, "a position in the file");
}

// Any calls on any file. A call that fails ends nothing: the stream stays open.
void readAnything(Form form, Script &script, const std::string &file) {
    const int code = codeOfReading(form, file, [&](TqIOCL &stream) {
        for (int calls = 0; calls < 40 && !script.isAtEnd(); ++calls) {
            const bool reads = !script.oneIn(4);
            const int failed = test::thrown([&] {
                reads ? static_cast<void>(readOne(stream, script)) : disturb(stream, script);
            });
            require(failed == 0 || failed == 107 || failed == 108 ||
                        (failed == 109 && form == Form::compressed),
                    "a known code");
            const int atEnd = form == Form::compressed ? 0 : stream.EofM();
            require(atEnd == 0 || atEnd == 1, "an end or none");
        }
    });
    require(code == 0 || (form == Form::compressed && (code == 107 || code == 109)), "opens");
}

// The results of the script's readers behind a number of lines, up to the first failure.
std::vector<std::string> results(Form form, const std::string &calls, const std::string &file,
                                 int linesBefore = 0) {
    Script script(calls);
    std::vector<std::string> all;
    const int code = codeOfReading(form, file, [&](TqIOCL &stream) {
        stream.SkipSomeLinesM(linesBefore);
        while (!script.isAtEnd()) {
            all.push_back(readOne(stream, script));
            all.push_back(std::to_string(stream.EofM()));
        }
    });
    all.push_back("code " + std::to_string(code));
    return all;
}

std::string packed(const std::string &bytes) {
    return fileWrittenBy(Form::compressed, [&](TqIOCL &stream) {
        stream.OutputSM(bytes.data(), static_cast<int>(bytes.size()), 0);
    });
}

// One call of a script that is written and read back.
struct Call {
    const Operation *operation;
    Values values{};

    explicit Call(Script &script) {
        const int kind = script.integer(0, operationCount - 1);
        operation = operations + kind;
        values = script.take<Values>();
        for (float &real : values.reals) {
            // The bits of what is no number are lost in text.
            real = kind >= firstOfFloats && std::isnan(real) ? 0.0F : real;
        }
    }
};

void requireRoundTrip(Form form, const std::string &input) {
    Script script(input);
    std::vector<Call> calls;
    while (!script.isAtEnd()) {
        calls.emplace_back(script);
    }
    if (calls.empty()) {
        return;
    }
    const std::string file = fileWrittenBy(form, [&](TqIOCL &stream) {
        for (const Call &call : calls) {
            call.operation->write(stream, call.values);
        }
    });
    const int code = codeOfReading(form, file, [&](TqIOCL &stream) {
        for (const Call &call : calls) {
            Values back{};
            call.operation->read(stream, back);
            require(std::memcmp(&back, &call.values, call.operation->size) == 0,
                    "values come back");
        }
        require(stream.EofM() == 1, "nothing else is in the file");
    });
    require(code == 0, "what was written can be read");
}

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    const int test = script.integer(0, 5);
    const Form form =
        std::array{Form::text, Form::binary, Form::compressed}[static_cast<std::size_t>(test % 3)];
    if (test >= 3) {
        requireRoundTrip(form, script.rest());
        return;
    }
    const std::string calls = script.take(script.take());
    const unsigned border = script.take();
    const std::string file = script.rest();
    Script callScript(calls);
    readAnything(form, callScript, file);
    if (form == Form::text) {
        // Files are fetched 4096 bytes at a time: the text comes to stand across such a border.
        const std::string line(4095 - border, 'x');
        require(results(form, calls, file) == results(form, calls, line + '\n' + file, 1),
                "a text is the same wherever it stands");
    } else if (!file.empty()) {
        require(results(Form::binary, calls, file) ==
                    results(Form::compressed, calls, packed(file)),
                "a compressed stream gives what a binary one does");
    }
}

std::vector<std::string> fuzz::seeds() {
    std::string calls;
    for (int kind = 0; kind < operationCount + 6; ++kind) {
        calls += "\1";
        calls += static_cast<char>(kind);
        calls += "\7\1";
    }
    const std::string head = static_cast<char>(calls.size()) + calls + '\x07';
    const std::string text = "1, 2, 3, 4, 5\n1e30, -2.5, inf, nan\nword\r\n\n31\n";
    const std::string binary = std::string("\5\0\0\0hello", 9) + std::string(120, '\1');
    std::vector<std::string> all = {'\0' + head + text, '\1' + head + binary,
                                    '\2' + head + packed(binary)};
    for (const char *form : {"\3", "\4", "\5"}) {
        std::string script = form;
        for (int kind = 0; kind < operationCount; ++kind) {
            script += static_cast<char>(kind);
            script += "0123456789abcdef";
        }
        all.push_back(script);
    }
    return all;
}
