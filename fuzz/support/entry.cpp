// The calls of libFuzzer, and the seeds: `<program> --write-seeds <directory>` stores them and
// ends.
#include "fuzz/support/entry.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/support/temp_dir.h"

void fuzz::require(bool holds, const char *rule) {
    if (!holds) {
        std::fprintf(stderr, "broken rule: %s\n", rule);
        std::abort();
    }
}

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments) {
    if (*count < 3 || std::strcmp((*arguments)[1], "--write-seeds") != 0) {
        return 0;
    }
    int number = 0;
    for (const std::string &seed : fuzz::seeds()) {
        test::writeBytes((*arguments)[2] + ("/seed-" + std::to_string(++number)), seed);
    }
    std::exit(0);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    fuzz::run({reinterpret_cast<const char *>(bytes), size});
    return 0;
}
