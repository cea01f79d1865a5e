// The message box without a handler: a person at a terminal has to answer it, and where there is
// none nothing waits.
#include "trunnion/persistence/file_versions.h"

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

// Shows a message in a process without a display and ends it with a status that nothing else ends
// with.
[[noreturn]] void showAndExit(int code, const char *fileName) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    slFileMessage(code, fileName);
    _exit(42);
}

std::string readUntil(int descriptor, const std::string &end) {
    std::string text;
    char c;
    while (text.find(end) == std::string::npos && read(descriptor, &c, 1) == 1) {
        text += c;
    }
    return text;
}

TEST(MessageBoxPosix, PersonAtATerminalReadsTheTextAndAnswers) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) {
        GTEST_SKIP() << "this machine has no pseudo terminals";
    }
    if (child == 0) {
        showAndExit(107, "/tmp/\xC3\xA4.stl"); // a file name in UTF-8 behind a text in GBK
    }
    const std::string shown = readUntil(terminal, "[Enter]");
    EXPECT_NE(shown.find("\u6587\u4EF6\u8BFB\u53D6\u5931\u8D25: /tmp/\u00E4.stl"),
              std::string::npos)
        << shown;
    int status = 0;
    usleep(50000);
    EXPECT_EQ(waitpid(child, &status, WNOHANG), 0) << "it waits for the answer";
    ASSERT_EQ(write(terminal, "\n", 1), 1);
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 42);
    close(terminal);
}

TEST(MessageBoxPosix, WithoutAPersonTheTextGoesToStandardErrorAndNothingWaits) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
        dup2(ends[1], STDERR_FILENO);
        showAndExit(109, nullptr);
    }
    close(ends[1]);
    EXPECT_EQ(readUntil(ends[0], "\n"), "\u6587\u4EF6\u6253\u5F00\u5931\u8D25\n");
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 42);
    close(ends[0]);
}

} // namespace
