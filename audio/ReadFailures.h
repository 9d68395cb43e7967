#pragma once

#include "platform/FileState.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

/// Why bytes of a file could not be had, and which.
struct ReadError {
    std::int64_t offsetBytes = 0; ///< the first byte that could not
    int number = 0;               ///< an error number; 0: the file has become shorter

    bool operator==(const ReadError&) const = default;
};

/// A place of the decoded sound that is missing for a reason of the system's, not of the file's
/// content.
struct ReadFailure {
    std::int64_t sampleFrame = 0; ///< the first one that is missing
    ReadError cause;

    bool operator==(const ReadFailure&) const = default;
};

/// Remembers the earliest place of a file's sound that could not be read or decoded. Any thread;
/// no call waits for a read.
class ReadFailures {
public:
    /// The one that all who have the same file open in the same state share: what one of them could
    /// not read, the others know. It is forgotten with the last of them.
    static std::shared_ptr<ReadFailures> Of(const FileState& state);

    void Report(const ReadFailure& failure);
    /// @return nothing as long as all was read that was asked for
    std::optional<ReadFailure> First() const;

private:
    mutable std::mutex m_mutex;
    std::optional<ReadFailure> m_first; // under the mutex
};
