#pragma once

#include "cutting/CutFailure.h"
#include "platform/Desktop.h"

#include <string>
#include <vector>

/// Takes a terminal back to the beginning of a line and wipes it.
inline constexpr char kWipeLine[] = "\r\033[K";

/// What to say about a file that is neither.
inline constexpr char kUnknownFormat[] = "neither an mp3 nor a wav file by its extension";

/// Tells on standard error what went wrong: one line, led by the program's name.
void ReportError(const std::string& text);

/// The same, about a file.
void ReportError(const std::string& file, const std::string& problem);

/// Tells about a file that was done all the same, unless messages of that kind are not wanted.
void ReportWarning(const std::string& file, const std::string& problem);

/// The same about each thing that is odd about an MPEG audio file.
void ReportWarnings(const std::string& file, const std::vector<CutWarning>& warnings);

/// Whether progress and warnings are wanted; they are, unless told otherwise.
void WantRemarks(bool wanted);
bool AreRemarksWanted();

/// The desktop of a terminal: alerts are reported, and nobody is asked for a file.
class TerminalDesktop : public Desktop {
public:
    int ShowAlert(const std::string& headline, const std::string& text,
                  const std::vector<std::string>& buttons) override;
    std::string AskOutputPath(const std::string& folder, const std::string& name,
                              const std::string& extension) override;
};

/// While it lives nothing is shown: what the parser and the cutters show stands in CutFailure too,
/// in words and with the file at fault.
class SilentDesktop : public Desktop {
public:
    SilentDesktop() : m_before(InstallDesktop(this)) {}
    SilentDesktop(const SilentDesktop&) = delete;
    SilentDesktop& operator=(const SilentDesktop&) = delete;
    ~SilentDesktop() override { InstallDesktop(m_before); }

    int ShowAlert(const std::string& headline, const std::string& text,
                  const std::vector<std::string>& buttons) override;
    std::string AskOutputPath(const std::string& folder, const std::string& name,
                              const std::string& extension) override;

private:
    Desktop* m_before;
};
