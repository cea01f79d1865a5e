// Reading Windows bitmap files (BMP) as pictures and as textures.
//
// Rows come out in the order of the file, the bottom row first. Uncompressed bitmaps of 1, 4, 8 and
// 24 bits are converted; a compressed one or one of another depth gives a black picture and no
// failure. A colour that the file's table lacks is black.
//
// Results are 1, or 0 if the file cannot be opened, is no bitmap, ends early or has sizes that
// contradict its length. Where pixels are converted also for a width or height below 1, a
// `biSizeImage` too small for the rows, a black picture far larger than such a file could describe,
// and exhausted memory: these are told on the standard output. With 0 the blocks are null and sizes
// are left unwritten; with 1 the caller releases every block with slFree.
#pragma once

#include "trunnion/export.h"
#include "trunnion/platform/bitmap_info.h"

// Pixels and header. With `convert` 1 the pixels are red, green, blue, each row padded with zeros
// to a multiple of 4 bytes; otherwise they are as stored in the file. `*info` holds the header and
// the colour table as stored.
TRUNNION_API int slLoadBMP(const char *path, unsigned char **bits, BITMAPINFO **info, char convert);

// Red, green, blue and the alpha 255, rows without padding.
TRUNNION_API int slLoadBmpPicture(const char *path, int *width, int *height,
                                  unsigned char (**pixels)[4]);

// Red, green, blue, rows without padding.
TRUNNION_API int slLoadBmpPicture3D(const char *path, int *width, int *height,
                                    unsigned char (**pixels)[3]);

// As slLoadBmpPicture, but only the lower left part of the size that slNormalizeTextureSize gives:
// the picture is cut, not scaled.
TRUNNION_API int slLoadBmpTexture(const char *path, int *width, int *height,
                                  unsigned char (**pixels)[4]);

// For each size the largest power of two that does not exceed it; 0 for a size below 1.
TRUNNION_API void slNormalizeTextureSize(int width, int height, int *outWidth, int *outHeight);
