// Lists in binary files.
#include "fuzz/support/lists.h"

void fuzz::run(const std::string &input) {
    runOnList(Form::binary, input);
}

std::vector<std::string> fuzz::seeds() {
    return listSeeds(Form::binary);
}
