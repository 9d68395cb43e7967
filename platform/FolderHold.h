#pragma once

#include <memory>
#include <string>

/// While one lives, a folder holds unfinished files of a living process: whoever clears away what
/// dead ones have left there leaves it alone. The system ends it with the process, however that
/// ends.
///
/// It is a shared lock on the folder itself. Where folders cannot be locked nothing is held, and
/// nothing is cleared away either.
class FolderHold {
public:
    /// The hold of this process on a folder; one serves any number of files.
    /// Any thread.
    static std::shared_ptr<FolderHold> Of(const std::string& folder);

    /// Holds a folder alone, so that nobody makes an unfinished file there meanwhile; see IsHeld.
    static FolderHold Alone(const std::string& folder);

    FolderHold(const FolderHold&) = delete;
    FolderHold& operator=(const FolderHold&) = delete;
    FolderHold(FolderHold&& other) noexcept;
    FolderHold& operator=(FolderHold&&) = delete;
    ~FolderHold();

    bool IsHeld() const { return m_descriptor >= 0; }

private:
    FolderHold(const std::string& folder, int operation, int attempts);

    int m_descriptor = -1;
};
