#pragma once

#include <stdexcept>
#include <string>
#include <vector>

/// A place that a list names: where a piece begins.
struct ListedPlace {
    double seconds = 0.0;
    std::string title{};  ///< of the piece that begins here, UTF-8; empty where it has none
    std::size_t line = 0; ///< of the list, from 1
    bool isEnd = false;   ///< the end of a region, behind which nothing is named
};

/// A list makes no sense. The text names the line.
class ListError : public std::runtime_error {
public:
    ListError(std::size_t line, const std::string& problem)
        : std::runtime_error("line " + std::to_string(line) + ": " + problem) {}
};

/// Reads a list of places, of whatever kind it is: a CUE sheet, labels of Audacity, or CSV with a
/// column "seconds".
/// @param bytes  UTF-8, with or without a byte order mark, or Shift_JIS; lines end in LF or CRLF
/// @return in ascending order, none twice; the first one may lie at 0
/// Throws ListError when it is none of these, or not ascending.
[[nodiscard]] std::vector<ListedPlace> ParsePlaceList(const std::string& bytes);
