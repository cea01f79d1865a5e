// Message boxes on POSIX.
#include "trunnion/platform/framework.h"
#include "trunnion/platform/system.h"

#include <atomic>
#include <cstdio>

namespace {

std::atomic<int (*)(const char *, unsigned int)> messageBoxHandler{nullptr};

constexpr int buttonOk = 1;

} // namespace

namespace trunnion {

void SetMessageBoxHandler(int (*handler)(const char *text, unsigned int type)) {
    messageBoxHandler = handler;
}

} // namespace trunnion

int AfxMessageBox(const char *text, unsigned int type, unsigned int /*help*/) {
    if (auto *handler = messageBoxHandler.load()) {
        return handler(text, type);
    }
    std::fprintf(stderr, "%s\n", text);
    return buttonOk;
}
