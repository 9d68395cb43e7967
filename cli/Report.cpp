#include "cli/Report.h"

#include "places/PrintableText.h"

#include <cstdio>
#include <unistd.h>

namespace {

bool areRemarksWanted = true; // main thread, before any other begins

void ReportLine(const std::string& text) {
    // What stands on the line is how far the work was.
    const char* wipeLine = isatty(STDERR_FILENO) != 0 ? kWipeLine : "";
    std::fprintf(stderr, "%sklipra-cli: %s\n", wipeLine, text.c_str());
}

} // namespace

void ReportError(const std::string& text) {
    ReportLine(text);
}

void ReportError(const std::string& file, const std::string& problem) {
    ReportLine(Quoted(file) + ": " + problem);
}

void ReportWarning(const std::string& file, const std::string& problem) {
    if (areRemarksWanted) {
        ReportLine("warning: " + Quoted(file) + ": " + problem);
    }
}

void ReportWarnings(const std::string& file, const std::vector<CutWarning>& warnings) {
    for (const CutWarning warning : warnings) {
        ReportWarning(file, DescribeWarning(warning));
    }
}

void WantRemarks(bool wanted) {
    areRemarksWanted = wanted;
}

bool AreRemarksWanted() {
    return areRemarksWanted;
}

int TerminalDesktop::ShowAlert(const std::string& /*headline*/, const std::string& text,
                               const std::vector<std::string>& /*buttons*/) {
    std::string line;
    for (const char c : text) {
        c == '\n' ? line += ": " : line += c;
    }
    ReportError(Printable(line));
    return -1; // nobody is there to choose
}

std::string TerminalDesktop::AskOutputPath(const std::string& /*folder*/,
                                           const std::string& /*name*/,
                                           const std::string& /*extension*/) {
    return "";
}

int SilentDesktop::ShowAlert(const std::string& /*headline*/, const std::string& /*text*/,
                             const std::vector<std::string>& /*buttons*/) {
    return -1;
}

std::string SilentDesktop::AskOutputPath(const std::string& /*folder*/, const std::string& /*name*/,
                                         const std::string& /*extension*/) {
    return "";
}
