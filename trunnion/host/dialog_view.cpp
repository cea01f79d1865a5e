#include "trunnion/host/dialog_view.h"

#include <GL/gl.h>

#include <algorithm>
#include <cfloat>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "trunnion/host/detail/simple_scan.h"
#include "trunnion/host/text_scan.h"
#include "trunnion/platform/user_interface.h"

using namespace trunnion::detail;

namespace {

// The text of a field, with its terminator.
constexpr int fieldSize = 32;
using FieldText = char[fieldSize];

void readField(const CWnd &control, FieldText &text) {
    control.GetWindowTextA(text, fieldSize);
    text[fieldSize - 1] = '\0';
}

// Prints the next argument. Arguments narrower than an int arrive as one.
void printInteger(FieldText &text, const char *format, std::va_list &arguments) {
    IntegerFormat wanted{};
    if (!parseIntegerFormat(format, wanted)) {
        text[0] = '\0';
    } else if (wanted.isUnsigned) {
        const unsigned int value = va_arg(arguments, unsigned int);
        std::snprintf(text, sizeof text, "%u",
                      wanted.isShort ? static_cast<unsigned short>(value) : value);
    } else {
        const int value = va_arg(arguments, int);
        std::snprintf(text, sizeof text, "%d", wanted.isShort ? static_cast<short>(value) : value);
    }
}

void storeReal(double value, bool isFloat, void *place) {
    if (isFloat) {
        const auto narrow = static_cast<float>(std::clamp<double>(value, -FLT_MAX, FLT_MAX));
        std::memcpy(place, &narrow, sizeof narrow);
    } else {
        const double finite = std::clamp(value, -DBL_MAX, DBL_MAX);
        std::memcpy(place, &finite, sizeof finite);
    }
}

float fraction(int pixel, int extent) {
    return extent > 0 ? static_cast<float>(static_cast<double>(pixel) / extent) : 0.0F;
}

// What a column is worth when the zoom began at `origin`: 1 there, never as little as 0.
double zoomAt(const CPoint &origin, const CPoint &position) {
    const double shifted = static_cast<double>(position.x) - origin.x + 500.0F;
    return std::max<double>(shifted * 0.002F, 0.0001F);
}

} // namespace

void slDDX_TextWithFormat(CDataExchange *exchange, int control, const char *format,
                          unsigned int prompt, ...) {
    CWnd *const field = exchange->PrepareEditCtrl(control);
    if (field == nullptr) {
        return;
    }
    FieldText text = {};
    std::va_list arguments;
    va_start(arguments, prompt);
    const bool isSaving = exchange->m_bSaveAndValidate != 0;
    void *const place = isSaving ? va_arg(arguments, void *) : nullptr;
    if (!isSaving) {
        printInteger(text, format, arguments);
    }
    va_end(arguments);

    if (!isSaving) {
        AfxSetWindowText(field, text);
        return;
    }
    readField(*field, text);
    if (slSimpleScanf(text, format, place) == 0) {
        exchange->Fail();
    }
}

void slTextFloatFormat(CDataExchange *exchange, int control, void *place, double value,
                       int precision) {
    CWnd *const field = exchange->PrepareEditCtrl(control);
    if (field == nullptr) {
        return;
    }
    FieldText text = {};
    if (exchange->m_bSaveAndValidate == 0) {
        // With sign, point and exponent 24 digits are what a field takes, 7 more than a double has.
        std::snprintf(text, sizeof text, "%.*g", std::min(precision, 24), value);
        AfxSetWindowText(field, text);
        return;
    }
    readField(*field, text);
    double number = 0.0;
    if (slSimpleFloatParse(text, number) == 0) {
        exchange->Fail();
        return;
    }
    storeReal(number, precision == 6, place);
}

void slGetRealPosM(CWnd *window, float *x, float *y, int pixelX, int pixelY) {
    tagRECT client{};
    window->GetClientRect(&client);
    *x = fraction(pixelX, client.right - client.left);
    *y = fraction(pixelY, client.bottom - client.top);
}

float slGetScale(const CPoint &origin, const CPoint &from, const CPoint &to) {
    return static_cast<float>(zoomAt(origin, to) / zoomAt(origin, from));
}

void slGetPanDistance(const CPoint &from, const CPoint &to, float *dx, float *dy) {
    *dx = static_cast<float>((static_cast<double>(to.x) - from.x) * 0.02);
    *dy = static_cast<float>((static_cast<double>(to.y) - from.y) * -0.02);
}

void slPlayWavSoundM(char *file, int mode) {
    if (mode == 3) {
        playSound(nullptr, 0);
        return;
    }
    if ((mode == 1 || mode == 2) && file != nullptr && *file != '\0') {
        playSound(file, mode == 1 ? soundAsync | soundLoop : soundAsync);
    }
}

void slSetCorlorForLines() {
    constexpr float grey[4] = {0.5F, 0.5F, 0.5F, 1.0F};
    for (const GLenum part : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}) {
        glMaterialfv(GL_FRONT, part, grey);
    }
}

unsigned int tqGetMMTickCount() {
    return tickCount();
}

unsigned int slGetSystemTimeAndElapse(unsigned int start) {
    return tickCount() - start;
}
