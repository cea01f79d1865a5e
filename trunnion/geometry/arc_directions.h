// In which direction an arc turns, for the kernel's functions and the curve records alike.
#pragma once

inline constexpr int CUR_DIR_CCW = 143; // counter-clockwise
inline constexpr int CUR_DIR_CW = 144;  // clockwise
