#pragma once

#include <string>
#include <vector>

/// What the program asks of the desktop that it runs on.
///
/// A window program answers with dialogs, the command line tool on standard error, a test from a
/// script. Used on the main thread only, but for InstallThreadDesktop.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// Shows a message; returns when the person has dismissed it.
    /// @param headline  UTF-8
    /// @param text      UTF-8, may hold line breaks; may be empty
    /// @param buttons   their titles, UTF-8; at least one. The first is the default
    /// @return the index of the button chosen; -1 when the message was dismissed otherwise
    virtual int ShowAlert(const std::string& headline, const std::string& text,
                          const std::vector<std::string>& buttons) = 0;

    /// Asks for a file to write to, in a save panel; returns when the person has answered. Whoever
    /// implements it adds a missing extension and asks before an existing file is chosen.
    /// @param folder     where the panel starts
    /// @param name       the file name that it proposes, with the extension
    /// @param extension  the only one allowed, without a dot: mp3 or wav
    /// @return the path, UTF-8; empty when the person cancels
    virtual std::string AskOutputPath(const std::string& folder, const std::string& name,
                                      const std::string& extension) = 0;

    /// The same for a file of one of several kinds.
    /// @param extensions  without dots; the first one is added where none of them is there
    virtual std::string AskListPath(const std::string& folder, const std::string& name,
                                    const std::vector<std::string>& extensions) {
        return AskOutputPath(folder, name, extensions.front());
    }

    /// Asks for a file to open; empty when the person cancels, and where nobody can be asked.
    /// @param folder      where the panel starts
    /// @param extensions  of the files that are offered, without dots
    virtual std::string AskInputPath(const std::string& /*folder*/,
                                     const std::vector<std::string>& /*extensions*/) {
        return "";
    }

    /// Opens a file in a window of its own, with a process of its own.
    /// @return whether that has begun
    virtual bool OpenInWindow(const std::string& /*path*/) { return false; }
};

/// Makes this desktop the one that answers; null for none. The caller keeps it, and keeps it alive
/// until another one is installed.
/// @return the one that answered before; null for none
Desktop* InstallDesktop(Desktop* desktop);

/// Makes this desktop the one that answers what the calling thread has to say, whatever answers
/// others; null for none of its own. For threads other than the main one.
/// @return the one that answered before; null for none
Desktop* InstallThreadDesktop(Desktop* desktop);

/// Shows an error with the headline "Error" and a button "OK" on the installed desktop; on standard
/// error where there is none.
/// @param text  UTF-8
void ShowErrorMsg(const char* text);

/// Shows a message that is all headline, with a button "OK"; on standard error as above.
/// @param message  UTF-8
void ShowMsg(const std::string& message);

/// Asks a question on the installed desktop. See Desktop::ShowAlert; -1 where there is no desktop.
int AskQuestion(const std::string& headline, const std::string& text,
                const std::vector<std::string>& buttons);

/// Asks for a file to write to on the installed desktop; empty where there is none. See
/// Desktop::AskOutputPath.
std::string AskOutputPath(const std::string& folder, const std::string& name,
                          const std::string& extension);

/// Asks likewise; empty where there is no desktop. See Desktop::AskListPath, AskInputPath.
std::string AskListPath(const std::string& folder, const std::string& name,
                        const std::vector<std::string>& extensions);
std::string AskInputPath(const std::string& folder, const std::vector<std::string>& extensions);

/// See Desktop::OpenInWindow; false where there is no desktop.
bool OpenInWindow(const std::string& path);
