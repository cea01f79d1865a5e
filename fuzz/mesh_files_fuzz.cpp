// Mesh lists in text files. An input is the kind of list, whether one is there before, and a file.
#include <algorithm>
#include <cstdio>

#include "fuzz/support/lists.h"

namespace {

using namespace fuzz;

template <class List>
struct Calls;

template <>
struct Calls<NodeArr> {
    static void read(NodeArr &list, std::FILE *file) { list.FmReadNodeLstM(file); }
    // As a host writes a list of nodes, which the library does not.
    static void write(NodeArr &list, std::FILE *file) {
        slFprintfD(file, "%10d,  NODE_LIST_BEGIN\n", list.GetBoundM());
        for (int i = 0; i < list.GetBoundM(); ++i) {
            slFprintfD(file, "%10d,  INDEX_OF_NODE_LIST\n", i);
            NodeCL(*list.GetItemPM(i)).FmWriteOzkFileM(file);
        }
        slFprintfS(file, "%s\n", "NODE_LIST_END");
    }
    static void exportLive(const NodeArr & /*list*/, std::FILE * /*file*/) {}
};

template <>
struct Calls<TriangleArr> {
    static void read(TriangleArr &list, std::FILE *file) { list.FmReadTriangleLstM(file); }
    static void write(TriangleArr &list, std::FILE *file) { list.FmWriteTriangleLstToFileM(file); }
    static void exportLive(const TriangleArr &list, std::FILE *file) {
        const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        list.ExportTriangleLstDBFileM(file, identity);
    }
};

template <>
struct Calls<QuadArr> {
    static void read(QuadArr &list, std::FILE *file) { list.FmReadQuadLstM(file); }
    static void write(QuadArr &list, std::FILE *file) { list.FmWriteQuadLstToFileM(file); }
    static void exportLive(const QuadArr &list, std::FILE *file) {
        list.ExportQuadLstDBFileM(file);
    }
};

template <class List>
void read(List &list, const std::string &bytes) {
    Calls<List>::read(list, openAs(fileOf(bytes), "rb").get());
}

template <class List>
std::string writtenText(List &list) {
    const std::string path = scratch().path("output");
    Calls<List>::write(list, openAs(path, "wb").get());
    return test::readBytes(path);
}

template <class List>
void readList(bool twice, const std::string &file) {
    List list;
    read(list, file);
    // Nodes that are not live do not count for the bound: live ones may then stand behind it. So
    // may facets whose slots the file numbers beyond its count.
    if constexpr (std::is_same_v<List, NodeArr>) {
        require(list.GetBoundM() == list.GetAvailableNumM(), "nodes are counted as they are read");
    } else {
        const auto *slots = list.getCurrentItemPrtConstM();
        const auto isLive = [](const auto &item) { return item.IsAvailableM() == TAG_AVAILABLE; };
        require(std::count_if(slots, slots + list.GetLengthM(), isLive) == list.GetAvailableNumM(),
                "facets are counted as they are read");
        List same;
        const std::string stored = writtenText(list);
        read(same, stored);
        requireCounts(same);
        require(writtenText(same) == stored, "a list survives the file");
    }
    require(list.GetBoundM() >= 0 && list.GetBoundM() <= list.GetLengthM(), "bound in capacity");
    // A million times the bytes of the file is what a count out of nothing would come to.
    require(list.GetLengthM() <= 8 + 2 * static_cast<int>(file.size()), "room as the file has it");
    Calls<List>::exportLive(list, openAs(scratch().path("output"), "wb").get());
    if (twice) {
        read(list, file);
        require(list.GetBoundM() >= 0 && list.GetBoundM() <= list.GetLengthM(),
                "still in capacity");
        writtenText(list);
    }
}

template <class List>
void runOn(const std::string &input) {
    readList<List>((input[0] & 8) != 0, input.substr(1));
}

template <class List>
std::string seed(char number) {
    List list;
    const int count = 5;
    const std::string head(reinterpret_cast<const char *>(&count), sizeof count);
    readInto(list, Form::binary, head + std::string(300, '\x1f'));
    list.DelItemM(2);
    return number + writtenText(list);
}

} // namespace

void fuzz::run(const std::string &input) {
    if (input.empty()) {
        return;
    }
    switch ((input[0] & 7) % 3) {
    case 0:
        return runOn<NodeArr>(input);
    case 1:
        return runOn<TriangleArr>(input);
    default:
        return runOn<QuadArr>(input);
    }
}

std::vector<std::string> fuzz::seeds() {
    return {seed<NodeArr>(0), seed<TriangleArr>(1), seed<QuadArr>(2),
            seed<NodeArr>(8), seed<TriangleArr>(9), seed<QuadArr>(10)};
}
