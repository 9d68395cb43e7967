#pragma once

#include <cstdint>
#include <span>

#define XXH_INLINE_ALL // no library to be linked
#include <xxhash.h>

/// What bytes are known by. Not made to withstand whoever looks for two of the same hash.
inline std::uint64_t HashOf(std::span<const std::uint8_t> bytes, std::uint64_t seed = 0) {
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}
