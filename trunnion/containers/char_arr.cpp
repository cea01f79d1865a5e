#include "trunnion/containers/char_arr.h"

CharArr::~CharArr() = default;

int CharArr::FindItemM(char c, int *idx, int from) const {
    const char *end = data() + bound;
    const char *found = std::find(data() + std::clamp(from, 0, bound), end, c);
    *idx = found != end ? static_cast<int>(found - data()) : SL_DELETED_INT;
    return found != end ? 1 : 0;
}
