// Lists in text files.
#include "fuzz/support/lists.h"

void fuzz::run(const std::string &input) {
    runOnList(Form::text, input);
}

std::vector<std::string> fuzz::seeds() {
    return listSeeds(Form::text);
}
