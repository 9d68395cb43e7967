#pragma once

#include <cstdint>

/// What tells one state of a file from another: two equal states mean the same bytes.
struct FileState {
    std::int64_t device = 0;
    std::int64_t inode = 0;
    std::int64_t sizeBytes = 0;
    std::int64_t modifiedNanoseconds = 0;
    std::int64_t changedNanoseconds = 0;

    bool operator==(const FileState&) const = default;
};

/// The state of the file behind a descriptor; all zero when it cannot be told.
FileState StateOf(int descriptor);

/// The state of the file that a path leads to, likewise.
FileState StateOf(const char* path);
