#include "cli/TimeText.h"

#include "places/TextLines.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace {

constexpr double kSixty = 60.0; // seconds in a minute, minutes in an hour
constexpr std::string_view kDigits = "0123456789";

std::optional<double> Finite(double value) {
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// One part of several: only the last one may have a fraction.
std::optional<double> ParsePart(std::string_view text, bool isLast) {
    const std::size_t digits = text.find_first_not_of(kDigits);
    const bool isWhole = digits == std::string_view::npos;
    if (isLast ? text.substr(0, digits).size() != 2 : !isWhole) {
        return std::nullopt;
    }
    return ParseDecimal(text);
}

std::optional<double> ParseWithColons(const std::vector<std::string>& parts) {
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
    return Finite(seconds);
}

// Each unit at most once, in this order; a number behind another unit is below sixty, and only the
// last one may have a fraction.
std::optional<double> ParseWithUnits(std::string_view text) {
    constexpr std::string_view kUnits = "hms";
    double seconds = 0.0;
    std::size_t next = 0; // the unit that may come
    for (bool isFirst = true; !text.empty(); isFirst = false) {
        const std::size_t end = text.find_first_of(kUnits, 0);
        const std::size_t unit = end == std::string_view::npos ? end : kUnits.find(text[end], next);
        if (unit == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view number = text.substr(0, end);
        text.remove_prefix(end + 1);
        const bool isWhole = number.find_first_not_of(kDigits) == std::string_view::npos;
        const auto value = ParseDecimal(number);
        if (!value || (!isFirst && *value >= kSixty) || (!isWhole && !text.empty())) {
            return std::nullopt;
        }
        seconds += *value * std::pow(kSixty, static_cast<double>(kUnits.size() - 1 - unit));
        next = unit + 1;
    }
    return Finite(seconds);
}

} // namespace

double TimePoint::In(double lengthSeconds) const {
    return isFromEnd ? std::max(lengthSeconds - seconds, 0.0) : seconds;
}

std::optional<double> ParseDuration(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    if (text.find(':') != std::string::npos) {
        return ParseWithColons(SplitAt(text, ':'));
    }
    const bool hasUnit = text.find_last_of("hms") == text.size() - 1;
    return hasUnit ? ParseWithUnits(text) : ParseNumber(text);
}

std::optional<TimePoint> ParseTime(const std::string& text) {
    constexpr std::string_view kEnd = "end";
    if (!text.starts_with(kEnd)) {
        const auto seconds = ParseDuration(text);
        return seconds ? std::optional(TimePoint{*seconds}) : std::nullopt;
    }
    if (text == kEnd) {
        return TimePoint{0.0, true};
    }
    const auto back =
        text[kEnd.size()] == '-' ? ParseDuration(text.substr(kEnd.size() + 1)) : std::nullopt;
    return back ? std::optional(TimePoint{*back, true}) : std::nullopt;
}
