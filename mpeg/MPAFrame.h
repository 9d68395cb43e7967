#pragma once

#include "mpeg/MPAHeader.h"

class CMPAStream;
class CVBRHeader;

/// One MPEG audio frame: its header, where it lies in the file and how long it is. Holds none of
/// its audio.
class CMPAFrame {
public:
    /// Searches a frame. Arguments and exceptions as for CMPAHeader, but for:
    /// @param offset          where the search starts, in bytes
    /// @param findSubsequent  whether IsLast looks for the header that follows
    CMPAFrame(CMPAStream* stream, long long offset, bool findSubsequent, bool exactOffset,
              bool reverse, const CMPAHeader* compareHeader);

    /// The VBR header that this frame holds instead of audio, owned by the caller; null for none.
    /// Throws CMPAEndOfFileException when the header is cut short.
    CVBRHeader* FindVBRHeader() const;

    /// Layer I: whether the stored CRC is that of the frame. Other layers: whether there is one;
    /// it is not computed. Throws CMPAException when the frame cannot be read.
    bool CheckCRC() const;

    /// The CRC-16 of ISO/IEC 11172-3, 2.4.3.1, over the bits 16 up to bitCount, without the bits
    /// 32 to 47, which hold the stored CRC. Bit 0 is the highest bit of the first byte.
    static unsigned short CalcCRC16(const unsigned char* buffer, unsigned int bitCount);

    const CMPAHeader* GetHeader() const { return &m_header; }
    CMPAStream* GetStream() const { return m_stream; }
    long long GetOffset() const { return m_offset; }     ///< of the header's first byte
    unsigned int GetSize() const { return m_sizeBytes; } ///< bytes, header included
    /// Whether the file ends where the next header would be; anything else there is no end. Looks
    /// only when asked, for a walk over all frames gets to see the next one anyway.
    bool IsLast() const { return m_findSubsequent && FileEndsAfterThis(); }

private:
    bool FileEndsAfterThis() const;

    CMPAStream* m_stream;
    long long m_offset;
    CMPAHeader m_header; // constructing it moves m_offset to where it was found
    unsigned int m_sizeBytes;
    bool m_findSubsequent;
};
