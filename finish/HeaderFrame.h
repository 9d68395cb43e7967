#pragma once

#include "bitstream/FrameFacts.h"
#include "finish/GaplessEdges.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// What a header tells of the frames behind it.
struct HeaderTruth {
    static constexpr std::size_t kTableEntries = 100;

    std::uint32_t frames = 0;
    std::uint32_t audioBytes = 0;                   ///< of those frames
    std::array<long long, kTableEntries> offsets{}; ///< bytes, of frame i * frames / 100 from the
                                                    ///< first of them
    std::uint16_t musicCRC = 0;                     ///< see bitstream::MusicCRC
    bool isConstant = true;                         ///< all that were copied have one bitrate
    bool isUniform = true;                          ///< all frames have, the made ones too
    std::optional<EncoderGap> gap;                  ///< none: as the source has it
};

/// The frame in front of an MP3's audio that tells how long it is: the fields of a Xing header, and
/// behind them those of a LAME tag. Built from a source's one, or new where that has none or too
/// little room.
class HeaderFrame {
public:
    /// @param source      the frame that holds the source's header; empty for none
    /// @param firstFrame  the first frame that follows
    /// @param facts       its header's
    HeaderFrame(std::span<const std::uint8_t> source, std::span<const std::uint8_t> firstFrame,
                const bitstream::FrameFacts& facts);

    std::size_t Bytes() const { return m_bytes.size(); }
    /// What the source's header tells, where its encoder text says that it means it.
    static std::optional<EncoderGap> GapOf(std::span<const std::uint8_t> source);

    /// @return the frame, Bytes() long
    const std::vector<std::uint8_t>& Fill(const HeaderTruth& truth);

private:
    void MakeNew(std::span<const std::uint8_t> firstFrame, const bitstream::FrameFacts& facts);
    void Put(std::size_t offset, std::uint32_t value, std::size_t bytes);
    void FillTag(const HeaderTruth& truth);

    std::vector<std::uint8_t> m_bytes;
    std::size_t m_identifier = 0; // where it begins
    std::optional<EncoderGap> m_gap;
    unsigned int m_bitrateIndex = 0;      // of this frame
    unsigned int m_firstBitrateIndex = 0; // of the one behind it
};
