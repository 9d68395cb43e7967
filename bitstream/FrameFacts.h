#pragma once

/// What the four header bytes of an MPEG audio frame say (ISO/IEC 11172-3, 13818-3 and the 2.5
/// extension, which halves the sampling rates of MPEG 2 once more).
namespace bitstream {

inline constexpr unsigned int kHeaderBytes = 4;
inline constexpr unsigned int kCRCBytes = 2;

inline constexpr unsigned int kReservedVersion = 1;
inline constexpr unsigned int kMPEG1 = 3;
inline constexpr unsigned int kLayerII = 1;
inline constexpr unsigned int kReservedLayer = 3;
inline constexpr unsigned int kReservedBitrateIndex = 15;
inline constexpr unsigned int kReservedSamplingRateIndex = 3;
inline constexpr unsigned int kSingleChannel = 3;
inline constexpr unsigned int kReservedEmphasis = 2;

// clang-format off
/// Hz, by version and sampling rate index.
inline constexpr unsigned int kSamplingRatesHz[4][3] = {
    {11025, 12000, 8000},
    {0, 0, 0},
    {22050, 24000, 16000},
    {44100, 48000, 32000},
};

/// kbit/s, by low sampling frequencies, layer and bitrate index; 0 is the free format.
inline constexpr unsigned int kBitratesKbps[2][3][15] = {
    {
        {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
        {0, 32, 48, 56,  64,  80,  96, 112, 128, 160, 192, 224, 256, 320, 384},
        {0, 32, 40, 48,  56,  64,  80,  96, 112, 128, 160, 192, 224, 256, 320},
    },
    {
        {0, 32, 48, 56,  64,  80,  96, 112, 128, 144, 160, 176, 192, 224, 256},
        {0,  8, 16, 24,  32,  40,  48,  56,  64,  80,  96, 112, 128, 144, 160},
        {0,  8, 16, 24,  32,  40,  48,  56,  64,  80,  96, 112, 128, 144, 160},
    },
};

/// Samples of each channel in a frame, by low sampling frequencies and layer.
inline constexpr unsigned int kSamplesPerFrame[2][3] = {
    {384, 1152, 1152},
    {384, 1152,  576},
};

/// Slots of a frame per bit/s and Hz, by low sampling frequencies and layer.
inline constexpr unsigned int kSlotCoefficients[2][3] = {
    {12, 144, 144},
    {12, 144,  72},
};

/// Bytes, by layer.
inline constexpr unsigned int kSlotBytes[3] = {4, 1, 1};

/// Layer III: bytes of side information, by low sampling frequencies and single channel.
inline constexpr unsigned int kSideInfoBytes[2][2] = {
    {32, 17},
    {17,  9},
};

/// MPEG 1 Layer II: which bitrate goes with which mode, by bitrate index and single channel
/// (11172-3, 2.4.2.3).
inline constexpr bool kAllowedModes[15][2] = {
    {true,  true},
    {false, true},
    {false, true},
    {false, true},
    {true,  true},
    {false, true},
    {true,  true},
    {true,  true},
    {true,  true},
    {true,  true},
    {true,  true},
    {true,  false},
    {true,  false},
    {true,  false},
    {true,  false},
};
// clang-format on

/// Bytes: how far from where a frame should be it is looked for. Near by, for an encoder may have
/// set a wrong padding bit; then, over garbage, further on.
inline constexpr unsigned int kNearBytes = 3;
inline constexpr unsigned int kSearchBytes = 32768;

/// Where the VBRI header of a stream stands in its first frame; Xing and Info stand behind the side
/// information. Neither place depends on a check word.
inline constexpr unsigned int kVBRIOffset = 36;

/// Whether the bytes can be a header. Free format is one, but its length is unknown from here.
enum class HeaderState { Sound, Corrupt, FreeFormat };

/// The facts of one header; numbers as in the bytes but for the layer.
struct FrameFacts {
    bool isLSF = false;          ///< low sampling frequencies: MPEG 2 or 2.5
    unsigned int version = 0;    ///< 0 MPEG 2.5, 2 MPEG 2, 3 MPEG 1
    unsigned int layer = 0;      ///< 0 Layer I, 1 Layer II, 2 Layer III
    bool isCRCProtected = false; ///< a 16-bit CRC follows the header
    unsigned int bitrateIndex = 0;
    unsigned int bitrateBps = 0;
    unsigned int samplingRateHz = 0;
    unsigned int padding = 0;     ///< slots, 0 or 1
    unsigned int channelMode = 0; ///< 3 is a single channel
    unsigned int emphasis = 0;

    constexpr bool IsSingleChannel() const { return channelMode == kSingleChannel; }
    constexpr unsigned int SamplesPerFrame() const { return kSamplesPerFrame[isLSF][layer]; }
    /// Where the side information of a Layer III frame begins, bytes from its header.
    constexpr unsigned int SideInfoOffset() const {
        return kHeaderBytes + (isCRCProtected ? kCRCBytes : 0);
    }
    /// That a Layer III frame of this kind has.
    constexpr unsigned int SideInfoBytes() const {
        return kSideInfoBytes[isLSF][IsSingleChannel()];
    }
};

/// Bytes of a whole frame. A padding slot of Layer I is four bytes (11172-3, 2.4.3.1).
constexpr unsigned int FrameBytes(bool isLSF, unsigned int layer, unsigned int bitrateBps,
                                  unsigned int samplingRateHz, unsigned int padding) {
    return (kSlotCoefficients[isLSF][layer] * bitrateBps / samplingRateHz + padding) *
           kSlotBytes[layer];
}

/// Decodes four bytes, whose sync bits the caller has looked at.
/// @param facts  out: whole only where the answer is Sound
[[nodiscard]] constexpr HeaderState DecodeHeader(const unsigned char* bytes, FrameFacts& facts) {
    facts.version = bytes[1] >> 3 & 0x03U;
    facts.layer = (bytes[1] >> 1 & 0x03U) ^ 0x03U;
    facts.bitrateIndex = bytes[2] >> 4 & 0x0FU;
    if (facts.version == kReservedVersion || facts.layer == kReservedLayer ||
        facts.bitrateIndex == kReservedBitrateIndex) {
        return HeaderState::Corrupt;
    }
    if (facts.bitrateIndex == 0) {
        return HeaderState::FreeFormat;
    }
    const unsigned int samplingRateIndex = bytes[2] >> 2 & 0x03U;
    facts.emphasis = bytes[3] & 0x03U;
    if (samplingRateIndex == kReservedSamplingRateIndex || facts.emphasis == kReservedEmphasis) {
        return HeaderState::Corrupt;
    }
    facts.isLSF = facts.version != kMPEG1;
    facts.channelMode = bytes[3] >> 6 & 0x03U;
    if (facts.layer == kLayerII && !facts.isLSF &&
        !kAllowedModes[facts.bitrateIndex][facts.IsSingleChannel()]) {
        return HeaderState::Corrupt;
    }
    facts.isCRCProtected = (bytes[1] & 0x01U) == 0;
    facts.bitrateBps = kBitratesKbps[facts.isLSF][facts.layer][facts.bitrateIndex] * 1000;
    facts.samplingRateHz = kSamplingRatesHz[facts.version][samplingRateIndex];
    facts.padding = bytes[2] >> 1 & 0x01U;
    return HeaderState::Sound;
}

} // namespace bitstream
