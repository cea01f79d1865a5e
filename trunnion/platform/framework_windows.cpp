// Message boxes on Windows. Without a handler of the host's and without a desktop that a person
// sees or that can show a box, the text goes to standard error and nothing waits.
#include "trunnion/platform/display_text.h"
#include "trunnion/platform/framework.h"
#include "trunnion/platform/large_pages.h"
#include "trunnion/platform/system.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <string>

#include <windows.h>

namespace {

std::atomic<int (*)(const char *, unsigned int)> messageBoxHandler{nullptr};

constexpr UINT codePageGbk = 936;

// `text` in UTF-16; empty if `flags` is strict and the text holds bytes that are none of the code
// page.
std::wstring wideText(const std::string &text, UINT codePage, DWORD flags) {
    const int bytes = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(codePage, flags, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(codePage, flags, text.data(), bytes, wide.data(), length);
    return wide;
}

// What is not of the character set is taken to be in the code page of the system, in which the
// system gives its file names.
bool convert(const std::string &text, const char *from, std::string &converted) {
    const bool isUtf8 = std::strcmp(from, "UTF-8") == 0;
    std::wstring wide = wideText(text, isUtf8 ? CP_UTF8 : codePageGbk, MB_ERR_INVALID_CHARS);
    if (wide.empty() && !isUtf8) {
        wide = wideText(text, CP_ACP, 0);
    }
    const int units = static_cast<int>(wide.size());
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    converted.resize(static_cast<std::size_t>(length));
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, converted.data(), length, nullptr, nullptr);
    return !wide.empty() || text.empty();
}

// A service has a desktop that nobody sees.
bool hasVisibleDesktop() {
    USEROBJECTFLAGS flags{};
    DWORD length = 0;
    return GetUserObjectInformationA(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                     &length) != 0 &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

} // namespace

namespace trunnion {

void SetMessageBoxHandler(int (*handler)(const char *text, unsigned int type)) {
    messageBoxHandler = handler;
}

} // namespace trunnion

namespace trunnion::detail {

// The system gives them to privileged processes alone.
void preferLargePages(void * /*block*/, std::size_t /*size*/) {}

} // namespace trunnion::detail

int AfxMessageBox(const char *text, unsigned int type, unsigned int /*help*/) {
    if (auto *handler = messageBoxHandler.load()) {
        return handler(text, type);
    }
    const std::string shown = trunnion::detail::displayText(text, convert);
    const std::wstring wide = wideText(shown, CP_UTF8, 0);
    const int button =
        hasVisibleDesktop() ? MessageBoxW(nullptr, wide.c_str(), L"", type | MB_TASKMODAL) : 0;
    if (button > 0) {
        return button;
    }
    std::fprintf(stderr, "%s\n", shown.c_str());
    return IDOK;
}
