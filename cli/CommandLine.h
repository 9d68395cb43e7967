#pragma once

/// Runs the command that the words name, results to standard output, messages to standard error.
/// @return the exit status
int RunCommandLine(int argc, char** argv);
