// The scanners of texts and numbers on any text, each in a buffer of just its own size.
#include "trunnion/host/text_scan.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <memory>

#include "fuzz/support/entry.h"
#include "fuzz/support/script.h"
#include "trunnion/host/detail/simple_scan.h"

namespace {

using namespace fuzz;

struct Text {
    std::unique_ptr<char[]> buffer;
    explicit Text(const std::string &text, std::size_t room = 0)
        : buffer(new char[text.size() + 1 + room]) {
        std::memcpy(buffer.get(), text.c_str(), text.size() + 1);
    }
    operator char *() const { return buffer.get(); }
};

void skip(const std::string &text, int start, char c) {
    const Text in(text);
    for (const bool spaces : {true, false}) {
        int position = start;
        require((spaces ? slSkipSpace(in, &position) : slSkipChar(in, &position, c)) == 1, "1");
        require(position >= start && position <= static_cast<int>(text.size()), "in the text");
    }
}

void parse(const std::string &text) {
    const Text in(text);
    for (const int length : {-1, 0, 1, static_cast<int>(text.size()), 51, 52}) {
        int value = 77;
        if (length <= static_cast<int>(text.size()) && slStrToInt(length, in, &value) == 0) {
            require(value == 77, "left alone");
        }
    }
    int integer = 77;
    double real = 77;
    float narrow = 77;
    require(slSimpleIntParse(in, integer) == 1 || integer == 77, "left alone");
    const int isReal = slSimpleFloatParse(in, real);
    require(slSimpleFloatParseF(in, narrow) == isReal, "float as double");
    require(isReal == 1 || narrow == 0, "0 on failure");
    for (const char *format : {"%d", "%u", "%ld", "%lu", "%sd", "%su"}) {
        int value = 77;
        require(trunnion::detail::slSimpleScanf(in, format, &value) == 1 || value == 77,
                "left alone");
    }
}

void cut(const std::string &text, int n) {
    const Text in(text);
    const bool isThere = n >= 1 && n <= static_cast<int>(text.size());
    const std::size_t length = isThere ? static_cast<std::size_t>(n) : 0;
    const Text out(std::string(length, '#'));
    require(slLeft(in, n, out) == (isThere ? 1 : 0), "cut if there is enough");
    require(!isThere || text.compare(0, length, out) == 0, "the first characters");
    require(slRight(in, n, out) == (isThere ? 1 : 0), "cut if there is enough");
    require(!isThere || text.compare(text.size() - length, length, out) == 0, "the last ones");
}

void insert(const std::string &text, const std::string &part, char seed, int spare) {
    const Text whole(text, part.size());
    require(slInsertStr(whole, part.c_str()) == whole && part + text == whole.buffer.get(),
            "part, then text");
    const int capacity = static_cast<int>(text.size()) + 1 + spare;
    const Text seeded(text, static_cast<std::size_t>(spare));
    const int all = slInsStrBySeed(seeded, capacity, part.c_str(), seed);
    std::string expected;
    for (const char c : text) {
        expected += c == seed && seed != '\0' ? c + part : std::string(1, c);
    }
    require(all == 0 || expected == seeded.buffer.get(), "behind every seed");
}

void format(float value, int digits) {
    char out[400]; // the sign, the integer part, the point and the digits
    const float rounded = slChangeRealToStr(out, value, digits);
    require(std::strchr(out, '.') != nullptr, "always a point");
    if (std::isfinite(value) && digits >= 0 && digits <= 4 && std::fabs(value) < 1e4F) {
        require(std::fabs(rounded - value) <= 0.51 * std::pow(10.0, -digits) + 1e-3, "rounded");
    }
}

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    const int n = script.slot(20);
    const char c = script.take<char>();
    const int spare = script.take();
    const float real = script.take<float>();
    const int digits = script.integer(-2, 200);
    const std::string part = script.text(6);
    const std::string text = script.restAsText();
    skip(text, 0, c);
    if (n >= 0 && n <= static_cast<int>(text.size())) {
        skip(text, n, c);
    }
    parse(text);
    cut(text, n);
    insert(text, part, c, spare);
    format(real, digits);
}

std::vector<std::string> fuzz::seeds() {
    std::vector<std::string> all;
    for (const char *text :
         {" 42 ", "-1.5e3-", "0x1p3", ", ,C1", "inf", "nan", "99999999999", "a;b;c"}) {
        all.push_back(std::string("\5;\x20\0\0\xc0?\1\3\1Y", 11) + text);
    }
    return all;
}
