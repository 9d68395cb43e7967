#include "cli/TimeText.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

namespace {

constexpr double kSixty = 60.0; // seconds in a minute, minutes in an hour

std::vector<std::string_view> SplitAtColons(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t colon = 0; (colon = text.find(':')) != std::string_view::npos;) {
        parts.push_back(text.substr(0, colon));
        text.remove_prefix(colon + 1);
    }
    parts.push_back(text);
    return parts;
}

std::optional<double> ParseDigits(std::string_view text, std::chars_format format) {
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, format);
    if (error != std::errc() || stop != end || !std::isfinite(value) || std::signbit(value)) {
        return std::nullopt;
    }
    return value;
}

// One part of several: only the last one may have a fraction.
std::optional<double> ParsePart(std::string_view text, bool isLast) {
    const std::size_t digits = text.find_first_not_of("0123456789");
    const bool isWhole = digits == std::string_view::npos;
    if (isLast ? text.substr(0, digits).size() != 2 : !isWhole) {
        return std::nullopt;
    }
    return ParseDigits(text, std::chars_format::fixed);
}

} // namespace

std::optional<double> ParseNumber(const std::string& text) {
    return ParseDigits(text, std::chars_format::general);
}

std::optional<double> ParseTime(const std::string& text) {
    const std::vector<std::string_view> parts = SplitAtColons(text);
    if (parts.size() == 1) {
        return ParseNumber(text);
    }
    if (parts.size() > 3) {
        return std::nullopt;
    }
    double seconds = 0.0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto value = ParsePart(parts[i], i + 1 == parts.size());
        if (!value || (i > 0 && *value >= kSixty)) {
            return std::nullopt;
        }
        seconds = seconds * kSixty + *value;
    }
    return std::isfinite(seconds) ? std::optional(seconds) : std::nullopt;
}
