#pragma once

#include <optional>
#include <string>

/// The seconds that a text means: "90", "12.5", or [H:]M:SS[.fraction] such as "1:30.25"; none when
/// it is no finite time of 0 or more.
std::optional<double> ParseTime(const std::string& text);

/// The finite number of 0 or more that a text means, such as "0.5" or "1e-3".
std::optional<double> ParseNumber(const std::string& text);
