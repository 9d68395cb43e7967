#pragma once

#include "audio/PeakLevels.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Eight samples in one register (GCC and Clang); the compilers do not find this by themselves, and
/// what they do instead costs a seventh of the time that decoding takes.
using Lanes = std::int16_t __attribute__((vector_size(16)));
inline constexpr std::size_t kLanes = sizeof(Lanes) / sizeof(std::int16_t);

inline Lanes Lower(Lanes a, Lanes b) {
    return a < b ? a : b;
}

inline Lanes Higher(Lanes a, Lanes b) {
    return a > b ? a : b;
}

/// Makes the first two lanes the extremes of the even and of the odd ones.
template <typename Choose>
Lanes Fold(Lanes lanes, const Choose& choose) {
    lanes = choose(lanes, __builtin_shufflevector(lanes, lanes, 4, 5, 6, 7, 0, 1, 2, 3));
    return choose(lanes, __builtin_shufflevector(lanes, lanes, 2, 3, 0, 1, 6, 7, 4, 5));
}

/// The even and the odd samples' peaks; as the number of lanes is even, a lane always holds the
/// same side. Magnitudes are put together once, where extremes would have to be twice, which counts
/// for few samples; they are negative here, as these reach further.
/// @param count  an even number, kLanes at least
inline PeakSamples MeasurePairs(const std::int16_t* samples, std::size_t count) {
    using Bits = std::uint16_t __attribute__((vector_size(16))); // wrap around
    Lanes lowest{};
    const auto add = [&lowest](const std::int16_t* from) {
        Lanes lanes;
        std::memcpy(&lanes, from, sizeof lanes);
        lowest = Lower(lowest, Lower(lanes, Lanes(Bits{} - Bits(lanes))));
    };
    const std::int16_t* const last = samples + count - kLanes;
    for (const std::int16_t* from = samples; from < last; from += kLanes) {
        add(from);
    }
    add(last); // some once more
    lowest = Fold(lowest, Lower);
    return {-int{lowest[0]}, -int{lowest[1]}};
}
