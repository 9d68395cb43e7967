#pragma once

#include <string>

/// The seconds that an operand or an option means. Throws UsageError when it is not a time.
double TimeOperand(const std::string& text);

/// In single precision; what is too large for it becomes its largest number.
float ToFloat(double value);
