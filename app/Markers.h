#pragma once

#include <cstdint>
#include <string>

// The marker lines over the wave strip, and their labels.

/// How a marker looks.
struct MarkerStyle {
    std::uint32_t color;       ///< red in the low byte, green in the middle, blue in the high one
    std::uint32_t labelOffset; ///< pixels from the strip's top to the label's
};

inline constexpr MarkerStyle kStartMarker{0xFFFF00, 12};
inline constexpr MarkerStyle kEndMarker{0x00FFFF, 24};
inline constexpr MarkerStyle kCurrentMarker{0xFFFFFF, 0};

/// The column of the strip that a position falls in. The last position may fall into the one
/// behind the strip.
/// @param position       bytes
/// @param bytesPerPixel  more than 0
std::uint32_t MarkerColumn(unsigned long long position, unsigned int bytesPerPixel);

/// The left edge of a marker's label: to the right of the line in the strip's left half, otherwise
/// to the left of it.
int LabelLeft(std::uint32_t column, int waveWidth, int labelWidth);

/// A time as minutes, seconds and milliseconds, such as 62:03.004: what the strip has room for.
std::string TimeLabel(std::uint32_t milliseconds);

/// A time as people say it, with hours where there are any: 1:02:03.004, 2:03.004.
std::string ClockLabel(long long milliseconds);
