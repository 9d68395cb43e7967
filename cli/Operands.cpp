#include "cli/Operands.h"

#include "cli/CommandLine.h"
#include "cli/TimeText.h"

#include <algorithm>
#include <limits>

double TimeOperand(const std::string& text) {
    const auto seconds = ParseTime(text);
    if (!seconds) {
        throw UsageError("'" + text + "' is not a time");
    }
    return *seconds;
}

float ToFloat(double value) {
    return static_cast<float>(std::min<double>(value, std::numeric_limits<float>::max()));
}
