#pragma once

#include <string>

/// The bytes that the parser reads, addressed by their offset from the start.
///
/// Reading is const for the classes above, although an implementation may move a buffer; a stream
/// is used by one thread at a time.
class CMPAStream {
public:
    /// @param fileName  kept for the exceptions that name the file
    explicit CMPAStream(const char* fileName);
    CMPAStream(const CMPAStream&) = delete;
    CMPAStream& operator=(const CMPAStream&) = delete;
    virtual ~CMPAStream();

    /// The length in bytes. Throws CMPAException when it cannot be told.
    virtual long long GetSize() const = 0;

    /// Reads consecutive bytes.
    /// @param size        bytes
    /// @param offset      where they begin; advanced by size afterwards if moveOffset is set
    /// @param moveOffset  see offset
    /// @param reverse     hint that the next reads lie before this one
    /// @return the bytes, valid until the next read on the same stream
    /// Throws CMPAEndOfFileException when not all of them are there, CMPAException when the stream
    /// cannot be read.
    [[nodiscard]] virtual unsigned char* ReadBytes(unsigned int size, long long& offset,
                                                   bool moveOffset, bool reverse) const = 0;

    /// Reads a little-endian number of 0 to 4 bytes; failures and moveOffset as for ReadBytes.
    unsigned int ReadLEValue(unsigned int bytes, long long& offset, bool moveOffset) const;

    /// Reads a big-endian number of 0 to 4 bytes; failures and moveOffset as for ReadBytes.
    unsigned int ReadBEValue(unsigned int bytes, long long& offset, bool moveOffset) const;

    const char* GetFileName() const { return m_fileName.c_str(); }

private:
    std::string m_fileName;
};
