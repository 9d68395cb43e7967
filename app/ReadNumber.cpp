#include "app/ReadNumber.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace {

/// What std::from_chars reads: it knows neither blanks nor a plus sign in front.
std::string_view NumberPart(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    text.remove_prefix(begin == std::string_view::npos ? text.size() : begin);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    return text;
}

template <typename Number>
Number ReadFinite(std::string_view text) {
    const std::string_view number = NumberPart(text);
    Number value = 0;
    std::from_chars(number.data(), number.data() + number.size(), value);
    return std::isfinite(value) ? value : 0; // "inf" and "nan" are words, not numbers
}

} // namespace

std::int32_t ReadInteger(std::string_view text) {
    const std::string_view number = NumberPart(text);
    std::int32_t value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        return number[0] == '-' ? std::numeric_limits<std::int32_t>::min()
                                : std::numeric_limits<std::int32_t>::max();
    }
    return value;
}

double ReadDouble(std::string_view text) {
    return ReadFinite<double>(text);
}

float ReadFloat(std::string_view text) {
    return ReadFinite<float>(text);
}
