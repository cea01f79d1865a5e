// Mesh lists in text files: the bytes that are written, and what comes of whatever a file holds.
#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/quad_arr.h"
#include "trunnion/meshes/triangle_arr.h"

namespace {

std::string restOf(std::FILE *file) {
    std::string bytes;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        bytes += static_cast<char>(c);
    }
    std::fclose(file);
    return bytes;
}

template <class Write>
std::string bytesOf(Write write) {
    std::FILE *file = std::tmpfile();
    write(file);
    std::rewind(file);
    return restOf(file);
}

// Calls read(file) on a file with these bytes and returns what the file holds behind the list.
template <class Read>
std::string readFrom(const std::string &bytes, Read read) {
    std::FILE *file = std::tmpfile();
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::rewind(file);
    EXPECT_EQ(read(file), 1);
    return restOf(file);
}

template <class List>
std::vector<int> tagsOf(const List &list) {
    std::vector<int> tags;
    tags.reserve(static_cast<std::size_t>(list.GetBoundM()));
    for (int i = 0; i < list.GetBoundM(); ++i) {
        tags.push_back(list.GetItemPM(i)->IsAvailableM());
    }
    return tags;
}

// Live slots, those behind the bound included.
template <class List>
std::ptrdiff_t liveSlotsOf(const List &list) {
    const auto *slots = list.getCurrentItemPrtConstM();
    return std::count_if(slots, slots + list.GetLengthM(),
                         [](const auto &item) { return item.IsAvailableM() == 31; });
}

std::string withCarriageReturns(const std::string &text) {
    std::string result;
    for (const char c : text) {
        result += c == '\n' ? "\r\n" : std::string(1, c);
    }
    return result;
}

// A list file of records by slot.
std::string listText(const std::string &name, const std::string &number,
                     const std::vector<std::pair<std::string, std::string>> &records) {
    const std::string blanks(9, ' ');
    std::string text = blanks + number + ",  " + name + "_LIST_BEGIN\n";
    for (const auto &[slot, record] : records) {
        text.append(blanks).append(slot).append(",  INDEX_OF_").append(name).append("_LIST\n");
        text += record;
    }
    return text + name + "_LIST_END\n";
}

const std::string nodeLines = "   31\n"
                              "  1.00000000e+00,    2.00000000e+00,    3.00000000e+00\n"
                              "  0.00000000e+00,    0.00000000e+00,    1.00000000e+00\n";
const std::string nodeFile =
    listText("MINE", "3", {{"0", nodeLines}, {"1", "32\n0, 0, 0\n0, 0, 0\n"}, {"2", nodeLines}});

// A list of three facets, the second of them deleted, is read from the text that the writer must
// give, with both line ends, and exported. `spare` is the fourth index of a quad.
template <class List, class Export>
void expectListFile(const std::string &name, const std::string &exportName,
                    const std::string &spare, const std::string &exportedNormal,
                    int (List::*readList)(std::FILE *), int (List::*writeList)(std::FILE *),
                    Export exportList) {
    const std::string normals[2] = {"  0.00000000e+00,  0.00000000e+00,  0.00000000e+00\n0\n",
                                    "  0.00000000e+00, -2.50000000e+00,  1.00000000e+00\n1\n"};
    const std::string first = "   31\n         0,           1,           2" + spare + normals[0];
    const std::string second = "   32\n         7,           8,  -2147483647" + spare + normals[0];
    const std::string last = "   31\n         3,           1,           2" + spare;
    const std::string whole =
        listText(name, "3", {{"0", first}, {"1", second}, {"2", last + normals[1]}});
    for (const std::string &bytes : {whole, withCarriageReturns(whole)}) {
        List list;
        const auto write = [&](std::FILE *f) { EXPECT_EQ((list.*writeList)(f), 1); };
        const auto read = [&](std::FILE *f) { return (list.*readList)(f); };
        EXPECT_EQ(bytesOf(write), listText(name, "0", {}));
        EXPECT_EQ(readFrom(listText(name, "0", {}) + "rest", read), "rest");
        EXPECT_EQ(list.GetLengthM(), 4);

        EXPECT_EQ(readFrom(bytes + "rest", read), "rest");
        EXPECT_EQ(tagsOf(list), (std::vector<int>{31, 32, 31}));
        EXPECT_EQ(list.GetAvailableNumM(), 2);
        EXPECT_EQ(list.GetItemPM(2)->GetNodeIdxPM()[0], 3);
        EXPECT_EQ(list.GetItemPM(2)->GetNormPM()[1], -2.5F);
        EXPECT_EQ(bytesOf([&](std::FILE *f) { exportList(list, f); }),
                  listText(exportName, "2", {{"0", first}, {"2", last + exportedNormal}}));
        EXPECT_EQ(bytesOf(write), whole); // an export turns no stored normal
    }
}

TEST(MeshFiles, FacetListsByteForByteAndBack) {
    expectListFile<TriangleArr>(
        "TRIANGLE", "Triangle", "\n", "  2.50000000e+00,  0.00000000e+00,  1.00000000e+00\n1\n",
        &TriangleArr::FmReadTriangleLstM, &TriangleArr::FmWriteTriangleLstToFileM,
        [](const TriangleArr &list, std::FILE *f) {
            const float quarterTurnAboutZ[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
            list.ExportTriangleLstDBFileM(f, quarterTurnAboutZ);
        });
    expectListFile<QuadArr>(
        "QUAD", "Quad", ",           9\n",
        "  0.00000000e+00, -2.50000000e+00,  1.00000000e+00\n1\n", &QuadArr::FmReadQuadLstM,
        &QuadArr::FmWriteQuadLstToFileM,
        [](const QuadArr &list, std::FILE *f) { list.ExportQuadLstDBFileM(f); });
}

TEST(MeshFiles, ANodeListCountsItsLiveNodesOnly) {
    NodeArr nodes;
    const auto read = [&](std::FILE *f) { return nodes.FmReadNodeLstM(f); };
    EXPECT_EQ(readFrom(withCarriageReturns(nodeFile) + "rest", read), "rest");
    EXPECT_EQ(nodes.GetAvailableNumM(), 2);
    EXPECT_EQ(tagsOf(nodes), (std::vector<int>{31, 32}));
    const NodeCL &behind = nodes.getCurrentItemPrtConstM()[2];
    EXPECT_EQ(behind.IsAvailableM(), 31);
    EXPECT_EQ(behind.GetPntPM()[1], 2.0F);
    EXPECT_EQ(behind.GetNormalPM()[2], 1.0F);

    // Further lists are added to the counts; the bound ends where the slots do.
    readFrom(nodeFile + nodeFile, read);
    readFrom(nodeFile, read);
    EXPECT_EQ(nodes.GetAvailableNumM(), 6);
    EXPECT_EQ(nodes.GetBoundM(), nodes.GetLengthM());
}

TEST(MeshFiles, DamagedFiles) {
    const std::string facet = "\n31\n1,2,3\n0,0,1\n1\n";
    const std::string four = "0, I" + facet + "1, I" + facet + "2, I" + facet + "3, I" + facet;
    struct Case {
        const char *what;
        std::string bytes;
        std::vector<int> tags;
        int live;
    };
    const Case cases[] = {
        {"no list", "", {}, 0},
        {"no number", "two, T\nT_END\n", {}, 0},
        {"a number below 0", "-4, T\nT_END\n", {}, 0},
        {"any order", "2, T\n1, I" + facet + "0, I" + facet + "E\n", {31, 31}, 2},
        {"a slot behind the number", "2, T\n3, I" + facet + "0, I" + facet + "E\n", {31, 30}, 2},
        {"a slot at the capacity", "2, T\n0, I" + facet + "4, I" + facet + "E\n", {31, 30}, 1},
        {"a slot below 0", "2, T\n-1, I" + facet + "0, I" + facet + "E\n", {30, 30}, 0},
        {"no slot", "2, T\n0, I" + facet + "x, I" + facet + "E\n", {31, 30}, 1},
        {"a slot twice", "3, T\n0, I" + facet + "0, I" + facet + "E\n", {31, 30, 30}, 1},
        {"live, then not", "2, T\n0, I" + facet + "0, I\n32\n1,2,3\n0,0,1\n1\nE\n", {32, 30}, 0},
        {"a foreign tag", "2, T\n0, I\n37\n1,2,3\n0,0,1\n1\n1, I" + facet + "E\n", {37, 31}, 1},
        {"no comma", "1 T\n0 I" + facet + "E\n", {31}, 1},
        {"ends in a record", "2, T\n0, I" + facet + "1, I\n31\n1,", {31, 31}, 2},
        {"fewer records than told", "4, T\n0, I" + facet, {31, 30, 30, 30}, 1},
        {"more than the file can hold", "2147483647, T\n" + four, {31, 31, 31, 31, 30}, 4},
        {"a tag without end", "1, " + std::string(5000, 'T') + "\n0, I" + facet + "E\n", {31}, 1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        TriangleArr list;
        readFrom(c.bytes, [&](std::FILE *f) { return list.FmReadTriangleLstM(f); });
        EXPECT_EQ(tagsOf(list), c.tags);
        EXPECT_EQ(list.GetAvailableNumM(), c.live);
    }
}

TEST(MeshFiles, AnyBytesAreReadCalmly) {
    test::Random random(71);
    const std::string facets =
        listText("QUAD", "2",
                 {{"0", "31\n1, 2, 3, 4\n0, 0, 1\n1\n"}, {"1", "31\n5, 2, 3, 4\n0, 0, 1\n1\n"}});
    for (const std::string &whole : {facets, nodeFile}) {
        for (std::size_t i = 0; i < 2 * whole.size(); ++i) {
            std::string bytes = whole.substr(0, i % whole.size()); // every prefix, then damaged
            for (std::size_t at = i; at > whole.size() && at < 9 * whole.size(); at += 53) {
                bytes[at % bytes.size()] = "0129 -,\n\r.eE\x80"[random.integer(0, 12)];
            }
            NodeArr nodes;
            TriangleArr triangles;
            QuadArr quads;
            readFrom(bytes, [&](std::FILE *f) { return nodes.FmReadNodeLstM(f); });
            readFrom(bytes, [&](std::FILE *f) { return triangles.FmReadTriangleLstM(f); });
            readFrom(bytes, [&](std::FILE *f) { return quads.FmReadQuadLstM(f); });
            ASSERT_LE(nodes.GetBoundM(), nodes.GetLengthM());
            ASSERT_LE(nodes.GetLengthM(), 5 + static_cast<int>(bytes.size()) / 18);
            ASSERT_EQ(liveSlotsOf(quads), quads.GetAvailableNumM());
            ASSERT_EQ(liveSlotsOf(triangles), triangles.GetAvailableNumM());
        }
    }
}

} // namespace
