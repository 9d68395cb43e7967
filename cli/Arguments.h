#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// Exit statuses of the program.
enum ExitStatus : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// A command was called in a way that it does not understand.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What options mean; how they are spelled stands in the command table.
enum class Option {
    Finish,
    Quiet,
    Every,
    At,
    Level,
    Time,
    LeastPiece,
    Tags,
    Json,
    Format,
    Width,
    Zoom,
    Silent,
    NoReplace,
    DryRun,
    Help,
};

struct CommandInfo;

/// The words of a command line behind the command's name.
struct Arguments {
    std::vector<std::string> operands;
    std::map<Option, std::string> options; ///< with their values, "" where they take none

    bool Has(Option option) const { return options.contains(option); }
    std::optional<std::string> Value(Option option) const {
        const auto found = options.find(option);
        return found == options.end() ? std::nullopt : std::optional(found->second);
    }
};

/// Sorts words into operands and options of a command. Options may stand before and behind the
/// operands, up to "--"; a long one may be shortened as long as it is the only one that begins so.
/// Where help is asked for, nothing else is judged.
/// Throws UsageError.
Arguments ParseArguments(const CommandInfo& command, const std::vector<std::string>& words);
