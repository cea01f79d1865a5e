// tagPOINT, a point of a window or a bitmap in pixels, CPoint, the class around it, and tagRECT, a
// rectangle of such points.
#pragma once

#if defined(_WIN32)
#include <windef.h> // the system's own records have the same layout
#else
#include <cstdint>

struct tagPOINT {
    std::int32_t x;
    std::int32_t y;
};

// The right column and the bottom row lie just outside.
struct tagRECT {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};
#endif

// A point that starts at the origin.
class CPoint : public tagPOINT {
public:
    CPoint() : CPoint(0, 0) {}
    CPoint(int left, int top) : tagPOINT{left, top} {}
};
