#pragma once

#include "platform/RegularFile.h"

#include <cstdio>
#include <memory>
#include <string>

/// The file that a cut writes. Deleted again unless Close says that all of it is there.
class OutputFile {
public:
    /// Creates the file, truncating one that exists ("wb"). Refuses the source, and a link.
    OutputFile(const char* path, const char* source);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// Null when the file could not be created; errno then says why.
    std::FILE* GetHandle() const { return m_file.get(); }

    /// Closes the file. Deletes it when the cut failed or when anything written has not arrived.
    /// @param cutSucceeded  what the cutter has to say
    /// @return whether the file is complete; where something has not arrived, CutFailure tells why
    /// unless it tells of something before
    bool Close(bool cutSucceeded);

private:
    std::string m_path;
    std::unique_ptr<char[]> m_buffer; // the C library takes a larger one only when it is given one
    FilePointer m_file;
};

/// Deletes an output that was written before the cut failed; a device is not ours to delete.
void RemoveOutput(const std::string& path);
