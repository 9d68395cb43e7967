#pragma once

#include "cli/CommandTable.h"

#include <string>

/// The usage lines of a command, each with its end; "Usage: " leads the first one.
std::string UsageText(const CommandInfo& command);

/// The usage line of the program, which names the commands.
std::string ProgramUsageText();

/// All about one command.
std::string HelpText(const CommandInfo& command);

/// All commands in brief, and what holds for every one.
std::string ProgramHelpText();
