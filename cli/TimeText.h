#pragma once

#include <optional>
#include <string>

/// How times may be spelled, for messages.
inline constexpr char kDurationSpellings[] = "seconds (90, 12.5), [H:]M:SS[.fraction] (1:30.25) or "
                                             "1h2m3.5s";
inline constexpr char kTimeSpellings[] = "seconds (90, 12.5), [H:]M:SS[.fraction] (1:30.25), "
                                         "1h2m3.5s, end or end-T";

/// A place in a file, as it was asked for.
struct TimePoint {
    double seconds = 0.0;   ///< 0 or more: from the beginning, or back from the end
    bool isFromEnd = false; ///< "end" or "end-T"

    /// In seconds from the beginning; the beginning where the end is not that far away.
    double In(double lengthSeconds) const;
};

/// A finite time of 0 or more: "90", "12.5", [H:]M:SS[.fraction] such as "1:30.25", or hours,
/// minutes and seconds such as "1h2m3.5s", any of the three; none for another text.
[[nodiscard]] std::optional<double> ParseDuration(const std::string& text);

/// The same, or "end" or "end-T" with such a time T.
[[nodiscard]] std::optional<TimePoint> ParseTime(const std::string& text);
