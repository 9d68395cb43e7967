#pragma once

#include "cli/Arguments.h"

#include <cstddef>
#include <string>
#include <vector>

// The one table of what the program understands. Parsing, usage lines, help, the manual page and
// the completions of the shells are all made from it.

/// What a value or an operand is, for whoever completes it.
enum class ValueKind { None, Text, Source, Output, Folder, Picture, List, Format, Command };

/// An option, the same for all commands that take it.
struct OptionInfo {
    Option option;
    const char* name;  ///< as it is typed: "--json", "-q"
    const char* value; ///< how the usage names its value; null for one that takes none
    ValueKind kind;    ///< of the value
    const char* summary;
};

/// A command line that works as it stands, and what it is good for.
struct Example {
    const char* purpose;
    const char* line;
};

struct CommandInfo {
    const char* name;
    std::vector<const char*> forms; ///< what follows the name, one for each way to call it
    std::size_t leastOperands;
    std::size_t mostOperands;
    std::vector<ValueKind> operands;  ///< the last one stands for all that follow
    std::vector<Option> options;      ///< those that the forms name, then the common ones
    const char* summary;              ///< one sentence
    std::vector<const char*> details; ///< paragraphs
    std::vector<Example> examples;
    int (*run)(const Arguments&); ///< throws UsageError for operands that make no sense
};

const std::vector<OptionInfo>& Options();
const std::vector<CommandInfo>& Commands();

/// How the parts of a command line are written, for every command: a heading and its paragraphs.
struct Topic {
    const char* heading;
    std::vector<const char*> paragraphs;
};
const std::vector<Topic>& Topics();

/// The values that --format takes.
const std::vector<const char*>& FormatNames();

const OptionInfo& FindOption(Option option);

/// @return null for a name that no command has
const CommandInfo* FindCommand(const std::string& name);
