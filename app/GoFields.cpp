#include "app/GoFields.h"

#include "app/ReadNumber.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr int kSecondsAMinute = 60;
constexpr int kMillisecondsASecond = 1000;

/// Truncated towards zero; the nearest 32-bit number for what has none.
std::int32_t Truncate(double value) {
    constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(value, kLeast, kMost));
}

} // namespace

GoFields FillGoFields(double seconds) {
    const std::int32_t whole = Truncate(seconds);
    const std::int32_t milliseconds = Truncate(seconds * kMillisecondsASecond);
    return {std::to_string(whole / kSecondsAMinute), std::to_string(whole % kSecondsAMinute),
            std::to_string(milliseconds % kMillisecondsASecond)};
}

double ReadGoFields(const GoFields& fields) {
    // In 32 bits, where an absurd number of minutes wraps; unsigned, as wrapping is defined there.
    const auto minutes = static_cast<std::uint32_t>(ReadInteger(fields.minutes));
    const auto seconds = static_cast<std::uint32_t>(ReadInteger(fields.seconds));
    const auto whole = static_cast<std::int32_t>(minutes * kSecondsAMinute + seconds);
    return whole + ReadInteger(fields.milliseconds) / static_cast<double>(kMillisecondsASecond);
}
