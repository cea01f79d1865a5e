#include "trunnion/containers/item_base.h"

#include <cstdlib>

#include "trunnion/persistence/line_io.h"
#include "trunnion/persistence/stream.h"

namespace {

constexpr int codeMemoryExhausted = 40;

void *reportIfNull(void *block) {
    if (block == nullptr) {
        tqErrorMessage(codeMemoryExhausted);
    }
    return block;
}

} // namespace

void *slMalloc(unsigned int size) {
    return reportIfNull(std::malloc(size));
}

void *slRealloc(void *ptr, unsigned int size) {
    return reportIfNull(std::realloc(ptr, size));
}

void slFree(void *ptr) {
    std::free(ptr);
}

int tqErrorMessage(int /*code*/) {
    return 0;
}

void TqBaseCL::FmInputOzkFileM(TqIOCL *stream) {
    stream->InputCM(&deleteTag);
}

void TqBaseCL::FmOutputOzkFileM(TqIOCL *stream) const {
    stream->OutputCM(&deleteTag);
}

int TqBaseCL::FmReadOzkFileM(std::FILE *file) {
    slFscanfC(file, "%d", &deleteTag);
    char rest[5];
    return slFgets(file, rest, sizeof rest);
}

int TqBaseCL::FmWriteOzkFileM(std::FILE *file) const {
    slFprintfC(file, "%5d\n", deleteTag);
    return 1;
}

int TqBaseCL::InitialM() {
    return 1;
}
