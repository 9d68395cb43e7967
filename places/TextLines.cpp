#include "places/TextLines.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace {

std::optional<double> Parse(std::string_view text, std::chars_format format) {
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, format);
    if (error != std::errc() || stop != end || !std::isfinite(value) || std::signbit(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::string Concat(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::vector<std::string> SplitAt(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::vector<TextLine> SplitLines(const std::string& text) {
    std::vector<TextLine> lines;
    for (std::string& line : SplitAt(text, '\n')) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back({std::move(line), lines.size() + 1});
    }
    return lines;
}

std::optional<unsigned int> ParseDigits(std::string_view text) {
    constexpr std::size_t kMostDigits = 9;
    unsigned int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || text.size() > kMostDigits) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> ParseNumber(std::string_view text) {
    return Parse(text, std::chars_format::general);
}

std::optional<double> ParseDecimal(std::string_view text) {
    return Parse(text, std::chars_format::fixed);
}

std::string SecondsText(double seconds) {
    std::array<char, 400> text{}; // the largest number has 309 digits
    std::snprintf(text.data(), text.size(), "%.6f", seconds);
    return text.data();
}
