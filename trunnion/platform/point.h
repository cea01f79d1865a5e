// tagPOINT, a point of a window or a bitmap in pixels, and CPoint, the class around it.
#pragma once

#if defined(_WIN32)
#include <windef.h> // the system's own tagPOINT has the same layout
#else
#include <cstdint>

struct tagPOINT {
    std::int32_t x;
    std::int32_t y;
};
#endif

// A point that starts at the origin.
class CPoint : public tagPOINT {
public:
    CPoint() : CPoint(0, 0) {}
    CPoint(int left, int top) : tagPOINT{left, top} {}
};
