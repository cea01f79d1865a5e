// A line on the terminal that tells how far the work is. Silent when standard error is no terminal.
#pragma once

#include <cstdio>

#include <unistd.h>

class Progress {
public:
    // `work` names what is being done, `size` is how much of it there is, in any unit.
    Progress(const char *work, std::size_t size) : what(work), total(size) {}
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    // Wipes the line away.
    ~Progress() {
        if (shown >= 0) {
            std::fprintf(stderr, "\r\033[K");
        }
    }

    void show(std::size_t done) {
        const int percent = total == 0 ? 100 : static_cast<int>(100 * done / total);
        if (!terminal || percent == shown) {
            return;
        }
        shown = percent;
        std::fprintf(stderr, "\r%s: %d%%", what, percent);
        std::fflush(stderr);
    }

private:
    const char *what;
    std::size_t total;
    bool terminal = isatty(STDERR_FILENO) == 1;
    int shown = -1;
};
