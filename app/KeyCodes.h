#pragma once

#include <cstdint>

/// The keys that the main window's content view hands on, by the numbers that a keyboard's keys
/// have whatever is printed on them.
namespace KeyCode {

inline constexpr std::uint16_t kSpace = 49;
inline constexpr std::uint16_t kLeftArrow = 123;
inline constexpr std::uint16_t kRightArrow = 124;
inline constexpr std::uint16_t kOther = 0xFFFF; ///< any key that nothing is done for

} // namespace KeyCode

/// The code of a key.
/// @param qtKey  a Qt::Key
std::uint16_t KeyCodeOf(int qtKey);
