#pragma once

#include "platform/RegularFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>

/// What tells one state of a file from another: two equal states mean the same bytes.
struct FileState {
    std::int64_t device = 0;
    std::int64_t inode = 0;
    std::int64_t sizeBytes = 0;
    std::int64_t modifiedNanoseconds = 0;
    std::int64_t changedNanoseconds = 0;

    bool operator==(const FileState&) const = default;
};

/// A regular file opened for reading, read at any offset by any thread.
class File {
public:
    /// @return null when the file cannot be opened or is no regular file; a directory, a pipe or a
    ///         device fails at once
    static std::shared_ptr<const File> Open(const char* path);

    /// As it was when the file was opened.
    const FileState& State() const { return m_state; }
    /// As it is now; all zero when that cannot be told.
    FileState CurrentState() const;

    /// @return bytes read; fewer than asked for at the end of the file and on a read error
    std::size_t ReadAt(std::int64_t offset, void* to, std::size_t bytes) const;

    /// The descriptor, which stays this object's; its own file offset is at the user's disposal.
    int Descriptor() const;

private:
    explicit File(FilePointer file);

    FilePointer m_file;
    FileState m_state;
};
