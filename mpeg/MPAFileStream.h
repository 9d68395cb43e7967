#pragma once

#include "mpeg/MPAStream.h"
#include "platform/RegularFile.h"

#include <cstdio>
#include <memory>

/// The bytes of a file, read through a small buffer, so that the many reads of a few bytes near
/// each other are memory accesses.
class CMPAFileStream : public CMPAStream {
public:
    /// Opens a file. Throws CMPAException (CantOpenFile) when that fails or when the path names
    /// something other than a regular file. A file of any length opens, an empty one too.
    explicit CMPAFileStream(const char* fileName);

    /// Reads a file that the caller has opened, and that the caller closes after this stream.
    CMPAFileStream(const char* fileName, std::FILE* file);

    CMPAFileStream(const CMPAFileStream&) = delete;
    CMPAFileStream& operator=(const CMPAFileStream&) = delete;
    ~CMPAFileStream() override = default;

    /// Starts with a fresh buffer at the current buffer offset.
    void Init();

    long long GetSize() const override;
    unsigned char* ReadBytes(unsigned int size, long long& offset, bool moveOffset,
                             bool reverse) const override;

    /// Length of the first buffer in bytes.
    static constexpr unsigned int INIT_BUFFERSIZE = 1024;

private:
    bool IsBuffered(long long offset, unsigned int size) const;
    bool FillBuffer(long long offset, unsigned int size, bool reverse) const;
    bool GrowBuffer(long long offset, unsigned int size) const;
    void SetPosition(long long offset) const;
    unsigned int Read(void* destination, long long offset, unsigned int size) const;

    const FilePointer m_ownedFile; // null where the file is the caller's
    std::FILE* const m_file;
    mutable std::unique_ptr<unsigned char[]> m_buffer;
    mutable unsigned int m_bufferCapacity = 0; // bytes allocated
    mutable long long m_bufferOffset = 0;      // file offset of the first byte
    mutable unsigned int m_bufferLength = 0;   // bytes that are valid
};
