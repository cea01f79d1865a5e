// Lists in compressed files. The checksums keep nearly every changed file from being unpacked, so
// the same bytes are tried once more as what a good file unpacks to.
#include "fuzz/support/lists.h"

void fuzz::run(const std::string &input) {
    runOnList(Form::compressed, input);
    if (input.size() < 2) {
        return;
    }
    const std::string packed = fileWrittenBy(Form::compressed, [&](TqIOCL &stream) {
        stream.OutputSM(input.data() + 1, static_cast<int>(input.size()) - 1, 0);
    });
    runOnList(Form::compressed, input[0] + packed);
}

std::vector<std::string> fuzz::seeds() {
    std::vector<std::string> all = listSeeds(Form::compressed);
    for (const std::string &unpacked : listSeeds(Form::binary)) {
        all.push_back(unpacked);
    }
    return all;
}
