#pragma once

#include <cstdint>
#include <string_view>

// What a text field holds, as a number. Blanks in front are skipped, what follows the number is
// ignored, and a text that does not begin with one is 0. The decimal sign is a point everywhere.

/// A decimal integer; the nearest 32-bit number for one that has none.
std::int32_t ReadInteger(std::string_view text);

/// A decimal number, such as -0.5 or 1e-3; 0 for one beyond what the type holds.
double ReadDouble(std::string_view text);
float ReadFloat(std::string_view text);
