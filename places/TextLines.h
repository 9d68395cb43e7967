#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The parts one behind the other.
std::string Concat(std::initializer_list<std::string_view> parts);

/// A line of a text, without its end.
struct TextLine {
    std::string text;
    std::size_t number = 0; ///< from 1

    bool IsBlank() const { return text.find_first_not_of(" \t") == std::string::npos; }
};

/// Lines end in LF or CRLF, the last one perhaps in neither.
std::vector<TextLine> SplitLines(const std::string& text);

/// The parts between separators: one more than there are separators.
std::vector<std::string> SplitAt(std::string_view text, char separator);

/// The number that digits mean, no more than nine of them; none for another text.
[[nodiscard]] std::optional<unsigned int> ParseDigits(std::string_view text);

/// The finite number of 0 or more that a text means, such as "0.5" or "1e-3"; none for another one.
[[nodiscard]] std::optional<double> ParseNumber(std::string_view text);

/// The same, without an exponent.
[[nodiscard]] std::optional<double> ParseDecimal(std::string_view text);

/// Seconds as they are written everywhere: with six decimals.
std::string SecondsText(double seconds);
