#pragma once

#include "platform/FileState.h"
#include "platform/RegularFile.h"

/// Tells whether a source is still the file that it was when the cut began: the bytes of one that
/// is truncated, rewritten or replaced meanwhile are those of no file.
class SourceWatch {
public:
    /// A source that cannot be opened counts as unchanged: whoever reads it tells what is wrong.
    explicit SourceWatch(const char* path);

    bool HasChanged() const;

private:
    const char* m_path;
    FilePointer m_file; // open, so that no other file can get its inode
    FileState m_state;
};
