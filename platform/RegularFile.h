#pragma once

#include <cstdio>
#include <memory>

/// Closes a C file handle; for handles whose closing cannot lose anything.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

/// Opens a regular file for reading ("rb").
///
/// Anything else that a path can name is refused at once: opening a FIFO would wait for its writer,
/// and a directory or a device has no bytes to cut.
/// @return null with errno set when the file cannot be opened or is no regular file
FilePointer OpenRegularFile(const char* path);
