// BITMAPINFO, the header of a bitmap and the colours behind it, as they stand in a BMP file.
#pragma once

#if defined(_WIN32)
#include <windef.h> // the system's own records have the same layout
#include <wingdi.h>
#else
#include <cstdint>

struct RGBQUAD {
    std::uint8_t rgbBlue;
    std::uint8_t rgbGreen;
    std::uint8_t rgbRed;
    std::uint8_t rgbReserved;
};

struct BITMAPINFOHEADER {
    std::uint32_t biSize;  // bytes of the header, 40
    std::int32_t biWidth;  // pixels in a row
    std::int32_t biHeight; // rows, the bottom row first; below 0 the top row first
    std::uint16_t biPlanes;
    std::uint16_t biBitCount;    // bits of a pixel
    std::uint32_t biCompression; // 0 for none
    std::uint32_t biSizeImage;   // bytes of the pixels; may be 0 where nothing is compressed
    std::int32_t biXPelsPerMeter;
    std::int32_t biYPelsPerMeter;
    std::uint32_t biClrUsed;
    std::uint32_t biClrImportant;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1]; // the first of as many as there are
};
#endif
