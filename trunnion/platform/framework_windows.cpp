// Message boxes on Windows. Without a handler of the host's and without a desktop that a person
// sees, the text goes to standard error and nothing waits.
#include "trunnion/platform/framework.h"
#include "trunnion/platform/large_pages.h"
#include "trunnion/platform/system.h"

#include <atomic>
#include <cstdio>
#include <string>

#include <windows.h>

namespace {

std::atomic<int (*)(const char *, unsigned int)> messageBoxHandler{nullptr};

constexpr UINT codePageGbk = 936;

// The library's texts are GBK; what is not is taken to be in the code page of the system.
std::wstring wideText(const char *text) {
    for (const UINT codePage : {codePageGbk, static_cast<UINT>(CP_ACP)}) {
        const DWORD strict = codePage == codePageGbk ? MB_ERR_INVALID_CHARS : 0;
        const int length = MultiByteToWideChar(codePage, strict, text, -1, nullptr, 0);
        if (length > 0) {
            std::wstring wide(static_cast<std::size_t>(length), L'\0');
            MultiByteToWideChar(codePage, strict, text, -1, wide.data(), length);
            wide.pop_back();
            return wide;
        }
    }
    return {};
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
    if (!hasVisibleDesktop()) {
        std::fprintf(stderr, "%s\n", text);
        return IDOK;
    }
    return MessageBoxW(nullptr, wideText(text).c_str(), L"", type | MB_TASKMODAL);
}
