#pragma once

#include "mpeg/VBRHeader.h"

class CLAMETag;

/// The Xing header of a variable-bitrate stream; with the identifier "Info" that of a constant one.
///
/// Stands after the side information of the first frame. All numbers are big-endian:
/// identifier 4 bytes, flags 4, then those of frame count 4, byte count 4, seek table 100 and
/// quality 4 that the flags declare, each right after the one before.
class CXINGHeader : public CVBRHeader {
public:
    enum Flags : unsigned int { kFrameCount = 1, kByteCount = 2, kSeekTable = 4, kQuality = 8 };

    static constexpr unsigned int kTableEntries = 100; ///< of one byte each

    /// The header in a frame, owned by the caller; null when there is none.
    /// Throws CMPAEndOfFileException when the file ends inside the header.
    static CXINGHeader* FindHeader(const CMPAFrame* frame);

    /// @param offset  of the identifier. Throws like FindHeader.
    CXINGHeader(const CMPAFrame* frame, long long offset);
    CXINGHeader(const CXINGHeader&) = delete;
    CXINGHeader& operator=(const CXINGHeader&) = delete;
    ~CXINGHeader() override;

    const CLAMETag* GetLAMETag() const { return m_lameTag.get(); } ///< null for none

    /// Reads the flags from the file: which fields the header holds. Throws CMPAException.
    unsigned int ReadFlags() const;

    using CVBRHeader::SeekPosition;
    unsigned int SeekPosition(float& percent) const override;

private:
    std::unique_ptr<CLAMETag> m_lameTag;
};
