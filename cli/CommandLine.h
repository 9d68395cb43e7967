#pragma once

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

/// The words of a command line after the command's name. An option that was not given is empty.
struct Arguments {
    std::vector<std::string> operands;
    bool json = false;
    std::optional<std::string> level;
    std::optional<std::string> time;
    std::optional<std::string> width;
    std::optional<std::string> zoom;
};

/// Runs the command that the words name, results to standard output, messages to standard error.
/// @return the exit status
int RunCommandLine(int argc, char** argv);
