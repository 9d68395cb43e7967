#include "cli/Operands.h"

#include "places/PrintableText.h"
#include "places/TextLines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <strings.h>

namespace {

// The share that decibels mean, which may be below 0; none for another text.
std::optional<double> ParseDecibels(const std::string& text) {
    constexpr std::size_t kUnitSize = 2;
    if (text.size() <= kUnitSize || strcasecmp(&text[text.size() - kUnitSize], "dB") != 0) {
        return std::nullopt;
    }
    const bool isBelow = text.starts_with('-');
    const bool hasSign = isBelow || text.starts_with('+');
    const auto decibels =
        ParseNumber(text.substr(hasSign ? 1 : 0, text.size() - kUnitSize - (hasSign ? 1 : 0)));
    constexpr double kDecibelsPerDecade = 20.0;
    return decibels ? std::optional(
                          std::pow(10.0, (isBelow ? -*decibels : *decibels) / kDecibelsPerDecade))
                    : std::nullopt;
}

} // namespace

TimePoint TimeOperand(const std::string& text) {
    const auto time = ParseTime(text);
    if (!time) {
        throw UsageError(Quoted(text) + " is not a time: write " + kTimeSpellings);
    }
    return *time;
}

double DurationOperand(const std::string& text) {
    const auto seconds = ParseDuration(text);
    if (!seconds) {
        throw UsageError(Quoted(text) + " is not a time: write " + kDurationSpellings);
    }
    return *seconds;
}

LevelOperand ParseLevelOperand(const std::string& text) {
    if (text == "auto") {
        return {.isAuto = true};
    }
    auto share = ParseNumber(text);
    if (!share) {
        share = ParseDecibels(text);
    }
    if (!share || !(*share > 0.0)) {
        throw UsageError(Quoted(text) + " is not a level: write a share of full scale above 0 "
                                        "(0.01), decibels (-46dB) or auto");
    }
    return {.share = std::max(ToFloat(*share), std::numeric_limits<float>::min())};
}

int CountOption(const Arguments& arguments, Option option, int otherwise, int most) {
    const auto text = arguments.Value(option);
    if (!text) {
        return otherwise;
    }
    int count = 0;
    const char* const end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, count);
    if (error != std::errc() || stop != end || count < 1 || count > most) {
        throw UsageError(Quoted(*text) + " is not a whole number from 1 to " +
                         std::to_string(most));
    }
    return count;
}

double DurationOption(const Arguments& arguments, Option option, double otherwise) {
    const auto text = arguments.Value(option);
    return text ? DurationOperand(*text) : otherwise;
}

float ToFloat(double value) {
    return static_cast<float>(std::min<double>(value, std::numeric_limits<float>::max()));
}
