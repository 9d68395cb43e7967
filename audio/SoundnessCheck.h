#pragma once

#include "audio/FrameHeader.h"
#include "bitstream/SideInfo.h"

#include <cstdint>
#include <span>

/// Follows a decoder through frames, one after the other, and tells whether it made each of them
/// from nothing but what stands in the file shortly before: then another decoder, led through those
/// frames alone, makes the same of them. Where a frame is damaged, or wants more of the bit
/// reservoir than the frames before it left there, what comes out depends on what the decoder did
/// earlier.
class SoundnessCheck {
public:
    /// @param first  the stream's first header
    explicit SoundnessCheck(const FrameHeader& first) : m_first(first) {}

    void Begin() { m_isSound = true; }

    /// @param bytes  that the decoder holds before the next frame
    void SetReservoir(std::uint32_t bytes) { m_reservoirBytes = bytes; }

    /// Takes the next frame into account.
    /// @param frame    null for a frame that could not be read
    /// @param samples  what it was decoded to, interleaved
    void Add(const std::uint8_t* frame, const FrameHeader& header,
             std::span<const std::int16_t> samples);

    /// Says that the next frame is missing, or cannot be trusted.
    void Fail() { m_isSound = false; }

    /// Whether that is so of all frames since Begin, doubtful ones aside.
    bool IsSound() const { return m_isSound; }
    /// Whether the decoder may have given up the frame added last: it then fills the rest of it
    /// with zeros, without a word. It may also be no more than a very soft one.
    bool IsDoubtful() const { return m_isDoubtful; }

private:
    bool EndsInZeros(std::span<const std::int16_t> samples) const;
    [[nodiscard]] bool Follows(const bitstream::SideInfo& info, std::uint32_t payloadBytes);

    FrameHeader m_first;
    bool m_isSound = false;
    bool m_isDoubtful = false;
    std::uint32_t m_reservoirBytes = 0;
};
