#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

/// Waits until file systems have written all that they were given: for many files that is faster
/// than one after another.
class FileSystemSync {
public:
    /// @param files  before they are written, so that whatever goes wrong with them is told
    explicit FileSystemSync(const std::vector<std::string>& files);
    FileSystemSync(const FileSystemSync&) = delete;
    FileSystemSync& operator=(const FileSystemSync&) = delete;
    ~FileSystemSync();

    /// @return an error number; 0 for none
    [[nodiscard]] int Sync() const;

private:
    std::map<dev_t, int> m_descriptors; // of a file on each
};

/// Waits until the names of these files are on the disk, each folder once. A folder that cannot be
/// synced is left: the files are in place.
void SyncFoldersOf(const std::vector<std::string>& paths);

/// The folder in which a path's file stands, "." where the path names none.
std::string FolderOf(const std::string& path);

/// Waits until a file is on the disk. A file system that knows no waiting is no failure.
/// @return an error number; 0 for none
[[nodiscard]] int SyncFile(int descriptor);
