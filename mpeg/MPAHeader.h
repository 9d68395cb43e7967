#pragma once

#include "mpeg/MPAException.h"

#include <optional>

class CMPAStream;

/// The four bytes that open an MPEG audio frame (ISO/IEC 11172-3, 13818-3 and the 2.5 extension).
///
/// Finds and decodes one header; knows nothing of tags or of the frame's audio. Immutable once
/// constructed. Free-format frames are refused: their length cannot be known from the header.
class CMPAHeader {
public:
    /// Length of a header in bytes.
    static constexpr unsigned int kSize = 4;

    /// Searches a header and decodes it.
    /// @param offset         in: where to start, in bytes; out: where the header was found
    /// @param exactOffset    true: try the offset and the 3 bytes on either side of it; false: try
    ///                       every offset from there over 32768 bytes
    /// @param reverse        without exactOffset: search towards the start of the file
    /// @param compareHeader  only a header of the same stream as this one will do; null: any
    /// Throws CMPAException: NoFrameWithinTolerance when there is none in the range; with
    /// exactOffset, whatever is wrong with the first candidate; CMPAEndOfFileException when the
    /// search runs into the end of the file.
    CMPAHeader(CMPAStream* stream, long long& offset, bool exactOffset, bool reverse,
               const CMPAHeader* compareHeader);

    /// Decodes the four bytes. Throws CMPAException (HeaderCorrupt, FreeBitrateNotSupported).
    /// @param fileName  for the exception
    void Init(const unsigned char* bytes, const char* fileName);

    /// Whether both can belong to one stream: same version, layer, sampling rate and emphasis, and
    /// both single channel or both not. Bitrate, padding and the other bits may differ.
    bool operator==(const CMPAHeader& other) const;

    bool IsLSF() const { return m_isLSF; } ///< low sampling frequencies: MPEG 2 or 2.5
    unsigned int GetVersion() const { return m_version; }   ///< 0 MPEG 2.5, 2 MPEG 2, 3 MPEG 1
    unsigned int GetLayer() const { return m_layer; }       ///< 0 Layer I, 1 Layer II, 2 Layer III
    unsigned int GetEmphasis() const { return m_emphasis; } ///< index of m_szEmphasis
    unsigned int GetChannelMode() const { return m_channelMode; } ///< index of m_szChannelModes
    bool IsSingleChannel() const { return m_channelMode == kSingleChannel; }
    unsigned int GetSamplingRateHz() const { return m_samplingRateHz; }
    unsigned int GetSamplesPerFrame() const { return m_samplesPerFrame; } ///< of each channel
    unsigned int GetBitrateBps() const { return m_bitrateBps; }
    unsigned int GetPadding() const { return m_padding; } ///< slots, 0 or 1
    /// Number of subbands coded per channel before joint-stereo coding starts, 32 without it.
    unsigned short GetBound() const { return m_bound; }
    /// Layer II only: 0 to 3 for the tables B.2a to B.2d of ISO/IEC 11172-3, 4 for that of MPEG 2.
    unsigned short GetAllocationTable() const { return m_allocationTable; }
    unsigned char GetModeExtension() const { return m_modeExtension; }
    bool IsCopyright() const { return m_isCopyright; }
    bool IsPrivate() const { return m_isPrivate; }
    bool IsOriginal() const { return m_isOriginal; }
    bool IsCRCProtected() const { return m_isCRCProtected; } ///< a 16-bit CRC follows the header

    static const unsigned int (&m_dwSamplingRates)[4][3]; ///< Hz, by version, sampling rate index
    static const unsigned int (&m_dwBitrates)[2][3][15];  ///< kbit/s, by LSF, layer, bitrate index
    static const unsigned int (&m_dwSamplesPerFrames)[2][3]; ///< by LSF, layer
    static const unsigned int (&m_dwCoefficients)[2][3];  ///< slots per bit/s and Hz, by LSF, layer
    static const unsigned int (&m_dwSlotSizes)[3];        ///< bytes, by layer
    static const unsigned int (&m_dwSideInfoSizes)[2][2]; ///< bytes, by LSF, single channel
    static const bool (
        &m_bAllowedModes)[15][2];            ///< MPEG 1 Layer II, by bitrate index, single channel
    static const unsigned int m_dwTolerance; ///< further offsets tried with exactOffset
    static const unsigned int m_dwMaxRange;  ///< further offsets tried without
    static const char* const m_szMPEGVersions[4]; ///< by version
    static const char* const m_szLayers[3];       ///< by layer
    static const char* const m_szChannelModes[4]; ///< by channel mode
    static const char* const m_szEmphasis[4];     ///< by emphasis

private:
    enum ChannelMode : unsigned int { kStereo, kJointStereo, kDualChannel, kSingleChannel };

    [[nodiscard]] std::optional<CMPAException::ErrorIDs> Decode(const unsigned char* bytes);
    unsigned short AllocationTable() const;

    bool m_isLSF = false;
    unsigned int m_version = 0;
    unsigned int m_layer = 0;
    unsigned int m_emphasis = 0;
    unsigned int m_channelMode = 0;
    unsigned int m_samplingRateHz = 0;
    unsigned int m_samplesPerFrame = 0;
    unsigned int m_bitrateBps = 0;
    unsigned int m_padding = 0;
    unsigned short m_bound = 0;
    unsigned short m_allocationTable = 0;
    bool m_isCopyright = false;
    bool m_isPrivate = false;
    bool m_isOriginal = false;
    bool m_isCRCProtected = false;
    unsigned char m_modeExtension = 0;
};
