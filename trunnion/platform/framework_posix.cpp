// Message boxes on POSIX. Without a handler of the host's a text goes, in this order, to a person
// at a desktop (one of the common dialog programs, if it is installed and reaches a display), to a
// person at a terminal, or to standard error. The first two wait for an answer; where there is no
// person nothing waits.
#include "trunnion/platform/display_text.h"
#include "trunnion/platform/framework.h"
#include "trunnion/platform/large_pages.h"
#include "trunnion/platform/system.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <iconv.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

// Some systems leave it to the program to declare this.
extern char **environ; // NOLINT(readability-redundant-declaration)

namespace {

std::atomic<int (*)(const char *, unsigned int)> messageBoxHandler{nullptr};

constexpr int buttonOk = 1;

// `text` converted from one character set to another; false if it holds bytes that are none of
// `from`, or the system knows no such conversion.
bool convert(const std::string &text, const char *from, std::string &converted) {
    iconv_t conversion = iconv_open("UTF-8", from);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): its own way of failing
    if (conversion == reinterpret_cast<iconv_t>(-1)) {
        return false;
    }
    converted.resize(4 * text.size());
    std::string source = text;
    char *in = source.data();
    char *out = converted.data();
    std::size_t inLeft = source.size();
    std::size_t outLeft = converted.size();
    const bool whole =
        iconv(conversion, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
    iconv_close(conversion);
    converted.resize(converted.size() - outLeft);
    return whole;
}

// Runs a program and waits for it. False if it could not be run or did not end with success.
bool run(const char *const *arguments) {
    pid_t child = 0;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", 1 /* for writing */, 0);
    const int failure = posix_spawn(&child, arguments[0], &actions, nullptr,
                                    const_cast<char *const *>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    return failure == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

bool askAtDesktop(const std::string &text) {
    const std::string zenityText = "--text=" + text;
    const char *const zenity[] = {"/usr/bin/zenity", "--info", "--no-markup", zenityText.c_str(),
                                  nullptr};
    const char *const kdialog[] = {"/usr/bin/kdialog", "--msgbox", text.c_str(), nullptr};
    const char *const xmessage[] = {"/usr/bin/xmessage", "-center", text.c_str(), nullptr};
    for (const char *const *program : {zenity, kdialog, xmessage}) {
        if (access(program[0], X_OK) == 0) {
            return run(program);
        }
    }
    return false;
}

// A terminal with a person: both ways lead to it, and this process is the one that the person types
// to.
bool askAtTerminal(const std::string &text) {
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0 ||
        tcgetpgrp(STDIN_FILENO) != getpgrp()) {
        return false;
    }
    std::fprintf(stderr, "%s\n[Enter] ", text.c_str());
    char typed = 0;
    while (typed != '\n' && read(STDIN_FILENO, &typed, 1) == 1) {
    }
    return true;
}

} // namespace

namespace trunnion {

void SetMessageBoxHandler(int (*handler)(const char *text, unsigned int type)) {
    messageBoxHandler = handler;
}

} // namespace trunnion

namespace trunnion::detail {

void preferLargePages([[maybe_unused]] void *block, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
    if (size < fewestInLargePages) {
        return;
    }
    // From the start of the mapping on, the heap's own bytes before the block included: a mapping
    // in parts of two kinds could not be moved when the block grows, only copied.
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(block) % pageSize;
    madvise(static_cast<char *>(block) - offset, size + offset, MADV_HUGEPAGE);
#endif
}

} // namespace trunnion::detail

int AfxMessageBox(const char *text, unsigned int type, unsigned int /*help*/) {
    if (auto *handler = messageBoxHandler.load()) {
        return handler(text, type);
    }
    const std::string shown = trunnion::detail::displayText(text, convert);
    if (!askAtDesktop(shown) && !askAtTerminal(shown)) {
        std::fprintf(stderr, "%s\n", shown.c_str());
    }
    return buttonOk;
}
