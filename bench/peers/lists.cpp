// A list of nodes to a file and back: binary beside cereal, compressed beside packed records in a
// TIFF strip that libtiff compresses by LZW.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>

#include <cereal/archives/binary.hpp>
#include <cereal/types/array.hpp>
#include <cereal/types/vector.hpp>
#include <tiffio.h>

#include "bench/peers/contest.h"
#include "tests/support/temp_dir.h"
#include "trunnion/persistence/compress_stream.h"

namespace {

using bench::Point;

// What a node keeps, as a user would write it.
struct Record {
    char tag;
    Point point;
    Point normal;

    template <class Archive>
    void serialize(Archive &archive) {
        archive(tag, point, normal);
    }
};

// Bytes of a record in a file, and what is in memory on our side.
constexpr double bytesPerNode = NodeCL::recordBytes + sizeof(NodeCL);

std::vector<Record> recordsOf(const NodeArr &nodes) {
    std::vector<Record> records;
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        const NodeCL &node = *nodes.GetItemPM(i);
        Record record{TAG_AVAILABLE, {}, {}};
        std::copy_n(node.GetPntPM(), 3, record.point.begin());
        std::copy_n(node.GetNormalPM(), 3, record.normal.begin());
        records.push_back(record);
    }
    return records;
}

// A patch of a sphere with normals.
NodeArr patchNodes(int count) {
    NodeArr nodes = bench::spherePatch(static_cast<int>(std::sqrt(count))).nodes;
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        NodeCL node = *nodes.GetItemPM(i);
        float normal[3];
        node.GetPntM(normal);
        node.SetNormM(normal);
        nodes.SetItemM(node, i);
    }
    return nodes;
}

void requireSame(const NodeArr &nodes, const std::vector<Record> &records) {
    const std::vector<Record> held = recordsOf(nodes);
    bench::require(held.size() == records.size(), "number of nodes");
    for (std::size_t i = 0; i < held.size(); ++i) {
        bench::require(held[i].point == records[i].point && held[i].normal == records[i].normal,
                       "nodes of a file");
    }
}

template <class Stream>
void finish(Stream &stream) {
    if constexpr (std::is_same_v<Stream, TqCompressIOCL>) {
        stream.FinishSaveM(1);
    }
    stream.CloseM();
}

template <class Stream>
void saveNodes(const NodeArr &nodes, const std::string &path) {
    Stream stream;
    stream.SetVersionNumM(1);
    stream.OpenM(path.c_str(), "wb");
    nodes.FmOutputOzkLstM(&stream, "nodes");
    finish(stream);
}

template <class Stream>
void loadNodes(NodeArr &nodes, const std::string &path) {
    Stream stream;
    stream.OpenM(path.c_str(), "rb");
    nodes.FmInputOzkLstM(&stream);
    stream.CloseM();
}

void saveByCereal(const std::vector<Record> &records, const std::string &path) {
    std::ofstream file(path, std::ios::binary);
    cereal::BinaryOutputArchive archive(file);
    archive(records);
}

void loadByCereal(std::vector<Record> &records, const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    cereal::BinaryInputArchive archive(file);
    archive(records);
}

struct CloseTiff {
    void operator()(TIFF *file) const { TIFFClose(file); }
};
using TiffFile = std::unique_ptr<TIFF, CloseTiff>;

// Rows of a picture of bytes that is one strip.
constexpr std::size_t rowBytes = 4096;

void saveByTiff(const std::vector<Record> &records, const std::string &path) {
    constexpr std::size_t size = NodeCL::recordBytes;
    const std::size_t rows = (records.size() * size + rowBytes - 1) / rowBytes;
    std::vector<unsigned char> packed(rows * rowBytes);
    unsigned char *out = packed.data();
    for (const Record &record : records) {
        *out = static_cast<unsigned char>(record.tag);
        std::memcpy(out + 1, record.point.data(), sizeof record.point);
        std::memcpy(out + 1 + sizeof record.point, record.normal.data(), sizeof record.normal);
        out += size;
    }
    const TiffFile file(TIFFOpen(path.c_str(), "w"));
    TIFFSetField(file.get(), TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(rowBytes));
    TIFFSetField(file.get(), TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(rows));
    TIFFSetField(file.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(file.get(), TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows));
    TIFFSetField(file.get(), TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(file.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFWriteEncodedStrip(file.get(), 0, packed.data(), static_cast<tmsize_t>(packed.size()));
}

void loadByTiff(std::vector<Record> &records, std::size_t count, const std::string &path) {
    const TiffFile file(TIFFOpen(path.c_str(), "r"));
    std::vector<unsigned char> packed(static_cast<std::size_t>(TIFFStripSize(file.get())));
    const tmsize_t length =
        TIFFReadEncodedStrip(file.get(), 0, packed.data(), static_cast<tmsize_t>(packed.size()));
    bench::require(length == static_cast<tmsize_t>(packed.size()), "a strip");
    records.resize(count);
    const unsigned char *in = packed.data();
    for (Record &record : records) {
        record.tag = static_cast<char>(*in);
        std::memcpy(record.point.data(), in + 1, sizeof record.point);
        std::memcpy(record.normal.data(), in + 1 + sizeof record.point, sizeof record.normal);
        in += NodeCL::recordBytes;
    }
}

void saveBinary(bench::Contest &contest) {
    const test::TempDir dir;
    const NodeArr nodes = patchNodes(contest.size());
    const std::vector<Record> records = recordsOf(nodes);
    contest.items(nodes.GetBoundM(), "nodes", bytesPerNode);
    contest.ours([&] { saveNodes<TqIOCL>(nodes, dir.path("ours")); });
    contest.peer("cereal", 1.3, [&] { saveByCereal(records, dir.path("theirs")); });
    contest.measure([&] {
        NodeArr loaded;
        loadNodes<TqIOCL>(loaded, dir.path("ours"));
        requireSame(loaded, records);
        std::vector<Record> theirs;
        loadByCereal(theirs, dir.path("theirs"));
        requireSame(nodes, theirs);
    });
}

void loadBinary(bench::Contest &contest) {
    const test::TempDir dir;
    const NodeArr nodes = patchNodes(contest.size());
    saveNodes<TqIOCL>(nodes, dir.path("ours"));
    saveByCereal(recordsOf(nodes), dir.path("theirs"));
    NodeArr ours;
    std::vector<Record> theirs;
    contest.items(nodes.GetBoundM(), "nodes", bytesPerNode);
    contest.ours([&] { loadNodes<TqIOCL>(ours, dir.path("ours")); }, [&] { ours = NodeArr(); });
    contest.peer(
        "cereal", 1.3, [&] { loadByCereal(theirs, dir.path("theirs")); },
        [&] { theirs = std::vector<Record>(); });
    contest.measure([&] { requireSame(ours, theirs); });
}

// The sizes of the two files, whose difference belongs to the comparison.
void noteSizes(bench::Contest &contest, const test::TempDir &dir) {
    const auto ours = static_cast<double>(std::filesystem::file_size(dir.path("ours")));
    const auto theirs = static_cast<double>(std::filesystem::file_size(dir.path("theirs")));
    char text[80];
    std::snprintf(text, sizeof text, "Our file has %.3f times the bytes of the peer's",
                  ours / theirs);
    contest.note(text);
}

void saveCompressed(bench::Contest &contest) {
    const test::TempDir dir;
    const NodeArr nodes = patchNodes(contest.size());
    const std::vector<Record> records = recordsOf(nodes);
    contest.items(nodes.GetBoundM(), "nodes");
    contest.ours([&] { saveNodes<TqCompressIOCL>(nodes, dir.path("ours")); });
    contest.peer("libtiff LZW", 1.5, [&] { saveByTiff(records, dir.path("theirs")); });
    contest.measure([&] {
        NodeArr loaded;
        loadNodes<TqCompressIOCL>(loaded, dir.path("ours"));
        requireSame(loaded, records);
        std::vector<Record> theirs;
        loadByTiff(theirs, records.size(), dir.path("theirs"));
        requireSame(nodes, theirs);
    });
    noteSizes(contest, dir);
}

void loadCompressed(bench::Contest &contest) {
    const test::TempDir dir;
    const NodeArr nodes = patchNodes(contest.size());
    const std::vector<Record> records = recordsOf(nodes);
    saveNodes<TqCompressIOCL>(nodes, dir.path("ours"));
    saveByTiff(records, dir.path("theirs"));
    NodeArr ours;
    std::vector<Record> theirs;
    contest.items(nodes.GetBoundM(), "nodes");
    contest.ours([&] { loadNodes<TqCompressIOCL>(ours, dir.path("ours")); },
                 [&] { ours = NodeArr(); });
    contest.peer(
        "libtiff LZW", 1.3, [&] { loadByTiff(theirs, records.size(), dir.path("theirs")); },
        [&] { theirs = std::vector<Record>(); });
    contest.measure([&] { requireSame(ours, theirs); });
}

const bench::Row rows[] = {
    {"binary list", "nodes saved", 500000, saveBinary},
    {"binary list", "nodes loaded", 500000, loadBinary},
    {"compressed list", "nodes saved", 500000, saveCompressed},
    {"compressed list", "nodes loaded", 500000, loadCompressed},
};

} // namespace
