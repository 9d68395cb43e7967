#pragma once

#include <memory>

class CMPAFrame;
class CMPAStream;

/// The header that stands in the first frame of a stream instead of audio: how many frames and
/// bytes follow, and a seek table. Base of the Xing/Info and the VBRI header.
///
/// Also carries a second table of the seek table's size, for whoever writes a new one.
class CVBRHeader {
public:
    /// The header in a frame, Xing/Info first, owned by the caller; null when it holds neither.
    /// Throws CMPAEndOfFileException when the file ends inside the header.
    static CVBRHeader* FindHeader(const CMPAFrame* frame);

    /// Whether the four characters stand at the offset. Throws CMPAException when they cannot be
    /// read.
    [[nodiscard]] static bool CheckID(CMPAStream* stream, long long offset, char c0, char c1,
                                      char c2, char c3);

    CVBRHeader(const CVBRHeader&) = delete;
    CVBRHeader& operator=(const CVBRHeader&) = delete;
    virtual ~CVBRHeader();

    /// Where to read on for a position in the playing time.
    /// @param percent    0 to 99; what lies beyond is brought within
    /// @param seekPoint  out: bytes from the start of the audio
    /// @return false, and seekPoint untouched, without a seek table or a byte count
    bool SeekPosition(float& percent, unsigned int& seekPoint) const;

    /// The same for a header known to have a seek table and a byte count: bytes from the start of
    /// the audio; 0 without a table.
    /// @param percent  0 to 99
    virtual unsigned int SeekPosition(float& percent) const = 0;

    unsigned int GetByteCount() const { return m_byteCount; }   ///< 0 when not given
    unsigned int GetFrameCount() const { return m_frameCount; } ///< 0 when not given
    void SetByteCount(unsigned int byteCount) { m_byteCount = byteCount; }
    void SetFrameCount(unsigned int frameCount) { m_frameCount = frameCount; }
    unsigned int GetQuality() const { return m_quality; } ///< 0 when not given
    CMPAStream* GetStream() const { return m_stream; }
    long long GetOffset() const { return m_offset; }          ///< of the identifier in the file
    unsigned int GetTableSize() const { return m_tableSize; } ///< entries of both tables, 0: none
    const unsigned int* GetSeekTable() const { return m_seekTable.get(); } ///< null for none
    unsigned int* GetRewriteTable() const { return m_rewriteTable.get(); } ///< null for none

protected:
    /// Length of the identifier that opens a header, in bytes.
    static constexpr unsigned int kIDSize = 4;

    CVBRHeader(CMPAStream* stream, long long offset);

    /// Reads a big-endian number and moves the offset behind it.
    unsigned int ReadValue(unsigned int bytes, long long& offset) const;

    /// Makes both tables: the seek table from consecutive big-endian numbers, the other one zero.
    /// Throws CMPAEndOfFileException when the file does not hold them.
    void ReadTables(unsigned int entries, unsigned int bytesPerEntry, long long& offset);

    /// The whole part of a number of bytes; the nearest value where it has none in 32 bits.
    static unsigned int Truncated(float bytes);

    unsigned int m_byteCount = 0;
    unsigned int m_frameCount = 0;
    CMPAStream* m_stream;
    long long m_offset;
    unsigned int m_quality = 0;
    std::unique_ptr<unsigned int[]> m_seekTable;
    std::unique_ptr<unsigned int[]> m_rewriteTable;
    unsigned int m_tableSize = 0;
};
