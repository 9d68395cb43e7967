#pragma once

#include <string>

// Parts of the manual page, in mdoc(7), as the command table has them.

std::string ManualSynopsis();
std::string ManualCommands();
std::string ManualTopics();
std::string ManualExamples();
