#pragma once

#include <cstdio>
#include <memory>

/// Closes a C file handle. Of one that was written to, only where nobody needs the file any more.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

/// Opens a regular file for reading ("rb").
///
/// Anything else that a path can name is refused at once: opening a FIFO would wait for its writer,
/// and a directory or a device has no bytes to cut.
/// @return null with errno set when the file cannot be opened or is no regular file
[[nodiscard]] FilePointer OpenRegularFile(const char* path);

/// What stands before the number of a descriptor in a path that leads to its file, named or not.
inline constexpr const char* kOwnDescriptors = "/proc/self/fd/";

/// Opens a file for writing ("wb"): makes it, or empties the one that is there. A link is refused,
/// for nobody knows who has put it there, but for one to a descriptor of this process. The handle's
/// closing tells whether all has arrived.
/// @return null with errno set when the file cannot be opened
[[nodiscard]] FilePointer OpenForWriting(const char* path);
