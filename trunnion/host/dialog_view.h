// What the windows of a host share: fields of dialogs, zoom and pan with the mouse, sound, the
// material of drawn lines, and a clock.
//
// All of it belongs to the thread of the user interface, but for the clock, which any may read.
#pragma once

#include "trunnion/export.h"
#include "trunnion/platform/point.h"
#include "trunnion/platform/window.h"

// Fields of a dialog. Saving goes from the field to the value, loading from the value to the field
// (CDataExchange::m_bSaveAndValidate). Of a field 31 characters are read. One that holds no such
// number ends the exchange by CDataExchange::Fail, without a message, and the value stays as it
// was; so does a control that the dialog lacks.

// An integer. What follows `prompt`, which is not used, depends on `format` and on the direction:
//
//   format      saving            loading
//   %d   %ld    int *             int
//   %u   %lu    unsigned int *    unsigned int
//   %sd         short *           short
//   %su         short *           unsigned short
//
// The letter l stands for 32 bits on every system. By any other format saving fails, and loading
// leaves the field empty.
// NOLINTNEXTLINE(cert-dcl50-cpp): callers know it in this form
TRUNNION_API void slDDX_TextWithFormat(CDataExchange *exchange, int control, const char *format,
                                       unsigned int prompt, ...);

// A real number. Saving stores it in `place`: as a float if `precision` is 6, else as a double; a
// number beyond the range of the type becomes the largest in it. Loading shows `value` with
// `precision` significant digits, in the form of "%g"; more than 24 count as 24, less than none as
// 6.
TRUNNION_API void slTextFloatFormat(CDataExchange *exchange, int control, void *place, double value,
                                    int precision);

// The mouse.

// The position of a pixel as a fraction of the client area: (0, 0) is its upper left corner, (1, 1)
// its lower right. The fraction of a width or height that is not above 0 is 0.
TRUNNION_API void slGetRealPosM(CWnd *window, float *x, float *y, int pixelX, int pixelY);

// The factor by which a horizontal drag zooms, always above 0: 1 without movement. 500 pixels to
// the right of the origin are worth twice the size at the origin, 500 to the left and beyond next
// to nothing.
TRUNNION_API float slGetScale(const CPoint &origin, const CPoint &from, const CPoint &to);

// The shift for a drag, 0.02 for each pixel: `dx` to the right, `dy` upward, although rows of
// pixels are counted downward.
TRUNNION_API void slGetPanDistance(const CPoint &from, const CPoint &to, float *dx, float *dy);

// Sound, drawing, clock.

// Plays a sound without waiting for its end:
//
//   mode 1   again and again
//   mode 2   once
//   mode 3   ends the sound that plays; `file` is not looked at
//   other    nothing
//
// Null or an empty name plays nothing.
TRUNNION_API void slPlayWavSoundM(char *file, int mode);

// Makes the ambient, diffuse and specular material of front faces a medium grey, in the OpenGL
// context that is current.
TRUNNION_API void slSetCorlorForLines();

// Milliseconds of a clock that never steps back and wraps around after 2^32 of them.
TRUNNION_API unsigned int tqGetMMTickCount();

// Milliseconds since tqGetMMTickCount gave `start`, across a wrap of the clock, too.
TRUNNION_API unsigned int slGetSystemTimeAndElapse(unsigned int start);
