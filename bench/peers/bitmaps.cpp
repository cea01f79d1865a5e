// Bitmap files: 24 bits a pixel, and 8 bits with a table of colours.
#include <cstdint>
#include <cstring>
#include <fstream>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_BMP
#include <stb/stb_image.h>

#include "bench/peers/contest.h"
#include "tests/support/temp_dir.h"
#include "trunnion/containers/item_base.h"
#include "trunnion/host/bitmaps.h"

namespace {

void append(std::string &bytes, std::uint32_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i));
    }
}

// The bytes of a square bitmap of random pixels; `side` is a multiple of 4, so that no row ends in
// padding.
std::string bitmap(std::uint32_t side, std::uint32_t bitsPerPixel) {
    const std::uint32_t colours = bitsPerPixel == 8 ? 256 : 0;
    const std::uint32_t start = 54 + 4 * colours;
    const std::uint32_t size = side * side * (bitsPerPixel / 8);
    std::string bytes = "BM";
    append(bytes, start + size, 4);
    append(bytes, 0, 4);
    append(bytes, start, 4);
    append(bytes, 40, 4); // size of the header that follows
    append(bytes, side, 4);
    append(bytes, side, 4);
    append(bytes, 1, 2);
    append(bytes, bitsPerPixel, 2);
    append(bytes, 0, 4); // not compressed
    append(bytes, size, 4);
    append(bytes, 0, 8);
    append(bytes, colours, 4);
    append(bytes, 0, 4);
    std::mt19937 engine(20);
    for (std::uint32_t i = 0; i < colours; ++i) {
        append(bytes, engine() & 0xFFFFFF, 4);
    }
    for (std::uint32_t i = 0; i < size; i += 4) {
        append(bytes, static_cast<std::uint32_t>(engine()), 4);
    }
    return bytes;
}

// Pixels of one contender; freed before the next run.
struct Picture {
    int width = 0;
    int height = 0;
    unsigned char *pixels = nullptr;
};

template <int bitsPerPixel>
void loadBitmap(bench::Contest &contest) {
    const int side = contest.size();
    const test::TempDir dir;
    const std::string path = dir.path("picture.bmp");
    std::ofstream(path, std::ios::binary) << bitmap(static_cast<std::uint32_t>(side), bitsPerPixel);
    Picture ours;
    Picture theirs;
    const auto freeOurs = [&] {
        slFree(ours.pixels);
        ours.pixels = nullptr;
    };
    const auto freeTheirs = [&] {
        stbi_image_free(theirs.pixels);
        theirs.pixels = nullptr;
    };
    contest.items(static_cast<double>(side) * side, "pixels", bitsPerPixel / 8 + 3);
    contest.ours(
        [&] {
            unsigned char(*pixels)[3] = nullptr;
            slLoadBmpPicture3D(path.c_str(), &ours.width, &ours.height, &pixels);
            ours.pixels = reinterpret_cast<unsigned char *>(pixels);
        },
        freeOurs);
    contest.peer(
        "stb_image", 2.0,
        [&] {
            int channels = 0;
            theirs.pixels = stbi_load(path.c_str(), &theirs.width, &theirs.height, &channels, 3);
        },
        freeTheirs);
    contest.note("Ours keeps the rows as the file has them, the lowest first; the peer turns them");
    contest.measure([&] {
        bench::require(ours.pixels != nullptr && theirs.pixels != nullptr && ours.width == side &&
                           ours.height == side && theirs.width == side && theirs.height == side,
                       "a picture");
        const std::size_t rowBytes = 3 * static_cast<std::size_t>(side);
        for (std::size_t row = 0; row < static_cast<std::size_t>(side); ++row) {
            const std::size_t turned = static_cast<std::size_t>(side) - 1 - row;
            bench::require(std::memcmp(ours.pixels + row * rowBytes,
                                       theirs.pixels + turned * rowBytes, rowBytes) == 0,
                           "pixels of a picture");
        }
    });
    freeOurs();
    freeTheirs();
}

const bench::Row rows[] = {
    {"slLoadBmpPicture3D", "24 bits", 4096, loadBitmap<24>},
    {"slLoadBmpPicture3D", "8 bits", 4096, loadBitmap<8>},
};

} // namespace
