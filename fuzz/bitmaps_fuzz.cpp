// Bitmap files in all four loaders. The header of a seed is changed more than its pixels.
#include "trunnion/host/bitmaps.h"

#include <cstdint>
#include <cstring>

#include "fuzz/support/entry.h"
#include "fuzz/support/scratch.h"
#include "trunnion/containers/item_base.h"

namespace {

using namespace fuzz;

// Adds up the bytes, so that every one of them is read.
unsigned touch(const void *block, std::int64_t size) {
    unsigned sum = 0;
    for (std::int64_t i = 0; i < size; ++i) {
        sum += static_cast<const unsigned char *>(block)[i];
    }
    return sum;
}

struct Picture {
    int result;
    int width = -1, height = -1;
    std::string pixels;

    template <int channels>
    Picture(int (*load)(const char *, int *, int *, unsigned char (**)[channels]),
            const std::string &path) {
        unsigned char(*loaded)[channels] = nullptr;
        result = load(path.c_str(), &width, &height, &loaded);
        require(result == 0 || result == 1, "1 or 0");
        require((loaded != nullptr) == (result == 1), "pixels if and only if it succeeds");
        if (result == 1) {
            require(width > 0 && height > 0, "a size");
            pixels.assign(reinterpret_cast<char *>(loaded), static_cast<std::size_t>(width) *
                                                                static_cast<std::size_t>(height) *
                                                                channels);
        } else {
            require(width == -1 && height == -1, "nothing is written on failure");
        }
        slFree(loaded);
    }
};

void loadRaw(const std::string &path, std::size_t fileBytes) {
    unsigned char *bits = nullptr;
    BITMAPINFO *info = nullptr;
    if (slLoadBMP(path.c_str(), &bits, &info, 0) == 1) {
        const std::int64_t size = info->bmiHeader.biSizeImage;
        require(size <= static_cast<std::int64_t>(fileBytes), "no more pixels than the file has");
        touch(bits, size);
        touch(info, sizeof *info);
    } else {
        require(bits == nullptr && info == nullptr, "nothing to free on failure");
    }
    slFree(bits);
    slFree(info);
}

// The rows of slLoadBMP are those of the picture, padded.
void loadConverted(const std::string &path, const Picture &picture) {
    unsigned char *bits = nullptr;
    BITMAPINFO *info = nullptr;
    require(slLoadBMP(path.c_str(), &bits, &info, 1) == picture.result, "loaders agree");
    const std::size_t row = static_cast<std::size_t>(picture.width) * 3;
    for (int y = 0; y < picture.height; ++y) {
        const std::size_t at = static_cast<std::size_t>(y);
        require(std::memcmp(bits + at * ((row + 3) / 4 * 4), picture.pixels.data() + at * row,
                            row) == 0,
                "the same rows");
    }
    slFree(bits);
    slFree(info);
}

std::string bitmap(std::uint16_t bits, std::int32_t width, std::int32_t height) {
    struct {
        std::uint32_t size = 40;
        std::int32_t width, height;
        std::uint16_t planes = 1, bits;
        std::uint32_t compression = 0, imageBytes = 0, rest[4] = {};
    } header;
    header.width = width;
    header.height = height;
    header.bits = bits;
    const std::string table(bits <= 8 ? 4U << bits : 0, '\x55');
    const std::int64_t rowBytes = (std::int64_t{width} * bits + 31) / 32 * 4;
    const std::uint32_t offset = 54 + static_cast<std::uint32_t>(table.size());
    std::string file("BM\0\0\0\0\0\0\0\0", 10);
    file.append(reinterpret_cast<const char *>(&offset), sizeof offset);
    file.append(reinterpret_cast<const char *>(&header), sizeof header);
    return file + table + std::string(static_cast<std::size_t>(rowBytes * height), '\x6b');
}

} // namespace

void fuzz::run(const std::string &input) {
    const std::string path = fileOf(input);
    loadRaw(path, input.size());
    const Picture three(slLoadBmpPicture3D, path);
    loadConverted(path, three);
    const Picture four(slLoadBmpPicture, path);
    const Picture texture(slLoadBmpTexture, path);
    require(four.result == three.result && texture.result == three.result, "loaders agree");
    for (std::size_t i = 0; i < four.pixels.size() / 4; ++i) {
        require(four.pixels.compare(4 * i, 3, three.pixels, 3 * i, 3) == 0 &&
                    four.pixels[4 * i + 3] == '\xff',
                "the same colours, opaque");
    }
    require(texture.pixels.empty() || four.pixels.compare(0, 4, texture.pixels, 0, 4) == 0,
            "a texture begins in the same corner");
}

std::vector<std::string> fuzz::seeds() {
    std::vector<std::string> all;
    for (const std::uint16_t bits : {1, 4, 8, 16, 24, 32}) {
        all.push_back(bitmap(bits, 5, 3));
    }
    return all;
}
