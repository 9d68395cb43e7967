#pragma once

#include "platform/Desktop.h"

#include <string>

/// Tells on standard error what went wrong: one line, led by the program's name.
void ReportError(const std::string& text);

/// The same, about a file.
void ReportError(const std::string& file, const std::string& problem);

/// The desktop of a terminal: alerts are reported.
class TerminalDesktop : public Desktop {
public:
    void ShowAlert(const std::string& headline, const std::string& text) override;
};
