// The nine slot arrays under scripts of operations, held against the plain model.
#include "fuzz/support/entry.h"
#include "fuzz/support/script.h"
#include "tests/support/slot_run.h"

namespace {

template <class Rules>
void runScript(fuzz::Script script) {
    test::SlotRun<Rules> run;
    while (!script.isAtEnd()) {
        const char *difference = run.step(script);
        fuzz::require(difference == nullptr, difference);
    }
}

template <class... Rules>
void runAll(const fuzz::Script &script, test::TypeList<Rules...> /*classes*/) {
    (runScript<Rules>(script), ...);
}

} // namespace

void fuzz::run(const std::string &input) {
    runAll(Script(input), test::AllSlotRules());
}

std::vector<std::string> fuzz::seeds() {
    std::string script;
    for (int i = 0; i < 400; ++i) {
        script += static_cast<char>(i * i / 5 + i);
    }
    return {script};
}
