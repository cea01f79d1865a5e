// Lists on streams: an input is the number of a class of lists and the bytes of a file.
//
// Whatever the bytes are, the list that comes of them keeps its rules, and what it writes is read
// back as the same list.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fuzz/support/entry.h"
#include "fuzz/support/scratch.h"
#include "tests/support/thrown.h"
#include "trunnion/trunnion.h"

namespace fuzz {

enum class Form { text, binary, compressed };

inline std::unique_ptr<TqIOCL> openStream(Form form, const std::string &path, bool writing) {
    std::unique_ptr<TqIOCL> stream =
        form == Form::compressed ? std::make_unique<TqCompressIOCL>() : std::make_unique<TqIOCL>();
    const std::string mode = std::string(writing ? "w" : "r") + (form == Form::text ? "" : "b");
    stream->OpenM(path.c_str(), mode.c_str());
    return stream;
}

inline void closeSaved(Form form, TqIOCL &stream) {
    if (form == Form::compressed) {
        static_cast<TqCompressIOCL &>(stream).FinishSaveM(1);
    }
    stream.CloseM();
}

// The bytes of a file into which `write` wrote.
template <class Write>
std::string fileWrittenBy(Form form, Write write) {
    const std::string path = scratch().path("output");
    const auto stream = openStream(form, path, true);
    write(*stream);
    closeSaved(form, *stream);
    return test::readBytes(path);
}

// The code that `read` throws on a file with these bytes, or 0.
template <class Read>
int codeOfReading(Form form, const std::string &bytes, Read read) {
    const std::string path = fileOf(bytes);
    return test::thrown([&] { read(*openStream(form, path, false)); });
}

template <class List>
concept ItemList = requires(const List &list) {
    list.GetItemPM(0)->IsAvailableM();
};

// The items that are live below the bound, as the list's own comment defines them.
template <class List>
int liveItems(const List &list) {
    int live = 0;
    for (int i = 0; i < list.GetBoundM(); ++i) {
        live += list.GetItemPM(i)->IsAvailableM() == TAG_AVAILABLE ? 1 : 0;
    }
    return live;
}

template <class List>
void requireCounts(const List &list) {
    require(list.GetBoundM() >= 0 && list.GetBoundM() <= list.GetLengthM(), "bound in capacity");
    require(list.GetLengthM() >= 4, "four slots at least");
    require(list.GetAvailableNumM() >= 0, "no negative count");
    if constexpr (ItemList<List>) {
        require(list.GetAvailableNumM() == liveItems(list), "live items are counted");
    }
}

template <class List>
std::string written(Form form, const List &list) {
    return fileWrittenBy(form, [&](TqIOCL &stream) { list.FmOutputOzkLstM(&stream, "LIST"); });
}

template <class List>
int readInto(List &list, Form form, const std::string &bytes) {
    return codeOfReading(form, bytes, [&](TqIOCL &stream) { list.FmInputOzkLstM(&stream); });
}

// A text may name slots far behind its end; writing all the empty ones teaches nothing.
constexpr int longestWrittenBack = 4096;

template <class List>
void readList(Form form, const std::string &file) {
    List list;
    const int code = readInto(list, form, file);
    // A compressed stream opens with its first block, and reports one that does not unpack.
    require(code == 0 || code == 107 || (code == 109 && form == Form::compressed), "a known code");
    requireCounts(list);
    if (list.GetBoundM() > longestWrittenBack) {
        return;
    }
    const std::string stored = written(form, list);
    List same;
    require(readInto(same, form, stored) == 0, "a written list can be read");
    requireCounts(same);
    require(written(form, same) == stored, "a list survives the file");
    if (code == 0) {
        require(readInto(list, form, file) == 0, "a file can be read again");
        requireCounts(list);
        require(written(form, list) == stored, "reading again changes nothing");
    }
}

// Calls `visit.operator()<List>()` for the class of that number.
template <class Visit>
void forListClass(unsigned number, Visit visit) {
    const auto oneOf = [&]<class... Lists>() {
        unsigned i = number % sizeof...(Lists);
        ((i-- == 0 ? visit.template operator()<Lists>() : void()), ...);
    };
    oneOf.template operator()<IntArr, RealArr, CharArr, Int2DArr, Int3DArr, Int4DArr, Point2DArr,
                              Point3DArr, NodeArr, TriangleArr, QuadArr, TqStringArr>();
}
constexpr unsigned listClasses = 12;

inline void runOnList(Form form, const std::string &input) {
    if (!input.empty()) {
        forListClass(static_cast<unsigned char>(input[0]),
                     [&]<class List>() { readList<List>(form, input.substr(1)); });
    }
}

// A list of every class with six slots, of which the last but one is deleted.
inline std::vector<std::string> listSeeds(Form form) {
    std::vector<std::string> all;
    for (unsigned number = 0; number < listClasses; ++number) {
        forListClass(number, [&]<class List>() {
            const int counts[2] = {6, 6};
            const std::size_t countBytes = ItemList<List> ? sizeof(int) : sizeof counts;
            std::string file(reinterpret_cast<const char *>(counts), countBytes);
            List list;
            readInto(list, Form::binary, file.append(300, '\x1f'));
            list.DelItemM(4);
            all.push_back(static_cast<char>(number) + written(form, list));
        });
    }
    return all;
}

} // namespace fuzz
