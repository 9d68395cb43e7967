#pragma once

#include <optional>
#include <set>
#include <string>
#include <sys/types.h>

/// The names of the files in which the edits of a process live, and their removal.
///
/// Each lies directly in one folder and is called "orvane.Klipra-", the process id, "-" and a
/// suffix. Makes no file: whoever writes one makes a new file and renames it to its path, so that a
/// link planted there is replaced, never followed.
class TemporaryFiles {
public:
    TemporaryFiles(std::string folder, pid_t process);

    const std::string& Folder() const { return m_folder; }

    /// The path for a suffix, always the same one. A suffix that makes the name longer than the
    /// file system allows is cut short and followed by a hash of the whole.
    /// @param suffix     digits and "-"
    /// @param extension  without a dot
    std::string MakePath(const std::string& suffix, const std::string& extension) const;

    /// The path of the file that the process keeps locked while these are in use: beside them, so
    /// that it counts for all who share the folder.
    std::string LockPath() const;

    /// Removes every file of the process. What cannot be removed stays.
    void DeleteAll() const;

    /// Removes this user's files of other processes that are known to be dead: whose lock nobody
    /// holds, or who have none and have left a journal that nobody holds. An id alone says nothing:
    /// ids come again, and are others in other containers.
    /// @param dead, living  the processes of journals that nobody holds, and somebody
    void DeleteThoseOfTheDead(const std::set<pid_t>& dead, const std::set<pid_t>& living) const;

private:
    std::string m_folder;
    pid_t m_process;
    std::string m_prefix; // of the names
};
