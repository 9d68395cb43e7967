#pragma once

#include "adaptor/BackgroundWork.h"
#include "adaptor/SessionJournal.h"
#include "adaptor/TemporaryFiles.h"

#include <optional>
#include <string>

/// What of a window's work is known outside its process: that it lives, its journal, and whether
/// one of a dead session waits to be restored.
class Session {
public:
    /// Begins with what dead sessions of this user have left: removes, on another thread, their
    /// temporary and half-written files.
    /// @param folder     of the journals
    /// @param path       the opened file
    /// @param temporary  where this session's edits live
    Session(const std::string& folder, const std::string& path, const TemporaryFiles& temporary);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session(); ///< the journal stays; after it the session's temporary files are nobody's

    SessionJournal& Journal() { return m_journal; }
    /// The opened file as it was when the session began.
    const FileState& OpenedFile() const { return m_openedFile; }
    /// The journal of a session that died while it had the same file open.
    std::optional<SessionJournal::Left>& Left() { return m_findings.left; }

private:
    const FileState m_openedFile;
    SessionJournal::Findings m_findings;
    SessionJournal m_journal;
    const LockFile m_lock; // beside the temporary files, for whoever shares their folder
    BackgroundWork m_sweep;
};
