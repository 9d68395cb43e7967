#pragma once

#include "platform/FolderHold.h"
#include "platform/WriteThrough.h"

#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <system_error>

/// How long a new file has to last.
enum class Lasting {
    Session, ///< no longer than the program: nobody needs it after a power cut
    ForGood, ///< on the disk when Commit has returned
    Grouped, ///< for good, with others: whoever makes them has a FileSystemSync before they are
             ///< written, which syncs before the first Commit, and calls SyncFoldersOf after the
             ///< last
};

/// A new file that takes the place of another one when it is complete, and leaves no trace when it
/// is not.
///
/// The new file has no name until it is complete, where the file system can do that, so that it is
/// gone with the process whatever ends it. Elsewhere, and where many are made at a time, it stands
/// beside its target under a hidden name that nothing had before. No link planted there is
/// followed, and the last step is a rename: the target is either the old file whole, or absent as
/// before, or the new file whole; after a power cut too where it is to last.
class FileReplacement {
public:
    /// How the names of this process's new files begin, in whatever folder.
    static std::string HiddenPrefix();
    /// A name that begins so, for something beside a target; nothing has had it before.
    static std::string HiddenNameBeside(const std::string& target);

    /// Removes the hidden files of this user that dead processes have left in a folder. Nothing
    /// where it is held: then one that lives may be among those that made them.
    static void RemoveAbandoned(const std::string& folder);

    /// Makes the new file, empty, with the target's permissions where there is a target, otherwise
    /// with those of the source, so that what is made of a private file is private.
    /// Fails, see GetError, when the target exists but is no regular file or not writable, or when
    /// no file can be made in its folder.
    FileReplacement(const std::string& target, const std::string& source,
                    Lasting lasting = Lasting::Session);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Removes the new file, unless it has replaced the target.
    ~FileReplacement();

    /// Where to write while this lives: OpenForWriting takes it. Empty when no file could be made.
    const std::string& GetPath() const { return m_path; }
    /// The hidden name, to be removed should the process end; empty when the file has none.
    const std::string& GetHiddenPath() const { return m_hiddenPath; }

    /// Why the constructor or Commit failed; false (no error) otherwise.
    const std::error_code& GetError() const { return m_error; }

    /// Waits until the new file, which must be closed, is on the disk; Commit does it where nobody
    /// has. For whoever can still be interrupted now, but not during Commit.
    [[nodiscard]] bool Sync();

    /// Puts the new file, which must be closed, in the target's place. Returns whether it did.
    [[nodiscard]] bool Commit();

private:
    bool CheckTarget();
    void Create(const std::string& source);
    bool CreateUnnamed(mode_t permissions);
    void CreateHidden(mode_t permissions);
    void TakeDescriptor(int descriptor);
    void CloseDescriptor();
    bool Link();
    bool LinkTo(const std::string& path) const;
    bool Fail();

    const std::string m_target;
    const Lasting m_lasting;
    std::string m_path;
    std::string m_hiddenPath;
    std::error_code m_error;
    std::optional<mode_t> m_permissions; // those of the target; none where there is no target
    int m_descriptor = -1;               // one of a hidden file need not be kept
    bool m_isSynced = false;
    std::shared_ptr<FolderHold> m_hold; // while there may be a hidden name
    std::shared_ptr<WriteThrough> m_writeThrough;
};
