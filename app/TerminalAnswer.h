#pragma once

#include <string>
#include <vector>

/// What the program says on the terminal and then ends, without a window: its usage for --help, its
/// version for --version; empty for any other arguments.
[[nodiscard]] std::string TerminalAnswer(const std::vector<std::string>& arguments);
