// A text of the library as a display wants it, whatever the system converts with.
//
// Internal: message boxes show what comes out of it.
#pragma once

#include <string>

namespace trunnion::detail {

// `text` in UTF-8. convert(text, from, converted) converts to UTF-8 and is false for bytes that are
// none of the character set `from`. The library's texts are GBK; a file name behind one comes from
// the system and may be UTF-8 already. What is neither is shown as it is.
template <class Convert>
std::string displayText(const std::string &text, const Convert &convert) {
    std::string shown;
    if (convert(text, "UTF-8", shown)) {
        return shown;
    }
    const std::size_t split = text.find(": ");
    if (split != std::string::npos) {
        return displayText(text.substr(0, split), convert) + ": " +
               displayText(text.substr(split + 2), convert);
    }
    return convert(text, "GBK", shown) ? shown : text;
}

} // namespace trunnion::detail
