// Bitmap files of every depth against a reader that follows the format bit by bit, and damaged
// ones.
#include "trunnion/host/bitmaps.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/temp_drive.h"
#include "trunnion/containers/item_base.h"

namespace {

// What a test wants in a bitmap file; the colour table and the rows are random.
struct Bmp {
    std::int32_t width;
    std::int32_t height;
    std::uint16_t bits;
    int colours = -1; // entries of the table; -1 for as many as the depth has
    std::uint32_t sizeImage = 0;
    std::uint32_t compression = 0;

    std::size_t rowBytes() const { return (static_cast<std::size_t>(width) * bits + 31) / 32 * 4; }
    std::size_t entries() const {
        const std::size_t all = bits <= 8 ? std::size_t{1} << bits : 0;
        return colours >= 0 ? static_cast<std::size_t>(colours) : all;
    }
    std::size_t pixelsAt() const { return 54 + 4 * entries(); }

    std::string file() const {
        const auto pixels = static_cast<std::uint32_t>(pixelsAt());
        std::string bytes(54, '\0');
        bytes.replace(0, 2, "BM");
        std::memcpy(&bytes[10], &pixels, 4);
        bytes[14] = 40;
        std::memcpy(&bytes[18], &width, 4);
        std::memcpy(&bytes[22], &height, 4);
        bytes[26] = 1;
        std::memcpy(&bytes[28], &bits, 2);
        std::memcpy(&bytes[30], &compression, 4);
        std::memcpy(&bytes[34], &sizeImage, 4);
        test::Random random(width * 31 + bits);
        const std::size_t size =
            pixelsAt() + rowBytes() * static_cast<std::size_t>(std::abs(height));
        while (bytes.size() < size) {
            bytes += static_cast<char>(random.integer(0, 255));
        }
        return bytes;
    }

    // Red, green and blue of a pixel of the file, three bytes.
    std::string pixel(const std::string &file, std::size_t x, std::size_t y) const {
        const char *row = &file[pixelsAt() + y * rowBytes()];
        const char *colour = row + 3 * x;
        if (bits <= 8) {
            std::size_t index = 0;
            for (std::size_t bit = x * bits; bit < (x + 1) * bits; ++bit) {
                index = 2 * index + (row[bit / 8] >> (7 - bit % 8) & 1);
            }
            colour = index < entries() ? &file[54 + 4 * index] : nullptr;
        }
        const bool black = colour == nullptr || compression != 0 || bits == 16 || bits == 32;
        return black ? std::string(3, '\0') : std::string{colour[2], colour[1], colour[0]};
    }

    // Rows of the lower left part with `channels` bytes a pixel, padded to a multiple of `unit`.
    std::string rows(const std::string &file, int columns, int count, std::size_t channels,
                     std::size_t unit) const {
        std::string all;
        for (int y = 0; y < count; ++y) {
            for (int x = 0; x < columns; ++x) {
                all += (pixel(file, x, y) + '\xFF').substr(0, channels);
            }
            all.resize((all.size() + unit - 1) / unit * unit);
        }
        return all;
    }
};

struct Free {
    void operator()(void *block) const { slFree(block); }
};

// What a loader leaves behind. Outputs start as rubbish, which must not stay.
struct Loaded {
    int result = 0;
    int width = -1;
    int height = -1;
    std::unique_ptr<unsigned char, Free> pixels;
    std::unique_ptr<BITMAPINFO, Free> info;

    bool holds(const std::string &bytes) const {
        return result == 1 && std::memcmp(pixels.get(), bytes.data(), bytes.size()) == 0;
    }
};

template <int channels>
Loaded load(int (*loader)(const char *, int *, int *, unsigned char (**)[channels])) {
    Loaded loaded;
    auto *pixels = reinterpret_cast<unsigned char(*)[channels]>(&loaded);
    loaded.result = loader("E:\\p.bmp", &loaded.width, &loaded.height, &pixels);
    loaded.pixels.reset(reinterpret_cast<unsigned char *>(pixels));
    EXPECT_EQ(loaded.result, pixels != nullptr && loaded.width > 0 && loaded.height > 0 ? 1 : 0);
    return loaded;
}

Loaded loadBmp(char convert) {
    Loaded loaded;
    auto *bits = reinterpret_cast<unsigned char *>(&loaded);
    auto *info = reinterpret_cast<BITMAPINFO *>(&loaded);
    loaded.result = slLoadBMP("E:\\p.bmp", &bits, &info, convert);
    loaded.pixels.reset(bits);
    loaded.info.reset(info);
    EXPECT_EQ(loaded.result, bits != nullptr ? 1 : 0);
    EXPECT_EQ(loaded.result, info != nullptr ? 1 : 0);
    return loaded;
}

class Bitmaps : public testing::Test {
protected:
    std::string write(const std::string &file) {
        test::writeBytes(drive.path("p.bmp"), file);
        return file;
    }

    test::TempDrive drive;
};

TEST_F(Bitmaps, EveryDepthAndWidthLoadsPixelByPixel) {
    std::vector<Bmp> bitmaps = {
        {700, 200, 24},      {45000, 2, 24}, // more than is converted at once, also as one row
        {19, 4, 8, 7},       {19, 4, 4, 0},  // a table shorter than the pixels require
        {6, 4, 24, 300},                     // a table where none is needed
        {6, 4, 8, -1, 5, 1},                 // compressed
        {3, 2, 24, -1, 24},
    };
    for (const std::uint16_t bits : {1, 4, 8, 16, 24, 32}) {
        for (const std::int32_t width : {1, 2, 3, 4, 5, 7, 8, 9, 33}) {
            bitmaps.push_back({width, 3, bits});
        }
    }
    for (const Bmp &bmp : bitmaps) {
        SCOPED_TRACE(std::to_string(bmp.width) + " pixels of bits " + std::to_string(bmp.bits));
        const std::string file = write(bmp.file() + "more");
        const Loaded rgba = load(&slLoadBmpPicture);
        const Loaded rgb = load(&slLoadBmpPicture3D);
        const Loaded rows = loadBmp(1);
        EXPECT_TRUE(rgba.holds(bmp.rows(file, bmp.width, bmp.height, 4, 4)));
        EXPECT_TRUE(rgb.holds(bmp.rows(file, bmp.width, bmp.height, 3, 1)));
        EXPECT_TRUE(rows.holds(bmp.rows(file, bmp.width, bmp.height, 3, 4)));
        EXPECT_EQ(rgba.width * 10 + rgba.height, bmp.width * 10 + bmp.height);
        EXPECT_EQ(std::memcmp(rows.info.get(), file.data() + 14, bmp.pixelsAt() - 14), 0);
    }
}

TEST_F(Bitmaps, TextureIsTheLowerLeftPowerOfTwoPart) {
    const int sizes[][4] = {
        {300, 100, 256, 64}, {256, 256, 256, 256}, {1, 1, 1, 1}, {255, 2, 128, 2}};
    for (const auto &[width, height, columns, rows] : sizes) {
        for (const std::uint16_t bits : {4, 24, 32}) {
            const Bmp bmp{width, height, bits};
            const std::string file = write(bmp.file());
            const Loaded texture = load(&slLoadBmpTexture);
            EXPECT_TRUE(texture.holds(bmp.rows(file, columns, rows, 4, 4)));
            EXPECT_EQ(texture.width, columns);
            EXPECT_EQ(texture.height, rows);
        }
    }
    const int inputs[][2] = {{INT32_MAX, 1 << 30}, {(1 << 29) - 1, 1 << 28}, {0, 0}, {-5, 0}};
    for (const auto &[input, output] : inputs) {
        int width = -1;
        int height = -1;
        slNormalizeTextureSize(input, 3, &width, &height);
        EXPECT_EQ(width, output);
        EXPECT_EQ(height, 2);
    }
}

TEST_F(Bitmaps, PixelsComeAsStoredWithoutConversion) {
    for (const Bmp &bmp : {Bmp{5, 3, 8}, Bmp{5, -3, 24}, Bmp{5, 3, 32, 3, 11, 3}}) {
        const std::string file = write(bmp.file());
        const std::size_t size = bmp.sizeImage != 0 ? bmp.sizeImage : bmp.rowBytes() * 3;
        for (const char convert : {'\0', '\2', '\xFF'}) {
            const Loaded loaded = loadBmp(convert);
            EXPECT_TRUE(loaded.holds(file.substr(bmp.pixelsAt(), size)));
            EXPECT_EQ(loaded.info->bmiHeader.biHeight, bmp.height);
        }
    }
}

std::string changed(const Bmp &bmp, std::size_t at, std::size_t count, char value) {
    return bmp.file().replace(at, count, count, value);
}

TEST_F(Bitmaps, DamagedFileFailsAndOnlyAFailedConversionIsTold) {
    const Bmp good{9, 3, 1};
    std::vector<std::string> noBitmaps = {
        changed(good, 1, 1, 'A'),     changed(good, 10, 1, 53), // the pixels begin in the header
        changed(good, 13, 1, '\x7F'),                           // or behind the end
        Bmp{9, 3, 1, -1, 13}.file(),                            // a byte more than there is
        changed(good, 34, 4, '\xFF'),
    };
    for (std::size_t size = 0; size < good.file().size(); ++size) {
        noBitmaps.push_back(good.file().substr(0, size));
    }
    std::vector<std::string> notConvertible = {
        Bmp{5, -3, 24}.file(),
        Bmp{5, 0, 24}.file(),
        changed({5, 3, 8}, 18, 4, '\xFF'),    // width -1
        changed({5, 3, 8}, 18, 4, '\0'),      // width 0
        Bmp{5, 3, 8, -1, 23}.file(),          // a byte less than the rows need
        changed({5, 3, 0, 0}, 18, 8, '\x3F'), // a black picture far beyond the size of the file
    };
    const std::string complaint = "Could not convert bitmap to RGB!\n";
    for (const auto *files : {&noBitmaps, &notConvertible}) {
        const bool told = files == &notConvertible;
        std::string complaints;
        for (int call = 0; told && call < 4; ++call) {
            complaints += complaint;
        }
        for (const std::string &file : *files) {
            write(file);
            testing::internal::CaptureStdout();
            EXPECT_EQ(loadBmp(0).result, told ? 1 : 0) << "as stored it may be had";
            EXPECT_EQ(loadBmp(1).result + load(&slLoadBmpPicture).result, 0);
            EXPECT_EQ(load(&slLoadBmpPicture3D).result + load(&slLoadBmpTexture).result, 0);
            EXPECT_EQ(testing::internal::GetCapturedStdout(), complaints);
        }
    }
    std::filesystem::remove(drive.path("p.bmp"));
    EXPECT_EQ(loadBmp(1).result, 0);
}

TEST_F(Bitmaps, EveryFlippedBitAndExtremeSizeIsSurvived) {
    const std::string file = Bmp{9, 2, 4, 16, 16}.file();
    std::vector<std::string> files;
    for (std::size_t bit = 0; bit < 8 * file.size(); ++bit) {
        files.push_back(file);
        files.back()[bit / 8] = static_cast<char>(file[bit / 8] ^ (1 << bit % 8));
    }
    const std::int32_t sizes[] = {INT32_MIN, -1, 0, 1, 0x10000, INT32_MAX};
    for (std::size_t i = 0; i < 144; ++i) { // pairs of sizes, with four depths
        files.push_back(Bmp{9, 2, 24}.file());
        std::memcpy(&files.back()[18], &sizes[i % 6], 4);
        std::memcpy(&files.back()[22], &sizes[i / 6 % 6], 4);
        constexpr std::uint16_t depths[] = {0, 1, 24, 0xFFFF};
        std::memcpy(&files.back()[28], &depths[i / 36], 2);
    }
    testing::internal::CaptureStdout();
    int loaded = 0;
    for (const std::string &damaged : files) {
        write(damaged);
        loaded += loadBmp(1).result + loadBmp(0).result + load(&slLoadBmpPicture).result;
        loaded += load(&slLoadBmpTexture).result;
    }
    testing::internal::GetCapturedStdout();
    EXPECT_GT(loaded, 0);
}

} // namespace
