#pragma once

#include <string>

/// What the program asks of the desktop that it runs on.
///
/// A window program answers with dialogs, the command line tool on standard error, a test from a
/// script. Used on the main thread only.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// Shows a message with a single button "OK"; returns when the person has dismissed it.
    /// @param headline  UTF-8
    /// @param text      UTF-8, may hold line breaks
    virtual void ShowAlert(const std::string& headline, const std::string& text) = 0;
};

/// Makes this desktop the one that answers; null for none. The caller keeps it, and keeps it alive
/// until another one is installed.
void InstallDesktop(Desktop* desktop);

/// Shows an error with the headline "Error" on the installed desktop, on standard error where there
/// is none.
/// @param text  UTF-8
void ShowErrorMsg(const char* text);
