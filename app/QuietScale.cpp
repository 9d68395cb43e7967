#include "app/QuietScale.h"

#include "engine/BlockReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr double kStepsPerDecibel = 2.0;
constexpr double kDecibelsPerDecade = 20.0;

} // namespace

float QuietLevelScale::LevelOf(int halfDecibels) {
    return static_cast<float>(std::pow(10.0, halfDecibels / kStepsPerDecibel / kDecibelsPerDecade));
}

int QuietLevelScale::StepOf(float level) {
    if (!(level > 0.0F)) {
        return kLeast;
    }
    const double steps =
        kDecibelsPerDecade * std::log10(static_cast<double>(level)) * kStepsPerDecibel;
    return static_cast<int>(
        std::lround(std::clamp(steps, static_cast<double>(kLeast), static_cast<double>(kMost))));
}

std::string QuietLevelScale::TextOf(int halfDecibels) {
    constexpr double kPercent = 100.0;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.1f dB (%.3f %%)", halfDecibels / kStepsPerDecibel,
                  static_cast<double>(LevelOf(halfDecibels)) * kPercent);
    return text.data();
}

float QuietLengthScale::SecondsOf(int blocks) {
    // Rounding must not make it a length that one block less fills.
    float seconds = static_cast<float>(blocks) * BlockReader::kBlockSeconds;
    while (seconds / BlockReader::kBlockSeconds < static_cast<float>(blocks)) {
        seconds = std::nextafter(seconds, static_cast<float>(kMost));
    }
    return seconds;
}

int QuietLengthScale::StepOf(float seconds) {
    if (!(seconds > 0.0F)) {
        return kLeast;
    }
    const float blocks = std::min(seconds / BlockReader::kBlockSeconds, static_cast<float>(kMost));
    return std::max(static_cast<int>(std::lround(blocks)), kLeast);
}
