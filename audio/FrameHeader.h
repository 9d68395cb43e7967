#pragma once

#include "bitstream/FrameFacts.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// What decoding has to know of an MPEG audio frame's four header bytes (ISO/IEC 11172-3, 13818-3
/// and the 2.5 extension).
///
/// Refuses what the cutters' parser refuses too, free format included: both go by the same tables.
struct FrameHeader {
    static constexpr std::size_t kBytes = 4;
    static constexpr std::size_t kMaxBytes = 2881; ///< of a whole frame

    /// @param bytes  kBytes of them
    [[nodiscard]] static std::optional<FrameHeader> Parse(const std::uint8_t* bytes);

    bool operator==(const FrameHeader&) const = default;

    /// True when both have the same version, layer and sampling rate: the frames then last equally
    /// long and can be decoded one after the other.
    bool SameStream(const FrameHeader& other) const { return streamBits == other.streamBits; }

    /// Of the side information, from the frame's beginning, bytes.
    std::uint32_t SideInfoOffset() const {
        return bitstream::kHeaderBytes + (crc ? bitstream::kCRCBytes : 0);
    }
    /// Layer III: how much of the bit reservoir this frame fills; 0 for the other layers.
    std::uint32_t MainDataBytes() const {
        const std::uint32_t overhead = SideInfoOffset() + sideInfoBytes;
        return layer == 3 && sizeBytes > overhead ? sizeBytes - overhead : 0;
    }
    /// How much of it a frame can draw on at most; 0 for the other layers.
    std::uint32_t MaxReservoirBytes() const;

    std::uint32_t streamBits = 0; ///< the header bits of version, layer and sampling rate
    bool lowSamplingRate = false; ///< MPEG 2 or 2.5
    int layer = 0;                ///< 1 to 3
    bool crc = false;             ///< a 16-bit check word follows the header
    std::uint32_t channels = 0;
    std::uint32_t rateHz = 0;
    std::uint32_t sampleFrames = 0;  ///< that the frame decodes to
    std::uint32_t sizeBytes = 0;     ///< of the whole frame
    std::uint32_t sideInfoBytes = 0; ///< that a Layer III frame of this kind has
};
