#pragma once

#include "mpeg/Tag.h"

/// The encoder's tag 120 bytes after the identifier of a Xing/Info header: encoder version and how
/// the stream was encoded. Before version 3.90 it is only a text of 20 bytes.
///
/// A tag by form, though it lies inside the audio: its size is 0.
class CLAMETag : public CTag {
public:
    /// The tag that belongs to a header, owned by the caller; null when there is none.
    /// @param begin  offset of the header's identifier; the end is not used.
    /// Throws CMPAEndOfFileException when the file ends where the tag would be.
    static CLAMETag* FindTag(CMPAStream* stream, bool appended, long long begin, long long end);

    /// @param offset  of the encoder string. Throws like FindTag.
    CLAMETag(CMPAStream* stream, bool appended, long long offset);
    CLAMETag(const CLAMETag&) = delete;
    CLAMETag& operator=(const CLAMETag&) = delete;
    ~CLAMETag() override;

    bool IsVBR() const;
    bool IsABR() const;
    bool IsCBR() const;
    const char* GetVBRInfo() const; ///< name of the method

    /// The encoder's name and version; any bytes may be in it.
    const std::string& GetEncoder() const { return m_encoder; }
    bool IsSimpleTag() const { return m_isSimpleTag; } ///< only the encoder string is there
    unsigned int GetLowpassHz() const { return m_lowpassHz; }
    unsigned char GetBitrateKbps() const { return m_bitrateKbps; } ///< ABR target or VBR minimum
    unsigned char GetRevision() const { return m_revision; }       ///< 0x00, 0x10, ... 0xF0
    unsigned char GetVBRMethod() const { return m_vbrMethod; }     ///< index of m_szVBRInfo

    static const char* const m_szVBRInfo[10]; ///< by VBR method

private:
    std::string m_encoder;
    unsigned int m_lowpassHz = 0;
    unsigned char m_bitrateKbps = 0;
    unsigned char m_revision = 0;
    unsigned char m_vbrMethod = 0;
    bool m_isSimpleTag = false;
};
