#pragma once

#include <string>

// Parts of the completions, as the command table has them.

std::string CommandWords(); ///< the commands' names, and what stands in their place

// For bash: elements of associative arrays, by the command's name.
std::string BashOptions();      ///< the options of a command
std::string BashOperands();     ///< what its operands are; the last one stands for all that follow
std::string BashValueOptions(); ///< by the option's name: what its value is

/// For zsh: a function for each command that completes its words, and the list of all.
std::string ZshCommands();
std::string ZshFunctions();

/// For fish: a line for each command, each of its options and each of its operands.
std::string FishLines();

std::string FormatWords(); ///< the values of --format
