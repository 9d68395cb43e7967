#pragma once

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

    /// The path for a suffix, always the same one. A suffix that makes the name longer than the
    /// file system allows is cut short and followed by a hash of the whole.
    /// @param suffix     digits and "-"
    /// @param extension  without a dot
    std::string MakePath(const std::string& suffix, const std::string& extension) const;

    /// Removes every file of the process. What cannot be removed stays.
    void DeleteAll() const;

private:
    std::string m_folder;
    std::string m_prefix; // of the names
};
