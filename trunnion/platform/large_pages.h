// Memory of the system in large pages.
//
// Internal: the library's own code calls this, hosts do not.
#pragma once

#include <cstddef>

namespace trunnion::detail {

// Blocks from this size on are worth it.
inline constexpr std::size_t fewestInLargePages = 4U << 20;

// Asks the system to give a heap block of so many bytes, fresh or just grown, in large pages,
// where it has them: memory that is touched for the first time costs a system call's time for each
// page. Nothing for a smaller block; what the block holds does not change.
void preferLargePages(void *block, std::size_t size);

} // namespace trunnion::detail
