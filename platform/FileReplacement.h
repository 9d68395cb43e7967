#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <system_error>

/// A new file that takes the place of another one when it is complete, and leaves no trace when it
/// is not.
///
/// The new file stands beside its target under a hidden name that nothing had before, so that no
/// link planted there is followed and the last step is a rename: as long as the system runs the
/// target is either the old file whole, or absent as before, or the new file whole.
class FileReplacement {
public:
    /// How the names of this process's new files begin, in whatever folder.
    static std::string HiddenPrefix();

    /// Makes the new file, empty, with the target's permissions where there is a target, otherwise
    /// with those of the source, so that what is made of a private file is private.
    /// Fails, see GetError, when the target exists but is no regular file or not writable, or when
    /// no file can be made in its folder.
    FileReplacement(const std::string& target, const std::string& source);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Removes the new file, unless it has replaced the target.
    ~FileReplacement();

    /// Where to write; empty when no file could be made.
    const std::string& GetPath() const { return m_path; }

    /// Why the constructor or Commit failed; false (no error) otherwise.
    const std::error_code& GetError() const { return m_error; }

    /// Puts the new file, which must be closed, in the target's place. Returns whether it did.
    [[nodiscard]] bool Commit();

private:
    bool CheckTarget();
    void Create(const std::string& source);

    std::string m_target;
    std::string m_path;
    std::error_code m_error;
    std::optional<mode_t> m_permissions; // those of the target; none where there is no target
};
