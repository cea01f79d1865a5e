// Files of every form, from fixed values: their bytes are the same wherever they are written, and
// what is read from them is what was written. So every system reads the files of every other.
#include <algorithm>
#include <cfloat>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_drive.h"
#include "trunnion/persistence/detail/crc32.h"
#include "trunnion/trunnion.h"

namespace {

struct Lists {
    IntArr integers;
    RealArr reals;
    Point3DArr points;
    TqStringArr strings;
    NodeArr nodes;
    TriangleArr triangles;
    QuadArr quads;

    void write(TqIOCL &stream) const {
        integers.FmOutputOzkLstM(&stream, "INTEGERS");
        reals.FmOutputOzkLstM(&stream, "REALS");
        points.FmOutputOzkLstM(&stream, "POINTS");
        strings.FmOutputOzkLstM(&stream, "STRINGS");
        nodes.FmOutputOzkLstM(&stream, "NODES");
        triangles.FmOutputOzkLstM(&stream, "TRIANGLES");
        quads.FmOutputOzkLstM(&stream, "QUADS");
    }
    void read(TqIOCL &stream) {
        integers.FmInputOzkLstM(&stream);
        reals.FmInputOzkLstM(&stream);
        points.FmInputOzkLstM(&stream);
        strings.FmInputOzkLstM(&stream);
        nodes.FmInputOzkLstM(&stream);
        triangles.FmInputOzkLstM(&stream);
        quads.FmInputOzkLstM(&stream);
    }
};

// The numbers of the engine are the same everywhere, unlike those of the distributions.
Lists someLists() {
    std::mt19937 random(20);
    const auto real = [&random] {
        return static_cast<float>(static_cast<int>(random()) / 65536.0 / 65536.0);
    };
    Lists lists;
    for (const float value : {0.1F, -0.0F, FLT_MIN / 8, FLT_MAX, 16777216.0F, -1.0F / 3}) {
        lists.reals.AddItemM(value);
    }
    for (int i = 0; i < 300; ++i) {
        lists.integers.AddItemM(static_cast<int>(random()));
        lists.reals.AddItemM(real());
        float point[3] = {real(), 1e4F * real(), 1e-6F * real()};
        float normal[3] = {0, 0.6F, -0.8F};
        lists.points.AddItemM(point);
        NodeCL node(TAG_AVAILABLE);
        node.SetPntM(point);
        node.SetNormM(normal);
        lists.nodes.AddItemM(node);
        TriangleCL triangle(TAG_AVAILABLE);
        triangle.SetValueM(i, i + 1, i + 2, normal);
        lists.triangles.AddItemM(triangle);
        QuadCL quad(TAG_AVAILABLE);
        quad.SetQuadM(i, i + 1, i + 2, i + 3);
        lists.quads.AddItemM(quad);
    }
    for (const char *text : {"spindle", "", "\xC3\xA4 \xD6\xD0 x", "C:\\part.nc"}) {
        lists.strings.AddByCompM(text);
    }
    for (int i = 0; i < 300; i += 7) {
        lists.integers.DelItemM(i);
        lists.nodes.DelItemM(i);
        lists.triangles.DelItemM(i);
    }
    return lists;
}

void writeStream(const Lists &lists, const char *path, const char *mode) {
    TqIOCL stream;
    stream.OpenM(path, mode);
    stream.SetAutoNewLineM(1);
    lists.write(stream);
    stream.CloseM();
}

Lists readStream(const char *path, const char *mode) {
    Lists lists;
    TqIOCL stream;
    stream.OpenM(path, mode);
    lists.read(stream);
    stream.CloseM();
    return lists;
}

void writeText(const Lists &lists, const char *path) {
    writeStream(lists, path, "w");
}
Lists readText(const char *path) {
    return readStream(path, "r");
}

void writeBinary(const Lists &lists, const char *path) {
    writeStream(lists, path, "wb");
}
Lists readBinary(const char *path) {
    return readStream(path, "rb");
}

void writeCompressed(const Lists &lists, const char *path) {
    TqCompressIOCL stream;
    stream.SetVersionNumM(5002);
    stream.OpenM(path, "wb");
    lists.write(stream);
    stream.FinishSaveM(1);
    stream.CloseM();
}
Lists readCompressed(const char *path) {
    Lists lists;
    TqCompressIOCL stream;
    stream.OpenM(path, "rb");
    lists.read(stream);
    stream.CloseM();
    return lists;
}

TEST(FileBytes, AreTheSameOnEverySystemAndAfterReading) {
    const test::TempDrive drive;
    const struct {
        const char *name;
        void (*write)(const Lists &, const char *);
        Lists (*read)(const char *);
        std::size_t length;
        std::uint32_t crc;
    } forms[] = {{"text", &writeText, &readText, 165906, 3396027915},
                 {"binary", &writeBinary, &readBinary, 30368, 2941184022},
                 {"compressed", &writeCompressed, &readCompressed, 16707, 285266160}};
    for (const auto &form : forms) {
        form.write(someLists(), "E:\\first");
        const std::string bytes = test::readBytes(drive.path("first"));
        EXPECT_EQ(bytes.size(), form.length) << form.name;
        EXPECT_EQ(trunnion::detail::crc32(reinterpret_cast<const unsigned char *>(bytes.data()),
                                          bytes.size()),
                  form.crc)
            << form.name;
        form.write(form.read("E:\\first"), "E:\\second");
        EXPECT_TRUE(test::readBytes(drive.path("second")) == bytes) << form.name;
    }
}

} // namespace
