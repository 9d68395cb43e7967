#pragma once

#include "audio/ReadFailures.h"
#include "platform/FileState.h"
#include "platform/RegularFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>

/// A regular file opened for reading, read at any offset by any thread.
class File {
public:
    /// @return null with errno set when the file cannot be opened or is no regular file; a
    ///         directory, a pipe or a device fails at once
    [[nodiscard]] static std::shared_ptr<const File> Open(const char* path);

    virtual ~File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// As it was when the file was opened.
    const FileState& State() const { return m_state; }
    /// As it is now; all zero when that cannot be told.
    FileState CurrentState() const { return StateOf(fileno(m_file.get())); }

    struct ReadResult {
        std::size_t bytes = 0; ///< that were read
        int error = 0;         ///< why there are no more; 0 at the end of the file too
    };
    /// @return fewer bytes than asked for at the end of the file and on a read error
    [[nodiscard]] virtual ReadResult ReadAt(std::int64_t offset, void* to, std::size_t bytes) const;

    /// Where those who decode the file report what they could not read.
    ReadFailures& Failures() const { return *m_failures; }

protected:
    explicit File(FilePointer file);

private:
    const FilePointer m_file;
    const FileState m_state;
    const std::shared_ptr<ReadFailures> m_failures;
};
