#pragma once

#include <string>
#include <vector>

/// What a run of the program left behind.
struct CliResult {
    int status = -1; ///< exit status; -1 when it was ended by a signal
    std::string out;
    std::string err;
};

/// Runs the built klipra-cli with these arguments.
/// @param workingFolder  where it runs; empty: here
CliResult RunCli(const std::vector<std::string>& arguments, const std::string& workingFolder = "");
