#include "trunnion/containers/detail/table.h"

#include "trunnion/platform/large_pages.h"

namespace trunnion::detail {

void preferLargeTable(void *block, std::size_t size) {
    preferLargePages(block, size);
}

} // namespace trunnion::detail
