// Message boxes through SDL.
#include <cstddef>
#include <string>

#include <SDL_messagebox.h>
#include <SDL_stdinc.h>

#include "handlers.h"
#include "trunnion/platform/display_text.h"
#include "trunnion/platform/framework.h"
#include "trunnion/platform/system.h"

namespace {

constexpr int buttonOk = 1;
constexpr unsigned int iconMask = 0xF0;
constexpr unsigned int iconError = 0x10;
constexpr unsigned int iconWarning = 0x30;

// `text` converted to UTF-8; false if it holds bytes that are none of `from`, or the system knows
// no such conversion.
bool convert(const std::string &text, const char *from, std::string &converted) {
    SDL_iconv_t conversion = SDL_iconv_open("UTF-8", from);
    if (conversion ==
        reinterpret_cast<SDL_iconv_t>(-1)) { // NOLINT(performance-no-int-to-ptr): its way to fail
        return false;
    }
    converted.resize(4 * text.size());
    const char *in = text.data();
    char *out = converted.data();
    std::size_t inLeft = text.size();
    std::size_t outLeft = converted.size();
    const std::size_t result = SDL_iconv(conversion, &in, &inLeft, &out, &outLeft);
    SDL_iconv_close(conversion);
    converted.resize(converted.size() - outLeft);
    return result != SDL_ICONV_ERROR && result != SDL_ICONV_E2BIG && result != SDL_ICONV_EILSEQ &&
           result != SDL_ICONV_EINVAL;
}

Uint32 boxKind(unsigned int type) {
    switch (type & iconMask) {
    case iconError:
        return SDL_MESSAGEBOX_ERROR;
    case iconWarning:
        return SDL_MESSAGEBOX_WARNING;
    default:
        return SDL_MESSAGEBOX_INFORMATION;
    }
}

} // namespace

namespace trunnion::detail {

std::string &messageBoxTitle() {
    static std::string title;
    return title;
}

int showMessageBox(const char *text, unsigned int type) {
    const std::string shown = displayText(text, convert);
    if (SDL_ShowSimpleMessageBox(boxKind(type), messageBoxTitle().c_str(), shown.c_str(),
                                 nullptr) == 0) {
        return buttonOk;
    }
    SetMessageBoxHandler(nullptr);
    const int button = AfxMessageBox(text, type);
    SetMessageBoxHandler(&showMessageBox);
    return button;
}

} // namespace trunnion::detail
