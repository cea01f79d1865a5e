// Keys of the hashes beside the lists of a mesh.
#pragma once

#include <cstdint>

namespace trunnion::detail {

// Scrambles the bits of a key so that neighbouring keys fall far apart (the finalizer of splitmix64
// by Sebastiano Vigna, 2015).
constexpr std::uint64_t scramble(std::uint64_t key) {
    key = (key ^ (key >> 30)) * 0xBF58476D1CE4E5B9U;
    key = (key ^ (key >> 27)) * 0x94D049BB133111EBU;
    return key ^ (key >> 31);
}

// One key of three numbers.
constexpr std::uint64_t hashKey(long long x, long long y, long long z) {
    std::uint64_t key = scramble(static_cast<std::uint64_t>(x));
    key = scramble(key + static_cast<std::uint64_t>(y));
    return scramble(key + static_cast<std::uint64_t>(z));
}

} // namespace trunnion::detail
