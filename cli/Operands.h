#pragma once

#include "cli/Arguments.h"
#include "cli/TimeText.h"

#include <optional>
#include <string>

/// What is quiet: samples below a share of full scale.
struct LevelOperand {
    float share = 0.0F;  ///< above 0
    bool isAuto = false; ///< to be found from the recording itself
};

// What a text means, given as an operand or as an option. Each throws UsageError, which tells what
// may be written instead.

TimePoint TimeOperand(const std::string& text);
double DurationOperand(const std::string& text); ///< seconds
/// A share of full scale ("0.01"), decibels ("-46dB") or "auto".
LevelOperand ParseLevelOperand(const std::string& text);

/// The whole number from 1 to `most` that an option means, or `otherwise` where it was not given.
int CountOption(const Arguments& arguments, Option option, int otherwise, int most);

/// The seconds that an option means, or `otherwise`.
double DurationOption(const Arguments& arguments, Option option, double otherwise);

/// In single precision; what is too large for it becomes its largest number.
float ToFloat(double value);
