// The mesh records by themselves, and the list files of the three mesh lists.
#include "trunnion/meshes/mesh_records.h"

#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/list_files.h"
#include "tests/support/temp_dir.h"
#include "tests/support/thrown.h"
#include "trunnion/containers/slot_array.h"
#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/quad_arr.h"
#include "trunnion/meshes/triangle_arr.h"
#include "trunnion/persistence/compress_stream.h"
#include "trunnion/persistence/stream.h"

namespace {

using test::raw;
using test::readInto;
using test::written;

NodeCL makeNode(float x, float y, float z, float normalZ = 1.0F) {
    float point[3] = {x, y, z};
    float normal[3] = {0.0F, 0.0F, normalZ};
    NodeCL node(31);
    node.SetNodeM(point, normal);
    return node;
}

TriangleCL makeTriangle(int a, int b, int c) {
    const float normal[3] = {0.0F, 3.0F, -1.0F};
    TriangleCL triangle(31);
    triangle.SetValueM(a, b, c, normal);
    return triangle;
}

QuadCL makeQuad(int a, int b, int c, int d) {
    int nodes[4] = {a, b, c, d};
    float normal[3] = {0.0F, 3.0F, -1.0F};
    QuadCL quad;
    quad.SetNormM(normal);
    quad.ModifyM(nodes);
    return quad;
}

IntArr makeMap(const std::vector<int> &entries) {
    IntArr map;
    for (const int entry : entries) {
        map.AddItemM(entry);
    }
    return map;
}

std::string fileOf(const std::function<void(std::FILE *)> &write) {
    const test::TempDir dir;
    std::FILE *file = std::fopen(dir.path("record").c_str(), "wb");
    write(file);
    std::fclose(file);
    return test::readBytes(dir.path("record"));
}

template <class Record>
Record recordFrom(const std::string &text) {
    const test::TempDir dir;
    test::writeBytes(dir.path("record"), text);
    std::FILE *file = std::fopen(dir.path("record").c_str(), "rb");
    Record record;
    EXPECT_EQ(record.FmReadOzkFileM(file), 1);
    std::fclose(file);
    return record;
}

const char *const nodeText = "   31\n"
                             "  1.00000000e+00,   -2.50000000e+00,    3.00000000e+00\n"
                             "  0.00000000e+00,    0.00000000e+00,    1.00000000e+00\n";
const char *const triangleText = "   31\n"
                                 "         4,           0,          17\n"
                                 "  0.00000000e+00,  3.00000000e+00, -1.00000000e+00\n"
                                 "1\n";
const char *const quadText = "   31\n"
                             "         4,           0,          17,           2\n"
                             "  0.00000000e+00,  3.00000000e+00, -1.00000000e+00\n"
                             "0\n";

TEST(MeshRecords, TextFormsByteForByteAndBack) {
    NodeCL node = makeNode(1.0F, -2.5F, 3.0F);
    TriangleCL triangle = makeTriangle(4, 0, 17);
    QuadCL quad = makeQuad(4, 0, 17, 2);
    const auto textOf = [](auto &record) {
        return fileOf([&](std::FILE *file) { EXPECT_EQ(record.FmWriteOzkFileM(file), 1); });
    };
    EXPECT_EQ(textOf(node), nodeText);
    EXPECT_EQ(textOf(triangle), triangleText);
    EXPECT_EQ(textOf(quad), quadText);
    EXPECT_EQ(fileOf([&](std::FILE *file) { quad.ExportQuadDBFileM(file); }), quadText);
    const float half[16] = {0.5F, 0, 0, 0, 0, 0.5F, 0, 0, 0, 0, 0.5F, 0, 5, 6, 7, 1};
    const std::string turned =
        fileOf([&](std::FILE *file) { triangle.ExportTriangleDBFIleM(file, half); });
    EXPECT_NE(turned.find("\n  0.00000000e+00,  1.50000000e+00, -5.00000000e-01\n1\n"),
              std::string::npos);
    EXPECT_EQ(triangle.GetNormPM()[1], 3.0F);

    NodeCL nodeBack = recordFrom<NodeCL>(nodeText);
    EXPECT_EQ(textOf(nodeBack), nodeText);
    TriangleCL triangleBack = recordFrom<TriangleCL>(triangleText);
    EXPECT_EQ(textOf(triangleBack), triangleText);
    QuadCL quadBack = recordFrom<QuadCL>(quadText);
    EXPECT_EQ(textOf(quadBack), quadText);

    // Through the base, a write gives the tag alone.
    TqBaseCL &base = node;
    EXPECT_EQ(fileOf([&](std::FILE *file) { base.FmWriteOzkFileM(file); }), "   31\n");
    // A record that breaks off keeps what it was.
    EXPECT_EQ(recordFrom<TriangleCL>("   31\n 7, 8").GetNodeIdxPM()[2], SL_DELETED_INT);
}

template <class Array, class Record>
Array listOf(const Record &first, const Record &second) {
    Array array;
    array.AddItemM(first);
    array.AddItemM(second);
    array.DelItemM(0);
    return array;
}

// The list written, read back and written again must give the same bytes, and a list cut anywhere
// must be refused, up to the last number of a text list: of the end line nothing is asked.
template <class Array>
void expectListFile(const Array &array, bool binary, const std::string &expected) {
    EXPECT_EQ(written(array, "L", binary), expected);
    Array back;
    ASSERT_EQ(readInto(back, expected, binary), 0);
    EXPECT_EQ(written(back, "L", binary), expected);
    EXPECT_EQ(back.GetAvailableNumM(), array.GetAvailableNumM());
    // A bound that the file cannot hold takes no memory.
    Array hostile;
    EXPECT_EQ(readInto(hostile, binary ? raw(3) + expected.substr(4) : "9999" + expected, binary),
              107);
    EXPECT_EQ(hostile.GetLengthM(), 4);
    const std::size_t needed =
        binary ? expected.size() : expected.rfind(' ', expected.find("L_LIST_END")) + 2;
    for (std::size_t length = 0; length < needed; ++length) {
        Array cut;
        ASSERT_EQ(readInto(cut, expected.substr(0, length), binary), 107) << length;
        ASSERT_LE(cut.GetAvailableNumM(), 1);
    }
}

TEST(MeshLists, ListFilesByteForByteAndEveryPrefixRefused) {
    const auto nodes = listOf<NodeArr>(makeNode(7, 8, 9), makeNode(1.0F, -2.5F, 3.0F));
    expectListFile(nodes, false,
                   "2, L_LIST_BEGIN\n"
                   "0, INDEX_OF_L_LIST\n"
                   "   32\n"
                   "  0.00000000e+00,   0.00000000e+00,   0.00000000e+00\n"
                   "  0.00000000e+00,   0.00000000e+00,   0.00000000e+00\n"
                   "1, INDEX_OF_L_LIST\n"
                   "   31\n"
                   "  1.00000000e+00,  -2.50000000e+00,   3.00000000e+00\n"
                   "  0.00000000e+00,   0.00000000e+00,   1.00000000e+00\n"
                   "L_LIST_END\n");
    const std::string six = raw(0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F);
    expectListFile(nodes, true,
                   raw(2) + "\x20" + six + "\x1F" + raw(1.0F, -2.5F, 3.0F, 0.0F, 0.0F, 1.0F));

    const auto triangles =
        listOf<TriangleArr>(makeTriangle(1, 2, 3), makeTriangle(4, 0, SL_DELETED_INT));
    const std::string normal = raw(0.0F, 3.0F, -1.0F);
    expectListFile(triangles, true,
                   raw(2) + "\x20" + raw(1, 2, 3) + normal + "\x01\x1F" +
                       raw(4, 0, SL_DELETED_INT) + normal + "\x01");

    const auto quads = listOf<QuadArr>(makeQuad(1, 2, 3, 4), makeQuad(4, 0, 17, 2));
    EXPECT_NE(written(quads, "L", false).find("\n         4,          0,         17,          2\n"),
              std::string::npos);
    expectListFile(quads, true,
                   raw(2) + "\x20" + raw(1, 2, 3, 4) + normal + std::string(1, '\0') + "\x1F" +
                       raw(4, 0, 17, 2) + normal + std::string(1, '\0'));
}

// Classes of a host: the library's lists reach them by their operations alone.
struct HostStream : TqIOCL {};
struct HostCompressed : TqCompressIOCL {};

template <class Stream, class Array>
void save(const Array &array, const std::string &path) {
    Stream stream;
    stream.OpenM(path.c_str(), "wb");
    for (int i = 0; i < 3; ++i) { // each list begins at another place of a buffer
        array.FmOutputOzkLstM(&stream, "L");
        if constexpr (std::is_base_of_v<TqCompressIOCL, Stream>) {
            i == 1 ? stream.FlushMemoryM() : stream.FinishSaveM(0);
        }
    }
}

// What a reader makes of the file: its code, then bound, live items and the records that it holds.
template <class Stream, class Array>
std::string load(const std::string &path) {
    Stream stream;
    std::string read;
    Array array;
    const int code = test::thrown([&] {
        stream.OpenM(path.c_str(), "rb");
        for (int i = 0; i < 3; ++i) {
            array.FmInputOzkLstM(&stream);
            read += std::to_string(array.GetAvailableNumM()) + written(array, "L", true);
        }
    });
    return read + std::to_string(code) + std::to_string(array.GetAvailableNumM()) +
           written(array, "L", true);
}

template <class Own, class Host, class Array>
void expectSameThroughHost(const Array &array, const std::vector<std::size_t> &cuts) {
    const test::TempDir dir;
    const std::string path = dir.path("own");
    save<Own>(array, path);
    save<Host>(array, dir.path("host"));
    const std::string bytes = test::readBytes(path);
    ASSERT_TRUE(bytes == test::readBytes(dir.path("host")));
    for (const std::size_t cut : cuts) {
        std::filesystem::remove(path);
        test::writeBytes(path, bytes.substr(0, cut));
        ASSERT_TRUE((load<Own, Array>(path) == load<Host, Array>(path))) << cut;
    }
}

// Long lists cross the buffers of the streams at many places of a record.
template <class Array, class Record>
void expectLongList(const Record &live) {
    Array array;
    for (int i = 0; i < 2500; ++i) {
        array.AddItemM(live);
        if (i % 7 == 3) {
            array.DelItemM(i - 1);
        }
    }
    std::vector<std::size_t> cuts = {1U << 30};
    for (std::size_t i = 0; i < 40; ++i) {
        cuts.push_back(16384 * 3 - 20 + i);
    }
    expectSameThroughHost<TqIOCL, HostStream>(array, cuts);
    expectSameThroughHost<TqCompressIOCL, HostCompressed>(array, {1U << 30, 100});
}

TEST(MeshLists, LongListsAreTheSameThroughEveryStream) {
    expectLongList<NodeArr>(makeNode(1.0F, 2.0F, 3.0F));
    expectLongList<TriangleArr>(makeTriangle(1, 2, 3));
    expectLongList<QuadArr>(makeQuad(1, 2, 3, 4));
}

TEST(NodeCL, ComparesPointsOnly) {
    const NodeCL node = makeNode(0, 0, 0);
    EXPECT_EQ(node.CompareM(makeNode(0.00005F, 0, 0, -1.0F)), 1);
    EXPECT_EQ(node.CompareM(makeNode(0.00009F, 0, 0)), 1);
    EXPECT_EQ(node.CompareM(makeNode(0, 0.00011F, 0)), 0);
    EXPECT_EQ(node.CompareM(makeNode(0.00008F, 0.00008F, 0)), 0);
    EXPECT_EQ(node.CompareM(NodeCL()), 1);
}

TEST(NodeCL, NormalIsNormalisedInTheCallersArrayAndDeletionClears) {
    float normal[3] = {0.0F, 3.0F, -4.0F};
    NodeCL node(31);
    node.SetNormM(normal);
    EXPECT_FLOAT_EQ(normal[1], 0.6F);
    // To the bit: a 0 that became -0 counts.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    EXPECT_EQ(std::memcmp(normal, node.GetNormalPM(), sizeof normal), 0);
    float none[3] = {};
    node.SetNormM(none);
    EXPECT_EQ(node.GetNormalPM()[0], 1.0F);
    node = makeNode(1, 2, 3);
    node.DelItemM();
    EXPECT_EQ(node.IsAvailableM(), TAG_DELETED);
    float point[3] = {9, 9, 9};
    node.GetNodeM(point, normal);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(point[i], 0.0F);
        EXPECT_EQ(normal[i], 0.0F);
    }
}

TEST(Facets, NormalTypesAndWhatDeletionKeeps) {
    char type = 9;
    TriangleCL triangle;
    triangle.GetNormTypeM(&type);
    EXPECT_EQ(type, 0);
    float normal[3] = {0.0F, 3.0F, -4.0F};
    int nodes[4] = {5, 6, 7, 8};
    triangle.ModifyM(nodes, normal);
    EXPECT_EQ(normal[1], 3.0F); // not normalised
    triangle.NegativeNormalVectM();
    triangle.DelItemM();
    triangle.GetNormTypeM(&type);
    EXPECT_EQ(type, 1);
    EXPECT_EQ(triangle.IsAvailableM(), TAG_DELETED);
    EXPECT_EQ(triangle.GetNormPM()[2], 4.0F);
    EXPECT_EQ(triangle.GetNodeIdxPM()[2], 7);
    QuadCL quad;
    quad.SetNormTypeM(7);
    quad.ModifyM(nodes);
    quad.GetNormTypeM(&type);
    EXPECT_EQ(type, 0);
}

struct Renumbering {
    std::vector<int> map;
    int triangleResult; // for (1, 2, 3)
    int quadResult;     // for (1, 2, 3, 4)
    int third;          // what node 3 becomes
};

const Renumbering renumberings[] = {
    {{9, 8, 7, 6, 5}, 1, 1, 6},        {{9, 8, 7, 8, 5}, 0, 0, 8}, // the diagonal of the quad
    {{9, 8, 7, 6, 8}, 1, 0, 6},        {{9, 8, 7, 6}, 1, 1, 6},
    {{9, 8, 7}, 1, 0, SL_DELETED_INT}, {{9, 8}, 0, 0, SL_DELETED_INT},
};

TEST(Facets, RenumberingReportsEqualIndexes) {
    for (const Renumbering &renumbering : renumberings) {
        const IntArr map = makeMap(renumbering.map);
        TriangleCL triangle = makeTriangle(1, 2, 3);
        EXPECT_EQ(triangle.ResetNodeIdxM(map), renumbering.triangleResult);
        EXPECT_EQ(triangle.GetNodeIdxPM()[2], renumbering.third);
        QuadCL quad = makeQuad(1, 2, 3, 4);
        EXPECT_EQ(quad.ResetNodeIdxM(map), renumbering.quadResult);
        EXPECT_EQ(makeQuad(1, 2, 3, 4).MakeNewIdxM(map), 1);
    }
}

TEST(TriangleCL, FindsNodesEdgesAndItself) {
    TriangleCL triangle = makeTriangle(4, 6, 5);
    const int orders[][3] = {{4, 5, 6}, {4, 6, 5}, {5, 4, 6}, {5, 6, 4}, {6, 4, 5}, {6, 5, 4}};
    for (const auto &order : orders) {
        EXPECT_EQ(triangle.FindTriangleM(order), 1);
    }
    const int other[3] = {4, 4, 5};
    EXPECT_EQ(triangle.FindTriangleM(other), 0);
    const int repeated[3] = {1, 2, 2};
    EXPECT_EQ(makeTriangle(1, 1, 2).FindTriangleM(repeated), 0);
    for (int a = 3; a < 8; ++a) {
        for (int b = 3; b < 8; ++b) {
            const bool isEdge = a != b && a >= 4 && a <= 6 && b >= 4 && b <= 6;
            EXPECT_EQ(triangle.FindEdgeM(a, b), isEdge ? 1 : 0) << a << b;
        }
    }
    EXPECT_EQ(triangle.GetIdxM(5), 2);
    EXPECT_EQ(triangle.GetIdxM(7), SL_DELETED_INT);
    const int expected[3][2] = {{6, 5}, {4, 5}, {4, 6}};
    for (int position = -1; position <= 3; ++position) {
        int two[2] = {-5, -5};
        triangle.GetOtherTwoIdxI(position, two);
        const bool inside = position >= 0 && position < 3;
        EXPECT_EQ(two[0], inside ? expected[position][0] : -5);
        EXPECT_EQ(two[1], inside ? expected[position][1] : -5);
    }
}

} // namespace
