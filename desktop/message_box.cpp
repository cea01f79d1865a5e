// Message boxes through SDL.
#include <cstddef>
#include <string>

#include <SDL_messagebox.h>
#include <SDL_stdinc.h>

#include "handlers.h"
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

// The library's texts are GBK; a file name behind one comes from the system and may be UTF-8
// already. What is neither is shown as it is.
std::string displayText(const std::string &text) {
    std::string shown;
    if (convert(text, "UTF-8", shown)) {
        return shown;
    }
    const std::size_t split = text.find(": ");
    if (split != std::string::npos) {
        return displayText(text.substr(0, split)) + ": " + displayText(text.substr(split + 2));
    }
    return convert(text, "GBK", shown) ? shown : text;
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
    const std::string shown = displayText(text);
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
