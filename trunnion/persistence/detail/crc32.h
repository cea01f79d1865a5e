// The CRC-32 of Ethernet, zip and PNG.
#pragma once

#include <cstddef>
#include <cstdint>

namespace trunnion::detail {

// CRC-32 of `length` bytes: polynomial 0xEDB88320 (reflected), start value and final inversion
// 0xFFFFFFFF. The nine characters "123456789" give 0xCBF43926.
std::uint32_t crc32(const unsigned char *bytes, std::size_t length);

} // namespace trunnion::detail
