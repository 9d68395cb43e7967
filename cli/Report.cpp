#include "cli/Report.h"

#include <algorithm>
#include <cstdio>

void ReportError(const std::string& text) {
    std::fprintf(stderr, "klipra-cli: %s\n", text.c_str());
}

void ReportError(const std::string& file, const std::string& problem) {
    ReportError("'" + file + "': " + problem);
}

void TerminalDesktop::ShowAlert(const std::string& /*headline*/, const std::string& text) {
    std::string line;
    for (const char c : text) {
        c == '\n' ? line += ": " : line += c;
    }
    ReportError(line);
}
