#pragma once

#include "adaptor/SessionRecord.h"
#include "platform/LockFile.h"

#include <optional>
#include <set>
#include <string>
#include <sys/types.h>

/// The file in which a session's edits survive the program: NAME.json beside NAME.lock, which is
/// locked while the session lives. NAME is the process id, and more where that is taken.
///
/// The journal holds steps, not bytes. It is replaced at once and whole, and is on the disk when
/// Write returns. Only its owner can read it. One thread at a time.
class SessionJournal {
public:
    /// The folder of all journals of this user: $XDG_STATE_HOME/klipra/sessions, or that in
    /// ~/.local/state. Empty when there is no home.
    static std::string Folder();

    /// Takes a name that no other session has, living or dead; makes no journal yet. See IsOpen.
    explicit SessionJournal(const std::string& folder);
    /// The journal stays, unless Remove was called. Without one the lock has no purpose and goes.
    ~SessionJournal();
    SessionJournal(const SessionJournal&) = delete;
    SessionJournal& operator=(const SessionJournal&) = delete;

    /// Whether the session's edits can survive at all.
    bool IsOpen() const { return !m_path.empty(); }

    /// Replaces the journal; removes it where there are no steps.
    /// @return false when the record is not on the disk: the one before may be
    [[nodiscard]] bool Write(const SessionRecord& record) const;
    /// The session ends as it should: nothing is to be restored.
    void Remove() const;

    /// A journal whose session is dead, and which nobody else restores while this lives.
    struct Left {
        SessionRecord record;
        std::string path;
        LockFile lock;

        void Remove() const;
    };

    /// Makes a dead session's journal this one's, as it is: should this session die while it
    /// repeats the edits, they are still there.
    void TakeOver(Left&& left);

    /// What there is in the folder.
    struct Findings {
        std::optional<Left> left;      ///< the latest journal of a file that is as it was then
        std::set<pid_t> deadProcesses; ///< of sessions; a living one may have such an id by now
        std::set<pid_t> livingProcesses;
    };

    /// Looks at all journals. Removes those that are older than 30 days, and locks without one.
    static Findings LookAround(const std::string& folder, const FileState& file);

private:
    std::string m_path; // of the journal; empty when there can be none
    LockFile m_lock;
};
