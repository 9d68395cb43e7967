#include "adaptor/LevelColors.h"

#include <algorithm>
#include <bit>

LevelColors MakeLevelColors(int height) {
    constexpr int kFull = 255;
    LevelColors colors{};
    const int half = height / 2;
    const int last = std::min(half, static_cast<int>(colors.size()) - 1);
    for (int distance = 1; distance <= last; ++distance) {
        const int red = kFull * distance / half;
        const std::array<std::uint8_t, 4> bytes = {static_cast<std::uint8_t>(red),
                                                   static_cast<std::uint8_t>(kFull - red)};
        colors[static_cast<std::size_t>(distance)] = std::bit_cast<std::uint32_t>(bytes);
    }
    return colors;
}
