#pragma once

#include "cli/Arguments.h"

// The commands. Each has the operands that its usage line names, and returns the exit status; it
// throws UsageError for operands that it does not understand.

int RunInfo(const Arguments& arguments);
int RunExtract(const Arguments& arguments);
int RunCut(const Arguments& arguments);
int RunSplit(const Arguments& arguments);
int RunScenes(const Arguments& arguments);
int RunCompare(const Arguments& arguments);
int RunWave(const Arguments& arguments);
int RunHelp(const Arguments& arguments);
