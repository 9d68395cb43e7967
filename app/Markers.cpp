#include "app/Markers.h"

#include <algorithm>
#include <array>
#include <cstdio>

std::uint32_t MarkerColumn(unsigned long long position, unsigned int bytesPerPixel) {
    return static_cast<std::uint32_t>(position / bytesPerPixel);
}

int LabelLeft(std::uint32_t column, int waveWidth, int labelWidth) {
    constexpr int kDistance = 2; // from the line
    const auto x = static_cast<int>(column);
    return x < waveWidth / 2 ? x + kDistance : x - labelWidth - kDistance;
}

std::string ClockLabel(long long milliseconds) {
    constexpr long long kMinute = 60 * 1000;
    constexpr long long kHour = 60 * kMinute;
    if (milliseconds < kHour) {
        return TimeLabel(static_cast<std::uint32_t>(std::max(milliseconds, 0LL)));
    }
    const auto rest = static_cast<std::uint32_t>(milliseconds % kHour);
    const std::string label = TimeLabel(rest);
    const bool hasTens = rest >= 10 * kMinute;
    return std::to_string(milliseconds / kHour) + (hasTens ? ":" : ":0") + label;
}

std::string TimeLabel(std::uint32_t milliseconds) {
    const unsigned int seconds = milliseconds / 1000;
    std::array<char, sizeof "4294967295:59.999"> text{};
    std::snprintf(text.data(), text.size(), "%u:%02u.%03u", seconds / 60, seconds % 60,
                  milliseconds % 1000);
    return text.data();
}
