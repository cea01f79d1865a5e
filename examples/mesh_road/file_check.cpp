#include "file_check.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";

// Takes the next word off `text`; empty at its end.
std::string_view takeWord(std::string_view &text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(blanks));
    text.remove_prefix(word.size());
    return word;
}

// Takes the next line off `text`.
std::string_view takeLine(std::string_view &text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

std::optional<double> numberIn(std::string_view word) {
    word.remove_prefix(word.starts_with('+') ? 1 : 0);
    double value = 0.0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size()) {
        return std::nullopt;
    }
    return value;
}

// True if `line` goes on with at least `count` numbers.
bool hasNumbers(std::string_view line, int count) {
    while (count > 0 && numberIn(takeWord(line))) {
        --count;
    }
    return count == 0;
}

[[noreturn]] void throwShort(const std::string &why) {
    throw ImportError("cut short: " + why);
}

[[noreturn]] void throwAtLine(std::size_t number) {
    throw ImportError("cut short or damaged: line " + std::to_string(number) + " is not whole");
}

// STL

// "solid", then facets of a normal and three vertices, then "endsolid".
std::size_t checkTextStl(std::string_view bytes) {
    std::size_t faces = 0, vertices = 0, number = 0;
    std::string_view last;
    while (!bytes.empty()) {
        std::string_view line = takeLine(bytes);
        ++number;
        const std::string_view word = takeWord(line);
        last = word.empty() ? last : word;
        faces += word == "facet" ? 1 : 0;
        vertices += word == "vertex" ? 1 : 0;
        if (word == "vertex" && !hasNumbers(line, 3)) {
            throwAtLine(number);
        }
    }
    if (last != "endsolid") {
        throwShort("the text STL does not end with \"endsolid\"");
    }
    if (vertices != 3 * faces) {
        throw ImportError("damaged: " + std::to_string(faces) + " facets with " +
                          std::to_string(vertices) + " vertices");
    }
    return faces;
}

std::size_t checkBinaryStl(std::string_view bytes) {
    constexpr std::size_t headBytes = 84, faceBytes = 50;
    if (bytes.size() < headBytes) {
        throwShort(std::to_string(bytes.size()) + " bytes are not even the head of an STL file");
    }
    std::uint32_t faces = 0;
    std::memcpy(&faces, bytes.data() + headBytes - sizeof faces, sizeof faces);
    const std::size_t present = (bytes.size() - headBytes) / faceBytes;
    if (present < faces) {
        throwShort("the file announces " + std::to_string(faces) + " triangles and holds " +
                   std::to_string(present));
    }
    if (bytes.size() != headBytes + faceBytes * faces) {
        throw ImportError("damaged: longer than the triangles that the file announces");
    }
    return faces;
}

// PLY: a head of lines that describes the elements, then their values, as text or binary.

struct Property {
    std::size_t bytes;      // of the value, or of each item of a list
    std::size_t countBytes; // of the count in front of a list; 0 if it is no list
    std::string_view name;
};

struct Element {
    std::string_view name;
    std::size_t count;
    std::vector<Property> properties;
};

enum class PlyFormat { text, littleEndian, bigEndian };

struct PlyHead {
    PlyFormat format;
    std::vector<Element> elements;
};

std::size_t plyTypeBytes(std::string_view type) {
    struct Type {
        std::string_view name;
        std::size_t bytes;
    };
    constexpr Type types[] = {{"char", 1},  {"uchar", 1},   {"int8", 1},   {"uint8", 1},
                              {"short", 2}, {"ushort", 2},  {"int16", 2},  {"uint16", 2},
                              {"int", 4},   {"uint", 4},    {"int32", 4},  {"uint32", 4},
                              {"float", 4}, {"float32", 4}, {"double", 8}, {"float64", 8}};
    for (const Type &known : types) {
        if (known.name == type) {
            return known.bytes;
        }
    }
    throw ImportError("no mesh: a type in the PLY head is unknown");
}

PlyFormat plyFormat(std::string_view name) {
    if (name == "ascii") {
        return PlyFormat::text;
    }
    if (name == "binary_little_endian") {
        return PlyFormat::littleEndian;
    }
    if (name == "binary_big_endian") {
        return PlyFormat::bigEndian;
    }
    throw ImportError("no mesh: the format in the PLY head is unknown");
}

std::size_t plyCount(std::string_view word) {
    std::uint32_t count = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), count);
    if (error != std::errc() || end != word.data() + word.size()) {
        throw ImportError("no mesh: a count in the PLY head is no number");
    }
    return count;
}

Property plyProperty(std::string_view line) {
    const std::string_view type = takeWord(line);
    if (type != "list") {
        return {plyTypeBytes(type), 0, takeWord(line)};
    }
    const std::size_t countBytes = plyTypeBytes(takeWord(line));
    const std::size_t itemBytes = plyTypeBytes(takeWord(line));
    return {itemBytes, countBytes, takeWord(line)};
}

// Takes the head off `bytes`.
PlyHead takePlyHead(std::string_view &bytes) {
    std::string_view first = takeLine(bytes);
    if (takeWord(first) != "ply") {
        throw ImportError("no mesh: a PLY file begins with \"ply\"");
    }
    PlyHead head{PlyFormat::text, {}};
    while (!bytes.empty()) {
        std::string_view line = takeLine(bytes);
        const std::string_view keyword = takeWord(line);
        if (keyword == "end_header") {
            return head;
        }
        if (keyword == "format") {
            head.format = plyFormat(takeWord(line));
        } else if (keyword == "element") {
            const std::string_view name = takeWord(line);
            head.elements.push_back({name, plyCount(takeWord(line)), {}});
        } else if (keyword == "property" && !head.elements.empty()) {
            head.elements.back().properties.push_back(plyProperty(line));
        }
    }
    throwShort("the PLY head does not end");
}

// Takes values off the body of a PLY file. Throws where it ends too early.
class PlyBody {
public:
    PlyBody(std::string_view bytes, PlyFormat bodyFormat) : rest(bytes), format(bodyFormat) {}

    void passElement(const Element &element) {
        for (std::size_t i = 0; i < element.count && !element.properties.empty(); ++i) {
            for (const Property &property : element.properties) {
                passValues(property.countBytes > 0 ? takeCount(property) : 1, property);
            }
        }
    }

private:
    void passValues(std::size_t count, const Property &property) {
        if (format != PlyFormat::text) {
            take(count * property.bytes);
            return;
        }
        for (std::size_t i = 0; i < count; ++i) {
            takeNumber();
        }
    }

    std::size_t takeCount(const Property &property) {
        if (format == PlyFormat::text) {
            const double count = takeNumber();
            if (count < 0 || count > static_cast<double>(rest.size())) {
                throwShort("the PLY file ends inside a list");
            }
            return static_cast<std::size_t>(count);
        }
        std::string digits(take(property.countBytes));
        if ((format == PlyFormat::bigEndian) != (std::endian::native == std::endian::big)) {
            std::reverse(digits.begin(), digits.end());
        }
        std::uint64_t count = 0;
        std::memcpy(&count, digits.data(), digits.size());
        return count;
    }

    double takeNumber() {
        const std::string_view word = takeWord(rest);
        if (word.empty()) {
            throwShort("the PLY file holds fewer values than it announces");
        }
        const std::optional<double> number = numberIn(word);
        if (!number) {
            throw ImportError("damaged: a value of the PLY file is no number");
        }
        return *number;
    }

    std::string_view take(std::size_t count) {
        if (count > rest.size()) {
            throwShort("the PLY file holds fewer bytes than it announces");
        }
        const std::string_view taken = rest.substr(0, count);
        rest.remove_prefix(count);
        return taken;
    }

    std::string_view rest;
    PlyFormat format;
};

} // namespace

// A binary file may begin with "solid" too: only a text has no zero byte in what would be the head.
std::size_t checkStl(std::string_view bytes) {
    const std::string_view head = bytes.substr(0, 84);
    const bool isText = head.starts_with("solid") && head.find('\0') == std::string_view::npos;
    return isText ? checkTextStl(bytes) : checkBinaryStl(bytes);
}

std::size_t checkObj(std::string_view bytes) {
    std::size_t faces = 0;
    for (std::size_t number = 1; !bytes.empty(); ++number) {
        std::string_view line = takeLine(bytes);
        const std::string_view word = takeWord(line);
        if (word == "v" && !hasNumbers(line, 3)) {
            throwAtLine(number);
        }
        if (word == "f") {
            ++faces;
            takeWord(line);
            takeWord(line);
            if (takeWord(line).empty()) {
                throwAtLine(number);
            }
        }
    }
    return faces;
}

std::size_t checkPly(std::string_view bytes) {
    const PlyHead head = takePlyHead(bytes);
    PlyBody body(bytes, head.format);
    std::size_t faces = 0;
    for (const Element &element : head.elements) {
        body.passElement(element);
        faces += element.name == "face" ? element.count : 0;
    }
    return faces;
}
