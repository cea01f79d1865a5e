// A bitmap file is read a few rows at a time: each is converted while it is still in the cache, so
// that the only large block is the result.
#include "trunnion/host/bitmaps.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "trunnion/containers/item_base.h"
#include "trunnion/platform/files.h"
#include "trunnion/platform/large_pages.h"

namespace {

constexpr std::int64_t fileHeaderBytes = 14;
constexpr std::int64_t infoHeaderBytes = 40;

struct Release {
    void operator()(void *block) const { slFree(block); }
};
template <class T>
using Block = std::unique_ptr<T, Release>;
using Bytes = Block<unsigned char>;

// A block of slMalloc; null also for a size that slMalloc cannot be asked for.
Bytes allocate(std::int64_t size) {
    const std::int64_t bytes = std::max<std::int64_t>(size, 1);
    if (bytes > UINT_MAX) {
        return nullptr;
    }
    Bytes block(static_cast<unsigned char *>(slMalloc(static_cast<unsigned int>(bytes))));
    if (block != nullptr) {
        trunnion::detail::preferLargePages(block.get(), static_cast<std::size_t>(bytes));
    }
    return block;
}

// A bitmap file whose header and colour table have been read. The position is at the pixels, and
// the file is long enough for them.
struct OpenBitmap {
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file{nullptr, &std::fclose};
    Block<BITMAPINFO> info;
    std::int64_t tableBytes = 0;
    std::int64_t imageBytes = 0;

    const BITMAPINFOHEADER &header() const { return info->bmiHeader; }
};

bool readBytes(std::FILE *file, void *out, std::int64_t size) {
    const auto count = static_cast<std::size_t>(size);
    return std::fread(out, 1, count, file) == count;
}

// Bytes of a row in the file: whole words of 32 bits.
std::int64_t rowBytes(std::int64_t width, int bitCount) {
    return (width * bitCount + 31) / 32 * 4;
}

// Offset of the pixels in the file; -1 if this is no bitmap.
std::int64_t readFileHeader(std::FILE *file) {
    unsigned char bytes[fileHeaderBytes];
    if (!readBytes(file, bytes, fileHeaderBytes) || bytes[0] != 'B' || bytes[1] != 'M') {
        return -1;
    }
    std::uint32_t offset = 0;
    std::memcpy(&offset, bytes + 10, sizeof offset);
    return offset;
}

// INT64_MAX for sizes whose product is beyond that, and of course beyond any file.
std::int64_t imageBytesOf(const BITMAPINFOHEADER &header) {
    if (header.biSizeImage != 0) {
        return header.biSizeImage;
    }
    const auto row = std::max<std::int64_t>(rowBytes(header.biWidth, header.biBitCount), 0);
    const std::int64_t height = header.biHeight;
    const std::int64_t rows = height < 0 ? -height : height;
    return row > 0 && rows > INT64_MAX / row ? INT64_MAX : row * rows;
}

// The record of the header is always there as a whole, so that a host may copy it, also where the
// file has no colour table.
bool readInfo(OpenBitmap &bitmap, std::int64_t size) {
    const std::int64_t blockBytes = std::max<std::int64_t>(size, sizeof(BITMAPINFO));
    Bytes block = allocate(blockBytes);
    if (!block) {
        return false;
    }
    std::memset(block.get() + size, 0, static_cast<std::size_t>(blockBytes - size));
    if (!readBytes(bitmap.file.get(), block.get(), size)) {
        return false;
    }
    bitmap.info.reset(reinterpret_cast<BITMAPINFO *>(block.release()));
    bitmap.tableBytes = size - infoHeaderBytes;
    bitmap.imageBytes = imageBytesOf(bitmap.header());
    return true;
}

bool openBitmap(const char *path, OpenBitmap &bitmap) {
    bitmap.file.reset(trunnion::detail::openFile(path, "rb"));
    if (!bitmap.file) {
        return false;
    }
    const std::int64_t fileBytes = trunnion::detail::remainingBytes(bitmap.file.get());
    const std::int64_t pixelsAt = readFileHeader(bitmap.file.get());
    return pixelsAt >= fileHeaderBytes + infoHeaderBytes && pixelsAt <= fileBytes &&
           readInfo(bitmap, pixelsAt - fileHeaderBytes) &&
           bitmap.imageBytes <= fileBytes - pixelsAt;
}

// True for a picture that is made of the file's pixels; any other is black.
bool hasColours(const BITMAPINFOHEADER &header) {
    const int bits = header.biBitCount;
    return header.biCompression == 0 && (bits == 1 || bits == 4 || bits == 8 || bits == 24);
}

// True if the file can hold a picture of the size in its header. A black picture needs no pixel of
// the file, but a large one has to be plausible: run-length coding gives at most 255 pixels for a
// byte.
bool sizesAgree(const OpenBitmap &bitmap) {
    const BITMAPINFOHEADER &header = bitmap.header();
    if (header.biWidth < 1 || header.biHeight < 1) {
        return false;
    }
    if (hasColours(header)) {
        return rowBytes(header.biWidth, header.biBitCount) <= bitmap.imageBytes / header.biHeight;
    }
    constexpr std::int64_t smallPicture = 1 << 20;
    const std::int64_t pixels = std::int64_t{header.biWidth} * header.biHeight;
    return pixels <= smallPicture || pixels / 255 <= bitmap.imageBytes;
}

// The colours of the table in the order of the result: red, green, blue and, of 4 channels, alpha.
template <int channels>
struct Palette {
    unsigned char colours[256][channels];

    explicit Palette(const OpenBitmap &bitmap) {
        unsigned char table[4 * 256] = {};
        const auto *block = reinterpret_cast<const unsigned char *>(bitmap.info.get());
        std::memcpy(
            table, block + infoHeaderBytes,
            static_cast<std::size_t>(std::min<std::int64_t>(bitmap.tableBytes, sizeof table)));
        for (std::size_t i = 0; i < 256; ++i) {
            const unsigned char colour[4] = {table[4 * i + 2], table[4 * i + 1], table[4 * i], 255};
            std::memcpy(colours[i], colour, channels);
        }
    }
};

template <int channels>
void swapRow(const unsigned char *in, unsigned char *out, std::size_t count) {
    for (const unsigned char *end = in + 3 * count; in != end; in += 3, out += channels) {
        const unsigned char blue = in[0];
        const unsigned char green = in[1];
        out[0] = in[2];
        out[1] = green;
        out[2] = blue;
        if constexpr (channels == 4) {
            out[3] = 255;
        }
    }
}

template <int bits, int channels>
void lookUpRow(const Palette<channels> &palette, const unsigned char *in, unsigned char *out,
               std::size_t count) {
    constexpr std::size_t perByte = 8 / bits;
    constexpr unsigned int mask = (1U << bits) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t shift = (perByte - 1 - i % perByte) * bits; // the leftmost is the highest
        const unsigned int index = in[i / perByte] >> shift & mask;
        std::memcpy(out + channels * i, palette.colours[index], channels);
    }
}

template <int channels>
void convertRow(int bits, const Palette<channels> &palette, const unsigned char *in,
                unsigned char *out, std::size_t count) {
    switch (bits) {
    case 1:
        return lookUpRow<1, channels>(palette, in, out, count);
    case 4:
        return lookUpRow<4, channels>(palette, in, out, count);
    case 8:
        return lookUpRow<8, channels>(palette, in, out, count);
    default:
        return swapRow<channels>(in, out, count);
    }
}

// The lower left part of a picture, as it lies in the result.
struct Target {
    std::int64_t width;
    std::int64_t height;
    std::int64_t stride; // bytes from row to row
};

template <int channels>
void fillBlack(const Target &target, unsigned char *out) {
    const std::int64_t size = target.stride * target.height;
    std::memset(out, 0, static_cast<std::size_t>(size));
    for (std::int64_t alpha = 3; channels == 4 && alpha < size; alpha += channels) {
        out[alpha] = 255;
    }
}

template <int channels>
bool slCopyBmpToRgb(const OpenBitmap &bitmap, const Target &target, unsigned char *out) {
    const int bits = bitmap.header().biBitCount;
    const Palette<channels> palette(bitmap);
    const auto width = static_cast<std::size_t>(target.width);
    const auto padding = static_cast<std::size_t>(target.stride) - width * channels;
    const std::int64_t fileRow = rowBytes(bitmap.header().biWidth, bits);
    constexpr std::int64_t cacheBytes = 1 << 17;
    const auto rowsAtOnce = std::clamp<std::int64_t>(cacheBytes / fileRow, 1, target.height);
    const Bytes rows = allocate(rowsAtOnce * fileRow);
    for (std::int64_t y = 0; y < target.height; y += rowsAtOnce) {
        const std::int64_t count = std::min(rowsAtOnce, target.height - y);
        if (!rows || !readBytes(bitmap.file.get(), rows.get(), count * fileRow)) {
            return false;
        }
        for (std::int64_t row = 0; row < count; ++row, out += target.stride) {
            convertRow<channels>(bits, palette, rows.get() + row * fileRow, out, width);
            std::memset(out + target.stride - padding, 0, padding);
        }
    }
    return true;
}

// The target's part of the picture, or null, told on the standard output, where there is none to be
// had.
template <int channels>
Bytes slConvertBmpToRgb(const OpenBitmap &bitmap, const Target &target) {
    Bytes pixels = sizesAgree(bitmap) ? allocate(target.stride * target.height) : nullptr;
    if (pixels && !hasColours(bitmap.header())) {
        fillBlack<channels>(target, pixels.get());
    } else if (pixels && !slCopyBmpToRgb<channels>(bitmap, target, pixels.get())) {
        pixels.reset();
    }
    if (!pixels) {
        std::fputs("Could not convert bitmap to RGB!\n", stdout);
    }
    return pixels;
}

Bytes slReadBmpFile(const OpenBitmap &bitmap, char convert) {
    const std::int64_t width = bitmap.header().biWidth;
    if (convert == 1) {
        return slConvertBmpToRgb<3>(bitmap, {width, bitmap.header().biHeight, rowBytes(width, 24)});
    }
    Bytes pixels = allocate(bitmap.imageBytes);
    const bool whole = pixels && readBytes(bitmap.file.get(), pixels.get(), bitmap.imageBytes);
    return whole ? std::move(pixels) : nullptr;
}

template <int channels>
int loadPicture(const char *path, bool asTexture, int *width, int *height,
                unsigned char (**pixels)[channels]) {
    *pixels = nullptr;
    OpenBitmap bitmap;
    if (!openBitmap(path, bitmap)) {
        return 0;
    }
    int columns = bitmap.header().biWidth;
    int rows = bitmap.header().biHeight;
    if (asTexture) {
        slNormalizeTextureSize(columns, rows, &columns, &rows);
    }
    Bytes block =
        slConvertBmpToRgb<channels>(bitmap, {columns, rows, std::int64_t{columns} * channels});
    if (!block) {
        return 0;
    }
    *width = columns;
    *height = rows;
    *pixels = reinterpret_cast<unsigned char(*)[channels]>(block.release());
    return 1;
}

int largestPowerOfTwo(int size) {
    return size < 1 ? 0 : static_cast<int>(std::bit_floor(static_cast<unsigned int>(size)));
}

} // namespace

int slLoadBMP(const char *path, unsigned char **bits, BITMAPINFO **info, char convert) {
    *bits = nullptr;
    *info = nullptr;
    OpenBitmap bitmap;
    Bytes pixels = openBitmap(path, bitmap) ? slReadBmpFile(bitmap, convert) : nullptr;
    if (!pixels) {
        return 0;
    }
    *bits = pixels.release();
    *info = bitmap.info.release();
    return 1;
}

int slLoadBmpPicture(const char *path, int *width, int *height, unsigned char (**pixels)[4]) {
    return loadPicture(path, false, width, height, pixels);
}

int slLoadBmpPicture3D(const char *path, int *width, int *height, unsigned char (**pixels)[3]) {
    return loadPicture(path, false, width, height, pixels);
}

int slLoadBmpTexture(const char *path, int *width, int *height, unsigned char (**pixels)[4]) {
    return loadPicture(path, true, width, height, pixels);
}

void slNormalizeTextureSize(int width, int height, int *outWidth, int *outHeight) {
    *outWidth = largestPowerOfTwo(width);
    *outHeight = largestPowerOfTwo(height);
}
