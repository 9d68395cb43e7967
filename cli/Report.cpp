#include "cli/Report.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

void ReportError(const std::string& text) {
    // What stands on the line is how far the work was.
    const char* wipeLine = isatty(STDERR_FILENO) != 0 ? kWipeLine : "";
    std::fprintf(stderr, "%sklipra-cli: %s\n", wipeLine, text.c_str());
}

void ReportError(const std::string& file, const std::string& problem) {
    ReportError("'" + file + "': " + problem);
}

int TerminalDesktop::ShowAlert(const std::string& /*headline*/, const std::string& text,
                               const std::vector<std::string>& /*buttons*/) {
    std::string line;
    for (const char c : text) {
        c == '\n' ? line += ": " : line += c;
    }
    ReportError(line);
    return -1; // nobody is there to choose
}

std::string TerminalDesktop::AskOutputPath(const std::string& /*folder*/,
                                           const std::string& /*name*/,
                                           const std::string& /*extension*/) {
    return "";
}
